#include <algorithm>

#include "platform/tsql/syntax/lexer.h"
#include "platform/tsql/syntax/print.h"
#include "platform/tsql/syntax/print_parts.h"
#include "platform/tsql/syntax/type_names.h"

namespace velmora::tsql {

void appendName(std::string& out, std::string_view name) {
  if (isPlainName(name)) {
    out += name;
    return;
  }
  out += '[';
  for (const char c : name) {
    out += c;
    if (c == ']') out += c;
  }
  out += ']';
}

void append(std::string& out, const QualifiedName& name) {
  for (const std::string& qualifier : name.qualifiers) {
    if (!qualifier.empty()) appendName(out, qualifier);
    out += '.';
  }
  if (name.name.starts_with('@')) {
    out += name.name;  // a table variable
  } else {
    appendName(out, name.name);
  }
}

void append(std::string& out, const DataType& type) {
  out += std::find_if(kTypeNames.begin(), kTypeNames.end(), [&type](const TypeName& name) {
           return name.kind == type.kind;
         })->name;
  if (type.max) {
    out += "(max)";
  } else if (type.size) {
    out += "(" + std::to_string(*type.size);
    if (type.scale) out += "," + std::to_string(*type.scale);
    out += ")";
  }
}

void appendNameList(std::string& out, const std::vector<std::string>& names) {
  if (names.empty()) return;
  out += " (";
  appendList(out, names, appendName);
  out += ')';
}

std::string print(const QualifiedName& name) {
  std::string out;
  append(out, name);
  return out;
}

std::string print(const DataType& type) {
  std::string out;
  append(out, type);
  return out;
}

}  // namespace velmora::tsql
