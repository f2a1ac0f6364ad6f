#pragma once

#include <string>
#include <string_view>

namespace velmora::tsql::values {

/// The characters of a text in valid UTF-8, and the text of characters.
std::u32string codePoints(std::string_view text);
std::string utf8(std::u32string_view characters);

/// The bytes of a text in the code page of char and varchar: one for ASCII, else two.
std::size_t codePageBytes(std::string_view text);
/// The start of a text that has at most `bytes` bytes there.
std::string_view codePageStart(std::string_view text, std::size_t bytes);

}  // namespace velmora::tsql::values
