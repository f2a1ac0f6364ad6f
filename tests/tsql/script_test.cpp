#include "velmora/tsql/script.h"

#include <gtest/gtest.h>

#include "error_of.h"

namespace velmora::tsql {
namespace {

// "line*repeat:text" of each batch.
std::vector<std::string> split(std::string_view script) {
  std::vector<std::string> result;
  for (const ScriptBatch& batch : splitScript(script)) {
    result.push_back(std::to_string(batch.firstLine) + "*" + std::to_string(batch.repeat) + ":" +
                     batch.text);
  }
  return result;
}

using Batches = std::vector<std::string>;

TEST(ScriptTest, SplitsAtGoLines) {
  EXPECT_EQ(split(""), Batches{});
  EXPECT_EQ(split(" \r\n\t\n"), Batches{});
  EXPECT_EQ(split("select 1"), Batches{"1*1:select 1"});
  EXPECT_EQ(split("select 1\nGO\nselect 2\n"), (Batches{"1*1:select 1\n", "3*1:select 2\n"}));
  EXPECT_EQ(split("go\n\nGo\n a\r\n\t gO \r\nb\ngo"), (Batches{"4*1: a\r\n", "6*1:b\n"}));
}

TEST(ScriptTest, CountAndCommentBehindGo) {
  EXPECT_EQ(split("a\ngo 5\nb\nGO -- done\nc\ngo 2--x"),
            (Batches{"1*5:a\n", "3*1:b\n", "5*2:c\n"}));
  for (const char* line : {"go now", "go;", "go 0", "go -1", "go 1.5", "go 1001", "go 2 3"}) {
    const com::Error error = errorOf([line] { splitScript(std::string("a\n\n") + line + "\n"); });
    EXPECT_EQ(error.number(), com::error::kProvider);
    EXPECT_EQ(error.description().find("line 3, column 1: unexpected '"), 0U) << line;
  }
}

TEST(ScriptTest, GoIsAWordOfItsOwnAtTheLinesStart) {
  for (const char* script :
       {"select 1 go", "goto x", "go_on", "select\n gold", "[go]", "--go\n1"}) {
    EXPECT_EQ(split(script), Batches{std::string("1*1:") + script});
  }
}

TEST(ScriptTest, GoInsideCommentsAndQuotesIsText) {
  for (const char* script : {"/*\ngo\n*/ a", "/* /*\n*/\ngo\n*/ a", "'\ngo\n'", "'it''s\ngo\n'",
                             "[\ngo\n]", "\"\ngo\n\"", "a -- it's\n", "-- /*\nb", "'--\ngo\n'",
                             "/* '\ngo\n*/", "'never closed\ngo\n", "/* never closed\ngo\n"}) {
    EXPECT_EQ(split(script), Batches{std::string("1*1:") + script}) << script;
  }
  EXPECT_EQ(split("-- it's\ngo\nb"), (Batches{"1*1:-- it's\n", "3*1:b"}));
  EXPECT_EQ(split("'a\nb' /*\n*/\ngo\nc"), (Batches{"1*1:'a\nb' /*\n*/\n", "5*1:c"}));
}

}  // namespace
}  // namespace velmora::tsql
