#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora::tsql {

/// A part of a script that is sent to the database in one piece.
struct ScriptBatch {
  std::string text;
  /// The script's line, counted from 1, on which `text` begins: a line named in an error of
  /// this batch is line firstLine + that line - 1 of the script.
  int firstLine = 1;
  /// How many times to run it: the number behind its GO, otherwise 1.
  int repeat = 1;
};

/// Splits a script (UTF-8) at its GO lines, as the command-line tools of SQL Server do: GO in
/// any letter case alone on its line, perhaps with a count from 1 to 1000 and a `--` comment
/// behind it, and not inside a comment, a 'text' or a [name]. Batches of nothing but blanks
/// are left out. The statements themselves are not looked at: what is not closed goes to
/// the parser as it is.
/// Raises com::Error kProvider, source "Velmora.Embedded", "line 3, column 1: ..." when
/// something else follows GO on its line.
std::vector<ScriptBatch> splitScript(std::string_view script);

}  // namespace velmora::tsql
