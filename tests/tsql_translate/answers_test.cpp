#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "platform/ado/duckdb/embedded_provider.h"
#include "velmora/collections/decimal.h"
#include "velmora/com/error.h"

namespace velmora::tsql::test {
namespace {

namespace fs = std::filesystem;
using collections::Decimal;
using collections::Variant;

/// Numbers and times without the zeros that say nothing more.
std::string shortened(std::string text) {
  if (const auto number = Decimal::tryParse(text)) return number->normalized().toString();
  for (const std::string_view zeros : {" 00:00:00.000", ".000"})
    if (text.ends_with(zeros)) return text.substr(0, text.size() - zeros.size());
  return text;
}

std::string cellText(const Variant& cell) {
  if (cell.isNull()) return "NULL";
  if (cell.type() == collections::VarType::boolean) return cell.toBool() ? "1" : "0";
  return cell.isString() ? std::string(cell.text()) : shortened(cell.toText());
}

/// Rows divided by ";", cells by "|"; "-" without rows.
std::string rowsText(const ado::Rowset& rows) {
  std::string text;
  for (std::size_t i = 0; i < rows.cells.size(); ++i) {
    if (i > 0) text += i % rows.fields.size() == 0 ? ';' : '|';
    text += cellText(rows.cells[i]);
  }
  return rows.cells.empty() ? "-" : text;
}

/// The last rows of the batch, or "ERR" with SQL Server's number.
std::string answer(const std::string& sql) {
  const auto connection =
      ado::embedded::openConnection(ado::ConnectionString("Data Source=:memory:"));
  try {
    auto results = connection->execute(sql, {});
    std::erase_if(results, [](const auto& result) { return !result.hasRows; });
    return results.empty() ? "-" : rowsText(results.back().rows);
  } catch (const com::Error& error) {
    const auto& text = error.description();
    return "ERR " + text.substr(0, text.find(':'));
  }
}

/// Whether two cells say the same; texts of digits keep their zeros in the file.
bool sameCells(const std::string& wanted, const std::string& seen) {
  if (wanted == seen) return true;
  std::istringstream a(wanted), b(seen);
  for (std::string left, right; std::getline(a, left, '|');)
    if (!std::getline(b, right, '|') || (left != right && shortened(left) != right)) return false;
  return true;
}

bool sameAnswer(const std::string& wanted, const std::string& seen) {
  if (wanted == "ERR") return seen.starts_with("ERR");
  std::istringstream a(wanted), b(seen);
  for (std::string left, right; std::getline(a, left, ';');)
    if (!std::getline(b, right, ';') || !sameCells(left, right)) return false;
  return std::ranges::count(wanted, ';') == std::ranges::count(seen, ';');
}

std::vector<fs::path> files() {
  std::vector<fs::path> found;
  for (const auto& entry :
       fs::directory_iterator(VELMORA_SOURCE_DIR "/tests/tsql_translate/answers"))
    found.push_back(entry.path());
  std::ranges::sort(found);
  return found;
}

class ServerAnswers : public testing::TestWithParam<fs::path> {};

/// A line of a file: {"sql": ..., "answer": ...}.
TEST_P(ServerAnswers, AreGiven) {
  std::ifstream file(GetParam());
  for (std::string line; std::getline(file, line);) {
    const auto expected = nlohmann::json::parse(line);
    const std::string sql = expected.at("sql");
    const std::string seen = answer(sql);
    EXPECT_TRUE(sameAnswer(expected.at("answer"), seen))
        << sql << "\n  wanted " << expected.at("answer") << "\n  seen   " << seen;
  }
}

// The engine by itself refuses as many operators in a row.
TEST(Union, TakesAThousandBranches) {
  std::string all = "select 0 a", wanted = "0";
  for (int i = 1; i < 1000; ++i) {
    all += " union all select " + std::to_string(i % 500);
    wanted += ";" + std::to_string(i % 500);
  }
  EXPECT_EQ(answer(all), wanted);
  EXPECT_EQ(answer("select count(*), max(a) from (" + all + " union select 7) t"), "500|499");
}

INSTANTIATE_TEST_SUITE_P(Files, ServerAnswers, testing::ValuesIn(files()),
                         [](const auto& file) { return file.param.stem().string(); });

}  // namespace
}  // namespace velmora::tsql::test
