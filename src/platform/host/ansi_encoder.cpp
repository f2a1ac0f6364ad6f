#include "platform/host/ansi_encoder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>

#include "velmora/com/error.h"
#include "velmora/com/registry.h"

namespace velmora::host {

namespace {

std::string iconvName(const std::string& codePage) {
  const bool number = !codePage.empty() &&
                      std::ranges::all_of(codePage, [](char c) { return c >= '0' && c <= '9'; });
  if (codePage == "65001") return "UTF-8";
  return number ? "CP" + codePage : codePage;
}

/// Bytes of the character that `text` begins with, at least 1.
std::size_t characterSize(std::string_view text) {
  std::size_t size = 1;
  while (size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) ++size;
  return size;
}

}  // namespace

AnsiEncoder::AnsiEncoder(const std::string& codePage)
    : converter_(iconv_open(iconvName(codePage).c_str(), "UTF-8")) {
  // iconv_open answers (iconv_t)-1 when it fails.
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  if (converter_ == reinterpret_cast<iconv_t>(-1))
    throw com::Error(com::error::kInvalidArgument, "Scripting.FileSystemObject",
                     "the code page \"" + codePage +
                         "\" is unknown; expected a number such as 936 or a name such as GBK");
}

AnsiEncoder::~AnsiEncoder() {
  iconv_close(converter_);
}

std::string AnsiEncoder::encoded(std::string_view text) {
  std::string bytes;
  iconv(converter_, nullptr, nullptr, nullptr, nullptr);
  while (!text.empty()) {
    std::array<char, 256> buffer;
    char* in = const_cast<char*>(text.data());  // iconv does not write there
    char* out = buffer.data();
    std::size_t inLeft = text.size(), outLeft = buffer.size();
    const bool stuck =
        iconv(converter_, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1) &&
        errno != E2BIG;
    bytes.append(buffer.data(), buffer.size() - outLeft);
    text.remove_prefix(text.size() - inLeft);
    if (stuck) {
      bytes += '?';
      text.remove_prefix(characterSize(text));
    }
  }
  return bytes;
}

std::string AnsiEncoder::configured() {
  if (const char* name = std::getenv("VELMORA_CODE_PAGE"); name != nullptr && *name != '\0')
    return name;
  return com::Registry::setting("CodePage").value_or("936");
}

}  // namespace velmora::host
