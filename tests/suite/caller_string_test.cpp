// The grammar of the caller's string, as component and services read it.

#include "platform/suite/caller_string.h"

#include <gmock/gmock.h>

#include "error_of.h"
#include "velmora/com/class_table.h"

namespace velmora::suite {
namespace {

/// "key=value" lines, a bar around what could be a blank.
std::string read(std::string_view text) {
  std::string answer;
  for (const auto& [key, value] : readCallerString(text))
    answer.append(answer.empty() ? "" : " ").append(key).append("|").append(value);
  return answer;
}

TEST(CallerString, HasOneGrammar) {
  using std::string_literals::operator""s;
  const std::pair<std::string, std::string> cases[] = {
      {"A=1;LANGUAGE=EN;C=3", "A|1 LANGUAGE|EN C|3"},
      {"ConnectString={Provider=X;Data Source=b=c} ignored ;SubID=AR",
       "ConnectString|Provider=X;Data Source=b=c SubID|AR"},
      {" \t A  =  one two  ;\r\n B = { spaced } ; \n", "A|one two B|spaced"},
      {"A=1=2;B=", "A|1=2 B|"},
      {"A=1;Trusted", "A|1 Trusted|"},
      {"A=1;Trusted;C=2", "A|1 Trusted;C|2"},
      {"A=1;=lost;B=2", "A|1"},
      {"A={never closed;B=2", "A|never closed;B=2"},
      {"A=x{y};B=2", "A|x{y} B|2"},
      {"A={{x}};B=2", "A|{x B|2"},
      {"A='t Hooft;B=2", "A|'t Hooft B|2"},
      {"A=\"x;B=2;C=y\"", "A|\"x B|2 C|y\""},
      {"A=1;a=2", "A|1 a|2"},
      {"A\0B=1\0;C=2"s, "A\0B|1\0 C|2"s},
      {"A\xC2\xA0=1", "A\xC2\xA0|1"},
      {"", ""},
      {" ; ", ";|"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(read(text), expected) << text;
}

TEST(CallerString, KeysIgnoreLetterCaseAndOccurOnce) {
  EXPECT_EQ(callerProperties("ConnectString={};UserID=7")->Value("USERid").toText(), "7");
  const auto error = errorOf([] { callerProperties("UserID=1;Password=secret;userid=2"); });
  EXPECT_EQ(error.number(), com::error::kDuplicateKey);
  EXPECT_THAT(error.description(), testing::AllOf(testing::HasSubstr("\"userid\" twice"),
                                                  testing::Not(testing::HasSubstr("secret"))));
}

}  // namespace
}  // namespace velmora::suite
