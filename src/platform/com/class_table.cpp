#include "velmora/com/class_table.h"

#include <map>
#include <mutex>

#include "platform/com/server_library.h"
#include "velmora/collections/letter_case.h"
#include "velmora/com/error.h"
#include "velmora/com/registry.h"

namespace velmora::com {

namespace {

/// The classes of this process by lower-cased ProgID.
class ClassTable {
 public:
  /// What stood under the entry's ProgID before.
  std::optional<ClassEntry> put(ClassEntry entry) {
    const std::lock_guard lock(mutex_);
    auto& slot = entries_[collections::lowerCased(entry.progId)];
    return std::exchange(slot, std::move(entry));
  }
  void restore(const std::string& progId, std::optional<ClassEntry> previous) {
    const std::lock_guard lock(mutex_);
    entries_[collections::lowerCased(progId)] = std::move(previous);
  }
  std::optional<ClassEntry> find(std::string_view progId) {
    const std::lock_guard lock(mutex_);
    const auto found = entries_.find(collections::lowerCased(progId));
    return found == entries_.end() ? std::nullopt : found->second;
  }

 private:
  std::mutex mutex_;
  std::map<std::string, std::optional<ClassEntry>> entries_;
};

ClassTable& classTable() {
  static ClassTable table;
  return table;
}

Ref<IDispatch> create(std::string_view progId) {
  if (const auto entry = classTable().find(progId)) {
    if (!entry->create) throw std::runtime_error("the class is hidden in this process");
    return entry->create();
  }
  const auto registered = Registry::findClass(progId);
  if (!registered) throw std::runtime_error("the class is not registered");
  return ServerLibrary(registered->library).createInstance(registered->classId);
}

[[noreturn]] void throwCannotCreate(const std::string& what, const std::string& why) {
  throw Error(error::kCannotCreateObject, "Velmora", what + ": " + why);
}

/// Lets this thread write to the process layer of the registry for its lifetime.
class ProcessLayerScope {
 public:
  ProcessLayerScope() { Registry::setWriteLayer(Registry::Layer::process); }
  ~ProcessLayerScope() { Registry::setWriteLayer(before_); }
  ProcessLayerScope(const ProcessLayerScope&) = delete;
  ProcessLayerScope& operator=(const ProcessLayerScope&) = delete;

 private:
  Registry::Layer before_ = Registry::writeLayer();
};

}  // namespace

void RegisterClass(ClassEntry entry) {
  classTable().put(std::move(entry));
}

ScopedClass::ScopedClass(ClassEntry entry)
    : progId_(entry.progId), previous_(classTable().put(std::move(entry))) {}

ScopedClass ScopedClass::hidden(std::string progId) {
  return ScopedClass(ClassEntry{std::move(progId), {}, nullptr});
}

ScopedClass::~ScopedClass() {
  classTable().restore(progId_, std::move(previous_));
}

Ref<IDispatch> CreateObject(std::string_view progId) {
  const std::string what = "cannot create '" + std::string(progId) + "'";
  try {
    if (auto object = create(progId)) return object;
  } catch (const std::exception& e) {
    throwCannotCreate(what, e.what());
  }
  throwCannotCreate(what, "its class made no object");
}

void ActivateServer(const std::string& libraryPath) {
  try {
    const ProcessLayerScope scope;
    ServerLibrary(libraryPath).registerClasses();
  } catch (const std::exception& e) {
    throwCannotCreate("cannot activate '" + libraryPath + "'", e.what());
  }
}

}  // namespace velmora::com
