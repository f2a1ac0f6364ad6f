// Measures the period-closing check: the generated queries against the same queries
// written by hand for the engine, and what the T-SQL front end adds to a statement.
//
//   bench_closing_check LARGE.db
//
// Every figure is printed with the limit it has to keep; the exit status is 1 when one
// does not. Answers are compared before anything is timed.

#include <cstdio>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "figures.h"
#include "measure.h"
#include "plain_engine.h"
#include "platform/ado/duckdb/session_state.h"
#include "platform/tsql/syntax/parser.h"
#include "platform/tsql/translate.h"
#include "velmora/ado/connection.h"
#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"

namespace velmora::bench {

namespace {

Figures figures;

constexpr int kYear = 2009;
constexpr int kPeriod = 3;

std::string adoString(const std::string& file) {
  return "Provider=Velmora.Embedded;Data Source=" + file + ";Mode=Read";
}

/// A check with a query of its own: number in the full list, and its generated T-SQL.
struct Check {
  int number = 0;
  std::string sql;
};

/// All checks of receivables that the demo settings switch on. Items 9 and 13 are not
/// among them.
std::vector<Check> checksOf(const std::string& file) {
  auto filter = com::make<collections::Dictionary>();
  filter->Set("BYear", kYear);
  filter->Set("BPeriod", kPeriod);
  filter->Set("bchkUnPeriod", true);
  filter->Set("bShowAllError", true);
  const std::string dsn = "ConnectString={" + adoString(file) + "};LANGUAGE=chs;SubID=AR";
  const auto items =
      com::call(*com::CreateObject("Velmora.clsInitBalCheck"), "GetCheckItemDict", dsn, filter)
          .toObject<collections::Vector>();
  if (!items) throw std::runtime_error("no check items: " + com::GetErrorInfo()->description);
  const std::vector<int> numbers{1, 2, 3, 4, 5, 6, 7, 8, 10, 11, 12, 14};
  if (items->Size() != numbers.size()) throw std::runtime_error("unexpected list of checks");
  std::vector<Check> checks;
  for (std::size_t i = 0; i < items->Size(); ++i) {
    const auto item = items->Item(i).toObject<collections::Dictionary>();
    checks.push_back({numbers[i], item->Value("FSql").toText()});
  }
  return checks;
}

std::string queryByHand(int number) {
  char name[32];
  std::snprintf(name, sizeof name, "item_%02d.sql", number);
  return handWritten(name,
                     {{"{year}", std::to_string(kYear)}, {"{period}", std::to_string(kPeriod)}});
}

/// Document numbers that the generated query lists.
std::multiset<std::string> billNumbers(ado::Connection& connection, const std::string& sql) {
  std::multiset<std::string> numbers;
  for (const auto rows = connection.Execute(sql); !rows->EOF_(); rows->MoveNext())
    numbers.insert(rows->Fields()("FBillNo").Value().toText());
  return numbers;
}

void compareQuery(ado::Connection& connection, const PlainEngine& engine, const Check& check) {
  const std::string byHand = queryByHand(check.number);
  const auto found = billNumbers(connection, check.sql);
  const auto wanted = engine.texts("select FBillNo from (" + byHand + ")");
  if (found != std::multiset<std::string>(wanted.begin(), wanted.end()))
    throw std::runtime_error("check " + std::to_string(check.number) +
                             ": the hand-written query lists other documents");
  std::vector<double> ratios, generatedTimes;
  for (int run = 0; run < 25; ++run) {
    const double generated = seconds([&] { connection.Execute(check.sql); });
    ratios.push_back(generated / seconds([&] { engine.run(byHand); }));
    generatedTimes.push_back(generated);
  }
  std::printf("check %d: %zu documents, %.3f s\n", check.number, found.size(),
              median(generatedTimes));
  figures.report("check " + std::to_string(check.number) + ": generated against hand-written",
                 median(ratios), 1.2, "x");
}

std::vector<Check> heaviest(ado::Connection& connection, const std::vector<Check>& checks,
                            std::size_t count) {
  std::multimap<double, Check, std::greater<>> byTime;
  for (const Check& check : checks) {
    const auto run = [&] { connection.Execute(check.sql); };
    run();
    byTime.emplace(seconds(run), check);
  }
  std::vector<Check> found;
  for (const auto& [time, check] : byTime)
    if (found.size() < count) found.push_back(check);
  return found;
}

/// Parsing and translating, without running anything.
void measureFrontEnd(const std::string& file, const std::vector<Check>& checks) {
  ado::embedded::SessionState session(
      ado::embedded::readSettings(ado::ConnectionString(adoString(file))));
  const tsql::Variables variables;
  const tsql::Scope scope{session.catalog, variables, {}, {}, true, 0, 0, 0, {}, {}};
  double slowest = 0;
  for (const Check& check : checks) {
    std::vector<double> times;
    for (int run = 0; run < 51; ++run)
      times.push_back(seconds([&] {
        const ado::embedded::CatalogStatement statement(session.catalog);
        const auto batch = tsql::parse(check.sql);
        for (const auto& one : batch.statements) tsql::translate(one, scope);
      }));
    slowest = std::max(slowest, median(times));
  }
  figures.report("front end, slowest of the check's statements", slowest * 1000, 1, "ms");
}

void measureQueries(const std::string& file) {
  com::ActivateServer(VELMORA_COMPONENT);
  auto connection = com::make<ado::Connection>();
  connection->Open(adoString(file));
  const auto checks = checksOf(file);
  const PlainEngine engine(file);
  for (const Check& check : heaviest(*connection, checks, 3))
    compareQuery(*connection, engine, check);
  measureFrontEnd(file, checks);
}

}  // namespace

}  // namespace velmora::bench

int main(int argc, char** argv) try {
  if (argc != 2) {
    std::fputs("usage: bench_closing_check LARGE\n", stderr);
    return 2;
  }
  velmora::bench::measureQueries(argv[1]);
  return velmora::bench::figures.allKept() ? 0 : 1;
} catch (const std::exception& error) {
  std::fprintf(stderr, "bench_closing_check: %s\n", error.what());
  return 3;
}
