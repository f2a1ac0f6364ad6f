#include "platform/ado/odbc/batch.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

#include "platform/ado/odbc/columns.h"
#include "platform/ado/odbc/parameters.h"
#include "velmora/com/error.h"

namespace velmora::ado::odbc {

namespace {

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// So long after the time limit a driver that should have watched it has not.
constexpr auto kDriversDelay = std::chrono::milliseconds(500);

/// What a driver says when the time limit it was given is over. A server's refusal to wait
/// any longer for a lock looks alike.
bool isTimeout(const Diagnostic& diagnostic) {
  constexpr long kLockTimeout = 1222;
  return diagnostic.state == "HYT00" && diagnostic.native != kLockTimeout;
}

class BatchRun {
 public:
  BatchRun(const Session& session, int timeoutSeconds, BatchStopper& stopper)
      : session_(session),
        stopper_(stopper),
        statement_(session),
        running_(stopper, {timeoutSeconds, kDriversDelay},
                 [handle = statement_.handle()] { SQLCancel(handle); }) {
    // Not every driver takes it.
    SQLSetStmtAttr(statement_.handle(), SQL_ATTR_QUERY_TIMEOUT,
                   attributeValue(static_cast<SQLULEN>(timeoutSeconds)), 0);
  }

  std::vector<StatementResult> run(std::string_view batch,
                                   std::span<const ParameterValue> parameters) {
    try {
      runStatements(batch, parameters);
    } catch (const com::Error&) {
      stopper_.throwIfStopped();
      throw;
    }
    // Whatever the driver made of an interrupt: rows may be missing.
    stopper_.throwIfStopped();
    if (std::ranges::any_of(errors_, isTimeout)) stopper_.throwTimeout();
    if (!errors_.empty() && session_.isDead()) throwConnectError(toText(errors_));
    if (!errors_.empty()) throwDiagnostics(errors_);
    return std::move(results_);
  }

 private:
  void runStatements(std::string_view batch, std::span<const ParameterValue> parameters) {
    const BoundParameters bound(statement_, parameters);
    auto code = statement_.execute(batch);
    if (code == SQL_NO_DATA) code = SQL_SUCCESS;  // a change that met no rows
    while (code != SQL_NO_DATA) {
      if (SQL_SUCCEEDED(code))
        takeResult();
      else if (!noteErrors())
        break;
      if (stopper_.stopped()) break;
      code = SQLMoreResults(statement_.handle());
    }
  }

  void takeResult() {
    StatementResult result;
    result.rows.fields = describeColumns(statement_);
    result.hasRows = !result.rows.fields.empty();
    if (result.hasRows) {
      fetchRows(result.rows);
    } else {
      SQLLEN changed = -1;
      SQLRowCount(statement_.handle(), &changed);
      if (changed < 0) return;
      result.recordsAffected = changed;
    }
    results_.push_back(std::move(result));
  }

  void fetchRows(Rowset& rows) {
    while (!stopper_.stopped()) {
      const auto code = SQLFetch(statement_.handle());
      if (code == SQL_NO_DATA) return;
      if (!SQL_SUCCEEDED(code)) {
        noteErrors();
        return;
      }
      for (std::size_t column = 0; column < rows.fields.size(); ++column)
        rows.cells.push_back(readCell(statement_, column, rows.fields[column]));
    }
  }

  /// False when asking for further results leads nowhere: the driver repeats itself, the
  /// connection is gone, or only the driver manager says that the batch has ended.
  bool noteErrors() {
    auto said = diagnosticsOf(SQL_HANDLE_STMT, statement_.handle());
    const bool ended = !errors_.empty() && !said.empty() && said.front().state == "HY010";
    if (ended || said == lastSaid_) return false;
    std::ranges::copy_if(said, std::back_inserter(errors_), [this](const Diagnostic& record) {
      return std::ranges::find(errors_, record) == errors_.end();
    });
    lastSaid_ = std::move(said);
    return !isConnectionLost(lastSaid_) && !session_.isDead();
  }

  const Session& session_;
  BatchStopper& stopper_;
  Statement statement_;
  BatchStopper::Batch running_;  // ends before the statement does
  std::vector<StatementResult> results_;
  std::vector<Diagnostic> errors_;
  std::vector<Diagnostic> lastSaid_;
};

}  // namespace

std::vector<StatementResult> runBatch(const Session& session, std::string_view batch,
                                      std::span<const ParameterValue> parameters,
                                      int timeoutSeconds, BatchStopper& stopper) {
  if (isBlank(batch)) return {};
  return BatchRun(session, timeoutSeconds, stopper).run(batch, parameters);
}

}  // namespace velmora::ado::odbc
