#include "platform/ado/duckdb/settings.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <string_view>

#include "platform/ado/duckdb/engine_error.h"
#include "velmora/collections/letter_case.h"

namespace velmora::ado::embedded {

namespace {

using collections::lowerCased;

constexpr int kMaxThreads = 256;
constexpr std::int64_t kMinMemoryMegabytes = 64;
constexpr int kMinBlockSize = 16'384, kMaxBlockSize = 262'144;

[[noreturn]] void refuse(const ConnectionString::Property& property, std::string_view expected) {
  throwConnectError("Connection string: " + property.name + "=" + property.value + " is not " +
                    std::string(expected) + ".");
}

/// The number at the start of `text`, which is cut off; nullopt when there is none.
std::optional<std::int64_t> takeNumber(std::string_view& text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || number < 0) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

OpenMode readMode(const ConnectionString::Property& property) {
  const auto mode = lowerCased(property.value);
  if (mode == "read") return OpenMode::read;
  if (mode == "readwrite") return OpenMode::readWrite;
  if (mode == "create") return OpenMode::create;
  refuse(property, "Read, ReadWrite or Create");
}

int readNumber(const ConnectionString::Property& property, int least, int most,
               const std::string& what) {
  std::string_view rest = property.value;
  const auto number = takeNumber(rest);
  if (!number || !rest.empty() || *number < least || *number > most)
    refuse(property, what + " from " + std::to_string(least) + " to " + std::to_string(most));
  return static_cast<int>(*number);
}

int readBlockSize(const ConnectionString::Property& property) {
  const char* const what = "a power of 2";
  const int size = readNumber(property, kMinBlockSize, kMaxBlockSize, what);
  if (!std::has_single_bit(static_cast<unsigned>(size))) refuse(property, what);
  return size;
}

std::string readMemory(const ConnectionString::Property& property) {
  struct Unit {
    std::string_view name;
    std::int64_t perMegabyte;  // units in a megabyte, 0 when it is the larger
    std::int64_t megabytes;    // megabytes in a unit
  };
  static constexpr std::array units{Unit{"kb", 1000, 0}, Unit{"mb", 1, 1}, Unit{"gb", 0, 1000},
                                    Unit{"tb", 0, 1'000'000}};
  constexpr std::int64_t kMaxNumber = 1'000'000'000;
  auto text = lowerCased(property.value);
  std::string_view rest = text;
  const auto number = takeNumber(rest);
  const auto unit = std::ranges::find(units, rest, &Unit::name);
  if (number && *number <= kMaxNumber && unit != units.end()) {
    const auto megabytes =
        unit->megabytes ? *number * unit->megabytes : *number / unit->perMegabyte;
    if (megabytes >= kMinMemoryMegabytes) return text;
  }
  refuse(property, "an amount of memory such as 512MB or 2GB, at least 64MB");
}

/// What ADO programs write for a server database and what has no meaning for a file.
bool isIgnored(std::string_view name) {
  static constexpr std::array<std::string_view, 11> names{"provider",
                                                          "user id",
                                                          "uid",
                                                          "password",
                                                          "pwd",
                                                          "initial catalog",
                                                          "database",
                                                          "connect timeout",
                                                          "persist security info",
                                                          "application name",
                                                          "workstation id"};
  return std::ranges::find(names, name) != names.end();
}

void apply(Settings& settings, const ConnectionString::Property& property) {
  const auto name = lowerCased(property.name);
  if (name == "data source") {
    settings.file = property.value;
  } else if (name == "mode") {
    settings.mode = readMode(property);
  } else if (name == "threads") {
    settings.threads = readNumber(property, 1, kMaxThreads, "a number of threads");
  } else if (name == "memory") {
    settings.memory = readMemory(property);
  } else if (name == "block size") {
    settings.blockSize = readBlockSize(property);
  } else if (!isIgnored(name)) {
    throwConnectError("Connection string: \"" + property.name +
                      "\" is not known to the embedded database; it takes Data Source, Mode, "
                      "Threads, Memory and Block Size.");
  }
}

}  // namespace

Settings readSettings(const ConnectionString& text) {
  Settings settings;
  for (const auto& property : text.properties()) apply(settings, property);
  if (settings.file.empty())
    throwConnectError("Connection string: Data Source is missing; it names the database file.");
  if (settings.file == ":memory:") {
    settings.file.clear();
    settings.mode = OpenMode::create;
  }
  return settings;
}

}  // namespace velmora::ado::embedded
