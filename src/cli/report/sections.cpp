#include "cli/report/sections.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

#include "cli/reconcile/comparison_report.h"
#include "cli/reconcile/explained_report.h"

namespace velmora::cli {

namespace {

using explain::Sentences;
using report::Paragraph;
using report::Section;
using report::Tone;

constexpr const char* kVoucherCheck = "%1凭证检查";

/// The check items and what to do about their findings.
struct ItemAction {
  const char *item, *action;
};
constexpr std::array kActions{
    ItemAction{"0|单据审核检查", "审核这些单据，或将其移到下期。"},
    ItemAction{"0|现购费用发票检查", "核销这些现购费用发票。"},
    ItemAction{"0|单据凭证检查", "为这些单据生成凭证。"},
    ItemAction{"%1票据凭证检查", "为这些票据操作生成凭证。"},
    ItemAction{"%1转销凭证检查", "为这些转销生成凭证。"},
    ItemAction{"%1退票凭证检查", "为这些退票生成凭证。"},
    ItemAction{"%1转账凭证检查", "为这些转账和预收预付冲销生成凭证。"},
    ItemAction{kVoucherCheck, "为这些凭证补录单据，或更正凭证。"},
    ItemAction{"%1单据期间检查", "使单据与其凭证、业务单据处于同一期间。"},
    ItemAction{"%1单据往来科目检查", "填写或更正单据的往来科目。"},
    ItemAction{"%1期间检查", "按提示的次序结账。"},
    ItemAction{"%1单据确认检查", "确认出纳系统发送的单据。"}};

/// A check item's name as its findings have it, without the flag before it.
std::string itemName(const char* item, Sentences& sentences) {
  const std::string name = sentences.of(item, {""});
  return name.substr(name.find('|') + 1);  // npos + 1 is 0
}

std::string actionFor(const std::string& item, Sentences& sentences) {
  for (const auto& [name, action] : kActions)
    if (itemName(name, sentences) == item) return sentences.of(action);
  return {};
}

/// The findings of one item.
struct ItemFindings {
  const Finding* first;
  std::size_t count = 0;
};

std::vector<ItemFindings> byItem(const Findings& findings) {
  std::vector<ItemFindings> items;
  for (const Finding& finding : findings) {
    auto item = std::ranges::find_if(items, [&](const ItemFindings& known) {
      return known.first->item == finding.item && known.first->severity == finding.severity;
    });
    if (item == items.end()) item = items.insert(items.end(), {&finding});
    ++item->count;
  }
  // clang 14 lacks std::ranges::stable_partition.
  std::stable_partition(items.begin(), items.end(), [](const ItemFindings& item) {
    return item.first->severity == Severity::serious;
  });
  return items;
}

std::string titled(bool receivables, Period period, const char* subject, Sentences& sentences) {
  return fmt::format("{} {}: {}", sideName(receivables, sentences), toString(period),
                     sentences.of(subject));
}

const char* subjectOf(Comparison comparison) {
  constexpr std::array kSubjects{"初始数据与总账核对", "与总账核对", "合计与总账核对"};
  return kSubjects[static_cast<std::size_t>(comparison)];
}

/// With head and verdict of a comparison; its tables follow.
Section comparisonHead(const Reconciliation& reconciliation,
                       const std::vector<explain::ComparedRow>& rows, Sentences& sentences) {
  const ReconcileOptions& options = reconciliation.options;
  Section section;
  section.id = sideCode(options.receivables) + "-comparison";
  section.title =
      titled(options.receivables, options.period, subjectOf(options.comparison), sentences);
  section.summary = differenceText(reconciliation, rows, sentences);
  section.tone = verdictOf(reconciliation, rows, sentences).tone;
  return section;
}

std::string mayCloseText(const ClosingReport& report, Sentences& sentences) {
  return sentences.of(report.mayClose ? "%1 %2：可以结账。" : "%1 %2：不可以结账。",
                      {sideName(report.receivables, sentences), toString(report.period)});
}

Findings chosen(const Findings& findings, bool vouchers, Sentences& sentences) {
  const std::string item = itemName(kVoucherCheck, sentences);
  Findings result;
  std::ranges::copy_if(findings, std::back_inserter(result),
                       [&](const Finding& finding) { return (finding.item == item) == vouchers; });
  return result;
}

}  // namespace

Findings vouchersAlone(const Findings& findings, Sentences& sentences) {
  return chosen(findings, true, sentences);
}

Findings withoutVouchers(const Findings& findings, Sentences& sentences) {
  return chosen(findings, false, sentences);
}

CheckedSide::CheckedSide(ClosingReport found, Reconciliation compared,
                         explain::Explanation explained, const std::string& language)
    : closing(std::move(found)),
      comparison(std::move(compared)),
      explanation(std::move(explained)),
      reasons(closing.findings, explanation, language),
      places(sideCode(closing.receivables), explanation) {
  places.connect(closing.findings, reasons);
}

std::string sideCode(bool receivables) {
  return receivables ? "ar" : "ap";
}

std::vector<explain::ComparedRow> rowsOf(const explain::Explanation& explanation) {
  std::vector<explain::ComparedRow> rows;
  rows.reserve(explanation.rows.size());
  for (const explain::ExplainedRow& row : explanation.rows) rows.push_back(row.row);
  return rows;
}

Paragraph verdictOf(const ClosingReport& report, Sentences& sentences) {
  return {mayCloseText(report, sentences) + " " + countsOf(report.findings, sentences),
          report.mayClose ? Tone::good : Tone::serious};
}

Paragraph verdictOf(const Reconciliation& reconciliation,
                    const std::vector<explain::ComparedRow>& rows, Sentences& sentences) {
  const bool agrees =
      std::ranges::all_of(rows, [](const auto& row) { return row.difference().isZero(); });
  return {differenceText(reconciliation, rows, sentences), agrees ? Tone::good : Tone::serious};
}

report::References stepsOf(const ClosingReport& report, const CheckedSide* side,
                           Sentences& sentences) {
  const Places places(sideCode(report.receivables));
  const std::string name = sideName(report.receivables, sentences);
  report::References steps;
  for (const auto& [first, count] : byItem(report.findings))
    steps.push_back({sentences.of("%1，%2（%3 个）：%4", {name, first->item, std::to_string(count),
                                                          actionFor(first->item, sentences)}),
                     places.of(*first)});
  if (side == nullptr) return steps;
  std::map<explain::Reason, std::pair<ReasonTotal, std::string>> others;
  for (const explain::ExplainedRow& row : side->explanation.rows)
    for (const explain::RowReason& reason : row.reasons) {
      if (!side->reasons.checksOf(reason).empty()) continue;
      auto& [total, first] = others[reason.reason];
      if (first.empty()) first = side->places.of(reason);
      ++total.count;
      total.amounts += reason.difference;
    }
  for (const auto& [reason, other] : others)
    steps.push_back({sentences.of("%1，与总账的差异：%2（%3 处，余额差异 %4）。",
                                  {name, sentences.of(explain::nameOf(reason)),
                                   std::to_string(other.first.count),
                                   shown(other.first.amounts.local.balance, 2).toString()}),
                     other.second});
  return steps;
}

Section closingSection(const ClosingReport& report, const CheckedSide* side, Sentences& sentences) {
  const Places alone(sideCode(report.receivables));
  const Places& places = side == nullptr ? alone : side->places;
  const Findings findings =
      side == nullptr ? report.findings : withoutVouchers(report.findings, sentences);
  Section section;
  section.id = sideCode(report.receivables) + "-closing";
  section.title = titled(report.receivables, report.period, "结账检查", sentences);
  section.summary = countsOf(findings, sentences);
  section.tone = toneOf(findings);
  section.blocks.emplace_back(
      Paragraph{mayCloseText(report, sentences), report.mayClose ? Tone::good : Tone::serious});
  if (findings.empty()) return section;
  section.blocks.emplace_back(findingsChart(findings, section.id + "-items", places, sentences));
  section.blocks.emplace_back(
      findingsTable(findings, {section.id + "-findings", section.title, sentences.of("检查项")},
                    places, side == nullptr ? nullptr : &side->reasons, sentences));
  return section;
}

Section vouchersSection(const CheckedSide& side, Sentences& sentences) {
  const ClosingReport& report = side.closing;
  const Findings findings = vouchersAlone(report.findings, sentences);
  Section section;
  section.id = sideCode(report.receivables) + "-vouchers";
  section.title = titled(report.receivables, report.period, "没有单据的凭证", sentences);
  section.summary = countsOf(findings, sentences);
  section.tone = toneOf(findings);
  if (findings.empty()) return section;
  section.blocks.emplace_back(
      findingsTable(findings, {section.id + "-findings", section.title, sentences.of("检查项")},
                    side.places, &side.reasons, sentences));
  return section;
}

Section comparisonSection(const Reconciliation& reconciliation,
                          const explain::Explanation& explanation, const Places& places,
                          Sentences& sentences) {
  const auto rows = rowsOf(explanation);
  Section section = comparisonHead(reconciliation, rows, sentences);
  for (report::Chart& chart : differenceCharts(explanation, section.id, places, sentences))
    section.blocks.emplace_back(std::move(chart));
  if (auto totals = reasonTotals(explanation, section.id + "-totals", sentences);
      !totals.rows.empty())
    section.blocks.emplace_back(std::move(totals));
  if (auto explained =
          explainedTable(reconciliation, explanation, section.id + "-reasons", places, sentences);
      !explained.rows.empty())
    section.blocks.emplace_back(std::move(explained));
  report::Table compared = comparedTable(reconciliation, rows, section.id + "-rows", sentences);
  compared.folded = true;
  section.blocks.emplace_back(std::move(compared));
  return section;
}

Section comparisonSection(const Reconciliation& reconciliation,
                          const std::vector<explain::ComparedRow>& rows, Sentences& sentences) {
  Section section = comparisonHead(reconciliation, rows, sentences);
  section.blocks.emplace_back(comparedTable(reconciliation, rows, section.id + "-rows", sentences));
  return section;
}

Section checkSection(const CheckReport& report, const std::string& title, Sentences& sentences) {
  Section section;
  section.id = (report.side.empty() ? "accounts" : report.side + "-initial");
  const Places places(section.id);
  section.title = title;
  section.summary = countsOf(report.findings, sentences);
  section.tone = toneOf(report.findings);
  if (report.findings.empty()) return section;
  const char* item = report.side.empty() ? "核算项目类别" : "检查项";
  section.blocks.emplace_back(findingsTable(report.findings,
                                            {section.id + "-findings", title, sentences.of(item)},
                                            places, nullptr, sentences));
  return section;
}

}  // namespace velmora::cli
