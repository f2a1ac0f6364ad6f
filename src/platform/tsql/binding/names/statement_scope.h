#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>

#include "platform/tsql/binding/names/catalog.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/types/sql_type.h"
#include "velmora/collections/date.h"
#include "velmora/collections/variant.h"

namespace velmora::tsql {

/// A local variable or a statement parameter: its declared type and its value now.
/// The value is Null or of the Variant type of a recordset cell of that SqlType.
struct Variable {
  SqlType type;
  collections::Variant value = collections::Null{};
};

/// Variables by name, '@' included.
using Variables = std::map<std::string, Variable, IgnoreCase>;

/// What a statement sees when it is executed.
struct Scope {
  Catalog& catalog;
  const Variables& variables;
  std::span<const Variable> parameters;  ///< for "?", in order of appearance in the batch
  collections::Date now;                 ///< getdate(), one value for the whole statement
  /// Changes to permanent tables are refused.
  bool readOnly = false;
  std::int64_t rowCount = 0;                  ///< @@rowcount
  int transactions = 0;                       ///< @@trancount
  int lastError = 0;                          ///< @@error
  std::optional<std::int64_t> lastIdentity;   ///< @@identity
  std::optional<std::int64_t> scopeIdentity;  ///< scope_identity()
};

}  // namespace velmora::tsql
