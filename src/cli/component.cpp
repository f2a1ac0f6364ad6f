#include "cli/component.h"

#include <cstdlib>
#include <filesystem>

#include "cli/failure.h"
#include "velmora/com/class_table.h"

namespace velmora::cli {

std::string componentLibrary() {
  if (const char* path = std::getenv("VELMORA_COMPONENT"); path != nullptr && *path != '\0')
    return path;
  std::error_code failed;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", failed);
  const auto root = program.parent_path().parent_path();
  std::string places;
  for (const char* folder : {"lib", VELMORA_LIBRARY_FOLDER}) {
    const auto library = root / folder / "libvelmora.so";
    if (std::filesystem::exists(library, failed)) return library.string();
    places.append(places.empty() ? "" : " or ").append(library.string());
  }
  throw Failure("cannot find the component at " + places + "; set VELMORA_COMPONENT to its path");
}

void activateComponent() {
  com::ActivateServer(componentLibrary());
}

void failFromErrorInfo(const std::string& operation) {
  std::string message = operation + " could not run";
  if (const auto& info = com::GetErrorInfo()) {
    message += ": " + info->description;
    if (!info->place.empty()) message += "\n  in: " + info->place;
    message += "\n  (" + info->source + ", error " + std::to_string(info->number) + ")";
  }
  throw Failure(message);
}

}  // namespace velmora::cli
