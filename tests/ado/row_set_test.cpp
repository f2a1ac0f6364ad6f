#include "platform/ado/row_set.h"

#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <set>

namespace velmora::ado {
namespace {

/// Rows far apart reach the upper levels, rows close together fill words.
TEST(RowSet, AgreesWithAnOrderedSet) {
  for (const std::size_t universe : {60U, 70U, 5'000U, 600'000U}) {
    std::mt19937 random(static_cast<unsigned>(universe));
    std::uniform_int_distribution<std::size_t> anyRow(0, universe);
    RowSet rows;
    std::set<std::size_t> expected;
    for (int step = 0; step < 4000; ++step) {
      const std::size_t row = anyRow(random);
      // Phases that mostly fill and phases that mostly empty the set.
      if (random() % 10 < (step / 1000 % 2 == 0 ? 7U : 2U)) {
        rows.insert(row);
        expected.insert(row);
      } else if (!expected.empty()) {
        auto victim = expected.lower_bound(row);
        if (victim == expected.end()) victim = expected.begin();
        rows.erase(*victim);
        expected.erase(victim);
      }
      const std::size_t probe = anyRow(random);
      const auto from = expected.lower_bound(probe);
      ASSERT_EQ(rows.count(), expected.size());
      ASSERT_EQ(rows.contains(probe), expected.contains(probe));
      ASSERT_EQ(rows.firstFrom(probe), from == expected.end() ? RowSet::kNone : *from);
      ASSERT_EQ(rows.lastBefore(probe),
                from == expected.begin() ? RowSet::kNone : *std::prev(from));
      if (step % 100 == 0) {
        ASSERT_EQ(rows.countBefore(probe),
                  static_cast<std::size_t>(std::distance(expected.begin(), from)));
      }
    }
    EXPECT_EQ(rows.lastBefore(RowSet::kNone),
              expected.empty() ? RowSet::kNone : *expected.rbegin());
    for (const std::size_t row : expected) rows.erase(row);
    EXPECT_EQ(rows.count(), 0U);
    EXPECT_EQ(rows.firstFrom(0), RowSet::kNone);
    EXPECT_EQ(rows.lastBefore(RowSet::kNone), RowSet::kNone);
  }
}

}  // namespace
}  // namespace velmora::ado
