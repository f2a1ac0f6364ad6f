#include "cli/reconcile/explained_report.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <ostream>

#include "cli/call/json_text.h"
#include "cli/output/counted.h"
#include "cli/output/result_rows.h"
#include "explain/sentences.h"
#include "report/display_width.h"

namespace velmora::cli {

namespace {

using explain::Amounts;
using explain::Decimal;
using explain::ExplainedRow;
using explain::Explanation;
using explain::Measures;
using explain::Reason;
using explain::RowReason;

struct NamedMeasure {
  const char* name;
  Decimal Measures::*amount;
};

constexpr std::array kMeasures{
    NamedMeasure{"opening", &Measures::opening}, NamedMeasure{"debit", &Measures::debit},
    NamedMeasure{"credit", &Measures::credit}, NamedMeasure{"balance", &Measures::balance}};

bool showsOriginal(const Reconciliation& reconciliation) {
  return reconciliation.currency.id != 0 || reconciliation.options.byCurrency;
}

bool isShown(const ExplainedRow& row, const ExplainedForm& form) {
  return form.all || !row.row.difference().isZero();
}

std::string rowTitle(const explain::ComparedRow& row, const Reconciliation& reconciliation) {
  std::string title;
  for (const std::string* part :
       {&row.accountNumber, &row.accountName, &row.itemNumber, &row.itemName})
    if (!part->empty()) title += (title.empty() ? "" : " ") + report::singleLine(*part);
  return reconciliation.options.byCurrency ? fmt::format("{}, currency {}", title, row.currency)
                                           : title;
}

std::string nameOf(Reason reason, explain::Sentences& sentences) {
  return sentences.of(explain::nameOf(reason));
}

/// The check items whose findings are about the same document.
std::vector<std::string> checksOf(const RowReason& reason, const ExplainedForm& form) {
  return form.checks == nullptr ? std::vector<std::string>() : form.checks->checksOf(reason);
}

/// "no-voucher; Document voucher check".
std::vector<std::string> namesOf(const RowReason& reason, const ExplainedForm& form) {
  std::vector<std::string> names = checksOf(reason, form);
  names.insert(names.begin(), std::string(explain::codeOf(reason.reason)));
  return names;
}

void writeRow(std::ostream& out, const ExplainedRow& row, const Reconciliation& reconciliation,
              const ExplainedForm& form, const Style& style) {
  const bool original = showsOriginal(reconciliation);
  const std::string amounts = bothCurrencies(row.row.difference(), row.row.decimals, original);
  out << style.heading(rowTitle(row.row, reconciliation)) << ": "
      << (amounts.empty() ? "agrees" : amounts) << '\n';
  for (const RowReason& reason : row.reasons)
    out << "  " << bothCurrencies(reason.difference, row.row.decimals, original) << "\n    "
        << report::singleLine(reason.text) << " ["
        << fmt::format("{}", fmt::join(namesOf(reason, form), "; ")) << "]\n";
}

void writeTotals(std::ostream& out, const Explanation& explanation, explain::Sentences& sentences,
                 const Style& style) {
  ResultRows lines;
  lines.textColumn("Reason").textColumn("Name").countColumn("Count");
  for (const auto& [name, amount] : kMeasures) lines.amountColumn(name);
  for (const auto& [reason, total] : totalsByReason(explanation)) {
    lines.add(explain::codeOf(reason)).add(nameOf(reason, sentences)).add(total.count);
    for (const auto& [name, amount] : kMeasures) lines.add(shown(total.amounts.local.*amount, 2));
  }
  const auto rows = lines.finish();
  if (rows->RecordCount() > 0) writeTable(out, *rows, style);
}

Json periodJson(explain::Period period, Json json = Json::object()) {
  json["year"] = period.year;
  json["period"] = period.period;
  return json;
}

Json documentJson(const RowReason& reason) {
  if (!reason.document) return nullptr;
  Json json;
  json["type"] = reason.document->type;
  json["number"] = reason.document->number;
  json["id"] = reason.document->id;
  json["date"] = reason.document->date.toDateText();
  json = periodJson(reason.document->period, std::move(json));
  json["of"] = std::max(reason.documents, 1);
  return json;
}

Json voucherJson(const RowReason& reason) {
  if (!reason.voucher) return nullptr;
  Json json;
  json["word"] = reason.voucher->word;
  json["number"] = reason.voucher->number;
  json = periodJson(reason.voucher->period, std::move(json));
  json["id"] = reason.voucher->id;
  json["posted"] = reason.voucher->posted;
  return json;
}

void addDifference(Json& json, const Amounts& amounts, int decimals, bool withOriginal) {
  json["difference"] = measuresJson(amounts.local, decimals);
  if (withOriginal) json["differenceFor"] = measuresJson(amounts.original, decimals);
}

Json rowJson(const ExplainedRow& row, const Reconciliation& reconciliation,
             const ExplainedForm& form) {
  const bool original = showsOriginal(reconciliation);
  Json json;
  json["account"] = row.row.key.account == 0 ? Json() : Json(row.row.accountNumber);
  json["item"] = row.row.key.item == 0 ? Json() : Json(row.row.itemNumber);
  json["currency"] = row.row.currency;
  addDifference(json, row.row.difference(), row.row.decimals, original);
  json["reasons"] = Json::array();
  for (const RowReason& reason : row.reasons) {
    Json told = reasonJson(reason, row.row.decimals, original);
    if (form.checks != nullptr) told["checks"] = checksOf(reason, form);
    json["reasons"].push_back(std::move(told));
  }
  return json;
}

}  // namespace

std::map<Reason, ReasonTotal> totalsByReason(const Explanation& explanation) {
  std::map<Reason, ReasonTotal> totals;
  for (const ExplainedRow& row : explanation.rows)
    for (const RowReason& reason : row.reasons) {
      ReasonTotal& total = totals[reason.reason];
      ++total.count;
      total.amounts += reason.difference;
    }
  return totals;
}

std::string amountsText(const Measures& measures, int decimals) {
  std::string text;
  for (const auto& [name, amount] : kMeasures)
    if (!(measures.*amount).isZero())
      text += fmt::format("{}{} {}", text.empty() ? "" : ", ", name,
                          shown(measures.*amount, decimals).toString());
  return text;
}

std::string bothCurrencies(const Amounts& amounts, int decimals, bool withOriginal) {
  std::string text = amountsText(amounts.local, decimals);
  if (withOriginal || text.empty())
    if (const std::string original = amountsText(amounts.original, decimals); !original.empty())
      text += (text.empty() ? "" : "; ") + ("in its currency " + original);
  return text;
}

Json measuresJson(const Measures& measures, int decimals) {
  Json json;
  for (const auto& [name, amount] : kMeasures)
    json[name] = shown(measures.*amount, decimals).toString();
  return json;
}

Json reasonJson(const RowReason& reason, int decimals, bool withOriginal) {
  Json json;
  json["reason"] = explain::codeOf(reason.reason);
  addDifference(json, reason.difference, decimals, withOriginal);
  json["document"] = documentJson(reason);
  json["voucher"] = voucherJson(reason);
  if (reason.other)
    json["otherRow"] = {{"account", reason.other->account}, {"item", reason.other->item}};
  json["text"] = reason.text;
  return json;
}

void writeExplained(std::ostream& out, const Reconciliation& reconciliation,
                    const Explanation& explanation, const ExplainedForm& form, const Style& style) {
  std::size_t cancelled = 0;
  for (const ExplainedRow& row : explanation.rows) {
    if (!isShown(row, form)) {
      if (!row.reasons.empty()) ++cancelled;
      continue;
    }
    if (!form.onlyReasons) writeRow(out, row, reconciliation, form, style);
  }
  explain::Sentences sentences(reconciliation.filter->Value("strLanguage").toText());
  writeTotals(out, explanation, sentences, style);
  if (cancelled != 0 && !form.onlyReasons)
    out << counted(cancelled, "more row") << (cancelled == 1 ? " agrees" : " agree")
        << " only because reasons cancel out; --all shows them.\n";
}

void writeExplainedCsv(std::ostream& out, const Reconciliation& reconciliation,
                       const Explanation& explanation, const ExplainedForm& form) {
  const bool original = showsOriginal(reconciliation);
  ResultRows lines;
  for (const char* column : {"account", "item", "currency", "reason"}) lines.textColumn(column);
  for (const auto& [name, amount] : kMeasures) lines.amountColumn(name);
  if (original)
    for (const auto& [name, amount] : kMeasures) lines.amountColumn(std::string(name) + "For");
  for (const char* column : {"documentType", "document", "documentDate", "voucher", "voucherPeriod",
                             "posted", "text", "checks"})
    lines.textColumn(column);
  const explain::Sentences sentences("chs");
  for (const ExplainedRow& row : explanation.rows) {
    if (!isShown(row, form)) continue;
    for (const RowReason& reason : row.reasons) {
      lines.add(row.row.accountNumber).add(row.row.key.item == 0 ? "" : row.row.itemNumber);
      lines.add(std::to_string(row.row.currency)).add(explain::codeOf(reason.reason));
      for (const Measures* measures : {&reason.difference.local, &reason.difference.original}) {
        if (measures == &reason.difference.original && !original) continue;
        for (const auto& [name, amount] : kMeasures)
          lines.add(shown(measures->*amount, row.row.decimals));
      }
      const auto& document = reason.document;
      const auto& voucher = reason.voucher;
      lines.add(document ? document->type : "").add(document ? document->number : "");
      lines.add(document ? document->date.toDateText() : "");
      lines.add(voucher ? sentences.voucher(*voucher) : "");
      lines.add(voucher ? explain::textOf(voucher->period) : "");
      lines.add(!voucher ? "" : voucher->posted ? "1" : "0").add(reason.text);
      lines.add(fmt::format("{}", fmt::join(checksOf(reason, form), "; ")));
    }
  }
  writeCsv(out, *lines.finish());
}

void writeExplainedJson(std::ostream& out, const Reconciliation& reconciliation,
                        const ComparisonSummary& summary, const Explanation& explanation,
                        const ExplainedForm& form) {
  Json json;
  json["comparison"] = comparisonJson(reconciliation, summary);
  if (!form.onlyReasons) {
    json["rows"] = Json::array();
    for (const ExplainedRow& row : explanation.rows)
      if (isShown(row, form)) json["rows"].push_back(rowJson(row, reconciliation, form));
  }
  json["totals"] = Json::array();
  for (const auto& [reason, total] : totalsByReason(explanation)) {
    Json item;
    item["reason"] = explain::codeOf(reason);
    item["count"] = total.count;
    addDifference(item, total.amounts, 2, showsOriginal(reconciliation));
    json["totals"].push_back(std::move(item));
  }
  if (!explanation.notes.empty()) json["notes"] = explanation.notes;
  out << jsonText(json) << '\n';
}

}  // namespace velmora::cli
