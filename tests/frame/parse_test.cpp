#include "frame/call/parse.h"

#include <gtest/gtest.h>

#include "error_of.h"

namespace velmora {
namespace {

TEST(CParse, TakesTheConnectionStringApart) {
  struct Case {
    const char* text;
    const char* key;
    const char* value;
  };
  for (const Case& c : {
           Case{"A=1;LANGUAGE=EN;C=3", "language", "EN"},
           Case{"A=1;LANGUAGE=EN;C=3", "C", "3"},
           Case{"ConnectString={Provider=X;Data Source=b=c} ignored ;SubID=AR", "CONNECTSTRING",
                "Provider=X;Data Source=b=c"},
           Case{"ConnectString={Provider=X;Data Source=b=c} ignored ;SubID=AR", "SubID", "AR"},
           Case{"  A  =  one two  ;  ", "a", "one two"},
           Case{"A={ spaced };B=2", "A", "spaced"},
           Case{"A=1=2;B=3", "A", "1=2"},
           Case{"A=1;B", "B", ""},
           Case{"A=1;B;C=2", "B;C", "2"},
           Case{"A={never closed;B=2", "A", "never closed;B=2"},
           Case{"A=;B=2", "B", "2"},
           Case{"A=x{y};B=2", "A", "x{y}"},
       }) {
    CParse parser;
    EXPECT_TRUE(parser.ParseString(c.text));
    EXPECT_EQ(parser.GetProperty(c.key), c.value) << c.text;
    EXPECT_EQ(parser.PropsString(), c.text);
  }
}

TEST(CParse, StopsAtAnEmptyKey) {
  CParse parser;
  parser.ParseString("A=1; =lost;B=2");
  EXPECT_EQ(parser.GetProperty("A"), "1");
  EXPECT_EQ(errorOf([&] { parser.GetProperty("B"); }).number(), com::error::kInvalidArgument);
}

TEST(CParse, NamesAKeyThatOccursTwice) {
  CParse parser;
  const auto error = errorOf([&] { parser.ParseString("UserID=1;Password=secret;userid=2"); });
  EXPECT_EQ(error.number(), com::error::kDuplicateKey);
  EXPECT_NE(error.description().find("userid"), std::string::npos);
  EXPECT_EQ(error.description().find("secret"), std::string::npos);
}

TEST(CParse, ForgetsTheStringBefore) {
  CParse parser;
  parser.ParseString("A=1;LANGUAGE=EN");
  parser.ParseString("B=2");
  EXPECT_EQ(parser.LanguageID(), "chs");
  const auto error = errorOf([&] { parser.GetProperty("A"); });
  EXPECT_EQ(error.number(), com::error::kInvalidArgument);
  EXPECT_NE(error.description().find("\"A\""), std::string::npos);
}

TEST(CParse, KnowsTheFactsAboutTheCaller) {
  CParse parser;
  parser.ParseString(
      "DBMS Name=SQL;DBMS Version=9;UserName=Li;UserID=16394;LANGUAGE=Cht;AcctType=gy;"
      "Q8Version=vrq;ConnectString={a=b}");
  EXPECT_EQ(parser.ConDBMSName(), "SQL");
  EXPECT_EQ(parser.ConDBMSVersion(), "9");
  EXPECT_EQ(parser.UserName(), "Li");
  EXPECT_EQ(parser.UserID(), "16394");
  EXPECT_EQ(parser.LanguageID(), "Cht");
  EXPECT_EQ(parser.ConStr(), "a=b");
  EXPECT_TRUE(parser.IsIndustry());
  EXPECT_EQ(parser.GetRzObjectName("t_Rz"), "t_Rz_VRQ");

  parser.ParseString("AcctType=SY;Q8Version=VRQ2");
  EXPECT_FALSE(parser.IsIndustry());
  EXPECT_EQ(parser.GetRzObjectName("t_Rz"), "t_Rz");

  parser.ParseString("");
  for (const auto& read : {&CParse::ConStr, &CParse::ConDBMSName, &CParse::ConDBMSVersion,
                           &CParse::UserName, &CParse::UserID})
    EXPECT_EQ(errorOf([&] { (parser.*read)(); }).number(), com::error::kInvalidArgument);
  EXPECT_EQ(errorOf([&] { parser.IsIndustry(); }).number(), com::error::kInvalidArgument);
}

}  // namespace
}  // namespace velmora
