// What is written is read back by workbook.py, which has the program leave the books of
// Samples with what they were made of.

#include "report/workbook.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/resource.h>

#include "report/workbook/texts.h"

namespace velmora::report::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;

constexpr auto kWords = [](std::string_view text) { return std::string(text); };

Decimal dec(const char* text) {
  return Decimal::parse(text);
}

Report empty() {
  Report report;
  report.language = "chs";
  report.title = "月结报告 2009-03";
  report.subject = "蓝海贸易 & <公司>";
  report.author = "manager";
  report.madeAt = "2009-04-02 10:00";
  report.madeAtSeconds = 1'238'666'400;
  return report;
}

std::string longText(std::size_t size) {
  return std::string(size, 'x');
}

/// Texts that readers and spreadsheets stumble over.
Table hostile() {
  Table table{
      "hostile", "['a*b?c/d\\e:f#g'] 一个很长很长很长很长很长很长很长的标题", {{"文本"}}, {}};
  const std::string texts[] = {"=1+1",
                               "+1",
                               "-1",
                               "@SUM(A1)",
                               "\t=1",
                               "\r=1",
                               "http://a.b/",
                               "internal:A1",
                               "<b>&\"'</b>",
                               "a\x01z\x1f",
                               "\xff\xfe",
                               "\xed\xa0\x80",
                               "\xe0\x80\x80",
                               "\xef\xbf\xbf",
                               "_x0041_",
                               "‮abc‬",
                               "😀",
                               " space ",
                               "two\nlines",
                               longText(32'767),
                               longText(32'768),
                               longText(32'765) + "😀😀",
                               "",
                               "007",
                               "1E5",
                               "TRUE",
                               "12/3"};
  for (const std::string& text : texts) table.rows.push_back({{text}, "hostile" + text});
  return table;
}

/// Vouchers with details, over so many sheets as it takes.
Table vouchers(std::int64_t count, const std::string& target) {
  Table table{"vouchers",
              "无单据凭证",
              {{"凭证", Kind::text, {}, false, false, true},
               {"日期", Kind::date},
               {"分录", Kind::count},
               {"借方", Kind::amount, "金额"},
               {"差额", Kind::amount, "金额", false, true},
               {"见", Kind::text}},
              {}};
  Decimal debit = dec("0.00"), difference = dec("0.00");
  for (std::int64_t i = 0; i < count; ++i) {
    const Decimal amount = dec("0.01") * Decimal(i * 7 - 20), gap = dec(i % 3 ? "0.00" : "-12.30");
    const auto tone = static_cast<Tone>(i % 4);
    const Date day =
        Date::fromMicroseconds(Date::ymd(1999, 12, 30).microseconds() + i * 86'400'000'000);
    table.rows.push_back({{"记-" + std::to_string(i), day, i, amount, gap,
                           References{{"nowhere", "none"}, {"there", target}}},
                          "v" + std::to_string(i),
                          false,
                          tone});
    table.rows.push_back(
        {{"记-" + std::to_string(i), {}, std::int64_t{1}, amount, {}, {}}, "", true, tone});
    debit += amount;
    difference += gap;
  }
  table.totals = {"合计", {}, count * (count - 1) / 2, debit, difference, {}};
  return table;
}

/// Amounts at the edge of what a workbook's number holds, days at the edge of its calendar.
Table edges() {
  const auto row = [](Date day, const char* held, const char* exceeding, std::int64_t count) {
    return Row{{day, dec(held), dec(exceeding), dec("100000000000000000000.000"), count}};
  };
  Table table{"edges",
              "Edges",
              {{"Day", Kind::date},
               {"Held", Kind::amount},
               {"Exceeding", Kind::amount},
               {"Not the sum", Kind::amount},
               {"Count", Kind::count}},
              {row(Date::ymd(1900, 1, 1), "9999999999999.99", "0.01", 1),
               row(Date::ymd(1900, 2, 28), "-9999999999999.98", "1234567890123456.7", 2),
               row(Date::ymd(1900, 3, 1), "0.10", "900719925474099.3", 3),
               row(Date::ymd(9999, 12, 31), "1200000000000.00", "1", 4),
               row(Date::ymd(1753, 1, 1), "-1200000000000.00", "0.00", 5)}};
  table.totals = {"合计", dec("0.11"), dec("2135287815597557.01"), dec("5.00"), std::int64_t{15}};
  return table;
}

Report everything() {
  Report report = empty();
  Table small{"small",
              "Small",
              {{"科目", Kind::text, {}, false, false, true}, {"金额", Kind::amount}},
              {{{"2202", dec("1234.50")}, "s1", false, Tone::serious}, {{"1122", dec("-0.50")}}},
              {"合计", dec("1234.00")}};
  const Chart chart{
      "chart",
      "按科目",
      {{"2202", dec("12.5"), "12.5", Tone::serious, "v1"}, {"1122", dec("-3"), "3 rows"}}};
  report.sections = {{"verdict",
                      "结论",
                      "不能结账",
                      Tone::serious,
                      {Paragraph{"=verdict\n" + longText(300), Tone::serious},
                       Facts{{{"期间", "2009-03"},
                              {"From", Date::ymd(2009, 3, 1)},
                              {"See", References{{"v3", "v3"}}},
                              {"Amount", dec("98765432109.8765")},
                              {"Big", dec("1234567890123456.78")}}},
                       Steps{"先做什么", {{"Post the vouchers", "v2"}, {"Then close", "findings"}}},
                       small, chart, Signatures{{"财务主管", "Auditor"}}}},
                     {"findings", "问题", "", Tone::warning, {vouchers(9, "s1")}},
                     {"other",
                      "其他",
                      "All the rest.",
                      Tone::good,
                      {Paragraph{"Said of it."}, hostile(), edges(),
                       Table{"none",
                             "['A*B?C/D\\E:F#G'] 一个很长很长很长很长很长很长很长的标题",
                             {{"Empty"}},
                             {}}}}};
  return report;
}

std::string content(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// A folder that goes with the test.
class Workbook : public testing::Test {
 protected:
  Workbook() {
    std::array<char, 32> name{"/tmp/workbook.XXXXXX"};
    folder_ = mkdtemp(name.data());
  }
  ~Workbook() override { fs::remove_all(folder_); }
  fs::path folder_;
};

nlohmann::json json(const Cell& cell) {
  if (const auto* text = std::get_if<std::string>(&cell))
    return {{"text", workbook::cellText(*text)}};
  if (const auto* count = std::get_if<std::int64_t>(&cell)) return {{"count", *count}};
  if (const auto* amount = std::get_if<Decimal>(&cell)) return {{"amount", amount->toString()}};
  if (const auto* date = std::get_if<Date>(&cell)) return {{"date", date->toDateText()}};
  nlohmann::json references = nlohmann::json::array();
  if (const auto* all = std::get_if<References>(&cell))
    for (const Reference& each : *all) references.push_back({each.text, each.target});
  return references.empty() ? nlohmann::json() : nlohmann::json{{"references", references}};
}

nlohmann::json json(const std::vector<Cell>& cells) {
  nlohmann::json result = nlohmann::json::array();
  for (const Cell& cell : cells) result.push_back(json(cell));
  return result;
}

nlohmann::json json(const Table& table) {
  nlohmann::json rows = nlohmann::json::array(), columns = nlohmann::json::array();
  for (const Row& row : table.rows)
    rows.push_back({{"cells", json(row.cells)}, {"detail", row.detail}});
  for (const Column& column : table.columns)
    columns.push_back({{"name", column.name}, {"difference", column.difference}});
  return {
      {"title", table.title}, {"columns", columns}, {"rows", rows}, {"totals", json(table.totals)}};
}

nlohmann::json json(const Report& report) {
  nlohmann::json tables = nlohmann::json::array();
  for (std::size_t i = 1; i < report.sections.size(); ++i)
    for (const Block& block : report.sections[i].blocks)
      if (const auto* table = std::get_if<Table>(&block)) tables.push_back(json(*table));
  return {{"title", report.title},
          {"subject", report.subject},
          {"author", report.author},
          {"tables", tables}};
}

TEST_F(Workbook, Samples) {
  const char* kept = std::getenv("VELMORA_WORKBOOKS");
  const fs::path folder = kept ? fs::path(kept) : folder_;
  const std::pair<const char*, Report> samples[] = {{"empty", empty()},
                                                    {"everything", everything()}};
  for (const auto& [name, report] : samples) {
    const fs::path file = folder / (std::string(name) + ".xlsx"), again = folder_ / "again";
    writeWorkbook(file, report, kWords, 12);
    writeWorkbook(again, report, kWords, 12);
    EXPECT_TRUE(content(again) == content(file)) << name;
    std::ofstream(folder / (std::string(name) + ".json")) << json(report);
  }
}

TEST_F(Workbook, SaysWhyItCannotBeWritten) {
  const Report report = everything();
  const auto failure = [&](const std::string& file) -> std::string {
    try {
      writeWorkbook(file, report, kWords);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "none";
  };
  EXPECT_THAT(failure(folder_ / "none" / "a.xlsx"),
              AllOf(HasSubstr("none/a.xlsx"), HasSubstr("No such file")));
  EXPECT_THAT(failure(folder_), HasSubstr("Is a directory"));
  EXPECT_THAT(failure("/dev/full"), AllOf(HasSubstr("/dev/full"), HasSubstr("cannot write")));
}

/// No file of the process may become longer: what a full disk looks like from inside.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    handler_ = std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int) = nullptr;
};

TEST_F(Workbook, IsWholeOrAnErrorWhereverTheDiskIsFull) {
  const Report report = everything();
  writeWorkbook(folder_ / "whole", report, kWords);
  const std::string whole = content(folder_ / "whole");
  int failures = 0, limit = 0;
  for (bool complete = false; !complete; limit += 1'777) {
    std::string failure;
    try {
      const FullDisk disk(static_cast<rlim_t>(limit));
      writeWorkbook(folder_ / "part", report, kWords);
      complete = true;
    } catch (const std::runtime_error& error) {
      failure = error.what();
    }
    if (complete) {
      EXPECT_TRUE(content(folder_ / "part") == whole) << limit;
    } else {
      EXPECT_THAT(failure, HasSubstr("cannot write")) << limit;
    }
    failures += complete ? 0 : 1;
  }
  EXPECT_GT(failures, 10);
}

}  // namespace
}  // namespace velmora::report::test
