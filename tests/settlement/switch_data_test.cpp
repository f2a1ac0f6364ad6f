// The switch-data operations: what the rows of a new document receive.

#include <gmock/gmock.h>
#include <random>

#include "answered.h"
#include "frame/classes.h"
#include "printed_seed.h"
#include "sanitized.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"
#include "velmora/public.h"

namespace velmora::settlement {
namespace {

using collections::Decimal;
using collections::Dictionary;
using collections::DictionaryRef;
using collections::Null;
using collections::Variant;
using collections::Vector;
using collections::VectorRef;
using testing::ElementsAre;
using testing::HasSubstr;

using Entries = std::vector<std::pair<std::string, Variant>>;

DictionaryRef dictionary(const Entries& entries) {
  auto made = com::make<Dictionary>();
  for (const auto& [key, value] : entries) made->Set(key, value);
  return made;
}
VectorRef vectorOf(const std::vector<DictionaryRef>& items) {
  auto made = com::make<Vector>();
  for (const auto& item : items) made->Add(item);
  return made;
}

class SwitchData : public testing::Test {
 protected:
  /// Rows with the check amounts `checks`, a converted source amount and a rate.
  void setChecks(const std::vector<std::string>& checks) {
    rows_ = com::make<ado::Recordset>();
    for (const char* column :
         {"FAmount", "FLocal", "FCheck", "FUsed", "FSource", "Fqty_plan", "FQty_remain",
          "FAmount_Plan", "FAmount_remain", "FAmountFor_Plan", "FAmountFor_remain"})
      rows_->Fields().Append(column, ado::adNumeric, 0, 28, 4);
    rows_->Fields().Append("FCents", ado::adNumeric, 0, 28, 2);
    rows_->Fields().Append("FRate", ado::adNumeric, 0, 38, 20);
    rows_->Fields().Append("FPlaces", ado::adInteger);
    rows_->Fields().Append("FText", ado::adVarWChar, 20);
    rows_->Open();
    vectorRows_ = com::make<Vector>();
    for (const auto& check : checks) {
      rows_->AddNew();
      const Entries entries{{"FCheck", Decimal::parse(check)},
                            {"FUsed", 5},
                            {"FSource", 100},
                            {"FRate", "6.8275"},
                            {"FPlaces", 1},
                            {"FText", "abc"},
                            {"Fqty_plan", 7},
                            {"FAmount_Plan", -8},
                            {"FAmountFor_Plan", 9}};
      for (const auto& [column, value] : entries) rows_->Fields()(column).Value(value);
      vectorRows_->Add(dictionary(entries));
    }
  }
  static DictionaryRef distribution(const Variant& amount, const char* target = "FAmount") {
    return dictionary(
        {{"FType", 0}, {"FAmount", amount}, {"FFieldName", target}, {"FChkFieldName", "FCheck"}});
  }
  static DictionaryRef conversion(const Entries& more) {
    Entries entries{{"FType", 1},
                    {"FFieldName", "FLocal"},
                    {"FChkFieldName", "FCheck"},
                    {"FSrcFieldName", "FSource"}};
    entries.insert(entries.end(), more.begin(), more.end());
    return dictionary(entries);
  }

  std::string fill(const std::vector<DictionaryRef>& options, const DictionaryRef& filter = {}) {
    std::string message = "of an earlier call";
    EXPECT_FALSE(object_->GetSwitchData(rows_, vectorOf(options), message, filter));
    return message;
  }
  std::string fillExt(const std::vector<DictionaryRef>& options, const DictionaryRef& filter = {}) {
    std::string message = "of an earlier call";
    auto vector = vectorOf(options);
    const bool completed = object_->GetSwitchDataExt("", rows_, vector, filter, message);
    EXPECT_EQ(completed, message.empty());
    return message;
  }
  std::string fillVector(const std::vector<DictionaryRef>& options) {
    std::string message = "of an earlier call";
    EXPECT_FALSE(object_->GetSwitchVectData(vectorRows_, vectorOf(options), message));
    return message;
  }

  std::vector<std::string> column(const char* name) {
    std::vector<std::string> values;
    for (const auto all = rows_->Clone(); !all->EOF_(); all->MoveNext()) {
      const Variant& value = all->Fields()(name).Value();
      values.push_back(value.isNull() ? "Null" : value.toText());
    }
    return values;
  }
  std::vector<std::string> vectorColumn(const char* name) {
    std::vector<std::string> values;
    for (const Variant& row : *vectorRows_)
      values.push_back(row.toObject<Dictionary>()->Value(name).toText());
    return values;
  }

  com::ScopedClass class_{publicClasses()[2]};
  com::Ref<_clsPublic> object_ = com::CreateObject(_clsPublic::kProgId).as<_clsPublic>();
  ado::RecordsetRef rows_;
  VectorRef vectorRows_;
};

TEST_F(SwitchData, DistributesInOrderUpToTheCheckAmount) {
  struct Case {
    std::vector<std::string> checks, received;
    std::string left;
    bool robs;
  };
  for (const Case& given :
       {Case{{"30", "50", "40"}, {"30", "50", "20"}, "0", false},
        Case{{"30", "-10", "50"}, {"30", "-10", "50"}, "30", true},
        Case{{"30", "-10", "50"}, {"30", "0", "50"}, "20", false},
        Case{{"60", "40", "10"}, {"60", "40", "0"}, "0", false}, Case{{}, {}, "100", false}}) {
    setChecks(given.checks);
    const auto option = distribution(100);
    EXPECT_EQ(fill({option}, dictionary({{"bSwitchRobEntry", given.robs}})), "");
    EXPECT_EQ(column("FAmount"), given.received);
    EXPECT_EQ(option->Value("FAmount").toText(), given.left);
    EXPECT_EQ(rows_->AbsolutePosition(), given.checks.empty() ? -1 : 1);
  }
}

TEST_F(SwitchData, DistributesWhatTheColumnHolds) {
  struct Case {
    std::vector<std::string> checks;
    const char* amount;
    std::vector<std::string> received;
    std::string left;
    bool over = false;
  };
  for (const Case& given : {Case{{"60.555", "50"}, "100", {"60.56", "39.44"}, "0"},
                            {{"50", "50"}, "39.445", {"39.45", "0"}, "-0.005"},
                            {{"50", "50"}, "39.444", {"39.44", "0"}, "0.004"},
                            {{"60.555", "10"}, "60.557", {"60.56", "0"}, "-0.003"},
                            {{"-60.555", "0.004", "-60"}, "-100", {"-60.56", "0", "-39.44"}, "0"},
                            {{"-10.005", "200"}, "100", {"-10.01", "110.01"}, "0"},
                            {{"30", "40"}, "100.005", {"30", "70.01"}, "-0.005", true}}) {
    setChecks(given.checks);
    const auto option = distribution(Decimal::parse(given.amount), "FCents");
    EXPECT_EQ(fillExt({option}, dictionary({{"bCanOverAmt", given.over}})), "");
    EXPECT_EQ(column("FCents"), given.received) << given.amount;
    EXPECT_EQ(option->Value("FAmount").toText(), given.left);
  }
  setChecks({"60.555"});
  const auto option = distribution(100);
  EXPECT_EQ(fillVector({option}), "");
  EXPECT_EQ(option->Value("FAmount").toText(), "39.445") << "a dictionary holds every digit";
}

/// Whatever the rows take, and however: with what is left it is the amount given, and no
/// row takes more than it may, but for the last one where it may take the rest.
TEST_F(SwitchData, DistributesAllOrLeavesTheRest) {
  std::mt19937_64 random(printedSeed());
  const auto below = [&](int limit) {
    return static_cast<int>(random() % static_cast<std::uint64_t>(limit));
  };
  const auto amount = [&] { return Decimal::fromCoefficient(below(40'001) - 20'000, below(5)); };
  for (int i = 0; i < (kSanitized ? 300 : 3'000) && !HasFailure(); ++i) {
    std::vector<std::string> checks(static_cast<std::size_t>(below(7)));
    for (auto& check : checks) check = (below(6) == 0 ? Decimal(0) : amount()).toString();
    setChecks(checks);
    const Decimal given = below(10) == 0 ? Decimal(0) : amount();
    const bool cents = below(2) == 0;
    const char* target = cents ? "FCents" : "FAmount";
    const auto option = distribution(given, target);
    const int way = below(6);
    const bool extended = way >= 2 && way < 5, second = way == 4, over = way == 3;
    if (second) option->Set("FChkFieldName2", "FUsed");
    if (way < 2)
      EXPECT_EQ(fill({option}, dictionary({{"bSwitchRobEntry", way == 1}})), "");
    else if (extended)
      EXPECT_EQ(fillExt({option}, dictionary({{"bCanOverAmt", over}})), "");
    else
      EXPECT_EQ(fillVector({option}), "");

    const auto received = way == 5 ? vectorColumn(target) : column(target);
    Decimal sum = option->Value("FAmount").toDecimal();
    for (std::size_t row = 0; row < received.size(); ++row) {
      const Decimal taken = Decimal::parse(received[row]);
      sum = sum + taken;
      if (over && row + 1 == received.size()) continue;
      const Decimal most = Decimal::parse(checks[row]) - Decimal(second ? 5 : 0);
      EXPECT_LE(taken.abs(), (cents && way != 5 ? most.rounded(2) : most).abs());
    }
    EXPECT_EQ(sum, given) << "case " << i + 1 << ", way " << way << ": "
                          << testing::PrintToString(checks) << " received "
                          << testing::PrintToString(received);
  }
}

TEST_F(SwitchData, ConvertsUpToTheCheckAmount) {
  setChecks({"1000", "500", "-1000", "-100"});
  EXPECT_EQ(fill({conversion({{"FRateFieldName", "FRate"}})}), "");
  EXPECT_THAT(column("FLocal"), ElementsAre("682.75", "500", "682.75", "-100"));
  EXPECT_EQ(fill({conversion({{"FRateFieldName", "FRate"}, {"FDecimal", "FPlaces"}})}), "");
  EXPECT_THAT(column("FLocal"), ElementsAre("682.8", "500", "682.8", "-100"));
  EXPECT_EQ(fill({conversion({{"FRateFieldName", "FRate"}, {"FRateType", 1}})}), "");
  EXPECT_THAT(column("FLocal"), ElementsAre("14.65", "14.65", "14.65", "14.65"));
  EXPECT_EQ(fill({conversion({{"FRateFieldName", " "}})}), "");
  EXPECT_THAT(column("FLocal"), ElementsAre("100", "100", "100", "100"));

  setChecks({"200", "50"});
  for (rows_->MoveFirst(); !rows_->EOF_(); rows_->MoveNext())
    rows_->Fields()("FSource").Value(-100);
  EXPECT_EQ(fill({conversion({})}), "");
  EXPECT_THAT(column("FLocal"), ElementsAre("100", "50"));
  EXPECT_EQ(fillExt({conversion({})}, dictionary({{"bCanOverAmt", true}})), "");
  EXPECT_THAT(column("FLocal"), ElementsAre("100", "-100"));
}

TEST_F(SwitchData, ConvertsAtLongRatesToTheFewerDecimals) {
  struct Case {
    const char *source, *rate;
    int type, places;
    const char *received, *inCents;
  };
  for (const Case& given : {Case{"100", "6.8275", 1, 4, "14.6466", "14.65"},
                            {"100", "6.8275", 1, 1, "14.6", "14.6"},
                            {"100", "3333.33333333333333333333", 1, 4, "0.03", "0.03"},
                            {"0.01", "123456789012345678.12345678901234567891", 0, 38, "0", "0"},
                            {"0.001", "123456789012345678.12345678901234567891", 0, 4,
                             "123456789012345.6781", "123456789012345.68"},
                            {"100", "0.0000495", 0, 4, "0.005", "0"}}) {
    setChecks({"900000000000000"});
    rows_->Fields()("FSource").Value(given.source);
    rows_->Fields()("FRate").Value(given.rate);
    rows_->Fields()("FPlaces").Value(given.places);
    const Entries entries{
        {"FRateFieldName", "FRate"}, {"FRateType", given.type}, {"FDecimal", "FPlaces"}};
    auto inCents = conversion(entries);
    inCents->Set("FFieldName", "FCents");
    EXPECT_EQ(fill({conversion(entries), inCents}), "");
    EXPECT_THAT(column("FLocal"), ElementsAre(given.received));
    EXPECT_THAT(column("FCents"), ElementsAre(given.inCents));
  }
}

/// A row that gave all it had gives it for the later columns, too; one that took the
/// last of the amount did so only where GetSwitchData says that it gave all.
TEST_F(SwitchData, ConvertsNoFurtherThanTakenWhole) {
  struct Case {
    std::vector<std::string> checks;
    int amount;
    std::vector<std::string> local, extended, over;
  };
  for (const Case& given : {Case{{"30", "50"}, 40, {"30", "50"}, {"30", "50"}, {"30", "100"}},
                            {{"200", "500"}, 220, {"200", "100"}, {"200", "100"}, {"200", "100"}},
                            {{"200", "300"}, 200, {"200", "100"}, {"100", "100"}, {"100", "100"}},
                            {{"200"}, 200, {"200"}, {"100"}, {"100"}},
                            {{"200"}, 250, {"200"}, {"200"}, {"100"}},
                            {{"-200"}, 250, {"100"}, {"100"}, {"100"}}}) {
    SCOPED_TRACE(given.amount);
    setChecks(given.checks);
    EXPECT_EQ(fill({distribution(given.amount), conversion({})}), "");
    EXPECT_EQ(column("FLocal"), given.local);
    EXPECT_EQ(fillExt({distribution(given.amount), conversion({})}), "");
    EXPECT_EQ(column("FLocal"), given.extended);
    EXPECT_EQ(
        fillExt({distribution(given.amount), conversion({})}, dictionary({{"bCanOverAmt", true}})),
        "");
    EXPECT_EQ(column("FLocal"), given.over);
  }
}

TEST_F(SwitchData, ExtendedTakesASecondCheckAndTheRest) {
  setChecks({"30", "-10", "50"});
  auto option = distribution(100);
  option->Set("FChkFieldName2", "FUsed");
  EXPECT_EQ(fillExt({option}), "");
  EXPECT_THAT(column("FAmount"), ElementsAre("25", "-15", "45"));
  EXPECT_EQ(option->Value("FAmount").toText(), "45");

  option = distribution(100);
  const auto filter = dictionary({{"bCanOverAmt", true}, {"bCopyFields", true}});
  EXPECT_EQ(fillExt({option, conversion({})}, filter), "");
  EXPECT_THAT(column("FAmount"), ElementsAre("30", "-10", "80"));
  EXPECT_EQ(option->Value("FAmount").toText(), "0");
  EXPECT_THAT(column("FLocal"), ElementsAre("30", "-10", "100")) << "over on the last row only";
  EXPECT_THAT(column("FQty_remain"), ElementsAre("7", "7", "7"));
  EXPECT_THAT(column("FAmount_remain"), ElementsAre("-8", "-8", "-8"));
  EXPECT_THAT(column("FAmountFor_remain"), ElementsAre("9", "9", "9"));
}

TEST_F(SwitchData, VectorRowsMakeNoSignTest) {
  setChecks({"30", "-10", "50"});
  const auto option = distribution(35);
  EXPECT_EQ(fillVector({option, conversion({})}), "");
  EXPECT_THAT(vectorColumn("FAmount"), ElementsAre("30", "5", "0"));
  EXPECT_THAT(vectorColumn("FLocal"), ElementsAre("30", "-10", "50"));
  setChecks({"30"});
  EXPECT_EQ(fillVector({distribution(-30)}), "");
  EXPECT_THAT(vectorColumn("FAmount"), ElementsAre("-30"));
}

TEST_F(SwitchData, TellsWhatItCannotFill) {
  setChecks({"30", "50"});
  rows_->MoveFirst();
  rows_->MoveNext();
  rows_->Fields()("FCheck").Value(Null());
  EXPECT_EQ(fill({distribution(100)}), "row 2, column FCheck: Null where a number is expected");
  EXPECT_THAT(column("FAmount"), ElementsAre("30", "Null")) << "rows filled before stay";
  EXPECT_EQ(rows_->AbsolutePosition(), 1);
  EXPECT_EQ(reason().number, com::error::kInvalidUseOfNull);
  EXPECT_EQ(fill({distribution(30)}), "") << "nothing is left that the row could take";
  EXPECT_EQ(fillExt({distribution(30)}), "");

  const auto option = [](Entries more) {
    more.insert(more.begin(), {{"FFieldName", "FLocal"}, {"FChkFieldName", "FCheck"}});
    return dictionary(more);
  };
  setChecks({"30"});
  for (const auto& [given, part] : std::vector<std::pair<DictionaryRef, std::string>>{
           {dictionary({}), "option 1: FFieldName is empty"},
           {dictionary({{"FFieldName", "FLocal"}}), "option 1: FChkFieldName is empty"},
           {option({{"FType", 1}}), "option 1: FSrcFieldName is empty"},
           {option({{"FAmount", "1,5"}}), "option 1, FAmount: '1,5' where a number"},
           {conversion({{"FSrcFieldName", "FText"}}), "row 1, column FText: 'abc'"},
           {conversion({{"FSrcFieldName", "FNone"}}), "row 1, column FNone: "},
           {conversion({{"FDecimal", "FSource"}}), "column FSource: 100 is no number of decimals"},
           {conversion({{"FDecimal", "FAmount_Plan"}}), "FAmount_Plan: -8 is no number of"},
           {conversion({{"FRateFieldName", "FAmount"}, {"FRateType", 1}}), "column FAmount: "}}) {
    rows_->Fields()("FAmount").Value(0);
    EXPECT_THAT(fill({given}), HasSubstr(part));
    EXPECT_THAT(fillExt({given}), HasSubstr(part));
  }
  EXPECT_THAT(fill({conversion({{"FRateFieldName", "FAmount"}, {"FRateType", 1}})}),
              HasSubstr("the rate 0"));

  vectorRows_->Add(7);
  EXPECT_EQ(fillVector({distribution(10)}), "row 2 is no Dictionary");
  EXPECT_THAT(fillVector({conversion({{"FSrcFieldName", "FNone"}})}),
              HasSubstr("row 1, column FNone: the row has no such column"));
  rows_ = nullptr;
  EXPECT_THAT(fill({distribution(1)}), HasSubstr("rsEntry is nothing"));
  std::string message;
  object_->GetSwitchVectData(vectorRows_, {}, message);
  EXPECT_THAT(message, HasSubstr("vOption is nothing"));
}

}  // namespace
}  // namespace velmora::settlement
