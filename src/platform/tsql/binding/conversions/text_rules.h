#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/tsql/binding/bound.h"

namespace velmora::tsql {

/// What a text is compared, grouped and sorted by: small letters, without trailing
/// blanks. Other types are their own key.
std::string keySql(const Bound& value);

/// The text with trailing blanks cut and letters made small, where that is known without
/// the engine (ASCII and ideographs).
std::optional<std::string> foldedText(std::string_view text);

/// `value LIKE pattern`, letter case ignored; see values/like.h. `escape` is a character or
/// nothing; `loose`: neither side is a national text.
BoundCondition likeCondition(const Bound& value, const Bound& pattern, std::string_view escape,
                             bool loose);

/// The start of a text that has room in a text of `type`, which has a length.
std::string startSql(std::string_view text, const SqlType& type);

/// `value` cut, padded or left alone so that it is a text of `type`, as a cast does.
Bound cutTo(const Bound& value, const SqlType& type);

/// `value` as stored in a column: a longer text than the column takes is error 8152.
/// `column` is the name to show.
Bound fittedTo(const Bound& value, const SqlType& type, std::string_view column);

}  // namespace velmora::tsql
