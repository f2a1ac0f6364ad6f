#pragma once

#include <string>
#include <string_view>

namespace velmora::cli {

/// `text` with every "Password=..." and "PWD=..." of a connection string in it
/// masked, for messages and answers.
std::string withoutPasswords(std::string_view text);

}  // namespace velmora::cli
