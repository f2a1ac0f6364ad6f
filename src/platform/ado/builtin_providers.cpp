#include "platform/ado/builtin_providers.h"

namespace velmora::ado {

void registerBuiltInProviders() {}

}  // namespace velmora::ado
