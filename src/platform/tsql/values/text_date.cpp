#include "platform/tsql/values/text_date.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fmt/format.h>
#include <optional>
#include <string>
#include <vector>

#include "platform/tsql/values/date_kinds.h"
#include "platform/tsql/values/date_text.h"
#include "platform/tsql/values/value_error.h"
#include "velmora/collections/letter_case.h"

namespace velmora::tsql::values {
namespace {

using collections::Date;
using collections::lowerCased;

/// A text that is no date; the caller says which error that is.
struct NoDate {};
/// A day or a time that there is not.
struct OutOfRange {};

struct Token {
  enum class Kind { number, word, symbol };
  Kind kind;
  std::string_view text;

  bool is(char symbol) const { return kind == Kind::symbol && text[0] == symbol; }
  bool isNumber() const { return kind == Kind::number; }
};

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isLetter(char c) {
  const char small = lowerCased(c);
  return small >= 'a' && small <= 'z';
}

std::vector<Token> tokensOf(std::string_view text) {
  std::vector<Token> tokens;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == ' ') {
      ++at;
      continue;
    }
    const auto take = [&](Token::Kind kind, auto belongs) {
      std::size_t end = at;
      while (end < text.size() && belongs(text[end])) ++end;
      tokens.push_back({kind, text.substr(at, end - at)});
      at = end;
    };
    if (isDigit(text[at])) {
      take(Token::Kind::number, isDigit);
    } else if (isLetter(text[at])) {
      take(Token::Kind::word, isLetter);
    } else {
      tokens.push_back({Token::Kind::symbol, text.substr(at++, 1)});
    }
  }
  return tokens;
}

int valueOf(std::string_view digits) {
  int value = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (read.ec != std::errc()) throw NoDate();
  return value;
}

int yearOf(std::string_view digits) {
  const int value = valueOf(digits);
  if (digits.size() == 4) return value;
  if (digits.size() > 2) throw NoDate();
  return value < 50 ? 2000 + value : 1900 + value;
}

/// The number of a month's name or of its first three letters; 0: the word is none.
int monthOf(std::string_view word) {
  const std::string small = lowerCased(word);
  for (int month = 1; month <= 12; ++month) {
    const std::string name = lowerCased(monthName(month));
    if (small == name || small == name.substr(0, 3) || (month == 9 && small == "sept"))
      return month;
  }
  return 0;
}

struct Day {
  int year = 1900, month = 1, day = 1;
};

enum class Order { monthFirst, dayFirst, yearFirst };

Order orderOf(std::int32_t style) {
  switch (style % 100) {
    case 3:
    case 4:
    case 5:
    case 6:
    case 13:
      return Order::dayFirst;
    case 2:
    case 11:
    case 12:
    case 20:
    case 21:
    case 23:
    case 25:
    case 26:
    case 27:
      return Order::yearFirst;
    default:
      return Order::monthFirst;
  }
}

class Reader {
 public:
  Reader(std::string_view text, std::int32_t style)
      : tokens_(tokensOf(text)), order_(orderOf(style)) {}

  Date read() {
    Day day;
    std::int64_t time = 0;
    const bool timeFirst = atTime();
    if (timeFirst) time = readTime();
    if (at_ < tokens_.size()) {
      day = readDay();
      if (!timeFirst && at_ < tokens_.size()) {
        if (atWord("t")) ++at_;
        time = readTime();
        if (atWord("z")) ++at_;
      }
    }
    if (at_ != tokens_.size()) throw NoDate();
    return Date::fromMicroseconds(checked(day).microseconds() + time);
  }

 private:
  const Token* tokenAt(std::size_t at) const {
    return at < tokens_.size() ? &tokens_[at] : nullptr;
  }
  bool atSymbol(std::size_t at, char symbol) const {
    return at < tokens_.size() && tokens_[at].is(symbol);
  }
  bool atWord(std::string_view word) const {
    const Token* token = tokenAt(at_);
    return token != nullptr && token->kind == Token::Kind::word && lowerCased(token->text) == word;
  }
  /// AM or PM behind a number at `at`.
  bool halfAt(std::size_t at) const {
    const Token* token = tokenAt(at);
    if (token == nullptr || token->kind != Token::Kind::word) return false;
    const std::string word = lowerCased(token->text);
    return word == "am" || word == "pm";
  }
  bool atTime() const {
    const Token* token = tokenAt(at_);
    return token != nullptr && token->isNumber() && (atSymbol(at_ + 1, ':') || halfAt(at_ + 1));
  }

  std::string_view number() {
    const Token* token = tokenAt(at_);
    if (token == nullptr || !token->isNumber()) throw NoDate();
    ++at_;
    return token->text;
  }

  static Date checked(const Day& day) {
    static constexpr std::array<int, 12> lengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (day.year % 4 == 0 && day.year % 100 != 0) || day.year % 400 == 0;
    if (day.year < 1 || day.month < 1 || day.month > 12 || day.day < 1) throw OutOfRange();
    const int last =
        lengths[static_cast<std::size_t>(day.month - 1)] + (leap && day.month == 2 ? 1 : 0);
    if (day.day > last) throw OutOfRange();
    return Date::ymd(day.year, day.month, day.day);
  }

  Day readDay() {
    const Token& first = tokens_[at_];
    if (first.kind == Token::Kind::word) return readNamedDay();
    const Token* second = tokenAt(at_ + 1);
    const bool named =
        second != nullptr && (monthAt(at_ + 1) != 0 || (second->is('-') && monthAt(at_ + 2) != 0));
    if (named) return readNamedDay();
    const bool separated =
        second != nullptr && (second->is('-') || second->is('/') || second->is('.'));
    return separated ? readSeparatedDay() : readDigits(number());
  }

  int monthAt(std::size_t at) const {
    const Token* token = tokenAt(at);
    return token != nullptr && token->kind == Token::Kind::word ? monthOf(token->text) : 0;
  }

  /// 20090305, 090305 or 2009.
  static Day readDigits(std::string_view digits) {
    if (digits.size() == 4) return {valueOf(digits), 1, 1};
    if (digits.size() != 6 && digits.size() != 8) throw NoDate();
    const std::size_t year = digits.size() - 4;
    return {yearOf(digits.substr(0, year)), valueOf(digits.substr(year, 2)),
            valueOf(digits.substr(year + 2))};
  }

  Day readSeparatedDay() {
    std::array<std::string_view, 3> parts;
    parts[0] = number();
    const char separator = tokens_[at_].text[0];
    for (std::size_t i = 1; i < parts.size(); ++i) {
      if (!atSymbol(at_, separator)) throw NoDate();
      ++at_;
      parts[i] = number();
    }
    const auto [a, b, c] = parts;
    if (a.size() > 2 || order_ == Order::yearFirst) return ofParts(a, b, c);
    return order_ == Order::dayFirst ? ofParts(c, b, a) : ofParts(c, a, b);
  }

  static Day ofParts(std::string_view year, std::string_view month, std::string_view day) {
    if (month.size() > 2 || day.size() > 2) throw NoDate();
    return {yearOf(year), valueOf(month), valueOf(day)};
  }

  /// A month by its name, the day before or behind it, the year last or first; without a day
  /// the first of the month.
  Day readNamedDay() {
    Day day;
    std::vector<std::string_view> numbers;
    int month = 0;
    while (at_ < tokens_.size() && !atTime()) {
      const Token& token = tokens_[at_];
      if (token.isNumber() && numbers.size() < 2) {
        numbers.push_back(token.text);
      } else if (monthAt(at_) != 0 && month == 0) {
        month = monthAt(at_);
      } else if (!token.is(',') && !token.is('-')) {
        break;
      }
      ++at_;
    }
    if (month == 0 || numbers.empty()) throw NoDate();
    day.month = month;
    if (numbers.size() == 1) {
      if (numbers[0].size() != 4) throw NoDate();
      day.year = valueOf(numbers[0]);
      return day;
    }
    const bool yearFirst = numbers[0].size() == 4;
    day.year = yearOf(numbers[yearFirst ? 0 : 1]);
    const std::string_view dayDigits = numbers[yearFirst ? 1 : 0];
    if (dayDigits.size() > 2) throw NoDate();
    day.day = valueOf(dayDigits);
    return day;
  }

  /// The microseconds of the day.
  std::int64_t readTime() {
    const int hour = valueOf(number());
    int minute = 0, second = 0;
    std::int64_t fraction = 0;
    bool clock = false;
    if (atSymbol(at_, ':')) {
      clock = true;
      ++at_;
      minute = valueOf(number());
      if (atSymbol(at_, ':')) {
        ++at_;
        second = valueOf(number());
        fraction = readFraction();
      }
    }
    const int hours = readHalf(hour, clock);
    if (hours > 23 || minute > 59 || second > 59) throw OutOfRange();
    return ((hours * 60 + minute) * 60LL + second) * 1'000'000 + fraction;
  }

  /// .5 is half a second, :5 five thousandths.
  std::int64_t readFraction() {
    const bool point = atSymbol(at_, '.');
    if (!point && !atSymbol(at_, ':')) return 0;
    ++at_;
    std::string digits(number());
    if (!point) {
      if (digits.size() > 3) throw NoDate();
      return valueOf(digits) * 1000LL;
    }
    if (digits.size() > 9) throw NoDate();
    digits.resize(6, '0');
    return valueOf(digits);
  }

  int readHalf(int hour, bool clock) {
    if (!halfAt(at_)) {
      if (!clock) throw NoDate();
      return hour;
    }
    const bool afternoon = lowerCased(tokens_[at_++].text) == "pm";
    if (hour > 12 || hour < 1) {
      if (hour > 23 || !afternoon) throw OutOfRange();
      return hour;
    }
    return hour % 12 + (afternoon ? 12 : 0);
  }

  std::vector<Token> tokens_;
  Order order_;
  std::size_t at_ = 0;
};

[[noreturn]] void raiseNoDate(std::string_view text, DateKind kind) {
  if (kind == DateKind::smallDateTime)
    throw ValueError(fmt::format(
        "295: Conversion failed when converting character string '{}' to smalldatetime data type.",
        text));
  throw ValueError(
      fmt::format("241: Conversion failed when converting date and/or time from "
                  "character string '{}'.",
                  text));
}

}  // namespace

Date dateOfText(std::string_view text, std::int32_t style, std::int32_t kind) {
  const auto type = static_cast<DateKind>(kind);
  if (text.find_first_not_of(' ') == std::string_view::npos) return Date::ymd(1900, 1, 1);
  try {
    return heldAs(Reader(text, style).read(), kind);
  } catch (const NoDate&) {
    raiseNoDate(text, type);
  } catch (const OutOfRange&) {
    if (type == DateKind::date) raiseNoDate(text, type);
    throw ValueError(fmt::format(
        "242: The conversion of the text '{}' to a date resulted in an out-of-range value.", text));
  }
}

std::int32_t isDate(std::string_view text) {
  if (text.find_first_not_of(' ') == std::string_view::npos) return 0;
  try {
    dateOfText(text, 0, static_cast<std::int32_t>(DateKind::dateTime));
    return 1;
  } catch (const ValueError&) {
    return 0;
  }
}

}  // namespace velmora::tsql::values
