#include <filesystem>
#include <gmock/gmock.h>

#include "cli/copy/account_set_copy.h"
#include "cli/demo/scripts.h"
#include "cli/failure.h"
#include "running_program.h"
#include "sqlite_database.h"

namespace velmora::cli {
namespace {

using testing::AllOf;
using testing::HasSubstr;

ado::ConnectionRef opened(const std::string& connectString) {
  auto connection = com::make<ado::Connection>();
  connection->Open(connectString);
  return connection;
}

ado::ConnectionRef emptyDatabase() {
  return opened("Provider=Velmora.Embedded;Data Source=:memory:;Mode=ReadWrite");
}

class Copy : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = new TestFolder;
    runVelmora({"demo", "create", demo()});
  }
  static void TearDownTestSuite() { delete folder_; }

  static std::string demo() { return folder_->file("demo.db"); }
  static std::string embedded(const std::string& file) {
    return "Provider=Velmora.Embedded;Data Source=" + file;
  }

  static inline TestFolder* folder_ = nullptr;
};

TEST_F(Copy, IsTheSameBooks) {
  const auto file = folder_->file("copy.db");
  const auto copied = runVelmora({"copy", "--from", embedded(demo()), "--to", file});
  EXPECT_EQ(copied.status, kOk) << copied.err;
  EXPECT_THAT(copied.out, AllOf(HasSubstr("t_rp_Contact"), HasSubstr("Sums compared")));
  EXPECT_THAT(copied.err, AllOf(HasSubstr("t_Voucher: "), HasSubstr("Every table has the rows")));
  for (const char* side : {"ar", "ap"}) {
    const auto check = [&](const std::string& db) {
      return runVelmora({"close-check", "--db", db, "--side", side, "--format", "csv"}).out;
    };
    EXPECT_EQ(check(file), check(demo()));
  }

  const auto again = runVelmora({"copy", "--from", embedded(demo()), "--to", file});
  EXPECT_EQ(again.status, kFailed);
  EXPECT_THAT(again.err, HasSubstr("copy.db exists already; --force"));
  EXPECT_EQ(
      runVelmora({"copy", "--to", file, "--force"}, "", {"VELMORA_DSN=" + embedded(demo())}).status,
      kOk);
}

/// The demonstration books with what is awkward to carry: a user's own item class and
/// values that need care in a script.
class AwkwardCopy : public Copy {
 protected:
  AwkwardCopy() {
    std::filesystem::copy_file(demo(), books(), std::filesystem::copy_options::overwrite_existing);
    const auto set = opened(embedded(books()) + ";Mode=ReadWrite");
    set->Execute(
        "create table T_ITEM_3050 (FItemID int not null, FName nvarchar(255), FNumber varchar(80), "
        "FPreArAcctID int, FColour int)");
    set->Execute("insert into t_Item_3050 values (7, N'O''Brien', null, 9999, 1)");
    set->Execute(
        "insert into t_ItemClass (FItemClassID, FNumber, FName, FName_CHT, FName_EN, "
        "FSqlTableName) values (3050, '3050', N'项目\nGO\n--', '', '', 't_item_3050'), "
        "(3051, '3051', N'无', '', '', 't_Nowhere')");
    set->Execute(
        "update t_PeriodDate set FEndDate = '2009-03-31 23:59:59.997' "
        "where FYear = 2009 and FPeriod = 3");
    set->Execute("update t_Currency set FExchangeRate = 0.0000000001 where FCurrencyID = 3");
  }
  static std::string books() {
    return folder_->file(testing::UnitTest::GetInstance()->current_test_info()->name());
  }

  static Finished on(const std::string& db, std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--db", db});
    return runVelmora(arguments);
  }
  static void expectSameBooks(const std::string& db) {
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"close-check", "--side", "ar", "--format", "csv"},
          {"close-check", "--side", "ap", "--format", "csv"},
          {"reconcile", "period", "--side", "ap", "--format", "csv"},
          {"sql", "select FItemID, FName, FNumber, FPreArAcctID from t_Item_3050"}})
      EXPECT_EQ(on(db, command).out, on(books(), command).out) << command[0];
    EXPECT_THAT(on(db, {"sql", "select FColour from t_Item_3050"}).err, HasSubstr("FColour"))
        << "the checks do not read it";
  }
};

TEST_F(AwkwardCopy, BringsTheUsersItemClassesAlong) {
  const auto file = folder_->file("classes.db");
  const auto copied = runVelmora({"copy", "--from", embedded(books()), "--to", file, "--force"});
  ASSERT_EQ(copied.status, kOk) << copied.err;
  EXPECT_THAT(copied.out, HasSubstr("T_ITEM_3050"));
  expectSameBooks(file);
}

TEST_F(AwkwardCopy, GoesThroughAScript) {
  const auto script = folder_->file("books.sql"), file = folder_->file("loaded.db");
  const auto written = on(books(), {"script", "--out", script, "--force"});
  ASSERT_EQ(written.status, kOk) << written.err;
  EXPECT_THAT(written.err, HasSubstr(" rows\n"));
  const auto loaded =
      runVelmora({"sql", "--dsn", embedded(file) + ";Mode=Create", "--write", "--file", script});
  ASSERT_EQ(loaded.status, kOk) << loaded.err;
  expectSameBooks(file);
  const auto again = on(file, {"script"});
  EXPECT_TRUE(again.out == on(books(), {"script"}).out) << "the same books, the same script";
  EXPECT_THAT(again.out, AllOf(HasSubstr("N'O''Brien', 9999)"), HasSubstr("'20090301'"),
                               HasSubstr("'2009-03-31T23:59:59.997'"), HasSubstr("0.0000000001")));
  EXPECT_THAT(on(books(), {"script", "--out", script}).err, HasSubstr("exists already; --force"));
  const auto nowhere = on(books(), {"script", "--out", folder_->file("no/such/books.sql")});
  EXPECT_EQ(nowhere.status, kFailed);
  EXPECT_THAT(nowhere.err, HasSubstr("cannot write "));
}

TEST_F(Copy, LeavesNothingBehindWhenItFails) {
  const auto file = folder_->file("failed.db");
  const auto unreachable =
      runVelmora({"copy", "--from",
                  "Provider=SQLOLEDB;Data Source=127.0.0.1,1;User ID=sa;Password=topsecret;Connect "
                  "Timeout=2",
                  "--to", file});
  EXPECT_EQ(unreachable.status, kFailed);
  EXPECT_THAT(unreachable.err, HasSubstr("Unable to connect"));
  EXPECT_THAT(unreachable.err, testing::Not(HasSubstr("topsecret")));
  const auto other = folder_->file("other.db");
  runVelmora(
      {"sql", "--dsn", embedded(other) + ";Mode=Create", "--write", "create table t (F int)"});
  EXPECT_THAT(runVelmora({"copy", "--from", embedded(other), "--to", file}).err,
              HasSubstr("the source has no table "));
  for (const char* ending : {"", ".unfinished", ".unfinished.wal"})
    EXPECT_FALSE(std::filesystem::exists(file + ending));
}

TEST_F(Copy, ReadsLargeTablesInPieces) {
  const auto source = opened(embedded(demo()) + ";Mode=Read"), target = emptyDatabase();
  std::int64_t contacts = 0, pieces = 0;
  CopyOptions options;
  options.pieceRows = 7;
  options.progress = [&](const std::string& table, std::int64_t done, std::int64_t total) {
    if (table != "t_rp_Contact") return;
    ++pieces;
    EXPECT_GE(done, contacts);
    EXPECT_LE(done, total);
    contacts = done;
  };
  const auto copied = copyAccountSet(*source, *target, options);
  EXPECT_GT(pieces, 10);
  EXPECT_EQ(source->Execute("select count(*) from t_rp_Contact")->GetValue(0).toInt64(), contacts);
  const auto balance = std::ranges::find(copied, std::string("t_Balance"), &CopiedTable::name);
  ASSERT_NE(balance, copied.end());
  EXPECT_EQ(balance->sums, 8U);
}

/// Through ODBC. SQLite takes the schema as it is, but for "GO" and its own catalogue.
class CopyThroughOdbc : public testing::Test {
 protected:
  CopyThroughOdbc() {
    source_->Execute("create table sysobjects (name varchar(128), xtype varchar(2))");
    const auto model = emptyDatabase();
    demo::runScripts(*model, demo::schemaScripts());
    const auto tables = model->Execute("select name from sysobjects where xtype = 'U'");
    for (; !tables->EOF_(); tables->MoveNext()) lay(*model, tables->GetValue(0).toText());
    source_->Execute(
        "insert into t_Currency (FCurrencyID, FNumber, FName, FName_CHT, FName_EN, FOperator, "
        "FExchangeRate) values (1, 'RMB', '人民币', '', '', '*', 1)");
    source_->Execute(
        "insert into t_PeriodDate values (2009, 3, '2009-03-01 00:00:00', '2009-03-31 00:00:00')");
  }

  void lay(ado::Connection& model, const std::string& table) {
    std::string columns;
    const auto rows = model.Execute("select * from " + table + " where 1 = 0");
    for (std::size_t i = 0; i < rows->fieldCount(); ++i) {
      const auto& field = rows->definition(i);
      columns.append(i == 0 ? "" : ", ").append(field.name).append(typeOf(field.type));
    }
    source_->Execute("create table " + table + " (" + columns + ")");
    source_->Execute("insert into sysobjects values ('" + table + "', 'U')");
  }

  static const char* typeOf(ado::DataTypeEnum type) {
    switch (type) {
      case ado::adInteger:
      case ado::adSmallInt:
        return " int";
      case ado::adBoolean:
        return " bit";
      case ado::adNumeric:
        return " decimal(28,4)";
      case ado::adDBTimeStamp:
        return " datetime";
      default:
        return " nvarchar(255)";
    }
  }

  SqliteDatabase database_;
  ado::ConnectionRef source_ = opened(database_.dsn());
  ado::ConnectionRef target_ = emptyDatabase();
};

TEST_F(CopyThroughOdbc, CarriesTypesOver) {
  source_->Execute("update t_Currency set FScale = 2, FFixRate = 1, FDeleted = 0");
  copyAccountSet(*source_, *target_, {});
  const auto row = target_->Execute(
      "select c.FName, c.FExchangeRate, p.FEndDate from t_Currency c, t_PeriodDate p");
  EXPECT_EQ(row->GetValue(0), collections::Variant("人民币"));
  EXPECT_EQ(row->GetValue(1), collections::Variant(collections::Decimal(1)));
  EXPECT_EQ(row->GetValue(2), collections::Variant(collections::Date::ymd(2009, 3, 31)));
}

TEST_F(CopyThroughOdbc, NamesWhatDiffers) {
  const auto expectFailure = [this](const std::string& reason) {
    EXPECT_THAT([this] { copyAccountSet(*source_, *emptyDatabase(), {}); },
                testing::ThrowsMessage<Failure>(HasSubstr(reason)));
  };
  source_->Execute("update t_Currency set FScale = 2, FFixRate = 1, FDeleted = 0");
  source_->Execute("update t_Currency set FExchangeRate = 1.123456789012");  // two digits too many
  expectFailure(
      "t_Currency, sum of FExchangeRate: 1.123456789012 in the source, 1.123456789 in the copy");
  source_->Execute("alter table t_Currency rename column FNumber to FCode");
  expectFailure("the source's table t_Currency has no column FNumber");
  source_->Execute("delete from sysobjects where name = 't_Voucher'");
  expectFailure("the source has no table t_Voucher");
}

}  // namespace
}  // namespace velmora::cli
