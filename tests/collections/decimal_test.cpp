#include "velmora/collections/decimal.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <rapidcheck/gtest.h>

#include "error_of.h"

namespace velmora::collections {
namespace {

const std::string kNines(38, '9');

/// A decimal of 1 to 38 digits with up to as many decimals, either sign.
Decimal anyDecimal() {
  const int digits = *rc::gen::inRange(1, 39);
  const int scale = *rc::gen::inRange(0, digits + 1);
  std::string text = *rc::gen::container<std::string>(static_cast<std::size_t>(digits),
                                                      rc::gen::inRange('0', ':'));
  text.insert(static_cast<std::size_t>(digits - scale), ".");
  if (scale == 0) text.pop_back();
  if (scale == digits) text.insert(0, "0");
  return Decimal::parse((*rc::gen::arbitrary<bool>() ? "-" : "") + text);
}

/// An amount as documents carry it: up to 20 digits, two to four decimals.
Decimal anyAmount() {
  return Decimal::fromCoefficient(int128{*rc::gen::inRange<std::int64_t>(
                                      -4'000'000'000'000'000'000, 4'000'000'000'000'000'000)} *
                                      *rc::gen::inRange(1, 25),
                                  *rc::gen::inRange(2, 5));
}

/// Whole numbers by pencil and paper, lowest digit first.
using Digits = std::vector<int>;

Digits digitsOf(const Decimal& value) {
  Digits digits;
  for (int128 rest = value.abs().coefficient(); rest != 0; rest /= 10)
    digits.push_back(static_cast<int>(rest % 10));
  return digits;
}

Digits multiplied(const Digits& a, const Digits& b) {
  Digits product(a.size() + b.size() + 1, 0);
  for (std::size_t i = 0; i < a.size(); ++i)
    for (std::size_t j = 0; j < b.size(); ++j) product[i + j] += a[i] * b[j];
  for (std::size_t i = 0; i + 1 < product.size(); ++i) {
    product[i + 1] += product[i] / 10;
    product[i] %= 10;
  }
  while (!product.empty() && product.back() == 0) product.pop_back();
  return product;
}

/// The decimal that the digits and scale make; nullopt when it is too long even
/// without its trailing zeros.
std::optional<Decimal> madeOf(Digits digits, int scale, bool negative) {
  while (scale > 0 && !digits.empty() && digits.front() == 0) {
    digits.erase(digits.begin());
    --scale;
  }
  if (digits.size() > 38 || (scale > 38 && !digits.empty())) return std::nullopt;
  int128 coefficient = 0;
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit)
    coefficient = coefficient * 10 + *digit;
  return Decimal::fromCoefficient(negative ? -coefficient : coefficient, std::min(scale, 38));
}

TEST(Decimal, ParsesWholeTextsOnly) {
  struct Case {
    std::string text;
    std::string expected;  // "" for refused
  };
  const std::string zeros(60, '0');
  for (const Case& c : {
           Case{"12.50", "12.50"},
           {" \t-0.5 ", "-0.5"},
           {"+7", "7"},
           {"007.0", "7.0"},
           {"-0.00", "0.00"},
           {"1e3", "1000"},
           {"1.25E+1", "12.5"},
           {"15e-4", "0.0015"},
           {kNines, kNines},
           {"-0." + kNines, "-0." + kNines},
           {zeros + "1." + zeros, "1." + std::string(37, '0')},
           {"0e99999999999", "0"},
           {kNines + "0", ""},
           {kNines + ".9", ""},
           {"1e38", ""},
           {"1e-39", ""},
           {"1e99999999999", ""},
           {"1e-99999999999", ""},
           {"", ""},
           {" ", ""},
           {"-", ""},
           {".5", ""},
           {"5.", ""},
           {"1.2.3", ""},
           {"1 2", ""},
           {"12a", ""},
           {"1e", ""},
           {"1,000", ""},
           {"0x10", ""},
           {"--1", ""},
           {"nan", ""},
           {"１", ""},
       }) {
    const auto value = Decimal::tryParse(c.text);
    EXPECT_EQ(value ? value->toString() : "", c.expected) << "'" << c.text << "'";
  }
  EXPECT_EQ(errorOf([] { Decimal::parse("12a"); }).number(), com::error::kTypeMismatch);
}

TEST(Decimal, RoundsHalvesAwayFromZeroAndCutsTowardsIt) {
  struct Case {
    const char* value;
    int places;
    const char *rounded, *truncated;
  };
  for (const Case& c : {
           Case{"1.125", 2, "1.13", "1.12"},
           {"-1.125", 2, "-1.13", "-1.12"},
           {"1.1249", 2, "1.12", "1.12"},
           {"0.5", 0, "1", "0"},
           {"-0.4", 0, "0", "0"},
           {"99.95", 1, "100.0", "99.9"},
           {"1.1", 5, "1.1", "1.1"},
           {"150.00", -2, "200", "100"},
           {"49", -2, "0", "0"},
           {"50", -40, "0", "0"},
           {"1", std::numeric_limits<int>::min(), "0", "0"},
           {"0.00000000000000000000000000000000000005", 37,
            "0.0000000000000000000000000000000000001", "0.0000000000000000000000000000000000000"},
       }) {
    const Decimal value = Decimal::parse(c.value);
    EXPECT_EQ(value.rounded(c.places).toString(), c.rounded) << c.value << " to " << c.places;
    EXPECT_EQ(value.truncated(c.places).toString(), c.truncated) << c.value << " to " << c.places;
  }
  EXPECT_EQ(Decimal::parse("1.5").rescaled(3).toString(), "1.500");
  EXPECT_EQ(Decimal::parse("-1.55").rescaled(1).toString(), "-1.6");
  EXPECT_EQ(Decimal::parse("1.500").normalized().toString(), "1.5");
  EXPECT_EQ(Decimal::parse("100.00").normalized().toString(), "100");
}

TEST(Decimal, RefusesWhatNeedsMoreThan38Digits) {
  const Decimal most = Decimal::parse(kNines);
  const int128 tooLarge = most.coefficient() + 1;
  for (const auto& attempt : std::vector<std::function<void()>>{
           [&] { most + 1; },
           [&] { most + most; },
           [&] { -most - most; },
           [&] { most + Decimal::parse("0.1"); },
           [&] { most * 2; },
           [&] { most* most; },
           [&] { Decimal::parse("0." + kNines) * Decimal::parse("0.1"); },
           [&] { Decimal::divide(most, Decimal::parse("0.1"), 0); },
           [&] { Decimal::divide(most, Decimal::parse("0." + kNines), 38); },
           [&] { Decimal::divide(1, 3, 39); },
           [&] { Decimal::divide(1, 3, -1); },
           [&] { most.rescaled(1); },
           [&] { most.rounded(-1); },
           [&] { most.toInt64(); },
           [&] { Decimal::fromCoefficient(tooLarge, 0); },
           [&] { Decimal::fromCoefficient(-tooLarge, 0); },
           [&] { Decimal::fromCoefficient(1, 39); },
           [&] { Decimal::fromDouble(1e38); },
           [&] { Decimal::fromDouble(std::numeric_limits<double>::quiet_NaN()); },
       })
    EXPECT_EQ(errorOf(attempt).number(), com::error::kOverflow);
  EXPECT_EQ(most + Decimal::parse("0.00"), most) << "zeros that are too much are dropped";
  EXPECT_EQ((Decimal::parse("0." + kNines) * Decimal::parse("10")).toString(),
            "9." + std::string(37, '9'));
}

TEST(Decimal, DividesToTheScaleAskedFor) {
  struct Case {
    std::string dividend, divisor;
    int scale;
    std::string expected;
  };
  for (const Case& c : {
           Case{"10", "3", 4, "3.3333"},
           {"-20", "3", 2, "-6.67"},
           {"1", "-8", 2, "-0.13"},
           {"0.5", "1", 0, "1"},
           {"0.49", "1", 0, "0"},
           {"1", "3", 38, "0." + std::string(38, '3')},
           {"1", kNines, 0, "0"},
           {"0." + kNines, "0." + kNines, 37, "1." + std::string(37, '0')},
           {"0.00000000000000000000000000000000000001", kNines, 38, "0." + std::string(38, '0')},
       })
    EXPECT_EQ(
        Decimal::divide(Decimal::parse(c.dividend), Decimal::parse(c.divisor), c.scale).toString(),
        c.expected)
        << c.dividend << " / " << c.divisor;
  const auto error = errorOf([] { Decimal::divide(5, Decimal::parse("0.00"), 2); });
  EXPECT_EQ(error.number(), com::error::kDivisionByZero);
  EXPECT_EQ(error.description(), "5 cannot be divided by zero");
}

TEST(Decimal, ComparesByValue) {
  EXPECT_EQ(Decimal::parse("1.5"), Decimal::parse("1.50"));
  EXPECT_EQ(Decimal::parse("-0.0"), Decimal(0));
  EXPECT_LT(Decimal::parse("-" + kNines), Decimal::parse("-0." + kNines));
  EXPECT_LT(Decimal::parse("-1.01"), Decimal::parse("-1.001"));
  EXPECT_GT(Decimal::parse(kNines), Decimal::parse("0." + kNines));
}

TEST(Decimal, ReadsADoubleByItsShortestText) {
  struct Case {
    double value;
    std::string expected;
  };
  for (const Case& c : {Case{0.1, "0.1"},
                        {-1234.5678, "-1234.5678"},
                        {1e20, "100000000000000000000"},
                        {-0.0, "0"},
                        {1e-38, "0." + std::string(37, '0') + "1"},
                        {1.5e-38, "0." + std::string(37, '0') + "2"},
                        {4e-39, "0." + std::string(38, '0')},
                        {5e-324, "0." + std::string(38, '0')}})
    EXPECT_EQ(Decimal::fromDouble(c.value).toString(), c.expected) << c.value;
  EXPECT_EQ(Decimal::parse("0.1").toDouble(), 0.1);
  EXPECT_EQ(Decimal::parse("12345678901234567890.123456789").toDouble(),
            12345678901234567890.123456789);
}

TEST(Decimal, CutsToA64BitInteger) {
  EXPECT_EQ(Decimal::parse("-3.99").toInt64(), -3);
  EXPECT_EQ(Decimal::parse("-9223372036854775808.9").toInt64(),
            std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(errorOf([] { Decimal::parse("9223372036854775808").toInt64(); }).description(),
            "9223372036854775808 does not fit a 64-bit integer");
}

TEST(Decimal, SumsManyAmountsExactly) {
  // 0.01 to the 20th digit, a hundred thousand times over and back again.
  const Decimal amount = Decimal::parse("999999999999999999.99");
  Decimal sum;
  for (int i = 0; i < 100'000; ++i) sum += amount;
  EXPECT_EQ(sum.toString(), "99999999999999999999000.00");
  for (int i = 0; i < 100'000; ++i) sum -= amount;
  EXPECT_TRUE(sum.isZero());
}

RC_GTEST_PROP(DecimalProperty, TextGivesTheSameNumberBack, ()) {
  const Decimal value = anyDecimal();
  const Decimal back = Decimal::parse(value.toString());
  RC_ASSERT(back.coefficient() == value.coefficient());
  RC_ASSERT(back.scale() == value.scale());
}

RC_GTEST_PROP(DecimalProperty, TakingAwayWhatWasAddedGivesTheSame, ()) {
  const Decimal a = anyAmount(), b = anyAmount();
  RC_ASSERT((a + b) - b == a);
  RC_ASSERT(a + b == b + a);
  RC_ASSERT((a - b).sign() == (a > b) - (a < b));
}

RC_GTEST_PROP(DecimalProperty, LongSumsAreExactOrRefused, ()) {
  const Decimal a = anyDecimal(), b = anyDecimal();
  try {
    RC_ASSERT((a + b) - a == b);
  } catch (const com::Error& e) {
    RC_ASSERT(e.number() == com::error::kOverflow);
    RC_ASSERT(std::max(a.toString().size(), b.toString().size()) >= 20U);
  }
}

RC_GTEST_PROP(DecimalProperty, ProductsAreThoseOfPencilAndPaper, ()) {
  const Decimal a = anyDecimal(), b = anyDecimal();
  const auto expected =
      madeOf(multiplied(digitsOf(a), digitsOf(b)), a.scale() + b.scale(), a.sign() * b.sign() < 0);
  try {
    const Decimal product = a * b;
    RC_ASSERT(expected.has_value());
    RC_ASSERT(product == *expected);
  } catch (const com::Error&) {
    RC_ASSERT(!expected.has_value());
  }
}

RC_GTEST_PROP(DecimalProperty, QuotientsAreWithinHalfAUnit, ()) {
  const Decimal a = anyAmount(), b = anyAmount();
  RC_PRE(!b.isZero());
  const int scale = *rc::gen::inRange(0, 8);
  const Decimal quotient = Decimal::divide(a, b, scale);
  const Decimal twiceTheRest = ((a - quotient * b) * 2).abs();
  const Decimal unit = Decimal::fromCoefficient(1, scale) * b.abs();
  RC_ASSERT(twiceTheRest <= unit);
  // A half exactly goes away from zero, so that the quotient is then the larger one.
  if (twiceTheRest == unit) RC_ASSERT((quotient * b).abs() > a.abs());
}

RC_GTEST_PROP(DecimalProperty, RoundingMovesByHalfAUnitAtMost, ()) {
  const Decimal value = anyAmount();
  const int places = *rc::gen::inRange(-4, 5);
  const Decimal unit = places < 0 ? Decimal::parse("1e" + std::to_string(-places))
                                  : Decimal::fromCoefficient(1, places);
  RC_ASSERT(((value.rounded(places) - value) * 2).abs() <= unit);
  RC_ASSERT((value.truncated(places) - value).abs() < unit);
  RC_ASSERT(value.truncated(places).abs() <= value.abs());
}

}  // namespace
}  // namespace velmora::collections
