#include <gmock/gmock.h>

#include "database.h"

namespace velmora::ado::embedded::test {

namespace {

using collections::VarType;

struct Expected {
  const char* name;
  const char* declaration;
  const char* literal;
  DataTypeEnum type;
  std::int64_t size;
  VarType cell;
  const char* text;
};

constexpr std::int64_t kAnySize = -2;  // of types whose size is fixed

const Expected kColumns[] = {
    {"b", "bit", "1", adBoolean, kAnySize, VarType::boolean, "True"},
    {"ti", "tinyint", "255", adUnsignedTinyInt, kAnySize, VarType::int16, "255"},
    {"si", "smallint", "-32768", adSmallInt, kAnySize, VarType::int16, "-32768"},
    {"i", "int", "-2147483647", adInteger, kAnySize, VarType::int32, "-2147483647"},
    {"bi", "bigint", "9007199254740993", adBigInt, kAnySize, VarType::int64, "9007199254740993"},
    {"d4", "decimal(4,2)", "12.34", adNumeric, kAnySize, VarType::decimal, "12.34"},
    {"d9", "decimal(9,4)", "-12345.6789", adNumeric, kAnySize, VarType::decimal, "-12345.6789"},
    {"d18", "numeric(18,0)", "123456789012345678", adNumeric, kAnySize, VarType::decimal,
     "123456789012345678"},
    {"d38", "decimal(38,10)", "1234567890123456789012345678.0123456789", adNumeric, kAnySize,
     VarType::decimal, "1234567890123456789012345678.0123456789"},
    {"m", "money", "-12.3456", adCurrency, kAnySize, VarType::decimal, "-12.3456"},
    {"f", "float", "0.5", adDouble, kAnySize, VarType::real, "0.5"},
    {"r", "real", "0.25", adSingle, kAnySize, VarType::real, "0.25"},
    {"dt", "datetime", "'2009-03-01 10:20:30'", adDBTimeStamp, kAnySize, VarType::date,
     "2009-03-01 10:20:30"},
    {"dd", "date", "'1899-12-31'", adDBDate, kAnySize, VarType::date, "1899-12-31"},
    {"vc", "varchar(20)", "'voucher'", adVarChar, 20, VarType::string, "voucher"},
    {"nv", "nvarchar(80)", "N'应收账款 with a long name'", adVarWChar, 80, VarType::string,
     "应收账款 with a long name"},
    {"vm", "nvarchar(max)", "N'备注'", adVarWChar, -1, VarType::string, "备注"},
};

std::string list(const char* prefix, const char* Expected::*member, bool withName) {
  std::string text;
  for (const auto& column : kColumns) {
    if (!text.empty()) text += ", ";
    if (withName) text += std::string(prefix) + column.name + " ";
    text += column.*member;
  }
  return text;
}

void expectColumns(const Rowset& rows, int filledRow, int emptyRow) {
  ASSERT_EQ(rows.fields.size(), std::size(kColumns));
  ASSERT_EQ(rows.rowCount(), 2U);
  for (std::size_t i = 0; i < rows.fields.size(); ++i) {
    const auto& expected = kColumns[i];
    const auto& field = rows.fields[i];
    EXPECT_EQ(field.name, expected.name);
    EXPECT_EQ(field.type, expected.type) << field.name;
    if (expected.size != kAnySize) {
      EXPECT_EQ(field.definedSize, expected.size) << field.name;
    }
    const auto& filled = rows.cells[static_cast<std::size_t>(filledRow) * std::size(kColumns) + i];
    EXPECT_EQ(filled.type(), expected.cell) << field.name;
    EXPECT_EQ(filled.toText(), expected.text) << field.name;
    EXPECT_TRUE(rows.cells[static_cast<std::size_t>(emptyRow) * std::size(kColumns) + i].isNull());
  }
}

class Types : public DatabaseFile {};

TEST_F(Types, SurviveClosingTheFile) {
  std::string nulls;
  for (std::size_t i = 0; i < std::size(kColumns); ++i) nulls += i == 0 ? "null" : ", null";
  create("create table t(" + list("", &Expected::declaration, true) + "); insert into t values(" +
         list("", &Expected::literal, false) + "); insert into t values(" + nulls + ")");
  const auto reader = open("Read");
  expectColumns(run(*reader, "select * from t order by i desc").at(0).rows, 0, 1);
  expectColumns(run(*reader, "select * into #t from t; select * from #t order by i")[1].rows, 1, 0);
}

TEST_F(Types, PrecisionAndScaleAreTheDeclaredOnes) {
  create("create table t(a decimal(28,4) not null, n nvarchar(10))");
  const auto fields = run(*open("Read"), "select a, n from t").at(0).rows.fields;
  EXPECT_EQ(fields[0].precision, 28);
  EXPECT_EQ(fields[0].numericScale, 4);
  EXPECT_FALSE(fields[0].nullable);
  EXPECT_TRUE(fields[1].nullable);
}

TEST_F(Types, DeclarationsWorkAfterReopening) {
  create(
      "create table t(FID int identity(100,5) primary key, n varchar(5) default('none'), "
      "a decimal(28,4) not null default(0), b bit default(1));"
      "insert into t(a) values(1.5)");
  const auto writer = open("ReadWrite");
  run(*writer, "insert into t(n) values('x')");
  EXPECT_EQ(query(*writer, "select FID, n, a, b from t order by FID"),
            (Texts{{"100", "none", "1.5", "True"}, {"105", "x", "0", "True"}}));
  EXPECT_THAT(failure(*writer, "insert into t(n) values('toolong')"), testing::HasSubstr("8152"));
}

// What is unique decides how an update finds its values.
TEST_F(Types, UniqueIndexesAreKnownAsLongAsTheyExist) {
  create(
      "create table t(FID int, n varchar(5), [a name] int, unique ([a name], n));"
      "create unique index i on t(n); create unique index j on t(FID); drop index i on t");
  const auto writer = open("ReadWrite");
  run(*writer,
      "create table #w(k varchar(5), m int, a int default(0)); insert into #w(m) values(1)");
  const auto meetsOneRow = [&](const std::string& condition) {
    run(*writer, "update w set a = t.FID from #w w left join t on " + condition);
    return writer->lastNativeSql().find("DISTINCT") == std::string::npos;
  };
  EXPECT_TRUE(meetsOneRow("t.FID = w.m"));
  EXPECT_TRUE(meetsOneRow("t.n = w.k and t.[a name] = 2"));
  EXPECT_FALSE(meetsOneRow("t.n = w.k"));
  run(*writer, "create unique index i on t(n)");
  EXPECT_TRUE(meetsOneRow("t.n = w.k"));
  run(*writer, "begin transaction; drop index j on t; create unique index #k on #w(m); rollback");
  EXPECT_TRUE(meetsOneRow("t.FID = w.m"));
}

TEST_F(Types, ManyRowsKeepTheirOrderAndNulls) {
  const auto connection = inMemory();
  run(*connection, "create table #t(a int, n varchar(30))");
  const std::vector<std::string> columns{"a", "n"};
  auto bulk = connection->bulkInsert("#t", columns);
  constexpr int kRows = 5000;  // more than two of the engine's chunks
  for (int i = 0; i < kRows; ++i) {
    bulk->append(std::int64_t{i});
    if (i % 3 == 0)
      bulk->appendNull();
    else
      bulk->append(std::string_view("longer than twelve bytes"));
    bulk->endRow();
  }
  bulk->finish();
  const auto rows = run(*connection, "select a, n from #t").at(0).rows;
  ASSERT_EQ(rows.rowCount(), static_cast<std::size_t>(kRows));
  for (int i = 0; i < kRows; ++i) {
    const auto cell = static_cast<std::size_t>(i) * 2;
    ASSERT_EQ(rows.cells[cell].toInt32(), i);
    ASSERT_EQ(rows.cells[cell + 1].isNull(), i % 3 == 0);
  }
}

TEST_F(Types, TenMillionAmountsOfTwentyDigitsSumExactly) {
  const auto connection = connect("Data Source=:memory:");
  std::string batch =
      "create table #t (a decimal(28,4)) insert into #t values (1234567890123456.7891), "
      "(9999999999999999.9999), (-0.0001), (0.0003)";
  for (int i = 0; i < 6; ++i) batch += ", (1111111111111111.1111)";
  for (int i = 0; i < 20; ++i) batch += " insert into #t select a from #t";
  run(*connection, batch);
  EXPECT_EQ(query(*connection, "select count(*), sum(a), sum(-a) + sum(a) from #t"),
            (Texts{{"10485760", "18770804926620760492788.9408", "0"}}));
}

}  // namespace

}  // namespace velmora::ado::embedded::test
