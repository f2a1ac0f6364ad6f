#include <gmock/gmock.h>
#include <thread>

#include "database.h"

// Batches and bulk loads that are stopped: nothing of them may stay.

namespace velmora::ado::embedded::test {

namespace {

/// Runs hours unless it is stopped.
constexpr const char* kLong =
    "select sum(a.n + b.n + c.n + d.n) from t a, t b, t c, t d, t e, t f, t g, t h, t i, t j";

class Stopping : public testing::Test {
 protected:
  Stopping() {
    run(*connection_, "create table t(n int)");
    for (int i = 0; i < 40; ++i) run(*connection_, "insert into t values(1)");
    connection_->setCommandTimeout(1);
  }
  std::string rows() const { return query(*connection_, "select count(*) from t")[0][0]; }

  ConnectionPtr connection_ = inMemory();
};

TEST_F(Stopping, RollsTheTransactionBack) {
  const std::string change = "begin transaction create table made(n int) insert into t values(2) ";
  for (const std::string& batch :
       {change + kLong, change + "declare @n int select @n = (" + kLong + ")",
        change + "if exists (" + kLong + " having sum(a.n) < 0) print 'a'",
        change + "update t set n = (" + kLong + ")",
        change + "select x.n into #u from (" + std::string(kLong).replace(7, 0, "n = ") + ") x"}) {
    EXPECT_THAT(failure(*connection_, batch),
                testing::StartsWith("Timeout expired: the batch ran longer than its "
                                    "CommandTimeout of 1 second (line 1, column "))
        << batch;
    EXPECT_EQ(rows(), "40");
    EXPECT_THAT(failure(*connection_, "select * from made"), testing::HasSubstr("208"));
    EXPECT_THAT(failure(*connection_, "rollback transaction"), testing::HasSubstr("3903"));
  }
}

TEST_F(Stopping, DropsTheTableVariables) {
  const std::string declared = "declare @v table(n int) insert into @v values(1) ";
  EXPECT_THAT(failure(*connection_, declared + kLong), testing::HasSubstr("1 second (line 1, "));
  EXPECT_EQ(query(*connection_, declared + "select count(*) from @v")[0][0], "1");
}

TEST_F(Stopping, LeavesNothingOfABulkLoad) {
  auto load = connection_->bulkInsert("t", std::vector<std::string>{"n"});
  const auto fill = [&] {
    for (int i = 0; i < 300'000; ++i) {
      load->append(std::int64_t{1});
      load->endRow();
    }
    load->finish();
  };
  std::thread([this] { connection_->cancel(); }).join();
  EXPECT_EQ(failure(fill), "The operation was cancelled");
  load.reset();
  EXPECT_EQ(rows(), "40");
}

}  // namespace

}  // namespace velmora::ado::embedded::test
