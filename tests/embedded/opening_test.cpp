#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "database.h"
#include "platform/ado/duckdb/engine_error.h"

namespace velmora::ado::embedded::test {

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class Opening : public DatabaseFile {
 protected:
  std::string refusal(const std::string& mode, const std::string& name = "accounts.db") const {
    return failure([&] { connect(dsn(mode, name)); });
  }
  void write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
  }
};

TEST_F(Opening, TellsWhatIsWrongWithAFile) {
  write("notes.txt", "Receivables of March\n");
  write("empty.db", "");
  write("noise.db", std::string(20'000, '\x5A'));
  create("create table t(a int)");
  std::filesystem::copy(path(), path("short.db"));
  std::filesystem::resize_file(path("short.db"), 5000);
  std::filesystem::create_directory(path("folder"));

  const std::pair<const char*, const char*> cases[] = {
      {"missing.db", "the file does not exist"},
      {"notes.txt", "it is not a database of this kind"},
      {"empty.db", "it is empty"},
      {"noise.db", "it is not a database of this kind"},
      {"short.db", "it is damaged"},
      {"folder", "it is a folder"},
      {"nowhere/a.db", "does not exist"},
  };
  for (const char* mode : {"Read", "ReadWrite"})
    for (const auto& [name, reason] : cases)
      EXPECT_THAT(refusal(mode, name), AllOf(HasSubstr(path(name)), HasSubstr(reason))) << mode;
  EXPECT_THAT(refusal("Create", "nowhere/a.db"), HasSubstr("its folder does not exist"));
  EXPECT_FALSE(std::filesystem::exists(path("missing.db")));
}

TEST_F(Opening, NamesTheFileThatCannotBeWritten) {
  create("create table t(a varchar(8000))");
  const auto writer = connect(dsn("ReadWrite"));
  const auto before = std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small{512, limit.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  const auto message =
      failure([&] { run(*writer, "insert into t values ('" + std::string(8000, 'x') + "')"); });
  setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, before);
  EXPECT_THAT(message, StartsWith("1105: Cannot write the file \"" + path() + ".wal\": File too"));

  for (const auto& [engine, answer] :
       {std::pair{"TransactionContext Error: Failed to commit: Failed to create checkpoint because "
                  "of error: Could not write file \"/d/a.db\": No space left on device",
                  "1105: Cannot write the file \"/d/a.db\": the disk is full."},
        std::pair{"IO Error: Could not write file \"/d/a.db.wal\": Disk quota exceeded",
                  "1105: Cannot write the file \"/d/a.db.wal\": the disk is full."},
        std::pair{"Out of Memory Error: failed to offload data block of size 256.0 KiB (17.9 "
                  "MiB/18.0 MiB used).\nThis limit was set by ...",
                  "1105: Cannot write to the temporary folder \""},
        std::pair{"Out of Memory Error: could not allocate block of size 256.0 KiB (61.0 MiB/61.0 "
                  "MiB used)",
                  "701: There is not enough memory"}})
    EXPECT_THAT(readableError(engine).value_or("none"), StartsWith(answer));
}

TEST_F(Opening, RaisesTheConnectErrorOfTheProvider) {
  try {
    open("Read");
    FAIL();
  } catch (const com::Error& error) {
    EXPECT_EQ(error.number(), com::error::kProviderConnect);
    EXPECT_EQ(error.source(), "Velmora.Embedded");
  }
}

/// Another process that has the file open until the object goes.
class OtherProcess {
 public:
  explicit OtherProcess(const std::string& dsn) {
    int ready[2];
    int stop[2];
    if (::pipe(ready) != 0 || ::pipe(stop) != 0) throw std::runtime_error("no pipe");
    child_ = ::fork();
    if (child_ == 0) {
      ::close(stop[1]);
      const auto connection = connect(dsn);
      char byte = 'r';
      if (::write(ready[1], &byte, 1) != 1 || ::read(stop[0], &byte, 1) != 0) ::_exit(1);
      ::_exit(0);
    }
    ::close(ready[1]);
    ::close(stop[0]);
    stop_ = stop[1];
    char byte = 0;
    if (::read(ready[0], &byte, 1) != 1) throw std::runtime_error("the other process has failed");
    ::close(ready[0]);
  }
  ~OtherProcess() {
    ::close(stop_);
    ::waitpid(child_, nullptr, 0);
  }

 private:
  pid_t child_ = 0;
  int stop_ = -1;
};

TEST_F(Opening, SaysThatAnotherProcessHasTheFile) {
  create("create table t(a int)");
  {
    const OtherProcess writer(dsn("ReadWrite"));
    EXPECT_THAT(refusal("Read"), AllOf(HasSubstr(path()), HasSubstr("another process")));
    EXPECT_THAT(refusal("ReadWrite"), HasSubstr("another process"));
  }
  const OtherProcess reader(dsn("Read"));
  EXPECT_THAT(refusal("ReadWrite"), HasSubstr("another process"));
  EXPECT_EQ(query(*open("Read"), "select count(*) n from t"), (Texts{{"0"}}));
}

TEST_F(Opening, SharesAnOpenFileWithinTheProcess) {
  create("create table t(a int)");
  const auto writer = open("ReadWrite");
  std::filesystem::create_symlink(path(), path("link.db"));
  const auto reader = connect(dsn("Read", "link.db"));
  run(*writer, "insert into t values(7)");
  EXPECT_EQ(query(*reader, "select a from t"), (Texts{{"7"}}));
  // Read-only is the connection's, not the file's.
  EXPECT_THAT(failure(*reader, "insert into t values(8)"), Not(IsEmpty()));
  EXPECT_EQ(query(*writer, "select count(*) n from t"), (Texts{{"1"}}));
}

TEST_F(Opening, RefusesWritingWhileOpenForReading) {
  create("create table t(a int)");
  auto reader = open("Read");
  EXPECT_THAT(refusal("ReadWrite"), HasSubstr("has it open for reading"));
  EXPECT_EQ(query(*reader, "select count(*) n from t"), (Texts{{"0"}}));
  reader.reset();
  EXPECT_EQ(refusal("ReadWrite"), "");
}

TEST_F(Opening, ReadingLeavesNothingBesideTheFile) {
  create("create table t(a int); insert into t values(1)");
  {
    const auto reader = open("Read");
    run(*reader, "create table #t(a int); insert into #t select a from t");
    EXPECT_EQ(query(*reader, "select a from #t"), (Texts{{"1"}}));
  }
  const auto entries = std::filesystem::directory_iterator(folder_);
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST_F(Opening, EveryChangeOfAPermanentTableIsRefusedWhenReading) {
  create("create table t(a int); insert into t values(1)");
  const auto reader = open("Read");
  for (const char* change : {"insert into t values(2)", "update t set a = 2", "delete from t",
                             "truncate table t", "drop table t", "create table u(a int)",
                             "select a into u from t", "create unique index i on t(a)"})
    EXPECT_THAT(failure(*reader, change), HasSubstr("3906")) << change;
  EXPECT_EQ(query(*reader, "select a from t"), (Texts{{"1"}}));
}

TEST(InMemory, IsPrivate) {
  const auto one = inMemory();
  run(*one, "create table t(a int)");
  EXPECT_THAT(failure(*inMemory(), "select a from t"), HasSubstr("208"));
}

TEST(InMemory, KeepsToItsLimits) {
  const auto small = connect("Data Source=:memory:;Memory=64MB;Threads=2");
  EXPECT_EQ(query(*small, "select 1 a"), (Texts{{"1"}}));
}

}  // namespace

}  // namespace velmora::ado::embedded::test
