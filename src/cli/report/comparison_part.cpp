#include "cli/report/comparison_part.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

#include "cli/reconcile/comparison_report.h"
#include "cli/reconcile/explained_report.h"

namespace velmora::cli {

namespace {

using explain::Amounts;
using explain::ComparedRow;
using explain::Decimal;
using explain::ExplainedRow;
using explain::Explanation;
using explain::Measures;
using explain::RowReason;
using explain::Sentences;
using report::Cell;
using report::Column;
using report::Kind;
using report::Tone;

constexpr int kDecimals = 2;  // of sums over rows, as everywhere
constexpr std::size_t kBars = 20;

struct NamedMeasure {
  const char* name;
  Decimal Measures::*amount;
};

std::vector<NamedMeasure> measuresOf(const Reconciliation& reconciliation) {
  if (reconciliation.options.comparison == Comparison::initial)
    return {{"余额", &Measures::balance}};
  return {{"期初余额", &Measures::opening},
          {"借方", &Measures::debit},
          {"贷方", &Measures::credit},
          {"余额", &Measures::balance}};
}

/// Local currency alone, or the documents' currency before it.
std::vector<Measures Amounts::*> currenciesOf(const Reconciliation& reconciliation) {
  if (reconciliation.currency.id > 1 || reconciliation.options.byCurrency)
    return {&Amounts::original, &Amounts::local};
  return {&Amounts::local};
}

std::string inCurrency(const std::string& name, Measures Amounts::*currency,
                       const Reconciliation& reconciliation, Sentences& sentences) {
  if (currenciesOf(reconciliation).size() == 1) return name;
  return sentences.of(currency == &Amounts::original ? "%1（原币）" : "%1（本位币）", {name});
}

std::string numberAndName(const std::string& number, const std::string& name) {
  return number.empty() || name.empty() ? number + name : number + " " + name;
}

/// What a row is about; the columns that tell it depend on what was compared.
class Keys {
 public:
  explicit Keys(const Reconciliation& reconciliation)
      : accounts_(reconciliation.options.comparison != Comparison::closing),
        items_(reconciliation.options.detail),
        currencies_(reconciliation.options.byCurrency) {}

  std::vector<Column> columns(Sentences& sentences) const {
    std::vector<Column> columns;
    if (accounts_) columns.push_back({.name = sentences.of("科目"), .choice = true, .key = true});
    if (items_ || !accounts_) columns.push_back({.name = sentences.of("往来单位"), .key = true});
    if (currencies_) columns.push_back({.name = sentences.of("币别"), .choice = true, .key = true});
    return columns;
  }
  std::vector<Cell> cells(const ComparedRow& row) const {
    std::vector<Cell> cells;
    if (accounts_) cells.emplace_back(numberAndName(row.accountNumber, row.accountName));
    if (items_ || !accounts_) cells.emplace_back(numberAndName(row.itemNumber, row.itemName));
    if (currencies_) cells.emplace_back(std::to_string(row.currency));
    return cells;
  }
  /// The totals' cells in these columns.
  std::vector<Cell> totals(Sentences& sentences) const {
    std::vector<Cell> cells(columns(sentences).size());
    cells.front() = sentences.of("合计");
    return cells;
  }

 private:
  bool accounts_, items_, currencies_;
};

template <class Rows, class Difference>
Amounts sumOf(const Rows& rows, Difference difference) {
  Amounts sum;
  for (const auto& row : rows) sum += difference(row);
  return sum;
}

std::string documentText(const RowReason& reason, const Sentences& sentences) {
  if (!reason.document) return {};
  const std::string text = sentences.document(*reason.document);
  return reason.documents > 1 ? fmt::format("{} +{}", text, reason.documents - 1) : text;
}

std::string voucherText(const RowReason& reason, const Sentences& sentences) {
  if (!reason.voucher) return {};
  return fmt::format("{} ({})", sentences.voucher(*reason.voucher),
                     explain::textOf(reason.voucher->period));
}

bool isTold(const ExplainedRow& row) {
  return !row.row.difference().isZero() || !row.reasons.empty();
}

class ExplainedTable {
 public:
  ExplainedTable(const Reconciliation& reconciliation, const Explanation& explanation,
                 const Places& places, Sentences& sentences)
      : reconciliation_(reconciliation),
        explanation_(explanation),
        places_(places),
        sentences_(sentences),
        keys_(reconciliation),
        measures_(measuresOf(reconciliation)),
        currencies_(currenciesOf(reconciliation)) {}

  report::Table table(const std::string& id) {
    report::Table table;
    table.id = id;
    table.title = sentences_.of("差异及其原因");
    table.columns = columns();
    for (const ExplainedRow& row : explanation_.rows)
      if (isTold(row)) addRow(table, row);
    addTotals(table);
    return table;
  }

 private:
  std::vector<Column> columns() {
    std::vector<Column> columns = keys_.columns(sentences_);
    columns.push_back({.name = sentences_.of("差异原因"), .choice = true});
    for (const auto currency : currencies_)
      for (const auto& [name, amount] : measures_)
        columns.push_back({.name = sentences_.of(name),
                           .kind = Kind::amount,
                           .group = inCurrency(sentences_.of("差异（总账减%1）", {side()}),
                                               currency, reconciliation_, sentences_),
                           .difference = true});
    columns.push_back({.name = sentences_.of("说明")});
    columns.push_back({.name = sentences_.of("单据")});
    columns.push_back({.name = sentences_.of("单据日期"), .kind = Kind::date});
    columns.push_back({.name = sentences_.of("凭证")});
    columns.push_back({.name = sentences_.of("检查项")});
    return columns;
  }

  std::string side() { return sideName(reconciliation_.options.receivables, sentences_); }

  void addDifference(std::vector<Cell>& cells, const Amounts& difference, int decimals) {
    for (const auto currency : currencies_)
      for (const auto& [name, amount] : measures_)
        cells.emplace_back(shown(difference.*currency.*amount, decimals));
  }

  void addRow(report::Table& table, const ExplainedRow& explained) {
    const ComparedRow& row = explained.row;
    report::Row head{keys_.cells(row), {}, false, Tone::serious};
    head.cells.emplace_back();
    addDifference(head.cells, row.difference(), row.decimals);
    const bool agrees = row.difference().isZero();
    if (agrees) head.tone = Tone::good;
    head.cells.emplace_back(
        agrees ? sentences_.of("一致，但下列原因相互抵销。")
               : sentences_.of("%1余额 %2，总账余额 %3。",
                               {side(), shown(row.own.local.balance, row.decimals).toString(),
                                shown(row.ledger.local.balance, row.decimals).toString()}));
    head.cells.resize(table.columns.size());
    table.rows.push_back(std::move(head));
    for (const RowReason& reason : explained.reasons) addReason(table, row, reason);
  }

  void addReason(report::Table& table, const ComparedRow& row, const RowReason& reason) {
    report::Row told{keys_.cells(row), places_.of(reason), true, Tone::plain};
    told.cells.emplace_back(sentences_.of(explain::nameOf(reason.reason)));
    addDifference(told.cells, reason.difference, row.decimals);
    told.cells.emplace_back(reason.text);
    told.cells.emplace_back(documentText(reason, sentences_));
    const bool dated = reason.document && reason.document->date != collections::Date();
    told.cells.push_back(dated ? Cell(reason.document->date) : Cell());
    told.cells.emplace_back(voucherText(reason, sentences_));
    const auto findings = places_.findingsOf(reason);
    told.cells.push_back(findings.empty() ? Cell() : Cell(findings));
    table.rows.push_back(std::move(told));
  }

  void addTotals(report::Table& table) {
    if (table.rows.empty()) return;
    table.totals = keys_.totals(sentences_);
    table.totals.emplace_back();
    addDifference(table.totals,
                  sumOf(explanation_.rows, [](const auto& row) { return row.row.difference(); }),
                  kDecimals);
    table.totals.resize(table.columns.size());
  }

  const Reconciliation& reconciliation_;
  const Explanation& explanation_;
  const Places& places_;
  Sentences& sentences_;
  Keys keys_;
  std::vector<NamedMeasure> measures_;
  std::vector<Measures Amounts::*> currencies_;
};

/// Bars of sums by label, longest first, no more than a page takes in at a glance.
class Bars {
 public:
  void add(const std::string& label, const Decimal& amount, const std::string& target) {
    auto bar = std::ranges::find(bars_, label, &report::Bar::label);
    if (bar == bars_.end()) {
      bars_.push_back({label, 0, {}, Tone::plain, target});
      bar = std::prev(bars_.end());
    }
    bar->amount += amount;
  }
  report::Chart longest(const std::string& id, const std::string& title, Sentences& sentences) {
    std::ranges::stable_sort(
        bars_, [](const auto& a, const auto& b) { return b.amount.abs() < a.amount.abs(); });
    return chart(id, title, sentences);
  }
  report::Chart byLabel(const std::string& id, const std::string& title, Sentences& sentences) {
    std::ranges::stable_sort(bars_, {}, &report::Bar::label);
    return chart(id, title, sentences);
  }

 private:
  report::Chart chart(const std::string& id, const std::string& title, Sentences& sentences) {
    std::erase_if(bars_, [](const auto& bar) { return bar.amount.isZero(); });
    report::Chart chart{id, title, bars_};
    if (bars_.size() > kBars) {
      chart.bars.resize(kBars);
      chart.title = sentences.of("%1（最大的 %2 个，共 %3 个）",
                                 {title, std::to_string(kBars), std::to_string(bars_.size())});
    }
    for (report::Bar& bar : chart.bars) {
      bar.amount = shown(bar.amount, kDecimals);
      bar.text = bar.amount.toString();
    }
    return chart;
  }

  std::vector<report::Bar> bars_;
};

/// The period that the reason comes from; empty where it has neither document nor voucher.
std::string periodOf(const RowReason& reason) {
  if (reason.document && reason.document->period.year != 0)
    return explain::textOf(reason.document->period);
  return reason.voucher ? explain::textOf(reason.voucher->period) : std::string();
}

}  // namespace

std::string sideName(bool receivables, Sentences& sentences) {
  return sentences.of(receivables ? "应收款" : "应付款");
}

Measures differenceOf(const std::vector<ComparedRow>& rows) {
  return sumOf(rows, [](const ComparedRow& row) { return row.difference(); }).local;
}

std::string differenceText(const Reconciliation& reconciliation,
                           const std::vector<ComparedRow>& rows, Sentences& sentences) {
  const std::string side = sideName(reconciliation.options.receivables, sentences);
  const auto differing = std::ranges::count_if(
      rows, [](const ComparedRow& row) { return !row.difference().isZero(); });
  if (differing == 0)
    return sentences.of("比较 %1 行，总账与%2一致。", {std::to_string(rows.size()), side});
  const Measures sum = differenceOf(rows);
  std::string amounts;
  for (const auto& [name, amount] : measuresOf(reconciliation))
    amounts += fmt::format("{}{} {}", amounts.empty() ? "" : ", ", sentences.of(name),
                           shown(sum.*amount, kDecimals).toString());
  return sentences.of("比较 %1 行，%2 行不一致。总账减%3（本位币）：%4。",
                      {std::to_string(rows.size()), std::to_string(differing), side, amounts});
}

report::Table comparedTable(const Reconciliation& reconciliation,
                            const std::vector<ComparedRow>& rows, const std::string& id,
                            Sentences& sentences) {
  const Keys keys(reconciliation);
  const auto measures = measuresOf(reconciliation);
  const auto currencies = currenciesOf(reconciliation);
  const auto sides = std::array{
      std::pair{sideName(reconciliation.options.receivables, sentences), &ComparedRow::own},
      std::pair{sentences.of("总账"), &ComparedRow::ledger}};
  report::Table table;
  table.id = id;
  table.title = sentences.of("比较的全部行");
  table.columns = keys.columns(sentences);
  for (const auto& [name, amount] : measures)
    for (const auto currency : currencies) {
      const std::string group = inCurrency(sentences.of(name), currency, reconciliation, sentences);
      for (const auto& [side, amounts] : sides)
        table.columns.push_back({.name = side, .kind = Kind::amount, .group = group});
      table.columns.push_back(
          {.name = sentences.of("差异"), .kind = Kind::amount, .group = group, .difference = true});
    }
  const auto addAmounts = [&](std::vector<Cell>& cells, const ComparedRow& row) {
    for (const auto& [name, amount] : measures)
      for (const auto currency : currencies) {
        for (const auto& [side, amounts] : sides)
          cells.emplace_back(shown(row.*amounts.*currency.*amount, row.decimals));
        cells.emplace_back(shown(row.difference().*currency.*amount, row.decimals));
      }
  };
  ComparedRow sum;
  table.rows.reserve(rows.size());
  for (const ComparedRow& row : rows) {
    report::Row line{keys.cells(row), {}, false, Tone::plain};
    addAmounts(line.cells, row);
    table.rows.push_back(std::move(line));
    sum.own += row.own;
    sum.ledger += row.ledger;
  }
  if (rows.empty()) return table;
  table.totals = keys.totals(sentences);
  addAmounts(table.totals, sum);
  return table;
}

report::Table explainedTable(const Reconciliation& reconciliation, const Explanation& explanation,
                             const std::string& id, const Places& places, Sentences& sentences) {
  return ExplainedTable(reconciliation, explanation, places, sentences).table(id);
}

report::Table reasonTotals(const Explanation& explanation, const std::string& id,
                           Sentences& sentences) {
  ReasonTotal sum;
  const auto cells = [](Cell name, const ReasonTotal& total) {
    std::vector<Cell> line{std::move(name), static_cast<std::int64_t>(total.count)};
    for (const auto measure :
         {&Measures::opening, &Measures::debit, &Measures::credit, &Measures::balance})
      line.emplace_back(shown(total.amounts.local.*measure, kDecimals));
    return line;
  };
  report::Table table;
  table.id = id;
  table.title = sentences.of("按原因汇总");
  table.columns = {{.name = sentences.of("差异原因"), .key = true},
                   {.name = sentences.of("次数"), .kind = Kind::count}};
  for (const char* measure : {"期初余额", "借方", "贷方", "余额"})
    table.columns.push_back(
        {.name = sentences.of(measure), .kind = Kind::amount, .difference = true});
  for (const auto& [reason, total] : totalsByReason(explanation)) {
    table.rows.push_back({cells(sentences.of(explain::nameOf(reason)), total),
                          fmt::format("{}-{}", id, explain::codeOf(reason))});
    sum.count += total.count;
    sum.amounts += total.amounts;
  }
  if (!table.rows.empty()) table.totals = cells(sentences.of("合计"), sum);
  return table;
}

std::vector<report::Chart> differenceCharts(const Explanation& explanation, const std::string& id,
                                            const Places& places, Sentences& sentences) {
  Bars accounts, periods, reasons;
  for (const ExplainedRow& row : explanation.rows) {
    const std::string account = numberAndName(row.row.accountNumber, row.row.accountName);
    for (const RowReason& reason : row.reasons) {
      const Decimal& balance = reason.difference.local.balance;
      const std::string period = periodOf(reason);
      if (!account.empty()) accounts.add(account, balance, places.of(reason));
      periods.add(period.empty() ? sentences.of("没有单据和凭证") : period, balance,
                  places.of(reason));
      reasons.add(sentences.of(explain::nameOf(reason.reason)), balance, places.of(reason));
    }
  }
  std::vector<report::Chart> charts{
      accounts.longest(id + "-accounts", sentences.of("各科目的余额差异"), sentences),
      periods.byLabel(id + "-periods", sentences.of("各期间引起的余额差异"), sentences),
      reasons.longest(id + "-reasons", sentences.of("各原因引起的余额差异"), sentences)};
  std::erase_if(charts, [](const report::Chart& chart) { return chart.bars.empty(); });
  return charts;
}

}  // namespace velmora::cli
