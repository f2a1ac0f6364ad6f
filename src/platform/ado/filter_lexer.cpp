#include "platform/ado/filter_lexer.h"

#include "platform/ado/characters.h"
#include "velmora/collections/letter_case.h"
#include "velmora/com/error.h"

namespace velmora::ado {

namespace {

using Kind = FilterToken::Kind;

bool isBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
/// Every character beyond ASCII counts as a letter: columns have Chinese names too.
bool isNamePart(char c) {
  const char lower = collections::lowerCased(c);
  return (lower >= 'a' && lower <= 'z') || isDigit(c) || c == '_' || c == '$' || c == '@' ||
         (c & 0x80) != 0;
}

}  // namespace

bool FilterToken::is(std::string_view keyword) const noexcept {
  return kind == Kind::name && !bracketed && collections::equalsIgnoringCase(text, keyword);
}

void FilterLexer::fail(const std::string& expected, const FilterToken& found) const {
  const auto where = characterCount(criteria_.substr(0, found.begin)) + 1;
  const std::string what =
      found.kind == Kind::end
          ? "the end"
          : "'" + std::string(criteria_.substr(found.begin, found.end - found.begin)) + "'";
  throw com::Error(com::error::kAdoInvalidArgument, "ADODB.Recordset",
                   "Filter \"" + std::string(criteria_) + "\": expected " + expected +
                       " at character " + std::to_string(where) + ", found " + what);
}

FilterToken FilterLexer::token(Kind kind, std::size_t end) const {
  return {kind, std::string(criteria_.substr(position_, end - position_)), false, position_, end};
}

FilterToken FilterLexer::next() {
  while (position_ < criteria_.size() && isBlank(criteria_[position_])) ++position_;
  FilterToken found = read();
  position_ = found.end;
  return found;
}

FilterToken FilterLexer::read() {
  if (position_ == criteria_.size()) return token(Kind::end, position_);
  const char first = criteria_[position_];
  switch (first) {
    case '(':
      return token(Kind::open, position_ + 1);
    case ')':
      return token(Kind::close, position_ + 1);
    case '\'':
      return readUntil('\'', Kind::text, "a closing quote");
    case '#':
      return readUntil('#', Kind::date, "a closing #");
    case '[': {
      FilterToken name = readUntil(']', Kind::name, "a closing ]");
      name.bracketed = true;
      return name;
    }
    default:
      break;
  }
  if (isDigit(first) || first == '.' || first == '+' || first == '-') return readNumber();
  if (isNamePart(first)) return readName();
  return readOperation();
}

FilterToken FilterLexer::readName() {
  std::size_t end = position_;
  while (end < criteria_.size() && isNamePart(criteria_[end])) ++end;
  return token(Kind::name, end);
}

FilterToken FilterLexer::readNumber() {
  std::size_t end = position_ + 1;
  while (end < criteria_.size()) {
    const char before = criteria_[end - 1];
    const bool exponentSign =
        (criteria_[end] == '+' || criteria_[end] == '-') && (before == 'e' || before == 'E');
    if (!isNamePart(criteria_[end]) && criteria_[end] != '.' && !exponentSign) break;
    ++end;
  }
  return token(Kind::number, end);
}

FilterToken FilterLexer::readOperation() {
  for (const std::string_view operation : {"<>", "<=", ">=", "=", "<", ">"})
    if (criteria_.substr(position_).starts_with(operation))
      return token(Kind::operation, position_ + operation.size());
  fail("a column, an operator or a value", token(Kind::operation, position_ + 1));
}

FilterToken FilterLexer::readUntil(char close, Kind kind, const char* name) {
  FilterToken found = token(kind, position_ + 1);
  found.text.clear();
  for (std::size_t i = position_ + 1; i < criteria_.size(); ++i) {
    if (criteria_[i] == close) {
      const bool doubled = i + 1 < criteria_.size() && criteria_[i + 1] == close;
      if (!doubled) {
        found.end = i + 1;
        return found;
      }
      ++i;
    }
    found.text += criteria_[i];
  }
  FilterToken atEnd;
  atEnd.begin = atEnd.end = criteria_.size();
  fail(name, atEnd);
}

}  // namespace velmora::ado
