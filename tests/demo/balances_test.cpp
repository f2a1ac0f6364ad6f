#include "cli/demo/balances.h"

#include <gmock/gmock.h>

#include "cli/demo/numbering.h"
#include "cli/demo/random.h"

namespace velmora::cli::demo {
namespace {

Amount same(std::int64_t cents) {
  return {{cents}, {cents}};
}

TEST(Money, IsConvertedRoundingHalfUp) {
  struct Case {
    Currency currency;
    std::int64_t original, local;
  };
  for (const Case& c : {Case{kRenminbi, 12'345, 12'345}, Case{kHongKongDollar, 10'000, 8'814},
                        Case{kHongKongDollar, 25, 22},  // 22.035
                        Case{kUsDollar, 2, 14},         // 13.655
                        Case{kUsDollar, 5'000'000, 34'137'500}, Case{kUsDollar, 0, 0}})
    EXPECT_EQ(c.currency.amount({c.original}).local.cents, c.local) << c.original;
}

/// Period, begin and end of every row a history gives, in local cents.
std::vector<std::array<std::int64_t, 3>> rowsOf(const History& history) {
  std::vector<std::array<std::int64_t, 3>> rows;
  history.forEachPeriod([&](int period, Amount begin, const Movement&, Amount end) {
    rows.push_back({period, begin.local.cents, end.local.cents});
  });
  return rows;
}

TEST(History, StartsWithTheFirstMovementAndRollsOn) {
  History history;
  EXPECT_THAT(rowsOf(history), testing::IsEmpty());
  history.add(kCurrentPeriod - 1, same(500), true);
  history.add(kCurrentPeriod, same(200), false);
  EXPECT_THAT(rowsOf(history), testing::ElementsAre(std::array<std::int64_t, 3>{13, 0, 500},
                                                    std::array<std::int64_t, 3>{14, 500, 300}));
}

TEST(History, OpensBeforeTheFirstPeriodAndEndsWithTheCurrentOne) {
  History history;
  history.add(kBeforeFirstPeriod, same(70), false);
  history.add(kCurrentPeriod + 1, same(1'000), true);
  const auto rows = rowsOf(history);
  ASSERT_EQ(rows.size(), static_cast<std::size_t>(kPeriods));
  EXPECT_EQ(rows.front(), (std::array<std::int64_t, 3>{0, -70, -70}));
  EXPECT_EQ(rows.back(), (std::array<std::int64_t, 3>{14, -70, -70}));
}

TEST(AccountBalances, AddUpTheCurrenciesOfAnAccount) {
  AccountBalances balances;
  balances.add(1122, 1, 0, same(100), true);
  balances.add(1122, 3, 0, {{10}, {68}}, true);
  std::map<std::pair<int, int>, Amount> debits;
  balances.forEach([&](int account, int currency, const History& history) {
    debits[{account, currency}] = history.periods[0].debit;
  });
  EXPECT_EQ(debits.size(), 3U);
  EXPECT_EQ((debits[{1122, 0}]), (Amount{{110}, {168}}));
}

TEST(PartnerBalances, KnowTheControlAccountsOfTheirSideOnly) {
  PartnerBalances balances(termsOf(Side::kPayables), 1);
  balances.add({}, 2202, 0, same(1), true);
  EXPECT_THROW(balances.add({}, 1122, 0, same(1), true), std::out_of_range);
}

TEST(Numbering, FillsUpToSixDigits) {
  EXPECT_EQ(numbered("XSFP", 7), "XSFP000007");
  EXPECT_EQ(numbered("XSFP", 1'234'567), "XSFP1234567");
}

TEST(Random, IsTheSameOnEveryMachine) {
  Random random(5489);  // the engine's own default seed, whose numbers the standard fixes
  EXPECT_EQ(random.below(1'000'000'000), static_cast<int>(14514284786278117030ULL % 1'000'000'000));
}

}  // namespace
}  // namespace velmora::cli::demo
