#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "report/model.h"

namespace velmora::report::workbook {

/// `text` as a cell holds it: characters that XML forbids and bytes that are no UTF-8 become
/// U+FFFD, "_x0041_" is kept from being read as "A", and beyond 32,767 characters it ends in an
/// ellipsis.
std::string cellText(std::string_view text);

/// Whether cellText cuts it.
bool isCut(std::string_view text);

/// The first `size` UTF-16 units of a text, never half a character.
std::string_view firstUnits(std::string_view text, std::size_t size);

/// Whether a workbook's number, which is binary and shown with 15 digits, is this amount to the
/// last digit.
bool isExact(const Decimal& amount);

/// "'Name'!A1", or with `absolute` "'Name'!$A$1".
std::string cellName(std::string_view sheet, std::uint32_t row, std::size_t column,
                     bool absolute = false);
/// "A".
std::string columnName(std::size_t column);

/// Names for sheets: at most 31 characters of those allowed, no two alike.
class SheetNames {
 public:
  /// The name for the `part`-th sheet, from 1, of what is titled so.
  std::string add(std::string_view title, std::size_t part = 1);

 private:
  std::set<std::string> taken_;
};

}  // namespace velmora::report::workbook
