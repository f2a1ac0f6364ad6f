#pragma once

#include <iosfwd>

#include "report/model.h"
#include "report/words.h"

namespace velmora::report {

/// The report as one HTML page that asks nothing of anywhere. `words` are those of the page
/// itself, in the report's language.
void writeHtml(std::ostream& out, const Report& report, const Words& words);

}  // namespace velmora::report
