#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora::ado::odbc {

// Texts go to and from a driver as UTF-16: what a "char" of a driver means depends on
// the driver, its settings and the process's locale, what a wide character means does not.

/// Nothing when `utf8` is no UTF-8.
std::optional<std::u16string> tryToWide(std::string_view utf8);
/// As tryToWide, raising kProvider that says where in the text it is broken.
std::u16string toWide(std::string_view utf8);

/// Nothing when `wide` has half a surrogate pair.
std::optional<std::string> tryToUtf8(std::u16string_view wide);
/// For messages: half a surrogate pair becomes U+FFFD.
std::string toReadableUtf8(std::u16string_view wide);

}  // namespace velmora::ado::odbc
