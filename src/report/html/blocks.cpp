#include "report/html/blocks.h"

namespace velmora::report::html {

namespace {

/// A cell's content by what it holds.
struct CellWriter {
  const Page& page;

  void operator()(std::monostate /*nothing*/) const {}
  void operator()(const std::string& text) const { page.markup.text(text); }
  void operator()(std::int64_t count) const { page.markup.raw(std::to_string(count)); }
  void operator()(const Decimal& amount) const { page.markup.raw(grouped(amount)); }
  void operator()(const Date& day) const { page.markup.raw(day.toDateText()); }
  void operator()(const References& references) const {
    bool first = true;
    for (const Reference& reference : references) {
      if (!first) page.markup.raw(", ");
      first = false;
      writeLink(page, reference);
    }
  }
};

}  // namespace

std::string_view classOf(Tone tone) {
  switch (tone) {
    case Tone::serious:
      return "s";
    case Tone::warning:
      return "w";
    case Tone::good:
      return "g";
    default:
      return {};
  }
}

std::string_view wordOf(Tone tone) {
  switch (tone) {
    case Tone::serious:
      return "严重错误";
    case Tone::warning:
      return "警告信息";
    default:
      return "正常";
  }
}

void writeSign(const Page& page, Tone tone) {
  if (tone == Tone::plain) return;
  page.markup.raw("<i><u>");
  page.word(wordOf(tone));
  page.markup.raw(" </u></i>");
}

void writeLink(const Page& page, const Reference& reference) {
  if (reference.target.empty()) {
    page.markup.text(reference.text);
    return;
  }
  page.markup.raw("<a href=#").id(reference.target).raw(">").text(reference.text).raw("</a>");
}

void writeCell(const Page& page, const Cell& cell) {
  std::visit(CellWriter{page}, cell);
}

void write(const Page& page, const Paragraph& paragraph) {
  if (paragraph.tone == Tone::plain)
    page.markup.raw("<p>");
  else
    page.markup.raw("<p class=").raw(classOf(paragraph.tone)).raw(">");
  writeSign(page, paragraph.tone);
  page.markup.text(paragraph.text).raw("</p>\n");
}

void write(const Page& page, const Facts& facts) {
  page.markup.raw("<dl>");
  for (const auto& [name, value] : facts.entries) {
    page.markup.raw("<div><dt>").text(name).raw("<dd>");
    writeCell(page, value);
    page.markup.raw("</div>");
  }
  page.markup.raw("</dl>\n");
}

void write(const Page& page, const Steps& steps) {
  page.markup.raw("<h3>").text(steps.title).raw("</h3><ol>");
  for (const Reference& step : steps.entries) {
    page.markup.raw("<li>");
    writeLink(page, step);
  }
  page.markup.raw("</ol>\n");
}

void write(const Page& page, const Signatures& signatures) {
  page.markup.raw("<ul class=signatures>");
  for (const std::string& role : signatures.roles) {
    page.markup.raw("<li><b>").text(role).raw("</b>");
    for (const std::string_view line : {"姓名", "日期", "签名"}) {
      page.markup.raw("<span>");
      page.word(line);
      page.markup.raw("</span>");
    }
  }
  page.markup.raw("</ul>\n");
}

}  // namespace velmora::report::html
