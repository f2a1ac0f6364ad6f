#include "velmora/ado/connection.h"

#include <algorithm>
#include <utility>

#include "platform/ado/command_timeout.h"
#include "platform/ado/provider_registry.h"
#include "platform/ado/value_conversion.h"
#include "velmora/com/error.h"

namespace velmora::ado {

namespace {

/// Sets the property under the name that the text uses already, if any.
void complete(ConnectionString& settings, std::string_view name, std::string_view odbcName,
              std::string_view value) {
  if (value.empty()) return;
  settings.set(settings.find(odbcName) ? odbcName : name, value);
}

void replaceAll(std::string& text, std::string_view what, std::string_view by) {
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
}

/// A provider may repeat its settings in a message; passwords must not get out.
std::string withoutPasswords(std::string message, std::vector<std::string> passwords) {
  // The longest first: one may be part of another.
  std::ranges::sort(passwords, std::greater{}, &std::string::size);
  for (const std::string& password : passwords) {
    for (const char quote : {'"', '\'', '}'}) {
      std::string quoted = password;
      replaceAll(quoted, std::string(1, quote), std::string(2, quote));
      replaceAll(message, quoted, "***");
    }
    replaceAll(message, password, "***");
  }
  return message;
}

std::vector<ParameterValue> checked(std::span<const ParameterValue> parameters) {
  std::vector<ParameterValue> values;
  values.reserve(parameters.size());
  for (const ParameterValue& parameter : parameters) {
    FieldDefinition definition;
    definition.name = "parameter " + std::to_string(values.size() + 1);
    definition.type = parameter.type;
    definition.definedSize = parameter.size;
    values.push_back({parameter.type, parameter.size, convertToField(parameter.value, definition)});
  }
  return values;
}

}  // namespace

Connection::Connection() = default;
Connection::~Connection() = default;

void* Connection::find(const com::Guid& iid) noexcept {
  return iid == kInterfaceId ? this : Object::find(iid);
}

void Connection::Open(std::string_view connectionString, std::string_view user,
                      std::string_view password, int) {
  if (State() == adStateOpen)
    throw com::Error(com::error::kAdoObjectOpen, "ADODB.Connection",
                     "The connection is open; expected a closed one");
  ConnectionString settings(connectionString);
  std::vector<std::string> passwords = settings.passwords();
  complete(settings, "User ID", "UID", user);
  complete(settings, "Password", "PWD", password);
  if (!password.empty()) passwords.emplace_back(password);
  const ProviderFactory open = findProvider(settings);
  try {
    auto opened = open(settings);
    const std::lock_guard lock(cancelling_);
    provider_ = std::move(opened);
  } catch (const com::Error& error) {
    throw com::Error(error.number(), error.source(),
                     withoutPasswords(error.description(), std::move(passwords)));
  } catch (const std::exception& error) {
    throw com::Error(com::error::kProviderConnect, "ADODB.Connection",
                     withoutPasswords(error.what(), std::move(passwords)));
  }
}

void Connection::Close() noexcept {
  std::unique_ptr<ProviderConnection> closing;
  const std::lock_guard lock(cancelling_);
  closing.swap(provider_);
}

ObjectStateEnum Connection::State() const noexcept {
  return provider_ ? adStateOpen : adStateClosed;
}

void Connection::CommandTimeout(int seconds) {
  requireTimeout(seconds, "ADODB.Connection");
  commandTimeout_ = seconds;
}

void Connection::Cancel() noexcept {
  const std::lock_guard lock(cancelling_);
  if (provider_) provider_->cancel();
}

RecordsetRef Connection::Execute(std::string_view commandText, std::int64_t* recordsAffected, int) {
  return Execute(commandText, std::span<const ParameterValue>(), recordsAffected);
}

RecordsetRef Connection::Execute(std::string_view commandText,
                                 std::span<const ParameterValue> parameters,
                                 std::int64_t* recordsAffected) {
  return execute(commandText, parameters, commandTimeout_, recordsAffected);
}

RecordsetRef Connection::execute(std::string_view commandText,
                                 std::span<const ParameterValue> parameters, int timeout,
                                 std::int64_t* recordsAffected) {
  ProviderConnection& connection = provider();
  connection.setCommandTimeout(timeout);
  std::int64_t affected = -1;
  std::vector<Rowset> rowsets;
  for (StatementResult& result : connection.execute(commandText, checked(parameters))) {
    if (result.hasRows)
      rowsets.push_back(std::move(result.rows));
    else if (result.recordsAffected >= 0)
      affected = result.recordsAffected;
  }
  if (recordsAffected != nullptr) *recordsAffected = affected;
  return Recordset::fromResults(std::move(rowsets), ConnectionRef(this));
}

ProviderConnection& Connection::provider() {
  if (!provider_)
    throw com::Error(com::error::kAdoObjectClosed, "ADODB.Connection",
                     "The connection is closed; expected an open one");
  return *provider_;
}

}  // namespace velmora::ado
