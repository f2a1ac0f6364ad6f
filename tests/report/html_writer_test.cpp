#include <gtest/gtest.h>
#include <sstream>

#include "report/html.h"

namespace velmora::report {
namespace {

std::string pageOf(const Report& report) {
  std::ostringstream out;
  writeHtml(out, report, [](std::string_view word) { return std::string(word); });
  return out.str();
}

/// A report of one table, of the cells of one row.
Report tableOf(std::vector<Column> columns, std::vector<Cell> cells) {
  Section section;
  section.blocks = {Table{"t", "", std::move(columns), {{.cells = std::move(cells)}}}};
  Report report;
  report.sections.push_back(std::move(section));
  return report;
}

/// What the page has for the only row of its only table.
std::string rowOf(const std::vector<Column>& columns, std::vector<Cell> cells) {
  const std::string page = pageOf(tableOf(columns, std::move(cells)));
  const auto start = page.find("<tbody>") + 7;
  return page.substr(start, page.find("</table>", start) - start);
}

TEST(HtmlPage, ShowsEveryTextAsItReads) {
  const std::string longText(200'000, 'x');
  struct Case {
    std::string text, shown;
  };
  for (const Case& c : {
           Case{"<script>alert('\"')</script> & &amp;",
                "&lt;script&gt;alert('&quot;')&lt;/script&gt; &amp; &amp;amp;"},
           {"</noscript></table>", "&lt;/noscript&gt;&lt;/table&gt;"},
           {"甲\tb\nc\r\nd\re", "甲\tb\nc\nd\ne"},
           {std::string("a\0b\x1b[31m\x7f\u0085", 11), "a\uFFFDb\uFFFD[31m\uFFFD\uFFFD"},
           {"\u202Eabc \u200F", "\u202Eabc \u200F"},
           {"a\xff\xc0\xaf\xed\xa0\x80\xf4\x90\x80\x80z\xe4\xb8",
            "a\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDz\uFFFD\uFFFD"},
           {"\U0001F4B0\u00A0é", "\U0001F4B0\u00A0é"},
           {"=1+1", "=1+1"},
           {longText, longText},
       })
    EXPECT_EQ(rowOf({{.name = "a"}}, {c.text}), "<tr><td>" + c.shown) << c.text.substr(0, 40);
}

TEST(HtmlPage, ShowsEveryKindOfCell) {
  const Column amount{.name = "a", .kind = Kind::amount, .difference = true};
  const auto decimal = [](const char* text) { return Decimal::parse(text); };
  for (const auto& [text, shown] : {
           std::pair{"0.00", "<td class=n>0.00"},
           {"-999.5", "<td class=\"n x\">-999.5"},
           {"-1234.50", "<td class=\"n x\">-1,234.50"},
           {"123456", "<td class=\"n x\">123,456"},
           {"12345678901234567890123456789012345.678",
            "<td class=\"n x\">12,345,678,901,234,567,890,123,456,789,012,345.678"},
       })
    EXPECT_EQ(rowOf({amount}, {decimal(text)}), std::string("<tr>") + shown);
  EXPECT_EQ(rowOf({{"a"}, {"b", Kind::count}, {"c", Kind::date}, {"d"}},
                  {std::monostate(), std::int64_t{1234}, Date::ymd(2009, 3, 1),
                   References{{"a<", "x y\"é"}, {"b", ""}}}),
            "<tr><td><td class=n>1234<td class=t>2009-03-01"
            "<td><a href=#x~20y~22~c3~a9>a&lt;</a>, b");
}

TEST(HtmlPage, IsTheSameEachTimeAndWholeWithNothingInIt) {
  for (const Report& report : {Report{}, tableOf({{.name = "a"}}, {std::string("b")})}) {
    const std::string page = pageOf(report);
    EXPECT_TRUE(page.ends_with("</body></html>\n"));
    EXPECT_EQ(pageOf(report), page);
  }
}

}  // namespace
}  // namespace velmora::report
