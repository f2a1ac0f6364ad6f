#pragma once

#include <map>
#include <string>
#include <vector>

#include "velmora/ado/recordset.h"
#include "velmora/collections/letter_case.h"

namespace velmora::settlement {

using collections::Decimal;
using collections::Variant;

struct IgnoringCase {
  bool operator()(const std::string& a, const std::string& b) const {
    return collections::lowerCased(a) < collections::lowerCased(b);
  }
};
/// An open document or a settlement row, by column or key.
using Row = std::map<std::string, Variant, IgnoringCase>;
using Rows = std::vector<Row>;

/// The columns that callers hand over, in order.
inline const std::vector<std::string>& integerColumns() {
  static const std::vector<std::string> names{"FID",           "FCurrencyID",      "FBillID",
                                              "FType",         "FIsinit",          "FEntryID",
                                              "FItemID",       "FUnitID",          "FAuxPropID",
                                              "FDetailID",     "FAccountID",       "FDC",
                                              "FOrderInterID", "FOrderType",       "FOrderEntryID",
                                              "FRemark",       "FContractEntryID", "FQtyDecimal"};
  return names;
}
inline const std::vector<std::string>& amountColumns() {
  static const std::vector<std::string> names{
      "FSRCAmount",      "FSRCAmountFor",   "FPrice",           "FTaxPrice",
      "FCheckAmountFor", "FCheckAmount",    "FCheckQty",        "FRemainAmountFor",
      "FRemainAmount",   "FRemainQty",      "FNowRemainAmtFor", "FNowRemainAmt",
      "FNowRemainQty",   "FNowCheckAmtFor", "FNowCheckAmt",     "FNowCheckQty"};
  return names;
}

/// Entry 1 of document `id`, wholly open: `amount` in its currency, `local` in the local
/// one.
inline Row document(int id, const Decimal& amount, const Decimal& local) {
  Row row;
  int number = 1000 * id;  // another in each column that settlement rows take over
  for (const auto& column : integerColumns()) row[column] = ++number;
  for (const auto& column : amountColumns()) row[column] = Decimal(0);
  row["FRemark"] = row["FQtyDecimal"] = 0;
  row["FSRCAmount"] = Decimal(++number);
  row["FSRCAmountFor"] = Decimal(++number);
  row["FBillID"] = id;
  row["FType"] = row["FEntryID"] = row["FCurrencyID"] = 1;
  row["FID"] = 12;
  row["FContractNo"] = "C" + std::to_string(id);
  row["FOrderNo"] = "";
  for (const char* column : {"FCheckAmountFor", "FRemainAmountFor", "FNowRemainAmtFor"})
    row[column] = amount;
  for (const char* column : {"FCheckAmount", "FRemainAmount", "FNowRemainAmt"}) row[column] = local;
  return row;
}
inline Row document(int id, const Decimal& amount) {
  return document(id, amount, amount);
}

/// Gives a document a quantity at a price.
inline Row withQuantity(Row row, const Decimal& quantity, const Decimal& price, int decimals) {
  for (const char* column : {"FCheckQty", "FRemainQty", "FNowRemainQty"}) row[column] = quantity;
  row["FTaxPrice"] = price;
  row["FPrice"] = price + 1;
  row["FQtyDecimal"] = decimals;
  return row;
}

/// `rows` in memory, as a caller builds them; without the column `missing`.
inline ado::RecordsetRef recordsetOf(const Rows& rows, const std::string& missing = {}) {
  auto rs = com::make<ado::Recordset>();
  for (const auto& column : integerColumns())
    if (column != missing) rs->Fields().Append(column, ado::adInteger);
  for (const auto& column : amountColumns()) {
    const bool price = column == "FPrice" || column == "FTaxPrice";
    const int scale = price ? 20 : column == "FNowCheckQty" ? 5 : 4;
    const int precision = price ? 38 : 24 + scale;
    if (column != missing) rs->Fields().Append(column, ado::adNumeric, 0, precision, scale);
  }
  rs->Fields().Append("FContractNo", ado::adVarWChar, 80);
  rs->Fields().Append("FOrderNo", ado::adVarWChar, 80);
  rs->Open();
  for (const Row& row : rows) {
    rs->AddNew();
    for (std::size_t i = 0; i < rs->fieldCount(); ++i)
      rs->SetValue(i, row.at(rs->definition(i).name));
    rs->Update();
  }
  if (!rows.empty()) rs->MoveFirst();
  return rs;
}

/// Every row of a recordset, whatever its filter shows.
inline Rows rowsOf(const ado::RecordsetRef& recordset) {
  Rows rows;
  if (!recordset) return rows;
  for (const auto all = recordset->Clone(); !all->EOF_(); all->MoveNext()) {
    Row& row = rows.emplace_back();
    for (std::size_t i = 0; i < all->fieldCount(); ++i)
      row[all->definition(i).name] = all->GetValue(i);
  }
  return rows;
}

}  // namespace velmora::settlement
