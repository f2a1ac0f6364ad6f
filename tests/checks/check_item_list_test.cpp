#include <gmock/gmock.h>

#include "answered.h"
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
using testing::Not;

class CheckItemList : public testing::Test {
 protected:
  CheckItemList() {
    filter_->Set("BYear", 2009);
    filter_->Set("BPeriod", 3);
  }

  collections::VectorRef list(const std::string& dsn = kScriptedDsn) {
    return answered(object_->GetCheckItemDict(dsn, filter_)).as<collections::Vector>();
  }
  /// Names and severities, "!" marking the serious ones.
  std::vector<std::string> names() {
    std::vector<std::string> found;
    const auto items = list();
    for (const Variant& value : *items) {
      const auto item = value.toObject<Dictionary>();
      found.push_back((item->Value("FChkType").toText() == "0|严重错误" ? "!" : "") +
                      item->Value("FChkItem").toText().substr(2));
    }
    return found;
  }
  DictionaryRef item(std::size_t number) { return list()->Item(number - 1).toObject<Dictionary>(); }

  ScriptedDatabase database_;
  com::ScopedClass service_ = monthlyPeriods();
  com::ScopedClass class_{publicClasses()[0]};
  com::Ref<_clsInitBalCheck> object_ =
      com::CreateObject(_clsInitBalCheck::kProgId).as<_clsInitBalCheck>();
  DictionaryRef filter_ = com::make<Dictionary>();
};

TEST_F(CheckItemList, HoldsTheUsualChecksInOrder) {
  EXPECT_THAT(names(), ElementsAre("!单据审核检查", "现购费用发票检查", "!单据凭证检查",
                                   "!票据凭证检查", "!转销凭证检查", "!退票凭证检查",
                                   "!转账凭证检查", "!转账凭证检查", "!单据确认检查"));
  EXPECT_TRUE(filter_->Value("bPreChecked").toBool());
  EXPECT_EQ(database_.open, 0);
  const auto first = item(1);
  std::vector<std::string> keys;
  for (std::size_t i = 0; i < first->Count(); ++i) keys.push_back(first->Key(i));
  EXPECT_THAT(keys, ElementsAre("FCaption", "FSql", "FType", "FChkItem", "FChkType", "FChkInfo"));
  EXPECT_EQ(first->Value("FCaption"), Variant("没有审核的单据"));
  EXPECT_EQ(first->Value("FType"), Variant(std::int16_t{0}));
  EXPECT_EQ(first->Value("FChkInfo"), Variant("%1[%2]:%3|FType,FBillNo,FErrInfo"));
  EXPECT_EQ(item(6)->Value("FType"), Variant(std::int16_t{1}));
  EXPECT_EQ(item(6)->Value("FChkInfo"), Variant("账款的退票凭证还未生成"));
  EXPECT_EQ(item(7)->Value("FChkInfo"),
            Variant("%1[%2][核销序号: %3]:%4|FType,FBillNo,FID,FErrInfo"));
  EXPECT_EQ(item(8)->Value("FChkInfo"),
            Variant("%1[%2][核销序号:%3]:%4|FType,FBillNo,FID,FErrInfo"));
  EXPECT_THAT(item(7)->Value("FSql").toText(), HasSubstr("FTransferID > 0"));
  EXPECT_THAT(item(8)->Value("FSql").toText(), HasSubstr("c.FTransferID=0"));
}

TEST_F(CheckItemList, CompletesTheFilterOnce) {
  filter_->Set("STRLANGUAGE", "EN");
  filter_->Set("bCheckPassed", true);
  filter_->Set("LocalDecimal", 9);
  list();
  const std::vector<std::pair<const char*, Variant>> expected = {{"strLanguage", "chs"},
                                                                 {"bArp", true},
                                                                 {"LocalDecimal", 2},
                                                                 {"bChkUnAudit", true},
                                                                 {"bchkUnVoucher", true},
                                                                 {"bCheckPassed", true},
                                                                 {"bShowAllError", false},
                                                                 {"bChkNOBillVoucher", false},
                                                                 {"bchkCheckRate", false},
                                                                 {"bchkUnPeriodVch", false},
                                                                 {"bchkUnAmountVch", false},
                                                                 {"bCheckAccount", false},
                                                                 {"bchkUnPeriodGYandGL", false},
                                                                 {"CurrencyID", 0},
                                                                 {"ItemFilter", ""},
                                                                 {"bPreChecked", true},
                                                                 {"BYear", 2009},
                                                                 {"BPeriod", 3}};
  for (const auto& [key, value] : expected) EXPECT_EQ(filter_->Value(key), value) << key;
  EXPECT_EQ(filter_->Count(), expected.size()) << "bShowAll and bchkUnPeriod are not stored";

  database_.answer("from t_currency where fcurrencyid =1", rowset({"FScale"}, {3}));
  list();
  EXPECT_EQ(filter_->Value("LocalDecimal"), Variant(3));
  database_.answer("from t_currency where fcurrencyid =1",
                   rowset({"FScale"}, {collections::Null{}}));
  list();
  EXPECT_EQ(filter_->Value("LocalDecimal"), Variant(2));
}

TEST_F(CheckItemList, FollowsTheProfileOfItsSide) {
  database_.profile("FARNeedMakeVoucher", "0");
  database_.profile("FARCloseNeedAudit", "0");
  EXPECT_THAT(names(),
              ElementsAre("单据审核检查", "现购费用发票检查", "!转账凭证检查", "!单据确认检查"));

  filter_->Set("bShowAllError", true);
  database_.profile("FARPreNeedVoucher", "0");
  EXPECT_THAT(names(),
              ElementsAre("单据审核检查", "现购费用发票检查", "单据凭证检查", "票据凭证检查",
                          "转销凭证检查", "退票凭证检查", "转账凭证检查", "!单据确认检查"));
  EXPECT_FALSE(filter_->Value("bPreChecked").toBool());

  filter_->Set("bArp", false);
  filter_->Set("bShowAllError", false);
  filter_->Set("bChkUnAudit", false);
  EXPECT_THAT(names(),
              ElementsAre("!单据凭证检查", "!票据凭证检查", "!转销凭证检查", "!退票凭证检查",
                          "!转账凭证检查", "!转账凭证检查", "!单据确认检查"))
      << "payables have their own settings";
}

TEST_F(CheckItemList, AddsWhatIsAskedFor) {
  filter_->Set("bChkUnAudit", false);
  filter_->Set("bchkUnVoucher", false);
  filter_->Set("bChkNOBillVoucher", true);
  filter_->Set("bchkUnPeriod", true);
  filter_->Set("bchkUnPeriodGYandGL", true);
  EXPECT_THAT(names(), ElementsAre("!单据期间检查", "期间检查", "!单据确认检查"));
  filter_->Set("bShowAllError", true);
  filter_->Set("bchkUnPeriodVch", true);
  EXPECT_THAT(names(), ElementsAre("凭证检查", "!单据期间检查", "单据期间检查", "单据往来科目检查",
                                   "期间检查", "!单据确认检查"));
}

TEST_F(CheckItemList, TakesTheAccountCheckFromTheProfile) {
  database_.profile("FCheckAccount", "1");
  filter_->Set("bchkUnVoucher", false);
  EXPECT_THAT(names(), ElementsAre("!单据审核检查", "!现购费用发票检查", "!单据期间检查",
                                   "!单据往来科目检查", "!单据确认检查"));
  EXPECT_EQ(filter_->Value("bCheckAccount"), Variant(true));
  EXPECT_EQ(filter_->Value("bchkUnPeriodVch"), Variant(false)) << "the stored value stays";
}

TEST_F(CheckItemList, AsksSettlementsOfTheSideAndPeriod) {
  EXPECT_EQ(item(5)->Value("FSql"),
            Variant(" select distinct fid from t_rp_newcheckinfo    where FARToAR in (0,1)  and "
                    "FVoucherID<=0  and FRP=1 and FZXID>0  and fcheckdate>='2009-03-01' and "
                    "fcheckdate<='2009-03-31'"));
  EXPECT_EQ(item(6)->Value("FSql"),
            Variant(" select 1 from t_rp_newcheckinfo    where FUnTread=1  and FVoucherID<=0  and "
                    "FRP=1 and fcheckdate>='2009-03-01' and fcheckdate<='2009-03-31'"));
  filter_->Set("bArp", false);
  EXPECT_THAT(item(5)->Value("FSql").toText(), HasSubstr(" and FRP=0 and FZXID>0 "));
  filter_->Set("bShowAll", true);
  EXPECT_THAT(item(5)->Value("FSql").toText(), Not(HasSubstr("FRP")));
  EXPECT_THAT(item(6)->Value("FSql").toText(), Not(HasSubstr("FRP")));
}

TEST_F(CheckItemList, ComparesTheModulesCurrentPeriods) {
  filter_->Set("bchkUnPeriodGYandGL", true);
  struct Case {
    const char *icYear, *icPeriod, *glYear, *glPeriod;
    const char* query;
  };
  const auto query = [this] { return item(9)->Value("FSql").toText(); };
  for (const Case& c : {
           Case{"2009", "3", "2009", "3", ""},
           Case{"2010", "1", "2008", "12", ""},
           Case{"0", "3", "2009", "3",
                "select '物流系统当前年份取值错误，可能是没有启用物流系统。' as FErrInfo "},
           Case{"2009", "2", "2009", "3",
                "select '物流系统当前期间小于应收系统，建议在应收系统之前结账。' as FErrInfo "},
           Case{"2008", "12", "2010", "1",
                "select '物流系统当前期间小于应收系统，建议在应收系统之前结账。' as FErrInfo \r\n"
                "union \r\n"
                "select '总账系统当前期间大于应收系统，建议在应收系统之后结账。' as FErrInfo "},
           Case{"2009", "4", "0", "9",
                "select '总账系统当前年份取值错误，可能是没有启用总账系统。' as FErrInfo "},
       }) {
    const auto profile = [&](const char* category, const char* key, const char* value) {
      database_.answer("SystemProfile", rowset({"FValue"}, {value}), {category, key});
    };
    profile("IC", "CurrentYear", c.icYear);
    profile("IC", "CurrentPeriod", c.icPeriod);
    profile("GL", "CurrentYear", c.glYear);
    profile("GL", "CurrentPeriod", c.glPeriod);
    EXPECT_EQ(query(), c.query) << c.icYear << '.' << c.icPeriod << ' ' << c.glYear << '.'
                                << c.glPeriod;
  }
}

TEST_F(CheckItemList, SpeaksTheCallersLanguage) {
  FakeLoader fake{{{"0|单据审核检查", "0|Audit"},
                   {"%1票据凭证检查", "%1Bills"},
                   {"严重错误", "Serious"},
                   {"警告信息", "Warning"},
                   {"没有审核的单据", "Unaudited documents"},
                   {"核销序号:", "No."}}};
  const auto installed = fake.install();
  const auto items = list(std::string("LANGUAGE=EN;") + kScriptedDsn);
  const auto at = [&](std::size_t number, const char* key) {
    return items->Item(number - 1).toObject<Dictionary>()->Value(key).toText();
  };
  EXPECT_EQ(at(1, "FCaption"), "Unaudited documents");
  EXPECT_EQ(at(1, "FChkItem"), "0|Audit");
  EXPECT_EQ(at(1, "FChkType"), "0|Serious");
  EXPECT_EQ(at(2, "FChkType"), "0|Warning");
  EXPECT_EQ(at(4, "FChkItem"), "0|Bills");
  EXPECT_EQ(at(7, "FChkInfo"), "%1[%2][No. %3]:%4|FType,FBillNo,FID,FErrInfo");
  EXPECT_EQ(filter_->Value("strLanguage"), Variant("EN"));
}

TEST_F(CheckItemList, IsNothingWithAReasonWhenItFails) {
  com::GetObjectContext().reset();
  database_.fail("t_currency", "no such table");
  EXPECT_FALSE(object_->GetCheckItemDict(kScriptedDsn, filter_));
  EXPECT_EQ(reason().description, "no such table");
  EXPECT_EQ(database_.open, 0);
  EXPECT_EQ(com::GetObjectContext().vote(), com::Vote::none) << "this operation does not vote";
  EXPECT_FALSE(object_->GetCheckItemDict(kScriptedDsn, {}));
}

}  // namespace
}  // namespace velmora
