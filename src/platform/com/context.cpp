#include "velmora/com/context.h"

#include "velmora/com/class_table.h"

namespace velmora::com {

Ref<IDispatch> ObjectContext::CreateInstance(std::string_view progId) {
  // Votes are kept by thread, so that an object made here votes on the same
  // transaction as its maker without further ado.
  return CreateObject(progId);
}

ObjectContext& GetObjectContext() noexcept {
  thread_local ObjectContext context;
  return context;
}

}  // namespace velmora::com
