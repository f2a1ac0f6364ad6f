#pragma once

#include <optional>
#include <string_view>

#include "velmora/collections/decimal.h"

namespace velmora::collections {

inline constexpr std::string_view kBlanks = " \t\r\n";

/// The number that `text` starts with, blanks before it left out:
/// [+-]digits[.digits][e[+-]digits], where the digits on one side of the point
/// may be missing. Empty when the text does not start with a number.
std::string_view leadingNumber(std::string_view text) noexcept;

/// The value of a text that leadingNumber answers, with the decimals it is
/// written with; nullopt when it does not fit a Decimal.
std::optional<Decimal> tryDecimal(std::string_view number);

}  // namespace velmora::collections
