#include "frame/check.h"

#include "frame/not_implemented.h"

namespace velmora {

using collections::Date;

bool clsCheck::IsCanChangePeriod(const std::string&, std::string&, std::int32_t, std::int32_t, Date,
                                 Date, Date, Date) {
  raiseNotImplemented("clsCheck", "IsCanChangePeriod");
}

com::Ref<com::IUnknown> clsCheck::CheckValidAccount(const std::string&, std::int32_t) {
  raiseNotImplemented("clsCheck", "CheckValidAccount");
}

}  // namespace velmora
