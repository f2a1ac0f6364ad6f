// Measures the writers of reports on 60,000 rows, each in a process of its own, whose memory
// holds the report as well.
//
//   bench_report            both forms beside their limits
//   bench_report html|xlsx  writes one
//
// The rows are those of a closing check with what each moves.

#include <cstdio>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "figures.h"
#include "measure.h"
#include "process_run.h"
#include "report/html.h"
#include "report/workbook.h"

namespace velmora::bench {

namespace {

using report::Kind;

constexpr int kRows = 60'000;

report::Table findings() {
  report::Table table;
  table.id = "findings";
  table.title = "Findings";
  table.columns = {{.name = "No.", .kind = Kind::count, .key = true},
                   {.name = "Check item", .choice = true},
                   {.name = "Severity", .choice = true},
                   {.name = "What was found"}};
  for (const char* measure : {"Opening balance", "Debit", "Credit", "Balance"})
    table.columns.push_back({.name = measure, .kind = Kind::amount, .difference = true});
  table.columns.push_back({.name = "Reason"});
  for (int i = 0; i < kRows; ++i) {
    report::Row row;
    row.id = fmt::format("finding-{}", i);
    row.tone = report::Tone::serious;
    const auto amount = report::Decimal::fromCoefficient(i * 7919LL % 10'000'000 - 5'000'000, 2);
    row.cells = {std::int64_t{i}, fmt::format("Check item {}", i % 11), "Serious error",
                 fmt::format("Sales invoice[XSFP{:06}]:no voucher generated", i)};
    for (int measure = 0; measure < 4; ++measure) row.cells.emplace_back(amount);
    row.cells.emplace_back(report::References{
        {fmt::format("1122 C{:06}: document without voucher", i % 3000), "findings"}});
    table.rows.push_back(std::move(row));
  }
  return table;
}

report::Report report() {
  report::Report report;
  report.language = "EN";
  report.title = "Closing check";
  report.sections.push_back({.id = "summary", .title = "Conclusion"});
  report.sections.push_back({.id = "closing", .title = "Closing check"});
  report.sections.back().blocks.emplace_back(findings());
  return report;
}

void write(const std::string& form, const std::string& file) {
  const report::Words words = [](std::string_view text) { return std::string(text); };
  if (form == "xlsx") return report::writeWorkbook(file, report(), words);
  std::ofstream out(file, std::ios::binary);
  report::writeHtml(out, report(), words);
}

int measureAll(const std::string& self) {
  Figures figures;
  for (const std::string form : {"html", "xlsx"}) {
    std::vector<double> times;
    double memory = 0;
    for (int i = 0; i < 5; ++i) {
      const ProcessRun run = runProcess({self, form});
      times.push_back(run.exitStatus == 0 ? run.seconds : 1e9);
      memory = run.peakMemoryMiB;
    }
    std::printf("60,000 findings to %s\n", form.c_str());
    figures.report("  made and written", median(times), 2, "s");
    figures.report("  peak memory", memory, 300, "MiB");
  }
  return figures.allKept() ? 0 : 1;
}

}  // namespace

}  // namespace velmora::bench

int main(int argc, char** argv) {
  if (argc < 2) return velmora::bench::measureAll(argv[0]);
  const auto file =
      std::filesystem::temp_directory_path() / fmt::format("bench_report.{}", getpid());
  velmora::bench::write(argv[1], file);
  std::filesystem::remove(file);
  return 0;
}
