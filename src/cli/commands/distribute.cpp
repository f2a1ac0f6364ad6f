#include <fmt/format.h>
#include <ostream>

#include "cli/call/json_recordset.h"
#include "cli/commands/commands.h"
#include "cli/component.h"
#include "cli/failure.h"
#include "cli/options.h"
#include "cli/settlement/distribution.h"

namespace velmora::cli {

namespace {

struct Options {
  std::string rows, out, rules = "standard";
  std::vector<std::string> distribute, convert;
  bool takeOpposite = false, restToLast = false, copyPlanned = false, force = false;
  Format format = Format::table;
};

Distribution distributionOf(const Options& options) {
  Distribution distribution;
  if (options.rules == "extended") distribution.rules = Distribution::Rules::extended;
  if (options.rules == "plain") distribution.rules = Distribution::Rules::plain;
  distribution.takeOpposite = options.takeOpposite;
  distribution.restToLast = options.restToLast;
  distribution.copyPlanned = options.copyPlanned;
  for (const auto& text : options.distribute) distribution.addDistribution(text);
  for (const auto& text : options.convert) distribution.addConversion(text);
  return distribution;
}

void writeRows(std::ostream& out, ado::Recordset& rows, Format format) {
  switch (format) {
    case Format::table:
      return writeTable(out, rows, Style::forOutput());
    case Format::csv:
      return writeCsv(out, rows);
    case Format::json:
      out << jsonText(jsonFromRecordset(rows)) << '\n';
  }
}

int distribute(const Options& options, Streams& streams) {
  const Distribution distribution = distributionOf(options);
  activateComponent();
  const auto filled = distribution.fill(readTable(
      options.rows, [&](const std::string& column) { return distribution.kindOf(column); }));
  if (options.out.empty())
    writeRows(streams.out, *filled, options.format);
  else
    writeTableFile(options.out, *filled, options.force);
  bool left = false;
  const auto rest = distribution.rest();
  for (std::size_t i = 0; i < rest.size(); ++i) {
    if (rest[i].isZero()) continue;
    left = true;
    streams.err << fmt::format("not distributed: {} of {}\n", rest[i].normalized().toString(),
                               options.distribute[i]);
  }
  return left ? kBlocked : kOk;
}

void addRules(CLI::App& command, Options& options) {
  command
      .add_option("--rules", options.rules,
                  "standard, extended (rows of the other sign always give their whole amount), "
                  "or plain (signs do not matter)")
      ->option_text("standard|extended|plain")
      ->check(CLI::IsMember({"standard", "extended", "plain"}));
  command.add_flag("--take-opposite", options.takeOpposite,
                   "Standard: rows of the other sign give their whole amount, else they get 0");
  command.add_flag("--rest-to-last", options.restToLast,
                   "Extended: the last row takes the whole rest, even beyond its limit");
  command.add_flag("--copy-planned", options.copyPlanned,
                   "Extended: planned quantity and amounts become the remaining ones");
}

void checkRules(const Options& options) {
  if (options.distribute.empty() && options.convert.empty())
    throw CLI::ValidationError("--distribute", "give --distribute, --convert or both");
  if (options.takeOpposite && options.rules != "standard")
    throw CLI::ValidationError("--take-opposite", "goes with --rules standard only");
  if ((options.restToLast || options.copyPlanned) && options.rules != "extended")
    throw CLI::ValidationError(options.restToLast ? "--rest-to-last" : "--copy-planned",
                               "goes with --rules extended only");
}

}  // namespace

void addDistribute(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand(
      "distribute", "Fill the amounts of a new document's rows from another document");
  command->footer(
      "Examples:\n"
      "  velmora distribute --rows entries.csv --distribute 100,FAmountFor,FCheckFor\n"
      "  velmora distribute --rows entries.csv --convert FCheckFor,FAmount,FCheck,FRate\n"
      "\n"
      "Rows are CSV with a header line or a JSON recordset. Distributions come first, then\n"
      "conversions, in the order given. Exit status 1: an amount is not wholly distributed.");
  command->add_option("--rows", options->rows, "The entry rows")->option_text("FILE")->required();
  command
      ->add_option("--distribute", options->distribute,
                   "Give AMOUNT to the rows in order into the column INTO, each at most its LIMIT "
                   "less, with --rules extended, its LESS")
      ->option_text("AMOUNT,INTO,LIMIT[,LESS]")
      ->allow_extra_args(false);
  command
      ->add_option("--convert", options->convert,
                   "Put SOURCE at the rate into INTO, at most LIMIT, rounded to PLACES (2)")
      ->option_text("SOURCE,INTO,LIMIT[,RATE[,multiply|divide[,PLACES]]]")
      ->allow_extra_args(false);
  addRules(*command, *options);
  addFormatOption(*command, options->format);
  command->add_option("--out", options->out, "Write the rows to this file instead")
      ->option_text("FILE");
  command->add_flag("--force", options->force, "Replace a file that exists");
  command->callback([options, &chosen] {
    checkRules(*options);
    chosen = [options](Streams& streams) { return distribute(*options, streams); };
  });
}

}  // namespace velmora::cli
