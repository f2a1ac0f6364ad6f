#include "cli/period/basic_checks.h"

#include <ostream>

#include "cli/account_set.h"
#include "cli/commands/commands.h"
#include "cli/component.h"
#include "cli/failure.h"
#include "cli/options.h"
#include "cli/report/check_reports.h"
#include "cli/shown_sql.h"

namespace velmora::cli {

namespace {

struct Options {
  AccountSetOptions accountSet;
  Format format = Format::table;
  ReportFile file;
  bool showSql = false;
};

void writeReportOf(Streams& streams, const Session& session, const CheckReport& report,
                   const ReportFile& file) {
  explain::Sentences sentences(session.language());
  writeReport(file.out, file.form, file, basicCheckReport(session, report, file, sentences),
              sentences);
  streams.out << report.summary << "\nwritten: " << file.out << '\n';
}

/// Runs `check(dsn, language)` on the account set that the options name.
template <class Check>
int runCheck(const Options& options, Streams& streams, Check check) {
  requireFile(options.file);
  activateComponent();
  const Session session(options.accountSet);
  requireAccountSet(session.connection());
  const std::string dsn = options.showSql ? showingSql(session, streams.err) : session.dsn();
  const CheckReport report = check(dsn, session.language());
  if (options.file.wanted())
    writeReportOf(streams, session, report, options.file);
  else
    writeReport(streams.out, streams.err, report, options.format);
  return report.blocked() ? kBlocked : kOk;
}

int initCheck(const Options& options, Streams& streams) {
  return runCheck(options, streams, [&](const auto& dsn, const auto& language) {
    return runInitCheck(dsn, options.accountSet.receivables, language);
  });
}

int accountCheck(const Options& options, Streams& streams) {
  return runCheck(options, streams, runAccountCheck);
}

/// The options that both commands have.
void addOptions(CLI::App& command, Options& options) {
  addConnectionOptions(command, options.accountSet);
  addLanguageOption(command, options.accountSet.language);
  addReportFormatOptions(command, options.format, options.file);
  command.add_flag("--show-sql", options.showSql, "Print each statement on standard error");
}

}  // namespace

void addInitCheck(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("init-check", "List what the initialisation still lacks");
  command->footer(
      "Examples:\n"
      "  velmora init-check --db demo.db --lang EN\n"
      "  velmora init-check --db demo.db --side ap --format csv >findings.csv\n"
      "\n"
      "Exit status 1: serious errors were found, the initialisation may not be ended.");
  addOptions(*command, *options);
  addSideOption(*command, options->accountSet);
  command->callback([options, &chosen] {
    chosen = [options](Streams& streams) { return initCheck(*options, streams); };
  });
}

void addAccountCheck(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand(
      "account-check", "List customers, suppliers and other items without valid accounts");
  command->footer(
      "Examples:\n"
      "  velmora account-check --db demo.db --lang EN\n"
      "  velmora account-check --db demo.db --format csv >findings.csv\n"
      "\n"
      "Exit status 1: serious errors were found, some item classes cannot be checked.");
  addOptions(*command, *options);
  command->callback([options, &chosen] {
    chosen = [options](Streams& streams) { return accountCheck(*options, streams); };
  });
}

}  // namespace velmora::cli
