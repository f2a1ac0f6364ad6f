#pragma once

#include "velmora/collections/date.h"

namespace velmora::ado::embedded {

/// Local time of this machine, to datetime's thousandths of a second.
collections::Date now();

}  // namespace velmora::ado::embedded
