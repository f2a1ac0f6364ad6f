#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/tsql/syntax/position.h"

namespace velmora::tsql {

struct Expression;
using ExpressionPtr = std::unique_ptr<Expression>;
struct Query;
using QueryPtr = std::unique_ptr<Query>;

/// A name with its prefixes: `t`, `dbo.t`, `db.dbo.t`, `db..t` (an empty part), `t1.FID`.
/// Brackets and quotes are taken off, the letters keep their case.
struct QualifiedName {
  Position position;
  std::vector<std::string> qualifiers;
  std::string name;

  /// A table of the connection, `#t`, or of the batch, `@t`.
  bool isTemporary() const { return name.starts_with('#') || name.starts_with('@'); }
};

enum class TypeKind {
  Bit,
  TinyInt,
  SmallInt,
  Int,
  BigInt,
  Decimal,  // numeric as well
  Money,
  SmallMoney,
  Float,
  Real,
  Date,
  Time,
  DateTime,
  SmallDateTime,
  DateTime2,
  Char,
  VarChar,
  NChar,
  NVarChar,  // sysname is nvarchar(128)
  Text,
  NText,
  UniqueIdentifier,
};

struct DataType {
  Position position;
  TypeKind kind = TypeKind::Int;
  /// What stands in parentheses: the length of a text type, the precision of a decimal
  /// or float, the second's digits of a time. Absent when the text leaves it out.
  std::optional<int> size;
  /// The digits behind a decimal's point.
  std::optional<int> scale;
  /// varchar(max), nvarchar(max).
  bool max = false;
};

// Values -------------------------------------------------------------------------------

struct NullLiteral {};

/// `DEFAULT`: a value of INSERT ... VALUES or the right side of UPDATE ... SET only.
struct DefaultLiteral {};

/// Digits only; may exceed every integer type.
struct IntegerLiteral {
  std::string digits;
};

/// Digits with a point, as written ("1.10", ".5", "1."): the text decides precision and scale.
struct DecimalLiteral {
  std::string text;
};

/// A number with an exponent, as written.
struct FloatLiteral {
  std::string text;
};

/// 'text' or N'text', doubled quotes undone.
struct StringLiteral {
  std::string value;
  bool national = false;
};

/// 0x..., the digits behind the x (possibly none).
struct HexLiteral {
  std::string digits;
};

/// `?`; index counts from 0 in the order of the batch's text.
struct ParameterMarker {
  int index = 0;
};

/// `@name`, the at sign included.
struct VariableReference {
  std::string name;
};

/// `@@rowcount` and its like, both at signs included, in lower case.
struct SystemVariable {
  std::string name;
};

/// A column; also a date part where a function takes one (`dateadd(month, 1, d)`).
struct ColumnReference {
  QualifiedName column;
};

enum class UnaryOperator { Plus, Minus, BitNot };

struct UnaryExpression {
  UnaryOperator op = UnaryOperator::Plus;
  ExpressionPtr operand;
};

enum class ArithmeticOperator { Add, Subtract, Multiply, Divide, Modulo, BitAnd, BitOr, BitXor };

/// Operators of one precedence, applied from the left: `a - b + c` is one node with two
/// terms. Flat, so that a sum of thousands of terms costs neither stack nor depth.
struct ArithmeticExpression {
  struct Term {
    ArithmeticOperator op;
    Position position;  // of the operator
    ExpressionPtr operand;
  };
  ExpressionPtr first;
  std::vector<Term> rest;  // at least one; all multiplicative or all additive/bitwise
};

struct CaseBranch {
  ExpressionPtr when;  // a condition in a searched case, a value in a simple one
  ExpressionPtr then;
};

/// `case x when 1 then ... end`.
struct SimpleCase {
  ExpressionPtr operand;
  std::vector<CaseBranch> branches;
  ExpressionPtr otherwise;  // null without ELSE
};

/// `case when a = 1 then ... end`.
struct SearchedCase {
  std::vector<CaseBranch> branches;
  ExpressionPtr otherwise;  // null without ELSE
};

/// `cast(x as type)`.
struct CastExpression {
  ExpressionPtr operand;
  DataType type;
  bool attempt = false;  // try_cast: NULL where the value cannot be converted
};

/// `convert(type, x [, style])`.
struct ConvertExpression {
  DataType type;
  ExpressionPtr operand;
  ExpressionPtr style;   // null when left out
  bool attempt = false;  // try_convert
};

struct OrderItem {
  ExpressionPtr key;
  bool descending = false;
};

/// `over (partition by ... order by ...)`.
struct WindowClause {
  std::vector<ExpressionPtr> partitionBy;
  std::vector<OrderItem> orderBy;
};

/// Any function, aggregates included; the name in lower case.
struct FunctionCall {
  std::string name;
  std::vector<ExpressionPtr> arguments;
  bool distinct = false;  // count(distinct x)
  bool star = false;      // count(*); no arguments then
  std::optional<WindowClause> over;
  std::vector<OrderItem> withinGroup;  // string_agg(...) within group (order by ...)
};

/// `(select ...)` as one value.
struct ScalarSubquery {
  QueryPtr query;
};

// Conditions ---------------------------------------------------------------------------

enum class ComparisonOperator { Equal, NotEqual, Less, LessOrEqual, Greater, GreaterOrEqual };

/// `!<` is GreaterOrEqual, `!>` is LessOrEqual, `!=` is NotEqual.
struct Comparison {
  ComparisonOperator op = ComparisonOperator::Equal;
  ExpressionPtr left;
  ExpressionPtr right;
};

enum class LogicalOperator { And, Or };

/// Flat like ArithmeticExpression: at least two operands, all conditions.
struct LogicalExpression {
  LogicalOperator op = LogicalOperator::And;
  std::vector<ExpressionPtr> operands;
};

struct NotExpression {
  ExpressionPtr operand;
};

struct BetweenCondition {
  ExpressionPtr operand;
  ExpressionPtr low;
  ExpressionPtr high;
  bool negated = false;
};

struct InListCondition {
  ExpressionPtr operand;
  std::vector<ExpressionPtr> items;
  bool negated = false;
};

struct InSubqueryCondition {
  ExpressionPtr operand;
  QueryPtr query;
  bool negated = false;
};

/// `x = any (select ...)`, `x >= all (select ...)`; SOME is ANY.
struct QuantifiedComparison {
  ComparisonOperator op = ComparisonOperator::Equal;
  ExpressionPtr operand;
  QueryPtr query;
  bool all = false;
};

struct LikeCondition {
  ExpressionPtr operand;
  ExpressionPtr pattern;
  ExpressionPtr escape;  // null when left out
  bool negated = false;
};

struct IsNullCondition {
  ExpressionPtr operand;
  bool negated = false;
};

/// NOT EXISTS is a NotExpression around it.
struct ExistsCondition {
  QueryPtr query;
};

using ExpressionNode =
    std::variant<NullLiteral, DefaultLiteral, IntegerLiteral, DecimalLiteral, FloatLiteral,
                 StringLiteral, HexLiteral, ParameterMarker, VariableReference, SystemVariable,
                 ColumnReference, UnaryExpression, ArithmeticExpression, SimpleCase, SearchedCase,
                 CastExpression, ConvertExpression, FunctionCall, ScalarSubquery, Comparison,
                 LogicalExpression, NotExpression, BetweenCondition, InListCondition,
                 InSubqueryCondition, QuantifiedComparison, LikeCondition, IsNullCondition,
                 ExistsCondition>;

/// A value or a condition. The parser has checked which of the two its place takes: a
/// condition stands only in WHERE, HAVING, ON, IF, searched CASE and under AND, OR, NOT.
/// Parentheses leave no trace. The position is that of the first word or, for an operator
/// between operands, of the operator.
struct Expression {
  Position position;
  ExpressionNode node;
};

}  // namespace velmora::tsql
