#include "velmora/collections/format.h"

#include <gtest/gtest.h>
#include <vector>

namespace velmora::collections {
namespace {

TEST(FormatString, FillsPlaceholdersInOnePass) {
  const std::vector<Variant> one{"A"};
  const std::vector<Variant> three{"%2", Decimal::parse("12.50"), Null()};
  std::vector<Variant> twelve(12, "x");
  twelve[0] = "first";
  twelve[11] = "last";
  struct Case {
    std::string_view text;
    const std::vector<Variant>& parameters;
    std::string_view expected;
  };
  for (const Case& c : {
           Case{"第%1期", one, "第A期"},
           {"%1%1", one, "AA"},
           {"", one, ""},
           {"%2", one, "%2"},
           {"%0 and 100% of %x%", one, "%0 and 100% of %x%"},
           {"%%1", one, "%A"},
           {"%99999999999999999999999", one, "%99999999999999999999999"},
           {"%1,%2,%3.", three, "%2,12.5,."},
           {"%12 %1", twelve, "last first"},
           {"%13", twelve, "%13"},
       })
    EXPECT_EQ(FormatString(c.text, c.parameters), c.expected) << c.text;
}

}  // namespace
}  // namespace velmora::collections
