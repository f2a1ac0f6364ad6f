#pragma once

#include <string>

#include "platform/tsql/syntax/ast.h"

/// Prints a syntax tree as T-SQL in one fixed form: keywords in capitals, one blank between
/// words, parentheses only where precedence asks for them, names in brackets only where they
/// must be. Parsing the text again gives the same tree, positions aside.
namespace velmora::tsql {

/// One line per statement, each closed by `;`.
std::string print(const Batch& batch);
std::string print(const Statement& statement);
std::string print(const Query& query);
std::string print(const Expression& expression);
std::string print(const QualifiedName& name);
std::string print(const DataType& type);

}  // namespace velmora::tsql
