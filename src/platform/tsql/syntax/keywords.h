#pragma once

#include <string_view>

namespace velmora::tsql {

/// A word that T-SQL reserves: it names something only in brackets or quotes. Letter case
/// has no meaning.
bool isReservedWord(std::string_view word);

}  // namespace velmora::tsql
