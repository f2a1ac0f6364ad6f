// Measures commands as whole processes: time and memory on a large account set, and how the
// time grows from one of a quarter of the documents.
//
//   bench_commands DEMO.db SMALLER.db LARGE.db
//
// Every figure is printed with the limit it has to keep; the exit status is 1 when one
// does not.

#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "figures.h"
#include "measure.h"
#include "process_run.h"

namespace velmora::bench {

namespace {

/// A command line without its account set.
using Command = std::string;

struct Limits {
  double seconds = 10, mebibytes = 1536, growth = 4.5;
};

/// All kinds of comparison and ways to ask for them.
std::vector<Command> comparisons() {
  std::vector<Command> commands;
  for (const std::string kind : {"initial", "period", "closing"}) {
    std::vector<std::string> options = {"", " --no-detail", " --currency 1"};
    if (kind != "closing") options.emplace_back(" --no-detail --by-currency");
    if (kind != "initial")
      options.insert(options.end(), {" --unposted", " --no-detail --unposted"});
    for (const std::string side : {" --side ar", " --side ap"})
      for (const auto& option : options) commands.push_back("reconcile " + kind + side + option);
    for (const std::string& option : options) {
      const std::string estimates = " --side ap --estimates --outsourcing";
      commands.push_back("reconcile " + kind + estimates + option);
    }
  }
  return commands;
}

std::vector<Command> otherCommands() {
  std::vector<Command> commands = {
      "account-check",
      "period-change --year 2009 --period 3 --old-start 2009-03-01 --old-end 2009-03-31 "
      "--new-start 2009-03-01 --new-end 2009-03-20"};
  for (const std::string side : {" --side ar", " --side ap"})
    for (const std::string command : {"init-check", "fin-date"}) commands.push_back(command + side);
  commands.emplace_back("default-account --item-class 1 --item 1001 --class-type 1000000");
  return commands;
}

ProcessRun run(const Command& command, const std::string& file) {
  std::istringstream words(command + " --db " + file);
  std::vector<std::string> arguments = {VELMORA_PROGRAM};
  for (std::string word; words >> word;) arguments.push_back(word);
  const auto finished = runProcess(arguments);
  if (finished.exitStatus != 0 && finished.exitStatus != 1)
    throw std::runtime_error(command + " failed on " + file);
  return finished;
}

double medianSeconds(const Command& command, const std::string& file, int runs) {
  std::vector<double> times;
  for (int i = 0; i < runs; ++i) times.push_back(run(command, file).seconds);
  return median(times);
}

class Measurement {
 public:
  Measurement(std::string smaller, std::string large)
      : smaller_(std::move(smaller)), large_(std::move(large)) {}

  void measure(const Command& command, Limits limits, int runs) {
    const ProcessRun first = run(command, large_);
    const double time = medianSeconds(command, large_, runs);
    std::printf("%s\n", command.c_str());
    figures_.report("  on the large set", time, limits.seconds, "s");
    figures_.report("  peak memory", first.peakMemoryMiB, limits.mebibytes, "MiB");
    // What takes hardly longer than the start of the program says nothing about growth.
    if (time > kStartSeconds)
      figures_.report("  against a quarter of the documents",
                      time / medianSeconds(command, smaller_, runs), limits.growth, "x");
  }
  /// An explanation of all rows against the comparison itself.
  void measureExplained(const Command& comparison) {
    const Command command = comparison + " --explain";
    const ProcessRun first = run(command, large_);
    const double time = medianSeconds(command, large_, 3);
    std::printf("%s, %.3f s\n", command.c_str(), time);
    figures_.report("  against the comparison itself", time / medianSeconds(comparison, large_, 3),
                    3, "x");
    figures_.report("  peak memory", first.peakMemoryMiB, 2048, "MiB");
  }
  /// What the explanation of one account and contact takes beyond their comparison.
  void measureOneExplained() {
    const Command comparison = "reconcile period --accounts 1122 --items C000001..C000001";
    const double compared = medianSeconds(comparison, large_, 5);
    const double explained = medianSeconds(comparison + " --explain", large_, 5);
    figures_.report("explaining one account and contact, beyond comparing them",
                    explained - compared, 0.5, "s");
  }
  /// The dossier of both sides, written in both forms, against the checks that it is made of.
  void measureDossier() {
    double checks = medianSeconds("account-check", large_, 3);
    for (const std::string side : {" --side ar", " --side ap"})
      for (const std::string check : {"close-check", "reconcile period", "init-check"})
        checks += medianSeconds(check + side, large_, 3);
    const std::string files =
        " --force --out " + large_ + ".report.html --xlsx " + large_ + ".report.xlsx";
    const ProcessRun first = run("report" + files, large_);
    const double time = medianSeconds("report" + files, large_, 3);
    std::printf("report, both forms, %.3f s\n", time);
    figures_.report("  against its checks alone", time / checks, 3, "x");
    figures_.report("  peak memory", first.peakMemoryMiB, 2048, "MiB");
  }
  Figures& figures() { return figures_; }

 private:
  static constexpr double kStartSeconds = 0.5;

  std::string smaller_, large_;
  Figures figures_;
};

int measureAll(const std::string& demo, const std::string& smaller, const std::string& large) {
  Measurement measurement(smaller, large);
  measurement.figures().report("close-check on the demo set, median of 21",
                               medianSeconds("close-check --side ar", demo, 21), 0.25, "s");
  measurement.measure("close-check --side ar", {10, 2048, 4.4}, 5);
  for (const auto& command : comparisons()) measurement.measure(command, {}, 3);
  for (const char* comparison :
       {"reconcile initial --side ar", "reconcile period --side ar",
        "reconcile period --side ap --estimates --outsourcing", "reconcile closing --side ap",
        "reconcile period --side ar --no-detail --by-currency"})
    measurement.measureExplained(comparison);
  measurement.measureOneExplained();
  measurement.measureDossier();
  for (const auto& command : otherCommands()) measurement.measure(command, {}, 3);
  return measurement.figures().allKept() ? 0 : 1;
}

}  // namespace

}  // namespace velmora::bench

int main(int argc, char** argv) try {
  if (argc == 4) return velmora::bench::measureAll(argv[1], argv[2], argv[3]);
  std::fputs("usage: bench_commands DEMO SMALLER LARGE\n", stderr);
  return 2;
} catch (const std::exception& error) {
  std::fprintf(stderr, "bench_commands: %s\n", error.what());
  return 3;
}
