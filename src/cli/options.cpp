#include "cli/options.h"

#include <array>
#include <charconv>

#include "velmora/collections/letter_case.h"

namespace velmora::cli {

namespace {

template <class Value>
struct Choice {
  std::string_view word;
  Value value;
};

/// An option with a value out of `choices`, letter case ignored.
template <class Value, std::size_t N>
void addChoice(CLI::App& command, const std::string& name, Value& target,
               const std::array<Choice<Value>, N>& choices, const std::string& help) {
  std::string words;
  for (const auto& choice : choices) words.append(words.empty() ? "" : "|").append(choice.word);
  const auto take = [&target, choices, name, words](const std::string& text) {
    for (const auto& choice : choices) {
      if (!collections::equalsIgnoringCase(choice.word, text)) continue;
      target = choice.value;
      return;
    }
    throw CLI::ValidationError(name, "\"" + text + "\" is not one of " + words);
  };
  command.add_option_function<std::string>(name, take, help)->option_text(words);
}

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
  constexpr std::array kSides{Choice<bool>{"ar", true}, Choice<bool>{"ap", false}};
  addChoice(command, "--side", options.receivables, kSides,
            "Receivables (the default) or payables");
}

void addLanguageOption(CLI::App& command, AccountSetOptions& options) {
  const std::array languages{Choice<std::string>{"chs", "chs"}, Choice<std::string>{"CHT", "CHT"},
                             Choice<std::string>{"EN", "EN"}};
  addChoice(command, "--lang", options.language, languages,
            "Language of the findings; chs if absent");
}

void addFormatOption(CLI::App& command, Format& format) {
  constexpr std::array kFormats{Choice<Format>{"table", Format::table},
                                Choice<Format>{"csv", Format::csv},
                                Choice<Format>{"json", Format::json}};
  addChoice(command, "--format", format, kFormats, "Form of the result: table is the default");
}

}  // namespace velmora::cli
