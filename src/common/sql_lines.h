#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// A T-SQL text put together line by line; lines are joined by CR LF.
class SqlLines {
 public:
  SqlLines& line(std::string_view text);
  /// A line of the text only where `condition` holds.
  SqlLines& lineIf(bool condition, std::string_view text);
  /// The lines of `text`, which end with a line feed each but for the last.
  SqlLines& lines(std::string_view text);
  const std::string& text() const noexcept { return text_; }

 private:
  std::string text_;
};

/// The parts of one query with `separator` ("union ") on a line between them.
std::string joined(const std::vector<std::string>& parts, std::string_view separator = "union ");

/// `text` as a T-SQL literal.
std::string quoted(std::string_view text);

}  // namespace velmora
