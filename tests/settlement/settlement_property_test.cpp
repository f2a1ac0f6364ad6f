// Settlement against its plain telling, and what has to hold whatever is settled.

#include <gtest/gtest.h>
#include <random>

#include "documents.h"
#include "plain_settlement.h"
#include "printed_seed.h"
#include "sanitized.h"
#include "settlement/amount_settlement.h"

namespace velmora::settlement {
namespace {

using collections::Dictionary;
using collections::Vector;

struct Case {
  int amountMode = 0;
  bool withQuantity = false, hasSource = true, hasDestination = true;
  std::vector<std::string> groupBy;
  Rows source, destination, earlier;
};

class Cases {
 public:
  explicit Cases(std::uint64_t seed) : random_(seed) {}

  /// Anything that a caller may hand over.
  Case any() {
    Case made = consistent();
    for (Rows* rows : {&made.source, &made.destination})
      for (Row& row : *rows) {
        if (chance(10)) row["FRemark"] = 1;
        if (chance(10)) row["FNowRemainAmtFor"] = row["FNowRemainAmt"] = Decimal(0);
        if (chance(10)) row["FCheckAmount"] = Decimal(0);
        if (chance(10)) row["FTaxPrice"] = Decimal(0);
        if (chance(10)) row["FNowRemainQty"] = cents(500);
        if (made.withQuantity && made.amountMode == 0) continue;
        for (const char* column : {"FRemainQty", "FNowRemainQty", "FTaxPrice"})
          if (chance(10)) row[column] = collections::Null();
      }
    return made;
  }

  /// Documents that are wholly open, in every mode.
  Case consistent() {
    Case made;
    made.amountMode = pick(2);
    made.withQuantity = chance(50);
    made.hasSource = !chance(5);
    made.hasDestination = !chance(5);
    const int signs = pick(3);
    if (made.hasSource) made.source = documents(100, signs);
    if (made.hasDestination) made.destination = documents(200, signs);
    if (!made.source.empty() && chance(50)) made.groupBy = {"FID"};
    if (!made.groupBy.empty() && chance(50)) made.groupBy.push_back("FCurrencyID");
    oneSigned_ = signs != 2;
    return made;
  }
  bool oneSigned() const { return oneSigned_; }

 private:
  /// `signs`: 0 all positive, 1 all negative, 2 both.
  Rows documents(int firstId, int signs) {
    Rows rows(static_cast<std::size_t>(pick(9)));
    for (Row& row : rows) {
      const Decimal amount = chance(40) ? Decimal(1 + pick(4)) * Decimal(10) : cents(9999);
      const bool negative = signs == 1 || (signs == 2 && chance(40));
      const Decimal rate = Decimal::fromCoefficient(5 + pick(10), 1);
      const Decimal signedAmount = negative ? -amount : amount;
      row = document(firstId + pick(6), signedAmount, (signedAmount * rate).rounded(2));
      const Decimal price = Decimal::fromCoefficient(1 + pick(400), 2);
      const int decimals = pick(7);
      const Decimal quantity =
          chance(20) ? 0 : Decimal::divide(signedAmount, price, std::min(decimals, 4));
      row = withQuantity(row, quantity, price, decimals);
      row["FType"] = 1 + pick(2);
      row["FEntryID"] = 1 + pick(3);
      row["FID"] = 1 + pick(3);
      row["FCurrencyID"] = 1 + pick(2);
    }
    return rows;
  }

  int pick(int below) { return std::uniform_int_distribution(0, below - 1)(random_); }
  bool chance(int percent) { return pick(100) < percent; }
  Decimal cents(int most) { return Decimal::fromCoefficient(1 + pick(most), 2); }

  std::mt19937_64 random_;
  bool oneSigned_ = false;
};

struct Settled {
  ado::RecordsetRef source, destination;
  collections::VectorRef chkInfo = com::make<Vector>();

  void run(const Case& given) {
    auto dDictSwitch = com::make<Dictionary>();
    for (const auto& column : given.groupBy) dDictSwitch->Set(column, column);
    AmtSettlement("", source, destination, chkInfo, given.amountMode, given.withQuantity ? 1 : 0,
                  dDictSwitch);
  }
  Rows rows() const {
    Rows rows;
    for (const Variant& item : *chkInfo) {
      const auto dictionary = item.toObject<Dictionary>();
      Row& row = rows.emplace_back();
      for (std::size_t i = 0; i < dictionary->Count(); ++i)
        row[dictionary->Key(i)] = dictionary->Item(i);
    }
    return rows;
  }
};

Settled settled(const Case& given) {
  Settled result;
  if (given.hasSource) result.source = recordsetOf(given.source);
  if (given.hasDestination) result.destination = recordsetOf(given.destination);
  result.run(given);
  return result;
}

/// The rows of one list that the other has otherwise, for a failure's message.
std::string difference(const Rows& got, const Rows& expected) {
  std::string text;
  if (got.size() != expected.size())
    text = std::to_string(got.size()) + " rows, expected " + std::to_string(expected.size()) + '\n';
  for (std::size_t i = 0; i < std::min(got.size(), expected.size()); ++i) {
    Row all = got[i];
    all.insert(expected[i].begin(), expected[i].end());
    for (const auto& [key, ignored] : all) {
      const auto a = got[i].find(key), b = expected[i].find(key);
      if (a == got[i].end() || b == expected[i].end())
        text += "row " + std::to_string(i + 1) + ": " + key + " on one side only\n";
      else if (!(a->second == b->second))
        text += "row " + std::to_string(i + 1) + ": " + key + " is " + a->second.toText() +
                ", expected " + b->second.toText() + '\n';
    }
  }
  return text;
}

TEST(SettlementProperty, GivesTheRowsOfThePlainProcedure) {
  constexpr int kCases = kSanitized ? 300 : 10'000;
  Cases cases(printedSeed());
  std::size_t pairs = 0;
  for (int i = 0; i < kCases; ++i) {
    SCOPED_TRACE("case " + std::to_string(i + 1));
    Case given = cases.any();
    const Settled result = settled(given);
    Rows chkInfo;
    PlainSettlement(given.amountMode, given.withQuantity)
        .settle(given.hasSource ? &given.source : nullptr,
                given.hasDestination ? &given.destination : nullptr, chkInfo, given.groupBy);
    ASSERT_EQ(difference(result.rows(), chkInfo), "");
    ASSERT_EQ(difference(rowsOf(result.source), given.source), "");
    ASSERT_EQ(difference(rowsOf(result.destination), given.destination), "");
    pairs += chkInfo.size() / 2;
  }
  EXPECT_GT(pairs, 2u * kCases) << "the cases have to settle something";
}

Decimal number(const Row& row, const std::string& column) {
  return row.at(column).toDecimal();
}

/// Settled plus open is the original on every document, in both currencies and quantity.
void expectNothingLost(const Rows& rows, const Case& given) {
  for (const Row& row : rows) {
    EXPECT_EQ(number(row, "FNowCheckAmt") + number(row, "FNowRemainAmt"),
              number(row, "FCheckAmount"));
    if (given.amountMode == 1) continue;
    EXPECT_EQ(number(row, "FNowCheckAmtFor") + number(row, "FNowRemainAmtFor"),
              number(row, "FCheckAmountFor"));
    EXPECT_EQ(number(row, "FNowCheckQty") + number(row, "FNowRemainQty"), number(row, "FCheckQty"));
  }
}

void expectNothingBeyondOpen(const Rows& rows, const Case& given) {
  const bool single = given.amountMode == 1;
  for (const Row& row : rows)
    EXPECT_LE(number(row, single ? "FNowCheckAmt" : "FNowCheckAmtFor").abs(),
              number(row, single ? "FCheckAmount" : "FCheckAmountFor").abs());
}

/// Each pair row and its mirror tell the same amounts and documents from both ends.
void expectMirrored(const Rows& chkInfo) {
  for (std::size_t i = 0; i + 1 < chkInfo.size(); i += 2)
    for (const std::string key : {"FBillID", "FEntryID", "FContactID", "FCheckAmountFor",
                                  "FCheckAmount", "FBillRemainAmountFor"}) {
      EXPECT_EQ(chkInfo[i].at(key), chkInfo[i + 1].at(key + "_SRC"));
      EXPECT_EQ(chkInfo[i].at(key + "_SRC"), chkInfo[i + 1].at(key));
    }
}

TEST(SettlementProperty, LosesNothingAndSettlesNothingTwice) {
  Cases cases(printedSeed());
  for (int i = 0; i < (kSanitized ? 300 : 3'000) && !testing::Test::HasFailure(); ++i) {
    SCOPED_TRACE("case " + std::to_string(i + 1));
    const Case given = cases.consistent();
    Settled result = settled(given);
    for (const auto& side : {result.source, result.destination}) {
      expectNothingLost(rowsOf(side), given);
      if (cases.oneSigned()) expectNothingBeyondOpen(rowsOf(side), given);
    }
    expectMirrored(result.rows());
    const std::size_t pairs = result.chkInfo->Size();
    if (result.source) result.source->Filter("");
    result.run(given);
    EXPECT_EQ(result.chkInfo->Size(), pairs);
  }
}

}  // namespace
}  // namespace velmora::settlement
