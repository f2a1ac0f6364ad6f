#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/tsql/binding/names/catalog.h"
#include "platform/tsql/binding/names/query_scope.h"

namespace velmora::tsql {

/// A view of the catalogue as rows of constants.
struct SystemView {
  std::string sql;
  std::vector<SourceColumn> columns;
};

/// Whether there is a system view of that name.
bool isSystemView(std::string_view name);

/// sysobjects or syscolumns over the user's tables; nullopt for any other name.
std::optional<SystemView> systemView(std::string_view name, Catalog& catalog);

}  // namespace velmora::tsql
