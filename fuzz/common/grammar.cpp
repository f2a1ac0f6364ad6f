#include "common/grammar.h"

#include <iterator>
#include <sstream>

#include "common/fuzz.h"

namespace velmora::fuzz {
namespace {

/// The next {name} in `text`; at its end when there is none. Other braces are text.
struct Reference {
  std::size_t begin = std::string_view::npos;
  std::size_t end = 0;
};

Reference nextReference(std::string_view text) {
  for (std::size_t at = text.find('{'); at != std::string_view::npos; at = text.find('{', at + 1)) {
    const std::size_t end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz", at + 1);
    if (end != std::string_view::npos && end > at + 1 && text[end] == '}') return {at, end + 1};
  }
  return {};
}

}  // namespace

std::size_t anyOf(Random& random, std::size_t size) {
  return random() % size;
}

Grammar::Grammar(std::string_view rules) {
  std::istringstream lines{std::string(rules)};
  Rule* rule = nullptr;
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.front() == '#') continue;
    if (line.front() != ' ') {
      rule = &rules_[line];
      continue;
    }
    line.erase(0, line.find_first_not_of(' '));
    if (const auto mark = line.find("\\n"); mark != std::string::npos) line.replace(mark, 2, "\n");
    (nextReference(line).end == 0 ? rule->plain : rule->nested).push_back(line);
    rule->all.push_back(std::move(line));
  }
}

std::string Grammar::text(const std::string& rule, Random& random, int depth) const {
  const auto found = rules_.find(rule);
  require(found != rules_.end(), "the grammar lacks a rule", rule);
  const auto& choice = depth > 0 ? found->second.all : found->second.plain;
  return expanded(choice[anyOf(random, choice.size())], random, depth);
}

std::string Grammar::anyText(Random& random, int depth) const {
  const Rule& rule = any(random);
  return expanded(rule.all[anyOf(random, rule.all.size())], random, depth);
}

std::string Grammar::around(std::string_view inner, Random& random) const {
  const Rule& rule = any(random);
  if (rule.nested.empty()) return std::string(inner);
  const std::string& outer = rule.nested[anyOf(random, rule.nested.size())];
  const Reference part = nextReference(outer);
  return outer.substr(0, part.begin) + std::string(inner) +
         expanded(outer.substr(part.end), random, 1);
}

const Grammar::Rule& Grammar::any(Random& random) const {
  return std::next(rules_.begin(), static_cast<std::ptrdiff_t>(anyOf(random, rules_.size())))
      ->second;
}

std::string Grammar::expanded(std::string_view alternative, Random& random, int depth) const {
  std::string result;
  while (!alternative.empty()) {
    const auto [begin, end] = nextReference(alternative);
    result += alternative.substr(0, begin);
    if (end == 0) break;
    result += text(std::string(alternative.substr(begin + 1, end - begin - 2)), random, depth - 1);
    alternative.remove_prefix(end);
  }
  return result;
}

}  // namespace velmora::fuzz
