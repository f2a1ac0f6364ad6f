#pragma once

#include <sql.h>
#include <sqlext.h>
#include <string>

#include "platform/ado/odbc/odbc_error.h"

namespace velmora::ado::odbc {

// The driver manager's handles, each owned by one object.

class Environment {
 public:
  Environment();
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  ~Environment() { SQLFreeHandle(SQL_HANDLE_ENV, handle_); }
  SQLHENV handle() const noexcept { return handle_; }

 private:
  SQLHENV handle_ = SQL_NULL_HENV;
};

/// A connection to a data source; every statement commits for itself.
class Session {
 public:
  /// Connects by a text of the driver manager's form; gives up after
  /// `loginTimeoutSeconds`, 0 without limit, where the driver can.
  Session(const std::string& driverString, int loginTimeoutSeconds);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();
  SQLHDBC handle() const noexcept { return handle_; }

 private:
  // Of its own: connections of other threads do not wait for each other in it.
  Environment environment_;
  SQLHDBC handle_ = SQL_NULL_HDBC;
};

class Statement {
 public:
  explicit Statement(const Session& session);
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() { SQLFreeHandle(SQL_HANDLE_STMT, handle_); }
  SQLHSTMT handle() const noexcept { return handle_; }

  void check(SQLRETURN code) const { odbc::check(code, SQL_HANDLE_STMT, handle_); }

 private:
  SQLHSTMT handle_ = SQL_NULL_HSTMT;
};

/// A number where ODBC wants a pointer for an attribute's value.
inline SQLPOINTER attributeValue(SQLULEN value) {
  return reinterpret_cast<SQLPOINTER>(value);  // NOLINT(performance-no-int-to-ptr): ODBC's way
}

}  // namespace velmora::ado::odbc
