#pragma once

#include "frame/call/call_setup.h"
#include "frame/live_objects.h"
#include "velmora/check.h"
#include "velmora/com/dispatch_table.h"

namespace velmora {

class clsCheck final : public com::DispatchObject<clsCheck, _clsCheck> {
 public:
  static const com::DispatchTable<clsCheck>& dispatchTable();

  bool IsCanChangePeriod(const std::string& sDsn, std::string& sReturnMsg, std::int32_t lYear,
                         std::int32_t lPeriod, collections::Date dOldBeginDate,
                         collections::Date dOldEndDate, collections::Date dNewBeginDate,
                         collections::Date dNewEndDate) override;
  com::Ref<com::IUnknown> CheckValidAccount(const std::string& sDsn,
                                            std::int32_t lClassTypeID) override;

 private:
  LiveObject live_;
  CallSetup call_;
};

}  // namespace velmora
