#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "velmora/ado/connection.h"
#include "velmora/com/error.h"

namespace velmora::cli {

/// A table that belongs to an account set, with the columns that the checks may read.
struct SetTable {
  std::string name;
  std::vector<ado::FieldDefinition> columns;
  bool ownItemClass = false;  ///< of one of the user's own item classes, not in schema/

  std::vector<std::string> columnNames() const;
};

/// Makes the tables of an account set in `model`, an empty embedded database: those of
/// schema/ and those of the item classes that the user of `source` has defined. Returns the
/// ones to fill from `source`, in order of name; the tables of row access, which a suite's
/// own account set does not have, and schema's example of a user's item class may be
/// missing there.
///
/// Raises Failure naming table and column for what else the source lacks.
std::vector<SetTable> makeTables(ado::Connection& source, ado::Connection& model);

/// The statement that makes the table of a user's own item class. It has the columns
/// of schema's example, as far as `table` names them.
std::string ownItemClassSql(const SetTable& table);

/// Reads all rows of a table that holds `rows`. One that begins with a number is read in
/// pieces of about `pieceRows`, ranges of that column, so that it need not fit in memory.
void readInPieces(ado::Connection& source, const SetTable& table, std::int64_t rows,
                  std::int64_t pieceRows, const std::function<void(const ado::Rowset&)>& take);

/// Runs `body`, whose failures then name the table at work.
template <class Body>
auto atTable(const SetTable& table, Body body) {
  try {
    return body();
  } catch (const com::Error& error) {
    throw com::Error(error.number(), error.source(), table.name + ": " + error.description());
  }
}

}  // namespace velmora::cli
