#include "platform/tsql/syntax/parser.h"

#include "platform/tsql/syntax/parser_parts.h"
#include "platform/tsql/syntax/syntax_error.h"

namespace velmora::tsql {

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

}  // namespace velmora::tsql
