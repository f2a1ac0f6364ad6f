#include "platform/ado/odbc/odbc_error.h"

#include <algorithm>
#include <array>
#include <sqlext.h>
#include <sqlucode.h>
#include <utility>

#include "platform/ado/odbc/wide_text.h"
#include "velmora/com/error.h"

namespace velmora::ado::odbc {

namespace {

/// The record of that number, from 1; its state is empty when there is none.
Diagnostic recordOf(SQLSMALLINT handleType, SQLHANDLE handle, SQLSMALLINT number) {
  std::array<SQLWCHAR, 6> state{};
  std::vector<SQLWCHAR> text(SQL_MAX_MESSAGE_LENGTH);
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  const auto ask = [&] {
    return SQLGetDiagRecW(handleType, handle, number, state.data(), &native, text.data(),
                          static_cast<SQLSMALLINT>(text.size()), &length);
  };
  auto code = ask();
  if (code == SQL_SUCCESS_WITH_INFO && std::cmp_greater_equal(length, text.size())) {
    text.resize(static_cast<std::size_t>(length) + 1);
    code = ask();
  }
  if (!SQL_SUCCEEDED(code)) return {};
  const auto end = std::ranges::find(text, SQLWCHAR{0});
  return {toReadableUtf8(std::u16string(state.begin(), state.end() - 1)), native,
          toReadableUtf8(std::u16string(text.begin(), end))};
}

bool isAboutConnection(const Diagnostic& diagnostic) {
  return diagnostic.state.starts_with("08");
}

}  // namespace

std::vector<Diagnostic> diagnosticsOf(SQLSMALLINT handleType, SQLHANDLE handle) {
  std::vector<Diagnostic> found;
  for (SQLSMALLINT number = 1;; ++number) {
    auto record = recordOf(handleType, handle, number);
    if (record.state.empty()) break;
    if (std::ranges::find(found, record) == found.end()) found.push_back(std::move(record));
  }
  if (found.empty()) found.push_back({"HY000", 0, "The driver failed and gave no reason."});
  return found;
}

bool isConnectionLost(std::span<const Diagnostic> diagnostics) {
  return std::ranges::any_of(diagnostics, isAboutConnection);
}

std::string toText(std::span<const Diagnostic> diagnostics) {
  std::string text;
  for (const auto& [state, native, message] : diagnostics)
    text.append(text.empty() ? "" : "\n")
        .append(std::to_string(native))
        .append(": ")
        .append(message)
        .append(" (SQLSTATE ")
        .append(state)
        .append(")");
  return text;
}

void throwDiagnostics(std::span<const Diagnostic> diagnostics) {
  if (isConnectionLost(diagnostics)) throwConnectError(toText(diagnostics));
  throwError(toText(diagnostics));
}

void check(SQLRETURN code, SQLSMALLINT handleType, SQLHANDLE handle) {
  if (!SQL_SUCCEEDED(code)) throwDiagnostics(diagnosticsOf(handleType, handle));
}

void throwError(std::string message) {
  throw com::Error(com::error::kProvider, kSource, std::move(message));
}

void throwConnectError(std::string message) {
  throw com::Error(com::error::kProviderConnect, kSource, std::move(message));
}

}  // namespace velmora::ado::odbc
