#pragma once

#include "velmora/collections/dictionary.h"

namespace velmora::amount {

/// Writes the conditions of the number ranges: strItemFilter and bItemFilter from
/// BItemNumber and EItemNumber (over t10), likewise Dpt (t2) and Emp (t3). An empty
/// number leaves its end open; with both empty the flag is false and the condition "".
void writeNumberRanges(collections::Dictionary& dFilter);

}  // namespace velmora::amount
