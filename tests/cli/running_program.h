#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace velmora::cli {

struct Finished {
  int status = -1;
  std::string out, err;
};

/// Runs the built program with `input` on its standard input; `environment` holds
/// "NAME=value" settings added to this process's.
Finished runVelmora(const std::vector<std::string>& arguments, const std::string& input = {},
                    const std::vector<std::string>& environment = {});

/// A folder for one test, removed with it.
class TestFolder {
 public:
  TestFolder();
  ~TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  std::string file(const std::string& name) const { return path_ + "/" + name; }
  /// Writes a file and answers its path.
  std::string write(const std::string& name, const std::string& content) const;

 private:
  std::string path_;
};

/// The built program, running; its standard input stays open and empty.
class StartedProgram {
 public:
  StartedProgram(const std::vector<std::string>& arguments,
                 const std::vector<std::string>& environment);
  StartedProgram(const StartedProgram&) = delete;
  StartedProgram& operator=(const StartedProgram&) = delete;
  /// Kills it if it still runs.
  ~StartedProgram();

  void send(int signal) const;
  /// Waits for its end.
  Finished wait();

 private:
  TestFolder folder_;
  pid_t process_ = -1;
};

}  // namespace velmora::cli
