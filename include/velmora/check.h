#pragma once

#include <cstdint>
#include <string>

#include "velmora/collections/date.h"
#include "velmora/com/dispatch.h"

namespace velmora {

/// Checks around periods and accounts. What all operations share is told in
/// interfaces.h. Both operations vote on the transaction.
class _clsCheck : public com::IDispatch {
 public:
  using Base = com::IDispatch;
  static constexpr com::Guid kInterfaceId =
      com::Guid::parse("21B385C4-C72B-4A28-8E96-56D19CF6EDC7");
  static constexpr com::Guid kClassId = com::Guid::parse("9EAD2186-8B21-48E3-9CC8-F423F086C69B");
  static constexpr const char* kProgId = "Velmora.clsCheck";

  /// Whether a period's dates may change: no AR/AP record may be dated on or after
  /// the earlier of the two start dates. False, with the reason in the caller's
  /// language in `sReturnMsg`, when they may not or the check could not run; true
  /// leaves `sReturnMsg` alone. lYear, lPeriod and the end dates are not used.
  virtual bool IsCanChangePeriod(const std::string& sDsn, std::string& sReturnMsg,
                                 std::int32_t lYear, std::int32_t lPeriod,
                                 collections::Date dOldBeginDate, collections::Date dOldEndDate,
                                 collections::Date dNewBeginDate,
                                 collections::Date dNewEndDate) = 0;

  /// The customers, suppliers, departments, employees and items of the classes that the
  /// settings FItemClassAR... and FItemClassAP... name that lack one of their accounts
  /// or, when the setting FCheckAccount is 1, have one without control attribute: a
  /// recordset FID (1, 2, 3 ...), FErrType (severity), FErrInfo, FKey (name of the item
  /// class), or nothing when the check could not run. A class whose table is missing or
  /// lacks the account columns is one serious finding, and its records are not asked
  /// for. Texts longer than their field (300, FKey 100) are cut to it. A non-zero
  /// `lClassTypeID` answers no rows at once.
  virtual com::Ref<com::IUnknown> CheckValidAccount(const std::string& sDsn,
                                                    std::int32_t lClassTypeID = 0) = 0;

 protected:
  ~_clsCheck() = default;
};

}  // namespace velmora
