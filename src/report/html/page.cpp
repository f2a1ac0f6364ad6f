#include "report/html.h"
#include "report/html/assets.h"
#include "report/html/table.h"

namespace velmora::report {

namespace {

using html::Markup;
using html::Page;

/// What the page's script says, by its wording in simplified Chinese.
constexpr std::string_view kScriptWords[] = {
    "在所有表格中查找", "查找", "全部展开",     "全部折叠", "全部",  "金额不小于",
    "%1 / %2 行",       "复制", "已复制 %1 行", "清除筛选", "%1 处", "无法复制",
};

std::string_view languageTag(std::string_view language) {
  if (language == "EN") return "en";
  return language == "CHT" ? "zh-Hant" : "zh-Hans";
}

void writeHashes(Markup& markup, std::span<const EmbeddedText> texts) {
  for (const EmbeddedText& text : texts) markup.raw(" 'sha256-").raw(text.sha256).raw("'");
}

/// Forbids the page everything but its own styles and scripts, whatever a text in it says.
void writePolicy(Markup& markup) {
  markup.raw("<meta http-equiv=Content-Security-Policy content=\"default-src 'none'; style-src");
  writeHashes(markup, html::pageStyles());
  markup.raw("; script-src");
  writeHashes(markup, html::pageScripts());
  markup.raw("; base-uri 'none'; form-action 'none'\">\n");
}

void writeHead(const Page& page, const Report& report) {
  page.markup.raw("<!DOCTYPE html>\n<html lang=").raw(languageTag(report.language));
  page.markup.raw("><head><meta charset=utf-8>\n");
  writePolicy(page.markup);
  page.markup.raw("<meta name=viewport content=\"width=device-width,initial-scale=1\">\n<title>");
  page.markup.text(report.title).raw(" – ").text(report.subject).raw("</title>\n");
  for (const EmbeddedText& style : html::pageStyles())
    page.markup.raw("<style>").raw(style.text).raw("</style>\n");
  page.markup.raw("</head><body>\n");
}

void writeHeader(const Page& page, const Report& report) {
  page.markup.raw("<a class=skip href=#page-content>");
  page.word("跳到正文");
  page.markup.raw("</a><header><p class=subject>").text(report.subject);
  page.markup.raw("</p><h1>").text(report.title).raw("</h1><dl>");
  const std::pair<std::string_view, std::string_view> facts[] = {{"制表人", report.author},
                                                                 {"制表时间", report.madeAt}};
  for (const auto& [name, value] : facts) {
    if (value.empty()) continue;
    page.markup.raw("<div><dt>");
    page.word(name);
    page.markup.raw("<dd>").text(value).raw("</div>");
  }
  page.markup.raw("</dl></header>\n");
}

void writeSummary(const Page& page, const Section& section) {
  if (section.summary.empty()) return;
  page.markup.raw(" <span class=\"summary ").raw(html::classOf(section.tone)).raw("\">");
  html::writeSign(page, section.tone);
  page.markup.text(section.summary).raw("</span>");
}

void writeContents(const Page& page, const Report& report) {
  page.markup.raw("<nav aria-labelledby=page-contents><h2 id=page-contents>");
  page.word("目录");
  page.markup.raw("</h2><ul>");
  for (const Section& section : report.sections) {
    page.markup.raw("<li>");
    html::writeLink(page, {section.title, section.id});
    writeSummary(page, section);
  }
  page.markup.raw("</ul></nav>\n");
}

void writeSection(const Page& page, const Section& section, bool first) {
  page.markup.raw("<section id=").id(section.id).raw(" aria-labelledby=").id(section.id);
  page.markup.raw(first            ? "-title>"
                  : section.folded ? "-title><details><summary>"
                                   : "-title><details open><summary>");
  page.markup.raw("<h2 id=").id(section.id).raw("-title>").text(section.title).raw("</h2>");
  writeSummary(page, section);
  if (!first) page.markup.raw("</summary>");
  page.markup.raw("\n");
  for (const Block& block : section.blocks)
    std::visit([&](const auto& content) { html::write(page, content); }, block);
  page.markup.raw(first ? "</section>\n" : "</details></section>\n");
}

/// The script's words, as data that no browser runs.
void writeScriptWords(const Page& page) {
  page.markup.raw("<dl hidden id=page-words>");
  for (const std::string_view word : kScriptWords) {
    page.markup.raw("<dt>").text(word).raw("<dd>");
    page.word(word);
  }
  page.markup.raw("</dl>\n");
}

}  // namespace

void writeHtml(std::ostream& out, const Report& report, const Words& words) {
  Markup markup(out);
  const Page page{markup, words};
  writeHead(page, report);
  writeHeader(page, report);
  markup.raw("<main id=page-content tabindex=-1>\n");
  // The outcome stands before everything else.
  for (const Section& section : report.sections) {
    const bool first = &section == &report.sections.front();
    writeSection(page, section, first);
    if (first) writeContents(page, report);
  }
  markup.raw("</main>\n");
  writeScriptWords(page);
  for (const EmbeddedText& script : html::pageScripts())
    markup.raw("<script>").raw(script.text).raw("</script>\n");
  markup.raw("</body></html>\n");
  markup.finish();
}

}  // namespace velmora::report
