// The verdict and the findings of the closing check, and what a failure leaves.

#include <gmock/gmock.h>

#include "answered.h"
#include "error_of.h"
#include "frame/classes.h"
#include "late_bound.h"
#include "scripted_database.h"
#include "velmora/collections/vector.h"
#include "velmora/com/context.h"
#include "velmora/interfaces.h"

namespace velmora {
namespace {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kUnaudited = "( v1.FStatus & 1 )=0";
constexpr const char* kExpenseInvoices = "icexpenses";
constexpr const char* kReturnedBills = "FUnTread=1";

class ClosingDataCheck : public testing::Test {
 protected:
  ClosingDataCheck() {
    option_->Set("BYear", 2009);
    option_->Set("BPeriod", 3);
    com::GetObjectContext().reset();
  }

  bool run(const std::string& dsn = kScriptedDsn) {
    com::Ref<com::IUnknown> found = com::make<Dictionary>();
    const bool done = object_->CheckClosingData(dsn, option_, found, canClose_);
    findings_ = found.as<ado::Recordset>();
    EXPECT_EQ(done, static_cast<bool>(findings_));
    EXPECT_EQ(com::GetObjectContext().vote(), done ? com::Vote::complete : com::Vote::abort);
    EXPECT_EQ(com::GetErrorInfo().has_value(), !done);
    EXPECT_EQ(database_.open, 0);
    EXPECT_TRUE(done || !canClose_);
    return done;
  }
  /// The findings as "number item severity message".
  std::vector<std::string> findings() {
    std::vector<std::string> lines;
    for (answered(findings_); !findings_->EOF_(); findings_->MoveNext()) {
      std::string line;
      for (std::size_t i = 0; i < findings_->fieldCount(); ++i)
        line += (i == 0 ? "" : " ") + findings_->GetValue(i).toText();
      lines.push_back(line);
    }
    return lines;
  }
  void plantDocument(const char* query, const char* number) {
    database_.answer(query,
                     rowset({"FType", "FBillNo", "FErrInfo"}, {"应收单", number, "单据没有审核"}));
  }

  ScriptedDatabase database_;
  com::ScopedClass service_ = monthlyPeriods();
  com::ScopedClass class_{publicClasses()[0]};
  com::Ref<_clsInitBalCheck> object_ =
      com::CreateObject(_clsInitBalCheck::kProgId).as<_clsInitBalCheck>();
  DictionaryRef option_ = com::make<Dictionary>();
  ado::RecordsetRef findings_;
  bool canClose_ = false;
};

TEST_F(ClosingDataCheck, MayCloseWithoutFindings) {
  ASSERT_TRUE(run());
  EXPECT_TRUE(canClose_);
  EXPECT_EQ(findings_->State(), ado::adStateOpen);
  EXPECT_EQ(findings_->RecordCount(), 0);
  const auto column = [&](std::size_t i) {
    const auto& field = findings_->definition(i);
    return field.name + ' ' + std::to_string(field.type) + ' ' + std::to_string(field.definedSize);
  };
  EXPECT_EQ(findings_->definition(0).name, "FID");
  EXPECT_EQ(findings_->definition(0).type, ado::adInteger);
  EXPECT_EQ(column(1), "FChkItem 202 100");
  EXPECT_EQ(column(2), "FChkType 202 300");
  EXPECT_EQ(column(3), "FChkInfo 202 300");
}

TEST_F(ClosingDataCheck, LeavesTheVerdictOnWarningsToTheCaller) {
  plantDocument(kExpenseInvoices, "AR0007");
  for (const bool before : {false, true}) {
    canClose_ = before;
    ASSERT_TRUE(run());
    EXPECT_EQ(canClose_, before);
    EXPECT_THAT(findings(), ElementsAre("1 现购费用发票检查 警告信息 应收单[AR0007]:单据没有审核"));
  }
}

TEST_F(ClosingDataCheck, RefusesWithASeriousFindingAndNumbersThrough) {
  database_.answer(
      kUnaudited, rowset({"FType", "FBillNo", "FErrInfo"},
                         {"应收单", "AR0001", "单据没有审核", "收款单", "SK0002", "单据没有审核"}));
  plantDocument(kExpenseInvoices, "AR0007");
  database_.answer(kReturnedBills, rowset({""}, {1, 1}));
  canClose_ = true;
  ASSERT_TRUE(run());
  EXPECT_FALSE(canClose_);
  EXPECT_THAT(findings(), ElementsAre("1 单据审核检查 严重错误 应收单[AR0001]:单据没有审核",
                                      "2 单据审核检查 严重错误 收款单[SK0002]:单据没有审核",
                                      "3 现购费用发票检查 警告信息 应收单[AR0007]:单据没有审核",
                                      "4 退票凭证检查 严重错误 账款的退票凭证还未生成",
                                      "5 退票凭证检查 严重错误 账款的退票凭证还未生成"));
}

TEST_F(ClosingDataCheck, JudgesInTheCallersLanguage) {
  FakeLoader fake{{{"严重错误", "Serious"}, {"警告信息", "Warning"}}};
  const auto installed = fake.install();
  plantDocument(kUnaudited, "AR0001");
  canClose_ = true;
  ASSERT_TRUE(run(std::string("LANGUAGE=EN;") + kScriptedDsn));
  EXPECT_FALSE(canClose_);
  EXPECT_THAT(findings(), ElementsAre(HasSubstr(" Serious ")));
}

TEST_F(ClosingDataCheck, KeepsLongTextsToTheirColumns) {
  std::string number;
  for (int i = 0; i < 320; ++i) number += "号";
  plantDocument(kExpenseInvoices, number.c_str());
  FakeLoader fake{{{"0|现购费用发票检查", "0|" + number}, {"警告信息", number}}};
  const auto installed = fake.install();
  ASSERT_TRUE(run(std::string("LANGUAGE=EN;") + kScriptedDsn));
  EXPECT_EQ(findings_->Fields()("FChkItem").Value().toText().size(), 100U * 3);
  EXPECT_EQ(findings_->Fields()("FChkType").Value().toText().size(), 300U * 3);
  const std::string message = findings_->Fields()("FChkInfo").Value().toText();
  EXPECT_EQ(message.substr(0, 10), "应收单[");
  EXPECT_EQ(message.size(), 299 * 3 + 1) << "300 characters, all but the bracket of three bytes";
}

TEST_F(ClosingDataCheck, TakesTheCurrentPeriodOfItsSideUnlessAYearIsGiven) {
  option_->RemoveAll();
  database_.profile("FAPCurYear", "2008");
  database_.profile("FAPCurPeriod", "11");
  option_->Set("bArp", false);
  option_->Set("BPeriod", 5);  // means nothing without a year
  ASSERT_TRUE(run());
  EXPECT_THAT(database_.statements,
              testing::Contains(HasSubstr(" and v1.FYear=2008\r\n and FPeriod=11")));

  option_->Set("bArp", true);
  EXPECT_FALSE(run());
  EXPECT_THAT(reason().description,
              testing::AllOf(HasSubstr("BYear is 0"), HasSubstr("FARCurYear")));
  option_->Set("BYear", 2009);
  option_->Remove("BPeriod");
  EXPECT_FALSE(run());
  EXPECT_THAT(reason().description, HasSubstr("BPeriod is 0"));
}

TEST_F(ClosingDataCheck, HandsTheListItsFilterAndSkipsEmptyQueries) {
  std::string handed, ran;
  const auto fake = standIn(_clsInitBalCheck::kProgId, [&] {
    auto second = com::make<LateBound>();
    second->method("GetCheckItemDict", [&](auto arguments) {
      const auto filter = arguments[1].template toObject<Dictionary>();
      for (std::size_t i = 0; i < filter->Count(); ++i)
        handed += filter->Key(i) + '=' + filter->Item(i).toText() + ' ';
      auto items = com::make<collections::Vector>();
      for (const char* sql : {"", "select 2"}) {
        auto item = com::make<Dictionary>();
        item->Set("FSql", sql);
        items->Add(item);
      }
      return Variant(items);
    });
    second->method("GetData", [&](auto arguments) {
      ran += arguments[1].toText();
      return Variant(ado::Recordset::fromRowset(rowset({"A"}, {})));
    });
    return second;
  });
  option_->Set("bShowAllError", true);
  option_->Set("ItemFilter", "not passed on");
  ASSERT_TRUE(run());
  EXPECT_EQ(handed,
            "bArp=True BYear=2009 BPeriod=3 bShowAllError=True bChkUnPeriodVch=False "
            "bChkUnPeriod=True bChkNOBillVoucher=False ");
  EXPECT_EQ(ran, "select 2");
}

TEST_F(ClosingDataCheck, DropsEverythingWhenACheckFails) {
  plantDocument(kUnaudited, "AR0001");
  database_.fail(kReturnedBills, "deadlock");
  canClose_ = true;
  EXPECT_FALSE(run());
  EXPECT_EQ(reason().description, "deadlock");
  EXPECT_EQ(reason().source, "Scripted");
  EXPECT_EQ(reason().place, "没有生成凭证的退票单据");
}

TEST_F(ClosingDataCheck, NeedsEveryColumnOfAMessage) {
  database_.answer(kUnaudited, rowset({"FType", "FBillNo"}, {"应收单", "AR0001"}));
  EXPECT_FALSE(run());
  EXPECT_THAT(reason().description, HasSubstr("FErrInfo"));
  database_.answer(kUnaudited, rowset({"FType", "FBillNo", "FErrInfo"},
                                      {"应收单", collections::Null{}, "单据没有审核"}));
  EXPECT_FALSE(run());
  EXPECT_THAT(reason().description, HasSubstr("FBillNo"));
  EXPECT_EQ(reason().place, "没有审核的单据");
}

TEST_F(ClosingDataCheck, FailsWithTheReasonOfTheListOrTheSetUp) {
  database_.fail("t_currency", "no such table");
  EXPECT_FALSE(run());
  EXPECT_EQ(reason().description, "no such table");
  EXPECT_FALSE(run("A=1;A=2"));
  EXPECT_EQ(reason().number, com::error::kDuplicateKey);
  option_ = nullptr;
  EXPECT_FALSE(run());
  EXPECT_THAT(reason().description, HasSubstr("dOption"));
}

TEST_F(ClosingDataCheck, TellsAProgressObjectWhatComesNext) {
  std::vector<std::string> seen;
  auto progress = com::make<LateBound>();
  progress->method("Progress", [&](auto arguments) {
    seen.push_back(arguments[0].toText() + ' ' + arguments[1].toText() + '/' +
                   arguments[2].toText());
    return Variant();
  });
  option_->Set("OnProgress", com::Ref<com::IDispatch>(progress));
  ASSERT_TRUE(run());
  ASSERT_EQ(seen.size(), 10u);
  EXPECT_EQ(seen.front(), "没有审核的单据 1/10");
  EXPECT_EQ(seen.back(), "检查当前期间现金系统发送的收款单是否已经确认 10/10");

  progress->method("Progress",
                   [](auto) -> Variant { throw com::Error(-1, "Client", "stopped by the user"); });
  EXPECT_FALSE(run());
  EXPECT_EQ(reason().description, "stopped by the user");
  for (const Variant& none : {Variant(7), Variant("Progress"), Variant(collections::Null{})}) {
    option_->Set("OnProgress", none);
    EXPECT_TRUE(run()) << "a value that is no object is nobody's progress";
  }
}

TEST_F(ClosingDataCheck, AnswersTheSameLateBound) {
  plantDocument(kUnaudited, "AR0001");
  ASSERT_TRUE(run());
  const auto typed = findings();
  std::vector<Variant> arguments{kScriptedDsn, option_, Variant(), true};
  EXPECT_TRUE(object_->Invoke("checkclosingdata", arguments).toBool());
  EXPECT_EQ(arguments[3], Variant(false));
  findings_ = arguments[2].toObject<ado::Recordset>();
  EXPECT_EQ(findings(), typed);
}

}  // namespace
}  // namespace velmora
