// The sibling components that this platform supplies, known by ProgID as soon as
// the platform library is loaded. A real sibling registered under the same ProgID
// in the process takes its place.

#include "platform/host/file_system_object.h"
#include "platform/suite/data_access.h"
#include "platform/suite/period_date.h"
#include "platform/suite/resource_loader.h"
#include "platform/suite/security_info.h"
#include "platform/suite/system_profile.h"
#include "velmora/com/class_table.h"

namespace velmora::suite {

namespace {

template <class T>
void registerSibling() {
  const com::TypeInfo& info = T::dispatchTable().info();
  com::RegisterClass(
      {info.progId, info.classId, [] { return com::Ref<com::IDispatch>(com::make<T>()); }});
}

[[gnu::constructor]] void registerSiblings() {
  registerSibling<ResourceLoader>();
  registerSibling<PeriodDate>();
  registerSibling<SecurityInfo>();
  registerSibling<DataAccess>();
  registerSibling<SystemProfile>();
  registerSibling<host::FileSystemObject>();
}

}  // namespace

}  // namespace velmora::suite
