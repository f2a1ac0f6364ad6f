#pragma once

#include <string_view>

#include "velmora/collections/dictionary.h"

namespace velmora::settlement {

// A settlement row says who was settled against whom: plain keys for its own document
// entry, keys with "_SRC" for the counterpart. Its mirror says the same from the other
// end.

/// What describes the two documents, by key of the row: "1|column" of the first
/// recordset's row, "2|column" of the second's.
collections::DictionaryRef BuildCopyMap();

/// The keys that a row and its mirror exchange: key → key_SRC.
collections::DictionaryRef BuildMirrorMap();

/// Exchanges the values under two keys; an absent one reads as Empty and is created.
/// Always true.
bool SwapValues(collections::Dictionary& row, std::string_view first, std::string_view second);

}  // namespace velmora::settlement
