#include "platform/ado/odbc/wide_text.h"

#include <gmock/gmock.h>

#include "error_of.h"

namespace velmora::ado::odbc {
namespace {

using testing::HasSubstr;

TEST(WideText, KeepsEveryCharacter) {
  for (char32_t c = 1; c <= 0x10FFFF; c += c < 0x3000 || c > 0xFF00 ? 1 : 17) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    std::u16string wide;
    if (c < 0x10000)
      wide = static_cast<char16_t>(c);
    else
      wide = {static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)),
              static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF))};
    const auto utf8 = tryToUtf8(wide);
    ASSERT_TRUE(utf8) << static_cast<unsigned>(c);
    ASSERT_EQ(tryToWide(*utf8), wide) << static_cast<unsigned>(c);
  }
  EXPECT_EQ(tryToUtf8(u"凭证 A\U0001F4B0"), "凭证 A\U0001F4B0");
}

TEST(WideText, KnowsBrokenUtf8) {
  for (const char* broken : {"\xFF", "a\x80", "\xC3", "\xE5\x87", "\xC0\xAF", "\xE0\x80\x80",
                             "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80"})
    EXPECT_FALSE(tryToWide(broken)) << broken;
  EXPECT_THAT(errorOf([] { toWide("ab\xFF"); }).description(), HasSubstr("from byte 3 on"));
}

TEST(WideText, KnowsHalfAPair) {
  for (const std::u16string& broken :
       {std::u16string(u"a\xD83D"), std::u16string(u"\xDCB0z"), std::u16string(u"\xD83D\xD83D")})
    EXPECT_FALSE(tryToUtf8(broken));
  EXPECT_EQ(toReadableUtf8(u"a\xD83Dz"), "a\uFFFDz");
}

}  // namespace
}  // namespace velmora::ado::odbc
