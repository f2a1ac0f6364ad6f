// Whatever the books hold, the reasons of a row add up to its difference.

#include <gmock/gmock.h>

#include "explain/books.h"
#include "printed_seed.h"
#include "sanitized.h"

namespace velmora::explain::test {
namespace {

/// A table that the comparison reads: the columns that tell a row, and what is damaged.
struct Damaged {
  const char* table;
  std::vector<const char*> key;
  std::vector<const char*> amounts, ids;
};

const std::vector<Damaged>& damagedTables() {
  static const std::vector<const char*> kBalances{"FBeginBalance", "FDebit",           "FCredit",
                                                  "FEndBalance",   "FBeginBalanceFor", "FDebitFor",
                                                  "FCreditFor",    "FEndBalanceFor"};
  static const std::vector<Damaged> tables{
      {"t_Voucher", {"FVoucherID"}, {}, {"FPosted", "FPeriod", "FYear"}},
      {"t_VoucherEntry",
       {"FVoucherID", "FEntryID"},
       {"FAmount", "FAmountFor"},
       {"FAccountID", "FDetailID", "FDC", "FCurrencyID"}},
      {"t_Balance",
       {"FYear", "FPeriod", "FAccountID", "FDetailID", "FCurrencyID"},
       kBalances,
       {"FAccountID", "FDetailID", "FPeriod"}},
      {"t_rp_Contact",
       {"FID"},
       {"FAmount", "FAmountFor"},
       {"FAccountID", "FCustomer", "FVoucherID", "FPeriod", "FYear", "FStatus", "FPre", "FType",
        "FRP", "FIsInit", "FCurrencyID", "FItemClassID"}},
      {"t_rp_ContactBal",
       {"FYear", "FPeriod", "FCustomer", "FAccountID", "FCurrencyID"},
       kBalances,
       {"FAccountID", "FCustomer", "FPeriod", "FRP"}},
      {"t_rp_ARBillOfSH",
       {"FBillID", "FIndex"},
       {"FSettleAmount", "FSettleAmountFor"},
       {"FAccountID"}},
      {"t_rp_NewCheckInfo",
       {"FInterID"},
       {},
       {"FVoucherID", "FCheckType", "FCustomer", "FRP", "FType", "FBillID", "FItemClassID"}},
      {"t_rp_CheckEntry",
       {"FID", "FContactID", "FEntryID"},
       {"FCheckAmount", "FCheckAmountFor"},
       {"FType", "FBillID", "FIsInit"}},
      {"t_rp_BegData", {"FInterID"}, {}, {"FAccountID", "FComID", "FType", "FRP", "FCurrencyID"}},
      {"t_rp_BegDataEntry", {"FInterID", "FEntryID"}, {"FAmount", "FAmountFor"}, {}},
      {"t_rp_ARPBill", {"FBillID"}, {}, {"FAccountID"}},
      {"ICSale", {"FInterID"}, {}, {"FCussentAcctID", "FPeriod"}},
      {"ICStockBillEntry", {"FInterID", "FEntryID"}, {"FAmount", "FProcessCost", "FQty"}, {}},
      {"t_MakeVouchTemp", {"FID"}, {}, {"FTranType", "FPeriod"}},
      {"t_ItemDetailV", {"FDetailID", "FItemClassID", "FItemID"}, {}, {"FItemID"}},
  };
  return tables;
}

class Damage {
 public:
  explicit Damage(std::uint64_t seed) : random_(seed) {}

  std::size_t pick(std::size_t below) {
    return std::uniform_int_distribution<std::size_t>(0, below - 1)(random_);
  }
  template <class List>
  const auto& of(const List& list) {
    return list[pick(list.size())];
  }
  bool chance(int percent) { return pick(100) < static_cast<std::size_t>(percent); }

  /// A statement that overwrites a cell or deletes a row.
  std::string next(ado::Connection& connection) {
    const Damaged& damaged = of(damagedTables());
    const std::string where = anyRow(connection, damaged);
    if (chance(15) || (damaged.amounts.empty() && damaged.ids.empty()))
      return std::string("delete from ") + damaged.table + where;
    const bool amount = !damaged.amounts.empty() && (damaged.ids.empty() || chance(50));
    const std::string column = of(amount ? damaged.amounts : damaged.ids);
    return std::string("update ") + damaged.table + " set " + column + " = " +
           (amount ? anyAmount(column) : anyId(column)) + where;
  }

  Asked comparison() {
    Asked ask = asked(chance(50), of(std::vector{Comparison::period, Comparison::period,
                                                 Comparison::closing, Comparison::initial}));
    Scope& scope = ask.scope;
    if (scope.comparison != Comparison::initial)
      scope.period = of(std::vector<Period>{{2009, 3}, {2009, 2}, {2008, 12}, {2008, 1}});
    scope.detail = chance(60);
    scope.currency = of(std::vector{0, 0, 1, 3});
    ask.user = chance(15) ? kRestrictedUser : 0;
    scope.unposted = scope.comparison != Comparison::initial && chance(40);
    if (scope.comparison != Comparison::closing && !scope.detail && chance(40)) {
      scope.byCurrency = true;
      scope.currency = 0;
    }
    if (scope.comparison == Comparison::closing && chance(30)) scope.accounts[1].subtracted = true;
    if (!scope.receivables && chance(50)) {
      ask.estimates = chance(70);
      ask.outsourcing = chance(70);
      scope.accounts.push_back({2204, false});
      scope.accounts.push_back({2205, false});
    }
    return ask;
  }

 private:
  std::string anyRow(ado::Connection& connection, const Damaged& damaged) {
    std::string columns;
    for (const char* column : damaged.key)
      columns += std::string(columns.empty() ? "" : ",") + column;
    const std::string table = damaged.table;
    const auto rows = connection.Execute("select distinct " + columns + " from " + table);
    std::string where;
    for (auto skip = pick(static_cast<std::size_t>(rows->RecordCount())); skip > 0; --skip)
      rows->MoveNext();
    for (std::size_t i = 0; i < damaged.key.size(); ++i)
      where += std::string(i == 0 ? " where " : " and ") + damaged.key[i] + " = " +
               rows->GetValue(i).toText();
    return where;
  }
  std::string anyAmount(const std::string& column) {
    return of(std::vector<std::string>{column + " + 0.01", column + " * 2", "-" + column, "0",
                                       column + " - 1234.5678", column + " + 99.9999"});
  }
  std::string anyId(const std::string& column) {
    if (column == "FDC") return "1 - FDC";
    if (column == "FPosted" || column == "FRP" || column == "FIsInit" || column == "FStatus")
      return "1 - " + column;
    if (column == "FPeriod") return of(std::vector<std::string>{"1", "2", "3", "4", "12"});
    if (column == "FAccountID" || column == "FCussentAcctID")
      return of(std::vector<std::string>{"0", "1122", "1221", "2203", "2202", "2241", "1123"});
    if (column == "FCustomer" || column == "FComID" || column == "FDetailID" || column == "FItemID")
      return of(std::vector<std::string>{"0", "1001", "1002", "1003", "50000001", "50000002"});
    if (column == "FVoucherID") return of(std::vector<std::string>{"0", "3", "17", "999999"});
    return of(std::vector<std::string>{"0", "1", "2", "3", "5", "9", "-1", "8"});
  }

  std::mt19937_64 random_;
};

/// More books on demand: VELMORA_LONG=10000.
int rounds() {
  const char* given = std::getenv("VELMORA_LONG");
  return given != nullptr ? std::atoi(given) : kSanitized ? 15 : 200;
}

TEST(Explanation, AddsUpWhateverTheBooksHold) {
  Damage damage(printedSeed());
  std::unique_ptr<Books> books;
  std::string done;
  for (int round = 0; round < rounds(); ++round) {
    if (round % 20 == 0) {
      books.reset();
      books = std::make_unique<Books>();
      done.clear();
    }
    for (auto faults = 1 + damage.pick(3); faults > 0; --faults) {
      const std::string statement = damage.next(books->connection());
      try {
        books->run(statement);
        done += statement + "\n";
      } catch (const com::Error&) {
        // A key that exists already: nothing was damaged.
      }
    }
    const Asked ask = damage.comparison();
    SCOPED_TRACE(done);
    ASSERT_THAT(unbalanced(books->explained(ask)), testing::IsEmpty())
        << static_cast<int>(ask.scope.comparison) << " receivables " << ask.scope.receivables
        << " detail " << ask.scope.detail << " currency " << ask.scope.currency << " unposted "
        << ask.scope.unposted << " estimates " << ask.estimates << ask.outsourcing << " user "
        << ask.user;
  }
}

}  // namespace
}  // namespace velmora::explain::test
