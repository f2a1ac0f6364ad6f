#include "settlement/field_map.h"

namespace velmora::settlement {

namespace {

using Columns = std::array<const char*, kDocumentFields.size()>;

// In the order of DocumentField.
constexpr Columns kForeignAndLocal{"FCheckAmountFor",
                                   "FCheckAmount",
                                   "FNowRemainAmtFor",
                                   "FNowRemainAmt",
                                   "FNowCheckAmtFor",
                                   "FNowCheckAmt",
                                   "FRemainAmountFor",
                                   "FRemainAmount",
                                   "",
                                   "",
                                   "",
                                   "",
                                   "",
                                   "FTaxPrice"};
constexpr Columns kWithQuantity{
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

}  // namespace

collections::DictionaryRef BuildFieldMap(std::int32_t lCheckAmtFor, std::int32_t lCheckWithQty) {
  auto map = com::make<collections::Dictionary>();
  if (lCheckAmtFor != 0 && lCheckAmtFor != 1) return map;
  const Columns& columns = lCheckAmtFor == 1    ? kSingleAmount
                           : lCheckWithQty != 0 ? kWithQuantity
                                                : kForeignAndLocal;
  for (std::size_t field = 0; field < columns.size(); ++field)
    map->Set(kDocumentFields[field], columns[field]);
  return map;
}

}  // namespace velmora::settlement
