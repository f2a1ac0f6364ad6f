#include "platform/tsql/syntax/parser.h"

#include "platform/tsql/syntax/parser_parts.h"
#include "platform/tsql/syntax/syntax_error.h"

namespace velmora::tsql {
namespace {

void expectEnd(Cursor& cursor) {
  if (!cursor.atEnd()) cursor.unexpected("the end of the text");
}

}  // namespace

Batch parse(std::string_view text) {
  if (text.size() > kMaxBatchSize) {
    throw SyntaxError({}, "the batch has " + std::to_string(text.size()) +
                              " bytes, expected at most " + std::to_string(kMaxBatchSize));
  }
  Cursor cursor(text);
  Batch batch;
  batch.statements = parseStatements(cursor, {});
  batch.parameterCount = cursor.parameterCount();
  return batch;
}

ExpressionPtr parseValue(std::string_view text) {
  Cursor cursor(text);
  ExpressionPtr value = parseValue(cursor);
  expectEnd(cursor);
  return value;
}

QueryPtr parseQuery(std::string_view text) {
  Cursor cursor(text);
  QueryPtr query = parseQuery(cursor);
  expectEnd(cursor);
  return query;
}

}  // namespace velmora::tsql
