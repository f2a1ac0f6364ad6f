#include "platform/ado/odbc/handles.h"

#include <sqlucode.h>

#include "platform/ado/odbc/wide_text.h"

namespace velmora::ado::odbc {

namespace {

SQLWCHAR* pointerTo(std::u16string& text) {
  return reinterpret_cast<SQLWCHAR*>(text.data());
}
SQLCHAR* pointerTo(std::string& text) {
  return reinterpret_cast<SQLCHAR*>(text.data());
}

}  // namespace

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
  const auto code =
      SQLDriverConnectW(handle_, nullptr, pointerTo(text), static_cast<SQLSMALLINT>(text.size()),
                        nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  if (SQL_SUCCEEDED(code)) {
    takesWideTexts_ = keepsWideTexts();
    return;
  }
  const auto diagnostics = diagnosticsOf(SQL_HANDLE_DBC, handle_);
  SQLFreeHandle(SQL_HANDLE_DBC, handle_);
  throwConnectError(toText(diagnostics));
}

// A statement goes to the driver and comes back as the server would get it.
bool Session::keepsWideTexts() const {
  std::u16string sent = u"select '凭证'";
  std::u16string back(64, u'\0');
  SQLINTEGER length = 0;
  const auto code = SQLNativeSqlW(handle_, pointerTo(sent), static_cast<SQLINTEGER>(sent.size()),
                                  pointerTo(back), static_cast<SQLINTEGER>(back.size()), &length);
  return !SQL_SUCCEEDED(code) || back.starts_with(sent);
}

bool Session::isDead() const noexcept {
  SQLUINTEGER dead = SQL_CD_FALSE;
  const auto code = SQLGetConnectAttr(handle_, SQL_ATTR_CONNECTION_DEAD, &dead, 0, nullptr);
  return SQL_SUCCEEDED(code) && dead == SQL_CD_TRUE;
}

Session::~Session() {
  SQLDisconnect(handle_);
  SQLFreeHandle(SQL_HANDLE_DBC, handle_);
}

Statement::Statement(const Session& session) : wide_(session.takesWideTexts()) {
  odbc::check(SQLAllocHandle(SQL_HANDLE_STMT, session.handle(), &handle_), SQL_HANDLE_DBC,
              session.handle());
}

SQLRETURN Statement::execute(std::string_view text) const {
  std::u16string wide = toWide(text);
  if (wide_) return SQLExecDirectW(handle_, pointerTo(wide), static_cast<SQLINTEGER>(wide.size()));
  std::string bytes(text);
  return SQLExecDirect(handle_, pointerTo(bytes), static_cast<SQLINTEGER>(bytes.size()));
}

/// Asks with a larger buffer when the name is a long one.
template <class Char, class Ask>
std::basic_string<Char> Statement::nameOf(Ask ask) const {
  std::basic_string<Char> name(256, Char{});
  SQLSMALLINT length = 0;
  check(ask(name, length));
  if (static_cast<std::size_t>(length) >= name.size()) {
    name.resize(static_cast<std::size_t>(length) + 1);
    check(ask(name, length));
  }
  name.resize(static_cast<std::size_t>(length));
  return name;
}

Statement::Column Statement::describe(SQLUSMALLINT number) const {
  Column column;
  const auto ask = [&](auto function, auto& name, SQLSMALLINT& length) {
    return function(handle_, number, pointerTo(name), static_cast<SQLSMALLINT>(name.size()),
                    &length, &column.type, &column.size, &column.scale, &column.nullable);
  };
  if (wide_)
    column.name = toReadableUtf8(nameOf<char16_t>(
        [&](auto& name, SQLSMALLINT& length) { return ask(SQLDescribeColW, name, length); }));
  else
    column.name = nameOf<char>(
        [&](auto& name, SQLSMALLINT& length) { return ask(SQLDescribeCol, name, length); });
  return column;
}

}  // namespace velmora::ado::odbc
