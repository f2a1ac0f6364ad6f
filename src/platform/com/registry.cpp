#include "velmora/com/registry.h"

#include <array>
#include <cstdlib>
#include <mutex>

#include "platform/com/registry_file.h"
#include "platform/com/registry_text.h"
#include "velmora/com/error.h"

namespace velmora::com {

namespace {

using Layer = Registry::Layer;
using Section = RegistryText::Section;

constexpr std::array kLayers{Layer::process, Layer::user, Layer::system};

thread_local Layer threadWriteLayer = Layer::user;

/// The process layer; its mutex also keeps two changes of one file apart.
struct ProcessLayer {
  std::mutex mutex;
  RegistryText text;
};

ProcessLayer& processLayer() {
  static ProcessLayer layer;
  return layer;
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::string userFile() {
  if (auto file = environment("VELMORA_REGISTRY"); !file.empty()) return file;
  if (const auto folder = environment("XDG_CONFIG_HOME"); !folder.empty())
    return folder + "/velmora/registry";
  const auto home = environment("HOME");
  return home.empty() ? "" : home + "/.config/velmora/registry";
}

/// The layer's content; the mutex must be held.
RegistryText load(Layer layer) {
  if (layer == Layer::process) return processLayer().text;
  const std::string path = Registry::file(layer);
  return path.empty() ? RegistryText() : RegistryText(readFileIfPresent(path), path);
}

void store(Layer layer, RegistryText text) {
  if (layer == Layer::process) {
    processLayer().text = std::move(text);
    return;
  }
  const std::string path = Registry::file(layer);
  if (path.empty())
    throw Error(error::kFailed, "Velmora.Registry",
                "there is no place for the user's registry; set HOME or VELMORA_REGISTRY");
  replaceFile(path, text.toString());
}

/// The entry in the first layer that has it.
std::optional<RegistryText::Entry> findEntry(Section section, std::string_view name) {
  const std::lock_guard lock(processLayer().mutex);
  for (const Layer layer : kLayers)
    if (auto entry = load(layer).find(section, name)) return entry;
  return std::nullopt;
}

void putEntry(Section section, std::string_view name, std::string_view value) {
  const std::lock_guard lock(processLayer().mutex);
  RegistryText text = load(threadWriteLayer);
  text.put(section, name, value);
  store(threadWriteLayer, std::move(text));
}

}  // namespace

std::optional<RegisteredClass> Registry::findClass(std::string_view progId) {
  const auto entry = findEntry(Section::classes, progId);
  return entry ? std::optional(toRegisteredClass(*entry)) : std::nullopt;
}

std::vector<RegisteredClass> Registry::classes(Layer layer) {
  const std::lock_guard lock(processLayer().mutex);
  std::vector<RegisteredClass> found;
  for (const auto& entry : load(layer).entries(Section::classes))
    found.push_back(toRegisteredClass(entry));
  return found;
}

void Registry::putClass(const RegisteredClass& entry) {
  putEntry(Section::classes, entry.progId, "{" + entry.classId.toString() + "} " + entry.library);
}

void Registry::removeClass(std::string_view progId) {
  const std::lock_guard lock(processLayer().mutex);
  RegistryText text = load(threadWriteLayer);
  if (text.remove(Section::classes, progId)) store(threadWriteLayer, std::move(text));
}

std::optional<std::string> Registry::setting(std::string_view name) {
  auto entry = findEntry(Section::settings, name);
  return entry ? std::optional(std::move(entry->value)) : std::nullopt;
}

void Registry::putSetting(std::string_view name, std::string_view value) {
  putEntry(Section::settings, name, value);
}

Registry::Layer Registry::writeLayer() noexcept {
  return threadWriteLayer;
}
void Registry::setWriteLayer(Layer layer) noexcept {
  threadWriteLayer = layer;
}

std::string Registry::file(Layer layer) {
  switch (layer) {
    case Layer::user:
      return userFile();
    case Layer::system:
      return "/etc/velmora/registry";
    default:
      return {};
  }
}

}  // namespace velmora::com
