// What the initial-data check finds missing, side by side, and what a failure leaves.

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

using collections::Dictionary;
using collections::DictionaryRef;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// An account set whose initialisation may be ended.
class InitialData : public AccountSet {
 protected:
  InitialData() {
    for (const char* key : {"FARUseYear", "FAPUseYear"}) profile(key, "2008");
    for (const char* key : {"FARUsePeriod", "FAPUsePeriod"}) profile(key, "3");
    profile("FCompanyName", "示例公司");
    plant("t_SystemProfile", "FCategory, FKey, FValue",
          "('GL','StartYear','2008'), ('GL','StartPeriod','1'), ('IC','StartYear','2031'), "
          "('IC','StartPeriod','9')");
    plant("t_Account", "FAccountID, FNumber", "(1122,'1122')");
    plant(
        "t_rp_BillType", "FID, FName, FName_EN, FRP, FType, FIsInit, FAccountID",
        "(10,'销售发票','Sales invoice',1,3,0,1122), (20,'采购发票','Purchase invoice',0,4,0,2202),"
        "(11,'期初发票','Initial invoice',1,3,1,0), (21,'期初应付','Initial payable',0,2,1,0)");
    com::GetObjectContext().reset();
  }

  bool check(const std::string& dsn) {
    com::Ref<com::IUnknown> found = com::make<Dictionary>();
    const bool done = object_->CheckInitData(dsn, filter_, found);
    findings_ = found.as<ado::Recordset>();
    EXPECT_EQ(done, static_cast<bool>(findings_));
    EXPECT_EQ(com::GetObjectContext().vote(), done ? com::Vote::complete : com::Vote::abort);
    EXPECT_EQ(com::GetErrorInfo().has_value(), !done);
    return done;
  }
  /// The findings of one side as "number item severity: info".
  std::vector<std::string> findings(bool bArp = true, const std::string& more = {}) {
    filter_->Set("bArp", bArp);
    EXPECT_TRUE(check(dsn(more)));
    std::vector<std::string> lines;
    for (; findings_ && !findings_->EOF_(); findings_->MoveNext()) {
      const auto text = [&](const char* column) {
        return findings_->Fields()(column).Value().toText();
      };
      EXPECT_EQ(text("FTypeID"), "0");
      lines.push_back(text("FID") + ' ' + text("FChkItem") + ' ' + text("FChkType") + ": " +
                      text("FChkInfo"));
    }
    return lines;
  }

  com::ScopedClass class_{publicClasses()[0]};
  com::Ref<_clsInitBalCheck> object_ =
      com::CreateObject(_clsInitBalCheck::kProgId).as<_clsInitBalCheck>();
  DictionaryRef filter_ = com::make<Dictionary>();
  ado::RecordsetRef findings_;
};

TEST_F(InitialData, IsCompleteWithoutFindings) {
  ASSERT_TRUE(check(dsn())) << "receivables unless told otherwise";
  EXPECT_EQ(findings_->RecordCount(), 0);
  EXPECT_FALSE(findings_->ActiveConnection());
  std::string columns;
  for (std::size_t i = 0; i < findings_->fieldCount(); ++i)
    columns += findings_->definition(i).name + ' ';
  EXPECT_EQ(columns, "FID FChkItem FTypeID FChkType FChkInfo ");
  EXPECT_THAT(findings(false), IsEmpty());
}

TEST_F(InitialData, TellsWhatIsMissingOnEitherSide) {
  run("delete from t_Currency");
  EXPECT_THAT(findings(), ElementsAre("1 基础资料 严重错误: 没有填写币别基础资料"));
  run("delete from t_RP_SystemProfile; delete from t_Account;"
      "update t_rp_BillType set FAccountID = null");
  EXPECT_THAT(findings(), ElementsAre("1 初始化设置 严重错误: 没有设置应收系统的启用期间",
                                      "2 初始化设置 严重错误: 没有设置公司名称",
                                      "3 基础资料 严重错误: 没有填写科目基础资料",
                                      "4 基础资料 严重错误: 没有填写币别基础资料",
                                      "5 参数设置 警告信息: 没有设置应收系统单据的默认往来科目"));
  EXPECT_THAT(
      findings(false),
      ElementsAre("1 初始化设置 严重错误: 没有设置应付系统的启用期间", HasSubstr("公司名称"),
                  HasSubstr("科目基础资料"), HasSubstr("币别基础资料"),
                  "5 参数设置 警告信息: 没有设置应付系统单据的默认往来科目"));
}

TEST_F(InitialData, ComparesTheStartPeriodWithTheLedgers) {
  struct Case {
    const char *year, *period, *ledgerYear, *ledgerPeriod;
    const char* finding;  ///< a part of it; empty for none
  };
  for (const Case& c : {Case{"2008", "3", "2008", "5", "警告信息: 系统启用期间设置与总账不一致"},
                        Case{"2008", "3", "2009", "1", "警告信息: 系统启用期间设置与总账不一致"},
                        Case{"2008", "3", "2008", "3", ""}, Case{"2008", "3", "2007", "12", ""},
                        Case{"0", "3", "2009", "1", "没有设置应收系统的启用期间"},
                        Case{"2008", "", "2009", "1", "没有设置应收系统的启用期间"}}) {
    SCOPED_TRACE(testing::Message() << c.year << '-' << c.period << " ledger " << c.ledgerYear
                                    << '-' << c.ledgerPeriod);
    profile("FARUseYear", c.year);
    profile("FARUsePeriod", c.period);
    run("update t_SystemProfile set FValue = '" + std::string(c.ledgerYear) +
        "' where FCategory = 'GL' and FKey = 'StartYear'; update t_SystemProfile set FValue = '" +
        c.ledgerPeriod + "' where FCategory = 'GL' and FKey = 'StartPeriod'");
    if (*c.finding == '\0') {
      EXPECT_THAT(findings(), IsEmpty());
    } else {
      EXPECT_THAT(findings(), ElementsAre(HasSubstr(c.finding)));
    }
  }
}

TEST_F(InitialData, LooksAtDefaultAccountsOfOrdinaryDocumentTypesOnly) {
  plant("t_rp_BillType", "FID, FName, FRP, FType, FIsInit, FAccountID",
        "(30,'合同',1,7,0,0), (31,'付款单',0,6,0,null)");
  EXPECT_THAT(findings(), IsEmpty()) << "a type of another kind, and the other side";
  EXPECT_THAT(findings(false), testing::SizeIs(1));
  plant("t_rp_BillType", "FID, FName, FRP, FType, FIsInit, FAccountID", "(32,'其他付款',0,6,0,0)");
  EXPECT_THAT(findings(false), testing::SizeIs(1)) << "one finding however many types";
}

TEST_F(InitialData, ListsInitialDocumentsWithoutAccount) {
  plant("t_rp_BegData", "FInterID, FClassTypeID, FType, FRP, FBillNo, FDate, FAccountID",
        "(1,11,3,1,'QC1','2007-12-31',0), (2,11,3,1,null,'2007-12-31',null),"
        "(3,11,3,1,'QC3','2007-12-31',1122), (4,21,2,0,'QC4','2007-12-31',0),"
        "(5,11,3,1,'QC5','2007-12-31',0)");
  for (const auto& [setting, severity] :
       {std::pair{"", "警告信息"}, std::pair{"0", "警告信息"}, std::pair{"1", "严重错误"},
        std::pair{"-1", "严重错误"}, std::pair{"是", "警告信息"}, std::pair{"null", "警告信息"}}) {
    if (*setting != '\0') profile("FCheckAccount", setting);
    run("update t_RP_SystemProfile set FValue = null where FValue = 'null'");
    const std::string start = std::string(" 初始化单据 ") + severity + ": ";
    EXPECT_THAT(findings(), ElementsAre("1" + start + "期初发票[QC1] 没有设置往来科目",
                                        "2" + start + "期初发票[] 没有设置往来科目",
                                        "3" + start + "期初发票[QC5] 没有设置往来科目"));
  }
  EXPECT_THAT(findings(false), ElementsAre(HasSubstr("期初应付[QC4]")));
}

TEST_F(InitialData, TellsInTheCallersLanguage) {
  FakeLoader fake{{{"初始化单据", "The client's documents"},
                   {"初始化设置", "'Settings'"},
                   {"严重错误", "It's serious"},
                   {"警告信息", "Warning'"},
                   {"没有设置应收系统的启用期间", "the client's period is not set"},
                   {"没有设置往来科目", "hasn't an account"}}};
  const auto installed = fake.install();
  profile("FARUseYear", "0");
  plant("t_rp_BegData", "FInterID, FClassTypeID, FType, FRP, FBillNo, FDate",
        "(1,11,3,1,'QC1','2007-12-31')");
  EXPECT_THAT(findings(true, "LANGUAGE=EN;"),
              ElementsAre("1 'Settings' It's serious: the client's period is not set",
                          "2 The client's documents Warning': Initial invoice[QC1] hasn't an "
                          "account"));
}

TEST_F(InitialData, FailsWithTheReason) {
  profile("FARUseYear", "two thousand");
  EXPECT_FALSE(check(dsn()));
  EXPECT_THAT(reason().description, HasSubstr("two thousand"));

  ScriptedDatabase database;
  EXPECT_TRUE(check(kScriptedDsn));
  database.fail("create table #ErrorInfo", "tempdb is full");
  EXPECT_FALSE(check(kScriptedDsn));
  EXPECT_EQ(reason().description, "tempdb is full");
  EXPECT_EQ(database.open, 0);
  filter_ = nullptr;
  EXPECT_FALSE(check(kScriptedDsn));
  EXPECT_THAT(reason().description, HasSubstr("dFilter"));
}

TEST_F(InitialData, RunsAsOneBatch) {
  ScriptedDatabase database;
  filter_->Set("bArp", false);
  ASSERT_TRUE(check(kScriptedDsn));
  const auto& run = database.statements;
  ASSERT_GE(run.size(), 4U);
  EXPECT_THAT(std::vector(run.end() - 4, run.end()),
              ElementsAre("drop Table #ErrorInfo", testing::_, " select * from #ErrorInfo ",
                          "drop Table #ErrorInfo"));
  EXPECT_THAT(
      run[run.size() - 3],
      AllOf(testing::StartsWith("set nocount on \r\ncreate table #ErrorInfo(\r\n"
                                "    FID int identity primary key,\r\n"
                                "    FChkItem nvarchar(200) default(''),\r\n"
                                "    FTypeID int default(0) ,\r\n"
                                "    FChkType nvarchar(20) default('')"),
            HasSubstr("-- 0 : 警告信息； 1：严重错误  2： 提示信息; 3:其他错误\r\n"
                      "    FChkInfo nvarchar(300) default('') )\r\n"),
            HasSubstr(" set @barp = 0\r\n"),
            HasSubstr(" select '初始化单据','警告信息',u1.FName + '[' + isnull(v1.fbillno,'') + "
                      "'] ' + '没有设置往来科目'\r\n"
                      " from t_rp_begData v1 inner join t_rp_billtype u1 on (v1.fclasstypeid "
                      "=u1.fid)\r\n"
                      " where v1.frp = 0 and isnull(v1.FAccountID,0) = 0 \r\n")));
}

}  // namespace
}  // namespace velmora
