#include "frame/classes.h"

#include "frame/check.h"
#include "frame/init_bal_check.h"
#include "frame/public.h"

namespace velmora {

namespace {

template <class T>
com::ClassEntry entry() {
  return {T::kProgId, T::kClassId, [] { return com::Ref<com::IDispatch>(com::make<T>()); }};
}

}  // namespace

std::vector<com::ClassEntry> publicClasses() {
  return {entry<clsInitBalCheck>(), entry<clsCheck>(), entry<clsPublic>()};
}

}  // namespace velmora
