#include "cli/options.h"

#include <charconv>
#include <functional>
#include <tuple>
#include <utility>
#include <vector>

#include "velmora/collections/letter_case.h"

namespace velmora::cli {

namespace {

template <class Value>
struct Choice {
  std::string_view word;
  Value value;
};

/// An option with a value out of `choices`, letter case ignored, which `set` is given.
template <class Value>
void addChoice(CLI::App& command, const std::string& name, std::function<void(Value)> set,
               const std::vector<Choice<Value>>& choices, const std::string& help) {
  std::string words;
  for (const auto& choice : choices) words.append(words.empty() ? "" : "|").append(choice.word);
  const auto take = [set, choices, name, words](const std::string& text) {
    for (const auto& choice : choices) {
      if (!collections::equalsIgnoringCase(choice.word, text)) continue;
      set(choice.value);
      return;
    }
    throw CLI::ValidationError(name, "\"" + text + "\" is not one of " + words);
  };
  command.add_option_function<std::string>(name, take, help)->option_text(words);
}

template <class Value>
void addChoice(CLI::App& command, const std::string& name, Value& target,
               const std::vector<Choice<Value>>& choices, const std::string& help) {
  addChoice<Value>(
      command, name, [&target](Value value) { target = std::move(value); }, choices, help);
}

constexpr const char* kFormatHelp = "Form of the result: table is the default";

}  // namespace

void addTimeoutOption(CLI::App& command) {
  command.add_option("--timeout")
      ->description("Seconds after which the command is stopped, exit status 3; 0 for no limit (0)")
      ->option_text("SECONDS")
      ->check([](const std::string& text) {
        int seconds = 0;
        const char* end = text.data() + text.size();
        const auto [rest, error] = std::from_chars(text.data(), end, seconds);
        const bool whole = error == std::errc() && rest == end && seconds >= 0;
        return whole ? "" : "\"" + text + "\" is no whole number of seconds from 0";
      });
}

void addConnectionOptions(CLI::App& command, AccountSetOptions& options) {
  auto* db = command.add_option("--db", options.db, "An embedded account set, opened read-only")
                 ->option_text("FILE");
  auto* dsn =
      command
          .add_option(
              "--dsn", options.dsn,
              "A connection string, the suite's or an ADO one; VELMORA_DSN in the environment "
              "stands in for it, away from other users' eyes")
          ->option_text("TEXT");
  auto* file = command.add_option("--dsn-file", options.dsnFile, "A file with a connection string")
                   ->option_text("FILE");
  db->excludes(dsn)->excludes(file);
  dsn->excludes(file);
  addTimeoutOption(command);
  command.add_flag("--debug")->description("Show what the embedded engine itself says of an error");
}

void addSideOption(CLI::App& command, AccountSetOptions& options) {
  const std::vector<Choice<bool>> sides{{"ar", true}, {"ap", false}};
  addChoice(command, "--side", options.receivables, sides, "Receivables (the default) or payables");
}

void addPeriodOptions(CLI::App& command, int& year, int& period, const std::string& yearHelp) {
  auto* yearOption = command.add_option("--year", year, yearHelp)
                         ->option_text("YEAR")
                         ->check(CLI::Range(1900, 9999));
  auto* periodOption = command.add_option("--period", period, "Period of that year")
                           ->option_text("PERIOD")
                           ->check(CLI::Range(1, 99));
  yearOption->needs(periodOption);
  periodOption->needs(yearOption);
}

void addLanguageOption(CLI::App& command, std::string& language) {
  const std::vector<Choice<std::string>> languages{{"chs", "chs"}, {"CHT", "CHT"}, {"EN", "EN"}};
  addChoice(command, "--lang", language, languages, "Language of the findings; chs if absent");
}

void addFormatOption(CLI::App& command, Format& format) {
  const std::vector<Choice<Format>> formats{
      {"table", Format::table}, {"csv", Format::csv}, {"json", Format::json}};
  addChoice(command, "--format", format, formats, kFormatHelp);
}

void addFormatOption(CLI::App& command, ReportForm& report) {
  const std::vector<Choice<ReportForm>> forms{
      {"table", ReportForm::none}, {"html", ReportForm::html}, {"xlsx", ReportForm::xlsx}};
  addChoice(command, "--format", report, forms, kFormatHelp);
}

void addFormatOption(CLI::App& command, Format& format, ReportForm& report) {
  using Form = std::pair<Format, ReportForm>;
  const std::vector<Choice<Form>> forms{{"table", {Format::table, ReportForm::none}},
                                        {"csv", {Format::csv, ReportForm::none}},
                                        {"json", {Format::json, ReportForm::none}},
                                        {"html", {Format::table, ReportForm::html}},
                                        {"xlsx", {Format::table, ReportForm::xlsx}}};
  addChoice<Form>(
      command, "--format", [&](Form form) { std::tie(format, report) = form; }, forms, kFormatHelp);
}

}  // namespace velmora::cli
