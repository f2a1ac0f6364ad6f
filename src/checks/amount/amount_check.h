#pragma once

#include "frame/call/data_source.h"
#include "frame/call/operation.h"
#include "velmora/ado/recordset.h"
#include "velmora/collections/dictionary.h"

namespace velmora::amount {

/// Runs the initial or period check, as _clsInitBalCheck::GetInitAmtCheck tells. `sDsn` is
/// what `dataSource` was made from. Failures are raised; `place` is then the statement at
/// work.
ado::RecordsetRef getInitAmtCheck(const CDataSource& dataSource, const std::string& sDsn,
                                  collections::Dictionary& dFilter, Place& place);

/// Runs the closing check, as _clsInitBalCheck::GetClosingAmtCheck tells.
ado::RecordsetRef getClosingAmtCheck(const CDataSource& dataSource, const std::string& sDsn,
                                     collections::Dictionary& dFilter, Place& place);

}  // namespace velmora::amount
