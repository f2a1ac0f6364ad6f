#pragma once

#include <cstdint>

#include "frame/call/data_source.h"
#include "frame/call/operation.h"
#include "velmora/ado/recordset.h"

namespace velmora::period {

/// Runs the account check as _clsCheck::CheckValidAccount tells and answers the
/// findings. Failures are raised; `place` is then the table at work.
ado::RecordsetRef checkValidAccount(const CDataSource& dataSource, std::int32_t classTypeId,
                                    Place& place);

}  // namespace velmora::period
