#include "frame/public.h"

#include "common/current_financial_date.h"
#include "frame/call/operation.h"
#include "frame/get_data.h"
#include "settlement/amount_settlement.h"
#include "settlement/check_info_file.h"
#include "settlement/default_account.h"
#include "settlement/switch_data.h"

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
      [&](Place& place) {
        call_.PrepareDataSource(sDsn);
        place = "t_PeriodDate";
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

namespace {

/// An operation that only tells whether it worked.
template <class Body>
bool succeeds(Body body) {
  return runOperation(
      Voting::abstains,
      [&](Place&) {
        body();
        return true;
      },
      [] { return false; });
}

/// A switch-data operation: whether it completed; `strErrMsg` tells why it did not.
template <class Fill>
bool fillSwitchData(std::string& strErrMsg, Fill fill) {
  const bool completed = succeeds(fill);
  strErrMsg = completed ? std::string() : com::GetErrorInfo()->description;
  return completed;
}

}  // namespace

// These two answer false in any case: callers look at strErrMsg.

bool clsPublic::GetSwitchData(RecordsetRef& rsEntry, const VectorRef& vOption,
                              std::string& strErrMsg, const DictionaryRef& dFilter) {
  fillSwitchData(strErrMsg, [&] {
    settlement::GetSwitchData(given(rsEntry, "rsEntry"), given(vOption, "vOption"), dFilter);
  });
  return false;
}

bool clsPublic::GetSwitchVectData(VectorRef& rsEntry, const VectorRef& vOption,
                                  std::string& strErrMsg) {
  fillSwitchData(strErrMsg, [&] {
    settlement::GetSwitchVectData(given(rsEntry, "rsEntry"), given(vOption, "vOption"));
  });
  return false;
}

bool clsPublic::GetSwitchDataExt(const std::string&, RecordsetRef& rsEntry, VectorRef& vOption,
                                 const DictionaryRef& dFilter, std::string& strErrMsg) {
  return fillSwitchData(strErrMsg, [&] {
    settlement::GetSwitchDataExt(given(rsEntry, "rsEntry"), given(vOption, "vOption"), dFilter);
  });
}

bool clsPublic::WriteCheckInfoByVector(const VectorRef& rs, const std::string& sFileName) {
  return succeeds([&] { settlement::WriteCheckInfoByVector(given(rs, "rs"), sFileName); });
}

bool clsPublic::WriteCheckInfoByRs(const RecordsetRef& rs, const std::string& sFileName) {
  return succeeds([&] { settlement::WriteCheckInfoByRs(given(rs, "rs"), sFileName); });
}

std::int32_t clsPublic::GetDefaultAcctID(const std::string& sDsn, std::int32_t ItemClassID,
                                         std::int32_t ItemID, std::int32_t ClassTypeID) {
  return runOperation(
      Voting::abstains,
      [&](Place& place) {
        call_.PrepareDataSource(sDsn);
        place = "t_rp_billType";
        return settlement::GetDefaultAcctID(call_.dataSource(), ItemClassID, ItemID, ClassTypeID);
      },
      [] { return 0; });
}

}  // namespace velmora
