#pragma once

#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include "cli/demo/demo.h"
#include "explain/explain.h"
#include "velmora/collections/dictionary.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"
#include "velmora/interfaces.h"

namespace velmora::explain::test {

namespace fs = std::filesystem;

inline ado::ConnectionRef open(const fs::path& file, const char* mode) {
  auto connection = com::make<ado::Connection>();
  connection->Open("Provider=Velmora.Embedded;Data Source=" + file.string() + ";Mode=" + mode);
  return connection;
}

/// The small demonstration set, to be copied. Each process has its own.
inline const fs::path& smallSet(cli::demo::Faults faults) {
  struct Made {
    explicit Made(cli::demo::Faults kind)
        : file(fs::temp_directory_path() /
               ("velmora_explain_" + std::to_string(getpid()) +
                (kind == cli::demo::Faults::kPlanted ? "_faults" : "_none") + ".db")) {
      fs::remove(file);
      cli::demo::createSmallSet(*open(file, "Create"), kind);
    }
    ~Made() { fs::remove(file); }
    fs::path file;
  };
  static const Made planted(cli::demo::Faults::kPlanted), none(cli::demo::Faults::kLeftOut);
  return faults == cli::demo::Faults::kPlanted ? planted.file : none.file;
}

/// How a comparison is asked for.
struct Asked {
  Scope scope;
  bool estimates = false, outsourcing = false;
  int user = 0;
};

/// A user who sees two customers and two suppliers.
inline constexpr int kRestrictedUser = 16394;

inline Asked asked(bool receivables, Comparison comparison = Comparison::period) {
  Asked ask;
  ask.scope.comparison = comparison;
  ask.scope.receivables = receivables;
  ask.scope.period = comparison == Comparison::initial ? Period{2008, 1} : Period{2009, 3};
  ask.scope.itemClass = receivables ? 1 : 8;
  for (const int account :
       receivables ? std::vector{1122, 1221, 2203} : std::vector{1123, 2202, 2241})
    ask.scope.accounts.push_back({account, false});
  return ask;
}

/// Books of one's own that may be damaged.
class Books {
 public:
  explicit Books(cli::demo::Faults faults = cli::demo::Faults::kLeftOut)
      : file_(smallSet(faults).string() + ".copy") {
    com::ActivateServer(VELMORA_COMPONENT);
    fs::copy_file(smallSet(faults), file_, fs::copy_options::overwrite_existing);
    connection_ = open(file_, "ReadWrite");
    run("insert into t_AccessSwitch (FUserID, FUsed) values (16394, 1)\n"
        "insert into t_AccessRule (FUserID, FTableName, FKeyID) select 16394, 't_Item', FItemID "
        "from t_Item where FNumber in ('C000002', 'C000010', 'S000002', 'S000009')");
  }
  ~Books() {
    connection_->Close();
    fs::remove(file_);
  }
  Books(const Books&) = delete;
  Books& operator=(const Books&) = delete;

  ado::Connection& connection() { return *connection_; }
  void run(const std::string& batch) { connection_->Execute(batch); }

  Explanation explained(const Asked& ask) {
    const auto rows = compared(ask, true);
    const bool estimates = ask.estimates || ask.outsourcing;
    const auto without = estimates ? compared(ask, false) : ado::RecordsetRef();
    Scope scope = ask.scope;
    scope.callerString = callerString(ask);
    return explain(*connection_, scope, *rows, without.get());
  }

 private:
  std::string callerString(const Asked& ask) const {
    return "ConnectString={Provider=Velmora.Embedded;Data Source=" + file_.string() +
           ";Mode=ReadWrite};LANGUAGE=chs;UserID=" + std::to_string(ask.user) +
           ";SubID=" + (ask.scope.receivables ? "AR" : "AP");
  }

  ado::RecordsetRef compared(const Asked& ask, bool withEstimates) {
    const Scope& scope = ask.scope;
    auto filter = com::make<collections::Dictionary>();
    filter->Set("bArp", scope.receivables);
    filter->Set("bInitCheck", scope.comparison == Comparison::initial);
    filter->Set("bShowDetail", scope.detail);
    filter->Set("bUnPost", scope.unposted);
    filter->Set("bZanGu", withEstimates && ask.estimates);
    filter->Set("bWeiWai", withEstimates && ask.outsourcing);
    filter->Set("bChkForAdjust", scope.byCurrency);
    filter->Set("BYear", scope.period.year);
    filter->Set("BPeriod", scope.period.period);
    filter->Set("CurrencyID", scope.currency);
    filter->Set("ItemClass", scope.itemClass);
    std::string accounts, signs;
    for (const ScopeAccount& account : scope.accounts) {
      accounts += (accounts.empty() ? "" : ",") + std::to_string(account.id);
      signs += std::string(signs.empty() ? "" : ",") + (account.subtracted ? "-" : "+");
    }
    filter->Set("AcctList", accounts);
    filter->Set("AcctLogic", signs);
    const auto checks = com::CreateObject(_clsInitBalCheck::kProgId).as<_clsInitBalCheck>();
    const std::string dsn = callerString(ask);
    const auto answer = scope.comparison == Comparison::closing
                            ? checks->GetClosingAmtCheck(dsn, filter)
                            : checks->GetInitAmtCheck(dsn, filter);
    if (!answer)
      throw com::Error(com::error::kFailed, "comparison", com::GetErrorInfo()->description);
    return answer.as<ado::Recordset>();
  }

  fs::path file_;
  ado::ConnectionRef connection_;
};

/// The rows whose reasons do not add up to their difference, and how.
inline std::vector<std::string> unbalanced(const Explanation& explanation) {
  std::vector<std::string> wrong;
  for (const ExplainedRow& row : explanation.rows) {
    Amounts rest = row.row.difference();
    for (const RowReason& reason : row.reasons) rest -= reason.difference;
    if (rest.isZero()) continue;
    wrong.push_back(row.row.accountNumber + " " + row.row.itemNumber + " opening " +
                    rest.local.opening.toString() + " debit " + rest.local.debit.toString() +
                    " credit " + rest.local.credit.toString() + " balance " +
                    rest.local.balance.toString());
  }
  return wrong;
}

/// "1122 C000001 no-voucher 0 -5 0 -5 XSFP000042 记-7" for each reason, in local currency.
inline std::vector<std::string> reasonLines(const Explanation& explanation, char separator = ' ') {
  std::vector<std::string> lines;
  for (const ExplainedRow& row : explanation.rows)
    for (const RowReason& reason : row.reasons) {
      std::string line;
      const auto add = [&](const std::string& text) {
        if (!line.empty()) line += separator;
        line += text;
      };
      add(row.row.accountNumber);
      add(row.row.itemNumber);
      add(std::string(codeOf(reason.reason)));
      const Measures& amounts = reason.difference.local;
      for (const Decimal& amount :
           {amounts.opening, amounts.debit, amounts.credit, amounts.balance})
        add(amount.normalized().toString());
      const bool columns = separator != ' ';
      if (reason.document || columns) add(reason.document ? reason.document->number : "");
      if (reason.voucher)
        add(reason.voucher->word + "-" + std::to_string(reason.voucher->number));
      else if (columns)
        add("");
      lines.push_back(line);
    }
  return lines;
}

}  // namespace velmora::explain::test
