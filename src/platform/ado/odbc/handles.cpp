#include "platform/ado/odbc/handles.h"

#include <sqlucode.h>

#include "platform/ado/odbc/wide_text.h"

namespace velmora::ado::odbc {

Environment::Environment() {
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &handle_)))
    throwConnectError("The ODBC driver manager gives no environment; is there memory left?");
  SQLSetEnvAttr(handle_, SQL_ATTR_ODBC_VERSION, attributeValue(SQL_OV_ODBC3), 0);
}

Session::Session(const std::string& driverString, int loginTimeoutSeconds) {
  check(SQLAllocHandle(SQL_HANDLE_DBC, environment_.handle(), &handle_), SQL_HANDLE_ENV,
        environment_.handle());
  // Not every driver can limit it; then connecting takes as long as it takes.
  SQLSetConnectAttr(handle_, SQL_ATTR_LOGIN_TIMEOUT,
                    attributeValue(static_cast<SQLULEN>(loginTimeoutSeconds)), 0);
  std::u16string text = toWide(driverString);
  const auto code = SQLDriverConnectW(handle_, nullptr, reinterpret_cast<SQLWCHAR*>(text.data()),
                                      static_cast<SQLSMALLINT>(text.size()), nullptr, 0, nullptr,
                                      SQL_DRIVER_NOPROMPT);
  if (SQL_SUCCEEDED(code)) return;
  const auto diagnostics = diagnosticsOf(SQL_HANDLE_DBC, handle_);
  SQLFreeHandle(SQL_HANDLE_DBC, handle_);
  throwConnectError(toText(diagnostics));
}

Session::~Session() {
  SQLDisconnect(handle_);
  SQLFreeHandle(SQL_HANDLE_DBC, handle_);
}

Statement::Statement(const Session& session) {
  odbc::check(SQLAllocHandle(SQL_HANDLE_STMT, session.handle(), &handle_), SQL_HANDLE_DBC,
              session.handle());
}

}  // namespace velmora::ado::odbc
