#include <algorithm>

#include "report/html/blocks.h"

namespace velmora::report::html {

namespace {

/// How far a chart's bars reach to either side of 0.
struct Reach {
  Decimal left;   ///< 0 or less
  Decimal right;  ///< 0 or more
};

Reach reachOf(const Chart& chart) {
  Reach reach;
  for (const Bar& bar : chart.bars) {
    reach.left = std::min(reach.left, bar.amount);
    reach.right = std::max(reach.right, bar.amount);
  }
  return reach;
}

/// Where `amount` lies between the two ends, in hundredths of the width.
std::string place(const Decimal& amount, const Reach& reach) {
  const Decimal width = reach.right - reach.left;
  const Decimal share = width.isZero() ? width : Decimal::divide(amount, width, 6);
  return (share * Decimal(100)).rounded(2).normalized().toString();
}

void writeBar(const Page& page, const Bar& bar, const Reach& reach) {
  page.markup.raw("<li");
  if (bar.tone != Tone::plain) page.markup.raw(" class=").raw(classOf(bar.tone));
  page.markup.raw("><span>");
  writeSign(page, bar.tone);
  writeLink(page, {bar.label, bar.target});
  const Decimal start = std::min(bar.amount, Decimal()) - reach.left;
  const std::string zero = place(-reach.left, reach);
  page.markup.raw("</span><svg viewBox=\"0 0 100 10\" preserveAspectRatio=none aria-hidden=true>")
      .raw("<rect y=1 height=8 x=")
      .raw(place(start, reach))
      .raw(" width=")
      .raw(place(bar.amount.abs(), reach))
      .raw("></rect><path d=\"M")
      .raw(zero)
      .raw(" 0V10\"></path></svg><b>")
      .text(bar.text)
      .raw("</b>");
}

}  // namespace

// Labels and figures are text of the page, so that they wrap, are found, copied and read aloud;
// only the bars are drawn.
void write(const Page& page, const Chart& chart) {
  const Reach reach = reachOf(chart);
  page.markup.raw("<figure id=").id(chart.id).raw("><figcaption>").text(chart.title);
  page.markup.raw("</figcaption><ul class=chart>");
  for (const Bar& bar : chart.bars) writeBar(page, bar, reach);
  page.markup.raw("</ul></figure>\n");
}

}  // namespace velmora::report::html
