// Measures the steps of the detail period check of receivables against the same steps
// written by hand for the engine.
//
//   bench_amount_check LARGE.db
//
// Every figure is printed with the limit it has to keep; the exit status is 1 when one
// does not. Answers are compared before anything is timed.

#include <cstdio>
#include <stdexcept>

#include "figures.h"
#include "measure.h"
#include "plain_engine.h"
#include "velmora/ado/connection.h"
#include "velmora/collections/dictionary.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"
#include "velmora/interfaces.h"

namespace velmora::bench {

namespace {

/// The work tables that the steps make.
constexpr const char* kDropTables = "drop table #AmtCheck, #AmtDetail";

com::Ref<collections::Dictionary> periodFilter() {
  auto filter = com::make<collections::Dictionary>();
  filter->Set("bArp", true);
  filter->Set("BYear", 2009);
  filter->Set("BPeriod", 3);
  filter->Set("ItemClass", 1);
  filter->Set("CurrencyID", 0);
  filter->Set("AcctList", "1122,1221,2203");
  return filter;
}

/// The four steps as the check runs them.
std::vector<std::string> generatedSteps() {
  const auto filter = periodFilter();
  com::call(*com::CreateObject("Velmora.clsInitBalCheck"), "GetAmtCheckDataSql", filter);
  std::vector<std::string> steps;
  for (const char* step :
       {"Chk_CreateTable", "Chk_InitArpAmt", "Chk_InitGlAmt", "Chk_UpdateTable"}) {
    steps.push_back(filter->Value(step).toText());
    if (steps.back().empty()) throw std::runtime_error(std::string("no statements ") + step);
  }
  return steps;
}

void runSteps(ado::Connection& connection, const std::vector<std::string>& steps) {
  for (const std::string& step : steps) connection.Execute(step);
}

double timeOfSteps(ado::Connection& connection, const std::vector<std::string>& steps) {
  const double time = seconds([&] { runSteps(connection, steps); });
  connection.Execute(kDropTables);
  return time;
}

std::string amountList(const char* form) {
  std::string list;
  for (const char* measure : {"", "Beg", "Debit", "Credit"})
    for (const char* side : {"Arp", "GL", "Diff"})
      for (const char* currency : {"For", ""}) {
        const std::string column = std::string("F") + side + measure + "Amount" + currency;
        if (!list.empty()) list += ", ";
        for (const char* c = form; *c != '\0'; ++c) list += *c == '$' ? column : std::string(1, *c);
      }
  return list;
}

std::string byHand() {
  return handWritten("reconcile_period.sql", {{"{columns}", amountList("$ decimal(28,4)")},
                                              {"{zeros}", amountList("0")},
                                              {"{amounts}", amountList("$")},
                                              {"{sums}", amountList("sum($) as $")}});
}

/// Rows as "account item difference", which is what a user looks at.
void compareAnswers(ado::Connection& connection, const std::vector<std::string>& steps,
                    const PlainEngine& engine) {
  engine.run(byHand());
  const auto wanted = engine.texts(
      "select FAcctNumber || ' ' || FItemClassNumber || ' ' || FDiffAmount from AmtCheck "
      "order by FYear, FPeriod, FAcctNumber, FSumSort, FItemClassNumber");
  runSteps(connection, steps);
  std::size_t row = 0;
  std::size_t differing = 0;
  for (const auto rows =
           connection.Execute("select FAcctNumber, FItemClassNumber, FDiffAmount from #AmtCheck "
                              "order by FYear, FPeriod, FAcctNumber, FSumSort, FItemClassNumber");
       !rows->EOF_(); rows->MoveNext()) {
    const auto difference = rows->GetValue(2).toDecimal();
    const std::string found =
        rows->GetValue(0).toText() + ' ' + rows->GetValue(1).toText() + ' ' + difference.toString();
    if (row >= wanted.size() || found != wanted[row++])
      throw std::runtime_error("row " + std::to_string(row) + " is " + found);
    if (!difference.isZero()) ++differing;
  }
  if (row != wanted.size() || differing == 0)
    throw std::runtime_error("the hand-written steps give other rows");
  connection.Execute(kDropTables);
}

int measure(const std::string& file) {
  com::ActivateServer(VELMORA_COMPONENT);
  auto connection = com::make<ado::Connection>();
  connection->Open("Provider=Velmora.Embedded;Data Source=" + file + ";Mode=Read");
  const PlainEngine engine(file);
  const auto steps = generatedSteps();
  compareAnswers(*connection, steps, engine);
  std::vector<double> generated, byHandTimes;
  // One after the other: in turns, each would work in the memory that the other has just
  // given back.
  for (int run = 0; run < 15; ++run) generated.push_back(timeOfSteps(*connection, steps));
  for (int run = 0; run < 15; ++run) byHandTimes.push_back(seconds([&] { engine.run(byHand()); }));
  std::printf("detail period check, its four steps %.3f s, by hand %.3f s\n", median(generated),
              median(byHandTimes));
  Figures figures;
  figures.report("its four steps against the same written by hand",
                 median(generated) / median(byHandTimes), 1.2, "x");
  return figures.allKept() ? 0 : 1;
}

}  // namespace

}  // namespace velmora::bench

int main(int argc, char** argv) try {
  if (argc == 2) return velmora::bench::measure(argv[1]);
  std::fputs("usage: bench_amount_check LARGE\n", stderr);
  return 2;
} catch (const std::exception& error) {
  std::fprintf(stderr, "bench_amount_check: %s\n", error.what());
  return 3;
}
