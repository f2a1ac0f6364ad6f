#include "frame/call/parse.h"

#include <gtest/gtest.h>

#include "error_of.h"

namespace velmora {
namespace {

TEST(CParse, AnswersPropertiesOfItsText) {
  CParse parser;
  const std::string text = "A= 1 ;ConnectString={Provider=X;Data Source=b};SubID=AR";
  EXPECT_TRUE(parser.ParseString(text));
  EXPECT_EQ(parser.GetProperty("a"), "1");
  EXPECT_EQ(parser.GetProperty("CONNECTSTRING"), "Provider=X;Data Source=b");
  EXPECT_EQ(parser.PropsString(), text);
}

TEST(CParse, ForgetsTheStringBefore) {
  CParse parser;
  parser.ParseString("A=1;LANGUAGE=EN");
  parser.ParseString("B=2");
  EXPECT_EQ(parser.LanguageID(), "chs");
  EXPECT_EQ(errorOf([&] { parser.ParseString("C=1;c=2"); }).number(), com::error::kDuplicateKey);
  EXPECT_EQ(errorOf([&] { parser.GetProperty("B"); }).number(), com::error::kInvalidArgument);
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
