#include "platform/tsql/binding/names/unique_match.h"

#include <algorithm>
#include <set>

#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/types/type_rules.h"
#include "platform/tsql/syntax/overloaded.h"

namespace velmora::tsql {
namespace {

/// `fixed.column = something of by`, or a constant when `by` is null, in a comparison that
/// takes the column's values as they are.
struct Equality {
  const Source* fixed;
  std::string column;
  const Source* by;
};

/// Whether a column's different values stay different when compared with a value of
/// `other`: not texts read as numbers ('1', '01'), nor numbers rounded to floats.
bool keepsApart(const SqlType& column, const SqlType& other) {
  const SqlType common = commonType(column, other);
  if (column.isText()) return common.isText();
  if (column.isExact()) return common.isExact();
  return common.kind == column.kind;
}

/// The equalities that every row of the FROM clause fulfils.
class EqualitySearch {
 public:
  explicit EqualitySearch(const QueryScope& scope) : scope_(scope) {}

  /// False where a join keeps rows of the left side without a match.
  bool visit(const TableSource& source) {
    const auto* join = std::get_if<Join>(&source.node);
    if (join == nullptr) {
      ++next_;
      return true;
    }
    if (join->kind == JoinKind::Right || join->kind == JoinKind::Full) return false;
    if (!visit(*join->left)) return false;
    const std::size_t right = next_;
    if (!visit(*join->right)) return false;
    // A left join's condition says nothing about the rows of its left side.
    if (join->on) addAll(*join->on, join->kind == JoinKind::Left ? right : 0);
    return true;
  }

  void addAll(const Expression& condition, std::size_t firstSource) {
    if (const auto* logical = std::get_if<LogicalExpression>(&condition.node)) {
      if (logical->op != LogicalOperator::And) return;
      for (const ExpressionPtr& operand : logical->operands) addAll(*operand, firstSource);
      return;
    }
    const auto* comparison = std::get_if<Comparison>(&condition.node);
    if (comparison == nullptr || comparison->op != ComparisonOperator::Equal) return;
    add(*comparison->left, *comparison->right, firstSource);
    add(*comparison->right, *comparison->left, firstSource);
  }

  const std::vector<Equality>& found() const { return found_; }

 private:
  void add(const Expression& side, const Expression& other, std::size_t firstSource) {
    const auto* reference = std::get_if<ColumnReference>(&side.node);
    if (reference == nullptr) return;
    const ColumnMatch match = resolveColumn(scope_, reference->column);
    if (match.scope != &scope_ || match.source < &scope_.sources[0] + firstSource) return;
    std::visit(Overloaded{[&](const ColumnReference& column) {
                            const ColumnMatch by = resolveColumn(scope_, column.column);
                            if (by.source != match.source &&
                                keepsApart(match.column->type, by.column->type)) {
                              found_.push_back({match.source, match.column->name, by.source});
                            }
                          },
                          [&](const IntegerLiteral&) {
                            if (!keepsApart(match.column->type, SqlType::integer())) return;
                            found_.push_back({match.source, match.column->name, nullptr});
                          },
                          [](const auto&) {}},
               other.node);
  }

  const QueryScope& scope_;
  std::size_t next_ = 0;
  std::vector<Equality> found_;
};

using Sources = std::set<const Source*>;

bool isFixed(const Source& source, const std::string& column,
             const std::vector<Equality>& equalities, const Sources& known) {
  return std::ranges::any_of(equalities, [&](const Equality& equality) {
    return equality.fixed == &source && sameName(equality.column, column) &&
           (equality.by == nullptr || known.contains(equality.by));
  });
}

bool isFixed(const Source& source, const std::vector<Equality>& equalities, const Sources& known) {
  return std::ranges::any_of(source.uniqueKeys, [&](const std::vector<std::string>& key) {
    return std::ranges::all_of(
        key, [&](const std::string& column) { return isFixed(source, column, equalities, known); });
  });
}

/// Adds to `known` the sources of which its own leave at most one row.
void addFixed(const QueryScope& scope, const std::vector<Equality>& equalities, Sources& known) {
  for (bool grown = true; grown;) {
    grown = false;
    for (const Source& source : scope.sources) {
      if (known.contains(&source) || !isFixed(source, equalities, known)) continue;
      grown = known.insert(&source).second;
    }
  }
}

std::vector<Equality> equalitiesOf(const QueryScope& scope, const std::vector<TableSourcePtr>& from,
                                   const ExpressionPtr& where) {
  EqualitySearch search(scope);
  for (const TableSourcePtr& source : from) {
    if (!search.visit(*source)) return {};
  }
  if (where) search.addAll(*where, 0);
  return search.found();
}

std::vector<const SourceColumn*> allColumns(const Source& source) {
  std::vector<const SourceColumn*> columns;
  for (const SourceColumn& column : source.columns) columns.push_back(&column);
  return columns;
}

std::vector<const SourceColumn*> decidingColumns(const Source& source,
                                                 const std::vector<Equality>& equalities,
                                                 const Sources& known) {
  auto columns = rowKey(source).value_or(allColumns(source));
  std::erase_if(columns, [&](const SourceColumn* column) {
    return isFixed(source, column->name, equalities, known);
  });
  return columns;
}

}  // namespace

bool meetsOnce(const QueryScope& scope, const Source& target,
               const std::vector<TableSourcePtr>& from, const ExpressionPtr& where) {
  Sources known = {&target};
  addFixed(scope, equalitiesOf(scope, from, where), known);
  return known.size() == scope.sources.size();
}

std::vector<DecidingSource> decidingSources(const QueryScope& scope,
                                            const std::vector<TableSourcePtr>& from,
                                            const ExpressionPtr& where) {
  const auto equalities = equalitiesOf(scope, from, where);
  Sources known;
  std::vector<DecidingSource> deciding;
  for (const bool stored : {true, false}) {
    for (const Source& source : scope.sources) {
      if ((source.table != nullptr) != stored) continue;
      addFixed(scope, equalities, known);
      if (known.contains(&source)) continue;
      deciding.push_back({&source, {}});
      if (!stored) deciding.back().columns = decidingColumns(source, equalities, known);
      known.insert(&source);
    }
  }
  return deciding;
}

std::optional<std::vector<const SourceColumn*>> rowKey(const Source& source) {
  // A unique index lets several rows without a value stand beside each other.
  const bool keyed =
      source.table == nullptr ? !source.uniqueKeys.empty() : !source.table->primaryKey.empty();
  if (!keyed) return std::nullopt;
  std::vector<const SourceColumn*> columns;
  for (const std::string& name : source.uniqueKeys.front()) {
    const auto column = std::ranges::find_if(
        source.columns, [&](const SourceColumn& one) { return sameName(one.name, name); });
    if (column == source.columns.end()) return std::nullopt;
    columns.push_back(&*column);
  }
  return columns;
}

}  // namespace velmora::tsql
