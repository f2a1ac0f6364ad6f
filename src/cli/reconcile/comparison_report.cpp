#include "cli/reconcile/comparison_report.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <ostream>

#include "cli/output/counted.h"
#include "cli/output/result_rows.h"
#include "velmora/collections/decimal.h"

namespace velmora::cli {

namespace {

using collections::Decimal;

/// A pair of amounts that is compared, by the middle of its columns' names.
struct Measure {
  const char *name, *infix;
};

constexpr Measure kOpening{"opening", "Beg"}, kDebit{"debit", "Debit"}, kCredit{"credit", "Credit"},
    kBalance{"balance", ""}, kInitial{"initial", ""};

std::vector<Measure> measuresOf(Comparison comparison) {
  if (comparison == Comparison::initial) return {kInitial};
  return {kOpening, kDebit, kCredit, kBalance};
}

const char* nameOf(Comparison comparison) {
  constexpr std::array kNames{"initial", "period", "closing"};
  return kNames[static_cast<std::size_t>(comparison)];
}

/// Totals over no items are Null; they are shown as 0.
Decimal amount(ado::Recordset& rows, const std::string& column) {
  const auto& value = rows.GetValue(rows.fieldIndex(column));
  return value.isNull() ? Decimal() : value.toDecimal();
}

std::string columnOf(const char* side, const Measure& measure, bool foreign) {
  return fmt::format("F{}{}Amount{}", side, measure.infix, foreign ? "For" : "");
}

bool isTotal(ado::Recordset& rows) {
  return rows.GetValue(rows.fieldIndex("FSumSort")).toInt32() != 0;
}

template <class Visit>
void forEachRow(ado::Recordset& rows, Visit visit) {
  if (!rows.BOF() || !rows.EOF_()) rows.MoveFirst();
  for (; !rows.EOF_(); rows.MoveNext()) visit();
}

bool differs(ado::Recordset& rows, const std::vector<Measure>& measures, bool foreign) {
  return std::any_of(measures.begin(), measures.end(), [&](const Measure& measure) {
    return !amount(rows, columnOf("Diff", measure, foreign)).isZero();
  });
}

/// Amounts of the transaction currency are worth showing for a foreign currency, and
/// where they alone differ.
bool showsForeign(const Reconciliation& reconciliation) {
  if (reconciliation.currency.id > 1 || reconciliation.options.byCurrency) return true;
  const auto measures = measuresOf(reconciliation.options.comparison);
  bool found = false;
  ado::Recordset& rows = *reconciliation.rows;
  forEachRow(rows, [&] {
    found = found || (differs(rows, measures, true) && !differs(rows, measures, false));
  });
  return found;
}

class ComparisonTable {
 public:
  explicit ComparisonTable(const Reconciliation& reconciliation)
      : reconciliation_(reconciliation),
        rows_(*reconciliation.rows),
        measures_(measuresOf(reconciliation.options.comparison)),
        foreign_(showsForeign(reconciliation)),
        named_(reconciliation.options.comparison != Comparison::closing) {}

  ado::RecordsetRef lines() {
    const std::string ledger = reconciliation_.options.receivables ? "Receivables" : "Payables";
    if (named_) lines_.textColumn("Account").textColumn("Name");
    lines_.textColumn("Item").textColumn(named_ ? "Item name" : "Name");
    if (reconciliation_.options.byCurrency) lines_.textColumn("Currency");
    lines_.textColumn("Amount");
    if (foreign_)
      lines_.amountColumn(ledger + " (currency)")
          .amountColumn("Ledger (currency)")
          .amountColumn("Difference (currency)");
    lines_.amountColumn(ledger).amountColumn("Ledger").amountColumn("Difference");
    forEachRow(rows_, [&] { addRow(); });
    return lines_.finish();
  }

 private:
  /// A line a measure; those without any amount are left out but for the last.
  void addRow() {
    bool first = true;
    for (const Measure& measure : measures_) {
      if (!hasAmounts(measure) && &measure != &measures_.back()) continue;
      addHead(first);
      first = false;
      lines_.add(measure.name);
      if (foreign_) addAmounts(measure, true);
      addAmounts(measure, false);
    }
  }

  bool hasAmounts(const Measure& measure) {
    for (const char* side : {"Arp", "GL"})
      for (const bool foreign : {true, false})
        if (!amount(rows_, columnOf(side, measure, foreign)).isZero()) return true;
    return false;
  }

  void addHead(bool first) {
    const auto text = [&](const char* column) {
      return first ? rows_.GetValue(rows_.fieldIndex(column)).toText() : std::string();
    };
    if (named_) lines_.add(text("FAcctNumber")).add(text("FAcctName"));
    lines_.add(text("FItemClassNumber")).add(text("FItemClassName"));
    if (reconciliation_.options.byCurrency) lines_.add(text("FCurrencyName"));
  }

  void addAmounts(const Measure& measure, bool foreign) {
    const int decimals = rows_.GetValue(rows_.fieldIndex("FAmountDecimal")).toInt32();
    for (const char* side : {"Arp", "GL", "Diff"})
      lines_.add(shown(amount(rows_, columnOf(side, measure, foreign)), decimals));
  }

  const Reconciliation& reconciliation_;
  ado::Recordset& rows_;
  std::vector<Measure> measures_;
  bool foreign_, named_;
  ResultRows lines_;
};

Json cellJson(const collections::Variant& value) {
  if (value.isNull()) return nullptr;
  if (value.type() == collections::VarType::int32) return value.toInt32();
  return cellText(value);
}

Json rowsJson(ado::Recordset& rows) {
  Json items = Json::array();
  forEachRow(rows, [&] {
    Json item;
    for (std::size_t i = 0; i < rows.fieldCount(); ++i)
      item[rows.definition(i).name] = cellJson(rows.GetValue(i));
    items.push_back(std::move(item));
  });
  return items;
}

}  // namespace

Decimal shown(const Decimal& value, int decimals) {
  const Decimal exact = value.normalized();
  return exact.rescaled(std::max(exact.scale(), decimals));
}

ComparisonSummary summaryOf(const Reconciliation& reconciliation) {
  const auto measures = measuresOf(reconciliation.options.comparison);
  ado::Recordset& rows = *reconciliation.rows;
  ComparisonSummary summary;
  std::vector<Decimal> sums(measures.size());
  forEachRow(rows, [&] {
    if (isTotal(rows)) return;
    ++summary.rows;
    if (differs(rows, measures, false) || differs(rows, measures, true)) ++summary.differing;
    for (std::size_t i = 0; i < sums.size(); ++i)
      sums[i] += amount(rows, columnOf("Diff", measures[i], false));
  });
  const char* ledger = reconciliation.options.receivables ? "receivables" : "payables";
  if (summary.differing == 0) {
    summary.text =
        fmt::format("{} compared, ledger and {} agree", counted(summary.rows, "row"), ledger);
    return summary;
  }
  std::string amounts;
  for (std::size_t i = 0; i < sums.size(); ++i)
    amounts += fmt::format("{}{} {}", amounts.empty() ? "" : ", ", measures[i].name,
                           shown(sums[i], 2).toString());
  summary.text = fmt::format("{} of {} rows differ: {} (ledger minus {}, local currency)",
                             summary.differing, summary.rows, amounts, ledger);
  return summary;
}

void keepDifferences(Reconciliation& reconciliation) {
  std::string condition;
  for (const Measure& measure : measuresOf(reconciliation.options.comparison))
    for (const bool foreign : {true, false})
      condition += fmt::format("{}{} <> 0", condition.empty() ? "" : " or ",
                               columnOf("Diff", measure, foreign));
  reconciliation.rows->Filter(condition);
}

void writeComparison(std::ostream& out, const Reconciliation& reconciliation, const Style& style) {
  const auto lines = ComparisonTable(reconciliation).lines();
  if (lines->RecordCount() > 0) writeTable(out, *lines, style);
}

Json comparisonJson(const Reconciliation& reconciliation, const ComparisonSummary& summary) {
  Json json;
  json["comparison"] = nameOf(reconciliation.options.comparison);
  json["side"] = reconciliation.options.receivables ? "ar" : "ap";
  json["year"] = reconciliation.options.period.year;
  json["period"] = reconciliation.options.period.period;
  json["currency"] = reconciliation.currency.id;
  json["accounts"] = reconciliation.options.accounts;
  json["compared"] = summary.rows;
  json["differing"] = summary.differing;
  return json;
}

void writeComparisonJson(std::ostream& out, const Reconciliation& reconciliation,
                         const ComparisonSummary& summary) {
  Json json = comparisonJson(reconciliation, summary);
  json["rows"] = rowsJson(*reconciliation.rows);
  out << jsonText(json) << '\n';
}

}  // namespace velmora::cli
