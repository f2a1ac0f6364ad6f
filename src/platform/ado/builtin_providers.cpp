#include "platform/ado/builtin_providers.h"

#include "platform/ado/duckdb/embedded_provider.h"

namespace velmora::ado {

void registerBuiltInProviders() {
  embedded::registerProvider();
}

}  // namespace velmora::ado
