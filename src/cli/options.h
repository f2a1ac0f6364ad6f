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
/// --lang chs|CHT|EN, taken in any letter case, kept in exactly these spellings.
void addLanguageOption(CLI::App& command, AccountSetOptions& options);
/// --format table|csv|json.
void addFormatOption(CLI::App& command, Format& format);

}  // namespace velmora::cli
