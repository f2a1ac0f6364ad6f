#include <functional>
#include <gmock/gmock.h>
#include <random>

#include "ado/documents.h"
#include "velmora/com/error.h"

namespace velmora::ado {
namespace {

using testing::ElementsAre;

struct NamedFilter {
  const char* criteria;
  std::function<bool(const Recordset&)> satisfied;  // by the current row
};

int mark(const Recordset& rs) {
  return rs.GetValue(3).toInt32();
}
bool hasCustomer(const Recordset& rs, std::string_view customer) {
  return rs.GetValue(1).text() == customer;
}
bool amountAbove(const Recordset& rs, int amount) {
  return !rs.GetValue(2).isNull() && rs.GetValue(2).toDecimal() > Decimal(amount);
}

const std::vector<NamedFilter>& filters() {
  static const std::vector<NamedFilter> all{
      {"", [](const Recordset&) { return true; }},
      {"FRemark = 0", [](const Recordset& rs) { return mark(rs) == 0; }},
      {"FCustomer = 'A'", [](const Recordset& rs) { return hasCustomer(rs, "A"); }},
      {"FCustomer = 'b'", [](const Recordset& rs) { return hasCustomer(rs, "B"); }},
      {"FCustomer = 'A' and FRemark = 0",
       [](const Recordset& rs) { return hasCustomer(rs, "A") && mark(rs) == 0; }},
      {"FCustomer = 'B' and FAmount > 50 and FRemark = 0",
       [](const Recordset& rs) {
         return hasCustomer(rs, "B") && amountAbove(rs, 50) && mark(rs) == 0;
       }},
      {"FCustomer = 'C' and FAmount = null",
       [](const Recordset& rs) { return hasCustomer(rs, "C") && rs.GetValue(2).isNull(); }},
      {"FRemark = 1 or FAmount > 90",
       [](const Recordset& rs) { return mark(rs) == 1 || amountAbove(rs, 90); }},
      {"(FRemark = 1 or FCustomer = 'C') and FAmount <= 50",
       [](const Recordset& rs) {
         return (mark(rs) == 1 || hasCustomer(rs, "C")) && !rs.GetValue(2).isNull() &&
                !amountAbove(rs, 50);
       }},
  };
  return all;
}

/// What the filter should show: every row looked at, nothing remembered.
std::vector<int> naive(const Recordset& rs, const NamedFilter& filter) {
  auto all = rs.Clone();
  std::vector<int> ids;
  for (; !all->EOF_(); all->MoveNext())
    if (filter.satisfied(*all)) ids.push_back(all->GetValue(0).toInt32());
  return ids;
}

/// Walks with a clone of the same filter, so that the position stays.
std::vector<int> shown(const Recordset& rs) {
  auto walker = rs.Clone();
  walker->Filter(rs.Filter());
  return idsOf(*walker);
}

class Scenario {
 public:
  explicit Scenario(unsigned seed) : random_(seed) {
    records_.push_back(openDocuments(30));
    for (int i = 0; i < 3; ++i) records_.push_back(records_.front()->Clone());
    chosen_.resize(records_.size(), &filters().front());
  }

  void step() {
    const std::size_t which = below(records_.size());
    Recordset& rs = *records_[which];
    switch (below(10)) {
      case 0:
      case 1:
        chosen_[which] = &filters()[below(filters().size())];
        rs.Filter(chosen_[which]->criteria);
        break;
      case 2:
        if (below(4) == 0) addDocument(rs, ++lastId_, customer(), amount());
        break;
      case 3:
        if (atRow(rs) && below(4) == 0) rs.Delete();
        break;
      case 4:
        if (rs.RecordCount() > 0) rs.MoveFirst();
        break;
      case 5:
        if (!rs.EOF_()) rs.MoveNext();
        break;
      default:
        if (atRow(rs)) change(rs);
    }
  }

  void check() {
    for (std::size_t i = 0; i < records_.size(); ++i) {
      Recordset& rs = *records_[i];
      const std::vector<int> expected = naive(rs, *chosen_[i]);
      ASSERT_EQ(shown(rs), expected) << chosen_[i]->criteria;
      ASSERT_EQ(rs.RecordCount(), static_cast<std::int64_t>(expected.size()));
      ASSERT_EQ(rs.BOF() && rs.EOF_(), expected.empty());
    }
  }

 private:
  std::size_t below(std::size_t limit) { return random_() % limit; }
  Variant customer() { return std::string(1, static_cast<char>('A' + below(3))); }
  Variant amount() {
    return below(5) == 0 ? Variant(Null{}) : Variant(static_cast<int>(below(120)));
  }

  static bool atRow(const Recordset& rs) {
    try {
      rs.GetValue(0);
      return true;
    } catch (const com::Error&) {
      return false;
    }
  }

  void change(Recordset& rs) {
    const std::size_t field = 1 + below(3);
    if (field == 1) rs.SetValue(field, customer());
    if (field == 2) rs.SetValue(field, amount());
    if (field == 3) rs.SetValue(field, static_cast<int>(below(2)));
    if (below(2) == 0 && !rs.EOF_()) rs.MoveNext();
  }

  std::mt19937 random_;
  std::vector<RecordsetRef> records_;
  std::vector<const NamedFilter*> chosen_;
  int lastId_ = 30;
};

TEST(RecordsetViews, AgreeWithLookingAtEveryRow) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Scenario scenario(seed);
    for (int step = 0; step < 300; ++step) {
      scenario.step();
      ASSERT_NO_FATAL_FAILURE(scenario.check()) << "after step " << step;
    }
  }
}

TEST(RecordsetViews, SettleTwoSidesOneRowAfterTheOther) {
  auto source = openDocuments(9);
  auto target = openDocuments(9);
  source->Filter("FAmount > 0 and FRemark = 0");
  target->Filter("FRemark = 0");
  std::vector<std::pair<int, int>> pairs;
  while (!target->EOF_() && !source->EOF_()) {
    source->MoveFirst();
    pairs.emplace_back(source->GetValue(0).toInt32(), target->GetValue(0).toInt32());
    for (Recordset* rs : {source.get(), target.get()}) {
      rs->SetValue(3, 1);
      rs->Update();
    }
    target->MoveNext();
  }
  ASSERT_EQ(pairs.size(), 9U);
  for (const auto& [first, second] : pairs) EXPECT_EQ(first, second);
  EXPECT_TRUE(source->EOF_() && target->EOF_());

  source->Filter("FRemark = 1 and FCustomer = 'A'");
  EXPECT_THAT(idsOf(*source), ElementsAre(1, 4, 7));
}

/// The column that groups is itself written, after its values were indexed.
TEST(RecordsetViews, FollowAGroupingColumnThatChanges) {
  auto rs = openDocuments(6);
  for (const char* group : {"FCustomer = 'A'", "FCustomer = 'B'", "FCustomer = 'C'"}) {
    rs->Filter(group);
    EXPECT_EQ(rs->RecordCount(), 2);
  }
  rs->SetValue(1, "A");
  addDocument(*rs, 7, "B", 70);
  rs->Filter("FCustomer = 'A' and FID > 0");
  EXPECT_THAT(idsOf(*rs), ElementsAre(1, 3, 4));
  rs->Filter("FCustomer = 'B' and FID > 0");
  EXPECT_THAT(idsOf(*rs), ElementsAre(2, 5, 7));
}

}  // namespace
}  // namespace velmora::ado
