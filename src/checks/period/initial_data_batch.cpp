#include "checks/period/initial_data_batch.h"

#include "common/localized_field_name.h"
#include "common/messages.h"
#include "common/sql_lines.h"

namespace velmora::period {

namespace {

constexpr const char* kSerious = "严重错误";
constexpr const char* kWarning = "警告信息";

struct SideTerms {
  const char* frp;  ///< as the documents' FRP columns hold it
  const char *noStartPeriod, *noDefaultAccount;
};

constexpr SideTerms kReceivables = {"1", "没有设置应收系统的启用期间",
                                    "没有设置应收系统单据的默认往来科目"};
constexpr SideTerms kPayables = {"0", "没有设置应付系统的启用期间",
                                 "没有设置应付系统单据的默认往来科目"};

constexpr const char* kCreateErrorInfo =
    R"(set nocount on 
create table #ErrorInfo(
    FID int identity primary key,
    FChkItem nvarchar(200) default(''),
    FTypeID int default(0) ,
    FChkType nvarchar(20) default(''), -- 0 : 警告信息； 1：严重错误  2： 提示信息; 3:其他错误
    FChkInfo nvarchar(300) default('') ))";

constexpr const char* kDeclareVariables =
    R"(declare @bArp int
declare @lUseYear int
declare @lUsePeriod int
declare @lFinishInit int
declare @lGLFinishInit int
declare @lGLUseYear int
declare @lGLUsePeriod int
set @lUseyear = 0
set @lUsePeriod = 0
set @lFinishInit = 0)";

constexpr const char* kReadStartPeriod =
    R"(if @barp = 1
begin
    select @lUseYear = convert(int,fvalue) from t_rp_systemprofile where FKey = 'FARUseYear'
    select @lUsePeriod = convert(int,fvalue) from t_rp_systemprofile where FKey = 'FARUsePeriod'
end
else
begin
    select @lUseYear = convert(int,fvalue) from t_rp_systemprofile where FKey = 'FAPUseYear'
    select @lUsePeriod = convert(int,fvalue) from t_rp_systemprofile where FKey = 'FAPUsePeriod'
end)";

constexpr const char* kReadLedgerStart =
    R"(    set @lGLUseYear = 0
    set @lGLUsePeriod = 0
    select @lGLUseYear = convert(int,fvalue) from t_systemprofile where fcategory = 'GL' and fkey = 'StartYear'
    select @lGLUsePeriod = convert(int,fvalue) from t_systemprofile where fcategory = 'GL' and fkey = 'StartPeriod')";

/// The findings of the batch, in the caller's language.
class Findings {
 public:
  explicit Findings(const std::string& language) : language_(language) {}

  /// A text in the caller's language, as a literal.
  std::string literal(const char* text) const { return quoted(LoadMessage(text, language_)); }

  /// Writes one finding.
  std::string insert(const char* item, const char* severity, const char* info) const {
    return SqlLines()
        .line("    insert into #ErrorInfo (FChkItem, FChkType, FChkInfo)")
        .line("    values (" + literal(item) + "," + literal(severity) + "," + literal(info) + ")")
        .text();
  }
  std::string insertIf(const std::string& condition, const char* item, const char* severity,
                       const char* info) const {
    return SqlLines().line(condition).line(insert(item, severity, info)).text();
  }

 private:
  const std::string& language_;
};

/// The system's start period, and that the ledger does not start after it.
std::string startPeriod(const Findings& findings, const SideTerms& side) {
  return SqlLines()
      .line("    if @lUseYear = 0 or @lUsePeriod = 0")
      .line(findings.insert("初始化设置", kSerious, side.noStartPeriod))
      .line("else")
      .line("begin")
      .lines(kReadLedgerStart)
      .line(findings.insertIf("    if @lGLUseYear > @lUseYear or (@lGLUseYear = @lUseYear and "
                              "@lUsePeriod < @lGLUsePeriod)",
                              "初始化设置", kWarning,
                              "系统启用期间设置与总账不一致，可能会影响与总账的对账"))
      .line("end")
      .text();
}

std::string basicData(const Findings& findings, const SideTerms& side) {
  return SqlLines()
      .line(findings.insertIf(
          "if not exists(select * from t_rp_systemprofile where  FKey='FCompanyName')",
          "初始化设置", kSerious, "没有设置公司名称"))
      .line(findings.insertIf("if not exists(select top 1 * from t_account)", "基础资料", kSerious,
                              "没有填写科目基础资料"))
      .line(findings.insertIf("if not exists(select top 1 * from t_Currency)", "基础资料", kSerious,
                              "没有填写币别基础资料"))
      .line(
          findings.insertIf("if exists(select top 1 * from t_rp_billType where frp = @bArp and "
                            "isnull(fAccountID,0) = 0 and FType in (1,2,3,4,5,6) and FIsInit = 0)",
                            "参数设置", kWarning, side.noDefaultAccount))
      .text();
}

/// One finding an initial document without control account.
std::string initialDocuments(const Findings& findings, const SideTerms& side,
                             const InitialDataOptions& options) {
  const char* severity = options.accountDemanded ? kSerious : kWarning;
  const std::string name = LocalizedFieldName("FName", options.language);
  return SqlLines()
      .line(" insert into #ErrorInfo (FChkItem, FChkType, FChkInfo)")
      .line(" select " + findings.literal("初始化单据") + "," + findings.literal(severity) +
            ",u1." + name + " + '[' + isnull(v1.fbillno,'') + '] ' + " +
            findings.literal("没有设置往来科目"))
      .line(" from t_rp_begData v1 inner join t_rp_billtype u1 on (v1.fclasstypeid =u1.fid)")
      .line(std::string(" where v1.frp = ") + side.frp + " and isnull(v1.FAccountID,0) = 0 ")
      .text();
}

}  // namespace

std::string initialDataBatch(const InitialDataOptions& options) {
  const SideTerms& side = options.bArp ? kReceivables : kPayables;
  const Findings findings(options.language);
  return SqlLines()
             .lines(kCreateErrorInfo)
             .lines(kDeclareVariables)
             .line(std::string(" set @barp = ") + side.frp)
             .lines(kReadStartPeriod)
             .line(startPeriod(findings, side))
             .line(basicData(findings, side))
             .line(initialDocuments(findings, side, options))
             .text() +
         "\r\n";
}

}  // namespace velmora::period
