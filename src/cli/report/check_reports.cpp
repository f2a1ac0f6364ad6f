#include "cli/report/check_reports.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "cli/reconcile/explained.h"

namespace velmora::cli {

namespace {

using explain::Sentences;
using report::Report;
using report::Section;

Section summaryOf(const report::Paragraph& verdict, report::References steps,
                  Sentences& sentences) {
  Section summary;
  summary.id = "summary";
  summary.title = sentences.of("结论");
  summary.tone = verdict.tone;
  summary.blocks.emplace_back(verdict);
  if (!steps.empty())
    summary.blocks.emplace_back(report::Steps{sentences.of("先做什么"), std::move(steps)});
  return summary;
}

About aboutBooks(const Report& report, const Session& session, Sentences& sentences) {
  About about(report, sentences);
  about.addBooks(session);
  return about;
}

void addOptions(About& about, const Reconciliation& reconciliation, Sentences& sentences) {
  const ReconcileOptions& options = reconciliation.options;
  about.add("期间", toString(options.period));
  about.add("科目", fmt::format("{}", fmt::join(options.accounts, ", ")));
  about.add("币别", reconciliation.currency.id == 0 ? sentences.of("所有币别折合本位币")
                                                    : reconciliation.currency.name);
  if (!options.items.empty()) about.add("往来单位", options.items);
  if (options.comparison != Comparison::initial)
    about.addLimit(
        sentences.of(options.unposted ? "总账包括本期未过账的凭证。" : "总账只取已过账的凭证。"));
  if (options.receivables) return;
  if (!options.estimates) about.addLimit(sentences.of("应付款不含暂估的金额。"));
  if (!options.outsourcing) about.addLimit(sentences.of("应付款不含委外加工的金额。"));
}

}  // namespace

Report closingReport(const Session& session, const ClosingReport& report, const CheckedSide* side,
                     const ReportFile& file, Sentences& sentences) {
  Report made =
      newReport(file, session.language(), sentences.of("%1 期结账检查", {toString(report.period)}),
                subjectOf(session));
  made.sections.push_back(
      summaryOf(verdictOf(report, sentences), stepsOf(report, side, sentences), sentences));
  made.sections.push_back(closingSection(report, side, sentences));
  if (side != nullptr) {
    made.sections.push_back(
        comparisonSection(side->comparison, side->explanation, side->places, sentences));
    made.sections.push_back(vouchersSection(*side, sentences));
  }
  About about = aboutBooks(made, session, sentences);
  about.add("期间", toString(report.period));
  if (side == nullptr) about.addLimit(sentences.of("没有与总账核对。"));
  made.sections.push_back(about.section());
  return made;
}

Report comparisonReport(const Session& session, const Reconciliation& reconciliation,
                        const explain::Explanation* explanation, const FindingReasons* checks,
                        const ReportFile& file, Sentences& sentences) {
  const ReconcileOptions& options = reconciliation.options;
  const auto rows =
      explanation == nullptr ? comparedRows(session, reconciliation) : rowsOf(*explanation);
  Report made =
      newReport(file, session.language(),
                sentences.of("%1 期%2与总账核对",
                             {toString(options.period), sideName(options.receivables, sentences)}),
                subjectOf(session));
  made.sections.push_back(summaryOf(verdictOf(reconciliation, rows, sentences), {}, sentences));
  if (explanation == nullptr) {
    made.sections.push_back(comparisonSection(reconciliation, rows, sentences));
  } else {
    Places places(sideCode(options.receivables), *explanation);
    if (checks != nullptr) places.nameItems(*checks);
    made.sections.push_back(comparisonSection(reconciliation, *explanation, places, sentences));
  }
  About about = aboutBooks(made, session, sentences);
  addOptions(about, reconciliation, sentences);
  if (explanation == nullptr) {
    about.addLimit(sentences.of("没有查找差异的原因。"));
  } else {
    for (const std::string& note : explanation->notes) about.addLimit(note);
  }
  made.sections.push_back(about.section());
  return made;
}

Report basicCheckReport(const Session& session, const CheckReport& report, const ReportFile& file,
                        Sentences& sentences) {
  const std::string title = report.side.empty()
                                ? sentences.of("科目检查")
                                : fmt::format("{}: {}", sideName(report.side == "ar", sentences),
                                              sentences.of("初始数据检查"));
  Report made = newReport(file, session.language(), title, subjectOf(session));
  const char* verdict =
      report.blocked() ? (report.side.empty() ? "部分核算项目类别无法检查。" : "不可以结束初始化。")
      : report.side.empty() ? "各核算项目类别均已检查。"
                            : "可以结束初始化。";
  made.sections.push_back(summaryOf(
      {sentences.of(verdict) + " " + countsOf(report.findings, sentences), toneOf(report.findings)},
      {}, sentences));
  made.sections.push_back(checkSection(report, title, sentences));
  made.sections.push_back(aboutBooks(made, session, sentences).section());
  return made;
}

}  // namespace velmora::cli
