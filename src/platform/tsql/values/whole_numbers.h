#pragma once

#include <cstdint>
#include <string_view>

namespace velmora::tsql::values {

/// The whole number that a text says, blanks around it and a sign allowed; a text of blanks
/// is 0. `target` names the type asked for, in errors. Raises ValueError 245 for anything
/// else, 248 beyond bigint.
std::int64_t wholeNumber(std::string_view text, std::string_view target);

}  // namespace velmora::tsql::values
