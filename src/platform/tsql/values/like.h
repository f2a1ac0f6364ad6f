#pragma once

#include <cstdint>
#include <string_view>

/// The patterns of LIKE and PATINDEX: % any characters, _ one, [abc], [a-c] and [^a-c] one of a
/// set or none of it; a bracket that is not closed, and an empty set, match nothing. Text and
/// pattern come in small letters, so that letter case has no meaning.
namespace velmora::tsql::values {

/// Whether the whole text matches. The character of `escape` (or none, when it is empty) stands
/// before one that is meant as it is. With `loose` blanks at the text's end need no counterpart
/// in the pattern, as in char and varchar.
bool matchesPattern(std::string_view text, std::string_view pattern, std::string_view escape,
                    bool loose);

/// The 1-based place of the first character where the pattern matches; 0: nowhere.
std::int32_t patternPlace(std::string_view text, std::string_view pattern, bool loose);

}  // namespace velmora::tsql::values
