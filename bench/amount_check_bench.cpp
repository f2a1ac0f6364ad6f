// Measures the detail period check of receivables against the same steps written by hand
// for the engine, and how time and memory grow with the rows.
//
//   bench_amount_check FOLDER        account sets are made there and kept for the next time
//   bench_amount_check once SET.db   runs the check once, for its memory
//
// Every figure is printed with the limit it has to keep; the exit status is 1 when one
// does not. Answers are compared before anything is timed.

#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "cli/demo/demo.h"
#include "figures.h"
#include "measure.h"
#include "plain_engine.h"
#include "process_run.h"
#include "velmora/ado/connection.h"
#include "velmora/collections/dictionary.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"
#include "velmora/interfaces.h"

namespace velmora::bench {

namespace {

namespace fs = std::filesystem;

constexpr int kLargeContacts = 20'000;

std::string adoString(const fs::path& file, const char* mode) {
  return "Provider=Velmora.Embedded;Data Source=" + file.string() + ";Mode=" + mode;
}

// For every contact: 50 contact balances (3 accounts in 17 periods, less one) and 250
// ledger balances (3 accounts, 5 currencies and 17 periods, less a few). Amounts of both
// ledgers agree but for every 97th contact.
std::string fillingScript(int contacts) {
  const std::string count = std::to_string(contacts);
  const std::string periods =
      "(select 2008 + p // 12 as y, p % 12 + 1 as m, p from range(17) r(p)) periods, "
      "(values (1122), (1221), (2203)) accounts(a), range(" +
      count + ") contacts(c)";
  const std::string amounts =
      "(c * 7 + p) % 1000 / 4, c % 89, p, (c * 7 + p) % 1000 / 4 + c % 89 - p";
  return "insert into t_Item (FItemID, FItemClassID, FNumber, FName) select 1000000 + c, 1, "
         "printf('K%07d', c), printf('Trading company %d', c) from range(" +
         count +
         ") r(c);"
         "insert into t_ItemDetailV select 1000000 + c, 1, 1000000 + c from range(" +
         count +
         ") r(c);"
         "insert into t_rp_ContactBal (FYear, FPeriod, FRP, FItemClassID, FCustomer, FAccountID, "
         "FCurrencyID, FBeginBalanceFor, FDebitFor, FCreditFor, FEndBalanceFor, FBeginBalance, "
         "FDebit, FCredit, FEndBalance) select y, m, 1, 1, 1000000 + c, a, 1, " +
         amounts + ", " + amounts + " from " + periods +
         " where not (p = 0 and a = 2203);"
         "insert into t_Balance (FYear, FPeriod, FAccountID, FDetailID, FCurrencyID, "
         "FBeginBalanceFor, FDebitFor, FCreditFor, FEndBalanceFor, FBeginBalance, FDebit, FCredit, "
         "FEndBalance) select y, m, a, 1000000 + c, currency, " +
         amounts + ", " + amounts + " from " + periods +
         ", range(5) r(currency) where not (p = 0 and currency > 0 and a > 1122);"
         "update t_Balance set FDebit = FDebit + 1, FEndBalance = FEndBalance + 1 "
         "where FDetailID % 97 = 0 and FDetailID > 1000000; checkpoint;";
}

void makeSet(const fs::path& file, int contacts) {
  const fs::path unfinished = file.string() + ".unfinished";
  fs::remove(unfinished);
  auto connection = com::make<ado::Connection>();
  connection->Open(adoString(unfinished, "Create"));
  cli::demo::createNewSet(*connection);
  connection->Execute(
      "insert into t_Account (FAccountID, FNumber, FName, FDetailID) values "
      "(1122, '1122', 'Receivables', 1), (1221, '1221', 'Other', 1), (2203, '2203', 'Advances', "
      "1)\n"
      "insert into t_ItemClass (FItemClassID, FName) values (1, 'Customer')\n"
      "insert into t_ItemDetailV values (1, 1, -1)\n"
      "insert into t_Currency (FCurrencyID, FNumber, FName) values (1, 'RMB', 'RMB')\n"
      "insert into t_RP_SystemProfile values ('ARP', 'FARPreNeedVoucher', '0')");
  connection->Close();
  PlainEngine(unfinished, PlainEngine::Mode::write).run(fillingScript(contacts));
  fs::rename(unfinished, file);
}

fs::path setOf(const fs::path& folder, int contacts) {
  const fs::path file = folder / ("contacts-" + std::to_string(contacts) + ".db");
  if (!fs::exists(file)) makeSet(file, contacts);
  return file;
}

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

/// The whole operation: settings are read, the steps run, their rows taken.
ado::RecordsetRef check(const fs::path& file) {
  const std::string dsn = "ConnectString={" + adoString(file, "Read") + "};SubID=AR";
  const auto rows = com::call(*com::CreateObject("Velmora.clsInitBalCheck"), "GetInitAmtCheck", dsn,
                              periodFilter())
                        .toObject<ado::Recordset>();
  if (!rows) throw std::runtime_error("the check failed: " + com::GetErrorInfo()->description);
  return rows;
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

double timeOfSteps(ado::Connection& connection, const std::vector<std::string>& steps) {
  const double time = seconds([&] {
    for (const std::string& step : steps) connection.Execute(step);
  });
  connection.Execute("drop table #AmtCheck, #AmtDetail");
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
void compareAnswers(const fs::path& file, const PlainEngine& engine) {
  engine.run(byHand());
  const auto wanted = engine.texts(
      "select FAcctNumber || ' ' || FItemClassNumber || ' ' || FDiffAmount from AmtCheck "
      "order by FYear, FPeriod, FAcctNumber, FSumSort, FItemClassNumber");
  std::size_t row = 0;
  std::size_t differing = 0;
  for (const auto rows = check(file); !rows->EOF_(); rows->MoveNext()) {
    const auto text = [&](const char* column) {
      return rows->GetValue(rows->fieldIndex(column)).toText();
    };
    const auto difference = rows->GetValue(rows->fieldIndex("FDiffAmount")).toDecimal();
    const std::string found =
        text("FAcctNumber") + ' ' + text("FItemClassNumber") + ' ' + difference.toString();
    if (row >= wanted.size() || found != wanted[row++])
      throw std::runtime_error("row " + std::to_string(row) + " is " + found);
    if (!difference.isZero()) ++differing;
  }
  if (row != wanted.size() || differing == 0)
    throw std::runtime_error("the hand-written steps give other rows");
}

double medianCheck(const fs::path& file) {
  std::vector<double> times;
  for (int run = 0; run < 5; ++run) times.push_back(seconds([&] { check(file); }));
  return median(times);
}

/// The process of its own comes first: a child's peak counts what its parent holds.
int measure(const fs::path& folder) {
  com::ActivateServer(VELMORA_COMPONENT);
  const fs::path large = setOf(folder, kLargeContacts);
  Figures figures;
  const ProcessRun once = runProcess({"/proc/self/exe", "once", large.string()});
  if (once.exitStatus != 0) throw std::runtime_error("the check failed in a process of its own");
  figures.report("detail period check, peak memory", once.peakMemoryMiB, 3072, "MiB");
  std::vector<double> generated, byHandTimes;
  {
    const auto connection = com::make<ado::Connection>();
    connection->Open(adoString(large, "Read"));
    const PlainEngine engine(large);
    compareAnswers(large, engine);
    const auto steps = generatedSteps();
    // One after the other: in turns, each would work in the memory that the other has just
    // given back.
    for (int run = 0; run < 15; ++run) generated.push_back(timeOfSteps(*connection, steps));
    for (int run = 0; run < 15; ++run)
      byHandTimes.push_back(seconds([&] { engine.run(byHand()); }));
  }
  std::printf("detail period check, 20,000 contacts, rows taken: %.3f s\n", medianCheck(large));
  std::printf("its four steps %.3f s, by hand %.3f s\n", median(generated), median(byHandTimes));
  figures.report("its four steps against the same written by hand",
                 median(generated) / median(byHandTimes), 1.2, "x");
  figures.report("four times the rows",
                 medianCheck(large) / medianCheck(setOf(folder, kLargeContacts / 4)), 4.5, "x");
  return figures.allKept() ? 0 : 1;
}

int run(const std::vector<std::string>& arguments) {
  if (arguments.size() == 1) return measure(arguments[0]);
  if (arguments.size() == 2 && arguments[0] == "once") {
    com::ActivateServer(VELMORA_COMPONENT);
    return check(arguments[1])->RecordCount() > 0 ? 0 : 1;
  }
  std::fputs("usage: bench_amount_check FOLDER | once SET\n", stderr);
  return 2;
}

}  // namespace

}  // namespace velmora::bench

int main(int argc, char** argv) try {
  return velmora::bench::run({argv + 1, argv + argc});
} catch (const std::exception& error) {
  std::fprintf(stderr, "bench_amount_check: %s\n", error.what());
  return 3;
}
