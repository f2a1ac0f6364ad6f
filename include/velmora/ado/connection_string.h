#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::ado {

/// An ADO connection string taken apart: "Name=Value;..." with values optionally
/// in double or single quotes or in braces (a doubled closing quote stands for
/// one). Names are matched without regard to case; the last of a repeated name
/// counts, at the place of the first. Raises kAdoInvalidArgument naming the place,
/// and nothing of the text, for a segment without "=", an empty name, a quote
/// that is not closed, or text after a closing quote.
class ConnectionString {
 public:
  struct Property {
    std::string name;
    std::string value;
  };

  explicit ConnectionString(std::string_view text);

  /// Empty when absent.
  std::string value(std::string_view name) const;
  std::optional<std::string> find(std::string_view name) const;
  const std::vector<Property>& properties() const noexcept { return properties_; }
  void set(std::string_view name, std::string_view value);

  /// The text again, values quoted where needed.
  std::string toString() const;
  /// The text with the value of Password and PWD replaced by "***", for messages;
  /// also inside a value that is itself a connection string ("Extended Properties").
  std::string toDisplay() const;
  /// The values that no message may show: those of Password and PWD, nested ones too.
  std::vector<std::string> passwords() const;

 private:
  std::vector<Property> properties_;
};

}  // namespace velmora::ado
