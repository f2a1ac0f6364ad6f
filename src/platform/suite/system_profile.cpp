#include "platform/suite/system_profile.h"

#include <memory>

#include "platform/suite/account_set.h"
#include "velmora/ado/command.h"

namespace velmora::suite {

namespace {

constexpr const char* kProgId = "tirnarSystem.SystemProfile";

}  // namespace

const com::DispatchTable<SystemProfile>& SystemProfile::dispatchTable() {
  static const auto table = [] {
    auto made = std::make_unique<com::DispatchTable<SystemProfile>>(
        "SystemProfile", kProgId, com::Guid::parse("2CB7062D-43CF-4C53-8BDD-E78BB6900DBE"),
        com::IDispatch::kInterfaceId);
    made->method("GetSysProfile", &SystemProfile::GetSysProfile,
                 {"connectionString", "category", "key", "fallback"});
    return made;
  }();
  return *table;
}

collections::Variant SystemProfile::GetSysProfile(const std::string& connectionString,
                                                  const std::string& category,
                                                  const std::string& key,
                                                  const collections::Variant& fallback) {
  const auto command = com::make<ado::Command>();
  command->ActiveConnection(openAccountSet(connectionString, kProgId));
  command->CommandText("select FValue from t_SystemProfile where FCategory = ? and FKey = ?");
  command->AppendParameter(ado::adVarChar, 30, category);
  command->AppendParameter(ado::adVarChar, 50, key);
  const auto rows = command->Execute();
  return rows->EOF_() ? fallback : rows->GetValue(0);
}

}  // namespace velmora::suite
