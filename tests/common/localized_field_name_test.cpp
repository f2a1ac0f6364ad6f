#include "common/localized_field_name.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(LocalizedFieldName, PicksTheColumnOfTheLanguage) {
  struct Case {
    const char* language;
    bool chsSuffix, alias;
    const char* expected;
  };
  for (const Case& c :
       {Case{"en", false, true, "FName_EN as FName"}, Case{"Cht", false, false, "FName_CHT"},
        Case{"chs", false, false, "FName"}, Case{"chs", true, true, "FName_CHS as FName"},
        Case{"", false, false, "FName"}})
    EXPECT_EQ(LocalizedFieldName("FName", c.language, c.chsSuffix, c.alias), c.expected)
        << c.language;
}

}  // namespace
}  // namespace velmora
