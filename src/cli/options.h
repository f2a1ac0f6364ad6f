#pragma once

#include <CLI/CLI.hpp>

#include "cli/output/result_writer.h"
#include "cli/session.h"

namespace velmora::cli {

/// --timeout SECONDS, which the program itself heeds; for a command that reaches a database.
void addTimeoutOption(CLI::App& command);
/// --db, --dsn and --dsn-file, which exclude one another, --timeout and --debug, which the
/// program itself heeds.
void addConnectionOptions(CLI::App& command, AccountSetOptions& options);
/// --side ar|ap.
void addSideOption(CLI::App& command, AccountSetOptions& options);
/// --year and --period, given both or none; `yearHelp` tells what stands in for them.
void addPeriodOptions(CLI::App& command, int& year, int& period, const std::string& yearHelp);
/// --lang chs|CHT|EN, taken in any letter case, kept in exactly these spellings.
void addLanguageOption(CLI::App& command, std::string& language);
/// --format table|csv|json.
void addFormatOption(CLI::App& command, Format& format);
/// --format table|html|xlsx.
void addFormatOption(CLI::App& command, ReportForm& report);
/// --format table|csv|json|html|xlsx; `report` is none for the first three.
void addFormatOption(CLI::App& command, Format& format, ReportForm& report);

}  // namespace velmora::cli
