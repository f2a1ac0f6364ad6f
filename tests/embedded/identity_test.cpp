#include <gmock/gmock.h>
#include <thread>

#include "database.h"

namespace velmora::ado::embedded::test {

namespace {

class Identity : public DatabaseFile {};

TEST_F(Identity, GoesOnAfterReopening) {
  create(
      "create table up(FID int identity, a int); create table down(FID int identity(-1,-2), a int);"
      "insert into up(a) values(1); insert into up(a) values(2);"
      "insert into down(a) values(1); insert into down(a) values(2)");
  const auto writer = open("ReadWrite");
  run(*writer, "insert into up(a) values(3); insert into down(a) values(3)");
  EXPECT_EQ(query(*writer, "select FID from up order by a"), (Texts{{"1"}, {"2"}, {"3"}}));
  EXPECT_EQ(query(*writer, "select FID from down order by a"), (Texts{{"-1"}, {"-3"}, {"-5"}}));
}

TEST_F(Identity, StartsOverWithTheTable) {
  const auto connection = inMemory();
  for (const char* table : {"t", "#t"}) {
    const std::string name(table);
    const auto insert = "insert into " + name + "(a) values(1);";
    const auto numbers = "select FID from " + name + " order by FID";
    run(*connection, "create table " + name + "(FID int identity(5,1), a int);" + insert + insert);
    EXPECT_EQ(query(*connection, "delete from " + name + ";" + insert + numbers), (Texts{{"7"}}));
    EXPECT_EQ(query(*connection, "truncate table " + name + ";" + insert + numbers),
              (Texts{{"5"}}));
    run(*connection, "drop table " + name + "; create table " + name + "(FID int identity, a int)");
    EXPECT_EQ(query(*connection, insert + numbers), (Texts{{"1"}}));
  }
}

TEST_F(Identity, IsTakenOnceByConcurrentConnections) {
  create("create table t(FID int identity primary key, a int)");
  const auto insertMany = [&] {
    const auto writer = open("ReadWrite");
    for (int i = 0; i < 50; ++i) run(*writer, "insert into t(a) select 1 union all select 2");
  };
  const auto keepAlive = open("ReadWrite");
  std::thread other(insertMany);
  insertMany();
  other.join();
  EXPECT_EQ(query(*keepAlive, "select count(*) n, min(FID) l, max(FID) h from t"),
            (Texts{{"200", "1", "200"}}));
}

TEST_F(Identity, TemporaryTablesOfTwoThreads) {
  create("create table t(a int); insert into t values(1)");
  const auto work = [&](int* sum) {
    const auto reader = open("Read");
    for (int i = 0; i < 30; ++i) {
      run(*reader, "create table #w(FID int identity, a int); insert into #w(a) select a from t");
      *sum += std::stoi(query(*reader, "select sum(FID + a) s from #w")[0][0]);
      run(*reader, "drop table #w");
    }
  };
  int one = 0;
  int two = 0;
  std::thread other(work, &one);
  work(&two);
  other.join();
  EXPECT_EQ(one, 60);
  EXPECT_EQ(two, 60);
}

}  // namespace

}  // namespace velmora::ado::embedded::test
