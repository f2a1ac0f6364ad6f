#include <algorithm>

#include "platform/tsql/bind_query.h"
#include "platform/tsql/conversion.h"
#include "platform/tsql/overloaded.h"
#include "platform/tsql/sql_text.h"
#include "platform/tsql/text_rules.h"

namespace velmora::tsql {
namespace {

using Types = std::vector<SqlType>;

enum class RowOrder { any, wanted };

/// Names of the columns where the query's own cannot serve: places, "c1", "c2", ...
std::string placeName(std::size_t index) {
  return quoteName("c" + std::to_string(index + 1));
}

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

/// Terms over the places of a result: those of ORDER BY, then all columns.
std::vector<std::string> placeOrder(const std::vector<OrderTerm>& orderBy, const Types& types) {
  std::vector<std::string> terms;
  const auto add = [&](std::size_t place, bool descending) {
    terms.push_back(orderTerm(computed("q." + placeName(place), types[place]), descending));
  };
  for (const OrderTerm& term : orderBy) add(*term.output, term.descending);
  for (std::size_t i = 0; i < types.size(); ++i) {
    const bool named =
        std::ranges::any_of(orderBy, [i](const OrderTerm& term) { return term.output == i; });
    if (!named) add(i, false);
  }
  return terms;
}

/// "(rows) AS q(c1, c2)".
std::string placed(const std::string& rows, std::size_t columns) {
  return "(" + rows + ") AS q(" + placeNames(columns) + ")";
}

/// The rows without duplicates: texts that differ in case or trailing blanks are the
/// same, one of them stands for all. The names are the columns' own.
std::string withoutDuplicates(const std::string& rows, const std::vector<OutputColumn>& columns,
                              const Types& types) {
  std::vector<std::string> values;
  std::vector<std::string> keys;
  for (std::size_t i = 0; i < types.size(); ++i) {
    const std::string place = "q." + placeName(i);
    keys.push_back(keySql(computed(place, types[i])));
    values.push_back(types[i].isText() ? "min(" + place + ")" : place);
    if (!columns[i].name.empty()) values.back() += " AS " + quoteName(columns[i].name);
  }
  const bool texts = anyText(types);
  return std::string("SELECT ") + (texts ? "" : "DISTINCT ") + join(values, ", ") + " FROM " +
         placed(rows, types.size()) + (texts ? " GROUP BY " + join(keys, ", ") : "");
}

std::string reordered(const std::string& rows, const std::vector<OutputColumn>& columns,
                      const std::vector<std::string>& terms,
                      const std::optional<std::int64_t>& top) {
  std::vector<std::string> values;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    values.push_back("q." + placeName(i));
    if (!columns[i].name.empty()) values.back() += " AS " + quoteName(columns[i].name);
  }
  return "SELECT " + join(values, ", ") + " FROM " + placed(rows, columns.size()) +
         orderClause(terms) + limitClause(top);
}

std::string selectText(Context& context, const BoundBody& body, const BoundSelect& select,
                       const Types& types, RowOrder order) {
  const std::string rows = "SELECT " + selectList(context, select, types) + select.body;
  const bool sorted = order == RowOrder::wanted || select.top;
  if (select.distinct) {
    std::string distinct = withoutDuplicates(rows, body.columns, types);
    if (!sorted) return distinct;
    return reordered(distinct, body.columns, placeOrder(select.orderBy, types), select.top);
  }
  return rows + (sorted ? orderClause(plainOrder(select)) : "") + limitClause(select.top);
}

std::string bodyText(Context& context, const BoundBody& body, const Types& types,
                     const std::vector<OrderTerm>& orderBy, RowOrder order);

std::string branchText(Context& context, const BoundBody& branch, const Types& types,
                       RowOrder order) {
  return "(" + bodyText(context, branch, types, {}, order) + ")";
}

std::string unionText(Context& context, const BoundBody& body, const BoundUnion& united,
                      const Types& types, const std::vector<OrderTerm>& orderBy, RowOrder order) {
  // An order of the whole makes one of the branches pointless; so does a sorted union.
  const bool allDistinct = united.distinctBranches == united.branches.size();
  const bool sorted = order == RowOrder::wanted && (allDistinct || !orderBy.empty());
  std::string rows;
  for (std::size_t i = 0; i < united.branches.size(); ++i) {
    if (i > 0) rows += " UNION ALL ";
    const bool merged = i < united.distinctBranches;
    rows +=
        branchText(context, united.branches[i], types, sorted || merged ? RowOrder::any : order);
    if (i + 1 == united.distinctBranches) {
      std::string distinct = withoutDuplicates(rows, body.columns, types);
      if (order == RowOrder::wanted && !sorted) {
        distinct = "(" + reordered(distinct, body.columns, placeOrder({}, types), {}) + ")";
      }
      rows = allDistinct || distinct.starts_with('(') ? distinct : "(" + distinct + ")";
    }
  }
  if (!sorted) return rows;
  return reordered(rows, body.columns, placeOrder(orderBy, types), {});
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
                    },
                    body.node);
}

Types ownTypes(const BoundQuery& query) {
  Types types;
  for (const OutputColumn& column : columnsOf(query)) types.push_back(column.type);
  return types;
}

/// Whether its rows are more than the rows of its FROM and WHERE.
bool mustRun(const BoundSelect& select) {
  return select.grouped || select.top == 0;
}

}  // namespace

std::string queryText(Context& context, const BoundQuery& query,
                      const std::vector<SqlType>& types) {
  return query.with + bodyText(context, query.body, types, query.orderBy, RowOrder::any);
}

std::string orderedQueryText(Context& context, const BoundQuery& query) {
  return query.with +
         bodyText(context, query.body, ownTypes(query), query.orderBy, RowOrder::wanted);
}

std::string derivedText(Context& context, const BoundQuery& query) {
  return queryText(context, query, ownTypes(query));
}

std::string keyQueryText(Context& context, const BoundQuery& query) {
  const Bound key = computed("q." + placeName(0), onlyColumn(query, {}).type);
  return "SELECT " + keySql(key) + " FROM " + placed(derivedText(context, query), 1);
}

std::string existenceText(Context& context, const BoundQuery& query) {
  const auto* select = std::get_if<BoundSelect>(&query.body.node);
  if (select == nullptr || mustRun(*select)) return derivedText(context, query);
  return query.with + "SELECT 1" + select->body;
}

}  // namespace velmora::tsql
