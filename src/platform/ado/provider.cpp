#include "velmora/ado/provider.h"

#include <map>
#include <mutex>
#include <utility>

#include "platform/ado/builtin_providers.h"
#include "platform/ado/provider_registry.h"
#include "velmora/collections/letter_case.h"
#include "velmora/com/error.h"

namespace velmora::ado {

namespace {

using collections::lowerCased;

constexpr std::string_view kOdbc = "MSDASQL";

class Registry {
 public:
  void add(std::string name, ProviderFactory open) {
    const std::lock_guard lock(mutex_);
    loadBuiltIns();
    const std::string key = lowerCased(name);
    providers_.insert_or_assign(key, Entry{std::move(name), std::move(open)});
  }

  /// Empty when there is none.
  ProviderFactory find(std::string_view name) {
    const std::lock_guard lock(mutex_);
    loadBuiltIns();
    const auto found = providers_.find(lowerCased(name));
    return found == providers_.end() ? nullptr : found->second.open;
  }

  std::string names() {
    const std::lock_guard lock(mutex_);
    loadBuiltIns();
    std::string list;
    for (const auto& [key, entry] : providers_) list += (list.empty() ? "" : ", ") + entry.name;
    return list.empty() ? "none" : list;
  }

 private:
  struct Entry {
    std::string name;
    ProviderFactory open;
  };

  /// Before anything else, so that what a client registers takes precedence. Comes
  /// back to `add`, hence the recursive mutex.
  void loadBuiltIns() {
    if (std::exchange(loaded_, true)) return;
    registerBuiltInProviders();
  }

  std::recursive_mutex mutex_;
  bool loaded_ = false;
  std::map<std::string, Entry> providers_;  // by name in lower case
};

Registry& registry() {
  static Registry instance;
  return instance;
}

/// The name under which the provider of an OLE DB name is registered here.
std::string_view withoutVersion(std::string_view name) {
  for (const std::string_view sqlServer : {"sqloledb", "sqlncli", "msoledbsql"})
    if (lowerCased(name).starts_with(sqlServer)) return kOdbc;
  return name.substr(0, name.find('.', name.find_last_not_of("0123456789.") + 1));
}

[[noreturn]] void throwNotFound(const std::string& description) {
  throw com::Error(com::error::kAdoProviderNotFound, "ADODB.Connection",
                   description + "; known providers: " + registry().names());
}

}  // namespace

void RegisterProvider(std::string name, ProviderFactory open) {
  registry().add(std::move(name), std::move(open));
}

ProviderFactory findProvider(const ConnectionString& settings) {
  std::string name = settings.value("Provider");
  if (name.empty() && (settings.find("Driver") || settings.find("DSN"))) name = kOdbc;
  if (name.empty())
    throwNotFound(
        "The connection string names no provider; expected Provider=NAME, or Driver= or DSN= for "
        "ODBC");
  if (auto found = registry().find(name)) return found;
  if (auto found = registry().find(withoutVersion(name))) return found;
  throwNotFound("Provider '" + name + "' cannot be found");
}

std::unique_ptr<BulkInsert> ProviderConnection::bulkInsert(std::string_view table,
                                                           std::span<const std::string>) {
  throw com::Error(
      com::error::kAdoNotSupported, "ADODB.Connection",
      "This provider has no bulk load; expected single inserts into '" + std::string(table) + "'");
}

}  // namespace velmora::ado
