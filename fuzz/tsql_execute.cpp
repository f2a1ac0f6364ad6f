// T-SQL run on a database in memory.

#include <algorithm>
#include <cctype>
#include <memory>

#include "common/fuzz.h"
#include "common/tsql_tables.h"
#include "platform/ado/duckdb/embedded_provider.h"
#include "velmora/com/error.h"

namespace velmora::fuzz {
namespace {

using Connection = std::unique_ptr<ado::ProviderConnection>;

Connection freshDatabase() {
  auto connection = ado::embedded::openConnection(
      ado::ConnectionString("Data Source=:memory:;Threads=1;Memory=256MB"));
  connection->execute(kTables, {});
  connection->execute(kRows, {});
  return connection;
}

/// Whether a batch ends transactions, so that what it changes cannot be undone from outside.
bool endsTransactions(std::string_view batch) {
  std::string lower(batch);
  std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return std::tolower(c); });
  return lower.find("commit") != std::string::npos || lower.find("rollback") != std::string::npos;
}

void tryExecute(ado::ProviderConnection& connection, std::string_view batch) {
  try {
    connection.execute(batch, {});
  } catch (const com::Error& error) {
    requireSqlError(error.description(), batch);
  }
}

}  // namespace

// A new database takes as long as many batches, so what one changes is rolled back.
void run(std::string_view input) {
  static Connection connection;
  if (!connection) connection = freshDatabase();
  if (endsTransactions(input)) {
    tryExecute(*connection, input);
    connection.reset();
    return;
  }
  connection->execute("begin transaction", {});
  tryExecute(*connection, input);
  tryExecute(*connection, "rollback");  // an error where a failure has rolled back already
}

}  // namespace velmora::fuzz
