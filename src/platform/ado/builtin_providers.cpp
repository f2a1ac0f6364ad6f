#include "platform/ado/builtin_providers.h"

#include "platform/ado/duckdb/embedded_provider.h"
#include "platform/ado/odbc/odbc_provider.h"

namespace velmora::ado {

void registerBuiltInProviders() {
  embedded::registerProvider();
  odbc::registerProvider();
}

}  // namespace velmora::ado
