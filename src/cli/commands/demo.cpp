#include "cli/demo/demo.h"

#include <algorithm>
#include <chrono>
#include <fmt/format.h>
#include <ostream>

#include "cli/caller_string.h"
#include "cli/commands/commands.h"
#include "cli/failure.h"
#include "cli/new_file.h"
#include "cli/options.h"
#include "cli/output/result_rows.h"
#include "cli/output/result_writer.h"

namespace velmora::cli {

namespace {

using Clock = std::chrono::steady_clock;

struct Options {
  std::string file;
  std::int64_t documents = 0;  // 0: the small set
  std::uint64_t seed = 1;
  bool newSet = false;
  bool noFaults = false;
  bool force = false;
};

/// Shows how far and how fast the documents are written, at most so often.
class Rate {
 public:
  Rate(ProgressLine& line, bool terminal)
      : line_(line), pause_(terminal ? std::chrono::milliseconds(100) : std::chrono::seconds(5)) {}

  void show(std::int64_t done, std::int64_t total) {
    const auto now = Clock::now();
    if (done < total && now - shown_ < pause_) return;
    shown_ = now;
    const std::chrono::duration<double> elapsed = now - start_;
    line_.show(fmt::format("{} of {} documents, {:.0f} a second", done, total,
                           static_cast<double>(done) / std::max(elapsed.count(), 0.001)));
  }

 private:
  ProgressLine& line_;
  Clock::duration pause_;
  Clock::time_point start_ = Clock::now(), shown_ = start_;
};

demo::PlantedFindings fill(const Options& options, const std::string& file, Streams& streams) {
  const auto connection = com::make<ado::Connection>();
  // Every table takes a block at least, however few its rows.
  const char* blockSize = options.documents == 0 ? ";Block Size=16384" : "";
  connection->Open(embeddedConnectString(file, "Create") + blockSize);
  if (options.newSet) {
    demo::createNewSet(*connection);
    return {};
  }
  const auto faults = options.noFaults ? demo::Faults::kLeftOut : demo::Faults::kPlanted;
  if (options.documents == 0) return demo::createSmallSet(*connection, faults);
  const bool terminal = errorIsTerminal();
  ProgressLine line(streams.err, terminal);
  Rate rate(line, terminal);
  demo::GenerateOptions generate;
  generate.documents = options.documents;
  generate.seed = options.seed;
  generate.faults = faults;
  generate.progress = [&rate](std::int64_t done, std::int64_t total) { rate.show(done, total); };
  return demo::createGeneratedSet(*connection, generate);
}

void writePlanted(std::ostream& out, const demo::PlantedFindings& planted) {
  ResultRows rows;
  rows.textColumn("Side").textColumn("Check item").countColumn("Planted findings");
  for (const demo::PlantedFinding& finding : planted)
    if (finding.count != 0)
      rows.add(finding.side == demo::Side::kReceivables ? "receivables" : "payables")
          .add(finding.name)
          .add(static_cast<std::size_t>(finding.count));
  writeTable(out, *rows.finish(), Style::forOutput());
}

int createDemo(const Options& options, Streams& streams) {
  NewFile file(options.file, options.force);
  const auto planted = fill(options, file.unfinished(), streams);
  file.complete();
  if (!options.newSet && !options.noFaults) writePlanted(streams.out, planted);
  streams.err << "\nNext: velmora " << (options.newSet ? "init-check" : "close-check") << " --db "
              << options.file << " --lang EN\n";
  return kOk;
}

}  // namespace

void addDemo(CLI::App& program, Run& chosen) {
  CLI::App* group = program.add_subcommand("demo", "Make demonstration account sets");
  group->footer("Example:\n  velmora demo create demo.db");
  group->require_subcommand(1);
  auto options = std::make_shared<Options>();
  CLI::App* command =
      group->add_subcommand("create", "Make an account set with faults for the checks to find");
  command->footer(
      "Examples:\n"
      "  velmora demo create demo.db\n"
      "  velmora demo create large.db --documents 100000 --seed 7\n"
      "\n"
      "Prints how many findings of each kind were planted for close-check.");
  command->add_option("FILE", options->file, "The file to make")->type_name("")->required();
  auto* documents = command
                        ->add_option("--documents", options->documents,
                                     "Documents of each side; without it the small set is made")
                        ->option_text("N")
                        ->check(CLI::Range(std::int64_t{1}, std::int64_t{10'000'000}));
  command
      ->add_option("--seed", options->seed,
                   "With --documents: the same seed makes the same account set (1)")
      ->option_text("S");
  auto* newSet =
      command
          ->add_flag("--new", options->newSet,
                     "A new account set, in which little has been entered yet, for init-check")
          ->excludes(documents);
  command
      ->add_flag("--no-faults", options->noFaults,
                 "The same books without what is at fault: no check finds anything")
      ->excludes(newSet);
  command->add_flag("--force", options->force, "Replace the file if it exists");
  addTimeoutOption(*command);
  command->callback([options, &chosen] {
    chosen = [options](Streams& streams) { return createDemo(*options, streams); };
  });
}

}  // namespace velmora::cli
