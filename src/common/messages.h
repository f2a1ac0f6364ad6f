#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "velmora/collections/variant.h"

namespace velmora {

/// `text`, a message in simplified Chinese, in `language` ("CHT", "EN"; "chs" gives the
/// text itself). Blanks at its ends stay, so that messages can be put together. Never
/// fails: without a loader or a translation the answer is the text itself. The
/// thread's pending error information stays as it was.
std::string LoadMessage(std::string_view text, std::string_view language);

/// LoadMessage with "%1", "%2" ... of the translated text replaced by the parameters.
std::string LoadMessageFmt(std::string_view text, std::string_view language,
                           std::initializer_list<collections::Variant> parameters);

}  // namespace velmora
