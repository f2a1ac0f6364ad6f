#include <fmt/format.h>
#include <fstream>
#include <istream>
#include <iterator>
#include <ostream>

#include "cli/call/json_recordset.h"
#include "cli/commands/commands.h"
#include "cli/failure.h"
#include "cli/options.h"
#include "cli/output/counted.h"
#include "velmora/com/error.h"
#include "velmora/tsql/script.h"

namespace velmora::cli {

namespace {

struct Options {
  AccountSetOptions accountSet;
  Format format = Format::table;
  std::string text, file;
  bool write = false, showSql = false;
};

std::string readAll(std::istream& in) {
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string scriptText(const Options& options, Streams& streams) {
  if (!options.text.empty()) return options.text;
  if (options.file.empty()) return readAll(streams.in);
  std::ifstream in(options.file);
  if (!in) throw Failure("cannot read " + options.file);
  return readAll(in);
}

/// Writes the results of a script one after the other, in one form; what was written
/// when a batch fails is complete, too.
class ResultPrinter {
 public:
  ResultPrinter(Streams& streams, Format format) : streams_(streams), format_(format) {}
  ResultPrinter(const ResultPrinter&) = delete;
  ResultPrinter& operator=(const ResultPrinter&) = delete;

  void print(ado::StatementResult result) {
    if (result.hasRows) {
      printRows(*ado::Recordset::fromRowset(std::move(result.rows)));
    } else if (result.recordsAffected >= 0) {
      streams_.err << counted(result.recordsAffected, "row") << " affected\n";
    }
  }
  ~ResultPrinter() {
    if (format_ == Format::json) streams_.out << (count_ == 0 ? "[]\n" : "]\n");
  }

 private:
  void printRows(ado::Recordset& rows) {
    const bool first = count_++ == 0;
    if (format_ == Format::json) {
      streams_.out << (first ? "[" : ",\n") << jsonText(jsonFromRecordset(rows));
      return;
    }
    if (!first) streams_.out << (format_ == Format::csv ? "\r\n" : "\n");
    if (format_ == Format::csv) {
      writeCsv(streams_.out, rows);
    } else {
      writeTable(streams_.out, rows, Style::forOutput());
      streams_.err << '(' << counted(rows.RecordCount(), "row") << ")\n";
    }
  }

  Streams& streams_;
  Format format_;
  std::size_t count_ = 0;
};

void runBatch(ado::ProviderConnection& provider, const tsql::ScriptBatch& batch, bool showSql,
              ResultPrinter& printer, Streams& streams) {
  std::vector<ado::StatementResult> results;
  try {
    results = provider.execute(batch.text, {});
  } catch (const com::Error& error) {
    throw com::Error(error.number(), error.source(),
                     fmt::format("the batch at line {}: {}", batch.firstLine, error.description()));
  }
  if (showSql) streams.err << provider.lastNativeSql() << '\n';
  for (auto& result : results) printer.print(std::move(result));
}

int runSql(const Options& options, Streams& streams) {
  const auto batches = tsql::splitScript(scriptText(options, streams));
  const Session session(options.accountSet, options.write ? Access::write : Access::read);
  ResultPrinter printer(streams, options.format);
  for (const auto& batch : batches)
    for (int i = 0; i < batch.repeat; ++i)
      runBatch(session.connection().provider(), batch, options.showSql, printer, streams);
  return kOk;
}

}  // namespace

void addSql(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("sql", "Run T-SQL on an account set");
  command->footer(
      "Examples:\n"
      "  velmora sql --db demo.db \"select FNumber, FName from t_Account\"\n"
      "  velmora sql --db demo.db --file query.sql --format csv\n"
      "  velmora sql --db demo.db --write <changes.sql\n"
      "\n"
      "A line with GO alone separates batches. JSON is an array with one recordset a\n"
      "result, {\"fields\":[...],\"rows\":[[...]]}; amounts and dates in it are texts.");
  auto* text =
      command->add_option("TEXT", options->text, "T-SQL; standard input if absent")->type_name("");
  command->add_option("--file", options->file, "Read the T-SQL from a file")
      ->option_text("FILE")
      ->excludes(text);
  addConnectionOptions(*command, options->accountSet);
  command->add_flag("--write", options->write,
                    "Open an embedded account set for changes; else it is read-only");
  addFormatOption(*command, options->format);
  command->add_flag("--show-sql", options->showSql,
                    "Print the statements in the engine's own language on standard error");
  command->callback([options, &chosen] {
    chosen = [options](Streams& streams) { return runSql(*options, streams); };
  });
}

}  // namespace velmora::cli
