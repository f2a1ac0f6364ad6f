#include "cli/caller_string.h"

#include <gmock/gmock.h>

#include "cli/failure.h"
#include "cli/secrets.h"
#include "velmora/ado/connection_string.h"

namespace velmora::cli {
namespace {

using testing::HasSubstr;
using testing::Not;

const CallerContext kEnglishPayables{false, "EN", "li"};

std::string failureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const std::exception& failure) {
    return failure.what();
  }
  return "no failure";
}

TEST(CallerStringFor, WrapsAnAdoConnectionString) {
  EXPECT_EQ(
      callerStringFor("Provider=Velmora.Embedded;Data Source=a.db;Mode=Read", kEnglishPayables),
      "ConnectString={Provider=Velmora.Embedded;Data Source=a.db;Mode=Read};UserName=li;"
      "LANGUAGE=EN;SubID=AP;AcctType=;Q8Version=;DBMS Name=;DBMS Version=;");
  EXPECT_THAT(callerStringFor("dsn=books", {.language = "", .user = "", .userId = 7}),
              HasSubstr(";UserID=7;"));
  EXPECT_THAT(callerStringFor("dsn=books", {}), HasSubstr("ConnectString=dsn=books;"));
  EXPECT_THAT(callerStringFor("dsn=books", {}), HasSubstr("LANGUAGE=chs;SubID=AR;"));
}

TEST(CallerStringFor, RewritesBracesThatWouldEndTheConnectString) {
  const auto dsn = callerStringFor("Driver={FreeTDS};Server=db;UID=sa;PWD=a;b=c", {});
  const ado::ConnectionString inner(connectStringOf(dsn));
  EXPECT_EQ(inner.value("Driver"), "FreeTDS");
  EXPECT_EQ(inner.value("Server"), "db");
  EXPECT_THAT(failureOf([] { callerStringFor("Driver={FreeTDS};PWD=a}b", {}); }),
              HasSubstr("\"}\""));
}

TEST(CallerStringFor, LeavesASuiteStringAsItIsUnlessLanguageOrUserIsAskedFor) {
  const std::string given = "connectstring = {Provider=X;Data Source=a;} ; language=CHT;UserID=7";
  EXPECT_EQ(callerStringFor(given, {}), given);
  const CallerString changed(callerStringFor(given, kEnglishPayables));
  EXPECT_EQ(changed.find("LANGUAGE"), "EN");
  EXPECT_EQ(changed.find("ConnectString"), "Provider=X;Data Source=a;");
  EXPECT_EQ(changed.find("UserID"), "7");
  EXPECT_EQ(changed.find("SubID"), std::nullopt);
  EXPECT_EQ(
      callerStringFor("ConnectString=X;userid=ada", {.language = "", .user = "", .userId = 0}),
      "ConnectString=X;userid=0;");
}

TEST(CallerStringFor, RefusesAUserThatNobodyReads) {
  for (const char* text :
       {"ConnectString={X};UserName=O;Brien;UserID=7", "ConnectString={X};=;UserID=7",
        "ConnectString={X;UserID=7\n", "ConnectString={X};UserName={x;userid=7 ",
        "UserName={x} UserID=7;ConnectString={X}", "ConnectString={X};UserID\xC2\xA0=7"})
    EXPECT_THAT(failureOf([&] { callerStringFor(text, {}); }), HasSubstr("UserID=NUMBER")) << text;
  for (const char* text :
       {"ConnectString={X;UserID=sa};SubID=AR", "UserName=userid;UserID=;ConnectString=X"})
    EXPECT_EQ(callerStringFor(text, {}), text);
}

TEST(CallerStringFor, RefusesWhatCannotBeUsed) {
  EXPECT_THAT(
      failureOf([] { callerStringFor("ConnectString={Provider=X};LANGUAGE=EN;language=chs", {}); }),
      HasSubstr("\"language\" twice"));
  EXPECT_THAT(failureOf([] { callerStringFor("UserName=li;LANGUAGE=EN", {}); }),
              HasSubstr("neither ConnectString="));
  EXPECT_THAT(failureOf([] { connectStringOf("ConnectString={};LANGUAGE=EN"); }),
              HasSubstr("no ConnectString="));
}

TEST(EmbeddedConnectString, HoldsAnyFileNameButOneWithAClosingBrace) {
  for (const char* file : {"a b.db", "a;Mode=ReadWrite.db", "it's \"x\".db", "=.db", " lead"}) {
    const auto dsn = callerStringFor(embeddedConnectString(file, "Read"), {});
    const ado::ConnectionString settings(connectStringOf(dsn));
    EXPECT_EQ(settings.value("Data Source"), file) << dsn;
    EXPECT_EQ(settings.value("Mode"), "Read") << dsn;
  }
  EXPECT_THAT(failureOf([] { embeddedConnectString("a}b.db", "Read"); }), HasSubstr("a}b.db"));
}

TEST(WithoutPasswords, MasksEveryFormAPasswordIsWrittenIn) {
  for (const char* text :
       {"Password=secret;Data Source=x", "PWD = secret ;Data Source=x",
        "cannot log in with {User ID=sa;password=\"a;secret\";Data Source=x}",
        "pwd={a;secret}};b};Data Source=x", "Password='it''s secret';Data Source=x",
        "ConnectString={Data Source=x;Password=secret}",
        "Data Source=x;Password=\"never; secret"}) {
    const auto masked = withoutPasswords(text);
    EXPECT_THAT(masked, Not(HasSubstr("secret"))) << text;
    EXPECT_THAT(masked, HasSubstr("***")) << text;
    EXPECT_THAT(masked, HasSubstr("Data Source=x")) << text;
  }
  EXPECT_EQ(withoutPasswords("the password is wrong; MyPwd=1"), "the password is wrong; MyPwd=1");
}

}  // namespace
}  // namespace velmora::cli
