// Which reason is told: for what the demonstration set has planted, and for one fault at a
// time in books that agree.

#include <fstream>
#include <gmock/gmock.h>

#include "explain/books.h"

namespace velmora::explain::test {
namespace {

using testing::ElementsAreArray;

std::vector<std::string> expectedLines(const char* file) {
  std::ifstream in(std::string(VELMORA_SOURCE_DIR "/demo/") + file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

TEST(Reasons, AreThoseOfThePlantedFaults) {
  Books books(cli::demo::Faults::kPlanted);
  std::vector<std::string> lines;
  for (const bool receivables : {true, false})
    for (const std::string& line : reasonLines(books.explained(asked(receivables)), '\t'))
      lines.push_back((receivables ? "ar\t" : "ap\t") + line);
  EXPECT_THAT(lines, ElementsAreArray(expectedLines("expected_reasons.tsv")));
}

TEST(Reasons, AreNotToldOfBooksThatAgree) {
  Books books;
  for (const bool receivables : {true, false})
    for (const Comparison comparison :
         {Comparison::initial, Comparison::period, Comparison::closing})
      for (const bool detail : {true, false}) {
        Asked ask = asked(receivables, comparison);
        ask.scope.detail = detail;
        EXPECT_THAT(reasonLines(books.explained(ask)), testing::IsEmpty());
        ask.estimates = ask.outsourcing = !receivables;
        for (const int account : {2204, 2205})
          if (!receivables) ask.scope.accounts.push_back({account, false});
        EXPECT_THAT(reasonLines(books.explained(ask)), testing::IsEmpty());
      }
}

TEST(Reasons, ShowOnlyWhatTheUserMaySee) {
  Books books(cli::demo::Faults::kPlanted);
  Asked ask = asked(true);
  ask.user = kRestrictedUser;
  // The other end of each transfer is a customer that is not shown.
  EXPECT_THAT(
      reasonLines(books.explained(ask)),
      ElementsAreArray({"1122 C000002 other-period 0 -8017.11 0 -8017.11 XSFP000047 记-2",
                        "1122 C000002 document-period 0 17022.6 0 17022.6 XSFP000045 记-14",
                        "1122 C000010 not-posted 0 -19728.27 0 -19728.27 XSFP000050 记-20",
                        "1122 C000010 other-period 0 -271884.84 0 -271884.84 YSZZ000004 记-3",
                        "2203 C000002 other-period 0 0 -30819.48 30819.48 YSD000013 收-2"}));
  ask.scope.detail = false;
  const Explanation totals = books.explained(ask);
  EXPECT_THAT(unbalanced(totals), testing::IsEmpty());
  EXPECT_THAT(totals.notes, testing::SizeIs(1));
  for (const ExplainedRow& row : totals.rows)
    for (const RowReason& reason : row.reasons) {
      EXPECT_EQ(reason.document.has_value(), reason.reason != Reason::notShown) << reason.text;
      EXPECT_THAT(reason.text, testing::Not(testing::HasSubstr("C000005"))) << reason.text;
    }
}

TEST(Reasons, DoWithoutTablesThatOnlySomeNeed) {
  Books books(cli::demo::Faults::kPlanted);
  const auto reasons = [&] {
    const Explanation explained = books.explained(asked(true, Comparison::closing));
    EXPECT_THAT(unbalanced(explained), testing::IsEmpty());
    return std::pair(reasonLines(explained), explained.notes);
  };
  auto [all, none] = reasons();
  EXPECT_THAT(none, testing::IsEmpty());
  books.run("drop table ICSale drop table ICPurchase drop table t_rp_BillType");
  const auto [found, notes] = reasons();
  EXPECT_THAT(notes,
              testing::ElementsAre(testing::HasSubstr("ICSale"), testing::HasSubstr("ICPurchase"),
                                   testing::HasSubstr("t_rp_BillType")));
  for (std::string& line : all)
    if (const auto at = line.find("document-period"); at != std::string::npos)
      line.replace(at, 15, "other-period");
  EXPECT_THAT(found, testing::UnorderedElementsAreArray(all));
}

/// One fault in books that agree and the reasons it gives in receivables, in 2009-03 unless
/// the comparison is another.
struct Fault {
  const char* name;
  const char* batch;
  std::vector<std::string> reasons;
  Comparison comparison = Comparison::period;
};

void PrintTo(const Fault& fault, std::ostream* out) {
  *out << fault.name;
}

class OneFault : public testing::TestWithParam<Fault> {};

TEST_P(OneFault, GivesItsReasons) {
  Books books;
  books.run(GetParam().batch);
  EXPECT_THAT(reasonLines(books.explained(asked(true, GetParam().comparison))),
              ElementsAreArray(GetParam().reasons));
}

INSTANTIATE_TEST_SUITE_P(
    Of, OneFault,
    testing::Values(
        Fault{"no_voucher_and_the_voucher_beside_it",
              "update t_rp_Contact set FVoucherID = 0 where FID = 73",
              {"1122 C000002 no-voucher 0 -7753.1 0 -7753.1 XSFP000035 记-3",
               "1122 C000002 no-document 0 7753.1 0 7753.1 XSFP000035 记-3"}},
        Fault{"cancelled_voucher",
              "update t_rp_Contact set FVoucherID = 999999 where FID = 73",
              {"1122 C000002 no-document 0 7753.1 0 7753.1 记-3",
               "1122 C000002 cancelled-voucher 0 -7753.1 0 -7753.1 XSFP000035"}},
        Fault{"not_posted",
              "update t_Voucher set FPosted = 0 where FVoucherID = 67",
              {"1122 C000002 not-posted 0 -7753.1 0 -7753.1 XSFP000035 记-3",
               "1122 C000002 ledger-balance 0 7753.1 0 7753.1"}},
        Fault{"voucher_in_an_earlier_period",
              "update t_Voucher set FPeriod = 2 where FVoucherID = 67",
              {"1122 C000002 other-period 7753.1 -7753.1 0 0 XSFP000035 记-3",
               "1122 C000002 ledger-balance 0 7753.1 0 7753.1",
               "1122 C000002 carried-forward -7753.1 0 0 -7753.1"}},
        Fault{"document_in_another_period",
              "update t_rp_Contact set FPeriod = 4 where FID = 73",
              {"1122 C000002 document-period 0 7753.1 0 7753.1 XSFP000035 记-3",
               "1122 C000002 contact-balance 0 -7753.1 0 -7753.1"}},
        Fault{"document_with_another_account",
              "update t_rp_Contact set FAccountID = 1221 where FID = 73",
              {"1122 C000002 document-account 0 7753.1 0 7753.1 XSFP000035 记-3",
               "1122 C000002 contact-balance 0 -7753.1 0 -7753.1",
               "1221 C000002 document-account 0 -7753.1 0 -7753.1 XSFP000035 记-3",
               "1221 C000002 contact-balance 0 7753.1 0 7753.1"}},
        Fault{"document_without_account",
              "update t_rp_Contact set FAccountID = 0 where FID = 73",
              {"1122 C000002 document-account 0 7753.1 0 7753.1 XSFP000035 记-3",
               "1122 C000002 contact-balance 0 -7753.1 0 -7753.1"}},
        Fault{"voucher_on_another_account",
              "update t_VoucherEntry set FAccountID = 1221 where FVoucherID = 67 and FEntryID = 1",
              {"1122 C000002 other-account 0 -7753.1 0 -7753.1 XSFP000035 记-3",
               "1122 C000002 ledger-balance 0 7753.1 0 7753.1",
               "1221 C000002 other-account 0 7753.1 0 7753.1 XSFP000035 记-3",
               "1221 C000002 ledger-balance 0 -7753.1 0 -7753.1"}},
        Fault{"voucher_on_another_contact",
              "update t_VoucherEntry set FDetailID = 1003 where FVoucherID = 67 and FEntryID = 1",
              {"1122 C000002 other-contact 0 -7753.1 0 -7753.1 XSFP000035 记-3",
               "1122 C000002 ledger-balance 0 7753.1 0 7753.1",
               "1122 C000003 other-contact 0 7753.1 0 7753.1 XSFP000035 记-3",
               "1122 C000003 ledger-balance 0 -7753.1 0 -7753.1"}},
        Fault{"voucher_of_another_amount",
              "update t_VoucherEntry set FAmount = 7853.10 where FVoucherID = 67 and FEntryID = 1",
              {"1122 C000002 other-amount 0 100 0 100 XSFP000035 记-3",
               "1122 C000002 ledger-balance 0 -100 0 -100"}},
        Fault{"rounding",
              "update t_rp_Contact set FAmount = FAmount - 0.01 where FID = 73",
              {"1122 C000002 rounding 0 0.01 0 0.01 XSFP000035 记-3",
               "1122 C000002 contact-balance 0 -0.01 0 -0.01"}},
        Fault{"amount_in_document_currency",
              "update t_rp_Contact set FAmountFor = FAmountFor - 1 where FID = 73",
              {"1122 C000002 other-currency 0 0 0 0 XSFP000035 记-3",
               "1122 C000002 contact-balance 0 0 0 0"}},
        Fault{"unaudited_document",
              "update t_rp_Contact set FStatus = 0 where FID = 73",
              {"1122 C000002 no-document 0 7753.1 0 7753.1 XSFP000035 记-3",
               "1122 C000002 contact-balance 0 -7753.1 0 -7753.1"}},
        Fault{"offset_without_voucher",
              "update t_rp_NewCheckInfo set FVoucherID = 0 where FID = 20",
              {"1122 C000008 no-document 0 0 29633.14 -29633.14 20 记-6",
               "1122 C000008 offset-no-voucher 0 0 -29633.14 29633.14 20 记-6",
               "2203 C000008 no-document 0 29633.14 0 29633.14 20 记-6",
               "2203 C000008 offset-no-voucher 0 -29633.14 0 -29633.14 20 记-6"}},
        Fault{"contact_balance",
              "update t_rp_ContactBal set FDebit = FDebit + 5, FEndBalance = FEndBalance + 5 where "
              "FYear = 2009 and FPeriod = 3 and FCustomer = 1002 and FAccountID = 1122",
              {"1122 C000002 contact-balance 0 -5 0 -5"}},
        Fault{"ledger_balance",
              "update t_Balance set FCredit = FCredit + 7 where FYear = 2009 and FPeriod = 3 and "
              "FAccountID = 1122 and FDetailID = 1002 and FCurrencyID = 0",
              {"1122 C000002 ledger-balance 0 0 7 0"}},
        Fault{"carried_forward",
              "update t_rp_ContactBal set FDebit = FDebit + 5 where FYear = 2009 and FPeriod = 2 "
              "and FCustomer = 1002 and FAccountID = 1122\nupdate t_rp_ContactBal set "
              "FBeginBalance = FBeginBalance + 5 where FYear = 2009 and FPeriod = 3 and FCustomer "
              "= 1002 and FAccountID = 1122",
              {"1122 C000002 carried-forward -5 0 0 -5"}},
        Fault{
            "vouchers_that_reverse_one_another",
            "insert into t_Voucher (FVoucherID, FDate, FYear, FPeriod, FGroupID, FNumber, FPosted) "
            "values (9001,'2009-03-05',2009,3,1,901,1),(9002,'2009-03-06',2009,3,1,902,1)\ninsert "
            "into t_VoucherEntry (FVoucherID, FEntryID, FAccountID, FDetailID, FDC, FAmountFor, "
            "FAmount) values (9001,1,1122,1002,1,50,50),(9002,1,1122,1002,1,-50,-50)",
            {"1122 C000002 cancelled-voucher 0 50 0 50 记-901",
             "1122 C000002 cancelled-voucher 0 -50 0 -50 记-902"}},
        Fault{"initial_data",
              "update t_rp_BegDataEntry set FAmount = FAmount + 10 where FInterID = 1",
              {"1122 C000001 initial-data 0 0 0 -10"},
              Comparison::initial}),
    [](const auto& given) { return std::string(given.param.name); });

}  // namespace
}  // namespace velmora::explain::test
