#include "platform/ado/duckdb/decimal_functions.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

#include "velmora/com/error.h"

namespace velmora::ado::embedded {

namespace {

using collections::Decimal;
using collections::int128;
using tsql::DecimalFunction;
using Operation = DecimalFunction::Operation;

/// The function's result for two decimals as text; "overflow" beyond 38 digits.
std::string result(Operation operation, const std::string& left, const std::string& right,
                   int scale) {
  const auto a = Decimal::parse(left);
  const auto b = Decimal::parse(right);
  const auto value =
      exactResult({operation, a.scale(), b.scale(), scale}, a.coefficient(), b.coefficient());
  return value ? Decimal::fromCoefficient(*value, scale).toString() : "overflow";
}

const std::string kNines(38, '9');
const std::string kTinyNines = "0." + kNines;

TEST(DecimalFunctions, CutsQuotients) {
  const auto quotient = [](const std::string& a, const std::string& b, int scale) {
    return result(Operation::divide, a, b, scale);
  };
  EXPECT_EQ(quotient("2.0", "3", 6), "0.666666");
  EXPECT_EQ(quotient("-2.0", "3", 6), "-0.666666");
  EXPECT_EQ(quotient("0.00", "-7", 2), "0.00");
  // The dividend needs 76 digits before it is divided.
  EXPECT_EQ(quotient(kNines, kNines, 38), "overflow");
  EXPECT_EQ(quotient(kNines, kNines, 37), "1." + std::string(37, '0'));
  EXPECT_EQ(quotient("1", kNines, 38), "0." + std::string(37, '0') + "1");
  EXPECT_EQ(quotient(kTinyNines, kTinyNines, 6), "1.000000");
  EXPECT_EQ(quotient(kTinyNines, "10", 0), "0");
  EXPECT_EQ(quotient("12345678901234567890.1234", "0.0001", 6), "123456789012345678901234.000000");
  EXPECT_EQ(quotient(kNines, "0.1", 6), "overflow");
  // More fraction digits in the dividend than the quotient keeps.
  EXPECT_EQ(quotient("1.23456789012345", "-0.5", 2), "-2.46");
  // A dividend that outgrows every number on the way.
  EXPECT_EQ(quotient(kNines, "0." + std::string(37, '0') + "1", 38), "overflow");
}

TEST(DecimalFunctions, RoundsProductsHalfAwayFromZero) {
  const auto product = [](const std::string& a, const std::string& b, int scale) {
    return result(Operation::multiply, a, b, scale);
  };
  EXPECT_EQ(product("0.25", "0.1", 2), "0.03");
  EXPECT_EQ(product("-0.25", "0.1", 2), "-0.03");
  EXPECT_EQ(product("0.2499", "0.1", 2), "0.02");
  EXPECT_EQ(product("1.5", "2.5", 2), "3.75");
  EXPECT_EQ(product("1.5", "2.5", 4), "3.7500");
  EXPECT_EQ(product(kTinyNines, kTinyNines, 6), "1.000000");
  EXPECT_EQ(product(kTinyNines, kTinyNines, 0), "1");
  EXPECT_EQ(product(kNines, "-1", 0), "-" + kNines);
  EXPECT_EQ(product(kNines, "1.1", 0), "overflow");
  // 38 digits of the result, then one too many.
  const std::string a = "9999999999999999999.9999999999", b = "9999999999999.9999999999";
  EXPECT_EQ(product(a, b, 6), "99999999999999999999998999999000.000000");
  EXPECT_EQ(product(a, b, 7), "overflow");
}

// Against the platform's decimals where those give the exact result: random operands of
// all lengths, at scales that leave something to round or to cut.
TEST(DecimalFunctions, AgreesWithDecimal) {
  std::mt19937_64 random(20090301);
  const auto number = [&](int digits) {
    int128 value = 0;
    for (int i = 0; i < digits; ++i) value = value * 10 + static_cast<int>(random() % 10);
    return random() % 2 ? value : -value;
  };
  for (int i = 0; i < 20'000; ++i) {
    const int leftScale = static_cast<int>(random() % 12);
    const int rightScale = static_cast<int>(random() % 12);
    const auto left =
        Decimal::fromCoefficient(number(1 + static_cast<int>(random() % 16)), leftScale);
    const auto right =
        Decimal::fromCoefficient(number(1 + static_cast<int>(random() % 16)), rightScale);
    const int scale = static_cast<int>(random() % 7);

    const auto product = exactResult({Operation::multiply, leftScale, rightScale, scale},
                                     left.coefficient(), right.coefficient());
    const auto expectedProduct = (left * right).rescaled(scale);
    EXPECT_EQ(product, expectedProduct.coefficient())
        << left.toString() << " * " << right.toString();

    if (right.isZero()) continue;
    const auto quotient = exactResult({Operation::divide, leftScale, rightScale, scale},
                                      left.coefficient(), right.coefficient());
    ASSERT_TRUE(quotient) << left.toString() << " / " << right.toString();
    // Cut towards zero: |q * b| <= |a| < (|q| + 1 unit) * |b|.
    const auto cut = Decimal::fromCoefficient(*quotient, scale).abs();
    const auto unit = Decimal::fromCoefficient(1, scale);
    EXPECT_LE(cut * right.abs(), left.abs());
    EXPECT_GT((cut + unit) * right.abs(), left.abs());
  }
}

}  // namespace

}  // namespace velmora::ado::embedded
