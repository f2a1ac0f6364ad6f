#include <gtest/gtest.h>
#include <sstream>

#include "cli/closing/report.h"

namespace velmora::cli {
namespace {

ClosingReport blockedReport() {
  ClosingReport report{true, {2009, 3}, false, {}};
  report.findings = {
      {1, "单据审核检查", "严重错误", "应收单[AR0001]:单据没有审核", Severity::serious},
      {2, "单据审核检查", "严重错误", "应收单[AR0002]:单据没有审核", Severity::serious},
      {3, "单据期间检查", "警告信息", "凭证, 记-12", Severity::warning}};
  return report;
}

template <class Write>
std::string written(Write write, const ClosingReport& report) {
  std::ostringstream out;
  write(out, report);
  return out.str();
}

std::string plainReport(const ClosingReport& report) {
  return written([](auto& out, const auto& r) { writeReport(out, r, Style()); }, report);
}

TEST(ClosingReport, GroupsFindingsAndEndsWithTheVerdict) {
  EXPECT_EQ(plainReport(blockedReport()),
            "单据审核检查 - 严重错误\n"
            "  1  应收单[AR0001]:单据没有审核\n"
            "  2  应收单[AR0002]:单据没有审核\n"
            "\n"
            "单据期间检查 - 警告信息\n"
            "  3  凭证, 记-12\n"
            "\n"
            "Check item    Severity  Findings\n"
            "------------  --------  --------\n"
            "单据审核检查  严重错误         2\n"
            "单据期间检查  警告信息         1\n"
            "\n"
            "Receivables 2009-03: 3 findings, 2 serious errors, 1 warning. The period may not be "
            "closed.\n");
}

TEST(ClosingReport, SaysSoWhenThereIsNothing) {
  EXPECT_EQ(plainReport({false, {2009, 12}, true, {}}),
            "Payables 2009-12: no findings. The period may be closed.\n");
}

TEST(ClosingReport, WritesTheResultSetAsCsv) {
  EXPECT_EQ(written([](auto& out, const auto& r) { writeReportCsv(out, r); }, blockedReport()),
            "FID,FChkItem,FChkType,FChkInfo\r\n"
            "1,单据审核检查,严重错误,应收单[AR0001]:单据没有审核\r\n"
            "2,单据审核检查,严重错误,应收单[AR0002]:单据没有审核\r\n"
            "3,单据期间检查,警告信息,\"凭证, 记-12\"\r\n");
}

TEST(ClosingReport, WritesJsonWithTotals) {
  ClosingReport report = blockedReport();
  report.findings.pop_back();
  report.findings.pop_back();
  EXPECT_EQ(written([](auto& out, const auto& r) { writeReportJson(out, r); }, report),
            R"({"side":"ar","year":2009,"period":3,"mayClose":false,"seriousErrors":1,)"
            R"("warnings":0,"items":[{"item":"单据审核检查","severity":"严重错误","serious":true,)"
            R"("findings":1}],"findings":[{"id":1,"item":"单据审核检查","severity":"严重错误",)"
            R"("serious":true,"message":"应收单[AR0001]:单据没有审核"}]})"
            "\n");
}

}  // namespace
}  // namespace velmora::cli
