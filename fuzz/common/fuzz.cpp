#include "common/fuzz.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/mman.h>
#include <unistd.h>

namespace velmora::fuzz {
namespace {

constexpr auto kForeignWords = std::to_array<std::string_view>({
    "Binder",
    "Catalog Error",
    "Conversion Error",
    "Constraint Error",
    "Parser Error",
    "Syntax Error",
    "Invalid Input",
    "Not implemented",
    "INTERNAL",
    "Internal Error",
    "TransactionContext",
    "Out of Memory Error",
    "Out of Range",
    "IO Error",
    "LINE 1:",
    "Candidate",
    "INT32",
    "INT64",
    "INT128",
    "HUGEINT",
    "TRY_CAST",
    "CAST(",
    "explicit cast",
    "Could not c",
    "duckdb",
    "DuckDB",
    "std::",
    "bad_alloc",
    "basic_string",
    "vector::",
    "map::at",
    "optional access",
    "stoi",
    "json.exception",
    "filesystem error",
});

/// A number of SQL Server's with a colon behind it.
bool beginsWithNumber(std::string_view message) {
  const auto end =
      std::ranges::find_if_not(message, [](unsigned char c) { return std::isdigit(c); });
  return end != message.begin() &&
         message.substr(static_cast<std::size_t>(end - message.begin())).starts_with(": ");
}

bool namesPlace(std::string_view message) {
  const auto line = message.rfind("line ");
  return line != std::string_view::npos &&
         message.find(", column ", line) != std::string_view::npos;
}

}  // namespace

void require(bool holds, std::string_view what, std::string_view detail) {
  if (holds) return;
  std::fprintf(stderr, "FINDING: %.*s\n%.*s\n", static_cast<int>(what.size()), what.data(),
               static_cast<int>(detail.size()), detail.data());
  std::abort();
}

void requireReadable(std::string_view message, std::string_view input) {
  for (const std::string_view word : kForeignWords) {
    const bool shown = message.find(word) != std::string_view::npos;
    require(!shown || input.find(word) != std::string_view::npos,
            "words that are not for people in an error", message);
  }
}

void requireSqlError(std::string_view message, std::string_view batch) {
  requireReadable(message, batch);
  const bool ours = message.starts_with("line ") || message.starts_with("Not supported: ") ||
                    message.starts_with("The batch has ");
  require(ours || beginsWithNumber(message), "an error without SQL Server's number", message);
  require(namesPlace(message) || message.starts_with("The batch has "),
          "an error without its place", message);
}

MemoryFile::MemoryFile(std::string_view content) : descriptor_(::memfd_create("input", 0)) {
  path_ = "/proc/self/fd/" + std::to_string(descriptor_);
  const auto written = ::write(descriptor_, content.data(), content.size());
  require(written == static_cast<ssize_t>(content.size()), "no memory for a file", path_);
}

MemoryFile::~MemoryFile() {
  ::close(descriptor_);
}

std::string sourceFile(std::string_view name) {
  std::ifstream file(VELMORA_SOURCE_DIR "/fuzz/" + std::string(name));
  require(file.is_open(), "no such file", name);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace velmora::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  velmora::fuzz::run({reinterpret_cast<const char*>(data), size});
  return 0;
}
