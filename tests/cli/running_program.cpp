#include "running_program.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

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

/// The shell's command that runs the program, its output going to files of `folder`.
std::string commandFor(const std::vector<std::string>& arguments,
                       const std::vector<std::string>& environment, const TestFolder& folder) {
  std::string command = "exec env -u VELMORA_DSN";
  for (const auto& setting : environment) command += " " + quoted(setting);
  command += " " + quoted(VELMORA_PROGRAM);
  for (const auto& argument : arguments) command += " " + quoted(argument);
  return command + " >" + quoted(folder.file("out")) + " 2>" + quoted(folder.file("err"));
}

Finished finished(int status, const TestFolder& folder) {
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(folder.file("out")),
          contentOf(folder.file("err"))};
}

}  // namespace

Finished runVelmora(const std::vector<std::string>& arguments, const std::string& input,
                    const std::vector<std::string>& environment) {
  const TestFolder folder;
  const auto command = commandFor(arguments, environment, folder);
  const int status = std::system((command + " <" + quoted(folder.write("in", input))).c_str());
  return finished(status, folder);
}

StartedProgram::StartedProgram(const std::vector<std::string>& arguments,
                               const std::vector<std::string>& environment) {
  const std::string input = folder_.file("in");
  mkfifo(input.c_str(), 0600);
  std::string command = commandFor(arguments, environment, folder_) + " <>" + quoted(input);
  std::string shell = "sh", option = "-c";
  char* const words[] = {shell.data(), option.data(), command.data(), nullptr};
  // Whoever runs the tests in the background has the signals ignored.
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM}) sigaddset(&signals, signal);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigdefault(&attributes, &signals);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  if (posix_spawn(&process_, "/bin/sh", nullptr, &attributes, words, environ) != 0) process_ = -1;
  posix_spawnattr_destroy(&attributes);
}

void StartedProgram::send(int signal) const {
  if (process_ > 0) kill(process_, signal);
}

Finished StartedProgram::wait() {
  int status = -1;
  if (process_ > 0) waitpid(process_, &status, 0);
  process_ = -1;
  return finished(status, folder_);
}

StartedProgram::~StartedProgram() {
  send(SIGKILL);
  wait();
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
