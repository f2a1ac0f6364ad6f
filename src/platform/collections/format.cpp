#include "velmora/collections/format.h"

#include <charconv>

namespace velmora::collections {

namespace {

/// The parameter that a placeholder's digits name; nullptr when there is none.
const Variant* parameterFor(std::string_view digits, std::span<const Variant> parameters) {
  std::size_t number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (result.ec != std::errc() || number == 0 || number > parameters.size()) return nullptr;
  return &parameters[number - 1];
}

}  // namespace

std::string FormatString(std::string_view text, std::span<const Variant> parameters) {
  std::string formatted;
  while (true) {
    const std::size_t percent = text.find('%');
    formatted += text.substr(0, percent);
    if (percent == std::string_view::npos) return formatted;
    text.remove_prefix(percent);
    const std::size_t end = std::min(text.find_first_not_of("0123456789", 1), text.size());
    const Variant* parameter = parameterFor(text.substr(1, end - 1), parameters);
    if (parameter == nullptr) {
      formatted += text.substr(0, end);
    } else if (!parameter->isNull()) {
      formatted += parameter->toText();
    }
    text.remove_prefix(end);
  }
}

}  // namespace velmora::collections
