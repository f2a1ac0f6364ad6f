#include "ado/documents.h"
#include "ado/expect_error.h"

namespace velmora::ado {
namespace {

using namespace com::error;

/// One column of every kind; row 5 holds Nulls only.
RecordsetRef everyKind() {
  auto rs = com::make<Recordset>();
  rs->Fields().Append("FID", adInteger);
  rs->Fields().Append("FName", adVarWChar, 40);
  rs->Fields().Append("FAmount", adNumeric, 0, 20, 4);
  rs->Fields().Append("FDate", adDate);
  rs->Fields().Append("FRate", adDouble);
  rs->Fields().Append("FDone", adBoolean);
  rs->Fields().Append("往来 单位", adVarWChar);
  rs->Fields().Append("FAny", adVariant);
  rs->Open();
  const auto add = [&rs](const std::vector<Variant>& cells) {
    rs->AddNew();
    for (std::size_t i = 0; i < cells.size(); ++i) rs->SetValue(i, cells[i]);
  };
  const Date first = Date::ymd(2009, 3, 1);
  add({1, "Acme", "100.1", first, 0.1, true, "客户甲", 5});
  add({2, "acme north", "-0.5", Date::fromParts({2009, 3, 1, 8}), 6.8275, false, "客户乙", "5"});
  add({3, "O'Hara", "99999999999999.9999", Date::ymd(2010, 1, 1), -1.0, true, "供应商", 5.0});
  add({4, "100%", "0", Date::ymd(1999, 12, 31), 0.0, false, "", first});
  rs->AddNew();
  return rs;
}

TEST(Filter, ShowsTheRowsThatSatisfyIt) {
  struct Case {
    const char* criteria;
    std::vector<int> ids;
  };
  auto rs = everyKind();
  rs->SetValue(0, 5);
  for (const Case& c : {
           Case{"", {1, 2, 3, 4, 5}},
           Case{"  ", {1, 2, 3, 4, 5}},
           Case{"FID = 3", {3}},
           Case{"fid=3.0", {3}},
           Case{"FID = '3'", {3}},
           Case{"FID > 2.5", {3, 4, 5}},
           Case{"FID <> 3", {1, 2, 4, 5}},
           Case{"FID <= 2", {1, 2}},
           Case{"FID < -1", {}},
           Case{"FID >= 99999999999999999999", {}},
           Case{"FID < 99999999999999999999", {1, 2, 3, 4, 5}},
           Case{"FAmount = 100.10", {1}},
           Case{"FAmount > 1e2", {1, 3}},
           Case{"FAmount = 99999999999999.9999", {3}},
           Case{"FAmount < +0.0", {2}},
           Case{"FAmount <> 0", {1, 2, 3}},  // Null is not different from anything
           Case{"FAmount = null", {5}},
           Case{"FAmount <> NULL", {1, 2, 3, 4}},
           Case{"FRate = 0.1", {1}},
           Case{"FRate < 0", {3}},
           Case{"FName = 'ACME'", {1}},
           Case{"FName = 'acme '", {}},
           Case{"FName > 'acme'", {2, 3}},
           Case{"FName = 'o''hara'", {3}},
           Case{"FName like 'ACME*'", {1, 2}},
           Case{"FName like '%north'", {2}},
           Case{"FName like '*a*'", {1, 2, 3}},
           Case{"FName like 'acme'", {1}},
           Case{"FName like '*'", {1, 2, 3, 4}},
           Case{"FName like 'x%'", {}},
           Case{"FDate = '2009-03-01'", {1}},
           Case{"FDate >= #2009-03-01#", {1, 2, 3}},
           Case{"FDate = '2009-03-01 08:00'", {2}},
           Case{"FDone = true", {1, 3}},
           Case{"FDone = 0", {2, 4}},
           Case{"FDone <> 'True'", {2, 4}},
           Case{"[往来 单位] like '客户%'", {1, 2}},
           Case{"[往来 单位] = ''", {4}},
           Case{"FAny = 5", {1, 3}},
           Case{"FAny = '5'", {2}},
           Case{"FAny = #2009-03-01#", {4}},
           Case{"FID = 1 or FID = 2 and FName = 'none'", {1}},
           Case{"(FID = 1 or FID = 2) AND FName like 'acme*'", {1, 2}},
           Case{"FID = 4 OR (FAmount < 0 and (FID = 2 or FID = 3))", {2, 4}},
           Case{"((FID=1))", {1}},
           Case{"FID > 1 and FID > 2 and FID > 3", {4, 5}},
       }) {
    rs->Filter(c.criteria);
    EXPECT_EQ(rs->RecordCount(), static_cast<std::int64_t>(c.ids.size())) << c.criteria;
    EXPECT_EQ(idsOf(*rs), c.ids) << c.criteria;
    EXPECT_EQ(rs->Filter(), c.criteria);
  }
}

TEST(Filter, TellsWhatItExpectedAndWhere) {
  struct Case {
    const char* criteria;
    const char* message;
  };
  auto rs = everyKind();
  rs->Filter("FID = 3");
  for (const Case& c : {
           Case{"FID = ",
                "expected a value for the column 'FID' (adInteger) at character 7, "
                "found the end"},
           Case{"FID =  and FRemark = 0", "expected a value"},
           Case{"FID", "expected an operator (= <> < > <= >= like) at character 4"},
           Case{"FID 3", "at character 5, found '3'"},
           Case{"FID == 3", "expected a value"},
           Case{"FID = 3 FName = 'x'", "expected \"and\", \"or\" or the end at character 9"},
           Case{"FID = 3 and", "expected a column at character 12"},
           Case{"(FID = 3", "\")\" at character 9"},
           Case{"FID = 3)", "found ')'"},
           Case{"FID = 'x'", "expected a number for the column 'FID' (adInteger) at character 7"},
           Case{"FID = 3x", "expected a number"},
           Case{"FAmount = 1.2.3", "expected a number"},
           Case{"FID = true", "expected a number"},
           Case{"FName = 3", "expected a text in quotes"},
           Case{"FName = 'open", "expected a closing quote at character 14"},
           Case{"[FName = 'x'", "expected a closing ]"},
           Case{"FDate = 'March'", "expected a date as 'YYYY-MM-DD' or #YYYY-MM-DD#"},
           Case{"FDate = 20090301", "expected a date"},
           Case{"FDone = 'maybe'", "expected true, false or a number"},
           Case{"FID like '3*'", "'FID' is no text"},
           Case{"FName like 3", "expected a pattern in quotes"},
           Case{"FName like 'a*b'", "at the ends of the pattern only"},
           Case{"FName > null", "null goes with = and <> only"},
           Case{"FID ! 3", "found '!'"},
           Case{"[往来 单位] = 1", "at character 11"},
       })
    expectError(kAdoInvalidArgument, c.message, [&] { rs->Filter(c.criteria); });
  expectError(kAdoItemNotFound, "no column 'FNone'", [&] { rs->Filter("FNone = 1"); });
  expectError(kAdoItemNotFound, "no column 'or'", [&] { rs->Filter("or FID = 3"); });
  const std::string deep = std::string(200, '(') + "FID = 3" + std::string(200, ')');
  expectError(kAdoInvalidArgument, "at most 100 groups", [&] { rs->Filter(deep); });

  EXPECT_EQ(rs->Filter(), "FID = 3");  // a refused filter leaves the one before
  EXPECT_EQ(rs->RecordCount(), 1);
}

}  // namespace
}  // namespace velmora::ado
