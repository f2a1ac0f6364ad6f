#include "platform/suite/caller_string.h"

#include <algorithm>
#include <string>

#include "velmora/com/error.h"

namespace velmora::suite {

namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

/// Cuts what stands before `delimiter` off `rest`, and the delimiter with it; everything
/// when there is none.
std::string_view cutAt(std::string_view& rest, char delimiter) {
  const auto end = std::min(rest.find(delimiter), rest.size());
  const std::string_view piece = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return piece;
}

std::string_view cutValue(std::string_view& rest) {
  rest = trimmed(rest);
  if (!rest.starts_with('{')) return trimmed(cutAt(rest, ';'));
  rest.remove_prefix(1);
  const std::string_view value = cutAt(rest, '}');
  cutAt(rest, ';');
  return trimmed(value);
}

}  // namespace

std::vector<CallerProperty> readCallerString(std::string_view text) {
  std::vector<CallerProperty> properties;
  while (true) {
    const std::string_view key = trimmed(cutAt(text, '='));
    if (key.empty()) return properties;
    properties.push_back({key, cutValue(text)});
  }
}

collections::DictionaryRef callerProperties(std::string_view text) {
  auto values = com::make<collections::Dictionary>();
  for (const auto& [key, value] : readCallerString(text)) {
    if (values->Lookup(key))
      throw com::Error(com::error::kDuplicateKey, "ParseString",
                       "the connection string has the key \"" + std::string(key) + "\" twice");
    values->Add(key, value);
  }
  return values;
}

}  // namespace velmora::suite
