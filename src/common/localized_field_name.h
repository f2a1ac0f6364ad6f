#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// The column that holds a name in the caller's language: names are stored once
/// per language in columns that share a stem.
///
/// `stem` is the column, for instance "FName"; `language` the caller's code, letter
/// case ignored: "CHT" gives stem_CHT, "EN" stem_EN, anything else the stem itself,
/// or stem_CHS when `addChsSuffix` is set. `addAlias` appends " as " and the stem,
/// so that the result set keeps the plain name.
std::string LocalizedFieldName(std::string_view stem, std::string_view language,
                               bool addChsSuffix = false, bool addAlias = false);

}  // namespace velmora
