#pragma once

#include <string>

#include "velmora/com/dispatch_table.h"

namespace velmora::suite {

/// "tirnarSystem.SystemProfile": the settings of the modules other than receivables and
/// payables.
class SystemProfile final : public com::DispatchObject<SystemProfile> {
 public:
  static const com::DispatchTable<SystemProfile>& dispatchTable();

  /// The value of `key` in `category` ("GL", "IC") as t_SystemProfile of the database that
  /// `connectionString` (the caller's whole string) names holds it, possibly Null;
  /// `fallback` when it holds none. Raises the database's error.
  collections::Variant GetSysProfile(const std::string& connectionString,
                                     const std::string& category, const std::string& key,
                                     const collections::Variant& fallback);
};

}  // namespace velmora::suite
