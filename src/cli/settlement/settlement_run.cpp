#include "cli/settlement/settlement_run.h"

#include <algorithm>
#include <fmt/format.h>

#include "cli/component.h"
#include "cli/failure.h"
#include "cli/output/result_writer.h"
#include "velmora/collections/dictionary.h"
#include "velmora/com/class_table.h"
#include "velmora/interfaces.h"

namespace velmora::cli {

using collections::Decimal;
using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;

namespace {

DictionaryRef rowAt(const collections::Vector& rows, std::size_t index) {
  return rows.Item(index).toObject<Dictionary>();
}

Decimal amountIn(const ado::Recordset& row, const std::string& column) {
  const Variant& value = row.GetValue(row.fieldIndex(column));
  return value.isNull() ? Decimal(0) : value.toDecimal();
}

std::string entryName(const std::string& bill, const std::string& type, const std::string& entry) {
  return fmt::format("document {}, type {}, entry {}", bill, type, entry);
}

std::string entryOf(const ado::Recordset& row) {
  const auto text = [&row](const char* column) {
    return cellText(row.GetValue(row.fieldIndex(column)));
  };
  return entryName(text("FBillID"), text("FType"), text("FEntryID"));
}

std::string named(const ado::Recordset& row, const std::string& side) {
  return side + " " + entryOf(row);
}

/// Runs `look` on every document of a side.
template <class Look>
void forEachDocument(const ado::RecordsetRef& side, Look look) {
  if (!side) return;
  for (const auto all = side->Clone(); !all->EOF_(); all->MoveNext()) look(*all);
}

class Checker {
 public:
  explicit Checker(const SettlementMode& mode) : mode_(mode) {}

  void checkSide(const ado::RecordsetRef& side, const std::string& name) {
    forEachDocument(side, [&](const ado::Recordset& row) {
      const AmountColumns amounts = settlementAmounts(mode_);
      checkSum(row, name, amounts);
      if (!mode_.singleAmount) checkSum(row, name, localAmounts());
      if (mode_.withQuantity && !mode_.singleAmount) checkSum(row, name, quantities());
      const Decimal settled = amountIn(row, amounts.settled), whole = amountIn(row, amounts.whole);
      if (settled.abs() > whole.abs() || settled.sign() * whole.sign() < 0)
        tell(fmt::format("{}: settled {} of {}", named(row, name), settled.toString(),
                         whole.toString()));
    });
  }

  void checkPairs(const collections::Vector& rows) {
    for (std::size_t i = 0; i + 1 < rows.Size(); i += 2) {
      const DictionaryRef row = rowAt(rows, i), mirror = rowAt(rows, i + 1);
      for (const std::string key :
           {"FBillID", "FType", "FEntryID", "FContactID", "FCheckAmountFor", "FCheckAmount"}) {
        if (row->Value(key) == mirror->Value(key + "_SRC") &&
            mirror->Value(key) == row->Value(key + "_SRC"))
          continue;
        tell(fmt::format("settlement rows {} and {}: {} differs", i + 1, i + 2, key));
      }
    }
  }

  /// What the rows settled on each entry against what its documents say.
  void checkTotals(SettlementRun::AmountsOfEntries settled, const collections::Vector& rows) {
    const char* amount = mode_.singleAmount ? "FCheckAmount" : "FCheckAmountFor";
    for (const Variant& item : rows) {
      const auto row = item.toObject<Dictionary>();
      const auto text = [&row](const char* key) { return cellText(row->Value(key)); };
      settled[entryName(text("FBillID"), text("FType"), text("FEntryID"))] -=
          row->Value(amount).toDecimal();
    }
    for (const auto& [entry, difference] : settled)
      if (!difference.isZero())
        tell(fmt::format("{}: its settled amount changed by {} more than its settlement rows say",
                         entry, difference.normalized().toString()));
  }

  std::vector<std::string> take() { return std::move(faults_); }

 private:
  void checkSum(const ado::Recordset& row, const std::string& side, const AmountColumns& columns) {
    const Decimal sum = amountIn(row, columns.settled) + amountIn(row, columns.open);
    const Decimal whole = amountIn(row, columns.whole);
    if (sum == whole) return;
    tell(fmt::format("{}: {} plus {} is {}; {} is {}", named(row, side), columns.settled,
                     columns.open, sum.toString(), columns.whole, whole.toString()));
  }
  void tell(std::string fault) { faults_.push_back(std::move(fault)); }

  SettlementMode mode_;
  std::vector<std::string> faults_;
};

SettlementRun::AmountsOfEntries settledAmounts(const SettlementRun& run) {
  SettlementRun::AmountsOfEntries amounts;
  const std::string column = settlementAmounts(run.mode).settled;
  for (const auto& side : {run.source, run.destination})
    forEachDocument(
        side, [&](const ado::Recordset& row) { amounts[entryOf(row)] += amountIn(row, column); });
  return amounts;
}

}  // namespace

void SettlementRun::run() {
  const auto dDictSwitch = com::make<Dictionary>();
  for (const std::string& column : groupBy) {
    for (const auto& side : {source, destination})
      if (side && !hasColumn(*side, column))
        throw Failure("--group-by: a table has no column " + column);
    dDictSwitch->Set(column, column);
  }
  rows = com::make<collections::Vector>();
  settledBefore = settledAmounts(*this);
  const auto object = componentObject<_clsPublic>();
  if (!object->AmtSettlement("", source, destination, rows, mode.singleAmount ? 1 : 0,
                             mode.withQuantity ? 1 : 0, dDictSwitch))
    failFromErrorInfo("the settlement");
}

std::vector<SettlementRun::SideSummary> SettlementRun::summary() const {
  std::vector<SideSummary> sums;
  const AmountColumns amounts = settlementAmounts(mode);
  const auto sumOf = [&](const char* side, const std::string& currency) -> SideSummary& {
    const auto known = std::ranges::find_if(
        sums, [&](const SideSummary& sum) { return sum.side == side && sum.currency == currency; });
    if (known != sums.end()) return *known;
    SideSummary& added = sums.emplace_back();
    added.side = side;
    added.currency = currency;
    return added;
  };
  const auto add = [&](const ado::RecordsetRef& side, const char* name) {
    forEachDocument(side, [&](const ado::Recordset& row) {
      const bool currencies = !mode.singleAmount && hasColumn(row, "FCurrencyID");
      SideSummary& sum = sumOf(
          name, currencies ? cellText(row.GetValue(row.fieldIndex("FCurrencyID"))) : std::string());
      const Decimal open = amountIn(row, amounts.open);
      ++sum.documents;
      if (!open.isZero()) ++sum.openDocuments;
      sum.settled += amountIn(row, amounts.settled);
      sum.open += open;
    });
  };
  add(source, "source");
  add(destination, "destination");
  return sums;
}

std::vector<std::string> SettlementRun::faults() const {
  Checker checker(mode);
  checker.checkSide(source, "source");
  checker.checkSide(destination, "destination");
  checker.checkPairs(*rows);
  AmountsOfEntries settled = settledAmounts(*this);
  for (const auto& [entry, amount] : settledBefore) settled[entry] -= amount;
  checker.checkTotals(std::move(settled), *rows);
  return checker.take();
}

ado::RecordsetRef SettlementRun::table() const {
  ado::Rowset table;
  const DictionaryRef first = rows->Size() > 0 ? rowAt(*rows, 0) : com::make<Dictionary>();
  for (std::size_t i = 0; i < first->Count(); ++i) {
    ado::FieldDefinition field;
    field.name = first->Key(i);
    table.fields.push_back(std::move(field));
  }
  table.cells.reserve(rows->Size() * table.fields.size());
  for (std::size_t index = 0; index < rows->Size(); ++index) {
    const DictionaryRef row = rowAt(*rows, index);
    for (const auto& field : table.fields) table.cells.push_back(row->Value(field.name));
  }
  return ado::Recordset::fromRowset(std::move(table));
}

}  // namespace velmora::cli
