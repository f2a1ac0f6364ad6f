#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/tsql/syntax/ast.h"

/// The printer's pieces: each appends one construct to `out`.
namespace velmora::tsql {

// print_name.cpp
void appendName(std::string& out, std::string_view name);
void append(std::string& out, const QualifiedName& name);
void append(std::string& out, const DataType& type);
/// ` (a, b)`; nothing for an empty list.
void appendNameList(std::string& out, const std::vector<std::string>& names);

// print_expression.cpp
void append(std::string& out, const Expression& expression);
void append(std::string& out, const OrderItem& item);
void append(std::string& out, const ExpressionPtr& expression);

// print_query.cpp
void append(std::string& out, const Query& query);
void append(std::string& out, const TableSourcePtr& source);

/// ` OUTPUT a, b`; nothing for an empty list.
void appendOutput(std::string& out, const std::vector<SelectItem>& items);

// print_statement.cpp
void append(std::string& out, const Statement& statement);

template <typename Item, typename AppendItem>
void appendList(std::string& out, const std::vector<Item>& items, AppendItem appendItem) {
  for (const Item& item : items) {
    if (&item != &items.front()) out += ", ";
    appendItem(out, item);
  }
}

template <typename Item>
void appendList(std::string& out, const std::vector<Item>& items) {
  appendList(out, items, [](std::string& text, const Item& item) { append(text, item); });
}

/// ` WHERE x`; nothing for a clause that the text left out.
void appendClause(std::string& out, std::string_view word, const ExpressionPtr& expression);
/// ` FROM a, b`; nothing for an empty list.
void appendFrom(std::string& out, const std::vector<TableSourcePtr>& from);

}  // namespace velmora::tsql
