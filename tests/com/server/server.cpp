#include "velmora/com/class_table.h"
#include "velmora/com/dispatch_table.h"
#include "velmora/com/registry.h"

// An in-process server with one class, Test.Echo, whose library and answers are
// good, and one, Test.Broken, that it registers but does not serve.

namespace velmora::com {
namespace {

constexpr Guid kEchoId = Guid::parse("0E4C6A2B-58C9-4E0E-9A0C-1B53D3F5A001");
constexpr Guid kBrokenId = Guid::parse("0E4C6A2B-58C9-4E0E-9A0C-1B53D3F5A002");

class Echo final : public DispatchObject<Echo> {
 public:
  std::string Say(const std::string& sText) { return "echo " + sText; }

  static const DispatchTable<Echo>& dispatchTable() {
    static const auto table =
        DispatchTable<Echo>("Echo", "Test.Echo", kEchoId, IDispatch::kInterfaceId)
            .method("Say", &Echo::Say, {"sText"});
    return table;
  }
};

class EchoFactory final : public Object<IClassFactory> {
 public:
  Ref<IDispatch> CreateInstance() override { return make<Echo>(); }
};

}  // namespace

extern "C" {

[[gnu::visibility("default")]] std::int32_t DllRegisterServer() {
  const std::string library = LibraryOf(&kEchoId);
  Registry::putClass({"Test.Echo", kEchoId, library});
  Registry::putClass({"Test.Broken", kBrokenId, library});
  return kOk;
}

[[gnu::visibility("default")]] std::int32_t DllGetClassObject(const Guid& classId,
                                                              const Guid& interfaceId,
                                                              void** object) {
  if (classId != kEchoId) return error::kClassNotRegistered;
  *object = make<EchoFactory>()->QueryInterface(interfaceId);
  return *object == nullptr ? error::kNoInterface : kOk;
}
}

}  // namespace velmora::com
