#include <sstream>

#include "database.h"

namespace velmora::ado::embedded {
namespace {

using namespace test;

/// `name` in brackets.
std::string bracketed(const std::string& name) {
  std::string text = "[";
  for (const char c : name) text += c == ']' ? "]]" : std::string(1, c);
  return text + "]";
}

/// A batch with `$` for the name in brackets.
std::string with(const std::string& name, std::string_view batch) {
  std::string text;
  for (const char c : batch) text += c == '$' ? bracketed(name) : std::string(1, c);
  return text;
}

/// Names that mean something to the engine or to the statements made for it.
std::vector<std::string> specialNames() {
  std::vector<std::string> names = {std::string(128, 'n')};
  std::istringstream list(
      "duckdb_columns|duckdb_tables|duckdb_views|DuckDB_Indexes|sqlite_master|pg_class|main|temp|"
      "system|memory|accounts|information_schema|columns|rowid|RowID_|[rowid]|rid|u|s|q|v|c1|k1|"
      "select|values|lambda|range|velmora_whole_number|a.b|a\"b|a]b|a'b|a$b|T-SQL: x| |a |"
      "\xE7\xA7\x91\xE7\x9B\xAE|\xC3\xA9");
  for (std::string name; std::getline(list, name, '|');) names.push_back(name);
  return names;
}

class Names : public DatabaseFile {
 protected:
  /// Runs the batch for every name.
  void runAll(ProviderConnection& connection, std::string_view batch) const {
    run(connection, "begin transaction");
    for (const std::string& name : specialNames()) {
      SCOPED_TRACE(name);
      EXPECT_EQ(failure(connection, with(name, batch)), "");
    }
    run(connection, "commit");
  }
  /// What the query answers for every name.
  void expectAll(ProviderConnection& connection, std::string_view batch, const Texts& rows) const {
    for (const std::string& name : specialNames()) {
      SCOPED_TRACE(name);
      EXPECT_EQ(failure([&] { EXPECT_EQ(query(connection, with(name, batch)), rows); }), "");
    }
  }
};

TEST_F(Names, AnyNameIsStoredReadAndChanged) {
  runAll(*open("Create"),
         "create table $ (id int identity(1,1) primary key, $ nvarchar(20) default 'x',"
         " note varchar(10)); create unique index $ on $($, id);"
         "insert into $(note) values('a'); insert into $(note) values('b');"
         "insert into $ values('y', 'c')");
  {
    const auto again = open("ReadWrite");
    runAll(*again,
           "update $ set note = 'd' where note = 'a'; delete $ where note = 'c';"
           "update $ set note = w.note + w.note from $ join $ w on w.id = $.id + 1;"
           "select $.$, note into #t from $; delete $ from $ join #t on #t.note = $.note"
           " where #t.note = 'b'; drop table #t");
    expectAll(*again, "select *, $.$ from $ order by $", {{"1", "x", "bb", "x"}});
  }
  const auto again = open("ReadWrite");
  runAll(*again, "insert into $(note) select note + 'e' from $ order by $; drop index $ on $");
  expectAll(*again, "select id, $, note from $ union all select 0, $, '' from $ order by 1",
            {{"0", "x", ""}, {"0", "x", ""}, {"1", "x", "bb"}, {"2", "x", "bbe"}});
  runAll(*again, "drop table $");
  EXPECT_EQ(query(*again, "select count(*) from sysobjects"), (Texts{{"0"}}));
}

}  // namespace
}  // namespace velmora::ado::embedded
