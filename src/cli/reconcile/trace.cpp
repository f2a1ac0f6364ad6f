#include "cli/reconcile/trace.h"

#include <algorithm>
#include <fmt/format.h>
#include <ostream>

#include "cli/failure.h"
#include "cli/output/result_rows.h"
#include "cli/output/result_writer.h"
#include "cli/reconcile/explained_report.h"
#include "explain/sentences.h"
#include "report/display_width.h"

namespace velmora::cli {

namespace {

using collections::Decimal;
using explain::ComparedRow;
using explain::Measures;
using explain::RowReason;

std::vector<Period> periodsBetween(ado::Connection& connection, Period first, Period last) {
  std::vector<Period> periods;
  const auto rows = connection.Execute(
      fmt::format("select FYear, FPeriod from t_PeriodDate where FYear * 100 + FPeriod between "
                  "{} and {} order by FYear, FPeriod",
                  first.year * 100 + first.period, last.year * 100 + last.period));
  for (; !rows->EOF_(); rows->MoveNext())
    periods.push_back({rows->GetValue(0).toInt32(), rows->GetValue(1).toInt32()});
  return periods;
}

/// A reason of the period itself moves something in it; others were carried forward.
bool isOfPeriod(const RowReason& reason) {
  const auto moves = [](const Measures& measures) {
    return !measures.debit.isZero() || !measures.credit.isZero();
  };
  return moves(reason.difference.local) || moves(reason.difference.original);
}

TracedPeriod traced(const Session& session, ReconcileOptions options, Period period) {
  options.period = period;
  Reconciliation reconciliation = prepared(session, options);
  auto inquiry = startInquiry(session, reconciliation);
  run(session, reconciliation);
  auto explanation = explained(session, reconciliation, std::move(inquiry));
  if (explanation.rows.empty())
    throw Failure("the comparison answers no row for this account and contact");
  explain::ExplainedRow& row = explanation.rows.front();
  TracedPeriod one{period, std::move(row.row), {}};
  std::ranges::copy_if(row.reasons, std::back_inserter(one.reasons), isOfPeriod);
  return one;
}

Decimal shownIn(const ComparedRow& row, const Decimal& value) {
  return shown(value, row.decimals);
}

/// What came in: the difference at the end less that at the beginning.
Decimal arose(const TracedPeriod& period) {
  const Measures difference = period.row.difference().local;
  return difference.balance - difference.opening;
}

ado::RecordsetRef periodRows(const Trace& trace) {
  const char* own = trace.options.receivables ? "Receivables" : "Payables";
  ResultRows lines;
  lines.textColumn("Period");
  for (const char* ledger : {own, "Ledger"})
    for (const char* measure : {" debit", " credit", ""})
      lines.amountColumn(std::string(ledger) + measure);
  lines.amountColumn("Difference").amountColumn("Arose");
  for (const TracedPeriod& period : trace.periods) {
    lines.add(toString(period.period));
    for (const Measures* side : {&period.row.own.local, &period.row.ledger.local})
      for (const Decimal* amount : {&side->debit, &side->credit, &side->balance})
        lines.add(shownIn(period.row, *amount));
    lines.add(shownIn(period.row, period.row.difference().local.balance));
    lines.add(shownIn(period.row, arose(period)));
  }
  return lines.finish();
}

const TracedPeriod* firstDifferent(const Trace& trace) {
  const auto found = std::ranges::find_if(
      trace.periods, [](const TracedPeriod& period) { return !period.row.difference().isZero(); });
  return found == trace.periods.end() ? nullptr : &*found;
}

std::string accountText(const Trace& trace) {
  const ComparedRow& row = trace.periods.front().row;
  std::string text = row.accountNumber + " " + report::singleLine(row.accountName);
  return row.key.item == 0 ? text
                           : text + ", " + row.itemNumber + " " + report::singleLine(row.itemName);
}

}  // namespace

Trace trace(const Session& session, const ReconcileOptions& options, Period since) {
  const std::vector<Period> periods = periodsBetween(session.connection(), since, options.period);
  if (periods.empty())
    throw UsageError(
        fmt::format("--since {} is later than {}, or the calendar knows no period "
                    "between them",
                    toString(since), toString(options.period)));
  Trace all{options, {}};
  for (const Period period : periods) all.periods.push_back(traced(session, options, period));
  return all;
}

void writeTrace(std::ostream& out, const Trace& trace, const Style& style) {
  const auto rows = periodRows(trace);
  writeTable(out, *rows, style);
  for (const TracedPeriod& period : trace.periods) {
    if (period.reasons.empty()) continue;
    out << style.heading(toString(period.period)) << '\n';
    for (const RowReason& reason : period.reasons) {
      const Measures& amounts = reason.difference.local;
      const bool putRight = !amounts.opening.isZero() && amounts.balance.isZero();
      out << "  " << (putRight ? "put right: " : "") << amountsText(amounts, period.row.decimals)
          << "\n    " << report::singleLine(reason.text) << " [" << explain::codeOf(reason.reason)
          << "]\n";
    }
  }
  const TracedPeriod* first = firstDifferent(trace);
  const std::string account = accountText(trace);
  out << (first == nullptr ? style.good(account + ": both ledgers agree in every period.")
                           : style.serious(fmt::format("{}: the ledgers differ since {}.", account,
                                                       toString(first->period))))
      << '\n';
}

void writeTraceCsv(std::ostream& out, const Trace& trace) {
  writeCsv(out, *periodRows(trace));
}

void writeTraceJson(std::ostream& out, const Trace& trace) {
  const auto periodJson = [](Period period) {
    return Json{{"year", period.year}, {"period", period.period}};
  };
  const ComparedRow& row = trace.periods.front().row;
  Json json;
  json["side"] = trace.options.receivables ? "ar" : "ap";
  json["account"] = row.accountNumber;
  json["item"] = row.key.item == 0 ? Json() : Json(row.itemNumber);
  const TracedPeriod* first = firstDifferent(trace);
  json["differsSince"] = first == nullptr ? Json() : periodJson(first->period);
  json["periods"] = Json::array();
  for (const TracedPeriod& period : trace.periods) {
    Json one = periodJson(period.period);
    one["own"] = measuresJson(period.row.own.local, period.row.decimals);
    one["ledger"] = measuresJson(period.row.ledger.local, period.row.decimals);
    one["difference"] = measuresJson(period.row.difference().local, period.row.decimals);
    one["arose"] = shownIn(period.row, arose(period)).toString();
    one["reasons"] = Json::array();
    for (const RowReason& reason : period.reasons)
      one["reasons"].push_back(reasonJson(reason, period.row.decimals, false));
    json["periods"].push_back(std::move(one));
  }
  out << jsonText(json) << '\n';
}

ado::RecordsetRef matchRows(const std::vector<explain::Match>& matches) {
  ResultRows lines;
  for (const char* column : {"Voucher", "Document", "Date"}) lines.textColumn(column);
  for (const char* column : {"Ledger", "Own", "Difference"}) lines.amountColumn(column);
  lines.textColumn("Reason").textColumn("Text");
  const explain::Sentences sentences("chs");
  for (const explain::Match& match : matches) {
    const RowReason& reason = match.reason;
    std::string document = reason.document ? sentences.document(*reason.document) : "";
    if (reason.documents > 1) document += fmt::format(" +{}", reason.documents - 1);
    lines.add(reason.voucher ? sentences.voucher(*reason.voucher) : "").add(document);
    lines.add(reason.document ? reason.document->date.toDateText() : "");
    for (const Decimal& amount : {match.ledger, match.own, match.ledger - match.own})
      lines.add(shown(amount, 2));
    lines.add(match.agrees() ? "" : explain::codeOf(reason.reason)).add(reason.text);
  }
  return lines.finish();
}

void writeMatchesJson(std::ostream& out, const std::vector<explain::Match>& matches) {
  constexpr int kDecimals = 2;
  Json json = Json::array();
  for (const explain::Match& match : matches) {
    Json one = reasonJson(match.reason, kDecimals, false);
    if (match.agrees()) one["reason"] = nullptr;
    one["ledger"] = match.ledger.toString();
    one["own"] = match.own.toString();
    json.push_back(std::move(one));
  }
  out << jsonText(json) << '\n';
}

}  // namespace velmora::cli
