#include "velmora/tsql/script.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "platform/tsql/syntax/syntax_error.h"
#include "platform/tsql/syntax/text_scan.h"

namespace velmora::tsql {
namespace {

constexpr int kMaxRepeat = 1000;
constexpr std::string_view kBlanks = " \t\r\f\v";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// What stands behind GO, when the line is a GO line.
std::optional<std::string_view> behindGo(std::string_view line) {
  line = trimmed(line);
  if (!equalsIgnoringCase(line.substr(0, 2), "go")) return std::nullopt;
  const std::string_view rest = line.substr(2);
  const bool wordEnds = rest.empty() || rest.front() == ';' || rest.front() == '-' ||
                        kBlanks.find(rest.front()) != std::string_view::npos;
  return wordEnds ? std::optional(rest) : std::nullopt;
}

int parseRepeat(std::string_view behind, int line) {
  const std::string_view count = trimmed(behind.substr(0, behind.find("--")));
  if (count.empty()) return 1;
  int repeat = 0;
  const char* end = count.data() + count.size();
  const auto [stop, failure] = std::from_chars(count.data(), end, repeat);
  if (failure != std::errc() || stop != end || repeat < 1 || repeat > kMaxRepeat) {
    throw SyntaxError({line, 1}, "unexpected '" + std::string(count) +
                                     "' behind GO, expected nothing or a count from 1 to " +
                                     std::to_string(kMaxRepeat));
  }
  return repeat;
}

class Splitter {
 public:
  explicit Splitter(std::string_view script) : script_(script) {}

  std::vector<ScriptBatch> run();

 private:
  void skipLineOfCode();
  std::size_t elementEnd() const;
  void moveTo(std::size_t end);
  void close(std::size_t end, int repeat);
  void begin();

  std::string_view script_;
  std::size_t at_ = 0;
  int line_ = 1;
  std::size_t start_ = 0;
  int startLine_ = 1;
  std::vector<ScriptBatch> batches_;
};

std::vector<ScriptBatch> Splitter::run() {
  while (at_ < script_.size()) {
    const std::size_t lineEnd = skipLine(script_, at_);
    const auto behind = behindGo(script_.substr(at_, lineEnd - at_));
    if (!behind) {
      skipLineOfCode();
      continue;
    }
    close(at_, parseRepeat(*behind, line_));
    moveTo(std::min(lineEnd + 1, script_.size()));
    begin();
  }
  close(script_.size(), 1);
  return std::move(batches_);
}

// To the start of the next line that begins outside of quotes and comments.
void Splitter::skipLineOfCode() {
  while (at_ < script_.size()) {
    const bool newLine = script_[at_] == '\n';
    moveTo(std::min(elementEnd(), script_.size()));
    if (newLine) return;
  }
}

// Behind the comment, quoted text or single character at the current place.
std::size_t Splitter::elementEnd() const {
  const std::string_view pair = script_.substr(at_, 2);
  if (pair == "--") return skipLine(script_, at_);
  if (pair == "/*") return skipBlockComment(script_, at_);
  if (const char quote = closingQuote(script_[at_])) return skipQuoted(script_, at_, quote);
  return at_ + 1;
}

void Splitter::moveTo(std::size_t end) {
  line_ += static_cast<int>(std::count(script_.begin() + static_cast<std::ptrdiff_t>(at_),
                                       script_.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
  at_ = end;
}

void Splitter::close(std::size_t end, int repeat) {
  const std::string_view text = script_.substr(start_, end - start_);
  if (text.find_first_not_of(" \t\r\n\f\v") == std::string_view::npos) return;
  batches_.push_back({std::string(text), startLine_, repeat});
}

void Splitter::begin() {
  start_ = at_;
  startLine_ = line_;
}

}  // namespace

std::vector<ScriptBatch> splitScript(std::string_view script) {
  return Splitter(script).run();
}

}  // namespace velmora::tsql
