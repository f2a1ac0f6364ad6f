#include "velmora/ado/connection_string.h"

#include <gmock/gmock.h>

#include "velmora/com/error.h"

namespace velmora::ado {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(ConnectionString, ReadsValuesAsTheSuiteWritesThem) {
  struct Case {
    const char* text;
    const char* name;
    const char* value;
  };
  for (const Case& c : {
           Case{"Provider=SQLOLEDB.1;Data Source=srv\\x;Initial Catalog=AIS", "data source",
                "srv\\x"},
           Case{"Driver={ODBC Driver 17 for SQL Server};Server=a", "DRIVER",
                "ODBC Driver 17 for SQL Server"},
           Case{"PWD={a;b}}c} ;X=1", "pwd", "a;b}c"},
           Case{"A=\"x\"\"y;z\"", "A", "x\"y;z"},
           Case{"A='it''s'", "A", "it's"},
           Case{" ; A = b = c ;; ", "A", "b = c"},
           Case{"A=;B=2", "A", ""},
           Case{"A=1;B=2;a=3", "A", "3"},
           Case{"A=1", "B", ""},
       })
    EXPECT_EQ(ConnectionString(c.text).value(c.name), c.value) << c.text;
  EXPECT_TRUE(ConnectionString("A=").find("a").has_value());
  EXPECT_FALSE(ConnectionString("A=").find("b").has_value());
  EXPECT_TRUE(ConnectionString("").properties().empty());
}

TEST(ConnectionString, NamesThePlaceOfAFaultButNotItsText) {
  struct Case {
    const char* text;
    const char* place;
  };
  for (const Case& c : {
           Case{"A=1;Password=my;Secret", "segment 3 (character 17) has no '='"},
           Case{"=Secret", "segment 1 (character 1) has no name"},
           Case{"PWD={Secret", "segment 1 (character 5) opens"},
           Case{"PWD='Se'cret", "segment 1 (character 9) goes on"},
       }) {
    try {
      const ConnectionString parsed(c.text);
      ADD_FAILURE() << c.text << " was taken";
    } catch (const com::Error& error) {
      EXPECT_EQ(error.number(), com::error::kAdoInvalidArgument);
      EXPECT_THAT(error.description(), HasSubstr(c.place));
      EXPECT_THAT(error.description(), Not(HasSubstr("cret")));
    }
  }
}

TEST(ConnectionString, WritesTextThatReadsBackTheSame) {
  ConnectionString settings("A=1");
  for (const char* value : {"", "plain", "a;b", " padded ", "\"quoted\"", "it's", "'x", "{x}", "}"})
    settings.set(std::string("N") + std::to_string(settings.properties().size()), value);
  settings.set("a", "2");
  const ConnectionString again(settings.toString());
  ASSERT_EQ(again.properties().size(), settings.properties().size());
  for (std::size_t i = 0; i < settings.properties().size(); ++i) {
    EXPECT_EQ(again.properties()[i].name, settings.properties()[i].name);
    EXPECT_EQ(again.properties()[i].value, settings.properties()[i].value);
  }
  EXPECT_EQ(again.value("A"), "2");
}

TEST(ConnectionString, HidesEveryPasswordForDisplay) {
  EXPECT_EQ(ConnectionString("User ID=sa;PASSWORD=x;pwd={y;z};A=1").toDisplay(),
            "User ID=sa;PASSWORD=***;pwd=***;A=1");
  const ConnectionString nested("Provider=MSDASQL;Extended Properties='DSN=a;Pwd=secret'");
  EXPECT_EQ(nested.toDisplay(), "Provider=MSDASQL;Extended Properties=\"DSN=a;Pwd=***\"");
  EXPECT_THAT(nested.passwords(), testing::ElementsAre("secret"));
}

}  // namespace
}  // namespace velmora::ado
