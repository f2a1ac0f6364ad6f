#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The functions of texts. Places count from 1, in characters.
namespace velmora::tsql::values {

/// `count` characters from `start`; places before the first count against the count. Error 537
/// for a negative count.
std::string substring(std::string_view text, std::int32_t start, std::int32_t count);
/// The start and the end of a text; error 537 for a negative count.
std::string leftPart(std::string_view text, std::int32_t count);
std::string rightPart(std::string_view text, std::int32_t count);

/// The place of `wanted` in `text` at or behind `start`; 0: none. Both in small letters.
std::int32_t placeOf(std::string_view wanted, std::string_view text, std::int32_t start);
/// Every `wanted` replaced, letters in any case.
std::string replaced(std::string_view text, std::string_view wanted, std::string_view other);
/// `count` characters from `start` replaced; NULL where the start is not in the text or the
/// count is negative.
std::optional<std::string> stuffed(std::string_view text, std::int32_t start, std::int32_t count,
                                   std::string_view other);
std::string reversed(std::string_view text);
/// NULL for a negative count; at most `room` bytes of the code page, or characters when
/// `national`; 0: no limit but 2 GB, beyond which error 7119 is raised.
std::optional<std::string> repeated(std::string_view text, std::int32_t count, std::int32_t room,
                                    bool national);

/// The code of the first character: of char and varchar its byte, NULL for an empty text.
std::optional<std::int32_t> asciiCode(std::string_view text);
std::optional<std::int32_t> unicodeCode(std::string_view text);
/// The character of a code: below 128, and below 65536; NULL for any other.
std::optional<std::string> asciiCharacter(std::int32_t code);
std::optional<std::string> unicodeCharacter(std::int32_t code);

/// A number right-justified in `length` characters with `decimals` of its fraction; stars where
/// its whole part has no room.
std::optional<std::string> numberText(double value, std::int32_t length, std::int32_t decimals);

/// Whether a text reads as a number of some type: 1 or 0.
std::int32_t isNumeric(std::string_view text);

/// The bytes of a text as char and varchar hold it, and as nchar and nvarchar do.
std::int64_t narrowBytes(std::string_view text);
std::int64_t wideBytes(std::string_view text);

/// The start of a char or varchar that has at most `room` bytes of the code page.
std::string_view narrowStart(std::string_view text, std::int32_t room);
/// A char of `room` bytes: blanks are put behind the text.
std::string narrowPadded(std::string_view text, std::int32_t room);
/// A text for a char or varchar column of `room` bytes, or, when `national`, an nchar or
/// nvarchar column of `room` characters; blanks at the end may go, else error 8152 names it.
std::string_view fitted(std::string_view text, std::int32_t room, bool national,
                        std::string_view column);

/// A text as a unique identifier in its one form; error 8169.
std::string identifierText(std::string_view text);

}  // namespace velmora::tsql::values
