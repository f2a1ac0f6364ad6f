#include "platform/tsql/syntax/parser.h"

#include <gtest/gtest.h>

#include "error_of.h"
#include "platform/tsql/syntax/print.h"
#include "platform/tsql/syntax/syntax_error.h"
#include "platform/tsql/syntax/text_scan.h"
#include "statement_file.h"

namespace velmora::tsql {
namespace {

std::string printed(const std::string& text) {
  return print(parse(text));
}

// `unit` n times, with `separator` between.
std::string repeated(const std::string& unit, int times, const std::string& separator = "") {
  std::string text;
  for (int i = 0; i < times; ++i) text += (i > 0 ? separator : "") + unit;
  return text;
}

Position errorPosition(const std::string& text) {
  try {
    parse(text);
  } catch (const SyntaxError& error) {
    return error.position();
  }
  return {0, 0};
}

template <typename Node>
const Node& only(const Batch& batch) {
  EXPECT_EQ(batch.statements.size(), 1U);
  return std::get<Node>(batch.statements.at(0).node);
}

const Select& selectOf(const Batch& batch) {
  return std::get<Select>(only<SelectStatement>(batch).query->body.node);
}

const Expression& valueOf(const Batch& batch, std::size_t item = 0) {
  return *std::get<ColumnItem>(selectOf(batch).items.at(item).node).value;
}

TEST(ParserTest, GoodStatementsPrintAsExpectedAndPrintingIsStable) {
  const auto cases = readStatementFile("good.sql", "-- ");
  ASSERT_FALSE(cases.empty());
  for (const StatementCase& each : cases) {
    SCOPED_TRACE("good.sql line " + std::to_string(each.line));
    const std::string expected = each.expected == "\n" ? "" : each.expected;
    try {
      EXPECT_EQ(printed(each.text), expected);
      EXPECT_EQ(printed(expected), expected);
    } catch (const SyntaxError& error) {
      ADD_FAILURE() << error.what();
    }
  }
}

TEST(ParserTest, BadStatementsAreRefusedWithPlaceAndExpectation) {
  const auto cases = readStatementFile("bad.txt", "# ");
  ASSERT_FALSE(cases.empty());
  for (const StatementCase& each : cases) {
    SCOPED_TRACE("bad.txt line " + std::to_string(each.line));
    try {
      ADD_FAILURE() << "accepted as " << printed(each.text);
    } catch (const SyntaxError& error) {
      const std::string description = error.description();
      const std::string place =
          std::to_string(error.position().line) + ":" + std::to_string(error.position().column);
      EXPECT_EQ(place + description.substr(description.find(": ") + 1) + "\n", each.expected);
    }
  }
}

// Letter case of the language's words and the blanks around them mean nothing.
TEST(ParserTest, CaseAndBlanksHaveNoMeaning) {
  const std::string text =
      "select a,b from t v1 inner join u on(v1.x=u.x)where a in(1,2)and b like'x%'"
      "group by a with rollup union all select 1,2 order by 1 desc";
  std::string upper;
  std::string spread;
  for (const char c : text) {
    upper += c == 'x' ? c : static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    spread += c == ' ' ? "\r\n\t /* ; */ -- '\n" : std::string(1, c);
  }
  EXPECT_EQ(printed(spread), printed(text));
  EXPECT_EQ(lowered(printed(upper)), lowered(printed(text)));
}

TEST(ParserTest, PositionsCountLinesAndCharacters) {
  const Batch batch = parse("select 1;\r\n  select '科目' + 名称, x\n from t");
  EXPECT_EQ(batch.statements[1].position, (Position{2, 3}));
  const auto& select =
      std::get<Select>(std::get<SelectStatement>(batch.statements[1].node).query->body.node);
  const Expression& sum = *std::get<ColumnItem>(select.items[0].node).value;
  EXPECT_EQ(sum.position, (Position{2, 15}));
  EXPECT_EQ(std::get<ArithmeticExpression>(sum.node).first->position, (Position{2, 10}));
  EXPECT_EQ(select.items[1].position, (Position{2, 21}));
  EXPECT_EQ(select.from[0]->position, (Position{3, 7}));
}

TEST(ParserTest, TreeKeepsWhatTheTextSays) {
  const Batch batch = parse("select 1.10, N'it''s', ?, @V, 0xAb, db..[a]]b], ? from t");
  EXPECT_EQ(std::get<DecimalLiteral>(valueOf(batch, 0).node).text, "1.10");
  EXPECT_EQ(std::get<StringLiteral>(valueOf(batch, 1).node).value, "it's");
  EXPECT_TRUE(std::get<StringLiteral>(valueOf(batch, 1).node).national);
  EXPECT_EQ(std::get<VariableReference>(valueOf(batch, 3).node).name, "@V");
  EXPECT_EQ(std::get<HexLiteral>(valueOf(batch, 4).node).digits, "Ab");
  const QualifiedName& column = std::get<ColumnReference>(valueOf(batch, 5).node).column;
  EXPECT_EQ(column.qualifiers, (std::vector<std::string>{"db", ""}));
  EXPECT_EQ(column.name, "a]b");
  EXPECT_EQ(std::get<ParameterMarker>(valueOf(batch, 2).node).index, 0);
  EXPECT_EQ(std::get<ParameterMarker>(valueOf(batch, 6).node).index, 1);
  EXPECT_EQ(batch.parameterCount, 2);
}

// A quoted word is never a keyword, an option or a function.
TEST(ParserTest, QuotedWordsAreNames) {
  const Batch batch = parse("select [case], \"null\" from [select] as [from]");
  EXPECT_EQ(std::get<ColumnReference>(valueOf(batch, 0).node).column.name, "case");
  EXPECT_EQ(std::get<NamedTable>(selectOf(batch).from[0]->node).alias, "from");
  EXPECT_EQ(errorPosition("select a from t [where] a = 1"), (Position{1, 25}));
  EXPECT_EQ(errorPosition("select [count](*) from t"), (Position{1, 15}));
}

TEST(ParserTest, OperatorsOfOnePrecedenceMakeOneFlatNode) {
  const Batch batch = parse("select a - b + c * 2 & d from t where a=1 or b=2 and c=3 or d=4");
  const auto& sum = std::get<ArithmeticExpression>(valueOf(batch).node);
  ASSERT_EQ(sum.rest.size(), 3U);
  EXPECT_EQ(sum.rest[0].op, ArithmeticOperator::Subtract);
  EXPECT_EQ(sum.rest[1].op, ArithmeticOperator::Add);
  EXPECT_EQ(sum.rest[2].op, ArithmeticOperator::BitAnd);
  const auto& either = std::get<LogicalExpression>(selectOf(batch).where->node);
  EXPECT_EQ(either.op, LogicalOperator::Or);
  EXPECT_EQ(either.operands.size(), 3U);
}

TEST(ParserTest, ParenthesesThatChangeTheResultStay) {
  for (const char* text :
       {"SELECT (a + b) + c;\n", "SELECT a - (b - c);\n", "SELECT a / (b * c);\n",
        "SELECT -(-a);\n", "SELECT ~(a + b);\n", "SELECT 1 WHERE NOT (a = 1 AND b = 2);\n",
        "SELECT 1 WHERE (a = 1 OR b = 2) AND c = 3;\n",
        "SELECT 1 UNION ALL (SELECT 2 UNION SELECT 2);\n",
        "SELECT 1 FROM a INNER JOIN (b LEFT JOIN c ON b.x = c.x) ON a.x = b.x;\n"}) {
    EXPECT_EQ(printed(text), text);
  }
}

// Generated conditions list thousands of accounts and documents.
TEST(ParserTest, LongChainsNeedNoDepth) {
  constexpr int kMany = 10000;
  const std::string sum = "select " + repeated("a", kMany, " + ");
  EXPECT_EQ(std::get<ArithmeticExpression>(valueOf(parse(sum)).node).rest.size(), kMany - 1);
  const std::string any = "select 1 where " + repeated("a = 1", kMany, " or ");
  EXPECT_EQ(std::get<LogicalExpression>(selectOf(parse(any)).where->node).operands.size(), kMany);
  parse("select 1 where a in (" + repeated("1", kMany, ",") + ")");
  parse(repeated("select 1", kMany, " union all "));
  parse(repeated("select 1", kMany, " "));
}

TEST(ParserTest, DepthIsLimitedWhateverNests) {
  const auto nested = [](const std::string& open, const std::string& core, const std::string& close,
                         int times) {
    return repeated(open, times) + core + repeated(close, times);
  };
  EXPECT_NO_THROW(parse("select " + nested("(", "1", ")", kMaxDepth - 10)));
  constexpr int kTooDeep = 3000;
  const std::vector<std::string> texts = {
      "select " + nested("(", "1", ")", kTooDeep),
      "select " + nested("(", "", "", kTooDeep),
      "select " + nested("- ", "1", "", kTooDeep),
      "select " + nested("(select ", "1", ")", kTooDeep),
      "select " + nested("f(", "1", ")", kTooDeep),
      "select " + nested("case when 1=1 then ", "1", " end", kTooDeep),
      "select 1 where " + nested("not ", "a = 1", "", kTooDeep),
      "select 1 where " + nested("exists(select 1 where ", "a=1", ")", kTooDeep),
      "select 1 from " + nested("(", "t", ")", kTooDeep),
      "select 1 from " + nested("(select 1 from ", "t", ") k", kTooDeep),
      nested("(", "select 1", ")", kTooDeep),
      nested("begin ", "select 1", " end", kTooDeep),
      nested("if 1=1 ", "select 1", "", kTooDeep),
      "if 1=1 select 1" + nested(" else if 1=1 select 1", "", "", kTooDeep),
  };
  for (const std::string& text : texts) {
    const com::Error error = errorOf([&] { parse(text); });
    EXPECT_NE(error.description().find("nested deeper than 200 levels"), std::string::npos)
        << text.substr(0, 60) << ": " << error.description();
  }
}

TEST(ParserTest, TablesOfOneFromAreLimited) {
  const std::string crossed = "select 1 from t" + repeated(" cross join t", kMaxTables - 1);
  EXPECT_NO_THROW(parse(crossed));
  EXPECT_NO_THROW(parse(crossed + " union " + crossed));
  EXPECT_THROW(parse(crossed + ", t"), SyntaxError);
  EXPECT_THROW(parse("select 1 from a" + repeated(" join a", kMaxTables)), SyntaxError);
}

TEST(ParserTest, ErrorIsTheProvidersAndCutsLongTexts) {
  const com::Error error =
      errorOf([] { parse("select 1\n  from '" + std::string(500, 'x') + "'"); });
  EXPECT_EQ(error.number(), com::error::kProvider);
  EXPECT_EQ(error.source(), "Velmora.Embedded");
  EXPECT_EQ(error.description(),
            "line 2, column 8: unexpected '" + std::string(59, 'x') + "..., expected a name");
  // Cut between characters, never inside one.
  const com::Error wide =
      errorOf([] { parse("select 1 from t " + repeated("科", 99) + " " + repeated("目", 99)); });
  EXPECT_NE(wide.description().find(repeated("目", 20) + "...'"), std::string::npos);
}

TEST(ParserTest, BytesThatAreNoTextAreRefused) {
  for (const std::string text : {"select \xFF", "select a\x80", "select \xE5\xBA",
                                 "select \xC0\xAF", "select \xF5\x80\x80\x80", "select '\xC0\xAF'",
                                 "select '\xED\xA0\x80'", "-- \xFF\nselect 1"}) {
    EXPECT_THROW(parse(text), SyntaxError) << text;
  }
  EXPECT_THROW(parse(std::string("select \0 1", 10)), SyntaxError);
  const com::Error inText = errorOf([] { parse(std::string("select\n 'a\0b'", 13)); });
  EXPECT_EQ(inText.description(), "line 2, column 4: a NUL byte, expected text");
}

TEST(ParserTest, MarkBeforeTheTextIsSkipped) {
  EXPECT_EQ(printed("\xEF\xBB\xBFselect\xC2\xA0"
                    "1"),
            "SELECT 1;\n");
}

}  // namespace
}  // namespace velmora::tsql
