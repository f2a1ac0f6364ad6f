#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "platform/ado/batch_stopper.h"
#include "platform/ado/odbc/handles.h"
#include "velmora/ado/provider.h"

namespace velmora::ado::odbc {

/// Runs a batch to its end and returns what each statement answered. `timeoutSeconds`:
/// 0 without limit; the driver is asked to watch it, and interrupted where it does not.
/// `stopper` is the connection's.
///
/// The batch is sent as it is, not prepared: what a prepared batch makes on a SQL Server,
/// temporary tables above all, would be gone with it. Errors of all statements are
/// collected and raised together when the batch has ended.
std::vector<StatementResult> runBatch(const Session& session, std::string_view batch,
                                      std::span<const ParameterValue> parameters,
                                      int timeoutSeconds, BatchStopper& stopper);

}  // namespace velmora::ado::odbc
