#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/tsql/binding/names/statement_scope.h"
#include "platform/tsql/engine/engine_functions.h"
#include "platform/tsql/syntax/ast_query.h"

namespace velmora::tsql {

struct BoundQuery;
struct Context;
struct QueryScope;
struct Source;

/// The stages that the binding of expressions and sources comes before and yet needs, for
/// the queries within them.
struct QueryStages {
  /// Binds a query; `outer` is the query around it, if any.
  BoundQuery (*bind)(Context& context, const QueryScope* outer, const Query& query);
  /// A query as DuckDB SQL, column n of type types[n]; in any order unless TOP needs one.
  std::string (*text)(Context& context, const BoundQuery& query, const std::vector<SqlType>& types);
};

/// What binding one statement needs and collects.
struct Context {
  Context(const Scope& seen, const QueryStages& stages) : scope(seen), queries(stages) {}

  const Scope& scope;
  const QueryStages& queries;
  std::vector<DecimalFunction> functions;
  /// How often each stored table is read.
  std::map<const TableInfo*, int> tableUses;
  /// How many of these uses are over before the first row of the statement comes.
  std::map<const TableInfo*, int> settledUses;
  /// How many views deep the query being bound stands.
  int viewDepth = 0;
  /// Where set, gets the source of every column that is read.
  std::vector<const Source*>* sourcesRead = nullptr;
  /// How many expressions were bound to see whether they are a key of GROUP BY.
  int keyTrials = 0;

  /// The DuckDB name of the function, remembered as needed.
  std::string require(const DecimalFunction& function);
};

/// What a definition sees that outlives the batch: no variables and no parameters.
Scope definitionScope(const Scope& scope);

}  // namespace velmora::tsql
