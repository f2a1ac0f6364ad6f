#include "report/workbook/styles.h"

#include <algorithm>
#include <fmt/format.h>
#include <new>

namespace velmora::report::workbook {

namespace {

constexpr lxw_color_t kHeadFill = 0x1F3864, kHeadText = 0xFFFFFF, kTotalFill = 0xE7ECF4,
                      kLines = 0xBFC7D5, kTitle = 0x1F3864, kMuted = 0x595959, kLink = 0x0B57A4;

struct ToneColours {
  lxw_color_t text, fill;
  const char* sign;
};

ToneColours coloursOf(Tone tone) {
  switch (tone) {
    case Tone::serious:
      return {0x9C0006, 0xFDE3E3, "■ "};
    case Tone::warning:
      return {0x7A4B00, 0xFFF1CF, "▲ "};
    case Tone::good:
      return {0x1B5E20, 0xE2F2E3, "● "};
    case Tone::plain:
      break;
  }
  return {0, 0, ""};
}

/// A font that the reader's office has, with the language's own shapes of the characters.
const char* fontOf(const std::string& language) {
  if (language == "chs") return "Microsoft YaHei";
  return language == "CHT" ? "Microsoft JhengHei" : "Calibri";
}

std::string numberFormat(int decimals) {
  std::string places;
  constexpr int kMostPlaces = 30;
  if (decimals > 0)
    places = "." + std::string(static_cast<std::size_t>(std::min(decimals, kMostPlaces)), '0');
  return fmt::format("#,##0{0}_ ;[Red]-#,##0{0}_ ", places);  // a little room before the next text
}

std::uint8_t alignmentOf(const Style& style) {
  switch (style.align) {
    case Align::left:
      return LXW_ALIGN_LEFT;
    case Align::centre:
      return LXW_ALIGN_CENTER;
    case Align::right:
      return LXW_ALIGN_RIGHT;
    case Align::natural:
      break;
  }
  return style.shows == Shows::date ? LXW_ALIGN_LEFT : LXW_ALIGN_NONE;
}

}  // namespace

lxw_format* Styles::add() {
  lxw_format* format = workbook_add_format(book_);
  if (!format) throw std::bad_alloc();
  return format;
}

void Styles::setLook(lxw_format* format, const Style& style) const {
  switch (style.look) {
    case Look::title:
      format_set_font_size(format, 16);
      [[fallthrough]];
    case Look::heading:
      format_set_bold(format);
      format_set_font_color(format, kTitle);
      if (style.look == Look::heading) {
        format_set_font_size(format, 12);
        format_set_bottom(format, LXW_BORDER_MEDIUM);
        format_set_bottom_color(format, kTitle);
      }
      break;
    case Look::strong:
      format_set_bold(format);
      break;
    case Look::head:
      format_set_bold(format);
      format_set_font_color(format, kHeadText);
      format_set_bg_color(format, kHeadFill);
      format_set_align(format, LXW_ALIGN_CENTER);
      format_set_align(format, LXW_ALIGN_VERTICAL_CENTER);
      format_set_border(format, LXW_BORDER_THIN);
      format_set_border_color(format, kLines);
      break;
    case Look::total:
      format_set_bold(format);
      format_set_bg_color(format, kTotalFill);
      format_set_top(format, LXW_BORDER_THIN);
      format_set_bottom(format, LXW_BORDER_DOUBLE);
      break;
    case Look::detail:
      format_set_font_color(format, kMuted);
      [[fallthrough]];
    case Look::row:
      format_set_bottom(format, LXW_BORDER_HAIR);
      format_set_bottom_color(format, kLines);
      break;
    case Look::label:
    case Look::note:
      format_set_font_color(format, kMuted);
      break;
    case Look::line:
      format_set_bottom(format, LXW_BORDER_THIN);
      format_set_align(format, LXW_ALIGN_VERTICAL_BOTTOM);
      break;
    case Look::body:
      break;
  }
}

lxw_format* Styles::make(const Style& style) {
  lxw_format* format = add();
  format_set_font_name(format, fontOf(language_));
  format_set_font_size(format, 10);
  format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
  setLook(format, style);
  const ToneColours colours = coloursOf(style.tone);
  if (style.tone != Tone::plain) {
    format_set_font_color(format, colours.text);
    format_set_bg_color(format, colours.fill);
    if (style.tone == Tone::serious) format_set_bold(format);
    if (style.marked)
      format_set_num_format(
          format, ("General;General;General;\"" + std::string(colours.sign) + "\"@").c_str());
  }
  if (style.shows == Shows::number)
    format_set_num_format(format, numberFormat(style.decimals).c_str());
  if (style.shows == Shows::date) {
    format_set_num_format(format, "yyyy-mm-dd");
  }
  if (const auto align = alignmentOf(style)) format_set_align(format, align);
  if (style.wrap) format_set_text_wrap(format);
  if (style.link) {
    format_set_underline(format, LXW_UNDERLINE_SINGLE);
    if (style.tone == Tone::plain) format_set_font_color(format, kLink);
  }
  return format;
}

lxw_format* Styles::of(const Style& style) {
  lxw_format*& format = formats_[style];
  if (!format) format = make(style);
  return format;
}

lxw_format* Styles::difference() {
  if (!difference_) {
    difference_ = add();
    format_set_bold(difference_);
    format_set_font_color(difference_, coloursOf(Tone::serious).text);
    format_set_bg_color(difference_, coloursOf(Tone::serious).fill);
  }
  return difference_;
}

}  // namespace velmora::report::workbook
