#include "frame/public.h"

#include "common/current_financial_date.h"
#include "frame/call/operation.h"
#include "frame/get_data.h"
#include "frame/not_implemented.h"
#include "settlement/amount_settlement.h"

namespace velmora {

using ado::RecordsetRef;
using collections::Date;
using collections::DictionaryRef;
using collections::VectorRef;

RecordsetRef clsPublic::GetData(const std::string& sDsn, const std::string& sSql) {
  return getData(call_, sDsn, sSql);
}

Date clsPublic::GetCurFincDate(const std::string& sDsn, bool bArp) {
  return runOperation(
      Voting::votes,
      [&](Place&) {
        call_.PrepareDataSource(sDsn);
        return currentFinancialDate(call_.dataSource(), sDsn, bArp);
      },
      [] { return Date::today(); });
}

bool clsPublic::AmtSettlement(const std::string& sDsn, RecordsetRef& rsSrcBill,
                              RecordsetRef& rsDestBill, VectorRef& rsChkInfo,
                              std::int32_t lCheckAmtFor, std::int32_t lCheckWithQty,
                              const DictionaryRef& dDictSwitch) {
  return runOperation(
      Voting::votes,
      [&](Place&) {
        settlement::AmtSettlement(sDsn, rsSrcBill, rsDestBill, rsChkInfo, lCheckAmtFor,
                                  lCheckWithQty, dDictSwitch);
        return true;
      },
      [] { return false; });
}

bool clsPublic::GetSwitchData(RecordsetRef&, const VectorRef&, std::string&, const DictionaryRef&) {
  raiseNotImplemented("clsPublic", "GetSwitchData");
}

bool clsPublic::GetSwitchDataExt(const std::string&, RecordsetRef&, VectorRef&,
                                 const DictionaryRef&, std::string&) {
  raiseNotImplemented("clsPublic", "GetSwitchDataExt");
}

bool clsPublic::GetSwitchVectData(VectorRef&, const VectorRef&, std::string&) {
  raiseNotImplemented("clsPublic", "GetSwitchVectData");
}

bool clsPublic::WriteCheckInfoByVector(const VectorRef&, const std::string&) {
  raiseNotImplemented("clsPublic", "WriteCheckInfoByVector");
}

bool clsPublic::WriteCheckInfoByRs(const RecordsetRef&, const std::string&) {
  raiseNotImplemented("clsPublic", "WriteCheckInfoByRs");
}

std::int32_t clsPublic::GetDefaultAcctID(const std::string&, std::int32_t, std::int32_t,
                                         std::int32_t) {
  raiseNotImplemented("clsPublic", "GetDefaultAcctID");
}

}  // namespace velmora
