#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmora {

/// `text` with a-z as capitals; other characters stay.
std::string upperCased(std::string_view text);

/// `text` without the space characters around it.
std::string_view trimmed(std::string_view text) noexcept;

/// Cuts the first piece off `rest`, which goes on behind `delimiter`. Without one
/// the whole rest is the piece and nothing is left.
std::string_view cutAt(std::string_view& rest, char delimiter) noexcept;

/// The first `size` characters (code points) of UTF-8 `text`.
std::string_view firstCharacters(std::string_view text, std::size_t size) noexcept;

}  // namespace velmora
