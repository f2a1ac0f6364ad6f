// The amount reconciliation on small books, through the public operations.

#include "answered.h"
#include "reconciled_books.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::vector<std::string> kBalances{"FArpAmount", "FGLAmount", "FDiffAmount"};
const std::vector<std::string> kMovements{"FArpBegAmount",  "FGLBegAmount",     "FArpDebitAmount",
                                          "FGLDebitAmount", "FArpCreditAmount", "FGLCreditAmount",
                                          "FArpAmount",     "FGLAmount"};

class AmountCheck : public ReconciledBooks {
 protected:
  void withReceivables() {
    contact(1, 11, 1122, 100, 50, 30);
    contact(1, 12, 1122, 10, 0, 0, 3);
    contact(1, 11, 2203, -40, 0, 5);
    ledger(1122, 11, 100, 50, 30);
    ledger(1122, 12, 10, 7, 0);
    ledger(2203, 11, -40, 0, 5);
    ledger(1122, 0, 110, 57, 30);
    ledger(2203, 0, -40, 0, 5);
  }
};

TEST_F(AmountCheck, ComparesThePeriodByAccountAndItem) {
  withReceivables();
  EXPECT_THAT(periodRows(kMovements),
              ElementsAre("1122|C1|0 100 100 50 50 30 30 120 120", "1122|C2|0 10 10 0 7 0 0 10 17",
                          "1122(小计)||101 110 110 50 57 30 30 130 137",
                          "2203|C1|0 -40 -40 0 0 5 5 -45 -45", "2203|C2|0 0 0 0 0 0 0 0 0",
                          "2203(小计)||101 -40 -40 0 0 5 5 -45 -45"));
  EXPECT_EQ(answered(answer_)->fieldCount(), 38u);
  EXPECT_EQ(filter_->Value("bShowDetail").toText(), "True");
  EXPECT_EQ(filter_->Value("bChkForAdjust").toText(), "False");
  EXPECT_EQ(filter_->Value("strLanguage").toText(), "chs");
}

TEST_F(AmountCheck, NamesRowsAndLeavesTotalsWithoutIds) {
  withReceivables();
  EXPECT_THAT(periodRows({"FID", "FAcctID", "FAcctName", "FItemClassID", "FItemClassName",
                          "FCurrencyID", "FCurrencyName", "FAmountDecimal", "FSort"}),
              testing::IsSupersetOf({"1122|C1|0 2 1122 应收账款 11 甲 0 人民币 2 0",
                                     "1122(小计)||101 1 0  0  0 人民币 2 0"}));
}

TEST_F(AmountCheck, ComparesAccountsAsAWhole) {
  withReceivables();
  filter_->Set("bShowDetail", false);
  EXPECT_THAT(periodRows(kBalances), ElementsAre("1122|合计|0 130 137 7", "2203|合计|0 -45 -45 0"));
  filter_->Set("CurrencyID", 3);
  ledger(1122, 0, 10, 0, 0, 3);
  EXPECT_THAT(periodRows(kBalances), ElementsAre("1122|合计|0 10 10 0"));
}

TEST_F(AmountCheck, TakesAnAccountInTheCurrencyItIsKeptIn) {
  withReceivables();
  contact(1, 11, 1124, 8, 0, 0, 3);
  ledger(1124, 0, 9, 0, 0, 3);
  filter_->Set("AcctList", "1122,1124,2203");
  const struct {
    int currency;
    bool detail, adjust;
    std::vector<std::string> rows;
  } cases[] = {
      {1, false, false, {"1122|合计|0 120 0", "2203|合计|0 -45 0"}},
      {3, false, false, {"1122|合计|0 10 0", "1124|合计|0 8 9"}},
      {3,
       true,
       false,
       {"1122|C1|0 0 0", "1122|C2|0 10 0", "1122(小计)||101 10 0", "1124|C1|0 8 0", "1124|C2|0 0 0",
        "1124(小计)||101 8 0"}},
      {0, false, true, {"1122|合计|0 10 0"}},
      {3, false, true, {"1122|合计|0 10 0", "1124|合计|0 8 9"}},
      {1, false, true, {"1122|合计|0 10 0"}},
      {1,
       true,
       true,
       {"1122|C1|0 0 0", "1122|C2|0 0 0", "1122(小计)||101 0 0", "2203|C1|0 0 0", "2203|C2|0 0 0",
        "2203(小计)||101 0 0"}},
  };
  const auto open = held();
  for (const auto& test : cases) {
    SCOPED_TRACE(test.currency);
    filter_->Set("CurrencyID", test.currency);
    filter_->Set("bShowDetail", test.detail);
    filter_->Set("bChkForAdjust", test.adjust);
    EXPECT_EQ(periodRows({"FArpAmount", "FGLAmount"}), test.rows);
  }
}

TEST_F(AmountCheck, GivesForeignCurrenciesRowsOfTheirOwn) {
  withReceivables();
  run("insert into t_Currency (FCurrencyID, FNumber, FName, FScale) values (4,'JPY','日元',0)");
  ledger(1122, 0, 10, 2, 0, 3);
  filter_->Set("bShowDetail", false);
  filter_->Set("bChkForAdjust", true);
  filter_->Set("AcctList", "1122");
  EXPECT_THAT(periodRows({"FCurrencyName", "FAmountDecimal", "FArpAmountFor", "FGLAmountFor"}),
              ElementsAre("1122|合计|0 美元 2 10 12", "1122|合计|0 日元 0 0 0"));
}

TEST_F(AmountCheck, TurnsPayablesToTheSenseOfTheirLedger) {
  contact(0, 21, 2202, 100, 60, 20);
  ledger(2202, 21, -100, 20, 60);
  ledger(2202, 0, -100, 20, 60);
  payables();
  EXPECT_THAT(periodRows(kMovements),
              ElementsAre("2202|S1|0 100 100 20 20 60 60 140 140", "2202|S2|0 0 0 0 0 0 0 0 0",
                          "2202(小计)||101 100 100 20 20 60 60 140 140"));
  EXPECT_THAT(closingRows(kMovements),
              ElementsAre("|S1|0 100 100 60 60 20 20 140 140", "|S2|0 0 0 0 0 0 0 0 0",
                          "|(期间小计)|106 100 100 60 60 20 20 140 140",
                          "|(年小计)|109 100 100 60 60 20 20 140 140",
                          "|(合计)|101 100 100 60 60 20 20 140 140"));
  voucher(1, false, 2202, 21, 0, 8);
  voucher(2, false, 2202, 21, 1, 3);
  const std::vector<std::string> ledgers{"FGLBegAmount", "FGLDebitAmount", "FGLCreditAmount",
                                         "FGLAmount"};
  filter_->Set("bUnPost", true);
  filter_->Set("bShowDetail", false);
  filter_->Set("AcctLogic", "-");
  EXPECT_THAT(periodRows(ledgers), ElementsAre("2202|合计|0 100 23 68 145"));
  EXPECT_THAT(closingRows(ledgers), ElementsAre("|合计|0 100 -52 -17 145"));
  filter_->Set("bInitCheck", true);
  EXPECT_THAT(periodRows({"FGLAmount"}), ElementsAre("2202|合计|0 100"));
}

TEST_F(AmountCheck, ComparesInitialDataWithOpeningBalances) {
  run(R"(insert into t_rp_BegData (FInterID, FClassTypeID, FType, FRP, FDate, FComID, FAccountID) values
           (1,1,3,1,'2008-12-31',11,1122), (2,1,15,1,'2008-12-31',11,1122), (3,1,3,1,'2008-12-31',12,0),
           (5,1,5,1,'2008-12-31',11,1122), (6,1,6,1,'2008-12-31',11,1122), (7,1,16,1,'2008-12-31',11,1122)
         insert into t_rp_BegDataEntry (FInterID, FEntryID, FAmountFor, FAmount) values
           (1,1,100,100), (1,2,27,27), (2,1,30,30), (3,1,7,7), (5,1,1,1), (6,1,2,2), (7,1,4,4)
         insert into t_SystemProfile (FCategory, FKey, FValue) values
           ('GL','StartYear','2009'), ('GL','StartPeriod','3'))");
  ledger(1122, 11, 91, 5, 6);
  ledger(1122, 0, 91, 5, 6);
  filter_->Set("bInitCheck", true);
  EXPECT_THAT(periodRows(kBalances),
              ElementsAre("1122|C1|0 90 91 1", "1122|C2|0 0 0 0", "1122(小计)||101 90 91 1",
                          "2203|C1|0 0 0 0", "2203|C2|0 0 0 0", "2203(小计)||101 0 0 0"));
  EXPECT_EQ(answered(answer_)->fieldCount(), 20u);
  // Where the ledger starts in this period, only accounts kept by the item class count.
  run("update t_Account set FDetailID = 0 where FAccountID = 1122");
  EXPECT_THAT(periodRows(kBalances), testing::Contains("1122|C1|0 90 0 -90"));
  run("update t_SystemProfile set FValue = '2008' where FKey = 'StartYear'");
  EXPECT_THAT(periodRows(kBalances), testing::Contains("1122|C1|0 90 91 1"));
}

TEST_F(AmountCheck, ClosingAddsAndSubtractsAccounts) {
  withReceivables();
  filter_->Set("bShowDetail", false);
  EXPECT_THAT(closingRows(kMovements), ElementsAre("|合计|0 70 70 50 57 35 35 85 92"));
  EXPECT_EQ(answered(answer_)->fieldCount(), 37u) << "no currency name";
  filter_->Set("AcctLogic", "+,-");
  EXPECT_THAT(closingRows(kMovements), ElementsAre("|合计|0 70 70 50 57 35 25 85 92"))
      << "signs turn movements, not balances";
  // An account without detail counts once, as a whole.
  ledger(1001, 0, 1000, 0, 0);
  filter_->Set("AcctList", "1001,777");
  EXPECT_THAT(closingRows(kBalances), ElementsAre("|合计|0 85 1000 915"));
}

TEST_F(AmountCheck, AddsUnpostedVouchersOfThePeriod) {
  withReceivables();
  voucher(1, false, 1122, 11, 1, 8);
  voucher(2, false, 1122, 11, 0, 3);
  voucher(3, true, 1122, 11, 1, 500);
  voucher(4, false, 1122, 11, 1, 900, 2);
  filter_->Set("bUnPost", true);
  EXPECT_THAT(periodRows({"FGLBegAmount", "FGLDebitAmount", "FGLCreditAmount", "FGLAmount"}),
              testing::IsSupersetOf({"1122|C1|0 100 58 33 125", "1122|C2|0 10 7 0 17",
                                     "1122(小计)||101 110 65 33 142"}));
  filter_->Set("bShowDetail", false);
  EXPECT_THAT(closingRows({"FGLBegAmount", "FGLDebitAmount", "FGLCreditAmount", "FGLAmount"}),
              ElementsAre("|合计|0 70 65 38 97"));
}

TEST_F(AmountCheck, KeepsToTheRangeOfItemNumbers) {
  withReceivables();
  filter_->Set("BItemNumber", " C2 ");
  filter_->Set("EEmpNumber", "007");
  EXPECT_THAT(periodRows({}),
              ElementsAre("1122|C2|0", "1122(小计)||101", "2203|C2|0", "2203(小计)||101"));
  EXPECT_EQ(filter_->Value("strItemFilter").toText(), "t10.FNumber >='C2'");
  EXPECT_EQ(filter_->Value("strEmpFilter").toText(), "t3.FNumber <='007'");
  EXPECT_EQ(filter_->Value("bEmpFilter").toText(), "True");
  EXPECT_EQ(filter_->Value("bDptFilter").toText(), "False");
}

TEST_F(AmountCheck, ShowsAUserHisOwnCustomersOnly) {
  withReceivables();
  run(R"(insert into t_AccessSwitch (FUserID, FUsed) values (0,1)
         insert into t_AccessRule (FUserID, FTableName, FKeyID) values (0,'t_Item',12))");
  EXPECT_THAT(periodRows(kBalances), ElementsAre("1122|C2|0 10 17 7", "1122(小计)||101 10 17 7",
                                                 "2203|C2|0 0 0 0", "2203(小计)||101 0 0 0"));
}

TEST_F(AmountCheck, SpeaksTheCallersLanguage) {
  withReceivables();
  side_ = "AR;LANGUAGE=EN";
  EXPECT_THAT(periodRows({}), testing::Contains("1122(Subtotal)||101"));
  filter_->Set("bShowDetail", false);
  EXPECT_THAT(closingRows({}), ElementsAre("|Total|0"));
}

TEST_F(AmountCheck, SumsTwentyDigitsExactly) {
  std::string rows;
  for (int i = 0; i < 2000; ++i)
    rows += std::string(i == 0 ? "" : ",") + "(2009,3,1,1,11,1122,1,1234567890123456.7891,-0.0001)";
  plant("t_rp_ContactBal",
        "FYear, FPeriod, FRP, FItemClassID, FCustomer, FAccountID, FCurrencyID, FBeginBalance, "
        "FDebit",
        rows);
  filter_->Set("bShowDetail", false);
  filter_->Set("AcctList", "1122");
  EXPECT_THAT(periodRows({"FArpBegAmount", "FArpDebitAmount", "FArpAmount"}),
              ElementsAre("1122|合计|0 2469135780246913578.2 -0.2 2469135780246913578"));
}

TEST_F(AmountCheck, TellsWhyThereIsNoResult) {
  withReceivables();
  filter_->Set("AcctList", "");
  EXPECT_THAT(periodRows({}), ElementsAre(HasSubstr("Chk_CreateTable: ")));
  filter_->Set("AcctList", "1122,2203");
  filter_->Set("AcctLogic", "+");
  EXPECT_THAT(closingRows({}),
              ElementsAre(": AcctLogic \"+\" has 1 signs for the 2 accounts of AcctList "
                          "\"1122,2203\"; expected one each"));
  EXPECT_FALSE(filter_->Lookup("Chk_CreateTable") && filter_->Lookup("bClosingAmt"));
  run("drop table t_Balance");
  filter_->Set("bInitCheck", false);
  EXPECT_THAT(periodRows({}),
              ElementsAre(testing::AllOf(HasSubstr("Chk_InitGlAmt: "), HasSubstr("t_balance"))));
}

TEST_F(AmountCheck, WritesStatementsWithoutADatabase) {
  const auto object = com::CreateObject(_clsInitBalCheck::kProgId).as<_clsInitBalCheck>();
  filter_->Remove("bArp");
  ASSERT_TRUE(object->GetAmtCheckDataSql(filter_));
  EXPECT_EQ(filter_->Value("bShowDetail").toText(), "True");
  EXPECT_THAT(filter_->Value("Chk_InitArpAmt").toText(), HasSubstr(" and v1.Frp = 0"));
  EXPECT_FALSE(filter_->Lookup("bClosingAmt"));
  ASSERT_TRUE(object->GetClosingCheckDataSql(filter_));
  EXPECT_EQ(filter_->Value("bClosingAmt").toText(), "True");
  EXPECT_THAT(filter_->Value("Chk_CreateTable").toText(),
              HasSubstr("select t1.FAccountID, t1.FDC, 1,FDetailID  from t_Account t1 where "
                        "t1.FAccountID = 2203"));
  collections::DictionaryRef nothing;
  EXPECT_FALSE(object->GetAmtCheckDataSql(nothing));
  EXPECT_EQ(reason().description, "dFilter is nothing; a Dictionary is expected");
}

}  // namespace
}  // namespace velmora
