#pragma once

#include "frame/call/call_setup.h"
#include "frame/live_objects.h"
#include "velmora/com/dispatch_table.h"
#include "velmora/init_bal_check.h"

namespace velmora {

class clsInitBalCheck final : public com::DispatchObject<clsInitBalCheck, _clsInitBalCheck> {
 public:
  static const com::DispatchTable<clsInitBalCheck>& dispatchTable();

  bool CheckInitData(const std::string& sDsn, const collections::DictionaryRef& dFilter,
                     com::Ref<com::IUnknown>& rsReturn) override;
  com::Ref<com::IUnknown> GetClosingAmtCheck(const std::string& sDsn,
                                             collections::DictionaryRef& dFilter) override;
  com::Ref<com::IUnknown> GetInitAmtCheck(const std::string& sDsn,
                                          collections::DictionaryRef& dFilter) override;
  bool GetClosingCheckDataSql(collections::DictionaryRef& dFilter) override;
  bool GetAmtCheckDataSql(collections::DictionaryRef& dFilter) override;
  bool CheckClosingData(const std::string& sDsn, const collections::DictionaryRef& dOption,
                        com::Ref<com::IUnknown>& rsReturn, bool& bCanClose) override;
  std::string GetUnVchExtBillStr(const collections::DictionaryRef& dFilter) override;
  std::string GetUnVchBillStr(const collections::DictionaryRef& dFilter) override;
  ado::RecordsetRef GetData(const std::string& sDsn, const std::string& sSql) override;
  com::Ref<com::IUnknown> GetCheckItemDict(const std::string& sDsn,
                                           const collections::DictionaryRef& dFilter) override;
  std::string GetUnVchInvoiceStr(collections::DictionaryRef& dFilter) override;
  std::string GetUnAccountArpBillStr(collections::DictionaryRef& dFilter) override;
  std::string GetUnVchArpBillStr(collections::DictionaryRef& dFilter) override;
  std::string GetUnAuditArpBillStr(collections::DictionaryRef& dFilter) override;
  std::string GetNoBillVoucherStr(collections::DictionaryRef& dFilter) override;

 private:
  LiveObject live_;
  CallSetup call_;
};

}  // namespace velmora
