#include "platform/suite/message_catalogue.h"

#include <bit>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/host/module_path.h"
#include "velmora/com/error.h"

namespace velmora::suite {

namespace {

constexpr std::uint32_t kMagic = 0x950412de;
constexpr std::size_t kHeaderSize = 28;

[[noreturn]] void fail(const std::string& description) {
  throw com::Error(com::error::kFailed, "Q8RESLOADER.Loader", description);
}

}  // namespace

MessageCatalogue MessageCatalogue::read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) fail("Cannot read the message catalogue '" + path + "'");
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  MessageCatalogue catalogue(std::move(bytes));
  if (!catalogue.isValid()) fail("'" + path + "' is not a compiled message catalogue");
  return catalogue;
}

std::shared_ptr<const MessageCatalogue> MessageCatalogue::cached(const std::string& path) {
  static std::mutex mutex;
  static std::map<std::string, std::shared_ptr<const MessageCatalogue>> catalogues;
  const std::lock_guard lock(mutex);
  auto& catalogue = catalogues[path];
  if (!catalogue) catalogue = std::make_shared<const MessageCatalogue>(read(path));
  return catalogue;
}

// Layout of a .mo file: magic, revision, number of texts, offset of the table of
// keys, offset of the table of translations; each table entry is length, offset.
// Keys are sorted.
bool MessageCatalogue::isValid() const {
  if (bytes_.size() < kHeaderSize || word(0) != kMagic) return false;
  const auto fits = [this](std::uint64_t offset, std::uint64_t length) {
    return offset + length <= bytes_.size();
  };
  const std::uint32_t count = word(8);
  for (const std::uint32_t table : {word(12), word(16)}) {
    if (!fits(table, std::uint64_t{count} * 8)) return false;
    for (std::uint32_t i = 0; i < count; ++i)
      if (!fits(word(table + i * 8 + 4), word(table + i * 8))) return false;
  }
  return true;
}

std::uint32_t MessageCatalogue::word(std::size_t offset) const {
  std::uint32_t value = 0;
  std::memcpy(&value, bytes_.data() + offset, sizeof value);
  if constexpr (std::endian::native == std::endian::big) value = __builtin_bswap32(value);
  return value;
}

std::string_view MessageCatalogue::entry(std::uint32_t table, std::uint32_t index) const {
  const std::size_t at = table + std::size_t{index} * 8;
  return std::string_view(bytes_).substr(word(at + 4), word(at));
}

std::optional<std::string_view> MessageCatalogue::find(std::string_view key) const {
  if (key.empty()) return std::nullopt;  // the empty key holds the file's header
  std::uint32_t low = 0;
  std::uint32_t high = word(8);
  while (low < high) {
    const std::uint32_t middle = low + (high - low) / 2;
    const int order = entry(word(12), middle).compare(key);
    if (order == 0) return entry(word(16), middle);
    (order < 0 ? low : high) = order < 0 ? middle + 1 : middle;
  }
  return std::nullopt;
}

std::string findMessageFile(std::string_view name) {
  namespace fs = std::filesystem;
  std::vector<fs::path> folders;
  if (const char* configured = std::getenv("VELMORA_MESSAGES")) {
    folders.emplace_back(configured);
  } else {
    const fs::path library(host::platformFolder());
    // Beside lib, beside a machine's own folder of lib, in the build.
    folders = {library / "../share/velmora/messages", library / "../../share/velmora/messages",
               library / "../messages"};
  }
  std::string looked;
  for (const fs::path& folder : folders) {
    const fs::path file = (folder / (std::string(name) + ".mo")).lexically_normal();
    if (fs::exists(file)) return file.string();
    looked += (looked.empty() ? "" : ", ") + folder.lexically_normal().string();
  }
  fail("There is no message catalogue '" + std::string(name) + "' in " + looked);
}

}  // namespace velmora::suite
