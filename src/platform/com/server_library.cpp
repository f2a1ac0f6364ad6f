#include "platform/com/server_library.h"

#include <dlfcn.h>
#include <filesystem>
#include <stdexcept>

#include "velmora/com/error.h"

namespace velmora::com {

ServerLibrary::ServerLibrary(const std::string& path)
    : path_(std::filesystem::absolute(path)),
      handle_(dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (handle_ == nullptr) throw std::runtime_error(dlerror());
}

template <class Function>
Function ServerLibrary::entryPoint(const char* name) const {
  void* const address = dlsym(handle_, name);
  if (address == nullptr)
    throw std::runtime_error("'" + path_ + "' is not an in-process server, it has no " + name);
  return reinterpret_cast<Function>(address);
}

Ref<IDispatch> ServerLibrary::createInstance(const Guid& classId) const {
  const auto getClassObject = entryPoint<DllGetClassObjectFunction>("DllGetClassObject");
  void* object = nullptr;
  const auto answer = getClassObject(classId, IClassFactory::kInterfaceId, &object);
  const auto factory = Ref<IClassFactory>::adopt(static_cast<IClassFactory*>(object));
  if (answer != kOk || !factory)
    throw std::runtime_error("'" + path_ + "' does not serve the class {" + classId.toString() +
                             "}, DllGetClassObject answered " + std::to_string(answer));
  return factory->CreateInstance();
}

void ServerLibrary::registerClasses() const {
  const auto answer = entryPoint<DllRegisterServerFunction>("DllRegisterServer")();
  if (answer != kOk)
    throw std::runtime_error("DllRegisterServer answered " + std::to_string(answer));
}

std::string LibraryOf(const void* address) {
  Dl_info info{};
  if (dladdr(address, &info) == 0 || info.dli_fname == nullptr)
    throw Error(error::kFailed, "Velmora", "an address belongs to no loaded library");
  // With its links: libx.so stays where the next version's libx.so.2 will be.
  return std::filesystem::absolute(info.dli_fname).lexically_normal();
}

}  // namespace velmora::com
