#pragma once

#include "frame/call/data_source.h"
#include "velmora/ado/recordset.h"
#include "velmora/collections/dictionary.h"

namespace velmora::period {

/// Runs the initial-data check as _clsInitBalCheck::CheckInitData tells and answers every
/// finding, disconnected. Raises the provider's errors.
ado::RecordsetRef checkInitData(const CDataSource& dataSource,
                                const collections::Dictionary& dFilter);

}  // namespace velmora::period
