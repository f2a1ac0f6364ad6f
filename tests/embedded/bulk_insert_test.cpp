#include <chrono>
#include <gmock/gmock.h>

#include "database.h"

namespace velmora::ado::embedded::test {

namespace {

using collections::Date;
using collections::Decimal;
using testing::AllOf;
using testing::HasSubstr;

class BulkLoad : public DatabaseFile {
 protected:
  BulkLoad() {
    create(
        "create table t(FID int identity(10,10) primary key, a decimal(10,2) not null default(7), "
        "n varchar(5), d datetime, b bit default(1))");
    connection_ = open("ReadWrite");
  }
  std::unique_ptr<BulkInsert> bulk(const std::vector<std::string>& columns,
                                   const char* table = "T") const {
    return connection_->bulkInsert(table, columns);
  }
  Texts rows() const { return query(*connection_, "select FID, a, n, d, b from t order by FID"); }

  ConnectionPtr connection_;
};

TEST_F(BulkLoad, FillsNamedColumnsDefaultsAndNumbers) {
  run(*connection_, "insert into t(n) values('first')");
  auto load = bulk({"D", "n", "a"});
  load->append(Date::ymd(2009, 3, 1));
  load->append(std::string_view("应收账款5"));
  load->append(Decimal::parse("1.005"));
  load->endRow();
  load->appendNull();
  load->append(Variant(std::int32_t{12}));
  load->append(std::int64_t{3});
  load->endRow();
  load->finish();
  EXPECT_EQ(rows(), (Texts{{"10", "7", "first", "NULL", "True"},
                           {"20", "1.01", "应收账款5", "2009-03-01", "True"},
                           {"30", "3", "12", "NULL", "True"}}));
  run(*connection_, "insert into t(n) values('next')");
  EXPECT_EQ(rows().back()[0], "40");
}

TEST_F(BulkLoad, GivesEachRowItsDefaults) {
  run(*connection_,
      "create table g(a int, k uniqueidentifier default newid(), n int default 7 / 2)");
  auto load = bulk({"a"}, "g");
  for (int i = 0; i < 5'000; ++i) {
    load->append(std::int64_t{i});
    load->endRow();
  }
  load->finish();
  EXPECT_EQ(query(*connection_, "select count(distinct k), sum(n), max(a) from g"),
            (Texts{{"5000", "15000", "4999"}}));
}

TEST_F(BulkLoad, LeavesNothingWithoutFinish) {
  auto load = bulk({"n"});
  for (int i = 0; i < 10'000; ++i) {
    load->append(std::string_view("x"));
    load->endRow();
  }
  load.reset();
  EXPECT_EQ(rows(), Texts{});
  auto other = bulk({"a"});
  other->append(std::int64_t{1});
  other->endRow();
  other->finish();
  EXPECT_EQ(rows().size(), 1U);
}

TEST_F(BulkLoad, LoadsTemporaryTablesOfAReader) {
  connection_.reset();
  const auto reader = open("Read");
  run(*reader, "create table #t(a money, b bit)");
  const std::vector<std::string> columns{"a", "b"};
  auto load = reader->bulkInsert("#T", columns);
  load->append(Decimal::parse("0.00005"));
  load->append(std::int64_t{0});
  load->endRow();
  load->finish();
  EXPECT_EQ(query(*reader, "select a, b from #t"), (Texts{{"0.0001", "False"}}));
  EXPECT_THAT(failure([&] { reader->bulkInsert("t", std::vector<std::string>{"n"}); }),
              HasSubstr("3906"));
}

TEST_F(BulkLoad, RefusesWhatDoesNotFitNamingTheColumn) {
  const auto refusal = [&](const char* column, const Variant& value) {
    return failure([&] { bulk({column})->append(value); });
  };
  EXPECT_THAT(refusal("n", "abcdef"), AllOf(HasSubstr("t.n"), HasSubstr("abcdef")));
  EXPECT_THAT(refusal("n", "ab\xFF"), HasSubstr("UTF-8"));
  EXPECT_THAT(refusal("n", "\xED\xA0\x80"), HasSubstr("UTF-8"));
  EXPECT_THAT(refusal("a", Decimal::parse("123456789.00")), HasSubstr("t.a"));
  EXPECT_THAT(refusal("a", "12x"), HasSubstr("'12x'"));
  EXPECT_THAT(refusal("a", collections::Null{}), HasSubstr("Null"));
  EXPECT_THAT(refusal("d", "2009-02-30"), HasSubstr("2009-02-30"));
  EXPECT_THAT(refusal("FID", std::int64_t{1} << 40), HasSubstr("t.FID"));
  EXPECT_EQ(rows(), Texts{});
}

TEST_F(BulkLoad, RefusesMisuse) {
  EXPECT_THAT(failure([&] { bulk({"zzz"}); }), HasSubstr("207"));
  EXPECT_THAT(failure([&] { bulk({"n", "N"}); }), HasSubstr("264"));
  EXPECT_THAT(failure([&] { bulk({}); }), HasSubstr("names no column"));
  EXPECT_THAT(failure([&] { bulk({"n"}, "nowhere"); }), HasSubstr("208"));

  auto load = bulk({"n", "a"});
  load->append(std::string_view("x"));
  EXPECT_THAT(failure([&] { load->endRow(); }), HasSubstr("1 of its 2 values"));
  EXPECT_THAT(failure([&] { load->finish(); }), HasSubstr("not ended"));
  load->append(std::int64_t{1});
  EXPECT_THAT(failure([&] { load->appendNull(); }), HasSubstr("more than its 2"));
  EXPECT_THAT(failure(*connection_, "select 1 a"), HasSubstr("not finished"));
  EXPECT_THAT(failure([&] { bulk({"n"}); }), HasSubstr("transaction of its own"));
  load->endRow();
  load->finish();
  EXPECT_THAT(failure([&] { load->finish(); }), HasSubstr("is finished"));
  EXPECT_EQ(rows().size(), 1U);
}

TEST_F(BulkLoad, AKeyViolationLeavesNothing) {
  auto load = bulk({"FID"});
  for (const std::int64_t id : {1, 2, 1}) {
    load->append(id);
    load->endRow();
  }
  EXPECT_THAT(failure([&] { load->finish(); }), HasSubstr("2627"));
  load.reset();
  EXPECT_EQ(rows(), Texts{});
}

TEST_F(BulkLoad, GivenNumbersAreKeptAndNumberingGoesOnBehindThem) {
  run(*connection_, "insert into t(n) values('first')");
  auto load = bulk({"FID"});
  load->append(std::int64_t{70});
  load->endRow();
  load->finish();
  run(*connection_, "insert into t(n) values('next')");
  EXPECT_EQ(query(*connection_, "select FID from t order by FID"), (Texts{{"10"}, {"70"}, {"80"}}));
}

TEST_F(BulkLoad, OutlivesItsConnection) {
  auto load = bulk({"n"});
  connection_.reset();
  load->append(std::string_view("x"));
  load->endRow();
  load->finish();
  load.reset();
  connection_ = open("Read");
  EXPECT_EQ(rows().size(), 1U);
}

}  // namespace

}  // namespace velmora::ado::embedded::test
