#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace velmora::cli {

/// Whether standard output or standard error goes to a person's screen.
bool outputIsTerminal();
bool errorIsTerminal();

/// Colours of results; plain text unless wanted.
class Style {
 public:
  explicit Style(bool coloured = false) : coloured_(coloured) {}
  /// Coloured when standard output is a terminal that can show it and NO_COLOR is not set.
  static Style forOutput();

  std::string heading(std::string_view text) const { return in("1", text); }
  std::string serious(std::string_view text) const { return in("31", text); }
  std::string warning(std::string_view text) const { return in("33", text); }
  std::string good(std::string_view text) const { return in("32", text); }

 private:
  std::string in(std::string_view code, std::string_view text) const;

  bool coloured_;
};

/// One line about what is going on: kept in place on a terminal, else a line each.
class ProgressLine {
 public:
  ProgressLine(std::ostream& out, bool inPlace) : out_(out), inPlace_(inPlace) {}
  ~ProgressLine() { clear(); }
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  void show(std::string_view text);
  /// Takes the line off the terminal.
  void clear();

 private:
  std::ostream& out_;
  bool inPlace_;
  bool shown_ = false;
};

}  // namespace velmora::cli
