#include <gmock/gmock.h>
#include <thread>

#include "database.h"

namespace velmora::ado::embedded {
namespace {

using namespace test;
using testing::HasSubstr;

class Definitions : public DatabaseFile {
 protected:
  Definitions() : writer_(open("Create")) {
    run(*writer_,
        "create table t(id int identity primary key, k int, d datetime default getdate(),"
        " q decimal(20,6) not null default 10.0/3, n varchar(9) default 'it''s [' + 'x]',"
        " check (n like '[a-z]%' and len(n) + k > 1 and 1 < cast(left('5', 1) as int)));"
        "create unique index i on t(n, id);"
        "create table a(k int, b bit default 1, n varchar(9) default 'x' + 'y');"
        "alter table a add w varchar(12) not null default 'w', m money not null default 1.5,"
        " x char(5) default 'x'; alter table a drop column b;"
        "create view v as select id, q/3 third, getdate() seen from t");
    run(*writer_, "insert into t(k) values(1)");
  }
  /// What a new row holds and the view says, in whole and in seconds since the tables were made.
  static void expectAlive(ProviderConnection& connection) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    run(connection, "insert into t(k) values(2)");
    EXPECT_THAT(failure(connection, "insert into t(k) values(-9)"), HasSubstr("547"));
    run(connection, "delete a; insert into a(k) values(1)");
    EXPECT_EQ(query(connection, "select * from a"), (Texts{{"1", "xy", "w", "1.5", "x    "}}));
    EXPECT_EQ(query(connection, "select top 1 q, n from t order by id desc"),
              (Texts{{"3.333333", "it's [x]"}}));
    EXPECT_EQ(query(connection, "select count(*) from t a, t b where a.id < b.id and a.d >= b.d"),
              (Texts{{"0"}}));
    EXPECT_EQ(query(connection, "select top 1 third from v order by id"), (Texts{{"1.111111"}}));
    EXPECT_EQ(query(connection, "select count(*) from v join t on v.id = t.id and v.seen <= t.d"),
              (Texts{{"0"}}));
  }

  ConnectionPtr writer_;
};

TEST_F(Definitions, MeanTheSameForEveryConnectionAtItsTime) {
  expectAlive(*writer_);
  expectAlive(*open("ReadWrite"));
  writer_.reset();
  expectAlive(*open("ReadWrite"));
  const auto writer = open("ReadWrite");
  const auto load = writer->bulkInsert("t", std::vector<std::string>{"k"});
  load->append(std::int64_t{3});
  load->endRow();
  load->finish();
  EXPECT_EQ(query(*writer, "select q, n from t where k = 3"), (Texts{{"3.333333", "it's [x]"}}));
  expectAlive(*writer);
}

TEST_F(Definitions, OutliveACrash) {
  for (const auto* ending : {"", ".wal"}) {
    std::filesystem::copy_file(path() + ending, path("crashed.db") + ending);
  }
  expectAlive(*connect(dsn("ReadWrite", "crashed.db")));
}

TEST_F(Definitions, AreReadableWhateverTheirTypes) {
  run(*writer_, "select '" + std::string(9000, 'x') + "' a, N'" + std::string(5000, 'x') +
                    "' b, '' c, null d into w");
  writer_.reset();
  EXPECT_EQ(query(*open("Read"), "select len(a), len(b), c, d from w"),
            (Texts{{"9000", "5000", "", "NULL"}}));
}

TEST_F(Definitions, SeeNothingOfTheirBatch) {
  EXPECT_THAT(failure(*writer_, "declare @v int; create view w as select @v a"), HasSubstr("137"));
  EXPECT_THAT(failure(*writer_, "declare @v int; create table w(a int default @v)"),
              HasSubstr("137"));
  EXPECT_THAT(failure(*writer_, "create view w as select ? a", {{}}), HasSubstr("201"));
  EXPECT_THAT(failure(*writer_, "select 1 a into #w; create view w as select a from #w"),
              HasSubstr("4508"));
}

TEST_F(Definitions, AreNotAlteredWhereACrashWouldLoseTheFile) {
  EXPECT_THAT(failure(*writer_, "alter table t add z int"), HasSubstr("Not supported: altering"));
  EXPECT_THAT(failure(*writer_, "alter table a add z varchar(12) not null default str(3)"),
              HasSubstr("Not supported: "));
}

TEST_F(Definitions, NestToALimit) {
  std::string batch = "create view v0 as select id from t;";
  for (int i = 1; i < 32; ++i) {
    batch +=
        "create view v" + std::to_string(i) + " as select * from v" + std::to_string(i - 1) + ";";
  }
  run(*writer_, batch);
  EXPECT_EQ(query(*writer_, "select id from v31"), (Texts{{"1"}}));
  EXPECT_THAT(failure(*writer_, "create view v32 as select * from v31; select * from v32"),
              testing::StartsWith("217: View 'v0'"));
}

}  // namespace
}  // namespace velmora::ado::embedded
