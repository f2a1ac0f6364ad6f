#include "platform/ado/duckdb/settings.h"

#include <gmock/gmock.h>

#include "database.h"

namespace velmora::ado::embedded::test {

namespace {

using testing::HasSubstr;

Settings read(const std::string& text) {
  return readSettings(ConnectionString(text));
}

TEST(EmbeddedSettings, ReadsWhatItKnowsAndIgnoresWhatServersWant) {
  const auto settings = read(
      "provider=velmora.embedded;DATA SOURCE=/a/b.db;mode=READWRITE;Threads=3;Memory=2gb;"
      "User ID=sa;Password=x;Initial Catalog=AIS;Connect Timeout=5;Persist Security Info=True");
  EXPECT_EQ(settings.file, "/a/b.db");
  EXPECT_EQ(settings.mode, OpenMode::readWrite);
  EXPECT_EQ(settings.threads, 3);
  EXPECT_EQ(settings.memory, "2gb");
}

TEST(EmbeddedSettings, ReadsByDefaultAndWritesInMemory) {
  EXPECT_TRUE(read("Data Source=x.db").readOnly());
  const auto memory = read("Data Source=:memory:;Mode=Read");
  EXPECT_TRUE(memory.inMemory());
  EXPECT_FALSE(memory.readOnly());
}

TEST(EmbeddedSettings, RefusesNamingPropertyAndExpectation) {
  const std::pair<const char*, const char*> cases[] = {
      {"Mode=Read", "Data Source is missing"},
      {"Data Source=x;Mode=Write", "Mode=Write is not Read, ReadWrite or Create"},
      {"Data Source=x;Threads=0", "Threads=0 is not a number of threads from 1 to 256"},
      {"Data Source=x;Threads=4x", "Threads=4x"},
      {"Data Source=x;Block Size=8192", "Block Size=8192 is not a power of 2 from 16384 to 262144"},
      {"Data Source=x;Block Size=20000", "Block Size=20000 is not a power of 2"},
      {"Data Source=x;Memory=2", "Memory=2 is not an amount of memory"},
      {"Data Source=x;Memory=-1GB", "Memory=-1GB"},
      {"Data Source=x;Memory=63999KB", "at least 64MB"},
      {"Data Source=x;Memory=99999999999999999999GB", "Memory="},
      {"Data Source=x;Modus=Read", "\"Modus\" is not known"},
  };
  for (const auto& [text, expected] : cases)
    EXPECT_THAT(failure([&, wrong = text] { read(wrong); }), HasSubstr(expected)) << text;
}

TEST(EmbeddedSettings, KeepsPasswordsOutOfMessages) {
  EXPECT_THAT(failure([&] { read("Data Source=x;Password=hush;Colour=red"); }),
              testing::Not(HasSubstr("hush")));
}

}  // namespace

}  // namespace velmora::ado::embedded::test
