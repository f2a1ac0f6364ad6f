#pragma once

#include <sql.h>
#include <sqlext.h>
#include <string>
#include <string_view>

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
  /// Whether wide texts reach the driver undamaged. For a driver without wide functions the
  /// driver manager squeezes them into bytes; such a driver is given UTF-8 instead.
  bool takesWideTexts() const noexcept { return takesWideTexts_; }
  /// Whether the driver knows that the connection is gone. Not every driver says so in the
  /// error itself: FreeTDS tells of an unexpected end of file, or of an unknown error.
  bool isDead() const noexcept;

 private:
  bool keepsWideTexts() const;

  // Of its own: connections of other threads do not wait for each other in it.
  Environment environment_;
  SQLHDBC handle_ = SQL_NULL_HDBC;
  bool takesWideTexts_ = true;
};

class Statement {
 public:
  explicit Statement(const Session& session);
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() { SQLFreeHandle(SQL_HANDLE_STMT, handle_); }
  SQLHSTMT handle() const noexcept { return handle_; }

  /// SQLExecDirect with a UTF-8 text.
  SQLRETURN execute(std::string_view text) const;
  struct Column {
    std::string name;
    SQLSMALLINT type = 0;
    SQLULEN size = 0;
    SQLSMALLINT scale = 0;
    SQLSMALLINT nullable = SQL_NULLABLE_UNKNOWN;
  };
  /// A column of the current result, from 1.
  Column describe(SQLUSMALLINT number) const;

  void check(SQLRETURN code) const { odbc::check(code, SQL_HANDLE_STMT, handle_); }

 private:
  template <class Char, class Ask>
  std::basic_string<Char> nameOf(Ask ask) const;

  SQLHSTMT handle_ = SQL_NULL_HSTMT;
  bool wide_;
};

/// A number where ODBC wants a pointer for an attribute's value.
inline SQLPOINTER attributeValue(SQLULEN value) {
  return reinterpret_cast<SQLPOINTER>(value);  // NOLINT(performance-no-int-to-ptr): ODBC's way
}

}  // namespace velmora::ado::odbc
