#include "cli/caller_string.h"

#include <algorithm>

#include "cli/failure.h"
#include "platform/suite/caller_string.h"
#include "velmora/ado/connection_string.h"
#include "velmora/collections/letter_case.h"

namespace velmora::cli {

namespace {

constexpr std::string_view kConnectString = "ConnectString";
constexpr std::string_view kUserId = "UserID";

/// Whether `text` speaks of a UserID, letter case ignored.
bool namesUser(std::string_view text) {
  return collections::lowerCased(text).find("userid") != std::string::npos;
}

/// Whether the caller string `text` speaks of a UserID in a value, within another key or
/// where nothing is read. The database's own settings do not count, unless they run to the
/// end, because the brace around them is never closed.
bool mentionsUser(std::string_view text) {
  text = text.substr(0, text.find_last_not_of(" \t\r\n") + 1);
  for (const auto& [key, value] : suite::readCallerString(text)) {
    const auto start = static_cast<std::size_t>(value.data() - text.data());
    const std::size_t end = start + value.size();
    if (collections::equalsIgnoringCase(key, kConnectString) && end < text.size())
      return namesUser(text.substr(0, start)) || namesUser(text.substr(end));
  }
  return namesUser(text);
}

/// The ADO connection string `text` so that it fits between braces: values in braces
/// of its own are written in quotes or bare instead.
std::string adoConnectString(std::string_view text) {
  const ado::ConnectionString settings(text);
  for (const char* name : {"Provider", "Driver", "DSN"}) {
    if (!settings.find(name)) continue;
    return text.find('}') == std::string_view::npos ? std::string(text) : settings.toString();
  }
  throw Failure(
      "the connection string has neither ConnectString= (the suite's form) nor Provider=, "
      "Driver= or DSN= (an ADO connection string)");
}

}  // namespace

CallerString::CallerString() : properties_(com::make<collections::Dictionary>()) {}

CallerString::CallerString(std::string_view text) : properties_(suite::callerProperties(text)) {}

bool CallerString::describes(std::string_view text) {
  const auto properties = suite::readCallerString(text);
  return std::ranges::any_of(properties, [](const suite::CallerProperty& property) {
    return collections::equalsIgnoringCase(property.key, kConnectString);
  });
}

std::optional<std::string> CallerString::find(std::string_view key) const {
  if (!properties_->Lookup(key)) return std::nullopt;
  return properties_->Value(key).toText();
}

void CallerString::set(std::string_view key, std::string_view value) {
  if (value.find('}') != std::string_view::npos)
    throw Failure("a \"}\" cannot be part of " + std::string(key) +
                  ", because connection strings have no escape for it");
  properties_->Set(key, value);
}

std::string CallerString::toString() const {
  std::string text;
  for (std::size_t i = 0; i < properties_->Count(); ++i) {
    const std::string value = properties_->Item(i).toText();
    const bool braces = value.starts_with('{') || value.find(';') != std::string::npos;
    text.append(properties_->Key(i)).append(braces ? "={" : "=").append(value);
    text.append(braces ? "};" : ";");
  }
  return text;
}

std::string wrapConnectString(std::string_view connectString, const CallerContext& context) {
  CallerString caller;
  caller.set(kConnectString, connectString);
  caller.set("UserName", context.user);
  caller.set("LANGUAGE", context.language.empty() ? "chs" : context.language);
  caller.set("SubID", context.receivables ? "AR" : "AP");
  if (context.userId) caller.set(kUserId, std::to_string(*context.userId));
  for (const char* key : {"AcctType", "Q8Version", "DBMS Name", "DBMS Version"})
    caller.set(key, "");
  return caller.toString();
}

std::string callerStringFor(std::string_view text, const CallerContext& context) {
  if (!CallerString::describes(text)) return wrapConnectString(adoConnectString(text), context);
  CallerString caller(text);
  if (context.userId)
    caller.set(kUserId, std::to_string(*context.userId));
  else if (!caller.find(kUserId) && mentionsUser(text))
    throw Failure(
        "the connection string speaks of a UserID, but none is read; expected "
        "UserID=NUMBER between \";\", outside braces");
  if (!context.language.empty()) caller.set("LANGUAGE", context.language);
  return context.userId || !context.language.empty() ? caller.toString() : std::string(text);
}

std::string embeddedConnectString(std::string_view file, std::string_view mode) {
  if (file.find('}') != std::string_view::npos)
    throw Failure("the file name " + std::string(file) +
                  " holds a \"}\", for which connection strings have no escape; rename the file");
  ado::ConnectionString settings("Provider=Velmora.Embedded");
  settings.set("Data Source", file);
  settings.set("Mode", mode);
  return settings.toString();
}

std::string connectStringOf(std::string_view dsn) {
  const auto found = CallerString(dsn).find(kConnectString);
  if (!found || found->empty()) throw Failure("the connection string has no ConnectString=");
  return *found;
}

}  // namespace velmora::cli
