#include <fmt/format.h>
#include <ostream>

#include "cli/account_set.h"
#include "cli/call/json_text.h"
#include "cli/commands/commands.h"
#include "cli/component.h"
#include "cli/failure.h"
#include "cli/options.h"
#include "cli/output/result_rows.h"
#include "cli/shown_sql.h"
#include "velmora/com/class_table.h"
#include "velmora/interfaces.h"

namespace velmora::cli {

namespace {

using collections::Date;

struct Options {
  AccountSetOptions accountSet;
  Format format = Format::table;
  Period period;
  Date oldStart, oldEnd, newStart, newEnd;
  bool showSql = false;
};

/// Whether the dates may change, and why not.
struct Answer {
  bool allowed = false;
  std::string message;
};

void requireOrder(const char* which, Date start, Date end) {
  if (end < start)
    throw UsageError(fmt::format("the {} period ends on {}, before it starts on {}", which,
                                 end.toDateText(), start.toDateText()));
}

Answer askComponent(const Options& options, const std::string& dsn) {
  const auto checks = componentObject<_clsCheck>();
  Answer answer;
  answer.allowed =
      checks->IsCanChangePeriod(dsn, answer.message, options.period.year, options.period.period,
                                options.oldStart, options.oldEnd, options.newStart, options.newEnd);
  if (com::GetErrorInfo()) failFromErrorInfo("the period-change check");
  return answer;
}

std::string verdict(const Options& options, const Answer& answer) {
  return fmt::format("The dates of period {} may {}be changed.", toString(options.period),
                     answer.allowed ? "" : "not ");
}

void writeTableAnswer(std::ostream& out, const Answer& answer, const std::string& verdict) {
  const Style style = Style::forOutput();
  if (!answer.allowed) out << answer.message << "\n\n";
  out << (answer.allowed ? style.good(verdict) : style.serious(verdict)) << '\n';
}

void writeCsvAnswer(std::ostream& out, const Answer& answer) {
  ResultRows rows;
  rows.countColumn("allowed").textColumn("message");
  rows.add(std::size_t{answer.allowed}).add(answer.message);
  writeCsv(out, *rows.finish());
}

void writeJsonAnswer(std::ostream& out, const Options& options, const Answer& answer) {
  Json json;
  json["year"] = options.period.year;
  json["period"] = options.period.period;
  json["allowed"] = answer.allowed;
  json["message"] = answer.message;
  out << jsonText(json) << '\n';
}

void writeAnswer(Streams& streams, const Options& options, const Answer& answer) {
  const std::string text = verdict(options, answer);
  if (options.format == Format::table) return writeTableAnswer(streams.out, answer, text);
  if (options.format == Format::csv) writeCsvAnswer(streams.out, answer);
  if (options.format == Format::json) writeJsonAnswer(streams.out, options, answer);
  streams.err << text << '\n';
}

int periodChange(const Options& options, Streams& streams) {
  requireOrder("old", options.oldStart, options.oldEnd);
  requireOrder("new", options.newStart, options.newEnd);
  activateComponent();
  const Session session(options.accountSet);
  requireAccountSet(session.connection());
  requireInCalendar(session.connection(), options.period);
  const std::string dsn = options.showSql ? showingSql(session, streams.err) : session.dsn();
  const Answer answer = askComponent(options, dsn);
  writeAnswer(streams, options, answer);
  return answer.allowed ? kOk : kBlocked;
}

void addDate(CLI::App& command, const std::string& name, Date& target, const std::string& help) {
  const auto take = [&target, name](const std::string& text) {
    const auto date = Date::tryParse(text);
    if (!date || date->hasTime())
      throw CLI::ValidationError(name, "\"" + text + "\" is no date, expected YYYY-MM-DD");
    target = *date;
  };
  command.add_option_function<std::string>(name, take, help)->option_text("DATE")->required();
}

void addPeriodOptions(CLI::App& command, Options& options) {
  command.add_option("--year", options.period.year, "Fiscal year of the period")
      ->option_text("YEAR")
      ->check(CLI::Range(1900, 9999))
      ->required();
  command.add_option("--period", options.period.period, "Period of that year")
      ->option_text("PERIOD")
      ->check(CLI::Range(1, 99))
      ->required();
  addDate(command, "--old-start", options.oldStart, "First day of the period so far");
  addDate(command, "--old-end", options.oldEnd, "Last day of the period so far");
  addDate(command, "--new-start", options.newStart, "First day that it is to have");
  addDate(command, "--new-end", options.newEnd, "Last day that it is to have");
}

}  // namespace

void addPeriodChange(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("period-change", "Tell whether the dates of a period may be changed");
  command->footer(
      "Example:\n"
      "  velmora period-change --db demo.db --year 2009 --period 6 --old-start 2009-06-01 \\\n"
      "      --old-end 2009-06-30 --new-start 2009-06-01 --new-end 2009-06-28\n"
      "\n"
      "Exit status 1: documents are dated on or after the earlier start.");
  addConnectionOptions(*command, options->accountSet);
  addPeriodOptions(*command, *options);
  addLanguageOption(*command, options->accountSet.language);
  addFormatOption(*command, options->format);
  command->add_flag("--show-sql", options->showSql, "Print each statement on standard error");
  command->callback([options, &chosen] {
    chosen = [options](Streams& streams) { return periodChange(*options, streams); };
  });
}

}  // namespace velmora::cli
