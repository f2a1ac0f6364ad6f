#include "velmora/collections/fraction.h"

#include <gtest/gtest.h>

#include "error_of.h"
#include "velmora/com/error.h"

namespace velmora::collections {
namespace {

const std::string kNines(38, '9');
const std::string kSmallest = "0." + std::string(37, '0') + "1";

TEST(Fraction, IsRoundedOnceHoweverLongTheWayIs) {
  struct Case {
    std::string amount, factor, divisor;
    int scale;
    std::string expected;  // "" for more than 38 digits
  };
  for (const Case& c : {
           Case{"10000", "1", "3333.33333333333333333333", 4, "3.0000"},
           {"-100", "6.82750000000000000001", "1", 2, "-682.75"},
           {"1", "-1", "-8", 2, "0.13"},
           {"-1", "1", "8", 2, "-0.13"},
           {"0.0049", "1", "0.99", 2, "0.00"},
           {kNines, kNines, kNines, 0, kNines},
           {kNines, "0." + kNines, kNines, 38, "0." + kNines},
           {kNines, kNines, "1", 0, ""},
           {kNines, "1", kSmallest, 38, ""},
           {kNines, "0.1", "1", 1, kNines.substr(1) + ".9"},
           {"1" + std::string(36, '0'), "1", "0.001", 0, ""},
           {kSmallest, kSmallest, kNines, 0, "0"},
           {kSmallest, "1", kNines, 38, "0." + std::string(38, '0')},
           {"0." + kNines, "0." + kNines, "2", 0, "0"},
           {"1.5", "1", "3", 0, "1"},
           {"0", "5", "3", 2, "0.00"},
       }) {
    const auto value =
        Fraction(Decimal::parse(c.amount), Decimal::parse(c.factor), Decimal::parse(c.divisor))
            .tryRounded(c.scale);
    EXPECT_EQ(value ? value->toString() : "", c.expected)
        << c.amount << " * " << c.factor << " / " << c.divisor;
  }
  EXPECT_EQ(errorOf([] { Fraction(1, 1, 0); }).number(), com::error::kDivisionByZero);
  EXPECT_EQ(errorOf([] { Fraction(1, 1, 1).tryRounded(39); }).number(), com::error::kOverflow);
}

TEST(Fraction, IsComparedExactly) {
  struct Case {
    std::string amount, factor, divisor;
    bool exceeds;  // 1000
  };
  for (const Case& c : {
           Case{"1000", "1", "1", false},
           {"-1000." + std::string(33, '0') + "1", "1", "1", true},
           {"3000", "1", "3." + std::string(36, '0') + "1", false},
           {"3000." + std::string(33, '0') + "1", "1", "3", true},
           {"1", "1", kSmallest, true},
           {kSmallest, kSmallest, kNines, false},
           {kNines, kNines, "-" + kNines, true},
           {"999", "1", "-0.999", false},
       })
    EXPECT_EQ(
        Fraction(Decimal::parse(c.amount), Decimal::parse(c.factor), Decimal::parse(c.divisor))
            .exceeds(1000),
        c.exceeds)
        << c.amount << " * " << c.factor << " / " << c.divisor;
}

}  // namespace
}  // namespace velmora::collections
