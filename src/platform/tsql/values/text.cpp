#include "platform/tsql/values/text.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "platform/tsql/values/code_points.h"
#include "platform/tsql/values/value_error.h"
#include "velmora/collections/letter_case.h"

namespace velmora::tsql::values {
namespace {

void checkCount(std::int32_t count, std::string_view function) {
  if (count < 0)
    throw ValueError(fmt::format("537: Invalid length parameter {} passed to the {} function.",
                                 count, function));
}

std::string part(std::u32string_view characters, std::int64_t first, std::int64_t count) {
  if (first < 0) count += first;
  const auto start = static_cast<std::size_t>(std::max<std::int64_t>(first, 0));
  if (count <= 0 || start >= characters.size()) return {};
  return utf8(characters.substr(start, static_cast<std::size_t>(count)));
}

constexpr std::size_t kMaxBytes = 2147483647;

char32_t folded(char32_t c) {
  return c >= U'A' && c <= U'Z' ? c - U'A' + U'a' : c;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool takeAnyOf(std::string_view& text, std::initializer_list<std::string_view> words) {
  for (const auto word : words) {
    if (!text.starts_with(word)) continue;
    text.remove_prefix(word.size());
    return true;
  }
  return false;
}

}  // namespace

std::string substring(std::string_view text, std::int32_t start, std::int32_t count) {
  checkCount(count, "SUBSTRING");
  return part(codePoints(text), std::int64_t{start} - 1, count);
}

std::string leftPart(std::string_view text, std::int32_t count) {
  checkCount(count, "LEFT");
  return part(codePoints(text), 0, count);
}

std::string rightPart(std::string_view text, std::int32_t count) {
  checkCount(count, "RIGHT");
  const auto characters = codePoints(text);
  const auto length = static_cast<std::int64_t>(characters.size());
  return part(characters, std::max<std::int64_t>(length - count, 0), count);
}

std::int32_t placeOf(std::string_view wanted, std::string_view text, std::int32_t start) {
  if (wanted.empty()) return 0;
  const auto characters = codePoints(text);
  const auto from = static_cast<std::size_t>(std::max(start - 1, 0));
  const auto place = characters.find(codePoints(wanted), from);
  return place == std::u32string::npos ? 0 : static_cast<std::int32_t>(place) + 1;
}

std::string replaced(std::string_view text, std::string_view wanted, std::string_view other) {
  if (wanted.empty()) return std::string(text);
  const auto characters = codePoints(text), pattern = codePoints(wanted);
  std::string result;
  std::size_t copied = 0;
  const auto same = [](char32_t a, char32_t b) { return folded(a) == folded(b); };
  for (auto at = characters.begin();;) {
    at = std::search(at, characters.end(), pattern.begin(), pattern.end(), same);
    const auto place = static_cast<std::size_t>(at - characters.begin());
    result += utf8(std::u32string_view(characters).substr(copied, place - copied));
    if (at == characters.end()) return result;
    result += other;
    at += static_cast<std::ptrdiff_t>(pattern.size());
    copied = place + pattern.size();
    if (result.size() > kMaxBytes)
      throw ValueError("7119: Attempting to grow a text beyond its maximum of 2147483647 bytes.");
  }
}

std::optional<std::string> stuffed(std::string_view text, std::int32_t start, std::int32_t count,
                                   std::string_view other) {
  const auto characters = codePoints(text);
  if (start < 1 || count < 0 || static_cast<std::size_t>(start) > characters.size())
    return std::nullopt;
  const auto first = static_cast<std::size_t>(start - 1);
  const auto behind = std::min(first + static_cast<std::size_t>(count), characters.size());
  return utf8(std::u32string_view(characters).substr(0, first)) + std::string(other) +
         utf8(std::u32string_view(characters).substr(behind));
}

std::string reversed(std::string_view text) {
  auto characters = codePoints(text);
  std::ranges::reverse(characters);
  return utf8(characters);
}

std::optional<std::string> repeated(std::string_view text, std::int32_t count, std::int32_t room,
                                    bool national) {
  if (count < 0) return std::nullopt;
  const std::size_t unit = national ? codePoints(text).size() : codePageBytes(text);
  const auto limit = static_cast<std::size_t>(room);
  auto times = static_cast<std::size_t>(count);
  if (room > 0 && unit > 0) times = std::min(times, limit / unit + 1);
  if (text.size() * times > kMaxBytes)
    throw ValueError("7119: Attempting to grow a text beyond its maximum of 2147483647 bytes.");
  std::string result;
  result.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i) result += text;
  if (room == 0) return result;
  if (national) return part(codePoints(result), 0, room);
  return std::string(codePageStart(result, limit));
}

std::optional<std::int32_t> asciiCode(std::string_view text) {
  if (text.empty()) return std::nullopt;
  if ((text[0] & 0x80) == 0) return text[0];
  throw ValueError("Not supported: ASCII of a character that is not ASCII");
}

std::optional<std::int32_t> unicodeCode(std::string_view text) {
  if (text.empty()) return std::nullopt;
  return static_cast<std::int32_t>(codePoints(text.substr(0, 4))[0]);
}

std::optional<std::string> asciiCharacter(std::int32_t code) {
  if (code < 0 || code > 255) return std::nullopt;
  if (code < 128 && code > 0) return std::string(1, static_cast<char>(code));
  throw ValueError("Not supported: CHAR of a code that is 0 or above 127");
}

std::optional<std::string> unicodeCharacter(std::int32_t code) {
  const bool surrogate = code >= 0xD800 && code < 0xE000;
  if (code < 0 || code > 0xFFFF) return std::nullopt;
  if (surrogate || code == 0)
    throw ValueError("Not supported: NCHAR of 0 or of half a surrogate pair");
  return utf8(std::u32string(1, static_cast<char32_t>(code)));
}

std::optional<std::string> numberText(double value, std::int32_t length, std::int32_t decimals) {
  if (length < 1 || length > 8000 || decimals < 0) return std::nullopt;
  const auto room = static_cast<std::size_t>(length);
  const std::string whole = fmt::format("{:.0f}", std::trunc(value));
  if (whole.size() > room) return std::string(room, '*');
  const std::size_t places = std::min<std::size_t>(static_cast<std::size_t>(decimals), 16);
  // No room for a point and a digit behind it: the fraction is rounded away.
  const std::size_t shown = room > whole.size() + 1 ? std::min(places, room - whole.size() - 1) : 0;
  // Halves go away from zero.
  const double scale = std::pow(10.0, static_cast<double>(shown));
  const double rounded = std::round(value * scale) / scale;
  const std::string text = fmt::format("{:.{}f}", std::isfinite(rounded) ? rounded : value, shown);
  if (text.size() > room) return std::string(room, '*');
  return std::string(room - text.size(), ' ') + text;
}

std::int32_t isNumeric(std::string_view text) {
  std::string_view rest = trimmed(text);
  if (rest.empty()) return 0;
  takeAnyOf(rest, {"+", "-"});
  const bool currency = takeAnyOf(rest, {"$", "\u00A2", "\u00A3", "\u00A4", "\u00A5", "\u20AC"});
  if (currency) takeAnyOf(rest, {"+", "-"});
  bool point = false, comma = false, digits = false;
  while (!rest.empty() && (isDigit(rest[0]) || rest[0] == ',' || (rest[0] == '.' && !point))) {
    point = point || rest[0] == '.';
    comma = comma || rest[0] == ',';
    digits = digits || isDigit(rest[0]);
    rest.remove_prefix(1);
  }
  if (rest.empty()) return 1;
  if (!digits || comma || currency || !takeAnyOf(rest, {"e", "E", "d", "D"})) return 0;
  takeAnyOf(rest, {"+", "-"});
  return !rest.empty() && std::ranges::all_of(rest, isDigit) ? 1 : 0;
}

std::int64_t narrowBytes(std::string_view text) {
  return static_cast<std::int64_t>(codePageBytes(text));
}

std::int64_t wideBytes(std::string_view text) {
  std::int64_t bytes = 0;
  for (const char32_t c : codePoints(text)) bytes += c > 0xFFFF ? 4 : 2;
  return bytes;
}

std::string_view narrowStart(std::string_view text, std::int32_t room) {
  return codePageStart(text, static_cast<std::size_t>(room));
}

std::string narrowPadded(std::string_view text, std::int32_t room) {
  std::string padded(text);
  const std::size_t bytes = codePageBytes(text);
  const auto limit = static_cast<std::size_t>(room);
  if (bytes < limit) padded.append(limit - bytes, ' ');
  return padded;
}

std::string_view fitted(std::string_view text, std::int32_t room, bool national,
                        std::string_view column) {
  const auto limit = static_cast<std::size_t>(room);
  const auto size = [=](std::string_view part) {
    return national ? codePoints(part).size() : codePageBytes(part);
  };
  std::size_t over = text.size() <= limit ? 0 : size(text);
  if (over <= limit) return text;
  std::string_view cut = text;
  for (; over > limit && cut.ends_with(' '); --over) cut.remove_suffix(1);
  if (over <= limit) return cut;
  throw ValueError(
      fmt::format("8152: String or binary data would be truncated: {} takes {} {}, not '{}'.",
                  column, room, national ? "characters" : "bytes", text));
}

std::string identifierText(std::string_view text) {
  std::string_view digits = text;
  while (digits.ends_with(' ')) digits.remove_suffix(1);
  if (digits.starts_with('{') && digits.size() >= 38 && digits[37] == '}') digits.remove_prefix(1);
  digits = digits.substr(0, 36);
  std::string result;
  for (std::size_t at = 0; at < digits.size(); ++at) {
    const bool dash = at == 8 || at == 13 || at == 18 || at == 23;
    const char c = collections::lowerCased(digits[at]);
    if (dash ? c != '-' : !isDigit(c) && (c < 'a' || c > 'f')) break;
    result += c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  if (result.size() == 36) return result;
  throw ValueError(
      "8169: Conversion failed when converting from a character string to uniqueidentifier.");
}

}  // namespace velmora::tsql::values
