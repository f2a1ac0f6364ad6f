// How libFuzzer changes an input of a language with a grammar: by tokens and whole
// parentheses instead of bytes, with what the grammar makes in their place. A few inputs are
// changed by bytes all the same.

#include <algorithm>
#include <cctype>
#include <cstring>

#include "common/fuzz.h"
#include "common/grammar.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace velmora::fuzz {
namespace {

const Grammar& grammar() {
  static const Grammar rules(sourceFile("grammars/" VELMORA_FUZZ_GRAMMAR));
  return rules;
}

struct Span {
  std::size_t begin = 0;
  std::size_t end = 0;

  std::string_view in(std::string_view text) const { return text.substr(begin, end - begin); }
};

bool isWordPart(unsigned char c) {
  return std::isalnum(c) != 0 || c >= 0x80 || std::strchr("_@#$.", c) != nullptr;
}

bool isQuote(char c) {
  return c == '\'' || c == '"';
}

/// 1 for an opening parenthesis, -1 for a closing one.
int nesting(char c) {
  constexpr std::string_view open = "([{", close = ")]}";
  if (open.find(c) != std::string_view::npos) return 1;
  return close.find(c) != std::string_view::npos ? -1 : 0;
}

/// Words, numbers, quoted texts, single signs; blanks fall between them.
std::vector<Span> tokens(std::string_view text) {
  std::vector<Span> found;
  for (std::size_t at = 0; at < text.size();) {
    const auto first = static_cast<unsigned char>(text[at]);
    Span token{at, at + 1};
    if (std::isspace(first) != 0) {
      ++at;
      continue;
    }
    if (isQuote(text[at])) {
      token.end = std::min(text.find(text[at], at + 1), text.size() - 1) + 1;
    } else if (first != 0 && isWordPart(first)) {
      while (token.end < text.size() && text[token.end] != 0 &&
             isWordPart(static_cast<unsigned char>(text[token.end])))
        ++token.end;
    }
    found.push_back(token);
    at = token.end;
  }
  return found;
}

/// From one token to the end of the parentheses it opens, if it does or a word before them.
Span anySpan(std::string_view text, Random& random) {
  const std::vector<Span> all = tokens(text);
  if (all.empty()) return {};
  std::size_t at = anyOf(random, all.size());
  Span span = all[at];
  if (at + 1 < all.size() && nesting(text[all[at + 1].begin]) > 0 && anyOf(random, 2) == 0) ++at;
  for (int depth = 0; at < all.size(); ++at) {
    depth += nesting(text[all[at].begin]);
    if (depth <= 0) break;
    span.end = all[std::min(at + 1, all.size() - 1)].end;
  }
  return span;
}

std::string replaced(std::string_view text, Span span, std::string_view by) {
  std::string result(text.substr(0, span.begin));
  result.append(by).append(text.substr(span.end));
  return result;
}

std::string mutated(std::string_view text, Random& random) {
  constexpr int kDepth = 4;
  const int depth = 1 + static_cast<int>(anyOf(random, kDepth));
  const Span span = anySpan(text, random);
  switch (anyOf(random, 8)) {
    case 0:
      return grammar().text("input", random, depth + 1);
    case 1:
      return replaced(text, span, "");
    case 2:
      return replaced(text, {span.end, span.end}, " " + std::string(span.in(text)));
    case 3: {
      const Span other = anySpan(text, random);
      return replaced(text, span, other.in(text));
    }
    case 4:
      return replaced(text, span, grammar().around(span.in(text), random));
    case 5:
      return replaced(text, {span.end, span.end}, " " + grammar().anyText(random, 1));
    default:
      return replaced(text, span, grammar().anyText(random, depth));
  }
}

std::size_t give(const std::string& text, std::uint8_t* data, std::size_t most) {
  const std::size_t size = std::min(text.size(), most);
  std::memcpy(data, text.data(), size);
  return size;
}

std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace
}  // namespace velmora::fuzz

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned int seed) {
  using namespace velmora::fuzz;
  Random random(seed);
  if (anyOf(random, 10) == 0) return LLVMFuzzerMutate(data, size, most);
  std::string text(textOf(data, size));
  for (std::size_t changes = 1 + anyOf(random, 3); changes > 0; --changes)
    text = mutated(text, random);
  return give(text, data, most);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* first, std::size_t firstSize,
                                                 const std::uint8_t* second, std::size_t secondSize,
                                                 std::uint8_t* out, std::size_t most,
                                                 unsigned int seed) {
  using namespace velmora::fuzz;
  Random random(seed);
  const std::string_view text = textOf(first, firstSize), other = textOf(second, secondSize);
  return give(replaced(text, anySpan(text, random), anySpan(other, random).in(other)), out, most);
}
