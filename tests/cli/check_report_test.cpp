#include <gtest/gtest.h>
#include <sstream>

#include "cli/output/result_rows.h"
#include "cli/period/report.h"

namespace velmora::cli {
namespace {

CheckReport accountReport() {
  ResultRows rows;
  rows.countColumn("FID").textColumn("FKey");
  rows.add(std::size_t{1}).add("客户");
  CheckReport report;
  report.rows = rows.finish();
  report.rows->MoveNext();
  report.findings = {{1, "客户", "警告错误", "C1 没有科目", Severity::warning},
                     {2, "客户", "警告错误", "C2 没有科目", Severity::warning},
                     {3, "股东", "严重错误", "表 股东 缺少字段", Severity::serious}};
  report.itemTitle = "Item class";
  report.summary = "Account check: " + countsText(report.findings) + ".";
  return report;
}

struct Written {
  std::string out, err;
};

Written written(const CheckReport& report, Format format) {
  std::ostringstream out, err;
  writeReport(out, err, report, format);
  return {out.str(), err.str()};
}

TEST(CheckReport, IsATableWithTheSummaryOrResultsAlone) {
  const CheckReport report = accountReport();
  EXPECT_TRUE(report.blocked());
  const std::string summary = "Account check: 3 findings, 1 serious error, 2 warnings.\n";
  const auto table = written(report, Format::table);
  EXPECT_EQ(table.out,
            "客户 - 警告错误\n"
            "  1  C1 没有科目\n"
            "  2  C2 没有科目\n"
            "\n"
            "股东 - 严重错误\n"
            "  3  表 股东 缺少字段\n"
            "\n"
            "Item class  Severity  Findings\n"
            "----------  --------  --------\n"
            "客户        警告错误         2\n"
            "股东        严重错误         1\n"
            "\n" +
                summary);
  EXPECT_EQ(table.err, "");
  const auto csv = written(report, Format::csv);
  EXPECT_EQ(csv.out, "FID,FKey\r\n1,客户\r\n");
  EXPECT_EQ(csv.err, summary);
  const auto json = written(report, Format::json);
  EXPECT_EQ(json.out.substr(0, 53), R"({"passed":false,"seriousErrors":1,"warnings":2,"items)");
  EXPECT_EQ(json.err, summary);
}

TEST(CheckReport, PassesWithWarnings) {
  CheckReport report = accountReport();
  report.findings.pop_back();
  report.side = "ap";
  EXPECT_FALSE(report.blocked());
  EXPECT_EQ(written(report, Format::json).out.substr(0, 28), R"({"side":"ap","passed":true,")");
}

}  // namespace
}  // namespace velmora::cli
