// An ODBC driver for the tests: answers what no driver at hand can be brought to answer
// (several results, errors between them, a connection that breaks). Its "statements" are
// lines, each one result of the batch:
//
//   rows TYPE VALUE VALUE ...       one column C; TYPE int or decimal(P,S) or text;
//                                   NULL and SURROGATE (half a pair) are values
//   count N                         rows changed
//   error STATE NATIVE TEXT         a statement that failed; with 08S01 or 20017 the
//                                   connection is gone for good
//   + STATE NATIVE TEXT             a further record of the error before
//   broken-rows VALUE STATE TEXT    one row, then an error while fetching
//   parameters                      how the parameters were bound
//   settings                        connection string and time-outs
//   hang                            runs until it is cancelled, whatever its time-out
//
// A connection string with Refuse= fails and repeats itself in the error.

#include <algorithm>
#include <atomic>
#include <cstring>
#include <deque>
#include <optional>
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Text = std::u16string;

Text widened(const std::string& ascii) {
  return {ascii.begin(), ascii.end()};
}
std::string narrowed(const Text& wide) {
  std::string text;
  for (const char16_t c : wide) text += static_cast<char>(c);
  return text;
}

struct Record {
  std::string state;
  int native = 0;
  std::string text;
};

struct Result {
  SQLSMALLINT type = 0;  // 0: no rows
  SQLULEN size = 0;
  SQLSMALLINT scale = 0;
  std::vector<std::optional<Text>> values;
  SQLLEN count = -1;
  std::vector<Record> errors;
  std::vector<Record> fetchErrors;
  bool hangs = false;
};

struct Handle {
  std::vector<Record> records;
};

struct Connection : Handle {
  std::string text;
  SQLULEN loginTimeout = 0;
  bool lost = false;
};

struct Statement : Handle {
  Connection* connection = nullptr;
  std::deque<Result> results;
  SQLULEN timeout = 0;
  std::vector<std::string> parameters;
  std::size_t row = 0;   // of the first result, from 1
  std::size_t read = 0;  // characters of the current cell
  std::atomic<bool> cancelled = false;

  SQLRETURN start() {
    row = read = 0;
    if (!results.empty() && results.front().hangs) {
      cancelled.wait(false);
      return fail({{"HY008", 0, "Operation canceled"}});
    }
    if (connection->lost) return fail({{"08S01", 20006, "Write to the server failed"}});
    if (results.empty()) return SQL_NO_DATA;
    if (results.front().errors.empty()) return SQL_SUCCESS;
    const Record& first = results.front().errors.front();
    connection->lost = first.state == "08S01" || first.native == 20017;
    return fail(results.front().errors);
  }
  SQLRETURN fail(std::vector<Record> why) {
    records = std::move(why);
    return SQL_ERROR;
  }
};

Record readRecord(std::istream& line) {
  Record record;
  line >> record.state >> record.native >> std::ws;
  std::getline(line, record.text);
  return record;
}

void readType(Result& result, const std::string& type) {
  result.type = static_cast<SQLSMALLINT>(type == "int"    ? SQL_INTEGER
                                         : type == "text" ? SQL_WVARCHAR
                                                          : SQL_DECIMAL);
  result.size = type == "text" ? 100 : 10;
  if (result.type == SQL_DECIMAL) {
    result.size = std::stoul(type.substr(8));
    result.scale = static_cast<SQLSMALLINT>(std::stoi(type.substr(type.find(',') + 1)));
  }
}

Result texts(const std::vector<std::string>& values) {
  Result result;
  readType(result, "text");
  for (const auto& value : values) result.values.emplace_back(widened(value));
  return result;
}

Result readResult(Statement& statement, const std::string& text) {
  std::istringstream line(text);
  std::string word;
  line >> word;
  Result result;
  if (word == "rows") {
    line >> word;
    readType(result, word);
    while (line >> word) {
      if (word == "NULL")
        result.values.emplace_back();
      else
        result.values.emplace_back(word == "SURROGATE" ? Text(u"a\xD83D!") : widened(word));
    }
  } else if (word == "broken-rows") {
    line >> word;
    result = texts({word});
    result.fetchErrors.push_back(readRecord(line));
  } else if (word == "count") {
    line >> result.count;
  } else if (word == "error") {
    result.errors.push_back(readRecord(line));
  } else if (word == "hang") {
    result.hangs = true;
  } else if (word == "parameters") {
    result = texts(statement.parameters);
  } else if (word == "settings") {
    result = texts({statement.connection->text, std::to_string(statement.connection->loginTimeout),
                    std::to_string(statement.timeout)});
  }
  return result;
}

template <class Value>
SQLRETURN give(SQLPOINTER target, SQLLEN* length, Value value) {
  std::memcpy(target, &value, sizeof value);
  *length = sizeof value;
  return SQL_SUCCESS;
}

SQLRETURN giveText(Statement& statement, const Text& value, SQLWCHAR* target, SQLLEN bytes,
                   SQLLEN* length) {
  const auto room = static_cast<std::size_t>(bytes) / sizeof(SQLWCHAR) - 1;
  const auto left = value.size() - statement.read;
  *length = static_cast<SQLLEN>(left * sizeof(SQLWCHAR));
  const auto part = std::min(room, left);
  std::copy_n(value.begin() + static_cast<std::ptrdiff_t>(statement.read), part, target);
  target[part] = 0;
  statement.read += part;
  return part < left ? SQL_SUCCESS_WITH_INFO : SQL_SUCCESS;
}

void copyAscii(const std::string& text, SQLWCHAR* target) {
  std::copy(text.begin(), text.end(), target);
  target[text.size()] = 0;
}

}  // namespace

extern "C" {

SQLRETURN SQLAllocHandle(SQLSMALLINT type, SQLHANDLE parent, SQLHANDLE* handle) {
  if (type == SQL_HANDLE_STMT) {
    auto* statement = new Statement;
    statement->connection = static_cast<Connection*>(parent);
    *handle = statement;
  } else if (type == SQL_HANDLE_DBC) {
    *handle = new Connection;
  } else {
    *handle = new Handle;
  }
  return SQL_SUCCESS;
}

SQLRETURN SQLFreeHandle(SQLSMALLINT type, SQLHANDLE handle) {
  if (type == SQL_HANDLE_STMT)
    delete static_cast<Statement*>(handle);
  else if (type == SQL_HANDLE_DBC)
    delete static_cast<Connection*>(handle);
  else
    delete static_cast<Handle*>(handle);
  return SQL_SUCCESS;
}

SQLRETURN SQLFreeStmt(SQLHSTMT, SQLUSMALLINT) {
  return SQL_SUCCESS;
}
SQLRETURN SQLSetEnvAttr(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER) {
  return SQL_SUCCESS;
}
SQLRETURN SQLSetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
  if (attribute == SQL_ATTR_LOGIN_TIMEOUT)
    static_cast<Connection*>(handle)->loginTimeout = reinterpret_cast<SQLULEN>(value);
  return SQL_SUCCESS;
}
SQLRETURN SQLGetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER,
                             SQLINTEGER*) {
  if (attribute != SQL_ATTR_CONNECTION_DEAD) return SQL_ERROR;
  const bool lost = static_cast<Connection*>(handle)->lost;
  *static_cast<SQLUINTEGER*>(value) = lost ? SQL_CD_TRUE : SQL_CD_FALSE;
  return SQL_SUCCESS;
}
SQLRETURN SQLSetStmtAttrW(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
  if (attribute == SQL_ATTR_QUERY_TIMEOUT)
    static_cast<Statement*>(handle)->timeout = reinterpret_cast<SQLULEN>(value);
  return SQL_SUCCESS;
}

SQLRETURN SQLConnectW(SQLHDBC, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*,
                      SQLSMALLINT) {
  return SQL_ERROR;  // only tells the driver manager that texts are wide here
}

SQLRETURN SQLDriverConnectW(SQLHDBC handle, SQLHWND, SQLWCHAR* text, SQLSMALLINT length, SQLWCHAR*,
                            SQLSMALLINT, SQLSMALLINT*, SQLUSMALLINT) {
  auto& connection = *static_cast<Connection*>(handle);
  for (int i = 0; length == SQL_NTS ? text[i] != 0 : i < length; ++i)
    connection.text += static_cast<char>(text[i]);
  if (connection.text.find("Refuse=") == std::string::npos) return SQL_SUCCESS;
  connection.records = {{"28000", 18456, "Login failed for " + connection.text},
                        {"08001", 0, "Unable to connect"}};
  return SQL_ERROR;
}

SQLRETURN SQLNativeSqlW(SQLHDBC, SQLWCHAR* text, SQLINTEGER length, SQLWCHAR* back, SQLINTEGER,
                        SQLINTEGER* backLength) {
  *std::copy_n(text, length, back) = 0;
  *backLength = length;
  return SQL_SUCCESS;
}

SQLRETURN SQLDisconnect(SQLHDBC) {
  return SQL_SUCCESS;
}

SQLRETURN SQLBindParameter(SQLHSTMT handle, SQLUSMALLINT, SQLSMALLINT, SQLSMALLINT cType,
                           SQLSMALLINT sqlType, SQLULEN size, SQLSMALLINT digits, SQLPOINTER data,
                           SQLLEN, SQLLEN* length) {
  std::ostringstream text;
  text << sqlType << '(' << size << ',' << digits << ")=";
  if (*length == SQL_NULL_DATA)
    text << "NULL";
  else if (cType == SQL_C_WCHAR)
    text << narrowed(
        Text(static_cast<char16_t*>(data), static_cast<std::size_t>(*length) / sizeof(char16_t)));
  else if (cType == SQL_C_CHAR)
    text << std::string(static_cast<char*>(data), static_cast<std::size_t>(*length));
  else if (cType == SQL_C_SBIGINT)
    text << *static_cast<std::int64_t*>(data);
  else
    text << "of C type " << cType;
  static_cast<Statement*>(handle)->parameters.push_back(text.str());
  return SQL_SUCCESS;
}

SQLRETURN SQLExecDirectW(SQLHSTMT handle, SQLWCHAR* text, SQLINTEGER length) {
  auto& statement = *static_cast<Statement*>(handle);
  std::istringstream lines(narrowed(Text(text, text + length)));
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("+")) {
      statement.results.push_back(readResult(statement, line));
      continue;
    }
    std::istringstream more(line.substr(1));
    statement.results.back().errors.push_back(readRecord(more));
  }
  return statement.start();
}

SQLRETURN SQLCancel(SQLHSTMT handle) {
  auto& cancelled = static_cast<Statement*>(handle)->cancelled;
  cancelled = true;
  cancelled.notify_all();
  return SQL_SUCCESS;
}

SQLRETURN SQLMoreResults(SQLHSTMT handle) {
  auto& statement = *static_cast<Statement*>(handle);
  if (!statement.results.empty()) statement.results.pop_front();
  return statement.start();
}

SQLRETURN SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT* count) {
  const auto& results = static_cast<Statement*>(handle)->results;
  *count = !results.empty() && results.front().type != 0 ? 1 : 0;
  return SQL_SUCCESS;
}

SQLRETURN SQLRowCount(SQLHSTMT handle, SQLLEN* count) {
  const auto& results = static_cast<Statement*>(handle)->results;
  *count = results.empty() ? -1 : results.front().count;
  return SQL_SUCCESS;
}

SQLRETURN SQLDescribeColW(SQLHSTMT handle, SQLUSMALLINT, SQLWCHAR* name, SQLSMALLINT,
                          SQLSMALLINT* nameLength, SQLSMALLINT* type, SQLULEN* size,
                          SQLSMALLINT* scale, SQLSMALLINT* nullable) {
  const Result& result = static_cast<Statement*>(handle)->results.front();
  copyAscii("C", name);
  *nameLength = 1;
  *type = result.type;
  *size = result.size;
  *scale = result.scale;
  *nullable = SQL_NULLABLE;
  return SQL_SUCCESS;
}

SQLRETURN SQLFetch(SQLHSTMT handle) {
  auto& statement = *static_cast<Statement*>(handle);
  const Result& result = statement.results.front();
  statement.read = 0;
  if (statement.row < result.values.size()) {
    ++statement.row;
    return SQL_SUCCESS;
  }
  if (result.fetchErrors.empty()) return SQL_NO_DATA;
  return statement.fail(result.fetchErrors);
}

SQLRETURN SQLGetData(SQLHSTMT handle, SQLUSMALLINT, SQLSMALLINT cType, SQLPOINTER target,
                     SQLLEN bytes, SQLLEN* length) {
  auto& statement = *static_cast<Statement*>(handle);
  const auto& value = statement.results.front().values[statement.row - 1];
  if (!value) {
    *length = SQL_NULL_DATA;
    return SQL_SUCCESS;
  }
  const std::string text = narrowed(*value);
  switch (cType) {
    case SQL_C_WCHAR:
      return giveText(statement, *value, static_cast<SQLWCHAR*>(target), bytes, length);
    case SQL_C_SLONG:
      return give(target, length, static_cast<SQLINTEGER>(std::stol(text)));
    default:
      *length = static_cast<SQLLEN>(text.copy(static_cast<char*>(target), text.size()));
      static_cast<char*>(target)[*length] = 0;
      return SQL_SUCCESS;
  }
}

SQLRETURN SQLGetDiagFieldW(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLSMALLINT, SQLPOINTER,
                           SQLSMALLINT, SQLSMALLINT*) {
  return SQL_NO_DATA;  // the driver manager wants it beside SQLGetDiagRecW
}

SQLRETURN SQLGetDiagRecW(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT number, SQLWCHAR* state,
                         SQLINTEGER* native, SQLWCHAR* text, SQLSMALLINT, SQLSMALLINT* length) {
  const auto& records = static_cast<Handle*>(handle)->records;
  if (static_cast<std::size_t>(number) > records.size()) return SQL_NO_DATA;
  const Record& record = records[static_cast<std::size_t>(number - 1)];
  copyAscii(record.state, state);
  copyAscii(record.text, text);
  if (native) *native = record.native;
  if (length) *length = static_cast<SQLSMALLINT>(record.text.size());
  return SQL_SUCCESS;
}

}  // extern "C"
