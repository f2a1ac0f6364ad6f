#include "cli/call/json_values.h"

#include <gmock/gmock.h>

#include "velmora/ado/recordset.h"
#include "velmora/collections/dictionary.h"

namespace velmora::cli {
namespace {

using collections::Dictionary;
using collections::Variant;
using collections::VarType;
using testing::HasSubstr;

std::string thereAndBack(const std::string& text) {
  return jsonText(jsonFromValue(valueFromJson(parseJson(text))));
}

std::string refusal(const std::string& text) {
  try {
    valueFromJson(parseJson(text));
  } catch (const JsonError& error) {
    return error.what();
  }
  return "accepted";
}

TEST(JsonValues, ComeBackAsTheyWere) {
  for (const char* text :
       {"null", "true", "\"应收\"", "7", "-2147483649", "9223372036854775807", "0.5", "5.0",
        R"({"$decimal":"12.50"})", R"({"$decimal":"-99999999999999999999999999999999.999999"})",
        R"({"$date":"2009-03-01"})", R"({"$date":"2009-03-01T10:20:30"})",
        R"({"b":1,"A":[1,{"x":null}],"a1":{}})", "[]",
        R"({"$recordset":{"fields":[{"name":"FBillID","type":"adInteger"},)"
        R"({"name":"FBillNo","type":"adVarWChar","size":80},)"
        R"({"name":"FAmount","type":"adNumeric","precision":20,"scale":2},)"
        R"({"name":"FRate","type":"adDouble"},{"name":"FDate","type":"adDBTimeStamp"},)"
        R"({"name":"FOpen","type":"adBoolean"},{"name":"FNote","type":"adVarWChar"},)"
        R"({"name":"FLocal","type":"adCurrency"}],)"
        R"("rows":[[7,"AR0001","12.50",1.0,"2009-03-01T08:00:00",true,"","1.5000"],)"
        R"([null,null,null,null,null,null,null,null]]}})",
        R"({"$recordset":{"fields":[{"name":"FID","type":"adInteger"}],"rows":[]}})",
        R"({"$recordset":null})"})
    EXPECT_EQ(thereAndBack(text), text);
}

TEST(JsonValues, TakeTheTypesOfTheSuite) {
  const auto type = [](const char* text) { return valueFromJson(parseJson(text)).type(); };
  EXPECT_EQ(type("2147483647"), VarType::int32);
  EXPECT_EQ(type("2147483648"), VarType::int64);
  EXPECT_EQ(type("1e2"), VarType::real);
  EXPECT_EQ(type(R"({"$decimal":"1"})"), VarType::decimal);
}

TEST(JsonValues, RefuseWhatWouldChangeAnAmountOrDropAnOption) {
  struct Case {
    const char* text;
    const char* says;
  };
  for (const Case& c : {
           Case{"12345678901234567890123", "does not fit 64 bits"},
           Case{"18446744073709551615", "does not fit 64 bits"},
           Case{R"({"a":1,"a":2})", "\"a\" occurs twice"},
           Case{R"({"o":{"bArp":1,"BARP":2}})", "o: \"BARP\" occurs twice"},
           Case{R"({"x":[0,{"$decimal":12.5}]})", "x[1]: $decimal holds a number as text"},
           Case{R"({"$decimal":"12,5"})", "\"12,5\""},
           Case{R"({"$date":"2009-02-30"})", "\"2009-02-30\""},
           Case{R"({"$money":"1"})", "\"$money\" is unknown"},
           Case{R"({"$decimal":"1","b":2})", "stands alone"},
           Case{"{\"a\":", "not valid JSON at character"},
           Case{"1 2", "not valid JSON"},
           Case{"1e999", "not valid JSON"},
           Case{"\"\xFF\"", "not valid JSON"},
       })
    EXPECT_THAT(refusal(c.text), HasSubstr(c.says)) << c.text;
  EXPECT_THAT(refusal(std::string(100000, '[')), HasSubstr("nested deeper than"));
}

std::string recordset(const std::string& fields, const std::string& rows) {
  return R"({"rs":{"$recordset":{"fields":[)" + fields + R"(],"rows":[)" + rows + "]}}}";
}

TEST(JsonRecordset, RefusesACellThatDoesNotFitAndSaysWhere) {
  struct Case {
    const char *fields, *rows, *says;
  };
  const char* amount = R"({"name":"FAmount","type":"adNumeric","scale":2})";
  const char* id = R"({"name":"FID","type":"adSmallInt"})";
  for (const Case& c : {
           Case{amount, R"(["1.00"],["2.005"])", "rows[1].FAmount: expected at most 2 decimals"},
           Case{amount, "[1.5]", "rows[0].FAmount: expected an amount as text"},
           Case{id, "[70000]", "rows[0].FID: "},
           Case{id, "[\"1\"]", "rows[0].FID: expected a whole number"},
           Case{id, "[1,2]", "rows[0]: expected an array of 1 cells"},
           Case{R"({"name":"F","type":"adVarWChar","size":2})", "[\"应收单\"]", "rows[0].F: "},
           Case{R"({"name":"F","type":"adDBDate"})", "[\"1 May\"]", "rows[0].F: expected a date"},
           Case{R"({"name":"F","type":"adMoney"})", "", "fields[0].type: expected a field type"},
           Case{R"({"name":"F","kind":"adInteger"})", "", "fields[0].kind: "},
           Case{R"({"name":"F","type":"adDate"},{"name":"f","type":"adDate"})", "", "fields[1]: "},
           Case{R"({"name":"F","type":"adNumeric","precision":5,"scale":6})", "", "fields[0]: "},
           Case{"", "", "fields: expected at least one field"},
       })
    EXPECT_THAT(refusal(recordset(c.fields, c.rows)), HasSubstr(std::string("rs.") + c.says))
        << c.rows;
}

TEST(JsonRecordset, WithoutAScaleKeepsTheLongestFraction) {
  EXPECT_THAT(
      thereAndBack(recordset(R"({"name":"F","type":"adNumeric"})", R"(["1.5"],["2.125"],[3])")),
      HasSubstr(R"([["1.500"],["2.125"],["3.000"]])"));
}

TEST(JsonRecordset, ShowsAllRowsAndLeavesTheFilter) {
  const auto value =
      valueFromJson(parseJson(recordset(R"({"name":"FID","type":"adInteger"})", "[1],[2],[3]")));
  const auto rows = value.toObject<Dictionary>()->Value("rs").toObject<ado::Recordset>();
  rows->Filter("FID > 1");
  rows->MoveNext();
  EXPECT_THAT(jsonText(jsonFromValue(Variant(rows))), HasSubstr("[[1],[2],[3]]"));
  EXPECT_EQ(rows->RecordCount(), 2);
  EXPECT_EQ(rows->GetValue(0), Variant(3));
}

TEST(JsonValues, MaskPasswordsThatAnOperationWroteIntoItsFilter) {
  const auto filter = com::make<Dictionary>();
  filter->Set("sDSN", "ConnectString={Data Source=x;Password=secret};LANGUAGE=EN");
  EXPECT_EQ(jsonText(jsonFromValue(Variant(filter))),
            R"({"sDSN":"ConnectString={Data Source=x;Password=***;LANGUAGE=EN"})");
}

TEST(JsonValues, RefuseAnObjectThatHoldsItself) {
  const auto filter = com::make<Dictionary>();
  filter->Set("self", filter);
  EXPECT_THROW(jsonFromValue(Variant(filter)), JsonError);
  filter->RemoveAll();
}

}  // namespace
}  // namespace velmora::cli
