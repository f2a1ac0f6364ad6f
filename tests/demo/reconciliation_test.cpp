// The comparison of receivables and payables with the ledger over the demonstration
// sets: nothing differs but what was planted.

#include <algorithm>
#include <fstream>
#include <gmock/gmock.h>
#include <span>
#include <sstream>

#include "answered.h"
#include "cli/demo/calendar.h"
#include "demo/account_set.h"
#include "sanitized.h"
#include "velmora/ado/connection_string.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"
#include "velmora/interfaces.h"

namespace velmora::cli::demo {
namespace {

using collections::Dictionary;
using collections::DictionaryRef;

enum class Kind { kInitial, kPeriod, kClosing };

/// A way to compare. Estimates are compared in payables only.
struct Mode {
  const char* name;
  Kind kind = Kind::kPeriod;
  bool detail = true;
  int currency = 0;
  const char* flags = "";  ///< further keys to set, separated by blanks
  const char* from = "";   ///< first and last item number
  const char* to = "";
};

constexpr Mode kModes[] = {
    {"period", Kind::kPeriod, false},
    {"period by item", Kind::kPeriod, true},
    {"period by item in RMB", Kind::kPeriod, true, 1},
    {"period in USD", Kind::kPeriod, false, 3},
    {"period for exchange adjustment", Kind::kPeriod, false, 0, "bChkForAdjust"},
    {"period of some items", Kind::kPeriod, true, 0, "", "C000003", "S000004"},
    {"period by item with unposted", Kind::kPeriod, true, 0, "bUnPost"},
    {"closing by item", Kind::kClosing, true},
    {"closing in HKD with unposted", Kind::kClosing, false, 2, "bUnPost"},
};
constexpr Mode kEstimateModes[] = {
    {"period by item with all estimates", Kind::kPeriod, true, 0, "bZanGu bWeiWai"},
    {"period with estimates in RMB", Kind::kPeriod, false, 1, "bZanGu"},
    {"period with outsourcing", Kind::kPeriod, false, 0, "bWeiWai bUnPost"},
    {"closing by item with all estimates", Kind::kClosing, true, 1, "bZanGu bWeiWai"},
    {"closing with outsourcing", Kind::kClosing, false, 0, "bWeiWai"},
};
constexpr Mode kInitialModes[] = {
    {"initial by item", Kind::kInitial, true},
    {"initial in USD", Kind::kInitial, false, 3},
    {"initial for exchange adjustment", Kind::kInitial, false, 0, "bChkForAdjust"},
};
constexpr Mode kInitialEstimateModes[] = {
    {"initial by item with all estimates", Kind::kInitial, true, 0, "bZanGu bWeiWai"},
    {"initial with all estimates in RMB", Kind::kInitial, false, 1, "bZanGu bWeiWai"},
};

std::string accountsOf(Side side, const Mode& mode) {
  if (side == Side::kReceivables) return "1122,2203,1221";
  std::string accounts = "2202,1123,2241";
  if (std::string_view(mode.flags).find("bZanGu") != std::string_view::npos) accounts += ",2204";
  if (std::string_view(mode.flags).find("bWeiWai") != std::string_view::npos) accounts += ",2205";
  return accounts;
}

DictionaryRef filterOf(Side side, int period, const Mode& mode) {
  auto filter = com::make<Dictionary>();
  filter->Set("bArp", side == Side::kReceivables);
  filter->Set("bInitCheck", mode.kind == Kind::kInitial);
  filter->Set("bShowDetail", mode.detail);
  filter->Set("BYear", yearOf(period));
  filter->Set("BPeriod", monthOf(period));
  filter->Set("CurrencyID", mode.currency);
  filter->Set("ItemClass", side == Side::kReceivables ? 1 : 8);
  const std::string accounts = accountsOf(side, mode);
  filter->Set("AcctList", accounts);
  std::string signs = "+";
  for (const char c : accounts)
    if (c == ',') signs += ",+";
  filter->Set("AcctLogic", signs);
  // One range serves both sides: C000003 to S000004.
  if (*mode.from != '\0') filter->Set("BItemNumber", mode.from);
  if (*mode.to != '\0') filter->Set("EItemNumber", mode.to);
  std::istringstream flags(mode.flags);
  for (std::string flag; flags >> flag;) filter->Set(flag, true);
  return filter;
}

ado::RecordsetRef compare(const std::string& connectionString, Side side, int period,
                          const Mode& mode) {
  com::ActivateServer(VELMORA_COMPONENT);
  const auto checks = com::CreateObject(_clsInitBalCheck::kProgId).as<_clsInitBalCheck>();
  const std::string dsn = "ConnectString={" + connectionString +
                          "};LANGUAGE=chs;SubID=" + (side == Side::kReceivables ? "AR" : "AP");
  auto filter = filterOf(side, period, mode);
  const auto answer = mode.kind == Kind::kClosing ? checks->GetClosingAmtCheck(dsn, filter)
                                                  : checks->GetInitAmtCheck(dsn, filter);
  if (!answer) throw com::Error(com::error::kFailed, "reconciliation", reason().description);
  return answer.as<ado::Recordset>();
}

ado::RecordsetRef compare(const AccountSet& set, Side side, int period, const Mode& mode) {
  return compare(set.connectionString(), side, period, mode);
}

std::string amount(const ado::RecordsetRef& rows, const char* column) {
  const std::string text = rows->Fields()(column).Value().toDecimal().toString();
  return text.substr(0, text.size() - 2);  // every amount has two decimals
}

bool differs(const ado::RecordsetRef& rows) {
  for (std::size_t i = 0; i < rows->fieldCount(); ++i)
    if (rows->Fields()(i).Name().starts_with("FDiff") && !rows->GetValue(i).toDecimal().isZero())
      return true;
  return false;
}

/// The rows that differ: account, item, and the differences in local currency.
std::vector<std::string> differences(const AccountSet& set, Side side, int period,
                                     const Mode& mode) {
  std::vector<std::string> lines;
  const auto rows = compare(set, side, period, mode);
  EXPECT_FALSE(rows->EOF_());
  for (; !rows->EOF_(); rows->MoveNext()) {
    if (!differs(rows)) continue;
    std::string line = rows->Fields()("FAcctNumber").Value().toText() + '\t' +
                       rows->Fields()("FItemClassNumber").Value().toText();
    if (mode.kind != Kind::kInitial)
      for (const char* column : {"FDiffBegAmount", "FDiffDebitAmount", "FDiffCreditAmount"})
        line += '\t' + amount(rows, column);
    lines.push_back(line + '\t' + amount(rows, "FDiffAmount"));
  }
  return lines;
}

constexpr int kPeriodStep = kSanitized ? 7 : 1;  // the first, one between and the current one

void expectAgreement(const AccountSet& set, Side side, int period, std::span<const Mode> modes) {
  for (const Mode& mode : modes)
    EXPECT_THAT(differences(set, side, period, mode), testing::IsEmpty())
        << (side == Side::kReceivables ? "ar " : "ap ") << yearOf(period) << '-' << monthOf(period)
        << ": " << mode.name;
}

void expectAgreement(const AccountSet& set, int period) {
  expectAgreement(set, Side::kReceivables, period, kModes);
  expectAgreement(set, Side::kPayables, period, kModes);
  expectAgreement(set, Side::kPayables, period, kEstimateModes);
}

TEST(Reconciliation, AgreesInEveryPeriodOfReceivablesWithoutFaults) {
  for (int period = 0; period <= kCurrentPeriod; period += kPeriodStep)
    expectAgreement(smallSetWithoutFaults(), Side::kReceivables, period, kModes);
}

TEST(Reconciliation, AgreesInEveryPeriodOfPayablesWithoutFaults) {
  for (int period = 0; period <= kCurrentPeriod; period += kPeriodStep) {
    expectAgreement(smallSetWithoutFaults(), Side::kPayables, period, kModes);
    expectAgreement(smallSetWithoutFaults(), Side::kPayables, period, kEstimateModes);
  }
}

TEST(Reconciliation, AgreesInAGeneratedSetWithoutFaults) {
  for (const int period : {0, 5, kCurrentPeriod - 1, kCurrentPeriod})
    if (!kSanitized || period == kCurrentPeriod)
      expectAgreement(generatedSetWithoutFaults(), period);
}

TEST(Reconciliation, AgreesInClosedPeriodsWhateverWasPlanted) {
  for (const AccountSet* set : {&smallSet(), &generatedSet()})
    expectAgreement(*set, kCurrentPeriod - 1);
}

TEST(Reconciliation, AgreesWhenTheModuleStarts) {
  for (const AccountSet* set :
       {&smallSet(), &smallSetWithoutFaults(), &generatedSetWithoutFaults()}) {
    expectAgreement(*set, Side::kReceivables, 0, kInitialModes);
    expectAgreement(*set, Side::kPayables, 0, kInitialModes);
    expectAgreement(*set, Side::kPayables, 0, kInitialEstimateModes);
  }
}

/// The balance and movements that the comparison took from payables for an account.
std::string payablesOf(const AccountSet& set, int period, const Mode& mode,
                       const std::string& account) {
  const auto rows = compare(set, Side::kPayables, period, mode);
  while (rows->Fields()("FAcctNumber").Value().toText() != account) rows->MoveNext();
  return amount(rows, "FArpBegAmount") + ' ' + amount(rows, "FArpDebitAmount") + ' ' +
         amount(rows, "FArpCreditAmount") + ' ' + amount(rows, "FArpAmount");
}

TEST(Reconciliation, HasEstimatesAndSettlementsToCompare) {
  constexpr Mode kEstimates{"", Kind::kPeriod, false, 0, "bZanGu bWeiWai"};
  for (const char* account : {"2204", "2205"}) {
    const auto before =
        payablesOf(smallSetWithoutFaults(), kCurrentPeriod - 1, kEstimates, account);
    const auto now = payablesOf(smallSetWithoutFaults(), kCurrentPeriod, kEstimates, account);
    EXPECT_THAT(before, testing::Not(testing::HasSubstr("0.00 0.00 0.00 0.00")));
    EXPECT_NE(before, now) << account;
  }
  // Offsets of new and of initial advances, before and in the current period.
  EXPECT_THAT(
      smallSetWithoutFaults().rows(
          "select n.FRP, n.FIsInit, case when n.FCheckDate >= '2009-03-01' then 1 else 0 end "
          "from t_rp_NewCheckInfo n where n.FCheckType = 1 group by n.FRP, n.FIsInit, "
          "case when n.FCheckDate >= '2009-03-01' then 1 else 0 end"),
      testing::SizeIs(8));
}

/// The file that a connection string names.
std::filesystem::path connectionFile(const std::string& connectionString) {
  return ado::ConnectionString(connectionString).value("Data Source");
}

/// Every cell of a comparison's rows.
std::string cells(const std::string& connectionString, Side side, const Mode& mode) {
  std::string text;
  for (const auto rows = compare(connectionString, side, kCurrentPeriod, mode); !rows->EOF_();
       rows->MoveNext(), text += '\n')
    for (std::size_t i = 0; i < rows->fieldCount(); ++i) {
      const auto& value = rows->GetValue(i);  // totals have no year and period
      text += (value.isNull() ? "NULL" : value.toText()) + '\t';
    }
  return text;
}

TEST(Reconciliation, AnswersTheSameOnOneThreadAsOnMany) {
  if (kSanitized) GTEST_SKIP() << "the engine's threads are not instrumented";
  for (const AccountSet* set : {&smallSet(), &generatedSet()}) {
    const std::string many = set->connectionString();
    const auto file = connectionFile(many);
    const std::filesystem::path copy = file.string() + ".one-thread";
    std::filesystem::copy_file(file, copy);
    const std::string one =
        "Provider=Velmora.Embedded;Data Source=" + copy.string() + ";Mode=Read;Threads=1";
    const auto held = com::make<ado::Connection>();  // the file is opened once
    held->Open(one);
    for (const Side side : {Side::kReceivables, Side::kPayables})
      for (const auto& modes :
           {std::span<const Mode>(kModes), std::span<const Mode>(kInitialModes)})
        for (const Mode& mode : modes)
          EXPECT_EQ(cells(one, side, mode), cells(many, side, mode)) << mode.name;
    for (const Mode& mode : kEstimateModes)
      EXPECT_EQ(cells(one, Side::kPayables, mode), cells(many, Side::kPayables, mode)) << mode.name;
    std::filesystem::remove(copy);
  }
}

std::vector<std::string> fileLines(const std::string& name) {
  std::ifstream file(VELMORA_SOURCE_DIR "/demo/" + name);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

constexpr Mode kWrittenDown[] = {
    {"period", Kind::kPeriod, false},
    {"period, unposted vouchers too", Kind::kPeriod, false, 0, "bUnPost"},
    {"closing", Kind::kClosing, false},
    {"closing, unposted vouchers too", Kind::kClosing, false, 0, "bUnPost"},
};

/// A line of the README's table: side, comparison, account, differences.
std::string tableLine(const char* side, const char* comparison, const std::string& difference) {
  std::vector<std::string> cells;
  std::istringstream parts(difference);
  for (std::string cell; std::getline(parts, cell, '\t');) cells.push_back(cell);
  std::string line = std::string("| ") + side + " | " + comparison + " | " +
                     (cells.at(0).empty() ? "all" : cells.at(0));
  for (std::size_t i = 2; i < cells.size(); ++i) line += " | " + cells[i];
  return line + " |";
}

TEST(Reconciliation, ShowsWhatTheReadmeTells) {
  std::vector<std::string> told = fileLines("README.md");
  std::erase_if(told, [](const std::string& line) {
    return !line.starts_with("| ar |") && !line.starts_with("| ap |");
  });
  std::vector<std::string> shown;
  for (const Side side : {Side::kReceivables, Side::kPayables})
    for (const Mode& mode : kWrittenDown)
      for (const std::string& line : differences(smallSet(), side, kCurrentPeriod, mode))
        shown.push_back(tableLine(side == Side::kReceivables ? "ar" : "ap", mode.name, line));
  EXPECT_EQ(shown, told);
}

TEST(Reconciliation, ShowsByItemWhatIsWrittenDown) {
  std::vector<std::string> shown;
  for (const Side side : {Side::kReceivables, Side::kPayables})
    for (const std::string& line :
         differences(smallSet(), side, kCurrentPeriod, {"", Kind::kPeriod, true}))
      shown.push_back((side == Side::kReceivables ? "ar\t" : "ap\t") + line);
  EXPECT_EQ(shown, fileLines("expected_differences.tsv"));
}

}  // namespace
}  // namespace velmora::cli::demo
