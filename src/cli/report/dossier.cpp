#include "cli/report/dossier.h"

#include <algorithm>
#include <fmt/format.h>
#include <ostream>

#include "cli/closing/closing_check.h"
#include "cli/failure.h"
#include "cli/period/basic_checks.h"
#include "cli/reconcile/comparison_report.h"
#include "cli/reconcile/explained.h"
#include "cli/row_access.h"

namespace velmora::cli {

namespace {

using explain::Sentences;
using report::Cell;
using report::Kind;
using report::Section;
using report::Tone;

AccountSetOptions ofSide(AccountSetOptions accountSet, bool receivables) {
  accountSet.receivables = receivables;
  return accountSet;
}

ClosingOptions closingOptions(const Reconciliation& comparison, bool showAll) {
  ClosingOptions closing;
  closing.receivables = comparison.options.receivables;
  closing.period = comparison.options.period;
  closing.accountIds = comparison.filter->Value("AcctList").toText();
  closing.showAll = showAll;
  return closing;
}

std::unique_ptr<DossierSide> checkSide(const Session& session, bool receivables,
                                       const DossierOptions& options, Dossier& dossier,
                                       std::ostream& err, const DossierProgress& progress) {
  const std::string name = receivables ? "receivables" : "payables";
  ReconcileOptions asked;
  asked.receivables = receivables;
  asked.period = options.period;
  progress(name + ": closing check, comparison with the ledger");
  Reconciliation comparison = prepared(session, asked);
  auto closing = startClosingCheck(session, closingOptions(comparison, options.showAll));
  auto inquiry = startInquiry(session, comparison);
  run(session, comparison);
  if (options.noRowAccess && undecidedRowAccess()) dossier.limits.push_back(noRowAccessNote());
  settleRowAccess(options.noRowAccess, err);
  progress(name + ": why the ledger differs");
  explain::Explanation explanation = explained(session, comparison, std::move(inquiry));
  for (const std::string& note : explanation.notes) {
    err << "note: " << note << '\n';
    dossier.limits.push_back(note);
  }
  progress(name + ": initial data");
  CheckReport initial = runInitCheck(session.dsn(), receivables, session.language());
  return std::make_unique<DossierSide>(closing.get(), std::move(comparison), std::move(explanation),
                                       std::move(initial), session.language());
}

/// Whether the side is in use, where the current period is asked for.
bool hasPeriod(const Session& session, bool receivables, const DossierOptions& options,
               std::string& reason) {
  if (options.period.year != 0) return true;
  try {
    static_cast<void>(currentPeriod(session.connection(), receivables));
    return true;
  } catch (const Failure& failure) {
    reason = failure.what();
    return false;
  }
}

std::string periodsOf(const Dossier& dossier) {
  std::string text;
  for (const auto& side : dossier.sides)
    if (const std::string period = toString(side->checked.closing.period); text != period)
      text += (text.empty() ? "" : " / ") + period;
  return text;
}

/// A line of the table that the summary shows what was checked in.
report::Row resultRow(const Section& section, const Findings* findings,
                      const explain::Measures* difference) {
  const auto count = [&](Severity severity) {
    return findings == nullptr ? Cell()
                               : Cell(static_cast<std::int64_t>(countOf(*findings, severity)));
  };
  report::Row row;
  row.cells = {report::References{{section.title, section.id}}, section.summary,
               count(Severity::serious), count(Severity::warning),
               difference == nullptr ? Cell() : Cell(shown(difference->balance, 2))};
  row.tone = section.tone;
  return row;
}

report::Table resultTable(Sentences& sentences) {
  report::Table table;
  table.id = "results";
  table.title = sentences.of("检查结果");
  table.columns = {{.name = sentences.of("检查内容"), .key = true},
                   {.name = sentences.of("结果")},
                   {.name = sentences.of("严重错误"), .kind = Kind::count},
                   {.name = sentences.of("警告信息"), .kind = Kind::count},
                   {.name = sentences.of("余额差异"), .kind = Kind::amount, .difference = true}};
  return table;
}

/// Sections and the lines of the summary's table, made side by side.
class Chapters {
 public:
  explicit Chapters(Sentences& sentences) : results_(resultTable(sentences)) {}

  void add(Section section, const Findings& findings) {
    add(std::move(section), &findings, nullptr);
  }
  void add(Section section, const explain::Measures& difference) {
    add(std::move(section), nullptr, &difference);
  }
  report::Table results() { return std::move(results_); }
  std::vector<Section> sections() { return std::move(sections_); }

 private:
  void add(Section section, const Findings* findings, const explain::Measures* difference) {
    results_.rows.push_back(resultRow(section, findings, difference));
    sections_.push_back(std::move(section));
  }

  report::Table results_;
  std::vector<Section> sections_;
};

Section summaryOf(const Dossier& dossier, report::Table results, Sentences& sentences) {
  Section summary;
  summary.id = "summary";
  summary.title = sentences.of("结论");
  summary.tone = Tone::good;
  report::Steps steps{sentences.of("先做什么"), {}};
  for (const auto& side : dossier.sides) {
    const CheckedSide& checked = side->checked;
    const report::Paragraph verdict = verdictOf(checked.closing, sentences);
    summary.tone = std::max(summary.tone, verdict.tone);
    summary.blocks.emplace_back(verdict);
    summary.blocks.emplace_back(
        verdictOf(checked.comparison, rowsOf(checked.explanation), sentences));
    std::ranges::move(stepsOf(checked.closing, &checked, sentences),
                      std::back_inserter(steps.entries));
  }
  summary.blocks.emplace_back(std::move(results));
  if (!steps.entries.empty()) summary.blocks.emplace_back(std::move(steps));
  return summary;
}

void addScope(About& about, const Dossier& dossier, const DossierOptions& options,
              Sentences& sentences) {
  for (const auto& side : dossier.sides) {
    const ReconcileOptions& compared = side->checked.comparison.options;
    about.add(compared.receivables ? "应收款的期间和科目" : "应付款的期间和科目",
              fmt::format("{}: {}", toString(compared.period), fmt::join(compared.accounts, ", ")));
  }
  about.addLimit(sentences.of("比较的是各币别折合本位币的合计，没有逐一比较外币金额。"));
  about.addLimit(sentences.of("总账只取已过账的凭证。"));
  if (options.payables) about.addLimit(sentences.of("应付款不含暂估和委外加工的金额。"));
  if (!options.showAll) about.addLimit(sentences.of("账套不要求生成凭证的单据，没有检查其凭证。"));
  for (const std::string& limit : dossier.limits) about.addLimit(limit);
}

}  // namespace

bool Dossier::blocked() const {
  return std::ranges::any_of(sides,
                             [](const auto& side) { return !side->checked.closing.mayClose; });
}

Dossier makeDossier(const Session& session, const DossierOptions& options, std::ostream& err,
                    const DossierProgress& progress) {
  requireAccountSet(session.connection());
  Dossier dossier;
  const bool both = options.receivables && options.payables;
  for (const bool receivables : {true, false}) {
    if (!(receivables ? options.receivables : options.payables)) continue;
    const Session own(ofSide(options.accountSet, receivables));
    if (std::string reason; both && !hasPeriod(own, receivables, options, reason)) {
      dossier.limits.push_back((receivables ? "receivables: " : "payables: ") + reason);
      continue;
    }
    dossier.sides.push_back(checkSide(own, receivables, options, dossier, err, progress));
  }
  if (dossier.sides.empty())
    throw Failure(
        "neither side of this account set has a current period; give --year and --period");
  progress("accounts");
  dossier.accounts = runAccountCheck(session.dsn(), session.language());
  return dossier;
}

report::Report reportOf(const Session& session, const Dossier& dossier,
                        const DossierOptions& options, const ReportFile& file,
                        Sentences& sentences) {
  report::Report report =
      newReport(file, session.language(), sentences.of("%1 期结账报告", {periodsOf(dossier)}),
                subjectOf(session));
  Chapters chapters(sentences);
  for (const auto& side : dossier.sides) {
    const CheckedSide& checked = side->checked;
    chapters.add(closingSection(checked.closing, &checked, sentences),
                 withoutVouchers(checked.closing.findings, sentences));
    chapters.add(
        comparisonSection(checked.comparison, checked.explanation, checked.places, sentences),
        differenceOf(rowsOf(checked.explanation)));
  }
  for (const auto& side : dossier.sides)
    chapters.add(
        checkSection(side->initial,
                     fmt::format("{}: {}", sideName(side->checked.closing.receivables, sentences),
                                 sentences.of("初始数据检查")),
                     sentences),
        side->initial.findings);
  chapters.add(checkSection(dossier.accounts, sentences.of("科目检查"), sentences),
               dossier.accounts.findings);
  for (const auto& side : dossier.sides)
    chapters.add(vouchersSection(side->checked, sentences),
                 vouchersAlone(side->checked.closing.findings, sentences));
  report.sections.push_back(summaryOf(dossier, chapters.results(), sentences));
  std::ranges::move(chapters.sections(), std::back_inserter(report.sections));
  About about(report, sentences);
  about.addBooks(session);
  addScope(about, dossier, options, sentences);
  report.sections.push_back(about.section());
  return report;
}

}  // namespace velmora::cli
