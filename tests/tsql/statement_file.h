#pragma once

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmora::tsql {

/// One case of a statement file: the lines of a batch, and what follows "--> " on the lines
/// behind it.
struct StatementCase {
  int line = 0;  // of the file, where the batch begins
  std::string text;
  std::string expected;
};

/// Reads tests/tsql/NAME. Lines that begin with `heading` part the file into sections.
inline std::vector<StatementCase> readStatementFile(const std::string& name,
                                                    const std::string& heading) {
  std::ifstream file(std::string(VELMORA_SOURCE_DIR "/tests/tsql/") + name);
  if (!file) throw std::runtime_error("no file " + name);
  std::vector<StatementCase> cases;
  bool answered = true;
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (line.starts_with("-->")) {
      answered = true;
      cases.back().expected += line.substr(std::min<std::size_t>(line.size(), 4)) + "\n";
    } else if (!line.empty() && !line.starts_with(heading)) {
      if (answered) cases.push_back({number, {}, {}});
      answered = false;
      cases.back().text += (cases.back().text.empty() ? "" : "\n") + line;
    }
  }
  return cases;
}

}  // namespace velmora::tsql
