#pragma once

#include <cstddef>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::fuzz {

using Random = std::minstd_rand;

/// One of `size` things.
std::size_t anyOf(Random& random, std::size_t size);

/// Makes texts by the rules of a file; for its form see grammars/tsql.grammar.
class Grammar {
 public:
  explicit Grammar(std::string_view rules);

  /// What `rule` may stand for, with rules inside one another `depth` deep.
  std::string text(const std::string& rule, Random& random, int depth) const;
  /// What any rule may stand for.
  std::string anyText(Random& random, int depth) const;
  /// `inner` in the place of a part of something longer, for instance as an argument.
  std::string around(std::string_view inner, Random& random) const;

 private:
  struct Rule {
    std::vector<std::string> all;
    std::vector<std::string> plain;   // those without rules inside
    std::vector<std::string> nested;  // the others
  };
  const Rule& any(Random& random) const;
  std::string expanded(std::string_view alternative, Random& random, int depth) const;

  std::map<std::string, Rule> rules_;
};

}  // namespace velmora::fuzz
