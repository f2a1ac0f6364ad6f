#include "cli/output/terminal.h"

#include <cstdlib>
#include <ostream>
#include <unistd.h>

#include "report/display_width.h"

namespace velmora::cli {

namespace {

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

}  // namespace

bool outputIsTerminal() {
  return isatty(STDOUT_FILENO) == 1;
}
bool errorIsTerminal() {
  return isatty(STDERR_FILENO) == 1;
}

Style Style::forOutput() {
  return Style(outputIsTerminal() && environment("NO_COLOR").empty() &&
               environment("TERM") != "dumb");
}

std::string Style::in(std::string_view code, std::string_view text) const {
  if (!coloured_) return std::string(text);
  std::string result = "\033[";
  result.append(code).append("m").append(text).append("\033[0m");
  return result;
}

void ProgressLine::show(std::string_view text) {
  if (!inPlace_) {
    out_ << text << '\n' << std::flush;
    return;
  }
  out_ << "\r\033[K" << report::singleLine(text) << std::flush;
  shown_ = true;
}

void ProgressLine::clear() {
  if (shown_) out_ << "\r\033[K" << std::flush;
  shown_ = false;
}

}  // namespace velmora::cli
