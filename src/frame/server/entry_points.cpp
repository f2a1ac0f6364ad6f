// The four entry points of an in-process server. Nothing may be thrown across them.

#include <dlfcn.h>
#include <filesystem>

#include "frame/classes.h"
#include "frame/live_objects.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"
#include "velmora/com/registry.h"

namespace velmora {

namespace {

class ClassFactory final : public com::Object<com::IClassFactory> {
 public:
  explicit ClassFactory(com::ClassEntry entry) : entry_(std::move(entry)) {}
  com::Ref<com::IDispatch> CreateInstance() override { return entry_.create(); }

 private:
  LiveObject live_;
  com::ClassEntry entry_;
};

/// Runs `body` and turns what it raises into its error number.
template <class Body>
std::int32_t answer(Body body) noexcept {
  try {
    return body();
  } catch (const com::Error& error) {
    return error.number();
  } catch (...) {
    return com::error::kFailed;
  }
}

}  // namespace

#define VELMORA_ENTRY_POINT extern "C" [[gnu::visibility("default")]] std::int32_t

VELMORA_ENTRY_POINT DllRegisterServer() {
  return answer([] {
    const std::string path = com::LibraryOf(reinterpret_cast<const void*>(&DllRegisterServer));
    for (const auto& entry : publicClasses())
      com::Registry::putClass({entry.progId, entry.classId, path});
    return com::kOk;
  });
}

VELMORA_ENTRY_POINT DllUnregisterServer() {
  return answer([] {
    for (const auto& entry : publicClasses()) com::Registry::removeClass(entry.progId);
    return com::kOk;
  });
}

VELMORA_ENTRY_POINT DllGetClassObject(const com::Guid& classId, const com::Guid& interfaceId,
                                      void** object) {
  return answer([&] {
    if (object == nullptr) return com::error::kInvalidArgument;
    *object = nullptr;
    for (const auto& entry : publicClasses()) {
      if (entry.classId != classId) continue;
      *object = com::make<ClassFactory>(entry)->QueryInterface(interfaceId);
      return *object != nullptr ? com::kOk : com::error::kNoInterface;
    }
    return com::error::kClassNotRegistered;
  });
}

VELMORA_ENTRY_POINT DllCanUnloadNow() {
  return LiveObject::count() == 0 ? com::kOk : com::kFalse;
}

#undef VELMORA_ENTRY_POINT

}  // namespace velmora
