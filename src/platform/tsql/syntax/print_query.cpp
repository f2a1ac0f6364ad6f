#include "platform/tsql/syntax/join_words.h"
#include "platform/tsql/syntax/print.h"
#include "platform/tsql/syntax/print_parts.h"

namespace velmora::tsql {
namespace {

void appendAlias(std::string& out, const std::optional<std::string>& alias) {
  if (!alias) return;
  out += " AS ";
  appendName(out, *alias);
}

struct SourcePrinter {
  std::string& out;

  void operator()(const NamedTable& table) const {
    append(out, table.name);
    appendAlias(out, table.alias);
  }

  void operator()(const DerivedTable& table) const {
    out += '(';
    append(out, *table.query);
    out += ')';
    appendAlias(out, table.alias);
    appendNameList(out, table.columns);
  }

  void operator()(const Join& join) const {
    append(out, join.left);
    out += joinWords(join.kind);
    const bool nested = std::holds_alternative<Join>(join.right->node);
    if (nested) out += '(';
    append(out, join.right);
    if (nested) out += ')';
    appendClause(out, "ON", join.on);
  }
};

struct ItemPrinter {
  std::string& out;

  void operator()(const StarItem& star) const {
    if (star.qualifier) {
      append(out, *star.qualifier);
      out += '.';
    }
    out += '*';
  }

  void operator()(const ColumnItem& column) const {
    append(out, column.value);
    appendAlias(out, column.alias);
  }

  void operator()(const AssignmentItem& assignment) const {
    out += assignment.variable + " = ";
    append(out, assignment.value);
  }
};

void append(std::string& out, const SelectItem& item) {
  std::visit(ItemPrinter{out}, item.node);
}

void append(std::string& out, const GroupBy& groupBy) {
  out += " GROUP BY ";
  appendList(out, groupBy.keys);
  if (groupBy.rollup) out += " WITH ROLLUP";
}

void append(std::string& out, const Select& select) {
  out += select.distinct ? "SELECT DISTINCT " : "SELECT ";
  if (select.top) {
    out += "TOP (";
    append(out, select.top);
    out += select.percent ? ") PERCENT " : ") ";
    if (select.withTies) out += "WITH TIES ";
  }
  appendList(out, select.items,
             [](std::string& text, const SelectItem& item) { append(text, item); });
  if (select.into) {
    out += " INTO ";
    append(out, *select.into);
  }
  appendFrom(out, select.from);
  appendClause(out, "WHERE", select.where);
  if (select.groupBy) append(out, *select.groupBy);
  appendClause(out, "HAVING", select.having);
}

void append(std::string& out, const QueryBody& body);

void appendBranch(std::string& out, const QueryBody& body) {
  const bool nested = !std::holds_alternative<Select>(body.node);
  if (nested) out += '(';
  append(out, body);
  if (nested) out += ')';
}

void append(std::string& out, const UnionQuery& chain) {
  appendBranch(out, *chain.first);
  for (const UnionQuery::Branch& branch : chain.rest) {
    out += branch.all ? " UNION ALL " : " UNION ";
    appendBranch(out, *branch.body);
  }
}

void append(std::string& out, const SetQuery& query) {
  appendBranch(out, *query.left);
  out += query.intersect ? " INTERSECT " : " EXCEPT ";
  appendBranch(out, *query.right);
}

void append(std::string& out, const QueryBody& body) {
  std::visit([&out](const auto& node) { append(out, node); }, body.node);
}

void append(std::string& out, const CommonTable& table) {
  appendName(out, table.name);
  appendNameList(out, table.columns);
  out += " AS (";
  append(out, *table.query);
  out += ')';
}

}  // namespace

void append(std::string& out, const TableSourcePtr& source) {
  std::visit(SourcePrinter{out}, source->node);
}

void appendFrom(std::string& out, const std::vector<TableSourcePtr>& from) {
  if (from.empty()) return;
  out += " FROM ";
  appendList(out, from);
}

void appendOutput(std::string& out, const std::vector<SelectItem>& items) {
  if (items.empty()) return;
  out += " OUTPUT ";
  appendList(out, items, [](std::string& text, const SelectItem& item) { append(text, item); });
}

void append(std::string& out, const Query& query) {
  if (!query.with.empty()) {
    out += "WITH ";
    appendList(out, query.with,
               [](std::string& text, const CommonTable& table) { append(text, table); });
    out += ' ';
  }
  append(out, query.body);
  if (!query.orderBy.empty()) {
    out += " ORDER BY ";
    appendList(out, query.orderBy);
  }
  if (query.maxRecursion) {
    out += " OPTION (MAXRECURSION " + std::to_string(*query.maxRecursion) + ")";
  }
}

std::string print(const Query& query) {
  std::string out;
  append(out, query);
  return out;
}

}  // namespace velmora::tsql
