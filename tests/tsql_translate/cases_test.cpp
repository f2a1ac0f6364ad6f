#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>

#include "case_file.h"
#include "platform/ado/duckdb/embedded_provider.h"
#include "velmora/collections/decimal.h"
#include "velmora/com/error.h"

namespace velmora::tsql::test {
namespace {

using collections::Decimal;
using collections::Variant;
using Row = std::vector<std::string>;

std::string normalized(const std::string& text) {
  const auto number = Decimal::tryParse(text);
  return number ? number->normalized().toString() : text;
}

std::string cellText(const Variant& cell) {
  if (cell.isNull()) return "NULL";
  if (cell.isNumeric()) return normalized(cell.toText());
  if (cell.type() == collections::VarType::boolean) return cell.toBool() ? "1" : "0";
  return cell.toText();
}

/// A day and time without its zero parts, so that both sides write it the same way.
std::string expectedText(const std::string& text) {
  const std::string midnight = " 00:00:00.000";
  if (text.ends_with(midnight)) return text.substr(0, text.size() - midnight.size());
  return normalized(text);
}

std::vector<Row> actualRows(const ado::Rowset& rowset) {
  std::vector<Row> rows;
  for (std::size_t i = 0; i < rowset.cells.size(); ++i) {
    if (i % rowset.fields.size() == 0) rows.emplace_back();
    const std::string text = cellText(rowset.cells[i]);
    rows.back().push_back(rowset.cells[i].isString() ? normalized(text) : text);
  }
  return rows;
}

std::vector<Row> expectedRows(const ExpectedResult& result) {
  std::vector<Row> rows = result.rows;
  for (Row& row : rows) std::ranges::transform(row, row.begin(), expectedText);
  return rows;
}

bool isOrdered(const std::string& batch) {
  std::string lower = batch;
  std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return std::tolower(c); });
  const auto query = lower.rfind("select");
  return query != std::string::npos && lower.find("order by", query) != std::string::npos;
}

void compare(const Case& expected, const ado::Rowset& actual, const ExpectedResult& result) {
  std::vector<std::string> names;
  for (const auto& field : actual.fields) names.push_back(field.name);
  EXPECT_EQ(names, result.columns);
  auto actualSet = actualRows(actual);
  auto expectedSet = expectedRows(result);
  if (!isOrdered(expected.batch)) {
    std::ranges::sort(actualSet);
    std::ranges::sort(expectedSet);
  }
  EXPECT_EQ(actualSet, expectedSet);
}

class Answers : public testing::TestWithParam<Case> {};

TEST_P(Answers, AreThoseOfTheServer) {
  const Case& expected = GetParam();
  const auto connection =
      ado::embedded::openConnection(ado::ConnectionString("Data Source=:memory:"));
  std::vector<ado::StatementResult> results;
  try {
    results = connection->execute(expected.batch, {});
  } catch (const com::Error& error) {
    ASSERT_FALSE(expected.error.empty()) << error.description() << "\n"
                                         << connection->lastNativeSql();
    EXPECT_TRUE(error.description().starts_with(expected.error + ": ")) << error.description();
    return;
  }
  ASSERT_TRUE(expected.error.empty()) << "error " << expected.error << " was expected";
  std::erase_if(results, [](const ado::StatementResult& result) { return !result.hasRows; });
  ASSERT_EQ(results.size(), expected.results.size());
  for (std::size_t i = 0; i < results.size(); ++i) {
    SCOPED_TRACE(connection->lastNativeSql());
    compare(expected, results[i].rows, expected.results[i]);
  }
}

std::string testName(const testing::TestParamInfo<Case>& info) {
  std::string name;
  for (const char c : info.param.name) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) name += c;
    if (c == ' ') name += '_';
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Server, Answers, testing::ValuesIn(readCases("cases.txt")), testName);
INSTANTIATE_TEST_SUITE_P(Rules, Answers, testing::ValuesIn(readCases("rules.txt")), testName);

}  // namespace

void PrintTo(const Case& shown, std::ostream* stream) {
  *stream << shown.name;
}

}  // namespace velmora::tsql::test
