#pragma once

#include <array>
#include <string_view>
#include <variant>

#include "platform/tsql/syntax/ast_expression.h"

namespace velmora::tsql {

/// How tight an operator binds, from loose to tight.
enum class Precedence { Or, And, Not, Comparison, Additive, Multiplicative, Unary };

/// What may follow a value beside a comparison: `is`, `in`, `like`, `between` and their
/// negations with `not`.
enum class PredicateWord { Is, In, Like, Between, Not };

struct InfixOperator {
  std::string_view text;
  Precedence precedence;
  std::variant<LogicalOperator, PredicateWord, ComparisonOperator, ArithmeticOperator> meaning;
};

/// The first text of a meaning is the one that is printed.
inline constexpr auto kInfixOperators = std::to_array<InfixOperator>({
    {"OR", Precedence::Or, LogicalOperator::Or},
    {"AND", Precedence::And, LogicalOperator::And},
    {"IS", Precedence::Comparison, PredicateWord::Is},
    {"IN", Precedence::Comparison, PredicateWord::In},
    {"LIKE", Precedence::Comparison, PredicateWord::Like},
    {"BETWEEN", Precedence::Comparison, PredicateWord::Between},
    {"NOT", Precedence::Comparison, PredicateWord::Not},
    {"=", Precedence::Comparison, ComparisonOperator::Equal},
    {"<>", Precedence::Comparison, ComparisonOperator::NotEqual},
    {"!=", Precedence::Comparison, ComparisonOperator::NotEqual},
    {"<", Precedence::Comparison, ComparisonOperator::Less},
    {"<=", Precedence::Comparison, ComparisonOperator::LessOrEqual},
    {"!>", Precedence::Comparison, ComparisonOperator::LessOrEqual},
    {">", Precedence::Comparison, ComparisonOperator::Greater},
    {">=", Precedence::Comparison, ComparisonOperator::GreaterOrEqual},
    {"!<", Precedence::Comparison, ComparisonOperator::GreaterOrEqual},
    {"+", Precedence::Additive, ArithmeticOperator::Add},
    {"-", Precedence::Additive, ArithmeticOperator::Subtract},
    {"&", Precedence::Additive, ArithmeticOperator::BitAnd},
    {"|", Precedence::Additive, ArithmeticOperator::BitOr},
    {"^", Precedence::Additive, ArithmeticOperator::BitXor},
    {"*", Precedence::Multiplicative, ArithmeticOperator::Multiply},
    {"/", Precedence::Multiplicative, ArithmeticOperator::Divide},
    {"%", Precedence::Multiplicative, ArithmeticOperator::Modulo},
});

struct PrefixOperator {
  std::string_view text;
  UnaryOperator meaning;
};

inline constexpr auto kPrefixOperators = std::to_array<PrefixOperator>(
    {{"+", UnaryOperator::Plus}, {"-", UnaryOperator::Minus}, {"~", UnaryOperator::BitNot}});

constexpr Precedence tighterThan(Precedence precedence) {
  return static_cast<Precedence>(static_cast<int>(precedence) + 1);
}

}  // namespace velmora::tsql
