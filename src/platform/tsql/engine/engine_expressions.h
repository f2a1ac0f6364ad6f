#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// DuckDB expressions for what its own functions do otherwise than SQL Server's.
/// Arguments and results are DuckDB SQL; errors are raised where a row reaches them, the
/// text beginning with SQL Server's number. NULL in, NULL out.
namespace velmora::tsql::engine {

/// a // b, a % b and a / b; a zero divisor is error 8134.
std::string quotient(std::string_view a, std::string_view b);
std::string remainder(std::string_view a, std::string_view b);
std::string ratio(std::string_view a, std::string_view b);

/// A text as a BIGINT; see values/whole_numbers.h. `target` is the name of the type wanted.
std::string wholeNumber(std::string_view text, std::string_view target);
/// A text checked to be a decimal, still as a text. Error 8114.
std::string decimalText(std::string_view text, std::string_view target);
/// A text as 0 or 1, and as a DOUBLE.
std::string textToBit(std::string_view text);
std::string textToFloat(std::string_view text, std::string_view target);

/// A text as a TIMESTAMP; NULL, or error 241, when it is none.
std::string tryTextToDateTime(std::string_view text);
std::string textToDateTime(std::string_view text);
/// How many Sundays begin a week between two times.
std::string weeksBetween(std::string_view from, std::string_view to);
/// The time of day and the date when the statement runs.
std::string now();

/// A text of at most `size` characters; a longer one that is not only blanks there is
/// error 8152 naming the column.
std::string fitted(std::string_view text, std::int64_t size, std::string_view column);
/// A length, negative ones being error 537.
std::string checkedLength(std::string_view length);
std::string substring(std::string_view text, std::string_view start, std::string_view length);
/// The place of `wanted` in `text` at or behind `start`; 0: none.
std::string positionFrom(std::string_view text, std::string_view wanted, std::string_view start);
/// Replaces without regard to letter case.
std::string replaced(std::string_view text, std::string_view wanted, std::string_view other);
/// A computed pattern of LIKE in small letters; brackets in it are refused.
std::string likePattern(std::string_view pattern);

}  // namespace velmora::tsql::engine
