#pragma once

#include <string_view>
#include <vector>

#include "velmora/collections/dictionary.h"

namespace velmora::suite {

/// One "key=value" of the caller's string (sDsn), as views into it.
struct CallerProperty {
  std::string_view key, value;
};

/// The caller's string taken apart, in its order, a repeated key as often as it occurs.
///
/// Pairs are separated by ";". A value in braces runs to the first "}" and may hold ";" and
/// "="; what follows it up to the next ";" does not count. There are no quotes and no
/// escapes. Blanks, tabs and line ends around keys and values go. A key runs to the next "=";
/// without one the whole rest is a key with an empty value. Reading ends at an empty key.
std::vector<CallerProperty> readCallerString(std::string_view text);

/// The values of the caller's string by their keys, letter case ignored. Raises kDuplicateKey
/// naming a key that occurs twice.
collections::DictionaryRef callerProperties(std::string_view text);

}  // namespace velmora::suite
