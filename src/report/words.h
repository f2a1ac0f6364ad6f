#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace velmora::report {

/// A form's own words in the reader's language, by their wording in simplified Chinese: the
/// heads of its filters, say.
using Words = std::function<std::string(std::string_view)>;

}  // namespace velmora::report
