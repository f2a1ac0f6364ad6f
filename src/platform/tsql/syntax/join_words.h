#pragma once

#include <string_view>

#include "platform/tsql/syntax/ast_query.h"

namespace velmora::tsql {

/// What stands between the two sides of a join, the same in T-SQL and for the engine.
constexpr std::string_view joinWords(JoinKind kind) {
  switch (kind) {
    case JoinKind::Inner:
      return " INNER JOIN ";
    case JoinKind::Left:
      return " LEFT JOIN ";
    case JoinKind::Right:
      return " RIGHT JOIN ";
    case JoinKind::Full:
      return " FULL JOIN ";
    case JoinKind::Cross:
      break;
  }
  return " CROSS JOIN ";
}

}  // namespace velmora::tsql
