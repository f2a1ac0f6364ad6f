#include <array>
#include <fmt/format.h>

#include "explain/explain.h"

namespace velmora::explain {

namespace {

/// Columns of one side of the comparison in one kind of currency.
struct Columns {
  std::array<std::size_t, 4> measures{};
  std::size_t count = 0;

  /// An initial comparison has the balance alone.
  Columns(ado::Recordset& rows, const char* side, const char* form, bool initial) {
    if (!initial)
      for (const char* measure : {"Beg", "Debit", "Credit"})
        measures.at(count++) = rows.fieldIndex(fmt::format("F{}{}Amount{}", side, measure, form));
    measures.at(count++) = rows.fieldIndex(fmt::format("F{}Amount{}", side, form));
  }

  Measures of(const ado::Recordset& rows) const {
    std::array<Decimal, 4> values;
    for (std::size_t i = 0; i < count; ++i) {
      const auto& value = rows.GetValue(measures.at(i));
      if (!value.isNull()) values.at(i) = value.toDecimal();
    }
    if (count == 1) return {.balance = values[0]};
    return {values[0], values[1], values[2], values[3]};
  }
};

}  // namespace

std::vector<ComparedRow> comparedRows(const Scope& scope, ado::Recordset& rows) {
  const bool initial = scope.comparison == Comparison::initial;
  const bool closing = scope.comparison == Comparison::closing;
  const Columns ledger(rows, "GL", "", initial), ledgerFor(rows, "GL", "For", initial),
      own(rows, "Arp", "", initial), ownFor(rows, "Arp", "For", initial);
  const auto cell = [&](const char* column) { return rows.GetValue(rows.fieldIndex(column)); };
  std::vector<ComparedRow> compared;
  if (!rows.BOF() || !rows.EOF_()) rows.MoveFirst();
  for (; !rows.EOF_(); rows.MoveNext()) {
    if (cell("FSumSort").toInt32() != 0) continue;
    ComparedRow row;
    row.currency = cell("FCurrencyID").toInt32();
    row.key = {closing ? 0 : cell("FAcctID").toInt32(),
               scope.detail ? cell("FItemClassID").toInt32() : 0,
               scope.byCurrency ? row.currency : 0};
    row.accountNumber = cell("FAcctNumber").toText();
    row.accountName = cell("FAcctName").toText();
    row.itemNumber = cell("FitemClassNumber").toText();
    row.itemName = cell("FItemClassName").toText();
    row.decimals = cell("FAmountDecimal").toInt32();
    row.ledger = {ledger.of(rows), ledgerFor.of(rows)};
    row.own = {own.of(rows), ownFor.of(rows)};
    compared.push_back(std::move(row));
  }
  return compared;
}

}  // namespace velmora::explain
