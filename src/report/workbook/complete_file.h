#pragma once

#include <string>

namespace velmora::report::workbook {

/// What is wrong with a workbook file that was just put together: a part whose end is missing,
/// because the disk or the folder of temporary files was full. Empty: nothing.
std::string damageOf(const std::string& file);

}  // namespace velmora::report::workbook
