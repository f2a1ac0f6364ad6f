#include "cli/caller_string.h"

#include <algorithm>

#include "cli/failure.h"
#include "velmora/ado/connection_string.h"
#include "velmora/collections/letter_case.h"

namespace velmora::cli {

namespace {

constexpr std::string_view kConnectString = "ConnectString";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// Takes what stands before the first `delimiter` off `rest`, and the delimiter with
/// it; everything when there is none.
std::string_view takeUpTo(std::string_view& rest, char delimiter) {
  const auto end = rest.find(delimiter);
  const auto part = rest.substr(0, end);
  rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  return part;
}

std::string_view takeValue(std::string_view& rest) {
  rest = trimmed(rest);
  if (!rest.starts_with('{')) return trimmed(takeUpTo(rest, ';'));
  rest.remove_prefix(1);
  const auto value = trimmed(takeUpTo(rest, '}'));
  takeUpTo(rest, ';');
  return value;
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

CallerString::CallerString(std::string_view text) {
  for (Pair& pair : parse(text)) {
    if (findPair(pair.key) != nullptr)
      throw Failure("the connection string has the key \"" + pair.key + "\" twice");
    pairs_.push_back(std::move(pair));
  }
}

bool CallerString::describes(std::string_view text) {
  const auto pairs = parse(text);
  return std::any_of(pairs.begin(), pairs.end(), [](const Pair& pair) {
    return collections::equalsIgnoringCase(pair.key, kConnectString);
  });
}

std::vector<CallerString::Pair> CallerString::parse(std::string_view text) {
  std::vector<Pair> pairs;
  for (std::string_view rest = text; !rest.empty();) {
    std::string key(trimmed(takeUpTo(rest, '=')));
    if (key.empty()) break;
    pairs.push_back({std::move(key), std::string(takeValue(rest))});
  }
  return pairs;
}

CallerString::Pair* CallerString::findPair(std::string_view key) {
  for (Pair& pair : pairs_)
    if (collections::equalsIgnoringCase(pair.key, key)) return &pair;
  return nullptr;
}

std::optional<std::string> CallerString::find(std::string_view key) const {
  for (const Pair& pair : pairs_)
    if (collections::equalsIgnoringCase(pair.key, key)) return pair.value;
  return std::nullopt;
}

void CallerString::set(std::string_view key, std::string_view value) {
  if (value.find('}') != std::string_view::npos)
    throw Failure("a \"}\" cannot be part of " + std::string(key) +
                  ", because connection strings have no escape for it");
  if (Pair* pair = findPair(key)) {
    pair->value = value;
  } else {
    pairs_.push_back({std::string(key), std::string(value)});
  }
}

std::string CallerString::toString() const {
  std::string text;
  for (const Pair& pair : pairs_) {
    const bool braces = pair.value.starts_with('{') || pair.value.find(';') != std::string::npos;
    text.append(pair.key).append(braces ? "={" : "=").append(pair.value);
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
  for (const char* key : {"AcctType", "Q8Version", "DBMS Name", "DBMS Version"})
    caller.set(key, "");
  return caller.toString();
}

std::string callerStringFor(std::string_view text, const CallerContext& context) {
  if (!CallerString::describes(text)) return wrapConnectString(adoConnectString(text), context);
  CallerString caller(text);
  if (context.language.empty()) return std::string(text);
  caller.set("LANGUAGE", context.language);
  return caller.toString();
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
