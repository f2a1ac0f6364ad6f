#include "platform/ado/duckdb/instance.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>

#include "platform/ado/duckdb/engine.h"
#include "platform/ado/duckdb/engine_error.h"
#include "platform/ado/duckdb/value_functions.h"
#include "velmora/ado/diagnostics.h"

namespace velmora::ado::embedded {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const std::string& file, const std::string& reason) {
  throwConnectError("Cannot open the database \"" + file + "\": " + reason + ".");
}

/// What can be told from outside; the file itself is not opened, because closing it
/// again would drop this process's locks on it.
void checkFile(const Settings& settings) {
  std::error_code error;
  const auto status = fs::status(settings.file, error);
  if (fs::is_directory(status)) refuse(settings.file, "it is a folder");
  if (fs::exists(status)) {
    if (!fs::is_regular_file(status)) refuse(settings.file, "it is not a file");
    if (fs::file_size(settings.file, error) == 0)
      refuse(settings.file, "it is empty, not a database");
    return;
  }
  if (settings.mode != OpenMode::create)
    refuse(settings.file, "the file does not exist (Mode=Create makes a new one)");
  const auto folder = fs::path(settings.file).parent_path();
  if (!folder.empty() && !fs::is_directory(folder, error))
    refuse(settings.file, "its folder does not exist");
}

/// Why the engine does not open the file.
std::string openFailure(std::string_view message) {
  struct Known {
    std::string_view engine;
    std::string_view reason;
  };
  static constexpr std::array known{
      Known{"Could not set lock", "another process has it open"},
      Known{"not a valid DuckDB database file", "it is not a database of this kind"},
      Known{"Permission denied", "there is no permission to do so"},
      Known{"No space left", "the disk is full"},
      Known{"Could not read enough bytes", "it is damaged: the file ends too early"},
      Known{"Corrupt", "it is damaged"},
      Known{"version number", "it was written by another version of the engine"},
  };
  for (const auto& [engine, reason] : known)
    if (message.find(engine) != std::string_view::npos) return std::string(reason);
  return readableError(message).value_or("the engine cannot read it");
}

class Options {
 public:
  Options() {
    duckdb_config config = nullptr;
    if (duckdb_create_config(&config) != DuckDBSuccess)
      throwConnectError("The database engine cannot be set up.");
    config_.reset(config);
  }
  void set(const char* name, const std::string& value) {
    if (duckdb_set_config(config_.get(), name, value.c_str()) != DuckDBSuccess)
      throwConnectError("The database engine does not take " + std::string(name) + "=" + value +
                        ".");
  }
  duckdb_config handle() const { return config_.get(); }

 private:
  Config config_;
};

Options engineOptions(const Settings& settings, const std::string& spillFolder) {
  Options options;
  if (!settings.inMemory())
    options.set("access_mode", settings.readOnly() ? "READ_ONLY" : "READ_WRITE");
  if (settings.threads) options.set("threads", std::to_string(*settings.threads));
  if (settings.memory) options.set("memory_limit", *settings.memory);
  if (settings.blockSize) options.set("default_block_size", std::to_string(*settings.blockSize));
  options.set("temp_directory", spillFolder);
  options.set("default_null_order", "nulls_first_on_asc_last_on_desc");
  options.set("preserve_insertion_order", "true");
  options.set("autoinstall_known_extensions", "false");
  options.set("autoload_known_extensions", "false");
  options.set("enable_external_access", "false");
  options.set("lock_configuration", "true");
  return options;
}

duckdb_database open(const Settings& settings, const std::string& spillFolder) {
  if (!settings.inMemory()) checkFile(settings);
  const auto options = engineOptions(settings, spillFolder);
  duckdb_database database = nullptr;
  char* message = nullptr;
  const char* path = settings.inMemory() ? nullptr : settings.file.c_str();
  if (duckdb_open_ext(path, &database, options.handle(), &message) == DuckDBSuccess)
    return database;
  tellEngineWords(message ? message : "");
  const auto reason = openFailure(message ? message : "");
  duckdb_free(message);
  refuse(settings.inMemory() ? ":memory:" : settings.file, reason);
}

/// The spill folders there are, for a program that ends by std::quick_exit.
class SpillFolders {
 public:
  static SpillFolders& all() {
    static SpillFolders& instance = *new SpillFolders;
    return instance;
  }
  void add(const std::string& path) {
    const std::lock_guard lock(mutex_);
    paths_.insert(path);
  }
  void remove(const std::string& path) noexcept {
    const std::lock_guard lock(mutex_);
    std::error_code ignored;
    fs::remove_all(path, ignored);
    paths_.erase(path);
  }

 private:
  SpillFolders() {
    static_cast<void>(std::at_quick_exit([] {
      std::error_code ignored;
      const std::lock_guard lock(all().mutex_);
      for (const auto& path : all().paths_) fs::remove_all(path, ignored);
    }));
  }

  std::mutex mutex_;
  std::set<std::string> paths_;
};

}  // namespace

SpillFolder::SpillFolder() {
  std::error_code error;
  const auto folder = fs::temp_directory_path(error);
  if (error) return;
  auto path = (folder / "velmora-XXXXXX").string();
  if (!::mkdtemp(path.data())) return;
  path_ = path;
  SpillFolders::all().add(path_);
}

SpillFolder::~SpillFolder() {
  if (!path_.empty()) SpillFolders::all().remove(path_);
}

Instance::Instance(const Settings& settings)
    : database_(open(settings, spill_.path())), readOnly_(settings.readOnly()), tables_(database_) {
  makeValueFunctionsKnown(database_);
}

}  // namespace velmora::ado::embedded
