#include "cli/settlement/document_columns.h"

#include <algorithm>

#include "cli/failure.h"
#include "velmora/collections/letter_case.h"

namespace velmora::cli {

using ado::Variant;
using collections::Decimal;

namespace {

/// What settlement rows take over besides amounts.
constexpr const char* kIntegers[] = {
    "FID",     "FBillID",          "FType",         "FIsinit",    "FEntryID",
    "FItemID", "FUnitID",          "FAuxPropID",    "FDetailID",  "FAccountID",
    "FDC",     "FContractEntryID", "FOrderInterID", "FOrderType", "FOrderEntryID"};
constexpr const char* kTexts[] = {"FContractNo", "FOrderNo"};
constexpr const char* kAmounts[] = {"FSRCAmount", "FSRCAmountFor", "FPrice", "FTaxPrice"};

template <std::size_t N>
bool contains(const char* const (&names)[N], const std::string& name) {
  return std::ranges::any_of(
      names, [&](const char* known) { return collections::equalsIgnoringCase(known, name); });
}

/// Gathers the columns that a table lacks.
class Missing {
 public:
  Missing(const ado::Recordset& table, bool fill) : table_(table), fill_(fill) {}

  void require(const std::string& name) {
    if (!hasColumn(table_, name)) add(name);
  }
  void supply(const std::string& name, ColumnKind kind,
              std::function<Variant(ado::Recordset&)> value) {
    if (hasColumn(table_, name)) return;
    if (fill_)
      supplied_.push_back({name, kind, std::move(value)});
    else
      add(name);
  }
  void supply(const std::string& name, ColumnKind kind, const Variant& value) {
    supply(name, kind, [value](ado::Recordset&) { return value; });
  }
  /// Supplied as a copy of another column, which must be there.
  void supplyFrom(const std::string& name, const std::string& column) {
    require(column);
    supply(name, ColumnKind::amount,
           [column](ado::Recordset& row) { return row.GetValue(row.fieldIndex(column)); });
  }

  const std::vector<AddedColumn>& columns(const std::string& file) const {
    if (names_.empty()) return supplied_;
    throw Failure(file + ": missing columns: " + names_ +
                  (fill_ ? "" : "\n  --fill supplies all but those of the amounts to settle"));
  }

 private:
  void add(const std::string& name) {
    if (names_.find(name + ",") != std::string::npos || names_.ends_with(name)) return;
    names_ += (names_.empty() ? "" : ", ") + name;
  }

  const ado::Recordset& table_;
  bool fill_;
  std::string names_;
  std::vector<AddedColumn> supplied_;
};

void supplyAmounts(Missing& missing, const AmountColumns& columns) {
  missing.supplyFrom(columns.open, columns.whole);
  missing.supply(columns.settled, ColumnKind::amount, Variant(Decimal(0)));
}

}  // namespace

ColumnKind kindOfDocumentColumn(const std::string& name) {
  constexpr const char* kOtherIntegers[] = {"FRemark", "FCurrencyID", "FQtyDecimal"};
  constexpr const char* kOtherAmounts[] = {"FCheckAmountFor",  "FCheckAmount",  "FCheckQty",
                                           "FRemainAmountFor", "FRemainAmount", "FRemainQty",
                                           "FNowRemainAmtFor", "FNowRemainAmt", "FNowRemainQty",
                                           "FNowCheckAmtFor",  "FNowCheckAmt",  "FNowCheckQty"};
  if (contains(kIntegers, name) || contains(kOtherIntegers, name)) return ColumnKind::integer;
  if (contains(kAmounts, name) || contains(kOtherAmounts, name)) return ColumnKind::amount;
  return ColumnKind::text;
}

AmountColumns settlementAmounts(const SettlementMode& mode) {
  return mode.singleAmount
             ? localAmounts()
             : AmountColumns{"FCheckAmountFor", "FNowCheckAmtFor", "FNowRemainAmtFor"};
}
AmountColumns localAmounts() {
  return {"FCheckAmount", "FNowCheckAmt", "FNowRemainAmt"};
}
AmountColumns quantities() {
  return {"FCheckQty", "FNowCheckQty", "FNowRemainQty"};
}

ado::RecordsetRef openDocuments(const ado::RecordsetRef& table, const std::string& file,
                                const SettlementMode& mode, bool fill) {
  Missing missing(*table, fill);
  supplyAmounts(missing, localAmounts());
  missing.supplyFrom("FRemainAmount", "FCheckAmount");
  const std::string foreign = settlementAmounts(mode).whole;
  if (!mode.singleAmount) supplyAmounts(missing, settlementAmounts(mode));
  missing.supplyFrom("FRemainAmountFor", foreign);
  if (mode.withQuantity && !mode.singleAmount) {
    supplyAmounts(missing, quantities());
    missing.supplyFrom("FRemainQty", quantities().whole);
    missing.require("FTaxPrice");
    missing.require("FQtyDecimal");
  } else {
    missing.supply("FRemainQty", ColumnKind::amount, Variant(Decimal(0)));
  }
  missing.supply("FRemark", ColumnKind::integer, Variant(0));
  for (const char* name : kIntegers) missing.supply(name, ColumnKind::integer, Variant(0));
  for (const char* name : kTexts) missing.supply(name, ColumnKind::text, Variant(""));
  for (const char* name : kAmounts) missing.supply(name, ColumnKind::amount, Variant(Decimal(0)));
  return withColumns(table, kindOfDocumentColumn, missing.columns(file));
}

}  // namespace velmora::cli
