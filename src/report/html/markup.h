#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "report/model.h"

namespace velmora::report::html {

/// The source of a page on its way to a stream, handed over in large pieces.
class Markup {
 public:
  explicit Markup(std::ostream& out);

  /// As it stands.
  Markup& raw(std::string_view source);
  /// For people to read: markup in it means nothing, and what is no character, or one that
  /// steers a machine, becomes U+FFFD.
  Markup& text(std::string_view text);
  /// As the value of an id or a link, without quotes around it: what could not stand there is
  /// written as "~" and its bytes' digits.
  Markup& id(std::string_view id);
  /// Hands over the rest.
  void finish();

 private:
  void special(std::string_view text, std::size_t& position);

  std::ostream& out_;
  std::string piece_;
};

/// "-1,234.50"
std::string grouped(const Decimal& amount);

}  // namespace velmora::report::html
