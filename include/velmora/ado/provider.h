#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "velmora/ado/connection_string.h"
#include "velmora/ado/rowset.h"

namespace velmora::ado {

/// A "?" parameter of a statement, in order of appearance.
struct ParameterValue {
  DataTypeEnum type = adVarChar;
  std::int64_t size = 0;  ///< characters, for texts; a longer value is an error
  Variant value;
};

/// Fast way to add many rows to one table, columns by name. Rows become visible
/// when `finish` returns; without it nothing of what was added stays.
class BulkInsert {
 public:
  virtual ~BulkInsert() = default;
  /// Appends one value of the current row, columns in the order given.
  virtual void append(const Variant& value) = 0;
  virtual void append(std::int64_t value) = 0;
  virtual void append(std::string_view text) = 0;
  virtual void append(const collections::Decimal& value) = 0;
  virtual void append(collections::Date value) = 0;
  virtual void appendNull() = 0;
  /// Ends the current row; raises naming the table when values are missing.
  virtual void endRow() = 0;
  virtual void finish() = 0;
};

/// An open connection to a database. Every failure is a com::Error with the
/// provider's source, number and text. Closing is destroying.
class ProviderConnection {
 public:
  virtual ~ProviderConnection() = default;

  /// Runs a batch to its end and returns what each statement answered, in order
  /// (only the statements that return rows or change rows).
  virtual std::vector<StatementResult> execute(std::string_view batch,
                                               std::span<const ParameterValue> parameters) = 0;

  /// Seconds a batch may run from now on, 0 without limit; execute raises kAdoTimeout when they
  /// are over. A provider that cannot stop a batch ignores it. Called before every execute.
  virtual void setCommandTimeout(int /*seconds*/) {}

  /// Ends the batch or bulk load that another thread runs on this connection: execute (or the
  /// bulk load's next call) raises kAdoOperationCancelled there, soon after this has returned.
  /// Nothing happens when none is running. The one member that any thread may call, but not
  /// while the connection is being destroyed. A provider that cannot stop a batch ignores it.
  ///
  /// Providers observe com::CurrentCancellation() of the thread that runs the batch as well.
  virtual void cancel() noexcept {}

  /// Bulk load into a table; kAdoNotSupported where the provider has none.
  virtual std::unique_ptr<BulkInsert> bulkInsert(std::string_view table,
                                                 std::span<const std::string> columns);

  /// The statements in the engine's own language that the last execute ran, one a
  /// line, for people who want to see them; empty where there is no difference.
  virtual std::string lastNativeSql() const { return {}; }
};

/// Opens connections; one per kind of database.
using ProviderFactory =
    std::function<std::unique_ptr<ProviderConnection>(const ConnectionString& settings)>;

/// Makes a provider known under a name of the "Provider" property (letter case
/// ignored), in place of an earlier one; also in place of one that comes with the
/// platform. Thread-safe.
///
/// A name that nobody registered is looked up once more without its version
/// ("X.1" as "X"), and SQLOLEDB, SQLNCLI... and MSOLEDBSQL... count as "MSDASQL",
/// the provider for ODBC, which is how a SQL Server is reached here.
void RegisterProvider(std::string name, ProviderFactory open);

}  // namespace velmora::ado
