#include "platform/tsql/values/like.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "platform/tsql/values/code_points.h"

namespace velmora::tsql::values {
namespace {

struct Range {
  char32_t first, last;
};

/// What one place of a pattern takes.
struct Element {
  enum class Kind { any, one, set, character };
  Kind kind = Kind::character;
  char32_t character = 0;
  std::vector<Range> ranges;
  bool negated = false;

  bool takes(char32_t c) const {
    if (kind == Kind::character) return c == character;
    if (kind == Kind::one) return true;
    const bool inside = std::ranges::any_of(
        ranges, [=](const Range& range) { return c >= range.first && c <= range.last; });
    return inside != negated;
  }
};

class PatternReader {
 public:
  PatternReader(std::u32string pattern, char32_t escape)
      : pattern_(std::move(pattern)), escape_(escape) {}

  /// nullopt: the pattern matches nothing.
  std::optional<std::vector<Element>> read() {
    std::vector<Element> elements;
    while (at_ < pattern_.size()) {
      const bool escaped = takeEscape();
      const char32_t c = pattern_[at_++];
      if (!escaped && c == U'[') {
        auto set = readSet();
        if (!set) return std::nullopt;
        elements.push_back(std::move(*set));
      } else if (!escaped && c == U'%') {
        if (elements.empty() || elements.back().kind != Element::Kind::any)
          elements.push_back({Element::Kind::any, 0, {}, false});
      } else {
        const auto kind = !escaped && c == U'_' ? Element::Kind::one : Element::Kind::character;
        elements.push_back({kind, c, {}, false});
      }
    }
    return elements;
  }

 private:
  /// Steps over an escape that stands before a character.
  bool takeEscape() {
    if (escape_ == 0 || pattern_[at_] != escape_ || at_ + 1 == pattern_.size()) return false;
    ++at_;
    return true;
  }

  /// Behind the opening bracket, up to and with the closing one.
  std::optional<Element> readSet() {
    Element set{Element::Kind::set, 0, {}, false};
    if (at_ < pattern_.size() && pattern_[at_] == U'^') {
      set.negated = true;
      ++at_;
    }
    while (at_ < pattern_.size()) {
      const bool escaped = takeEscape();
      const char32_t c = pattern_[at_++];
      if (!escaped && c == U']') return set;
      const bool range =
          at_ + 1 < pattern_.size() && pattern_[at_] == U'-' && pattern_[at_ + 1] != U']';
      if (range) ++at_;
      if (range) takeEscape();
      set.ranges.push_back({c, range ? pattern_[at_++] : c});
    }
    return std::nullopt;
  }

  std::u32string pattern_;
  char32_t escape_;
  std::size_t at_ = 0;
};

/// Whether only blanks follow, where they need no counterpart.
bool isOver(std::u32string_view text, std::size_t at, bool loose) {
  return at == text.size() ||
         (loose && text.find_first_not_of(U' ', at) == std::u32string_view::npos);
}

/// Matches to the end of the text, going back to the last % where the way taken fails.
bool matches(std::u32string_view text, const std::vector<Element>& elements, bool loose) {
  std::size_t at = 0, element = 0, retryElement = elements.size() + 1, retryAt = 0;
  while (true) {
    if (element == elements.size() && isOver(text, at, loose)) return true;
    if (element < elements.size() && elements[element].kind == Element::Kind::any) {
      retryElement = ++element;
      retryAt = at;
    } else if (element < elements.size() && at < text.size() && elements[element].takes(text[at])) {
      ++element;
      ++at;
    } else if (retryElement <= elements.size() && retryAt < text.size()) {
      element = retryElement;
      at = ++retryAt;
    } else {
      return false;
    }
  }
}

}  // namespace

bool matchesPattern(std::string_view text, std::string_view pattern, std::string_view escape,
                    bool loose) {
  const auto escapes = codePoints(escape);
  const auto elements = PatternReader(codePoints(pattern), escapes.empty() ? 0 : escapes[0]).read();
  return elements && matches(codePoints(text), *elements, loose);
}

std::int32_t patternPlace(std::string_view text, std::string_view pattern, bool loose) {
  auto elements = PatternReader(codePoints(pattern), 0).read();
  if (!elements) return 0;
  const bool anywhere = !elements->empty() && elements->front().kind == Element::Kind::any;
  if (anywhere) elements->erase(elements->begin());
  const auto characters = codePoints(text);
  const std::size_t last = anywhere ? characters.size() : 1;
  for (std::size_t start = 0; start < last; ++start) {
    if (matches(std::u32string_view(characters).substr(start), *elements, loose))
      return static_cast<std::int32_t>(start) + 1;
  }
  return 0;
}

}  // namespace velmora::tsql::values
