// Whether a period's dates may change, and what a refusal and a failure tell.

#include <gmock/gmock.h>

#include "account_set.h"
#include "answered.h"
#include "frame/classes.h"
#include "late_bound.h"
#include "scripted_database.h"
#include "velmora/com/context.h"
#include "velmora/interfaces.h"

namespace velmora {
namespace {

using collections::Date;
using collections::Variant;

Date dateOf(const char* text) {
  return *Date::tryParse(text);
}

class PeriodChange : public AccountSet {
 protected:
  PeriodChange() { com::GetObjectContext().reset(); }

  bool change(const std::string& dsn, const char* oldStart, const char* newStart) {
    return object_->IsCanChangePeriod(dsn, message_, 2009, 3, dateOf(oldStart),
                                      dateOf("2009-03-31"), dateOf(newStart), dateOf("2009-03-31"));
  }

  com::ScopedClass class_{publicClasses()[1]};
  com::Ref<_clsCheck> object_ = com::CreateObject(_clsCheck::kProgId).as<_clsCheck>();
  std::string message_ = "as passed";
};

TEST_F(PeriodChange, IsRefusedFromTheEarlierStartOn) {
  plant("t_rp_Contact", "FID, FType, FYear, FPeriod, FRP, FNumber, FDate, FFincDate",
        "(1,1,2009,2,1,'AR1','2009-02-01','2009-02-25')");
  struct Case {
    const char *oldStart, *newStart, *checkedFrom;
    bool allowed;
  };
  for (const Case& c :
       {Case{"2009-03-01", "2009-02-25", "2009-02-25", false},
        Case{"2009-02-20", "2009-03-01", "2009-02-20", false},
        Case{"2009-02-25", "2009-02-25", "2009-02-25", false},
        Case{"2009-03-01", "2009-02-26", "", true}, Case{"2009-03-01", "2009-03-05", "", true}}) {
    message_ = "as passed";
    EXPECT_EQ(change(dsn(), c.oldStart, c.newStart), c.allowed) << c.oldStart << c.newStart;
    EXPECT_EQ(message_, c.allowed ? "as passed"
                                  : "应收应付系统检测发现存在日期大于 " +
                                        std::string(c.checkedFrom) + " 的单据，不允许修改。");
    EXPECT_EQ(com::GetObjectContext().vote(), com::Vote::complete);
    EXPECT_FALSE(com::GetErrorInfo()) << "a refusal is no failure";
  }
}

TEST_F(PeriodChange, IsFreeWithoutReceivablesAndPayables) {
  run("drop table t_rp_Contact");
  EXPECT_TRUE(change(dsn(), "2009-03-01", "2009-02-25"))
      << com::GetErrorInfo().value_or(com::ErrorInfo{}).description;
}

TEST_F(PeriodChange, TellsInTheCallersLanguage) {
  FakeLoader fake{{{"应收应付系统检测发现存在日期大于 %1 的单据，不允许修改。", "since %1"},
                   {"应收应付系统在检测调整会计期间合法性时，发现意外错误。", "unexpected"}}};
  const auto installed = fake.install();
  plant("t_rp_Contact", "FID, FType, FYear, FPeriod, FRP, FNumber, FDate, FFincDate",
        "(1,1,2009,3,1,'AR1','2009-03-01','2009-03-01')");
  EXPECT_FALSE(change(dsn("LANGUAGE=EN;"), "2009-03-01", "2009-02-25"));
  EXPECT_EQ(message_, "since 2009-02-25");
  EXPECT_FALSE(change("LANGUAGE=EN;ConnectString={Provider=None}", "2009-03-01", "2009-02-25"));
  EXPECT_EQ(message_, "unexpected");
}

TEST_F(PeriodChange, FailsWithTheReasonBeside) {
  ScriptedDatabase database;
  database.fail("t_rp_contact", "server is down");
  constexpr const char* kUnexpected = "应收应付系统在检测调整会计期间合法性时，发现意外错误。";
  EXPECT_FALSE(change(kScriptedDsn, "2009-03-01", "2009-02-25"));
  EXPECT_EQ(message_, kUnexpected);
  EXPECT_EQ(reason().description, "server is down");
  EXPECT_EQ(com::GetObjectContext().vote(), com::Vote::abort);
  EXPECT_EQ(database.open, 0);

  message_.clear();
  EXPECT_FALSE(change("A=1;A=2", "2009-03-01", "2009-02-25"));
  EXPECT_EQ(message_, kUnexpected);
  EXPECT_EQ(reason().number, com::error::kDuplicateKey);
}

TEST_F(PeriodChange, AsksForTheTableFirst) {
  ScriptedDatabase database;
  std::vector<Variant> arguments{kScriptedDsn,
                                 "",
                                 2009,
                                 3,
                                 dateOf("2009-03-01"),
                                 dateOf("2009-03-31"),
                                 dateOf("2009-02-25"),
                                 dateOf("2009-03-31")};
  EXPECT_TRUE(object_->Invoke("iscanchangeperiod", arguments).toBool());
  EXPECT_EQ(database.statements.back(),
            "if exists (select * from dbo.sysobjects where id = "
            "object_id(N'[dbo].[t_rp_contact]') and xtype = 'u')\r\n"
            "select top 1 * from t_rp_contact where ffincdate >= '2009-02-25'\r\n"
            " else select * from t_item where 1 = 0 ");
}

}  // namespace
}  // namespace velmora
