#include "cli/output/result_writer.h"

#include <gtest/gtest.h>
#include <sstream>

#include "report/display_width.h"

namespace velmora::cli {
namespace {

using collections::Date;
using collections::Decimal;
using collections::Null;

ado::FieldDefinition field(const char* name, ado::DataTypeEnum type) {
  ado::FieldDefinition definition;
  definition.name = name;
  definition.type = type;
  return definition;
}

ado::RecordsetRef documents() {
  ado::Rowset rows;
  rows.fields = {field("FNumber", ado::adVarWChar), field("FName", ado::adVarWChar),
                 field("FAmount", ado::adNumeric), field("FDate", ado::adDBTimeStamp)};
  rows.cells = {"AR1",
                "客户,甲",
                Decimal::parse("1200.50"),
                Date::ymd(2009, 3, 1),
                "AR22",
                "say \"hi\"\n",
                Decimal::parse("-3.00"),
                Null(),
                "",
                Null(),
                Null(),
                Null()};
  return ado::Recordset::fromRowset(std::move(rows));
}

TEST(DisplayWidth, CountsTerminalColumns) {
  struct Case {
    const char* text;
    std::size_t width;
  };
  for (const Case& c : {Case{"", 0}, Case{"abc", 3}, Case{"应收单", 6}, Case{"［ＡＲ］", 8},
                        Case{"é", 1}, Case{"e\u0301", 1}, Case{"한글", 4}, Case{"ｱ", 1},
                        Case{"𠮷", 2}, Case{"—", 1}, Case{"\xE5\xBA", 2},
                        Case{"\xFF"
                             "a",
                             2},
                        Case{"a\xE5", 2}})
    EXPECT_EQ(report::displayWidth(c.text), c.width) << c.text;
}

TEST(SingleLine, KeepsTextFromSteeringTheTerminal) {
  EXPECT_EQ(report::singleLine("a\r\nb\tc"), "a  b c");
  EXPECT_EQ(report::singleLine("\033[31m应"), "?[31m应");
}

TEST(Table, LinesUpWideCharactersAndPutsNumbersRight) {
  std::ostringstream out;
  writeTable(out, *documents(), Style());
  EXPECT_EQ(out.str(),
            "FNumber  FName      FAmount  FDate\n"
            "-------  ---------  -------  ----------\n"
            "AR1      客户,甲    1200.50  2009-03-01\n"
            "AR22     say \"hi\"     -3.00  NULL\n"
            "         NULL          NULL  NULL\n");
}

TEST(Table, ShowsColumnsOfAnEmptyResult) {
  ado::Rowset rows;
  rows.fields = {field("FID", ado::adInteger)};
  std::ostringstream out;
  writeTable(out, *ado::Recordset::fromRowset(std::move(rows)), Style(true));
  EXPECT_EQ(out.str(), "\033[1mFID\033[0m\n---\n");
}

TEST(Csv, QuotesWhatNeedsItAndTellsNullFromEmptyText) {
  std::ostringstream out;
  writeCsv(out, *documents());
  EXPECT_EQ(out.str(),
            "FNumber,FName,FAmount,FDate\r\n"
            "AR1,\"客户,甲\",1200.50,2009-03-01\r\n"
            "AR22,\"say \"\"hi\"\"\n\",-3.00,\r\n"
            "\"\",,,\r\n");

  for (const char* name : {"\uFEFFFID", "{FID"}) {  // no mark of the file, no JSON
    ado::Rowset rows;
    rows.fields = {field(name, ado::adInteger)};
    out.str("");
    writeCsv(out, *ado::Recordset::fromRowset(std::move(rows)));
    EXPECT_EQ(out.str(), '"' + std::string(name) + "\"\r\n");
  }
}

}  // namespace
}  // namespace velmora::cli
