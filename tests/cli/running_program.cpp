#include "running_program.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/wait.h>

namespace velmora::cli {

namespace {

std::string quoted(const std::string& word) {
  std::string text = "'";
  for (const char c : word) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return text + "'";
}

std::string contentOf(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

Finished runVelmora(const std::vector<std::string>& arguments, const std::string& input,
                    const std::vector<std::string>& environment) {
  const TestFolder folder;
  std::string command = "env -u VELMORA_DSN";
  for (const auto& setting : environment) command += " " + quoted(setting);
  command += " " + quoted(VELMORA_PROGRAM);
  for (const auto& argument : arguments) command += " " + quoted(argument);
  command += " <" + quoted(folder.write("in", input)) + " >" + quoted(folder.file("out")) + " 2>" +
             quoted(folder.file("err"));
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(folder.file("out")),
          contentOf(folder.file("err"))};
}

TestFolder::TestFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "velmora-test-XXXXXX").string();
  path_ = mkdtemp(pattern.data());
}

TestFolder::~TestFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TestFolder::write(const std::string& name, const std::string& content) const {
  std::ofstream(file(name), std::ios::binary) << content;
  return file(name);
}

}  // namespace velmora::cli
