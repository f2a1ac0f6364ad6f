// What the public classes offer to late binding: the operations in slot order with
// the argument names that clients know.

#include "frame/check.h"
#include "frame/init_bal_check.h"
#include "frame/public.h"

namespace velmora {

using collections::DictionaryRef;

const com::DispatchTable<clsInitBalCheck>& clsInitBalCheck::dispatchTable() {
  struct Table : com::DispatchTable<clsInitBalCheck> {
    Table() : DispatchTable("clsInitBalCheck", kProgId, kClassId, kInterfaceId) {
      method("CheckInitData", &_clsInitBalCheck::CheckInitData, {{"sDsn", "dFilter", "rsReturn"}});
      method("GetClosingAmtCheck", &_clsInitBalCheck::GetClosingAmtCheck, {{"sDsn", "dFilter"}});
      method("GetInitAmtCheck", &_clsInitBalCheck::GetInitAmtCheck, {{"sDsn", "dFilter"}});
      method("GetClosingCheckDataSql", &_clsInitBalCheck::GetClosingCheckDataSql, {{"dFilter"}});
      method("GetAmtCheckDataSql", &_clsInitBalCheck::GetAmtCheckDataSql, {{"dFilter"}});
      method("CheckClosingData", &_clsInitBalCheck::CheckClosingData,
             {{"sDsn", "dOption", "rsReturn", "bCanClose"}});
      method("GetUnVchExtBillStr", &_clsInitBalCheck::GetUnVchExtBillStr, {{"dFilter"}});
      method("GetUnVchBillStr", &_clsInitBalCheck::GetUnVchBillStr, {{"dFilter"}});
      method("GetData", &_clsInitBalCheck::GetData, {{"sDsn", "sSql"}});
      method("GetCheckItemDict", &_clsInitBalCheck::GetCheckItemDict, {{"sDsn", "dFilter"}});
      method("GetUnVchInvoiceStr", &_clsInitBalCheck::GetUnVchInvoiceStr, {{"dFilter"}});
      method("GetUnAccountArpBillStr", &_clsInitBalCheck::GetUnAccountArpBillStr, {{"dFilter"}});
      method("GetUnVchArpBillStr", &_clsInitBalCheck::GetUnVchArpBillStr, {{"dFilter"}});
      method("GetUnAuditArpBillStr", &_clsInitBalCheck::GetUnAuditArpBillStr, {{"dFilter"}});
      method("GetNoBillVoucherStr", &_clsInitBalCheck::GetNoBillVoucherStr, {{"dFilter"}});
    }
  };
  static const Table table;
  return table;
}

const com::DispatchTable<clsCheck>& clsCheck::dispatchTable() {
  struct Table : com::DispatchTable<clsCheck> {
    Table() : DispatchTable("clsCheck", kProgId, kClassId, kInterfaceId) {
      method("IsCanChangePeriod", &_clsCheck::IsCanChangePeriod,
             {{"sDsn", "sReturnMsg", "lYear", "lPeriod", "dOldBeginDate", "dOldEndDate",
               "dNewBeginDate", "dNewEndDate"}});
      method("CheckValidAccount", &_clsCheck::CheckValidAccount, {{"sDsn", {"lClassTypeID", 0}}});
    }
  };
  static const Table table;
  return table;
}

const com::DispatchTable<clsPublic>& clsPublic::dispatchTable() {
  struct Table : com::DispatchTable<clsPublic> {
    Table() : DispatchTable("clsPublic", kProgId, kClassId, kInterfaceId) {
      method("AmtSettlement", &_clsPublic::AmtSettlement,
             {{"sDsn",
               "rsSrcBill",
               "rsDestBill",
               "rsChkInfo",
               {"lCheckAmtFor", 0},
               {"lCheckWithQty", 0},
               {"dDictSwitch", DictionaryRef()}}});
      method("GetSwitchData", &_clsPublic::GetSwitchData,
             {{"rsEntry", "vOption", "strErrMsg", {"dFilter", DictionaryRef()}}});
      method("GetSwitchDataExt", &_clsPublic::GetSwitchDataExt,
             {{"sDsn", "rsEntry", "vOption", "dFilter", "strErrMsg"}});
      method("GetSwitchVectData", &_clsPublic::GetSwitchVectData,
             {{"rsEntry", "vOption", "strErrMsg"}});
      method("GetData", &_clsPublic::GetData, {{"sDsn", "sSql"}});
      method("WriteCheckInfoByVector", &_clsPublic::WriteCheckInfoByVector, {{"rs", "sFileName"}});
      method("WriteCheckInfoByRs", &_clsPublic::WriteCheckInfoByRs, {{"rs", "sFileName"}});
      method("GetDefaultAcctID", &_clsPublic::GetDefaultAcctID,
             {{"sDsn", "ItemClassID", "ItemID", "ClassTypeID"}});
      method("GetCurFincDate", &_clsPublic::GetCurFincDate, {{"sDsn", {"bArp", true}}});
    }
  };
  static const Table table;
  return table;
}

}  // namespace velmora
