#include "platform/tsql/syntax/text_scan.h"

#include <algorithm>

namespace velmora::tsql {

std::size_t skipQuoted(std::string_view text, std::size_t start, char close) {
  std::size_t at = text.find(close, start + 1);
  while (at != kNotClosed && at + 1 < text.size() && text[at + 1] == close) {
    at = text.find(close, at + 2);
  }
  return at == kNotClosed ? kNotClosed : at + 1;
}

std::size_t skipBlockComment(std::string_view text, std::size_t start) {
  int depth = 1;
  for (std::size_t at = start + 2; at + 1 < text.size(); ++at) {
    const std::string_view pair = text.substr(at, 2);
    if (pair == "/*") {
      ++depth;
      ++at;
    } else if (pair == "*/") {
      if (--depth == 0) return at + 2;
      ++at;
    }
  }
  return kNotClosed;
}

std::size_t skipLine(std::string_view text, std::size_t start) {
  return std::min(text.find('\n', start), text.size());
}

char closingQuote(char open) {
  switch (open) {
    case '\'':
    case '"':
      return open;
    case '[':
      return ']';
    default:
      return 0;
  }
}

std::string unquoted(std::string_view quoted) {
  const char close = quoted.back();
  std::string content;
  content.reserve(quoted.size());
  for (std::size_t i = 1; i + 1 < quoted.size(); ++i) {
    content += quoted[i];
    if (quoted[i] == close) ++i;
  }
  return content;
}

std::string lowered(std::string_view word) {
  std::string result(word);
  std::transform(result.begin(), result.end(), result.begin(), asciiLower);
  return result;
}

}  // namespace velmora::tsql
