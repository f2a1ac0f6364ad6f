#pragma once

#include "frame/call/data_source.h"
#include "velmora/collections/dictionary.h"

namespace velmora::amount {

/// Writes the statements of the initial or period check, as _clsInitBalCheck tells.
/// `dataSource` holds the rows to what its user may see; nothing: all rows. Failures are
/// raised.
void GetAmtCheckDataSql(const CDataSource* dataSource, collections::Dictionary& dFilter);

/// The same for the closing check. Raises kInvalidArgument when AcctList and AcctLogic
/// differ in length; only the number ranges are written then.
void GetClosingCheckDataSql(const CDataSource* dataSource, collections::Dictionary& dFilter);

}  // namespace velmora::amount
