#include "frame/check.h"

#include "checks/period/account_check.h"
#include "checks/period/period_change.h"
#include "frame/call/operation.h"

namespace velmora {

using collections::Date;

bool clsCheck::IsCanChangePeriod(const std::string& sDsn, std::string& sReturnMsg, std::int32_t,
                                 std::int32_t, Date dOldBeginDate, Date, Date dNewBeginDate, Date) {
  std::string language = "chs";
  return runOperation(
      Voting::votes,
      [&](Place& place) {
        call_.PrepareDataSource(sDsn);
        place = "t_rp_contact";
        language = call_.dataSource().parser().LanguageID();
        return period::isCanChangePeriod(call_.dataSource(), dOldBeginDate, dNewBeginDate,
                                         sReturnMsg);
      },
      [&] {
        sReturnMsg = period::periodCheckFailed(language);
        return false;
      });
}

com::Ref<com::IUnknown> clsCheck::CheckValidAccount(const std::string& sDsn,
                                                    std::int32_t lClassTypeID) {
  using Result = com::Ref<com::IUnknown>;
  return runOperation(
      Voting::votes,
      [&](Place& place) {
        call_.PrepareDataSource(sDsn);
        return Result(period::checkValidAccount(call_.dataSource(), lClassTypeID, place));
      },
      [] { return nullptr; });
}

}  // namespace velmora
