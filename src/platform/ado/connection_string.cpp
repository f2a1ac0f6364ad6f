#include "velmora/ado/connection_string.h"

#include <algorithm>

#include "velmora/collections/letter_case.h"
#include "velmora/com/error.h"

namespace velmora::ado {

namespace {

using collections::equalsIgnoringCase;

constexpr std::string_view kHidden = "***";

bool isPassword(std::string_view name) {
  return equalsIgnoringCase(name, "Password") || equalsIgnoringCase(name, "PWD");
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Reads one property after the other. A message never repeats the text: what
/// looks like a name may be the second half of an unquoted password.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  bool next(ConnectionString::Property& property) {
    skipEmptySegments();
    if (position_ == text_.size()) return false;
    ++segment_;
    property.name = readName();
    property.value = readValue();
    return true;
  }

 private:
  void skipBlanks() {
    while (position_ < text_.size() && trimmed(text_.substr(position_, 1)).empty()) ++position_;
  }

  void skipEmptySegments() {
    skipBlanks();
    while (position_ < text_.size() && text_[position_] == ';') {
      ++position_;
      skipBlanks();
    }
  }

  std::string readName() {
    const auto end = text_.find_first_of("=;", position_);
    if (end == std::string_view::npos || text_[end] == ';')
      fail("has no '='; expected Name=Value", position_);
    std::string name(trimmed(text_.substr(position_, end - position_)));
    if (name.empty()) fail("has no name before '='; expected Name=Value", position_);
    position_ = end + 1;
    return name;
  }

  std::string readValue() {
    skipBlanks();
    if (position_ == text_.size()) return {};
    const char open = text_[position_];
    if (open == '"' || open == '\'') return readQuoted(open);
    if (open == '{') return readQuoted('}');
    const auto end = std::min(text_.find(';', position_), text_.size());
    std::string value(trimmed(text_.substr(position_, end - position_)));
    position_ = end;
    return value;
  }

  std::string readQuoted(char close) {
    const auto opened = position_++;
    std::string value;
    for (;; ++position_) {
      if (position_ == text_.size()) fail("opens a quote or brace that is not closed", opened);
      if (text_[position_] == close) {
        ++position_;
        if (position_ == text_.size() || text_[position_] != close) break;
      }
      value += text_[position_];
    }
    skipBlanks();
    if (position_ < text_.size() && text_[position_] != ';')
      fail("goes on after the closing quote or brace; expected ';'", position_);
    return value;
  }

  [[noreturn]] void fail(std::string_view what, std::size_t position) const {
    throw com::Error(com::error::kAdoInvalidArgument, "ADODB.Connection",
                     "connection string: segment " + std::to_string(segment_) + " (character " +
                         std::to_string(position + 1) + ") " + std::string(what));
  }

  std::string_view text_;
  std::size_t position_ = 0;
  int segment_ = 0;
};

bool needsQuotes(std::string_view value) {
  return !value.empty() && (value.find(';') != std::string_view::npos || value != trimmed(value) ||
                            value.front() == '"' || value.front() == '\'' || value.front() == '{');
}

void appendProperty(std::string& text, std::string_view name, std::string_view value) {
  if (!text.empty()) text += ';';
  text.append(name).append("=");
  if (!needsQuotes(value)) {
    text.append(value);
    return;
  }
  text += '"';
  for (const char c : value) {
    if (c == '"') text += '"';
    text += c;
  }
  text += '"';
}

/// The settings that a provider hands on to another one, when they hold a password.
std::optional<ConnectionString> nestedWithPassword(const ConnectionString::Property& property) {
  if (!equalsIgnoringCase(property.name, "Extended Properties")) return std::nullopt;
  try {
    ConnectionString nested(property.value);
    if (!nested.passwords().empty()) return nested;
  } catch (const com::Error&) {  // something else than a connection string
  }
  return std::nullopt;
}

}  // namespace

ConnectionString::ConnectionString(std::string_view text) {
  Reader reader(text);
  for (Property property; reader.next(property);) set(property.name, property.value);
}

std::optional<std::string> ConnectionString::find(std::string_view name) const {
  for (const Property& property : properties_)
    if (equalsIgnoringCase(property.name, name)) return property.value;
  return std::nullopt;
}

std::string ConnectionString::value(std::string_view name) const {
  return find(name).value_or(std::string());
}

void ConnectionString::set(std::string_view name, std::string_view value) {
  for (Property& property : properties_)
    if (equalsIgnoringCase(property.name, name)) {
      property.value = value;
      return;
    }
  properties_.push_back({std::string(name), std::string(value)});
}

std::string ConnectionString::toString() const {
  std::string text;
  for (const Property& property : properties_) appendProperty(text, property.name, property.value);
  return text;
}

std::string ConnectionString::toDisplay() const {
  std::string text;
  for (const Property& property : properties_) {
    if (isPassword(property.name))
      appendProperty(text, property.name, kHidden);
    else if (const auto nested = nestedWithPassword(property))
      appendProperty(text, property.name, nested->toDisplay());
    else
      appendProperty(text, property.name, property.value);
  }
  return text;
}

std::vector<std::string> ConnectionString::passwords() const {
  std::vector<std::string> found;
  for (const Property& property : properties_) {
    if (isPassword(property.name) && !property.value.empty()) found.push_back(property.value);
    if (const auto nested = nestedWithPassword(property))
      for (std::string& password : nested->passwords()) found.push_back(std::move(password));
  }
  return found;
}

}  // namespace velmora::ado
