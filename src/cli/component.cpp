#include "cli/component.h"

#include <cstdlib>
#include <filesystem>

#include "cli/failure.h"
#include "report/display_width.h"
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

void fail(const std::string& operation, const com::ErrorInfo& reason) {
  if (reason.number == com::error::kProviderConnect)
    throw Failure(operation + " could not run: the connection was lost" +
                  (reason.place.empty() ? "" : " in \"" + reason.place + "\"") +
                  "; nothing was changed (" + report::singleLine(reason.description) + ")");
  throw Failure(operation + " could not run: " + reason.description +
                (reason.place.empty() ? "" : "\n  in: " + reason.place) + "\n  (" + reason.source +
                ", error " + std::to_string(reason.number) + ")");
}

void failFromErrorInfo(const std::string& operation) {
  if (const auto& reason = com::GetErrorInfo()) fail(operation, *reason);
  throw Failure(operation + " could not run");
}

}  // namespace velmora::cli
