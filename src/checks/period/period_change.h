#pragma once

#include <string>

#include "frame/call/data_source.h"
#include "velmora/collections/date.h"

namespace velmora::period {

/// Whether a period's first day may move from `oldStart` to `newStart`: no contact
/// record is dated on or after the earlier of both, since it would then lie in another
/// period. When it may not, `message` tells why in the caller's language. Raises the
/// provider's errors.
bool isCanChangePeriod(const CDataSource& dataSource, collections::Date oldStart,
                       collections::Date newStart, std::string& message);

/// What a caller is told when that could not be found out.
std::string periodCheckFailed(const std::string& language);

}  // namespace velmora::period
