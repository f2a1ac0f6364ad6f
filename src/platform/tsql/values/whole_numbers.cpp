#include "platform/tsql/values/whole_numbers.h"

#include <charconv>
#include <string>

#include "platform/tsql/values/value_error.h"

namespace velmora::tsql::values {
namespace {

std::string_view trimmed(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

}  // namespace

std::int64_t wholeNumber(std::string_view text, std::string_view target) {
  std::string_view digits = trimmed(text);
  if (digits.empty()) return 0;
  const bool plus = digits.starts_with('+');
  if (plus) digits.remove_prefix(1);
  std::int64_t number = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number);
  if (stop != end || error == std::errc::invalid_argument || (plus && digits.starts_with('-')))
    throw ValueError("245: Conversion failed when converting the text value '" + std::string(text) +
                     "' to data type " + std::string(target) + ".");
  if (error == std::errc::result_out_of_range)
    throw ValueError("248: The conversion of the text value '" + std::string(text) +
                     "' overflowed data type " + std::string(target) + ".");
  return number;
}

}  // namespace velmora::tsql::values
