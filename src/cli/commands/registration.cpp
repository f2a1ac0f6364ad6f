#include <dlfcn.h>
#include <filesystem>
#include <fmt/format.h>
#include <memory>
#include <ostream>

#include "cli/commands/commands.h"
#include "cli/component.h"
#include "cli/failure.h"
#include "velmora/com/class_table.h"
#include "velmora/com/registry.h"

namespace velmora::cli {

namespace {

using com::Registry;

/// Calls an entry point of the component's library without arguments.
void callEntryPoint(const std::string& path, const char* name) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) throw Failure(fmt::format("cannot load {}: {}", path, dlerror()));
  const auto entryPoint = reinterpret_cast<com::DllRegisterServerFunction>(dlsym(library, name));
  if (entryPoint == nullptr) throw Failure(fmt::format("{} has no {}", path, name));
  com::ClearErrorInfo();
  const std::int32_t answer = entryPoint();
  if (answer == com::kOk) return;
  if (com::GetErrorInfo()) failFromErrorInfo(name);
  throw Failure(fmt::format("{} of {} answered error {}", name, path, answer));
}

Registry::Layer chooseLayer(bool system) {
  const auto layer = system ? Registry::Layer::system : Registry::Layer::user;
  Registry::setWriteLayer(layer);
  return layer;
}

std::string absoluteLibrary() {
  return std::filesystem::absolute(componentLibrary()).string();
}

int registerComponent(bool system, Streams& streams) {
  const auto layer = chooseLayer(system);
  callEntryPoint(absoluteLibrary(), "DllRegisterServer");
  streams.out << Registry::file(layer) << '\n';
  for (const auto& entry : Registry::classes(layer))
    if (entry.progId.starts_with("Velmora."))
      streams.out << fmt::format("  {} = {{{}}} {}\n", entry.progId, entry.classId.toString(),
                                 entry.library);
  return kOk;
}

int unregisterComponent(bool system, Streams& streams) {
  const auto layer = chooseLayer(system);
  const auto before = Registry::classes(layer);
  callEntryPoint(absoluteLibrary(), "DllUnregisterServer");
  streams.out << Registry::file(layer) << '\n';
  for (const auto& entry : before)
    if (entry.progId.starts_with("Velmora."))
      streams.out << fmt::format("  {} removed\n", entry.progId);
  return kOk;
}

void addOne(CLI::App& program, Run& chosen, const std::string& name, const std::string& help,
            int (*run)(bool, Streams&)) {
  auto system = std::make_shared<bool>(false);
  CLI::App* command = program.add_subcommand(name, help);
  command->footer("Example:\n  velmora " + name + "\n\nPrints what was written, and where.");
  command->add_flag("--system", *system,
                    "For every user (/etc/velmora/registry), not only this one");
  command->callback([system, run, &chosen] {
    chosen = [system, run](Streams& streams) { return run(*system, streams); };
  });
}

}  // namespace

void addRegistration(CLI::App& program, Run& chosen) {
  addOne(program, chosen, "register", "Let other programs create the component's classes",
         registerComponent);
  addOne(program, chosen, "unregister", "Take the component's classes out of the registry",
         unregisterComponent);
}

}  // namespace velmora::cli
