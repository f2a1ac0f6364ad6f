#pragma once

#include <string>
#include <string_view>

namespace velmora::ado {

struct FilterToken {
  enum class Kind { name, operation, number, text, date, open, close, end };

  Kind kind = Kind::end;
  /// A name without brackets, a text or date without quotes, else as written.
  std::string text;
  bool bracketed = false;  ///< a name that cannot be a keyword
  std::size_t begin = 0;   ///< bytes of the criteria that the token covers
  std::size_t end = 0;

  /// Whether it is this keyword, letter case ignored.
  bool is(std::string_view keyword) const noexcept;
};

/// Takes the criteria of Recordset::Filter apart.
class FilterLexer {
 public:
  explicit FilterLexer(std::string_view criteria) : criteria_(criteria) {}

  FilterToken next();

  /// Raises kAdoInvalidArgument: "expected ... at character N".
  [[noreturn]] void fail(const std::string& expected, const FilterToken& found) const;

 private:
  FilterToken read();
  FilterToken readName();
  FilterToken readNumber();
  FilterToken readOperation();
  FilterToken readUntil(char close, FilterToken::Kind kind, const char* name);
  FilterToken token(FilterToken::Kind kind, std::size_t end) const;

  std::string_view criteria_;
  std::size_t position_ = 0;
};

}  // namespace velmora::ado
