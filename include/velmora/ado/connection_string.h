#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::ado {

/// An ADO connection string taken apart: "Name=Value;..." with values optionally
/// in double or single quotes or in braces (a doubled closing quote stands for
/// one). Names are matched without regard to case; the last of a repeated name
/// counts. Raises com::Error naming the place for a segment without "=".
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
  /// The text with the value of Password and PWD replaced by "***", for messages.
  std::string toDisplay() const;

 private:
  std::vector<Property> properties_;
};

}  // namespace velmora::ado
