// Liabilities estimated for receipts without invoice, and settlements that move amounts.

#include "reconciled_books.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;

const std::vector<std::string> kArp{"FArpBegAmount", "FArpDebitAmount", "FArpCreditAmount",
                                    "FArpAmount"};

class Estimates : public ReconciledBooks {
 protected:
  Estimates() {
    payables();
    filter_->Set("AcctList", "2204");
    filter_->Set("AcctLogic", "+");
    filter_->Set("bZanGu", true);
  }

  /// A receipt with one entry of ten pieces; a voucher of 0 is none.
  void receipt(int id, int tranType, const std::string& date, const std::string& voucher,
               int amount) {
    const std::string head = '(' + text(id) + ',' + text(tranType) + ",'R" + text(id) + "','" +
                             date + "',21,2204," + voucher + ')';
    plant("ICStockBill",
          "FInterID, FTranType, FBillNo, FDate, FSupplyID, FCussentAcctID, FVchInterID", head);
    plant("ICStockBillEntry", "FInterID, FEntryID, FQty, FAmount, FProcessCost",
          '(' + text(id) + ",1,10," + text(amount) + ',' + text(amount) + ')');
  }
  void subcontract(int id, const std::string& date, int amount) {
    plant("ICShop_SubcIn", "FInterID, FBillNo, FDate, FSupplierID, FAcctID, FVchInterID",
          '(' + text(id) + ",'W" + text(id) + "','" + date + "',21,2204,-1)");
    plant("ICShop_SubcInEntry", "FInterID, FEntryID, FBasePassQty, FAmount",
          '(' + text(id) + ",1,10," + text(amount) + ')');
  }
  void match(int id, int tranType, int receipt, int quantity, bool inFull, int period) {
    plant("ICHookRelations",
          "FID, FIBTag, FTranType, FIBInterID, FEntryID, FHookQty, FEquityHook, FYear, FPeriod",
          '(' + text(id) + ",1," + text(tranType) + ',' + text(receipt) + ",1," + text(quantity) +
              ',' + (inFull ? "1" : "0") + ",2009," + text(period) + ')');
  }
  void record(int id, int receipt, int tranType, int period) {
    plant("t_MakeVouchTemp", "FID, FSCBillInterID, FTranType, FYear, FPeriod",
          '(' + text(id) + ',' + text(receipt) + ',' + text(tranType) + ",2009," + text(period) +
              ')');
  }
  void voucherRule(bool on) {
    run("delete from t_SystemProfile where FKey = 'MakeZanGuVoucher'");
    plant("t_SystemProfile", "FCategory, FKey, FValue",
          std::string("('IC','MakeZanGuVoucher','") + (on ? "0')" : "1')"));
  }
};

TEST_F(Estimates, OfTheQuantityNotInvoiced) {
  voucherRule(false);
  receipt(1, 1, "2009-02-10", "-1", 100);  // four tenths matched before, one in the period
  match(1, 1, 1, 4, false, 2);
  match(2, 1, 1, 1, false, 3);
  match(3, 1002523, 1, 9, false, 2);        // of the subcontract receipt with the same id
  receipt(2, 1, "2009-02-10", "-1", 1000);  // matched in full before
  match(4, 1, 2, 10, true, 2);
  receipt(3, 1, "2009-02-10", "-1", 20);  // matched in full in the period
  match(5, 1, 3, 10, true, 3);
  receipt(4, 1, "2009-03-05", "-1", 7);     // of the period, open
  receipt(5, 1, "2009-03-05", "0", 5000);   // no voucher yet
  receipt(6, 1, "2009-04-01", "-1", 9000);  // of the next period
  receipt(7, 1, "2009-03-05", "-1", 8000);  // void
  run("update ICStockBill set FCancellation = 1 where FInterID = 7");
  receipt(8, 1, "2009-03-05", "-1", 6000);  // left out of estimates
  run("insert into ICHookRelations (FID, FIBTag, FTranType, FIBInterID, FYear, FPeriod) values "
      "(9,4,1,8,2009,3)");
  // 60 + 20 before; 7 - 10 - 20 within.
  EXPECT_THAT(periodRows(kArp),
              IsSupersetOf({"2204|S1|0 80 0 -23 57", "2204(小计)||101 80 0 -23 57"}));
  filter_->Set("bShowDetail", false);
  EXPECT_THAT(periodRows(kArp), ElementsAre("2204|合计|0 80 0 -23 57"));
  EXPECT_THAT(closingRows(kArp), ElementsAre("|合计|0 80 -23 0 57")) << "movements not exchanged";
}

TEST_F(Estimates, AsTheVoucherRecordsTell) {
  voucherRule(true);
  receipt(1, 1, "2009-01-10", "null", 100);  // estimated before
  record(1, 1, 4000, 2);
  receipt(2, 1, "2009-01-10", "null", 10);  // estimated before, reversed in the period
  record(2, 2, 4000, 2);
  record(3, 2, -4000, 3);
  receipt(3, 1, "2009-01-10", "50", 7);  // cleared by a full match of the period
  record(4, 3, 4000, 2);
  match(1, 1, 3, 10, true, 3);
  receipt(4, 1, "2009-01-10", "null", 3);  // estimated in the period
  record(5, 4, 4000, 3);
  receipt(5, 1, "2009-01-10", "null", 1000);  // matched in full before, estimated again since
  record(6, 5, 4000, 2);
  match(2, 1, 5, 10, true, 2);
  receipt(6, 1, "2009-01-10", "-1", 40);  // recorded one period late
  record(7, 6, 4000, 4);
  EXPECT_THAT(periodRows(kArp), testing::Contains("2204|S1|0 117 0 26 143"))
      << "100+10+7 before; -10-7+3+40 within";
}

TEST_F(Estimates, OfOutsourcedProcessing) {
  voucherRule(true);
  filter_->Set("bZanGu", false);
  filter_->Set("bWeiWai", true);
  receipt(1, 5, "2009-02-10", "null", 100);
  record(1, 1, 5, 2);
  receipt(2, 5, "2009-03-10", "null", 30);
  record(2, 2, 5, 3);
  subcontract(7, "2009-02-10", 50);
  match(1, 1002523, 7, 2, false, 2);
  subcontract(8, "2009-03-10", 4);
  EXPECT_THAT(periodRows(kArp), testing::Contains("2204|S1|0 140 0 34 174"));
}

TEST_F(Estimates, StayOutWhereTheyDoNotBelong) {
  voucherRule(false);
  receipt(1, 1, "2009-03-05", "-1", 7);
  const auto balance = [&] { return periodRows({"FArpAmount"}).at(0); };
  filter_->Set("bShowDetail", false);
  EXPECT_EQ(balance(), "2204|合计|0 7");
  filter_->Set("CurrencyID", 3);
  EXPECT_EQ(balance(), "2204|合计|0 0") << "estimates are in local currency";
  filter_->Set("CurrencyID", 0);
  filter_->Set("bZanGu", false);
  EXPECT_EQ(balance(), "2204|合计|0 0");
  receivables();
  filter_->Set("bZanGu", true);
  EXPECT_EQ(balance(), "1122|合计|0 0");
}

TEST_F(Estimates, RaiseTheBalanceAloneInAnInitialCheck) {
  voucherRule(false);
  receipt(1, 1, "2009-03-05", "-1", 7);
  filter_->Set("bInitCheck", true);
  filter_->Set("bShowDetail", false);
  EXPECT_THAT(periodRows({"FArpAmount"}), ElementsAre("2204|合计|0 7"));
}

TEST_F(Estimates, LeaveAClosingCheckWithoutReceiptsAlone) {
  voucherRule(false);
  contact(0, 21, 2204, 5, 0, 0);
  filter_->Set("bWeiWai", true);
  filter_->Set("bShowDetail", false);
  EXPECT_THAT(closingRows(kArp), ElementsAre("|合计|0 5 0 0 5")) << "no row, not Null";
}

class SettlementRecords : public ReconciledBooks {
 protected:
  /// An advance (account 2203) offset against an invoice (1122) in `date`'s period.
  void offset(int id, const std::string& date, int amount) {
    const std::string number = text(id), value = text(amount);
    run("insert into t_rp_NewCheckInfo (FInterID, FID, FContactID, FBillID, FType, FRP, "
        "FCheckType, FCheckDate, FCustomer) values (" +
        text(2 * id) + ',' + number + ",1,100,5,1,1,'" + date + "',11), (" + text(2 * id + 1) +
        ',' + number + ",2,200,3,1,1,'" + date + "',11)");
    run("insert into t_rp_CheckEntry (FID, FContactID, FEntryID, FBillID, FType, FCheckAmountFor, "
        "FCheckAmount) values (" +
        number + ",1,1,100,5," + value + ',' + value + "), (" + number + ",2,1,200,3," + value +
        ',' + value + ')');
  }
  void plantDocuments() {
    run(R"(insert into t_rp_ARBillOfSH (FBillID, FIndex, FAccountID) values (100,1,2203)
           insert into ICSale (FInterID, FClassTypeID, FBillNo, FDate, FYear, FPeriod,
               FFincDate, FCussentAcctID) values (200,1,'X','2009-01-01',2009,1,'2009-01-01',1122))");
  }
};

TEST_F(SettlementRecords, MoveAmountsBetweenAccounts) {
  plantDocuments();
  offset(1, "2009-02-20", 40);
  offset(2, "2009-03-20", 5);
  offset(3, "2009-04-20", 900);
  EXPECT_THAT(periodRows(kArp), IsSupersetOf({"1122|C1|0 -40 0 5 -45", "2203|C1|0 40 5 0 45"}));
  profile("FARPreNeedVoucher", "0");
  EXPECT_THAT(periodRows(kArp), IsSupersetOf({"1122|C1|0 0 0 0 0", "2203|C1|0 0 0 0 0"}));
  EXPECT_EQ(filter_->Value("strCheckInfoSQL").toText(), "");
}

TEST_F(SettlementRecords, AreThoseOfTheCallersSubSystem) {
  plantDocuments();
  offset(2, "2009-03-20", 5);
  side_ = "AP";
  EXPECT_THAT(periodRows(kArp), testing::Contains("1122|C1|0 0 0 0 0"));
  side_ = "AR";
  filter_->Set("BItemNumber", "C2");
  filter_->Set("bShowDetail", false);
  EXPECT_THAT(periodRows(kArp), ElementsAre("1122|合计|0 0 0 0 0", "2203|合计|0 0 0 0 0"));
}

}  // namespace
}  // namespace velmora
