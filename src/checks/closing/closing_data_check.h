#pragma once

#include <string>

#include "frame/call/data_source.h"
#include "frame/call/operation.h"
#include "velmora/ado/recordset.h"

namespace velmora::closing {

/// Runs every closing check as _clsInitBalCheck::CheckClosingData tells and answers the
/// findings; sets `bCanClose` where the findings decide it. `sDsn` is what `dataSource`
/// was made from. Failures are raised; `place` is then the caption of the check at work.
ado::RecordsetRef checkClosingData(const CDataSource& dataSource, const std::string& sDsn,
                                   const collections::Dictionary& dOption, bool& bCanClose,
                                   Place& place);

}  // namespace velmora::closing
