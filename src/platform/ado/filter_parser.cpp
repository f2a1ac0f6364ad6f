#include "platform/ado/filter_parser.h"

#include <algorithm>
#include <utility>

#include "platform/ado/filter_lexer.h"
#include "velmora/collections/letter_case.h"
#include "velmora/com/error.h"

namespace velmora::ado {

namespace {

using collections::Date;
using collections::Decimal;
using Kind = FilterToken::Kind;
using Operation = Comparison::Operation;

Operation operationOf(std::string_view text) {
  if (text == "<>") return Operation::notEqual;
  if (text == "<=") return Operation::lessOrEqual;
  if (text == ">=") return Operation::greaterOrEqual;
  if (text == "<") return Operation::less;
  if (text == ">") return Operation::greater;
  return Operation::equal;
}

std::optional<std::int64_t> wholeNumber(const Decimal& number) {
  constexpr std::int64_t limit = 1'000'000'000'000'000'000;
  if (number.truncated(0) != number || number.abs() > Decimal(limit)) return std::nullopt;
  return number.toInt64();
}

/// Criteria of one recordset: "and" binds tighter than "or".
class Parser {
 public:
  Parser(std::string_view criteria, const std::vector<FieldDefinition>& fields)
      : criteria_(criteria), fields_(fields), lexer_(criteria), token_(lexer_.next()) {}

  FilterCriteria parse() {
    if (token_.kind == Kind::end) return {};
    std::vector<FilterCriteria::Part> parts = parseParts();
    if (token_.is("or")) {
      // Nothing is common to the alternatives: the whole is one part.
      AnyOf any{{joined(std::move(parts))}};
      while (takeKeyword("or")) any.parts.push_back(joined(parseParts()));
      parts.clear();
      parts.push_back({{std::move(any)}, std::string(criteria_.substr(0, end_))});
    }
    if (token_.kind != Kind::end) lexer_.fail("\"and\", \"or\" or the end", token_);
    return FilterCriteria(std::move(parts));
  }

 private:
  FilterToken take() {
    end_ = token_.end;
    return std::exchange(token_, lexer_.next());
  }

  bool takeKeyword(std::string_view keyword) {
    if (!token_.is(keyword)) return false;
    take();
    return true;
  }

  static Criterion joined(std::vector<FilterCriteria::Part> parts) {
    if (parts.size() == 1) return std::move(parts.front().criterion);
    AllOf all;
    for (auto& part : parts) all.parts.push_back(std::move(part.criterion));
    return {std::move(all)};
  }

  /// criterion [and criterion ...]
  std::vector<FilterCriteria::Part> parseParts() {
    std::vector<FilterCriteria::Part> parts;
    do {
      const std::size_t begin = token_.begin;
      Criterion criterion = parseCriterion();
      parts.push_back({std::move(criterion), std::string(criteria_.substr(begin, end_ - begin))});
    } while (takeKeyword("and"));
    return parts;
  }

  Criterion parseCriterion() {
    if (token_.kind == Kind::open) return parseGroup();
    return parseComparison();
  }

  Criterion parseGroup() {
    constexpr int deepest = 100;
    if (++depth_ > deepest) lexer_.fail("at most 100 groups inside each other", token_);
    take();
    AnyOf any;
    do {
      any.parts.push_back(joined(parseParts()));
    } while (takeKeyword("or"));
    if (token_.kind != Kind::close) lexer_.fail("\"and\", \"or\" or \")\"", token_);
    take();
    --depth_;
    if (any.parts.size() == 1) return std::move(any.parts.front());
    return {std::move(any)};
  }

  Criterion parseComparison() {
    const std::size_t field = takeColumn();
    if (takeKeyword("like")) return {parsePattern(field)};
    if (token_.kind != Kind::operation) lexer_.fail("an operator (= <> < > <= >= like)", token_);
    const Operation operation = operationOf(take().text);
    if (token_.is("null")) return {parseNullTest(field, operation)};
    Comparison comparison{field, operation, {}, {}};
    setValue(comparison);
    take();
    return {std::move(comparison)};
  }

  std::size_t takeColumn() {
    if (token_.kind != Kind::name) lexer_.fail("a column", token_);
    const FilterToken name = take();
    const auto found = std::ranges::find_if(fields_, [&name](const FieldDefinition& field) {
      return collections::equalsIgnoringCase(field.name, name.text);
    });
    if (found == fields_.end())
      throw com::Error(
          com::error::kAdoItemNotFound, "ADODB.Recordset",
          "Filter \"" + std::string(criteria_) + "\": there is no column '" + name.text + "'");
    return static_cast<std::size_t>(found - fields_.begin());
  }

  NullTest parseNullTest(std::size_t field, Operation operation) {
    if (operation != Operation::equal && operation != Operation::notEqual)
      lexer_.fail("a value; null goes with = and <> only", token_);
    take();
    return {field, operation == Operation::equal};
  }

  Pattern parsePattern(std::size_t field) {
    if (kindOf(fields_[field].type) != DataKind::text)
      lexer_.fail("an operator other than like; column '" + fields_[field].name + "' is no text",
                  token_);
    if (token_.kind != Kind::text) lexer_.fail("a pattern in quotes", token_);
    const auto isWildcard = [](char c) { return c == '*' || c == '%'; };
    Pattern pattern{field, collections::lowerCased(token_.text), false, false};
    std::string& text = pattern.text;
    if (!text.empty() && isWildcard(text.back())) {
      pattern.openEnd = true;
      text.pop_back();
    }
    if (!text.empty() && isWildcard(text.front())) {
      pattern.openStart = true;
      text.erase(0, 1);
    }
    if (std::ranges::any_of(text, isWildcard))
      lexer_.fail("* or % at the ends of the pattern only", token_);
    take();
    return pattern;
  }

  [[noreturn]] void failValue(std::size_t field, const std::string& expected) const {
    lexer_.fail(expected + " for the column '" + fields_[field].name + "' (" +
                    std::string(dataTypeName(fields_[field].type)) + ")",
                token_);
  }

  void setValue(Comparison& comparison) const {
    const std::size_t field = comparison.field;
    if (!startsValue()) failValue(field, "a value");
    switch (kindOf(fields_[field].type)) {
      case DataKind::integer:
      case DataKind::decimal:
      case DataKind::real:
        return setNumber(comparison);
      case DataKind::boolean:
        if (const auto truth = truthValue()) {
          comparison.value = *truth;
          return;
        }
        failValue(field, "true, false or a number");
      case DataKind::date:
        comparison.value = dateValue(field);
        return;
      case DataKind::text:
        if (token_.kind != Kind::text) failValue(field, "a text in quotes");
        comparison.value = collections::lowerCased(token_.text);
        return;
      case DataKind::variant:
        return setAny(comparison);
    }
  }

  bool startsValue() const {
    return token_.kind == Kind::number || token_.kind == Kind::text || token_.kind == Kind::date ||
           token_.is("true") || token_.is("false");
  }

  std::optional<Decimal> numberValue() const {
    if (token_.kind != Kind::number && token_.kind != Kind::text) return std::nullopt;
    return Decimal::tryParse(token_.text);
  }

  void setNumber(Comparison& comparison) const {
    const auto number = numberValue();
    if (!number) failValue(comparison.field, "a number");
    comparison.value = *number;
    comparison.whole = wholeNumber(*number);
  }

  std::optional<bool> truthValue() const {
    if (collections::equalsIgnoringCase(token_.text, "true")) return true;
    if (collections::equalsIgnoringCase(token_.text, "false")) return false;
    const auto number = numberValue();
    if (!number) return std::nullopt;
    return !number->isZero();
  }

  Date dateValue(std::size_t field) const {
    const bool quoted = token_.kind == Kind::text || token_.kind == Kind::date;
    const auto date = quoted ? Date::tryParse(token_.text) : std::nullopt;
    if (!date) failValue(field, "a date as 'YYYY-MM-DD' or #YYYY-MM-DD#");
    return *date;
  }

  /// A column of any type compares by the kind of the value as written.
  void setAny(Comparison& comparison) const {
    if (token_.kind == Kind::number) return setNumber(comparison);
    if (token_.kind == Kind::date)
      comparison.value = dateValue(comparison.field);
    else if (token_.kind == Kind::text)
      comparison.value = collections::lowerCased(token_.text);
    else
      comparison.value = *truthValue();
  }

  std::string_view criteria_;
  const std::vector<FieldDefinition>& fields_;
  FilterLexer lexer_;
  FilterToken token_;
  std::size_t end_ = 0;  // of the last token taken
  int depth_ = 0;
};

}  // namespace

FilterCriteria parseFilter(std::string_view criteria, const std::vector<FieldDefinition>& fields) {
  return Parser(criteria, fields).parse();
}

}  // namespace velmora::ado
