#include "settlement/field_map.h"

namespace velmora::settlement {

namespace {

using Columns = std::array<const char*, kDocumentFields.size()>;

// In the order of DocumentField.
constexpr Columns kForeignAndLocal{
    "FCheckAmountFor", "FCheckAmount",     "FNowRemainAmtFor", "FNowRemainAmt", "FNowCheckAmtFor",
    "FNowCheckAmt",    "FRemainAmountFor", "FRemainAmount",    "FCheckQty",     "FNowCheckQty",
    "FNowRemainQty",   "FRemainQty",       "FQtyDecimal",      "FTaxPrice"};
constexpr Columns kSingleAmount{"FCheckAmount",
                                "",
                                "FNowRemainAmt",
                                "",
                                "FNowCheckAmt",
                                "",
                                "FRemainAmountFor",
                                "FRemainAmount",
                                "",
                                "",
                                "",
                                "",
                                "",
                                ""};

bool isQuantity(std::size_t field) {
  return field >= FQty && field <= FQtyDecimal;
}

}  // namespace

collections::DictionaryRef BuildFieldMap(std::int32_t lCheckAmtFor, std::int32_t lCheckWithQty) {
  auto map = com::make<collections::Dictionary>();
  if (lCheckAmtFor != 0 && lCheckAmtFor != 1) return map;
  const Columns& columns = lCheckAmtFor == 1 ? kSingleAmount : kForeignAndLocal;
  for (std::size_t field = 0; field < columns.size(); ++field) {
    const bool unused = isQuantity(field) && lCheckWithQty == 0;
    map->Set(kDocumentFields[field], unused ? "" : columns[field]);
  }
  return map;
}

}  // namespace velmora::settlement
