#pragma once

#include <span>
#include <string>
#include <string_view>

#include "velmora/collections/variant.h"

namespace velmora::collections {

/// The suite's string-formatting service: every "%n" (n a decimal number from 1)
/// in `text` becomes the n-th parameter's text, all in one pass, so that a "%1"
/// inside a parameter stays as it is. A number beyond the parameters, "%0" and a
/// "%" without a number stay as they stand; surplus parameters are ignored.
/// Null counts as empty text.
std::string FormatString(std::string_view text, std::span<const Variant> parameters);

}  // namespace velmora::collections
