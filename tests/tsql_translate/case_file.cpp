#include "case_file.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace velmora::tsql::test {
namespace {

std::vector<std::string> fields(const std::string& line) {
  std::vector<std::string> result;
  std::istringstream stream(line);
  std::string field;
  std::getline(stream, field, '\t');  // the word that begins the line
  while (std::getline(stream, field, '\t')) result.push_back(field);
  if (line.ends_with('\t')) result.emplace_back();
  return result;
}

void readAnswer(Case& read, const std::string& line) {
  if (line.starts_with("columns")) {
    read.results.push_back({fields(line), {}});
  } else if (line.starts_with("row")) {
    read.results.back().rows.push_back(fields(line));
  } else if (line.starts_with("error\t")) {
    read.error = line.substr(6, line.find(' ') - 6);
  }
}

}  // namespace

std::vector<Case> readCases(const std::string& name) {
  const std::string path = VELMORA_SOURCE_DIR "/tests/tsql_translate/" + name;
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::vector<Case> cases;
  bool inAnswer = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("### ")) {
      cases.push_back({line.substr(4), {}, {}, {}});
      inAnswer = false;
    } else if (cases.empty()) {
      continue;
    } else if (line == ">>>") {
      inAnswer = true;
    } else if (inAnswer) {
      readAnswer(cases.back(), line);
    } else {
      cases.back().batch += line + "\n";
    }
  }
  return cases;
}

}  // namespace velmora::tsql::test
