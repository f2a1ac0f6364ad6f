#pragma once

#include <string>
#include <string_view>

namespace velmora::com {

/// The text of a file; empty when there is none. Raises com::Error naming it when
/// it cannot be read.
std::string readFileIfPresent(const std::string& path);

/// Puts `text` in place of the file in one step: whoever reads it sees the old or
/// the new text. Makes missing folders. Raises com::Error naming the file.
void replaceFile(const std::string& path, std::string_view text);

}  // namespace velmora::com
