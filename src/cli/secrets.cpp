#include "cli/secrets.h"

#include <array>
#include <cctype>

namespace velmora::cli {

namespace {

bool isLetter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool startsWithIgnoringCase(std::string_view text, std::string_view lowerCase) {
  if (text.size() < lowerCase.size()) return false;
  for (std::size_t i = 0; i < lowerCase.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(text[i])) != lowerCase[i]) return false;
  return true;
}

/// Length of "Password =" at the start of `text`, 0 when it starts otherwise.
std::size_t nameLength(std::string_view text) {
  for (const std::string_view name : std::array<std::string_view, 2>{"password", "pwd"}) {
    if (!startsWithIgnoringCase(text, name)) continue;
    const std::size_t equals = text.find_first_not_of(" \t", name.size());
    if (equals != std::string_view::npos && text[equals] == '=') return equals + 1;
  }
  return 0;
}

/// Where the value that starts at `start` ends: behind its closing quote, else
/// before the next ";". A value without a closing quote hides the whole rest.
std::size_t valueEnd(std::string_view text, std::size_t start) {
  start = text.find_first_not_of(" \t", start);
  if (start == std::string_view::npos) return text.size();
  const char quote = text[start] == '{' ? '}' : text[start];
  if (quote != '}' && quote != '"' && quote != '\'') {
    const auto end = text.find(';', start);
    return end == std::string_view::npos ? text.size() : end;
  }
  for (std::size_t i = start + 1; i < text.size(); ++i) {
    if (text[i] != quote) continue;
    if (i + 1 >= text.size() || text[i + 1] != quote) return i + 1;
    ++i;
  }
  return text.size();
}

}  // namespace

std::string withoutPasswords(std::string_view text) {
  std::string masked;
  for (std::size_t i = 0; i < text.size();) {
    const bool wordStart = i == 0 || !isLetter(text[i - 1]);
    const std::size_t length = wordStart ? nameLength(text.substr(i)) : 0;
    if (length == 0) {
      masked += text[i++];
      continue;
    }
    masked.append(text.substr(i, length)).append("***");
    i = valueEnd(text, i + length);
  }
  return masked;
}

}  // namespace velmora::cli
