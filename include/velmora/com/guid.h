#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

namespace velmora::com {

/// A 128-bit class or interface id in the usual text form
/// "63674864-0585-4486-A941-A6C25DDC12F8" (braces allowed when parsed).
struct Guid {
  std::array<std::uint8_t, 16> bytes{};

  // NOLINTNEXTLINE(modernize-use-nullptr): there is no pointer in <=>
  friend constexpr auto operator<=>(const Guid&, const Guid&) = default;

  /// Parses the text form, letter case ignored. Throws std::invalid_argument
  /// (a compile error in a constant expression) for anything else.
  static constexpr Guid parse(std::string_view text);

  /// Upper-case text form without braces.
  std::string toString() const;
};

namespace detail {
[[noreturn]] void throwBadGuid(std::string_view text);

constexpr int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}
}  // namespace detail

constexpr Guid Guid::parse(std::string_view text) {
  std::string_view rest = text;
  if (rest.size() == 38 && rest.front() == '{' && rest.back() == '}') rest = rest.substr(1, 36);
  if (rest.size() != 36) detail::throwBadGuid(text);
  Guid guid;
  std::size_t digits = 0;
  for (std::size_t i = 0; i < rest.size(); ++i) {
    const bool dashPlace = i == 8 || i == 13 || i == 18 || i == 23;
    if (dashPlace) {
      if (rest[i] != '-') detail::throwBadGuid(text);
      continue;
    }
    const int digit = detail::hexDigit(rest[i]);
    if (digit < 0) detail::throwBadGuid(text);
    auto& byte = guid.bytes[digits / 2];
    byte = static_cast<std::uint8_t>(digits % 2 == 0 ? digit * 16 : byte + digit);
    ++digits;
  }
  return guid;
}

}  // namespace velmora::com
