#pragma once

#include "frame/call/data_source.h"
#include "frame/call/operation.h"
#include "velmora/collections/vector.h"

namespace velmora::closing {

/// The closing checks that apply, in order, as _clsInitBalCheck::GetCheckItemDict tells.
/// Completes `dFilter`. Failures are raised; `place` is then the caption of the check at
/// work.
collections::VectorRef GetCheckItemDict(const CDataSource& dataSource,
                                        collections::Dictionary& dFilter, Place& place);

}  // namespace velmora::closing
