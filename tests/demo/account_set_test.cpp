#include "demo/account_set.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>

#include "error_of.h"

namespace velmora::cli::demo {
namespace {

AccountSet generated(const std::string& name, std::int64_t documents, std::uint64_t seed) {
  return AccountSet(name, [=](ado::Connection& connection) {
    return createGeneratedSet(connection, {.documents = documents, .seed = seed, .progress = {}});
  });
}

/// Documents of each side, as a person would count them.
std::vector<std::string> documents(const AccountSet& set) {
  return set.rows(
      "select 1 as FRP, (select count(*) from ICSale) + "
      "(select count(*) from t_rp_ARPBill where FRP = 1) + "
      "(select count(*) from t_rp_NewReceiveBill where FRP = 1) as FCount union all "
      "select 0, (select count(*) from ICPurchase) + "
      "(select count(*) from t_rp_ARPBill where FRP = 0) + "
      "(select count(*) from t_rp_NewReceiveBill where FRP = 0)");
}

TEST(AccountSet, HasTheDocumentsAskedFor) {
  EXPECT_THAT(documents(smallSet()), testing::ElementsAre("1 100", "0 100"));
  EXPECT_THAT(documents(generatedSet()), testing::ElementsAre("1 500", "0 500"));
}

TEST(AccountSet, IsTheSameBooksWithoutFaults) {
  const std::string amounts =
      "select FCustomer, sum(FAmount) from t_rp_Contact where FYear * 100 + FPeriod < 200903 "
      "and FIsInit = 0 group by FCustomer order by FCustomer";
  EXPECT_EQ(smallSetWithoutFaults().rows(amounts), smallSet().rows(amounts));
  for (const PlantedFinding& finding : smallSetWithoutFaults().planted())
    EXPECT_EQ(finding.count, 0) << finding.name;
}

TEST(AccountSet, DependsOnTheSeedAlone) {
  const std::string contacts =
      "select FID, FNumber, FCustomer, FAmountFor, FAmount, FVoucherID from t_rp_Contact "
      "order by FID";
  const auto first = generated("first", 120, 3).rows(contacts);
  EXPECT_EQ(generated("again", 120, 3).rows(contacts), first);
  EXPECT_NE(generated("other", 120, 4).rows(contacts), first);
}

TEST(AccountSet, PlantsEveryKindOnBothSides) {
  for (const PlantedFinding& finding : generatedSet().planted()) {
    const bool planted = finding.count > 0;
    // The check of other modules' periods takes settings of its own.
    EXPECT_EQ(planted, finding.checkItem != 13) << finding.name;
  }
}

/// The counts a cell of the README's table begins with; 0 for "none".
int leadingCount(const std::string& cell) {
  return std::isdigit(static_cast<unsigned char>(cell.at(1))) ? std::stoi(cell) : 0;
}

TEST(AccountSet, PlantsWhatTheReadmeTells) {
  std::ifstream file(VELMORA_SOURCE_DIR "/demo/README.md");
  int items = 0;
  for (std::string line; std::getline(file, line);) {
    std::vector<std::string> cells;
    std::istringstream parts(line);
    for (std::string cell; std::getline(parts, cell, '|');) cells.push_back(cell);
    if (cells.size() < 5 || leadingCount(cells[1]) == 0) continue;
    const int item = leadingCount(cells[1]);
    ++items;
    EXPECT_EQ(leadingCount(cells[3]), smallSet().planted(Side::kReceivables, item)) << line;
    EXPECT_EQ(leadingCount(cells[4]), smallSet().planted(Side::kPayables, item)) << line;
  }
  EXPECT_EQ(items, 14);
}

TEST(AccountSet, TellsProgressUpToItsTotal) {
  using Reports = std::vector<std::pair<std::int64_t, std::int64_t>>;
  const auto reportsOf = [](Faults faults, std::vector<std::string>& written) {
    Reports reports;
    const auto progress = [&](auto done, auto total) { reports.emplace_back(done, total); };
    const AccountSet set("progress", [&](ado::Connection& connection) {
      return createGeneratedSet(
          connection, {.documents = 5'500, .seed = 1, .progress = progress, .faults = faults});
    });
    written = documents(set);
    return reports;
  };
  std::vector<std::string> written;
  const Reports reports = reportsOf(Faults::kPlanted, written);
  ASSERT_GE(reports.size(), 2U);
  EXPECT_TRUE(std::ranges::is_sorted(reports));
  EXPECT_EQ(reports.back(), std::pair(std::int64_t{11'000}, std::int64_t{11'000}));

  const auto [done, total] = reportsOf(Faults::kLeftOut, written).back();
  EXPECT_EQ(done, total);
  EXPECT_EQ(std::stoi(written.at(0).substr(2)) + std::stoi(written.at(1).substr(2)), total);
}

TEST(AccountSet, RefusesTooFewDocuments) {
  const auto error = errorOf([] { generated("refused", 99, 1); });
  EXPECT_THAT(error.description(),
              testing::AllOf(testing::HasSubstr("99"), testing::HasSubstr("100 to 50000000")));
}

TEST(AccountSet, IsReadyForThePeriodAfterTheClosedOnes) {
  EXPECT_THAT(smallSet().rows("select FYear, FPeriod from t_PeriodDate group by FYear, FPeriod "
                              "having count(*) > 1"),
              testing::IsEmpty());
  const std::string unposted =
      "select count(*) from t_Voucher where FPosted = 0 "
      "and FYear * 100 + FPeriod ";
  EXPECT_EQ(smallSet().number(unposted + "< 200903"), 0);
  EXPECT_EQ(smallSet().number(unposted + "= 200903"),
            smallSet().planted(Side::kReceivables, 0) + smallSet().planted(Side::kPayables, 0));
  EXPECT_EQ(smallSet().number("select count(distinct FCurrencyID) from t_rp_Contact"), 3);
}

}  // namespace
}  // namespace velmora::cli::demo
