#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmora::report {

/// Columns that UTF-8 `text` takes on a terminal: East Asian wide and full-width
/// characters two, combining marks none, everything else one. A byte that is not
/// UTF-8 counts as one column.
std::size_t displayWidth(std::string_view text) noexcept;

/// `text` fit for one line of a terminal: tabs and line ends become a blank, other
/// control characters (an escape sequence in a document's text, say) a "?".
std::string singleLine(std::string_view text);

}  // namespace velmora::report
