#include "report/workbook/picture.h"

#include <algorithm>
#include <fmt/format.h>
#include <vector>

#include "report/workbook/texts.h"

namespace velmora::report::workbook {

namespace {

constexpr std::size_t kFewest = 2, kMost = 20;
constexpr double kPixelsOfRow = 20, kPixelsWide = 490;

lxw_color_t colourOf(Tone tone) {
  switch (tone) {
    case Tone::serious:
      return 0xC0392B;
    case Tone::warning:
      return 0xD08A00;
    case Tone::good:
      return 0x2E7D32;
    case Tone::plain:
      break;
  }
  return 0x2F5597;
}

void colourBars(const Sheet& sheet, lxw_chart_series* series, const Chart& chart) {
  std::vector<lxw_chart_fill> fills(chart.bars.size());
  std::vector<lxw_chart_point> points(chart.bars.size());
  std::vector<lxw_chart_point*> list;
  for (std::size_t i = 0; i < chart.bars.size(); ++i) {
    fills[i].color = colourOf(chart.bars[i].tone);
    points[i].fill = &fills[i];
    list.push_back(&points[i]);
  }
  list.push_back(nullptr);
  sheet.check(chart_series_set_points(series, list.data()));
}

std::string range(const Sheet& sheet, std::uint32_t first, std::size_t rows, std::size_t column) {
  const auto last = first + static_cast<std::uint32_t>(rows) - 1;
  return fmt::format("={}:${}${}", cellName(sheet.raw()->name, first, column, true),
                     columnName(column), last + 1);
}

}  // namespace

bool isDrawn(const Chart& chart) {
  return chart.bars.size() >= kFewest && chart.bars.size() <= kMost &&
         std::all_of(chart.bars.begin(), chart.bars.end(),
                     [](const Bar& bar) { return isExact(bar.amount); });
}

void draw(const Sheet& sheet, const Chart& chart, std::uint32_t first, std::size_t column) {
  lxw_chart* picture = workbook_add_chart(sheet.book().raw(), LXW_CHART_BAR);
  if (!picture) throw std::bad_alloc();
  const std::string labels = range(sheet, first, chart.bars.size(), 0),
                    amounts = range(sheet, first, chart.bars.size(), 1);
  lxw_chart_series* series = chart_add_series(picture, labels.c_str(), amounts.c_str());
  if (!series) throw std::bad_alloc();
  colourBars(sheet, series, chart);
  chart_series_set_labels(series);
  chart_set_series_gap(picture, 60);
  chart_axis_set_reverse(picture->y_axis);
  chart_axis_set_label_position(picture->y_axis, LXW_CHART_AXIS_LABEL_POSITION_LOW);
  chart_axis_major_gridlines_set_visible(picture->x_axis, LXW_FALSE);
  chart_axis_off(picture->x_axis);
  chart_title_set_name(picture, cellText(firstUnits(chart.title, 100)).c_str());
  lxw_chart_font font{};
  font.size = 11;
  chart_title_set_name_font(picture, &font);
  chart_legend_set_position(picture, LXW_CHART_LEGEND_NONE);
  lxw_chart_options options{};
  options.x_offset = 8;
  const double rows = std::max<double>(kPictureRows, static_cast<double>(chart.bars.size()));
  options.x_scale = kPixelsWide / 480;  // of the library's own size
  options.y_scale = (rows * kPixelsOfRow - 10) / 288;
  sheet.check(worksheet_insert_chart_opt(sheet.raw(), first, static_cast<lxw_col_t>(column),
                                         picture, &options));
}

}  // namespace velmora::report::workbook
