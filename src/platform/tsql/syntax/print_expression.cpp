#include <algorithm>

#include "platform/tsql/syntax/operators.h"
#include "platform/tsql/syntax/print.h"
#include "platform/tsql/syntax/print_parts.h"

namespace velmora::tsql {
namespace {

template <typename Meaning>
const InfixOperator& infixOperator(Meaning meaning) {
  return *std::find_if(kInfixOperators.begin(), kInfixOperators.end(),
                       [meaning](const InfixOperator& op) {
                         const auto* held = std::get_if<Meaning>(&op.meaning);
                         return held && *held == meaning;
                       });
}

// How tight an expression holds together; what is written in one piece holds tightest.
constexpr auto kInOnePiece = tighterThan(Precedence::Unary);

struct PrecedenceOf {
  template <typename Node>
  Precedence operator()(const Node&) const {
    return kInOnePiece;
  }
  Precedence operator()(const UnaryExpression&) const { return Precedence::Unary; }
  Precedence operator()(const ArithmeticExpression& node) const {
    return infixOperator(node.rest.front().op).precedence;
  }
  Precedence operator()(const Comparison&) const { return Precedence::Comparison; }
  Precedence operator()(const BetweenCondition&) const { return Precedence::Comparison; }
  Precedence operator()(const InListCondition&) const { return Precedence::Comparison; }
  Precedence operator()(const InSubqueryCondition&) const { return Precedence::Comparison; }
  Precedence operator()(const QuantifiedComparison&) const { return Precedence::Comparison; }
  Precedence operator()(const LikeCondition&) const { return Precedence::Comparison; }
  Precedence operator()(const IsNullCondition&) const { return Precedence::Comparison; }
  Precedence operator()(const NotExpression&) const { return Precedence::Not; }
  Precedence operator()(const LogicalExpression& node) const {
    return infixOperator(node.op).precedence;
  }
};

class ExpressionPrinter {
 public:
  explicit ExpressionPrinter(std::string& out) : out_(out) {}

  // Values
  void operator()(const NullLiteral&) { out_ += "NULL"; }
  void operator()(const DefaultLiteral&) { out_ += "DEFAULT"; }
  void operator()(const IntegerLiteral& node) { out_ += node.digits; }
  void operator()(const DecimalLiteral& node) { out_ += node.text; }
  void operator()(const FloatLiteral& node) { out_ += node.text; }
  void operator()(const StringLiteral& node);
  void operator()(const HexLiteral& node) { out_ += "0x" + node.digits; }
  void operator()(const ParameterMarker&) { out_ += '?'; }
  void operator()(const VariableReference& node) { out_ += node.name; }
  void operator()(const SystemVariable& node) { out_ += node.name; }
  void operator()(const ColumnReference& node) { append(out_, node.column); }
  void operator()(const UnaryExpression& node);
  void operator()(const ArithmeticExpression& node);
  void operator()(const SimpleCase& node);
  void operator()(const SearchedCase& node);
  void operator()(const CastExpression& node);
  void operator()(const ConvertExpression& node);
  void operator()(const FunctionCall& node);
  void operator()(const ScalarSubquery& node) { subquery(node.query); }

  // Conditions
  void operator()(const Comparison& node);
  void operator()(const LogicalExpression& node);
  void operator()(const NotExpression& node);
  void operator()(const BetweenCondition& node);
  void operator()(const InListCondition& node);
  void operator()(const InSubqueryCondition& node);
  void operator()(const QuantifiedComparison& node);
  void operator()(const LikeCondition& node);
  void operator()(const IsNullCondition& node);
  void operator()(const ExistsCondition& node);

 private:
  // Parentheses go around what holds together more loosely than `loosest`.
  void operand(const ExpressionPtr& expression, Precedence loosest);
  void value(const ExpressionPtr& expression) { operand(expression, Precedence::Additive); }
  void predicate(const ExpressionPtr& expression, bool negated, const char* word);
  void subquery(const QueryPtr& query);
  void branches(const std::vector<CaseBranch>& branches, const ExpressionPtr& otherwise);
  void window(const WindowClause& window);

  std::string& out_;
};

void ExpressionPrinter::operand(const ExpressionPtr& expression, Precedence loosest) {
  const bool loose = std::visit(PrecedenceOf{}, expression->node) < loosest;
  if (loose) out_ += '(';
  append(out_, *expression);
  if (loose) out_ += ')';
}

void ExpressionPrinter::subquery(const QueryPtr& query) {
  out_ += '(';
  append(out_, *query);
  out_ += ')';
}

void ExpressionPrinter::operator()(const StringLiteral& node) {
  out_ += node.national ? "N'" : "'";
  for (const char c : node.value) {
    out_ += c;
    if (c == '\'') out_ += c;
  }
  out_ += '\'';
}

void ExpressionPrinter::operator()(const UnaryExpression& node) {
  out_ += std::find_if(kPrefixOperators.begin(), kPrefixOperators.end(),
                       [&node](const PrefixOperator& op) { return op.meaning == node.op; })
              ->text;
  operand(node.operand, kInOnePiece);  // two signs in a row would begin a comment
}

void ExpressionPrinter::operator()(const ArithmeticExpression& node) {
  const Precedence inside = tighterThan(infixOperator(node.rest.front().op).precedence);
  operand(node.first, inside);
  for (const ArithmeticExpression::Term& term : node.rest) {
    out_ += ' ';
    out_ += infixOperator(term.op).text;
    out_ += ' ';
    operand(term.operand, inside);
  }
}

void ExpressionPrinter::branches(const std::vector<CaseBranch>& branches,
                                 const ExpressionPtr& otherwise) {
  for (const CaseBranch& branch : branches) {
    out_ += " WHEN ";
    append(out_, *branch.when);
    out_ += " THEN ";
    append(out_, *branch.then);
  }
  appendClause(out_, "ELSE", otherwise);
  out_ += " END";
}

void ExpressionPrinter::operator()(const SimpleCase& node) {
  out_ += "CASE ";
  append(out_, *node.operand);
  branches(node.branches, node.otherwise);
}

void ExpressionPrinter::operator()(const SearchedCase& node) {
  out_ += "CASE";
  branches(node.branches, node.otherwise);
}

void ExpressionPrinter::operator()(const CastExpression& node) {
  out_ += node.attempt ? "try_cast(" : "cast(";
  append(out_, *node.operand);
  out_ += " AS ";
  append(out_, node.type);
  out_ += ')';
}

void ExpressionPrinter::operator()(const ConvertExpression& node) {
  out_ += node.attempt ? "try_convert(" : "convert(";
  append(out_, node.type);
  out_ += ", ";
  append(out_, *node.operand);
  if (node.style) {
    out_ += ", ";
    append(out_, *node.style);
  }
  out_ += ')';
}

void ExpressionPrinter::operator()(const FunctionCall& node) {
  out_ += node.name + "(";
  if (node.distinct) out_ += "DISTINCT ";
  if (node.star) out_ += '*';
  appendList(out_, node.arguments);
  out_ += ')';
  if (!node.withinGroup.empty()) {
    out_ += " WITHIN GROUP (ORDER BY ";
    appendList(out_, node.withinGroup);
    out_ += ')';
  }
  if (node.over) window(*node.over);
}

void ExpressionPrinter::window(const WindowClause& window) {
  out_ += " OVER (";
  if (!window.partitionBy.empty()) {
    out_ += "PARTITION BY ";
    appendList(out_, window.partitionBy);
  }
  if (!window.orderBy.empty()) {
    out_ += window.partitionBy.empty() ? "ORDER BY " : " ORDER BY ";
    appendList(out_, window.orderBy);
  }
  out_ += ')';
}

void ExpressionPrinter::operator()(const Comparison& node) {
  value(node.left);
  out_ += ' ';
  out_ += infixOperator(node.op).text;
  out_ += ' ';
  value(node.right);
}

void ExpressionPrinter::operator()(const LogicalExpression& node) {
  const InfixOperator& op = infixOperator(node.op);
  for (const ExpressionPtr& each : node.operands) {
    if (&each != &node.operands.front()) {
      out_ += ' ';
      out_ += op.text;
      out_ += ' ';
    }
    operand(each, tighterThan(op.precedence));
  }
}

void ExpressionPrinter::operator()(const NotExpression& node) {
  out_ += "NOT ";
  operand(node.operand, Precedence::Not);
}

void ExpressionPrinter::predicate(const ExpressionPtr& expression, bool negated, const char* word) {
  value(expression);
  out_ += negated ? " NOT " : " ";
  out_ += word;
  out_ += ' ';
}

void ExpressionPrinter::operator()(const BetweenCondition& node) {
  predicate(node.operand, node.negated, "BETWEEN");
  value(node.low);
  out_ += " AND ";
  value(node.high);
}

void ExpressionPrinter::operator()(const InListCondition& node) {
  predicate(node.operand, node.negated, "IN");
  out_ += '(';
  appendList(out_, node.items);
  out_ += ')';
}

void ExpressionPrinter::operator()(const InSubqueryCondition& node) {
  predicate(node.operand, node.negated, "IN");
  subquery(node.query);
}

void ExpressionPrinter::operator()(const QuantifiedComparison& node) {
  value(node.operand);
  out_ += ' ';
  out_ += infixOperator(node.op).text;
  out_ += node.all ? " ALL " : " ANY ";
  subquery(node.query);
}

void ExpressionPrinter::operator()(const LikeCondition& node) {
  predicate(node.operand, node.negated, "LIKE");
  value(node.pattern);
  appendClause(out_, "ESCAPE", node.escape);
}

void ExpressionPrinter::operator()(const IsNullCondition& node) {
  value(node.operand);
  out_ += node.negated ? " IS NOT NULL" : " IS NULL";
}

void ExpressionPrinter::operator()(const ExistsCondition& node) {
  out_ += "EXISTS ";
  subquery(node.query);
}

}  // namespace

void append(std::string& out, const Expression& expression) {
  std::visit(ExpressionPrinter(out), expression.node);
}

void append(std::string& out, const ExpressionPtr& expression) {
  append(out, *expression);
}

void append(std::string& out, const OrderItem& item) {
  append(out, *item.key);
  if (item.descending) out += " DESC";
}

void appendClause(std::string& out, std::string_view word, const ExpressionPtr& expression) {
  if (!expression) return;
  out += ' ';
  out += word;
  out += ' ';
  append(out, *expression);
}

std::string print(const Expression& expression) {
  std::string out;
  append(out, expression);
  return out;
}

}  // namespace velmora::tsql
