#include "platform/tsql/output/query_text.h"

#include <algorithm>
#include <span>

#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/conversions/text_rules.h"
#include "platform/tsql/binding/order_rules.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/syntax/overloaded.h"

namespace velmora::tsql {
namespace {

using Types = std::vector<SqlType>;

enum class RowOrder { any, wanted };

std::string placeNames(std::size_t count) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) names.push_back(placeName(i));
  return join(names, ", ");
}

bool anyText(const Types& types) {
  return std::ranges::any_of(types, [](const SqlType& type) { return type.isText(); });
}

std::string orderClause(const std::vector<std::string>& terms) {
  return terms.empty() ? std::string() : " ORDER BY " + join(terms, ", ");
}

std::string limitClause(const std::optional<std::int64_t>& top) {
  return top ? " LIMIT " + std::to_string(*top) : std::string();
}

std::string selectList(Context& context, const BoundSelect& select, const Types& types) {
  std::string list;
  for (std::size_t i = 0; i < select.outputs.size(); ++i) {
    const OutputValue& output = select.outputs[i];
    if (i > 0) list += ", ";
    list += exactSql(convertTo(context, output.value, types[i], output.position));
    if (!output.name.empty()) list += " AS " + quoteName(output.name);
  }
  return list;
}

std::vector<std::string> plainOrder(const BoundSelect& select) {
  std::vector<std::string> terms;
  for (const OrderTerm& term : select.orderBy) {
    if (!term.value.constant) terms.push_back(orderTerm(term.value, term.descending));
  }
  for (const std::string& term : select.naturalOrder) {
    if (std::ranges::find(terms, term) == terms.end()) terms.push_back(term);
  }
  return terms;
}

std::string keyName(std::size_t index) {
  return quoteName("k" + std::to_string(index + 1));
}

/// The places of a result in the order of its rows: those of ORDER BY, then all columns.
std::vector<std::pair<std::size_t, bool>> placeOrder(const std::vector<OrderTerm>& orderBy,
                                                     std::size_t columns) {
  std::vector<std::pair<std::size_t, bool>> places;
  places.reserve(orderBy.size() + columns);
  for (const OrderTerm& term : orderBy) places.emplace_back(*term.output, term.descending);
  for (std::size_t i = 0; i < columns; ++i) {
    const bool named =
        std::ranges::any_of(orderBy, [i](const OrderTerm& term) { return term.output == i; });
    if (!named) places.emplace_back(i, false);
  }
  return places;
}

/// "(rows) AS q(c1, c2)".
std::string placed(const std::string& rows, std::size_t columns) {
  return "(" + rows + ") AS q(" + placeNames(columns) + ")";
}

/// What a result without duplicates needs of its columns.
struct DistinctColumns {
  const std::vector<OutputColumn>& columns;
  const Types& types;
  /// The constants of columns with the same in all rows, else empty: they tell no rows apart.
  std::vector<std::string> fixed;

  bool isKey(std::size_t i) const { return fixed[i].empty(); }
  /// A text that stands for all that differ from it in case or trailing blanks.
  bool isTextKey(std::size_t i) const { return isKey(i) && types[i].isText(); }
};

std::string namedAs(const std::string& value, const std::string& name) {
  return name.empty() ? value : value + " AS " + quoteName(name);
}

/// The rows without duplicates: texts that differ in case or trailing blanks are the
/// same, one of them stands for all. The names are the columns' own or, for `withKeys`,
/// the places', with the texts' keys ("k2") behind them.
std::string withoutDuplicates(const std::string& rows, const DistinctColumns& distinct,
                              bool withKeys = false) {
  std::vector<std::string> values, keys, sortKeys;
  for (std::size_t i = 0; i < distinct.types.size(); ++i) {
    const std::string place = "q." + placeName(i);
    const std::string value = distinct.isTextKey(i) ? "min(" + place + ")"
                              : distinct.isKey(i)   ? place
                                                    : distinct.fixed[i];
    values.push_back(withKeys ? value + " AS " + placeName(i)
                              : namedAs(value, distinct.columns[i].name));
    if (!distinct.isKey(i)) continue;
    keys.push_back(keySql(computed(place, distinct.types[i])));
    if (distinct.isTextKey(i)) sortKeys.push_back(keys.back() + " AS " + keyName(i));
  }
  const bool grouped = keys.size() < values.size() || anyText(distinct.types);
  if (withKeys) values.insert(values.end(), sortKeys.begin(), sortKeys.end());
  return std::string("SELECT ") + (grouped ? "" : "DISTINCT ") + join(values, ", ") + " FROM " +
         placed(rows, distinct.types.size()) + (grouped ? " GROUP BY " + join(keys, ", ") : "");
}

std::string reordered(const std::string& rows, const std::vector<OutputColumn>& columns,
                      const std::vector<std::string>& terms,
                      const std::optional<std::int64_t>& top) {
  std::vector<std::string> values;
  for (std::size_t i = 0; i < columns.size(); ++i)
    values.push_back(namedAs("q." + placeName(i), columns[i].name));
  return "SELECT " + join(values, ", ") + " FROM " + rows + orderClause(terms) + limitClause(top);
}

// Of more amounts than these only a hash decides between rows that are alike in all else:
// to sort by dozens of them would take longer than all the rest.
constexpr int kSortedAmounts = 4;

/// The rows without duplicates in their order; each text's key is made once for both.
std::string sortedDistinct(const std::string& rows, const DistinctColumns& distinct,
                           const std::vector<OrderTerm>& orderBy,
                           const std::optional<std::int64_t>& top) {
  const bool hashed = std::ranges::count_if(distinct.types, &SqlType::isDecimal) > kSortedAmounts;
  std::vector<std::string> terms, amounts;
  for (const auto& [place, descending] : placeOrder(orderBy, distinct.types.size())) {
    if (!distinct.isKey(place)) continue;
    const std::string key = "q." + (distinct.isTextKey(place) ? keyName(place) : placeName(place));
    if (hashed && orderBy.empty() && distinct.types[place].isDecimal())
      amounts.push_back(key);
    else
      terms.push_back(key + (descending ? " DESC NULLS LAST" : " ASC NULLS FIRST"));
  }
  if (!amounts.empty()) terms.push_back("hash(" + join(amounts, ", ") + ")");
  return reordered("(" + withoutDuplicates(rows, distinct, true) + ") AS q", distinct.columns,
                   terms, top);
}

/// A result in the order of its columns.
std::string sortedRows(const std::string& rows, const std::vector<OutputColumn>& columns,
                       const Types& types, const std::vector<OrderTerm>& orderBy) {
  std::vector<std::string> terms;
  for (const auto& [place, descending] : placeOrder(orderBy, types.size()))
    terms.push_back(orderTerm(computed("q." + placeName(place), types[place]), descending));
  return reordered(placed(rows, columns.size()), columns, terms, {});
}

/// No column is known to be fixed.
std::vector<std::string> noneFixed(const Types& types) {
  return std::vector<std::string>(types.size());
}

/// TOP PERCENT and WITH TIES: each row with its place, its rank in the order and the count of
/// all rows.
std::string topText(Context& context, const BoundSelect& select, const Types& types) {
  std::vector<std::string> ranks, values;
  for (const OrderTerm& term : select.orderBy) {
    if (!term.value.constant) ranks.push_back(orderTerm(term.value, term.descending));
  }
  for (std::size_t i = 0; i < types.size(); ++i) {
    values.push_back(namedAs("q." + placeName(i), select.outputs[i].name));
  }
  const std::string order = orderClause(plainOrder(select));
  const std::string most = select.topPercent ? "ceil(q.n * " + *select.topPercent + " / 100)"
                                             : std::to_string(*select.top);
  return "SELECT " + join(values, ", ") + " FROM (SELECT " + selectList(context, select, types) +
         ", row_number() OVER (" + order + ") AS o, rank() OVER (" + orderClause(ranks) +
         ") AS r, count(*) OVER () AS n" + select.body + ") AS q(" + placeNames(types.size()) +
         ", o, r, n) WHERE q." + (select.withTies ? "r" : "o") + " <= " + most + " ORDER BY q.o";
}

std::string selectText(Context& context, const BoundBody& body, const BoundSelect& select,
                       const Types& types, RowOrder order) {
  const std::string rows = "SELECT " + selectList(context, select, types) + select.body;
  const bool sorted = order == RowOrder::wanted || select.isLimited();
  if (select.distinct) {
    const DistinctColumns distinct{body.columns, types, noneFixed(types)};
    return sorted ? sortedDistinct(rows, distinct, select.orderBy, select.top)
                  : withoutDuplicates(rows, distinct);
  }
  if (select.topPercent || select.withTies) return topText(context, select, types);
  return rows + (sorted ? orderClause(plainOrder(select)) : "") + limitClause(select.top);
}

std::string bodyText(Context& context, const BoundBody& body, const Types& types,
                     const std::vector<OrderTerm>& orderBy, RowOrder order);

std::string branchText(Context& context, const BoundBody& branch, const Types& types,
                       RowOrder order) {
  return "(" + bodyText(context, branch, types, {}, order) + ")";
}

/// The branches with `word` between them, of many in halves: the engine goes one level deeper
/// for each in a row.
std::string chained(std::span<const std::string> branches, std::string_view word) {
  constexpr std::size_t mostInARow = 100;
  if (branches.size() <= mostInARow) return join(branches, word);
  const std::size_t half = branches.size() / 2;
  return "(" + chained(branches.first(half), word) + ")" + std::string(word) + "(" +
         chained(branches.subspan(half), word) + ")";
}

/// The constants of columns for which each of the first `count` branches selects the same
/// one; none when that would leave no column to tell rows apart.
std::vector<std::string> fixedColumns(Context& context, const BoundUnion& united, std::size_t count,
                                      const Types& types) {
  std::vector<std::string> fixed = noneFixed(types);
  std::size_t found = 0;
  for (std::size_t i = 0; i < types.size(); ++i) {
    const OutputValue* constant = nullptr;
    for (std::size_t branch = 0; branch < count; ++branch) {
      const auto* select = std::get_if<BoundSelect>(&united.branches[branch].node);
      const OutputValue* output = select == nullptr ? nullptr : &select->outputs[i];
      const bool same =
          output != nullptr && output->value.constant &&
          (branch == 0 || (constant != nullptr && output->value.sql == constant->value.sql));
      constant = same ? output : nullptr;
    }
    if (constant == nullptr) continue;
    fixed[i] = exactSql(convertTo(context, constant->value, types[i], constant->position));
    ++found;
  }
  return found == types.size() ? noneFixed(types) : fixed;
}

bool isGrouped(const BoundBody& body) {
  const auto* select = std::get_if<BoundSelect>(&body.node);
  return select != nullptr && select->grouped;
}

std::string unionText(Context& context, const BoundBody& body, const BoundUnion& united,
                      const Types& types, const std::vector<OrderTerm>& orderBy, RowOrder order) {
  // An order of the whole makes one of the branches pointless; so does a sorted union.
  const bool allDistinct = united.distinctBranches == united.branches.size();
  const bool sorted = order == RowOrder::wanted && (allDistinct || !orderBy.empty());
  // The engine runs many branches faster when it drops equal rows from one to the next; of
  // groups there are seldom any to drop.
  const bool repeats = !std::ranges::all_of(united.branches, isGrouped);
  const std::size_t merged = united.distinctBranches;
  std::vector<std::string> branches;
  for (std::size_t i = 0; i < united.branches.size(); ++i) {
    branches.push_back(branchText(context, united.branches[i], types,
                                  sorted || i < merged ? RowOrder::any : order));
    if (i + 1 != merged) continue;
    std::string rows = chained(branches, repeats ? " UNION " : " UNION ALL ");
    const DistinctColumns distinct{body.columns, types,
                                   fixedColumns(context, united, merged, types)};
    if (sorted && allDistinct) return sortedDistinct(rows, distinct, orderBy, {});
    rows = order == RowOrder::wanted && !sorted ? sortedDistinct(rows, distinct, {}, {})
                                                : withoutDuplicates(rows, distinct);
    branches = {allDistinct ? rows : "(" + rows + ")"};
  }
  const std::string rows = chained(branches, " UNION ALL ");
  return sorted ? sortedRows(rows, body.columns, types, orderBy) : rows;
}

/// The rows that only the left branch has, or both have. Groups of equal rows tell it: Null is
/// equal to Null, and texts are compared by their rules.
std::string setQueryText(Context& context, const BoundBody& body, const BoundSetQuery& query,
                         const Types& types, const std::vector<OrderTerm>& orderBy,
                         RowOrder order) {
  std::vector<std::string> values, keys;
  for (std::size_t i = 0; i < types.size(); ++i) {
    const std::string place = "q." + placeName(i);
    values.push_back(namedAs("min(" + place + ") FILTER (WHERE q.b = 1)", body.columns[i].name));
    keys.push_back(keySql(computed(place, types[i])));
  }
  std::string rows;
  for (std::size_t i = 0; i < query.branches.size(); ++i) {
    rows += (i == 0 ? "" : " UNION ALL ") + ("SELECT l.*, " + std::to_string(i + 1) + " FROM (") +
            bodyText(context, query.branches[i], types, {}, RowOrder::any) + ") AS l";
  }
  rows = "SELECT " + join(values, ", ") + " FROM (" + rows + ") AS q(" + placeNames(types.size()) +
         ", b) GROUP BY " + join(keys, ", ") +
         " HAVING min(q.b) = 1 AND max(q.b) = " + (query.intersect ? "2" : "1");
  return order == RowOrder::wanted ? sortedRows(rows, body.columns, types, orderBy) : rows;
}

std::string bodyText(Context& context, const BoundBody& body, const Types& types,
                     const std::vector<OrderTerm>& orderBy, RowOrder order) {
  return std::visit(Overloaded{
                        [&](const BoundSelect& select) {
                          return selectText(context, body, select, types, order);
                        },
                        [&](const BoundUnion& united) {
                          return unionText(context, body, united, types, orderBy, order);
                        },
                        [&](const BoundSetQuery& query) {
                          return setQueryText(context, body, query, types, orderBy, order);
                        },
                    },
                    body.node);
}

}  // namespace

std::string queryText(Context& context, const BoundQuery& query,
                      const std::vector<SqlType>& types) {
  return query.with + bodyText(context, query.body, types, query.orderBy, RowOrder::any);
}

std::string orderedQueryText(Context& context, const BoundQuery& query,
                             const std::vector<SqlType>& types) {
  return query.with + bodyText(context, query.body, types, query.orderBy, RowOrder::wanted);
}

std::string orderedQueryText(Context& context, const BoundQuery& query) {
  return orderedQueryText(context, query, typesOf(query));
}

}  // namespace velmora::tsql
