#pragma once

#include "frame/call/call_setup.h"
#include "frame/live_objects.h"
#include "velmora/com/dispatch_table.h"
#include "velmora/public.h"

namespace velmora {

class clsPublic final : public com::DispatchObject<clsPublic, _clsPublic> {
 public:
  static const com::DispatchTable<clsPublic>& dispatchTable();

  bool AmtSettlement(const std::string& sDsn, ado::RecordsetRef& rsSrcBill,
                     ado::RecordsetRef& rsDestBill, collections::VectorRef& rsChkInfo,
                     std::int32_t lCheckAmtFor, std::int32_t lCheckWithQty,
                     const collections::DictionaryRef& dDictSwitch) override;
  bool GetSwitchData(ado::RecordsetRef& rsEntry, const collections::VectorRef& vOption,
                     std::string& strErrMsg, const collections::DictionaryRef& dFilter) override;
  bool GetSwitchDataExt(const std::string& sDsn, ado::RecordsetRef& rsEntry,
                        collections::VectorRef& vOption, const collections::DictionaryRef& dFilter,
                        std::string& strErrMsg) override;
  bool GetSwitchVectData(collections::VectorRef& rsEntry, const collections::VectorRef& vOption,
                         std::string& strErrMsg) override;
  ado::RecordsetRef GetData(const std::string& sDsn, const std::string& sSql) override;
  bool WriteCheckInfoByVector(const collections::VectorRef& rs,
                              const std::string& sFileName) override;
  bool WriteCheckInfoByRs(const ado::RecordsetRef& rs, const std::string& sFileName) override;
  std::int32_t GetDefaultAcctID(const std::string& sDsn, std::int32_t ItemClassID,
                                std::int32_t ItemID, std::int32_t ClassTypeID) override;
  collections::Date GetCurFincDate(const std::string& sDsn, bool bArp) override;

 private:
  LiveObject live_;
  CallSetup call_;
};

}  // namespace velmora
