// The texts of the closing checks' queries, where a letter or a switch matters.

#include "checks/closing/query_builders.h"

#include <gmock/gmock.h>

#include "answered.h"
#include "error_of.h"
#include "frame/classes.h"
#include "late_bound.h"
#include "scripted_database.h"
#include "velmora/interfaces.h"

namespace velmora {
namespace {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::size_t count(std::string_view text, std::string_view part) {
  std::size_t found = 0;
  for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1))
    ++found;
  return found;
}

class QueryBuilders : public testing::Test {
 protected:
  /// A filter as the check list completes it, for period 3 of 2009.
  static DictionaryRef filter(std::initializer_list<std::pair<const char*, Variant>> more = {}) {
    auto dFilter = com::make<Dictionary>();
    dFilter->Set("strLanguage", "chs");
    dFilter->Set("bArp", true);
    dFilter->Set("LocalDecimal", 2);
    dFilter->Set("BYear", 2009);
    dFilter->Set("BPeriod", 3);
    for (const auto& [key, value] : more) dFilter->Set(key, value);
    return dFilter;
  }
  std::string build(std::string (_clsInitBalCheck::*builder)(DictionaryRef&),
                    DictionaryRef dFilter) {
    return (object_.get()->*builder)(dFilter);
  }
  std::string bills(const DictionaryRef& dFilter) { return object_->GetUnVchBillStr(dFilter); }

  com::ScopedClass class_{publicClasses()[0]};
  com::Ref<_clsInitBalCheck> object_ =
      com::CreateObject(_clsInitBalCheck::kProgId).as<_clsInitBalCheck>();
};

TEST_F(QueryBuilders, ListDocumentsWithoutVoucher) {
  EXPECT_EQ(
      build(&_clsInitBalCheck::GetUnVchArpBillStr, filter()),
      "select v1.FDate, u1.Fname as FType, v1.FBillNo, v1.FcurrencyID,isnull(v1.FAcctID,0) as "
      "FAccountID, v2.FAmount , v2.FAmountFor,'没有生成凭证' as FerrInfo\r\n"
      "from icsale v1 inner join\r\n"
      "( select v1.FInterID , sum(v2.FStdAmount) as FAmount, sum(v2.Famount) as FAmountFor\r\n"
      "    from icsale v1 inner join icsaleEntry v2 on (v1.finterid = v2.finterid)\r\n"
      "    inner join t_currency t10 on (v1.FCurrencyID = t10.FCurrencyID)\r\n"
      "    Where IsNull(v1.FVchInterID, 0) <= 0 and v1.FArapStatus & 1 = 1 and (v1.FYear = 2009 "
      "and v1.FPeriod = 3)\r\n"
      "    group by v1.FInterID ) v2 on (v1.FInterID = v2.FInterID)\r\n"
      "inner join t_rp_billtype u1 on (v1.FClasstypeID = u1.FID)\r\n"
      "inner join t_currency t10 on (v1.FCurrencyID = t10.FCurrencyID)\r\n"
      "union \r\n"
      "select v1.FDate , u1.Fname as FType, v1.Fnumber as FbillNo , v1.FCurrencyID, "
      "isnull(v1.FAccountID,0) as FAccountID,v1.FAmount , v1.FAmountFor,'没有生成凭证' as "
      "FerrInfo\r\n"
      "from t_rp_arpbill v1 inner join t_rp_billType u1 on (v1.FClasstypeiD = u1.FID)\r\n"
      "inner join t_currency t10 on (v1.FCurrencyID = t10.FCurrencyID)\r\n"
      "Where v1.Frp = 1 and v1.FStatus & 1 = 1 And IsNull(v1.FVoucherID, 0) <= 0  and (v1.FYear = "
      "2009 and v1.FPeriod = 3)\r\n"
      "union \r\n"
      "select v1.FDate , u1.Fname as FType, v1.Fnumber as FbillNo , v1.FCurrencyID, "
      "v2.FAccountID,v2.FAmount , v2.FAmountFor,'没有生成凭证' as FerrInfo\r\n"
      "from t_rp_newreceivebill v1 inner join\r\n"
      "( select v1.FBillID, isnull(v2.FAccountID,0) as FAccountID,sum(v2.FSettleAmount) as Famount "
      ", sum(v2.FSettleAmountFor) as famountfor\r\n"
      "    from t_rp_newreceivebill v1 inner join t_rp_ARBillOfSH v2 on (v1.FBillID = "
      "v2.FBillID)\r\n"
      "    inner join t_currency t10 on (v1.FCurrencyID = t10.FCurrencyID)\r\n"
      "Where v1.Frp = 1 and v1.FStatus & 1 = 1 And IsNull(v1.FVoucherID, 0) <= 0  And (v1.FYear = "
      "2009 and v1.FPeriod = 3)\r\n"
      "group by v1.FBillid, isnull(v2.FAccountID,0)\r\n"
      ") v2 on (v1.FBillID = v2.FBillID)\r\n"
      "inner join t_rp_billType u1 on (v1.FClasstypeiD = u1.FID)");
}

TEST_F(QueryBuilders, FollowSideLanguageAndShowAll) {
  const auto payables = build(&_clsInitBalCheck::GetUnVchArpBillStr,
                              filter({{"bArp", false}, {"strLanguage", "en"}}));
  EXPECT_THAT(payables, AllOf(HasSubstr("from icpurchase v1 inner join icpurchaseEntry v2"),
                              HasSubstr("u1.Fname_EN as FType"), HasSubstr("Where v1.Frp = 0 and"),
                              Not(HasSubstr("icsale"))));
  EXPECT_EQ(count(payables, "union "), 2u);
  const auto both = build(&_clsInitBalCheck::GetUnVchArpBillStr, filter({{"bShowAll", true}}));
  EXPECT_EQ(count(both, "union "), 3u);
  EXPECT_LT(both.find("icsale"), both.find("icpurchase"));
  EXPECT_EQ(count(both, "Where v1.Frp = 1 and"), 2u) << "documents keep their side";

  const auto invoices = build(&_clsInitBalCheck::GetUnVchInvoiceStr, filter({{"bShowAll", true}}));
  EXPECT_THAT(invoices,
              AllOf(HasSubstr("    Where IsNull(v1.FVchInterID, 0) <= 0  and v1.FArapStatus & 1 > "
                              "0 and (v1.FYear = 2009 and v1.FPeriod = 3)"),
                    Not(HasSubstr("icpurchase")), Not(HasSubstr("union"))));
}

TEST_F(QueryBuilders, WidenThePeriodForPassedOnes) {
  const std::string upTo = "( (v1.FYear = 2009 and v1.FPeriod <=3 ) or v1.FYear < 2009 )";
  const auto passed = filter({{"bCheckPassed", true}, {"AcctList", "101,102"}});
  EXPECT_EQ(count(build(&_clsInitBalCheck::GetUnVchArpBillStr, passed), upTo), 3u);
  EXPECT_EQ(count(build(&_clsInitBalCheck::GetUnAccountArpBillStr, passed), upTo), 6u);
  EXPECT_EQ(count(build(&_clsInitBalCheck::GetNoBillVoucherStr, passed), upTo), 1u);
  EXPECT_THAT(build(&_clsInitBalCheck::GetUnAuditArpBillStr, passed),
              EndsWith(" and v1.FYear=2009\r\n and FPeriod=3"));
  EXPECT_EQ(count(bills(passed),
                  " and ((Year(d.FDate)=2009 and Month(d.FDate) <=3) or Year(d.FDate)<2009)"),
            3u);
  EXPECT_THAT(bills(passed),
              EndsWith(" and ((Year(s.FDate)=2009 and Month(s.FDate) <=3) or Year(s.FDate)<2009)"));
  EXPECT_THAT(object_->GetUnVchExtBillStr(passed),
              AllOf(HasSubstr("t_rp_newcheckinfo"), Not(HasSubstr("fcheckdate"))));
}

TEST_F(QueryBuilders, AddTheCallersConditions) {
  const auto currency = filter({{"CurrencyID", 3}});
  const auto both = filter({{"CurrencyID", 3}, {"ItemFilter", "t1.FNumber >= 'A'"}});
  const auto item = filter({{"CurrencyID", 0}, {"ItemFilter", "t1.FNumber >= 'A'"}});
  EXPECT_EQ(count(bills(currency), " and  t10.FCurrencyID = 3"), 4u);
  EXPECT_THAT(bills(currency), Not(HasSubstr("t_item")));
  EXPECT_EQ(count(bills(both), " and t1.FNumber >= 'A' and  t10.FCurrencyID = 3"), 4u);
  EXPECT_EQ(count(bills(item), " inner join t_item t1 on (b.FCustomer = t1.FItemID)\r\n  where "),
            4u);
  EXPECT_THAT(bills(item), AllOf(EndsWith(" and t1.FNumber >= 'A'"), Not(HasSubstr("= 0"))));
  EXPECT_EQ(count(build(&_clsInitBalCheck::GetUnAccountArpBillStr, both),
                  " and t1.FNumber >= 'A' and  t10.FCurrencyID = 3"),
            6u);
  const auto unaudited = build(&_clsInitBalCheck::GetUnAuditArpBillStr, both);
  EXPECT_THAT(unaudited, AllOf(HasSubstr(" inner join t_item t1 on (v1.FCustomer = t1.FItemID)"),
                               Not(HasSubstr("t1.FNumber >=")), Not(HasSubstr("= 3\r\n"))));
  EXPECT_EQ(build(&_clsInitBalCheck::GetNoBillVoucherStr, filter({{"AcctList", "101"}})),
            build(&_clsInitBalCheck::GetNoBillVoucherStr,
                  filter({{"AcctList", "101"}, {"CurrencyID", 3}, {"ItemFilter", "1=1"}})));
}

TEST_F(QueryBuilders, ListBillsOfExchangeWithoutVoucher) {
  const auto payables = bills(filter({{"bArp", false}}));
  EXPECT_EQ(payables,
            "select b.FSignDate as Fdate,'应付票据' as "
            "FType,b.FBillNo,s.FCurrencyID,s.FAccountID,s.FAmount, "
            "s.FAmountFor,'付款凭证没有生成' as FErrInfo\r\n"
            " from t_rp_bill_settle s inner join t_rp_bill b on (s.FBillID=b.FBillID) \r\n"
            " inner join t_currency t10 on (b.FCurrencyID = t10.FCurrencyID)\r\n"
            "  where s.FVoucherID<=0 \r\n"
            " and b.FRp = 0\r\n"
            " and Year(s.FDate)=2009 and Month(s.FDate)=3");
  const auto receivables = bills(filter({{"LocalDecimal", 4}}));
  EXPECT_EQ(count(receivables, " union \r\n"), 3u);
  for (const char* part :
       {"(Case Ftype when 1 then '背书凭证没有生成' else '背书退回凭证没有生成' end)",
        "d.FAccountID as FAccountID,round(d.FAmount * t10.FExchangeRate,4) as FAmount,d.FAmount "
        "as FAmountFor",
        "round(d.FDiscountAmount * t10.FExchangeRate,4)",
        "0 as FAccountID,round(d.FExportAmount * t10.FExchangeRate,4)",
        "from t_rp_bill_endorse d inner join t_rp_bill b on (d.FBillID=b.FBillID)",
        "from t_rp_bill_discount d inner join t_rp_bill b on (d.FBillID=b.FBillID)",
        " from t_rp_bill_transfer d inner join t_rp_bill b on (d.FBillID=b.FBillID)",
        "'贴现凭证没有生成'", "'转让凭证没有生成'", "'收款凭证没有生成'"})
    EXPECT_THAT(receivables, HasSubstr(part));
}

TEST_F(QueryBuilders, ListTransfersWithoutVoucher) {
  ScriptedDatabase database;
  const auto service = monthlyPeriods();
  EXPECT_EQ(object_->GetUnVchExtBillStr(filter()), "");
  ASSERT_TRUE(com::GetErrorInfo()) << "the period's dates need a data source";
  EXPECT_THAT(reason().description, HasSubstr("sDsn"));

  EXPECT_EQ(object_->GetUnVchExtBillStr(filter({{"bPreChecked", false}, {"sDSN", kScriptedDsn}})),
            " select d.FDate, d.FNumber as FBillNO,'转账' as Ftype,'没有生成转账凭证' as FErrInfo, "
            "c.FInterID,c.FTransferID,d.FPre , c.FID \r\n"
            "from t_rp_newcheckinfo c inner join t_rp_contact d on (c.FContactID=d.FID)\r\n"
            " where c.FTransfer=1 \r\n"
            " and FTransferID > 0 \r\n"
            " and (c.FVoucherID<=0 ) \r\n"
            " and fcheckdate>='2009-03-01' and fcheckdate<='2009-03-31'\r\n"
            " and d.FRP=1");
  EXPECT_EQ(object_->GetUnVchExtBillStr(filter()), "") << "the string was for that one call";
  object_->GetData(kScriptedDsn, "select 1");
  const auto advances =
      object_->GetUnVchExtBillStr(filter({{"bPreChecked", true}, {"bArp", false}}));
  for (const char* part :
       {"'预付冲应付' as Ftype", " and c.FTransferID=0 ", " and c.FVoucherID<=0 ", " and c.frp=0",
        " and  ( d.FPre = 1 or (d.fpre = 0 and d.fisinit = 1 )) ", " and (c.FType=6 or c.FType=16)",
        " and d.FRP=0"})
    EXPECT_THAT(advances, HasSubstr(part));
  EXPECT_THAT(object_->GetUnVchExtBillStr(filter({{"bPreChecked", true}})),
              AllOf(HasSubstr("'预收冲应收'"), HasSubstr(" and (c.FType=5 or c.FType=15)")));
}

TEST_F(QueryBuilders, ListUnauditedDocuments) {
  const auto query = build(&_clsInitBalCheck::GetUnAuditArpBillStr, filter());
  EXPECT_THAT(
      query,
      AllOf(StartsWith(" select  v1.FDate,v1.FNumber as FBillNO,t10.FCurrencyID,v1.FAmount, "
                       "v1.FAmountFor,\r\n"),
            HasSubstr("when v1.FType=5 and v1.FPre=-1 then '应收退款单'"),
            HasSubstr("when v1.FType=3 then '销售发票'"), HasSubstr("'单据没有审核' as FErrInfo"),
            HasSubstr(" where ( v1.FStatus & 1 )=0 \r\n and   ( v1.FStatus & 16 )=0 \r\n and "
                      "v1.FRP=1\r\n and v1.FYear=2009")));
  EXPECT_THAT(build(&_clsInitBalCheck::GetUnAuditArpBillStr, filter({{"bShowAll", true}})),
              Not(HasSubstr("FRP")));
}

TEST_F(QueryBuilders, CompareControlAccountsWithVouchers) {
  const auto receivables = build(&_clsInitBalCheck::GetUnAccountArpBillStr, filter());
  const auto payables = build(&_clsInitBalCheck::GetUnAccountArpBillStr, filter({{"bArp", false}}));
  EXPECT_THAT(receivables,
              AllOf(HasSubstr("      inner join t_submessage s5 on (v1.FSaleStyle = s5.finterid )"),
                    HasSubstr("    Where IsNull(v1.fcussentacctid, 0) = 0 and v1.FArapStatus & 1 = "
                              "1 and s5.fid <> 'FXF01' and s5.FID <> '06' "),
                    HasSubstr("icsaleentry")));
  EXPECT_THAT(payables,
              AllOf(HasSubstr("      inner join t_submessage s5 on (v1.FPOStyle = s5.finterid )"),
                    HasSubstr("1 = 1 and s5.fid <> 'PO01'"), Not(HasSubstr("'06'")),
                    HasSubstr("icpurchaseentry"), HasSubstr("Where v1.Frp = 0 ")));
  EXPECT_EQ(count(receivables, " and v1.FSaleStyle not in(100,20298)"), 2u);
  EXPECT_EQ(count(payables, " and v1.FpoStyle not in(251,20298)"), 2u);
  for (const char* part :
       {"    Where IsNull(v1.fcussentacctid, 0) > 0 and IsNull(v1.FVchInterID, 0) > 0 and "
        "v1.FArapStatus & 1 = 1 and (v1.FYear",
        "    and v1.fcussentacctid not in (select FAccountID from  t_voucherentry where FVoucherID "
        "= v1.FVchInterID)",
        "    inner join t_rp_Contact tc on tc.FRPBillID=v1.FBillID and tc.FType in (1,2) and "
        "tc.FInvoiceType not in (3,4)",
        "Where v1.Frp = 1 and v1.FStatus & 1 = 1 And IsNull(v1.faccountid, 0) = 0  and (v1.FYear",
        " and v1.FVoucherID > 0 And IsNull(v1.faccountid, 0) > 0  and (v1.FYear",
        " and v1.FAccountID not in (select FAccountID from  t_voucherentry where FVoucherID = "
        "v1.FVoucherID)",
        "  And IsNull(v2.FAccountID, 0) = 0  And (v1.FYear",
        "  and v1.FVoucherID > 0 And IsNull(v2.FAccountID, 0) > 0  And (v1.FYear",
        " and v2.FAccountID not in (select FAccountID from  t_voucherentry where FVoucherID = "
        "v1.FVoucherID)"})
    EXPECT_THAT(receivables, HasSubstr(part));
  EXPECT_EQ(count(receivables, "'单据上没有设置往来科目'"), 3u);
  EXPECT_EQ(count(receivables, "'单据上的往来科目与对应凭证不一致'"), 3u);
}

TEST_F(QueryBuilders, ListVouchersWithoutDocuments) {
  const auto query =
      build(&_clsInitBalCheck::GetNoBillVoucherStr, filter({{"AcctList", "101,102"}}));
  for (const char* part :
       {"select v1.FDate,'凭证' as FType, v1.FYear, v1.FPeriod, g1.FName as FGroupName, "
        "v1.FNumber,v1.FExplanation,v1.FDebitTotal as Famount,",
        " inner join (select v1.fvoucherid, min(fentryid) as fentryid ",
        "        where v2.faccountid in (101,102) and (v1.FYear = 2009 and v1.FPeriod = 3)",
        "  where ( isnull(v1.finternalind,'') not in ('ar','ap','Industry'))",
        "  and v1.fvoucherid not in (select fvoucherid from t_rp_contact)"})
    EXPECT_THAT(query, HasSubstr(part));
  for (const Variant& none : {Variant(), Variant(""), Variant("  ")})
    EXPECT_THAT(build(&_clsInitBalCheck::GetNoBillVoucherStr, filter({{"AcctList", none}})),
                HasSubstr("in (null) and"));
}

TEST_F(QueryBuilders, QuoteTranslationsWithApostrophes) {
  FakeLoader fake{{{"没有生成凭证", "the document's voucher is missing"}}};
  const auto installed = fake.install();
  EXPECT_THAT(build(&_clsInitBalCheck::GetUnVchInvoiceStr, filter({{"strLanguage", "EN"}})),
              HasSubstr("'the document''s voucher is missing' as FerrInfo"));
}

TEST_F(QueryBuilders, AnswerNothingWithAReasonWhenTheyFail) {
  const auto broken = filter({{"BYear", Variant(collections::Null{})}});
  EXPECT_EQ(build(&_clsInitBalCheck::GetUnVchArpBillStr, broken), "");
  EXPECT_EQ(reason().number, com::error::kInvalidUseOfNull);
  EXPECT_EQ(object_->GetUnVchBillStr({}), "");
  EXPECT_THAT(reason().description, HasSubstr("dFilter is nothing"));
}

TEST_F(QueryBuilders, ReadTheirOwnKeysOnly) {
  ScriptedDatabase database;
  const auto service = monthlyPeriods();
  const DictionaryRef full = filter({{"bCheckPassed", false},
                                     {"bShowAll", false},
                                     {"CurrencyID", 3},
                                     {"ItemFilter", "1=1"},
                                     {"AcctList", "1"},
                                     {"bPreChecked", false},
                                     {"sDSN", kScriptedDsn}});
  const auto of = [](auto builder) {
    return [builder](Dictionary& dFilter) { return builder(dFilter); };
  };
  const auto called = [this](const char* name) {
    return [this, name](Dictionary& dFilter) {
      return com::call(*object_, name, DictionaryRef(&dFilter)).toText();
    };
  };
  const std::string period = "BYear BPeriod strLanguage ";
  struct Case {
    std::function<std::string(Dictionary&)> build;
    std::string keys;
    bool passed = false, bArp = true;
  };
  for (const Case& c : {
           Case{called("GetUnVchArpBillStr"),
                period + "bArp bCheckPassed bShowAll CurrencyID ItemFilter"},
           Case{called("GetUnVchInvoiceStr"), period + "bArp bCheckPassed CurrencyID ItemFilter"},
           Case{called("GetUnVchBillStr"),
                period + "bArp bCheckPassed CurrencyID ItemFilter LocalDecimal"},
           Case{called("GetUnVchBillStr"), period + "bArp bCheckPassed CurrencyID ItemFilter",
                false, false},
           Case{called("GetUnVchExtBillStr"), period + "bArp bCheckPassed bPreChecked sDSN"},
           Case{called("GetUnVchExtBillStr"), "strLanguage bArp bCheckPassed bPreChecked", true},
           Case{called("GetUnAuditArpBillStr"), period + "bArp bShowAll ItemFilter"},
           Case{called("GetUnAccountArpBillStr"),
                period + "bArp bCheckPassed CurrencyID ItemFilter"},
           Case{called("GetNoBillVoucherStr"), period + "bCheckPassed AcctList"},
           Case{of(closing::GetUnCheckExpInvoiceStr), period + "bCheckPassed"},
           Case{of(closing::GetUnConfirmCashBillStr), period + "bArp"},
           Case{of(closing::GetUnPeriodVchBillStr), period + "bArp"},
           Case{of(closing::GetUnPeriodICBillStr), period + "bArp CurrencyID ItemFilter"},
       }) {
    full->Set("bArp", c.bArp);
    full->Set("bCheckPassed", c.passed);
    const auto own = com::make<Dictionary>();
    for (std::size_t i = 0; i < full->Count(); ++i) {
      const bool read = (c.keys + ' ').find(full->Key(i) + ' ') != std::string::npos;
      own->Set(full->Key(i), read ? full->Item(i) : Variant(collections::Null{}));
    }
    const std::string query = c.build(*full);
    EXPECT_NE(query, "");
    EXPECT_EQ(c.build(*own), query) << c.keys;
  }
  for (const auto builder : {closing::GetUnCheckExpInvoiceStr, closing::GetUnConfirmCashBillStr,
                             closing::GetUnPeriodVchBillStr}) {
    const auto empty = com::make<Dictionary>();
    builder(*empty);
    EXPECT_EQ(empty->Value("bArp"), Variant(true)) << "these store the side when it is absent";
  }
}

TEST_F(QueryBuilders, AnswerTheSameLateBound) {
  const auto dFilter = filter();
  const Variant answer = com::call(*object_, "getunvchbillstr", dFilter);
  EXPECT_EQ(answer.toText(), bills(dFilter));
}

}  // namespace
}  // namespace velmora
