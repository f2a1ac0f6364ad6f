#include <gtest/gtest.h>
#include <string>

#include "platform/ado/duckdb/embedded_provider.h"

namespace velmora::tsql::test {
namespace {

/// Enough rows for the engine to work on several threads.
constexpr std::string_view kMany = R"(
create table #d(i int); insert into #d values(0),(1),(2),(3),(4),(5),(6),(7),(8),(9)
create table #n(id int, k int, v varchar(20))
insert into #n select x.n, (x.n * 701) % 200003, 'V' + cast(x.n % 1000 as varchar(10)) from
 (select a.i*100000+b.i*10000+c.i*1000+d.i*100+e.i*10+f.i n
  from #d a, #d b, #d c, #d d, #d e, #d f where a.i < 2) x
)";

class RowOrder : public testing::Test {
 protected:
  std::vector<ado::StatementResult> run(std::string_view batch) {
    return connection_->execute(batch, {});
  }
  std::int64_t number(std::string_view query) {
    return run(query).back().rows.cells.front().toInt64();
  }
  std::string text(std::string_view query) {
    const auto results = run(query);
    std::string result;
    for (const auto& cell : results.back().rows.cells) result += cell.toText() + "\t";
    return result;
  }

  std::unique_ptr<ado::ProviderConnection> connection_ =
      ado::embedded::openConnection(ado::ConnectionString("Data Source=:memory:;Threads=4"));
};

TEST_F(RowOrder, IdentityFollowsTheOrderOfTheQuery) {
  run(kMany);
  run("create table #t(FID int identity, k int) insert into #t(k) select k from #n order by k "
      "desc");
  EXPECT_EQ(number("select count(*) from #t a, #t b where b.FID = a.FID + 1 and b.k > a.k"), 0);
  EXPECT_EQ(number("select max(FID) - min(FID) + 1 - count(*) from #t"), 0);
}

TEST_F(RowOrder, IsTheSameEveryTime) {
  run(kMany);
  for (const std::string_view query :
       {"select top 500 a.id, b.k from #n a inner join #n b on b.k = a.id where a.k % 7 = 3",
        "select top 500 v, count(*) n, sum(k) s from #n group by v",
        "select top 500 id, k from #n order by v",
        "select id % 5000 x from #n where k > 100 union select k from #n where id < 100",
        "select top 500 s, id from #n n, (select v w, sum(k) s from #n group by v) x where v = "
        "w"}) {
    EXPECT_EQ(text(query), text(query)) << query;
  }
}

TEST_F(RowOrder, OfAJoinIsThatOfItsTables) {
  run(kMany);
  run("select a.id i, b.id j into #j from #n a inner join #n b on b.k = a.k % 1000");
  run("create table #t(FID int identity, i int, j int) insert into #t(i, j) select i, j from #j");
  EXPECT_EQ(number("select count(*) from #t a, #t b where b.FID = a.FID + 1 and b.i < a.i"), 0);
}

TEST_F(RowOrder, AnUpdateOfManyRowsReadsNoneItHasChanged) {
  run(kMany);
  run("create table #w(id int primary key, a int) insert into #w select id, id from #n");
  run("update w set a = v.a from #w w inner join #w v on v.id = w.id - 1");
  EXPECT_EQ(number("select count(*) from #w where id > 0 and a <> id - 1"), 0);
}

TEST_F(RowOrder, AnInsertIntoItsOwnSourceReadsEachRowOnce) {
  run(kMany);
  run("insert into #n select id + 1000000, k, v from #n");
  EXPECT_EQ(number("select count(*) from #n"), 400000);
}

}  // namespace
}  // namespace velmora::tsql::test
