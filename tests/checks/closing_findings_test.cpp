// The closing check over real tables: every query runs, and each finds what it is for.

#include <gmock/gmock.h>

#include "account_set.h"
#include "answered.h"
#include "checks/closing/query_builders.h"
#include "frame/classes.h"
#include "velmora/collections/vector.h"
#include "velmora/com/context.h"
#include "velmora/com/error.h"
#include "velmora/interfaces.h"

namespace velmora {
namespace {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr const char* kDocument =
    "FBillID, FClassTypeID, FNumber, FDate, FFincDate, FYear, FPeriod, FRP, FStatus, FAccountID, "
    "FVoucherID, FAmount, FAmountFor";
constexpr const char* kContact =
    "FID, FType, FPre, FNumber, FDate, FFincDate, FYear, FPeriod, FRP, FStatus, FVoucherID, "
    "FRPBillID, FInvoiceID, FQ8Import";
constexpr const char* kInvoice =
    "FInterID, FClassTypeID, FBillNo, FDate, FFincDate, FYear, FPeriod, FArapStatus, FVchInterID, "
    "FCussentAcctID, FSaleStyle";
constexpr const char* kReceipt =
    "FBillID, FClassTypeID, FNumber, FDate, FFincDate, FYear, FPeriod, FRP, FStatus, FVoucherID";

class ClosingFindings : public AccountSet {
 protected:
  ClosingFindings() {
    plant("t_rp_BillType", "FID, FName, FName_EN",
          "(10,'销售发票','Sales invoice'), (11,'其他应收单','Other receivable'), "
          "(12,'收款单','Receipt'), (13,'采购发票','Purchase invoice')");
    plant("t_SubMessage", "FInterID, FTypeID, FID",
          "(101,101,'FXF02'), (102,101,'FXF01'), (103,101,'06'), (201,162,'PO01'), "
          "(202,104,'xf01')");
    plant("t_VoucherGroup", "FGroupID, FName", "(1,'记')");
    plant("t_Voucher", "FVoucherID, FDate, FYear, FPeriod, FGroupID, FNumber, FInternalInd",
          "(501,'2009-03-31',2009,3,1,12,'ar'), (502,'2009-04-01',2009,4,1,1,'ar')");
    plant("t_VoucherEntry", "FVoucherID, FEntryID, FAccountID", "(501,1,1122), (502,1,1122)");
  }

  /// The findings of March 2009 as "item: message".
  std::vector<std::string> check(bool bArp = true, const std::string& more = {}) {
    auto option = com::make<Dictionary>();
    option->Set("bArp", bArp);
    option->Set("BYear", 2009);
    option->Set("BPeriod", 3);
    com::Ref<com::IUnknown> found;
    EXPECT_TRUE(object_->CheckClosingData(dsn(more), option, found, canClose_));
    std::vector<std::string> lines;
    const auto rows = answered(found).as<ado::Recordset>();
    for (; !rows->EOF_(); rows->MoveNext())
      lines.push_back(rows->Fields()("FChkItem").Value().toText() + ": " +
                      rows->Fields()("FChkInfo").Value().toText());
    return lines;
  }
  DictionaryRef filter(bool bArp = true) {
    auto dFilter = com::make<Dictionary>();
    for (const auto& [key, value] : std::initializer_list<std::pair<const char*, Variant>>{
             {"bArp", bArp}, {"BYear", 2009}, {"BPeriod", 3}, {"strLanguage", "chs"}})
      dFilter->Set(key, value);
    return dFilter;
  }
  /// The numbers of the documents that `query` finds, with their amounts.
  std::vector<std::string> documents(const std::string& query) {
    std::vector<std::string> lines;
    const auto rows = object_->GetData(dsn(), query);
    for (; !rows->EOF_(); rows->MoveNext())
      lines.push_back(rows->Fields()("FBillNo").Value().toText() + ' ' +
                      rows->Fields()("FAmount").Value().toText() + ' ' +
                      rows->Fields()("FAccountID").Value().toText());
    return lines;
  }

  com::ScopedClass class_{publicClasses()[0]};
  com::Ref<_clsInitBalCheck> object_ =
      com::CreateObject(_clsInitBalCheck::kProgId).as<_clsInitBalCheck>();
  bool canClose_ = false;
};

TEST_F(ClosingFindings, EveryQueryRunsInEveryVariant) {
  const auto open = held();
  const auto runAll = [&](const DictionaryRef& dFilter) {
    const auto items = answered(object_->GetCheckItemDict(dsn("LANGUAGE=EN;"), dFilter));
    for (const Variant& value : *items.as<collections::Vector>()) {
      const auto item = value.toObject<Dictionary>();
      const std::string query = item->Value("FSql").toText();
      if (query.empty()) continue;
      ado::RecordsetRef rows;
      ASSERT_NO_THROW(rows = object_->GetData(dsn(), query)) << query;
      const std::string message = item->Value("FChkInfo").toText();
      const auto bar = message.find('|');
      std::istringstream columns(bar == std::string::npos ? "" : message.substr(bar + 1));
      for (std::string column; std::getline(columns, column, ',');)
        EXPECT_NO_THROW(rows->fieldIndex(column)) << column << "\n" << query;
    }
  };
  for (int variant = 0; variant < 32; ++variant) {
    const auto dFilter = filter((variant & 1) != 0);
    dFilter->Set("bCheckPassed", (variant & 2) != 0);
    dFilter->Set("bShowAll", (variant & 4) != 0);
    dFilter->Set("CurrencyID", (variant & 8) != 0 ? 3 : 0);
    dFilter->Set("ItemFilter", (variant & 16) != 0 ? "t10.FScale >= 0" : "");
    dFilter->Set("AcctList", (variant & 1) != 0 ? "1122,1123" : "");
    for (const char* key : {"bShowAllError", "bChkNOBillVoucher", "bchkUnPeriod", "bchkUnPeriodVch",
                            "bchkUnPeriodGYandGL"})
      dFilter->Set(key, true);
    runAll(dFilter);
  }
}

TEST_F(ClosingFindings, AnEmptyPeriodMayBeClosed) {
  EXPECT_THAT(check(), IsEmpty());
  EXPECT_TRUE(canClose_);
  EXPECT_THAT(check(false), IsEmpty());
}

TEST_F(ClosingFindings, UnauditedDocuments) {
  plant("t_rp_Contact", kContact,
        "(1,1,0,'AR1','2009-03-05','2009-03-05',2009,3,1,0,0,0,0,0),"   // found
        "(2,5,1,'SK2','2009-03-06','2009-03-06',2009,3,1,2,0,0,0,0),"   // another status bit
        "(3,5,0,'SK3','2009-03-06','2009-03-06',2009,3,1,1,0,0,0,0),"   // audited
        "(4,5,0,'SK4','2009-03-06','2009-03-06',2009,3,1,16,0,0,0,0),"  // not subject to audit
        "(5,1,0,'AR5','2009-02-06','2009-02-06',2009,2,1,0,0,0,0,0),"   // an earlier period
        "(6,6,-1,'FK6','2009-03-06','2009-03-06',2009,3,0,0,0,0,0,0),"  // payables
        "(7,9,0,'ZZ7','2009-03-06','2009-03-06',2009,3,1,0,0,0,0,0)");  // a type without a name
  EXPECT_THAT(check(), UnorderedElementsAre("单据审核检查: 应收单[AR1]:单据没有审核",
                                            "单据审核检查: 预收单[SK2]:单据没有审核",
                                            "单据审核检查: 单据[ZZ7]:单据没有审核"));
  EXPECT_FALSE(canClose_);
  EXPECT_THAT(check(false), ElementsAre("单据审核检查: 应付退款单[FK6]:单据没有审核"));
  profile("FARCloseNeedAudit", "0");
  canClose_ = true;
  check();
  EXPECT_TRUE(canClose_) << "only a warning now, so the caller's own verdict stands";
}

TEST_F(ClosingFindings, NameEveryTypeOfDocument) {
  // As number: what the type is called among the unaudited, and beside its voucher.
  std::string rows;
  for (const auto& [types, number] :
       {std::pair{"1,0", "应收单|其他应收单"}, std::pair{"2,0", "应付单|其他应付单"},
        std::pair{"3,0", "销售发票|销售发票"}, std::pair{"4,0", "采购发票|采购发票"},
        std::pair{"5,0", "收款单|收款单"}, std::pair{"5,1", "预收单|预收单"},
        std::pair{"5,-1", "应收退款单|应收退款单"}, std::pair{"6,0", "付款单|付款单"},
        std::pair{"6,1", "预付单|预付单"}, std::pair{"6,-1", "应付退款单|应付退款单"},
        std::pair{"7,0", "单据|单据"}, std::pair{"8,0", "单据|坏账"},
        std::pair{"9,0", "单据|转账单据"}}) {
    const std::string id = std::to_string(static_cast<int>(rows.size()) + 1);
    rows += (rows.empty() ? "(" : ",(") + id + ',' + types + ",N'" + number +
            "','2009-03-05','2009-03-05',2009,3,1,0,502,0,0,0)";
  }
  plant("t_rp_Contact", kContact, rows);
  auto dFilter = filter();
  const auto expectNames = [&](const std::string& query, bool first) {
    const auto found = object_->GetData(dsn(), query);
    EXPECT_EQ(found->RecordCount(), 13);
    for (; !found->EOF_(); found->MoveNext()) {
      const std::string number = found->Fields()("FBillNO").Value().toText();
      const auto bar = number.find('|');
      EXPECT_EQ(found->Fields()("FType").Value().toText(),
                first ? number.substr(0, bar) : number.substr(bar + 1));
    }
  };
  expectNames(object_->GetUnAuditArpBillStr(dFilter), true);
  expectNames(closing::GetUnPeriodVchBillStr(*dFilter), false);
}

TEST_F(ClosingFindings, DocumentsWithoutVoucher) {
  plant("ICSale", kInvoice,
        "(1,10,'XS1','2009-03-02','2009-03-02',2009,3,1,0,1122,101),"
        "(2,10,'XS2','2009-03-02','2009-03-02',2009,3,1,501,1122,101),"    // has one
        "(3,10,'XS3','2009-03-02','2009-03-02',2009,3,2,0,1122,101),"      // not audited for AR
        "(4,10,'XS4','2009-02-02','2009-02-02',2009,2,3,null,1122,101)");  // an earlier period
  plant("ICSaleEntry", "FInterID, FEntryID, FAmount, FStdAmount",
        "(1,1,100.10,683.4328),(1,2,0.05,0.3414),(4,1,7,7)");
  plant("t_rp_ARPBill", kDocument,
        "(1,11,'YS1','2009-03-03','2009-03-03',2009,3,1,1,1122,0,12.5,12.5),"
        "(2,11,'YS2','2009-03-03','2009-03-03',2009,3,1,1,1122,501,1,1),"
        "(3,11,'YS3','2009-03-03','2009-03-03',2009,3,1,0,1122,0,1,1),"
        "(4,11,'YF4','2009-03-03','2009-03-03',2009,3,0,1,2202,null,1,1)");
  plant("t_rp_NewReceiveBill", kReceipt, "(1,12,'SK1','2009-03-04','2009-03-04',2009,3,1,1,0)");
  plant("t_rp_ARBillOfSH", "FBillID, FIndex, FAccountID, FSettleAmount, FSettleAmountFor",
        "(1,1,1122,10,10),(1,2,1122,5.25,5.25),(1,3,1123,1,1)");
  auto dFilter = filter();
  EXPECT_THAT(
      documents(object_->GetUnVchArpBillStr(dFilter)),
      UnorderedElementsAre("XS1 683.7742 0", "YS1 12.5 1122", "SK1 15.25 1122", "SK1 1 1123"));
  EXPECT_THAT(documents(object_->GetUnVchInvoiceStr(dFilter)), ElementsAre("XS1 683.7742 0"));
  dFilter->Set("bCheckPassed", true);
  EXPECT_THAT(documents(object_->GetUnVchInvoiceStr(dFilter)),
              UnorderedElementsAre("XS1 683.7742 0", "XS4 7 0"));
  dFilter->Set("CurrencyID", 3);
  EXPECT_THAT(documents(object_->GetUnVchArpBillStr(dFilter)), IsEmpty());
  EXPECT_THAT(check(true, "LANGUAGE=EN;"),
              testing::Contains(testing::HasSubstr("Other receivable[YS1]")));
  EXPECT_THAT(check(false), ElementsAre("单据凭证检查: 其他应收单[YF4]:没有生成凭证"));
}

TEST_F(ClosingFindings, BillsOfExchangeWithoutVoucher) {
  plant("t_Item", "FItemID, FItemClassID, FNumber", "(1,1,'A01'),(2,1,'B01')");
  plant("t_rp_Bill", "FBillID, FBillNo, FRP, FSignDate, FDueDate, FCustomer, FCurrencyID",
        "(1,'HP1',1,'2009-01-05','2009-06-05',1,3),(2,'HP2',1,'2009-01-05','2009-06-05',2,1),"
        "(3,'HP3',0,'2009-01-05','2009-06-05',1,1)");
  plant("t_rp_Bill_Endorse", "FID, FBillID, FType, FDate, FCurrencyID, FAmount, FAccountID",
        "(1,1,1,'2009-03-31 23:59:59',3,100.01,2202),(2,2,2,'2009-03-01',1,20,2202),"
        "(3,2,1,'2009-04-01',1,20,2202)");
  plant("t_rp_Bill_Discount", "FID, FBillID, FDate, FDiscountAmount, FVoucherID",
        "(1,2,'2009-03-09',9.5,0),(2,2,'2009-03-09',9.5,501)");
  plant("t_rp_Bill_Transfer", "FID, FBillID, FDate, FExportAmount", "(1,2,'2008-03-09',8)");
  plant("t_rp_Bill_Settle", "FID, FBillID, FDate, FAccountID, FAmount, FAmountFor",
        "(1,3,'2009-03-20',2201,30,30),(2,1,'2009-03-21',1121,6,1)");
  EXPECT_THAT(check(), UnorderedElementsAre("票据凭证检查: 应收票据[HP1]:背书凭证没有生成",
                                            "票据凭证检查: 应收票据[HP2]:背书退回凭证没有生成",
                                            "票据凭证检查: 应收票据[HP2]:贴现凭证没有生成",
                                            "票据凭证检查: 应收票据[HP1]:收款凭证没有生成"));
  EXPECT_THAT(check(false), ElementsAre("票据凭证检查: 应付票据[HP3]:付款凭证没有生成"));

  const auto dFilter = filter();
  dFilter->Set("LocalDecimal", 2);
  dFilter->Set("ItemFilter", "t1.FNumber = 'A01'");
  EXPECT_THAT(documents(object_->GetUnVchBillStr(dFilter)),
              UnorderedElementsAre("HP1 682.82 2202", "HP1 6 1121"))
      << "100.01 at 6.8275 is 682.818..., rounded to the local currency's decimals";
  dFilter->Set("ItemFilter", "");
  dFilter->Set("bCheckPassed", true);
  EXPECT_THAT(documents(object_->GetUnVchBillStr(dFilter)),
              testing::AllOf(testing::Contains("HP2 8 0"), testing::SizeIs(5)));
}

TEST_F(ClosingFindings, SettlementsWithoutVoucher) {
  plant("t_rp_Contact", kContact,
        "(1,1,0,'AR1','2009-03-05','2009-03-05',2009,3,1,1,501,0,0,0),"
        "(2,5,1,'SK2','2009-03-06','2009-03-06',2009,3,1,1,501,0,0,0)");
  plant("t_rp_NewCheckInfo",
        "FInterID, FID, FContactID, FType, FRP, FCheckDate, FTransfer, FTransferID, FARToAR, "
        "FZXID, FUnTread, FVoucherID",
        "(1,71,1,1,1,'2009-03-07',1,5,-1,0,0,0),"   // a transfer
        "(2,72,2,5,1,'2009-03-07',1,0,-1,0,0,0),"   // an advance offset
        "(3,73,1,1,1,'2009-03-31',0,0,0,9,0,0),"    // a write-off, both its rows
        "(4,73,2,5,1,'2009-03-31',0,0,1,9,0,0),"    //
        "(5,74,1,1,1,'2009-03-08',0,0,-1,0,1,0),"   // a returned bill
        "(6,75,1,1,1,'2009-03-08',1,6,0,9,1,501),"  // all of them, with a voucher
        "(7,76,1,1,1,'2009-04-08',1,7,0,9,1,0)");   // all of them, next period
  EXPECT_THAT(check(), ElementsAre("转销凭证检查: 账款的转销凭证还未生成。核销序号：73",
                                   "退票凭证检查: 账款的退票凭证还未生成",
                                   "转账凭证检查: 转账[AR1][核销序号: 71]:没有生成转账凭证",
                                   "转账凭证检查: 预收冲应收[SK2][核销序号:72]:没有生成转账凭证"));
  EXPECT_THAT(check(false), IsEmpty());
}

TEST_F(ClosingFindings, ControlAccountsAgainstVouchers) {
  profile("FCheckAccount", "1");
  plant("ICSale", kInvoice,
        "(1,10,'XS1','2009-03-02','2009-03-02',2009,3,1,501,0,101),"     // no account
        "(2,10,'XS2','2009-03-02','2009-03-02',2009,3,1,501,0,102),"     // a style without account
        "(3,10,'XS3','2009-03-02','2009-03-02',2009,3,1,501,0,103),"     // another such style
        "(4,10,'XS4','2009-03-02','2009-03-02',2009,3,1,501,1123,101),"  // not on the voucher
        "(5,10,'XS5','2009-03-02','2009-03-02',2009,3,1,501,1122,101)");
  plant("ICSaleEntry", "FInterID, FEntryID, FAmount, FStdAmount",
        "(1,1,1,1),(2,1,1,1),(3,1,1,1),(4,1,1,1),(5,1,1,1)");
  plant("t_rp_ARPBill", kDocument,
        "(1,11,'YS1','2009-03-03','2009-03-03',2009,3,1,1,null,501,1,1),"
        "(2,11,'YS2','2009-03-03','2009-03-03',2009,3,1,1,1123,501,1,1),"
        "(3,11,'YS3','2009-03-03','2009-03-03',2009,3,1,1,1122,501,1,1)");
  plant("t_rp_Contact", kContact, "(1,1,0,'YS1','2009-03-03','2009-03-03',2009,3,1,1,501,1,0,0)");
  plant("t_rp_NewReceiveBill", kReceipt, "(1,12,'SK1','2009-03-04','2009-03-04',2009,3,1,1,501)");
  plant("t_rp_ARBillOfSH", "FBillID, FIndex, FAccountID, FSettleAmount, FSettleAmountFor",
        "(1,1,1122,10,10),(1,2,1123,5,5),(1,3,0,1,1)");
  EXPECT_THAT(check(), UnorderedElementsAre(
                           "单据往来科目检查: 销售发票[XS1]:单据上没有设置往来科目",
                           "单据往来科目检查: 销售发票[XS4]:单据上的往来科目与对应凭证不一致",
                           "单据往来科目检查: 其他应收单[YS1]:单据上没有设置往来科目",
                           "单据往来科目检查: 其他应收单[YS2]:单据上的往来科目与对应凭证不一致",
                           "单据往来科目检查: 收款单[SK1]:单据上没有设置往来科目",
                           "单据往来科目检查: 收款单[SK1]:单据上的往来科目与对应凭证不一致"));
  auto dFilter = filter();
  EXPECT_THAT(documents(object_->GetUnAccountArpBillStr(dFilter)),
              testing::AllOf(testing::Contains("SK1 5 1123"), testing::Contains("SK1 1 0"),
                             testing::Contains("XS4 1 1123")));
}

TEST_F(ClosingFindings, PeriodsOfVouchersAndInvoices) {
  profile("FCheckAccount", "1");
  plant("t_rp_Contact", kContact,
        "(1,5,0,'SK1','2009-03-05','2009-03-05',2009,3,1,1,502,0,0,0),"
        "(2,5,0,'SK2','2009-03-05','2009-03-05',2009,3,1,1,501,0,0,0),"
        "(3,3,0,'XS1','2009-03-31','2009-03-31',2009,3,1,1,501,0,1,1),"
        "(4,3,0,'XS2','2009-03-31','2009-03-31',2009,3,1,1,501,0,2,1),"
        "(5,3,0,'XS3','2009-03-31','2009-03-31',2009,2,1,1,501,0,3,1),"
        "(6,3,0,'XS4','2008-03-31','2008-03-31',2008,3,1,1,501,0,4,1),"
        "(7,3,0,'XS5','2009-02-28','2009-02-28',2009,2,1,1,501,0,5,0),"
        "(8,5,0,'SK3','2009-03-05','2009-03-05',2009,3,1,1,502,0,0,0)");
  run("update t_rp_Contact set FIsinit = 1 where FNumber = 'SK3'");
  plant("ICSale", kInvoice,
        "(1,10,'XS1','2009-03-31','2009-04-01',2009,3,0,501,1122,101),"  // financial date in April
        "(2,10,'XS2','2009-03-31','2009-03-31',2009,3,0,501,1122,101),"
        "(3,10,'XS3','2009-03-31','2009-03-31',2009,3,0,501,1122,101),"   // its record in February
        "(4,10,'XS4','2009-03-31','2009-03-31',2009,3,0,501,1122,101),"   // ... a year ago
        "(5,10,'XS5','2009-03-31','2009-03-31',2009,3,0,501,1122,101)");  // ... not imported
  const auto invoice = [](const std::string& number) {
    return "单据期间检查: 销售发票[" + number +
           "]:物流单据的财务期间和应收应付系统不一致,可以通过重新审核来处理。";
  };
  EXPECT_THAT(check(), UnorderedElementsAre(invoice("XS1"), invoice("XS3"), invoice("XS4"),
                                            "单据期间检查: 收款单[SK1]:单据期间与对应凭证不一致"));
}

TEST_F(ClosingFindings, VouchersWithoutDocuments) {
  plant("t_Voucher", "FVoucherID, FDate, FYear, FPeriod, FGroupID, FNumber, FInternalInd",
        "(601,'2009-03-05',2009,3,1,7,null),(602,'2009-03-05',2009,3,1,8,'AP'),"
        "(603,'2009-03-05',2009,3,1,9,''),(604,'2009-02-05',2009,2,1,3,null)");
  plant("t_VoucherEntry", "FVoucherID, FEntryID, FAccountID",
        "(601,1,1122),(601,2,1122),(602,1,1122),(603,1,1122),(604,1,1123)");
  plant("t_rp_Contact", kContact, "(1,5,0,'SK1','2009-03-05','2009-03-05',2009,3,1,1,603,0,0,0)");
  auto dFilter = filter();
  const auto numbers = [&](const char* accounts) {
    dFilter->Set("AcctList", accounts);
    std::string found;
    const auto rows = object_->GetData(dsn(), object_->GetNoBillVoucherStr(dFilter));
    for (; !rows->EOF_(); rows->MoveNext())
      found += rows->Fields()("FGroupName").Value().toText() + '-' +
               rows->Fields()("FNumber").Value().toText() + ' ';
    return found;
  };
  EXPECT_EQ(numbers("1122,1123"), "记-7 ");
  EXPECT_EQ(numbers("2202"), "");
  EXPECT_EQ(numbers(""), "");
  dFilter->Set("bCheckPassed", true);
  EXPECT_EQ(numbers("1123"), "记-3 ");
}

TEST_F(ClosingFindings, UnconfirmedCashDocumentsAndExpenseInvoices) {
  plant("t_rp_NewReceiveBill", std::string(kReceipt) + ", FClassTypeID_CN, FTransDate_CN, FConfirm",
        "(1,12,'SK1','2009-03-04','2009-03-04',2009,3,1,1,501,1006004,'2009-03-31',0),"
        "(2,12,'SK2','2009-03-04','2009-03-04',2009,3,1,1,501,1006004,'2009-03-31',1),"
        "(3,12,'SK3','2009-03-04','2009-03-04',2009,3,1,1,501,1006004,'2009-04-01',0),"
        "(4,12,'FK4','2009-03-04','2009-03-04',2009,3,0,1,501,1006002,'2009-03-01',0)");
  plant("ICTransactionType", "FID, FName", "(76,'其他'),(77,'采购费用发票'),(78,'费用发票')");
  plant("ICExpenses", "FInterID, FBillNo, FDate, FTranType, FPOStyle, FInvType",
        "(1,'FY1','2009-03-04',77,201,0),(2,'FY2','2009-03-04',78,201,202),"
        "(3,'FY3','2009-03-04',78,201,0),"
        "(5,'FY5','2009-03-04',78,201,203),(6,'FY6','2009-03-04',77,204,0),"
        "(8,'FY8','2009-03-04',76,201,0)");
  // The same codes among the messages of other kinds.
  plant("t_SubMessage", "FInterID, FTypeID, FID", "(203,105,'xf01'), (204,163,'PO01')");
  plant("t_rp_ARPBill", std::string(kDocument) + ", FSource, FSourceID, FCheckStatus",
        "(1,11,'YF1','2009-03-03','2009-03-03',2009,3,0,1,2202,501,1,1,4,1,null),"
        "(2,11,'YF2','2009-03-03','2009-03-03',2009,3,0,1,2202,501,1,1,8,2,2),"
        "(3,11,'YF3','2009-03-03','2009-03-03',2009,3,0,1,2202,501,1,1,8,3,0),"
        "(4,11,'YF4','2009-03-03','2009-03-03',2009,3,0,1,2202,501,1,1,4,1,1),"
        "(5,11,'YF5','2009-03-03','2009-03-03',2009,3,0,1,2202,501,1,1,8,5,0),"
        "(6,11,'YF6','2009-03-03','2009-03-03',2009,3,0,1,2202,501,1,1,8,6,0),"
        "(7,11,'YF7','2009-03-03','2009-03-03',2009,3,0,1,2202,501,1,1,0,1,0),"
        "(8,11,'YF8','2009-03-03','2009-03-03',2009,3,0,1,2202,501,1,1,4,8,0)");
  const std::string expenses = "现购类费用发票需要在当期核销完毕";
  EXPECT_THAT(check(), ElementsAre("现购费用发票检查: 采购费用发票[YF1]:" + expenses,
                                   "现购费用发票检查: 费用发票[YF2]:" + expenses,
                                   "单据确认检查: 收款单[SK1]:单据没有确认"));
  EXPECT_THAT(check(false), testing::Contains("单据确认检查: 付款单[FK4]:单据没有确认"));
}

TEST_F(ClosingFindings, TakesTheLastPeriodOnlyFromTheCalendar) {
  auto option = com::make<Dictionary>();
  option->Set("BYear", 2012);
  option->Set("BPeriod", 1);
  com::Ref<com::IUnknown> found;
  canClose_ = true;
  EXPECT_FALSE(object_->CheckClosingData(dsn(), option, found, canClose_));
  EXPECT_FALSE(canClose_);
  EXPECT_FALSE(found);
  EXPECT_THAT(reason().description, testing::HasSubstr("2012"));
}

}  // namespace
}  // namespace velmora
