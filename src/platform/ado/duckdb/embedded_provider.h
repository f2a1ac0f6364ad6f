#pragma once

#include <memory>

#include "velmora/ado/provider.h"

namespace velmora::ado::embedded {

/// Opens a connection to an embedded database; for the connection string see settings.h.
///
/// Its batches are T-SQL. A statement that fails or is stopped ends its batch and rolls back
/// the transaction it is in; what the batch did before outside a transaction stays.
std::unique_ptr<ProviderConnection> openConnection(const ConnectionString& settings);

/// Makes it known as "Velmora.Embedded".
void registerProvider();

}  // namespace velmora::ado::embedded
