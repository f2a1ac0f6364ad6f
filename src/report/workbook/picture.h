#pragma once

#include <cstdint>

#include "report/model.h"
#include "report/workbook/book.h"

namespace velmora::report::workbook {

/// Rows beside which a picture stands.
constexpr std::uint32_t kPictureRows = 13;

/// Whether a chart is drawn: a few bars, of amounts that the workbook holds.
bool isDrawn(const Chart& chart);

/// Draws the bars whose labels and amounts stand in the sheet's first two columns from the row
/// `first` on, at `column`.
void draw(const Sheet& sheet, const Chart& chart, std::uint32_t first, std::size_t column);

}  // namespace velmora::report::workbook
