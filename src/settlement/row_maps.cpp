#include "settlement/row_maps.h"

#include <string>

namespace velmora::settlement {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;

namespace {

struct Copy {
  const char *key, *rule;
};

constexpr Copy kCopies[] = {
    {"FContactID", "1|FID"},
    {"FBillID", "1|FBillID"},
    {"FInvoiceID", "1|FBillID"},
    {"FType", "1|FType"},
    {"FIsinit", "1|FIsinit"},
    {"FEntryID", "1|FEntryID"},
    {"FItemID", "1|FItemID"},
    {"FUnitID", "1|FUnitID"},
    {"FAuxPropID", "1|FAuxPropID"},
    {"FDetailID", "1|FDetailID"},
    {"FSRCAmount", "1|FSRCAmount"},
    {"FSRCAmountFor", "1|FSRCAmountFor"},
    {"FAccountID", "1|FAccountID"},
    {"FDC", "1|FDC"},
    {"FContractNo", "1|FContractNo"},
    {"FContractEntryID", "1|FContractEntryID"},
    {"FOrderNo", "1|FOrderNo"},
    {"FOrderInterID", "1|FOrderInterID"},
    {"FOrderType", "1|FOrderType"},
    {"FOrderEntryID", "1|FOrderEntryID"},
    {"FPrice", "1|FPrice"},
    {"FTaxPrice", "1|FTaxPrice"},
    {"FBillRemainAmountFor", "1|FRemainAmountFor"},
    {"FBillRemainAmount", "1|FRemainAmount"},
    {"FBillRemainQty", "1|FRemainQty"},
    {"FType_SRC", "2|FType"},
    {"FBillID_SRC", "2|FbillID"},
    {"FIsinit_SRC", "2|FIsInit"},
    {"FEntryID_SRC", "2|FEntryID"},
    {"FContactID_SRC", "2|FID"},
    {"FContractNo_SRC", "2|FContractNo"},
    {"FContractEntryID_SRC", "2|FContractEntryID"},
    {"FOrderNo_SRC", "2|FOrderNo"},
    {"FOrderInterID_SRC", "2|FOrderInterID"},
    {"FOrderType_SRC", "2|FOrderType"},
    {"FOrderEntryID_SRC", "2|FOrderEntryID"},
    {"FItemID_SRC", "2|FItemID"},
    {"FUnitID_SRC", "2|FUnitID"},
    {"FAuxPropID_SRC", "2|FAuxPropID"},
    {"FDetailID_SRC", "2|FDetailID"},
    {"FSRCAmount_SRC", "2|FSRCAmount"},
    {"FSRCAmountFor_SRC", "2|FSRCAmountFor"},
    {"FAccountID_SRC", "2|FAccountID"},
    {"FDC_SRC", "2|FDC"},
    {"FBillRemainAmountFor_SRC", "2|FRemainAmountFor"},
    {"FBillRemainAmount_SRC", "2|FRemainAmount"},
    {"FBillRemainQty_SRC", "2|FRemainQty"},
};

constexpr const char* kMirrored[] = {"FCheckAmountFor",   "FCheckAmount",
                                     "FCheckQuantity",    "FContactID",
                                     "FBillID",           "FType",
                                     "FIsinit",           "FEntryID",
                                     "FRemainAmount",     "FRemainAmountFor",
                                     "FRemainQuantity",   "FItemID",
                                     "FUnitID",           "FAuxPropID",
                                     "FDetailID",         "FSRCAmount",
                                     "FSRCAmountFor",     "FContractNo",
                                     "FContractEntryID",  "FOrderNo",
                                     "FOrderInterID",     "FOrderType",
                                     "FOrderEntryID",     "FBillRemainQty",
                                     "FBillRemainAmount", "FBillRemainAmountFor",
                                     "FAccountID",        "FDC"};

}  // namespace

DictionaryRef BuildCopyMap() {
  auto map = com::make<Dictionary>();
  for (const auto& [key, rule] : kCopies) map->Set(key, rule);
  return map;
}

DictionaryRef BuildMirrorMap() {
  auto map = com::make<Dictionary>();
  for (const char* key : kMirrored) map->Set(key, std::string(key) + "_SRC");
  return map;
}

bool SwapValues(Dictionary& row, std::string_view first, std::string_view second) {
  const Variant held = row.Value(first);
  row.Set(first, row.Value(second));
  row.Set(second, held);
  return true;
}

}  // namespace velmora::settlement
