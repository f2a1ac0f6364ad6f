// Measures the account check over customers and suppliers, one in a hundred at fault.
//
//   bench_account_check FOLDER   account sets are made there and kept for the next time
//
// Every figure is printed with the limit it has to keep; the exit status is 1 when one
// does not. The answer is compared before anything is timed.

#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "cli/demo/demo.h"
#include "cli/demo/table_writer.h"
#include "figures.h"
#include "measure.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"
#include "velmora/interfaces.h"

namespace velmora::bench {

namespace {

namespace fs = std::filesystem;

constexpr int kItemsPerFault = 100;

std::string adoString(const fs::path& file, const char* mode) {
  return "Provider=Velmora.Embedded;Data Source=" + file.string() + ";Mode=" + mode;
}

/// Enters `count` customers or suppliers; faults are missing accounts and accounts
/// without control attribute by turns.
void enterItems(ado::ProviderConnection& connection, const char* table, int count) {
  cli::demo::TableWriter items(
      connection, table,
      {"FItemID", "FNumber", "FName", "FARAccountID", "FAPAccountID", "FPreAcctID", "FPreArAcctID",
       "FPreApAcctID", "FOtherArAcctID", "FOtherApAcctID", "FPayTaxAcctID"});
  for (int i = 1; i <= count; ++i) {
    const int faulty = i % (2 * kItemsPerFault) == 0 ? 0 : 2221;
    const int account = i % kItemsPerFault == 0 ? faulty : 1122;
    items.row(i, "N" + std::to_string(i), "Trading company " + std::to_string(i), account, 2202,
              2203, 2203, 1123, 1221, 2241, 2221);
  }
  items.store();
}

/// An account set with `items` customers and suppliers, half of each.
void makeSet(const fs::path& file, int items) {
  const fs::path unfinished = file.string() + ".unfinished";
  fs::remove(unfinished);
  auto connection = com::make<ado::Connection>();
  connection->Open(adoString(unfinished, "Create"));
  cli::demo::createNewSet(*connection);
  connection->Execute(
      "insert into t_RP_SystemProfile values ('ARP', 'FCheckAccount', '1')\n"
      "insert into t_ItemClass (FItemClassID, FName, FSqlTableName) values "
      "(1, N'客户', 't_Organization'), (8, N'供应商', 't_Supplier')\n"
      "insert into t_Account (FAccountID, FNumber, FControlSystem) values (1122, '1122', 1), "
      "(1123, '1123', 2), (1221, '1221', 1), (2202, '2202', 2), (2203, '2203', 1), "
      "(2221, '2221', 0), (2241, '2241', 2)");
  for (const char* table : {"t_Organization", "t_Supplier"})
    enterItems(connection->provider(), table, items / 2);
  connection->Close();
  fs::rename(unfinished, file);
}

fs::path setOf(const fs::path& folder, int items) {
  const fs::path file = folder / ("items-" + std::to_string(items) + ".db");
  if (!fs::exists(file)) makeSet(file, items);
  return file;
}

std::int64_t findingsIn(const fs::path& file) {
  const std::string dsn = "ConnectString={" + adoString(file, "Read") + "};LANGUAGE=EN;SubID=AR";
  const auto rows = com::call(*com::CreateObject("Velmora.clsCheck"), "CheckValidAccount", dsn)
                        .toObject<ado::Recordset>();
  if (!rows) throw std::runtime_error("the check failed: " + com::GetErrorInfo()->description);
  return rows->RecordCount();
}

double medianCheck(const fs::path& file, int items) {
  if (const auto found = findingsIn(file); found != items / kItemsPerFault)
    throw std::runtime_error("the check found " + std::to_string(found) + " faults in " +
                             file.string());
  std::vector<double> times;
  for (int run = 0; run < 7; ++run) times.push_back(seconds([&] { findingsIn(file); }));
  return median(times);
}

int run(const fs::path& folder) {
  com::ActivateServer(VELMORA_COMPONENT);
  constexpr int kSmaller = 250'000, kLarge = 1'000'000;
  const double smaller = medianCheck(setOf(folder, kSmaller), kSmaller);
  const double large = medianCheck(setOf(folder, kLarge), kLarge);
  Figures figures;
  figures.report("account check of 1,000,000 items, median of 7", large, 2, "s");
  figures.report("1,000,000 items against a quarter of them", large / smaller, 4.4, "x");
  return figures.allKept() ? 0 : 1;
}

}  // namespace

}  // namespace velmora::bench

int main(int argc, char** argv) try {
  if (argc != 2) {
    std::fputs("usage: bench_account_check FOLDER\n", stderr);
    return 2;
  }
  return velmora::bench::run(argv[1]);
} catch (const std::exception& error) {
  std::fprintf(stderr, "bench_account_check: %s\n", error.what());
  return 3;
}
