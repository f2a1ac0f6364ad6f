#include "process_run.h"

#include <fcntl.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "measure.h"

namespace velmora::bench {

namespace {

[[noreturn]] void become(const std::vector<std::string>& command) {
  const int nowhere = open("/dev/null", O_WRONLY);
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
  std::vector<char*> arguments;
  for (const std::string& argument : command)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  execv(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

ProcessRun runProcess(const std::vector<std::string>& command) {
  ProcessRun run;
  int status = 0;
  rusage usage{};
  run.seconds = seconds([&] {
    const pid_t child = fork();
    if (child == 0) become(command);
    if (child < 0 || wait4(child, &status, 0, &usage) < 0)
      throw std::runtime_error("cannot run " + command.front());
  });
  run.peakMemoryMiB = static_cast<double>(usage.ru_maxrss) / 1024;
  run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return run;
}

}  // namespace velmora::bench
