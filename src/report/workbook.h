#pragma once

#include <cstdint>
#include <string>

#include "report/model.h"
#include "report/words.h"

namespace velmora::report {

/// Rows that a sheet holds, heads included; more go on in a next sheet.
constexpr std::uint32_t kSheetRows = 1'048'576;

/// The report as a workbook (.xlsx): a summary sheet, then a sheet a table. `words` are those
/// of the workbook itself, in the report's language. Raises std::runtime_error telling why
/// `file` could not be written.
void writeWorkbook(const std::string& file, const Report& report, const Words& words,
                   std::uint32_t sheetRows = kSheetRows);

}  // namespace velmora::report
