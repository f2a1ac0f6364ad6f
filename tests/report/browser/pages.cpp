// Writes the pages that the browser's tests read, in each language: a small one of everything
// there is, and one of 60,000 rows.

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "report/html.h"
#include "velmora/com/class_table.h"

namespace velmora::report {
namespace {

const std::array<std::string, 3> kNames{"甲公司", "Müller & Söhne <GmbH>", "شركة النور"};

Decimal cents(std::int64_t amount) {
  return Decimal::fromCoefficient(amount, 2);
}

/// A finding every row; each fifth tells more of the one before it.
Table findings(const std::string& id, std::int64_t count) {
  Table table{id + "-table",
              "Findings " + id,
              {{"No.", Kind::count},
               {.name = "Item", .choice = true},
               {.name = "Severity", .choice = true},
               {.name = "Account", .key = true},
               {"Message"},
               {"Date", Kind::date},
               {.name = "Amount", .kind = Kind::amount, .difference = true},
               {"Reason"}},
              {}};
  for (std::int64_t i = 1; i <= count; ++i) {
    const bool serious = i % 3 == 0;
    Row row{.cells = {},
            .id = id + "-" + std::to_string(i),
            .detail = i % 5 == 0,
            .tone = Tone::warning};
    if (serious) row.tone = Tone::serious;
    row.cells = {i,
                 "Item " + std::to_string(i % 7),
                 std::string(serious ? "Serious error" : "Warning"),
                 "1122." + std::to_string(i / 5 % 100),
                 "Document XSD" + std::to_string(i * 7919 % 1'000'003) + " of " +
                     kNames[static_cast<std::size_t>(i % 3)] + " has no voucher: make its voucher.",
                 Date::ymd(2009, 3, static_cast<int>(i % 28) + 1),
                 cents(i % 4 == 0 ? 0 : i * 104'729 % 100'000'000 - 50'000'000),
                 References{{"Reason " + std::to_string(i % 9), "reason-3"}}};
    table.rows.push_back(std::move(row));
  }
  return table;
}

Table comparison() {
  const Kind amount = Kind::amount;
  Table table{"ledger-table",
              "By account",
              {{.name = "Account", .key = true},
               {"Receivables", amount, "Closing balance"},
               {"Ledger", amount, "Closing balance"},
               {"Difference", amount, "Closing balance", false, true},
               {.name = "Reason", .choice = true}},
              {}};
  const auto add = [&](std::string id, std::string account, std::int64_t ours, std::int64_t ledger,
                       bool detail, Cell reason) {
    table.rows.push_back({.cells = {std::move(account), cents(ours), cents(ledger),
                                    cents(ours - ledger), std::move(reason)},
                          .id = std::move(id),
                          .detail = detail});
  };
  add("account-1", "1122 Trade receivables", 123'456'789, 123'450'000, false, {});
  add("reason-3", "1122 Trade receivables", 0, -6'000, true,
      References{{"Keyed by hand", "closing-9"}});
  add("reason-4", "1122 Trade receivables", 0, -789, true, References{{"Rounding", ""}});
  add("account-2", "1123 Bills", 9, 9, false, {});
  add("account-3", "=1+1", 900, 1'000, false,
      std::string("<script>alert(1)</script> \u202Eabc\x01"));
  add("account-4", "0050", -123'456'700, -123'456'600, false, {});
  table.totals = {std::string("Total"), cents(998), cents(-5'591), cents(6'589), {}};
  return table;
}

Report smallReport() {
  Table late = findings("late", 600);
  late.folded = true;
  return {
      .language = {},
      .title = "Closing dossier 2009-03",
      .subject = "Velmora Trading",
      .author = "Li <Controller>",
      .madeAt = "2009-04-01 09:30",
      .sections = {
          {.id = "summary",
           .title = "Summary",
           .blocks = {Paragraph{"Receivables may not be closed.", Tone::serious},
                      Paragraph{"Payables may be closed.", Tone::good},
                      Facts{{{"Serious errors", std::int64_t{10}}, {"Difference", cents(6'589)}}},
                      Steps{"What to do first", {{"Make the missing vouchers", "closing-3"}}},
                      Chart{"by-account",
                            "Differences by account",
                            {{"1122", cents(6'789), "67.89", Tone::serious, "account-1"},
                             {"1124", cents(-100), "-1.00"}}}}},
          {.id = "closing",
           .title = "Closing check",
           .summary = "10 serious errors",
           .tone = Tone::serious,
           .blocks =
               {findings("closing", 30),
                Table{.id = "none", .title = "Nothing", .columns = {{.name = "a"}}, .rows = {}}}},
          {.id = "ledger", .title = "Ledger", .summary = "differs", .blocks = {comparison()}},
          {.id = "more",
           .title = "More",
           .summary = "600 findings",
           .tone = Tone::warning,
           .blocks = {std::move(late), Signatures{{"Controller", "Auditor"}}},
           .folded = true}}};
}

Report largeReport() {
  return {.language = {},
          .title = "Large",
          .subject = "Velmora Trading",
          .author = {},
          .madeAt = {},
          .sections = {{.id = "summary", .title = "Summary", .blocks = {Paragraph{"Large."}}},
                       {.id = "all", .title = "All", .blocks = {findings("large", 60'000)}}}};
}

Words wordsIn(const std::string& language) {
  if (language == "chs") return [](std::string_view text) { return std::string(text); };
  const auto loader = com::CreateObject("Q8RESLOADER.Loader");
  loader->PutProperty("ResFileBaseName", "Q8ArAp");
  loader->PutProperty("LanguageID", language);
  return [loader](std::string_view text) {
    return com::call(*loader, "LoadString", text).toText();  // raises where one is missing
  };
}

void writePages(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  const std::pair<const char*, Report> reports[] = {{"small", smallReport()},
                                                    {"large", largeReport()}};
  for (const auto& [name, made] : reports) {
    Report report = made;
    for (const char* language : {"chs", "CHT", "EN"}) {
      report.language = language;
      std::ofstream page(folder / (std::string(name) + "_" + language + ".html"), std::ios::binary);
      writeHtml(page, report, wordsIn(language));
    }
  }
}

}  // namespace
}  // namespace velmora::report

int main(int argc, char** argv) {
  if (argc != 2) return EXIT_FAILURE;
  velmora::report::writePages(argv[1]);
}
