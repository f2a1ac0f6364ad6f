#pragma once

#include "velmora/ado/provider.h"

namespace velmora::ado {

/// The provider that `settings` ask for: by "Provider", or ODBC's for "Driver" or
/// "DSN" without one. Raises kAdoProviderNotFound naming the provider and the
/// known ones, or what was expected when no provider is named.
ProviderFactory findProvider(const ConnectionString& settings);

}  // namespace velmora::ado
