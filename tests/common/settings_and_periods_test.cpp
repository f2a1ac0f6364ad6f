#include <gmock/gmock.h>

#include "account_set.h"
#include "answered.h"
#include "common/periods.h"
#include "common/system_profile.h"
#include "error_of.h"
#include "frame/call/call_setup.h"
#include "frame/classes.h"
#include "late_bound.h"
#include "scripted_database.h"
#include "velmora/com/context.h"
#include "velmora/public.h"

namespace velmora {
namespace {

using collections::Date;
using collections::Null;
using collections::Variant;

class Settings : public testing::Test {
 protected:
  Settings() { call_.PrepareDataSource(kScriptedDsn); }
  const CDataSource& source() { return call_.dataSource(); }

  ScriptedDatabase database_;
  CallSetup call_;
};

TEST_F(Settings, AreReadFromTheTableOfTheirCategory) {
  database_.answer("From t_RP_SystemProfile Where UPPER(FCategory) = ? And FKey = ?",
                   rowset({"FValue"}, {"2009"}), {"ARP", "FARCurYear"});
  database_.answer("From t_SystemProfile Where FCategory = ? And FKey = ?",
                   rowset({"FValue"}, {Null{}}), {"GL", "Closed"});
  EXPECT_EQ(ReadSystemProfile(source(), "FARCurYear", "ARP"), Variant("2009"));
  EXPECT_EQ(ReadSystemProfile(source(), "FARCurYear", "arp"), Variant("0"))
      << "only ARP in capitals is receivables and payables";
  EXPECT_TRUE(ReadSystemProfile(source(), "Closed", "GL").isNull());
  EXPECT_EQ(ReadSystemProfile(source(), "FCheckAccount", "ARP", "1"), Variant("1"));
  EXPECT_THAT(database_.statements,
              testing::Contains("SET TRANSACTION ISOLATION LEVEL READ COMMITTED").Times(4));
  EXPECT_EQ(database_.open, 0);
}

TEST_F(Settings, ReadAsNumbersTakeTheLeadingNumber) {
  for (const auto& [text, number] : {std::pair{"12", 12}, std::pair{"7.9", 7}, std::pair{"3期", 3},
                                     std::pair{"", 0}, std::pair{"无", 0}, std::pair{"-2.9", -2}}) {
    database_.profile("FAPCurPeriod", text);
    EXPECT_EQ(readCurrentPeriod(source(), false), number) << text;
  }
  EXPECT_EQ(readCurrentPeriod(source(), true), 0) << "receivables have their own key";
}

TEST_F(Settings, TellTheReceivablesSideSubSystems) {
  for (const auto& [code, receivables] : {std::pair{"ear", true}, std::pair{"AR", true},
                                          std::pair{"xs", true}, std::pair{"AP", false}}) {
    call_.PrepareDataSource(std::string("SubID=") + code);
    EXPECT_EQ(IsArSubSystem(source()), receivables) << code;
  }
}

TEST_F(Settings, GiveThePeriodsDates) {
  const auto service = monthlyPeriods();
  database_.profile("FARCurYear", "2009");
  database_.profile("FAPCurYear", "2008");
  database_.profile("FARCurPeriod", "2");
  EXPECT_EQ(GetPeriodStartDate(source(), true, 2010, 12), Date::ymd(2010, 12, 1));
  EXPECT_EQ(GetPeriodEndDate(source(), true, 0, 0), Date::ymd(2009, 2, 28));
  EXPECT_EQ(GetPeriodEndDate(source(), false, 0, 2), Date::ymd(2008, 2, 29));
  database_.profile("FAPCurPeriod", "11");
  EXPECT_EQ(GetPeriodStartDate(source(), false, 0, 0), Date::ymd(2008, 11, 1));
  const auto hidden = com::ScopedClass::hidden("PeriodDate.clsPeriodDate");
  EXPECT_EQ(errorOf([&] { GetPeriodStartDate(source(), true, 1, 1); }).number(),
            com::error::kCannotCreateObject);
}

TEST_F(Settings, GiveTheInventoryStart) {
  const Date notStarted = Date::ymd(1900, 1, 1);
  EXPECT_EQ(GetICStartDate(source()), notStarted);
  database_.answer("FKey='startyear'", rowset({"FValue"}, {"2007"}));
  EXPECT_EQ(GetICStartDate(source()), notStarted);
  database_.answer("FKey='StartPeriod'", rowset({"FValue"}, {"4"}));
  EXPECT_EQ(GetICStartDate(source()), notStarted) << "the calendar lacks the period";
  database_.answer("SELECT FStartDate from t_perioddate\r\n    WHERE FYear=2007 and Fperiod=4",
                   rowset({"FStartDate"}, {Date::ymd(2007, 4, 1)}));
  EXPECT_EQ(GetICStartDate(source()), Date::ymd(2007, 4, 1));
  database_.answer("FKey='StartPeriod'", rowset({"FValue"}, {Null{}}));
  EXPECT_EQ(GetICStartDate(source()), notStarted);
  database_.answer("FKey='startyear'", rowset({"FValue"}, {""}));
  EXPECT_EQ(GetICStartDate(source()), notStarted);
}

TEST_F(Settings, GiveAtLeastTwelvePeriods) {
  for (const auto& [last, periods] :
       {std::pair{Variant(13), 13}, std::pair{Variant(4), 12}, std::pair{Variant(Null{}), 12}}) {
    database_.answer("SELECT max(FPeriod) as FPeriod FROM t_PeriodDate ",
                     rowset({"FPeriod"}, {last}));
    EXPECT_EQ(GetMaxPeriod(source()), periods);
  }
}

class CurrentFinancialDate : public testing::Test {
 protected:
  CurrentFinancialDate() {
    database_.profile("FARCurYear", "2009");
    database_.profile("FARCurPeriod", "3");
    database_.profile("FAPCurYear", "2009");
    database_.profile("FAPCurPeriod", "2");
    database_.answer("select getdate()", rowset({"FCurDate", "FYear", "FPeriod"}, {now_, 2009, 3}));
    database_.answer("fyear = 2009 and fperiod = 2",
                     rowset({"FYear", "FEndDate"}, {2009, Date::ymd(2009, 2, 28)}));
    com::GetObjectContext().reset();
  }

  const Date now_ = *Date::tryParse("2009-03-17 10:20:30");
  ScriptedDatabase database_;
  com::ScopedClass class_{publicClasses()[2]};
  com::Ref<_clsPublic> object_ = com::CreateObject(_clsPublic::kProgId).as<_clsPublic>();
};

TEST_F(CurrentFinancialDate, IsNowWithinThePeriodAndItsLastDayOutside) {
  EXPECT_EQ(object_->GetCurFincDate(kScriptedDsn), now_);
  EXPECT_EQ(com::GetObjectContext().vote(), com::Vote::complete);
  EXPECT_EQ(object_->GetCurFincDate(kScriptedDsn, false), Date::ymd(2009, 2, 28));
  database_.answer("select getdate()", rowset({"FCurDate", "FYear", "FPeriod"}, {}));
  EXPECT_EQ(object_->GetCurFincDate(kScriptedDsn, false), Date::ymd(2009, 2, 28))
      << "no period of the calendar contains today";
  database_.answer("select getdate()", rowset({"FCurDate", "FYear", "FPeriod"}, {now_, 2010, 2}));
  EXPECT_EQ(object_->GetCurFincDate(kScriptedDsn, false), Date::ymd(2009, 2, 28))
      << "the same period of another year";
  EXPECT_EQ(com::call(*object_, "getcurfincdate", kScriptedDsn, false),
            Variant(Date::ymd(2009, 2, 28)));
  EXPECT_EQ(database_.open, 0);
}

TEST_F(CurrentFinancialDate, FallsBackToTodayWithAReason) {
  database_.profile("FAPCurPeriod", "9");
  EXPECT_EQ(object_->GetCurFincDate(kScriptedDsn, false), Date::today());
  EXPECT_EQ(com::GetObjectContext().vote(), com::Vote::abort);
  EXPECT_THAT(reason().description, testing::HasSubstr("period 9 of year 2009"));

  EXPECT_EQ(object_->GetCurFincDate("A=1;A=1"), Date::today());
  EXPECT_EQ(reason().number, com::error::kDuplicateKey);
  database_.fail("select getdate()", "server is down");
  EXPECT_EQ(object_->GetCurFincDate(kScriptedDsn), Date::today());
  EXPECT_EQ(reason().description, "server is down");
  EXPECT_EQ(database_.open, 0);
}

class FinancialDateOfBooks : public AccountSet {
 protected:
  com::ScopedClass class_{publicClasses()[2]};
};

TEST_F(FinancialDateOfBooks, KnowsTheFirstAndLastDayOfThePeriod) {
  const auto object = com::CreateObject(_clsPublic::kProgId).as<_clsPublic>();
  profile("FARCurYear", "2009");
  profile("FARCurPeriod", "3");
  const auto dayFromToday = [](int days) {
    constexpr std::int64_t day = 86'400'000'000;
    return Date::fromMicroseconds(Date::today().microseconds() + days * day);
  };
  for (const auto& [first, last] :
       {std::pair{0, 0}, std::pair{-9, 0}, std::pair{0, 9}, std::pair{-9, -1}, std::pair{1, 9}}) {
    run("delete from t_PeriodDate");
    plant("t_PeriodDate", "FYear, FPeriod, FStartDate, FEndDate",
          "(2009,3,'" + dayFromToday(first).toDateText() + "','" + dayFromToday(last).toDateText() +
              "')");
    const Date expected = first <= 0 && last >= 0 ? Date::today() : dayFromToday(last);
    EXPECT_EQ(object->GetCurFincDate(dsn()).toDateText(), expected.toDateText())
        << first << " to " << last << " days from today";
    EXPECT_FALSE(com::GetErrorInfo());
  }
}

}  // namespace
}  // namespace velmora
