#pragma once

namespace velmora::ado {

/// Calls RegisterProvider for every provider that comes with the platform. They
/// are named one by one, so that the linker keeps each and none depends on the
/// order of static initialisers. Called once, at the first use of the registry.
void registerBuiltInProviders();

}  // namespace velmora::ado
