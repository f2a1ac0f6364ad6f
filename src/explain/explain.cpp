#include "explain/explain.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>

#include "explain/recognition.h"
#include "velmora/com/error.h"

namespace velmora::explain {

namespace {

int number(ado::Connection& connection, const std::string& sql) {
  const auto rows = connection.Execute(sql);
  return rows->EOF_() || rows->GetValue(0).isNull() ? 0 : rows->GetValue(0).toInt32();
}

bool hasTable(ado::Connection& connection, const char* table) {
  return number(connection,
                fmt::format("select count(*) from sysobjects where name = '{}'", table)) != 0;
}

void requireTables(ado::Connection& connection) {
  std::string missing;
  for (const char* table : {"t_rp_Contact", "t_rp_ContactBal", "t_rp_ARBillOfSH", "t_rp_ARPBill",
                            "t_rp_NewReceiveBill", "t_rp_BegData", "t_rp_BegDataEntry", "t_Balance",
                            "t_Voucher", "t_VoucherEntry", "t_VoucherGroup", "t_ItemDetailV"})
    if (!hasTable(connection, table)) missing.append(missing.empty() ? "" : ", ").append(table);
  if (!missing.empty())
    throw com::Error(
        com::error::kFailed, "explain",
        "the differences cannot be explained: the account set has no table " + missing);
}

/// Where the module was taken into use; without a setting, the period itself.
Period firstPeriod(ado::Connection& connection, const Scope& scope) {
  const auto setting = [&](const char* key) {
    return number(connection,
                  fmt::format("select FValue from t_RP_SystemProfile where FCategory = 'ARP' and "
                              "FKey = 'F{}{}'",
                              scope.receivables ? "AR" : "AP", key));
  };
  const Period first{setting("UseYear"), setting("UsePeriod")};
  const bool later = first.year > scope.period.year ||
                     (first.year == scope.period.year && first.period > scope.period.period);
  return first.year == 0 || later ? scope.period : first;
}

bool offsetsCount(ado::Connection& connection, bool receivables) {
  return number(connection, fmt::format("select count(*) from t_RP_SystemProfile where FKey = "
                                        "'F{}PreNeedVoucher' and FValue = '0'",
                                        receivables ? "AR" : "AP")) == 0;
}

/// One balance that is not the sum of what it is made of.
struct Remainder {
  Reason reason;
  std::string_view text, earlierText;
  Decimal sign;  ///< of what the balance has too much, as a part of the difference
};

constexpr std::string_view kContactText = "往来余额与单据合计不一致：请重新计算往来余额。";
constexpr std::string_view kContactEarlier = "自 %1 期结转：该期往来余额与单据合计不一致。";
constexpr std::string_view kLedgerText = "科目余额与凭证合计不一致：请检查总账的科目余额。";
constexpr std::string_view kLedgerEarlier = "自 %1 期结转：该期科目余额与凭证合计不一致。";

}  // namespace

class Inquiry::Explainer {
 public:
  Explainer(ado::Connection& connection, const Scope& scope) : connection_(connection) {
    requireTables(connection);
    terms_.scope = scope;
    terms_.periodsOfYear =
        std::max(12, number(connection, "select max(FPeriod) from t_PeriodDate"));
    terms_.first = firstPeriod(connection, scope);
    terms_.offsetsCount = offsetsCount(connection, scope.receivables);
    terms_.hasSettlements = hasTable(connection, "t_rp_NewCheckInfo");
    terms_.hasInvoices =
        hasWhatTells({"ICSale", "ICPurchase"},
                     "documents of inventory in another period could not be looked for");
    terms_.hasDocumentTypes =
        hasWhatTells({"t_rp_BillType"}, "documents' types and their usual accounts are not known");
    terms_.access = rowAccess(scope.callerString, kDocumentColumns);
    terms_.initialAccess = rowAccess(scope.callerString, kInitialColumns);
    if (terms_.access.restricts())
      notes_.emplace_back(
          "row access applies: documents that may not be shown are told as one reason a row");
    if (terms_.offsetsCount)
      terms_.offsetsCount = hasWhatTells({"t_rp_NewCheckInfo", "t_rp_CheckEntry"},
                                         "offsets of advances could not be looked for");
  }

  void ask() { found_ = readFindings(connection_, terms_); }

  Explanation all(ado::Recordset& rows, ado::Recordset* withoutEstimates) {
    std::vector<ComparedRow> compared = comparedRows(terms_.scope, rows);
    if (withoutEstimates != nullptr)
      for (const ComparedRow& row : comparedRows(terms_.scope, *withoutEstimates))
        withoutEstimates_.emplace(row.key, row.own);
    std::map<RowKey, std::vector<const Gap*>> gaps;
    for (const Gap& gap : found_.gaps) gaps[gap.row].push_back(&gap);
    Sentences sentences(terms_.scope.language);
    Recognition recognition(terms_, found_, sentences);
    Explanation explanation;
    for (ComparedRow& row : compared) {
      ExplainedRow explained{std::move(row), {}};
      tellGaps(explained, gaps[explained.row.key], recognition, sentences);
      tellRemainders(explained, gaps[explained.row.key], sentences);
      joinHidden(explained.reasons);
      std::ranges::stable_sort(explained.reasons, {}, &RowReason::reason);
      explanation.rows.push_back(std::move(explained));
    }
    explanation.notes = std::move(notes_);
    return explanation;
  }

  std::vector<Match> matched() {
    found_ = readFindings(connection_, terms_, Sought::ofPeriod);
    Sentences sentences(terms_.scope.language);
    Recognition recognition(terms_, found_, sentences);
    std::vector<Match> all;
    for (const Gap& gap : found_.gaps) {
      Match match{recognition.of(gap, 2), gap.ledger, gap.own};
      if (match.agrees()) match.reason.text.clear();
      all.push_back(std::move(match));
    }
    std::stable_partition(all.begin(), all.end(),
                          [](const Match& match) { return match.reason.voucher.has_value(); });
    return all;
  }

 private:
  /// Whether all tables are there; else a note tells what is not without them.
  bool hasWhatTells(std::initializer_list<const char*> tables, const char* otherwise) {
    bool all = true;
    for (const char* table : tables)
      if (!hasTable(connection_, table)) {
        all = false;
        notes_.push_back(fmt::format("the account set has no table {}: {}", table, otherwise));
      }
    return all;
  }

  /// What receivables or payables have in a row without estimates.
  const Amounts& documentsOwn(const ComparedRow& row) const {
    const auto found = withoutEstimates_.find(row.key);
    return found == withoutEstimates_.end() ? row.own : found->second;
  }

  void tellGaps(ExplainedRow& explained, const std::vector<const Gap*>& gaps,
                Recognition& recognition, Sentences& sentences) {
    const bool estimatesAsked = !withoutEstimates_.empty();
    Amounts estimates;
    const Gap* initial = nullptr;
    for (const Gap* gap : gaps) {
      if (estimatesAsked && recognition.isEstimate(*gap))
        estimates += gap->amounts;
      else if (gap->source == kInitialSource)
        initial = gap;
      else
        explained.reasons.push_back(recognition.of(*gap, explained.row.decimals));
    }
    estimates -= explained.row.own - documentsOwn(explained.row);
    // Estimates from before the first period are in the ledger's opening balance.
    if (initial != nullptr && estimatesAsked) {
      Amounts together = estimates;
      if ((together += initial->amounts).isZero()) return;
    }
    if (initial != nullptr)
      explained.reasons.push_back(recognition.of(*initial, explained.row.decimals));
    if (estimates.isZero()) return;
    explained.reasons.push_back(
        {.reason = Reason::estimates,
         .difference = estimates,
         .text = sentences.of("存货的暂估与总账的暂估凭证不一致：请核对暂估凭证。")});
  }

  /// How many documents are not shown is nobody's business either.
  static void joinHidden(std::vector<RowReason>& reasons) {
    const auto hidden = [](const RowReason& reason) { return reason.reason == Reason::notShown; };
    const auto first = std::ranges::find_if(reasons, hidden);
    if (first == reasons.end()) return;
    for (auto more = first + 1; more != reasons.end(); ++more)
      if (hidden(*more)) first->difference += more->difference;
    reasons.erase(std::remove_if(first + 1, reasons.end(), hidden), reasons.end());
    if (first->difference.isZero()) reasons.erase(first);
  }

  void tellRemainders(ExplainedRow& explained, const std::vector<const Gap*>& gaps,
                      Sentences& sentences) {
    const auto found = found_.documentSums.find(explained.row.key);
    const Amounts documents =
        found == found_.documentSums.end() ? Amounts() : Amounts() - found->second;
    Amounts ledger = documents;
    for (const Gap* gap : gaps) ledger += gap->amounts;
    const int side = terms_.scope.receivables ? 1 : -1;
    tellRemainder(explained, explained.row.ledger - ledger,
                  {Reason::ledgerBalance, kLedgerText, kLedgerEarlier, side}, ledgerGaps_,
                  readLedgerBalanceGaps, sentences);
    tellRemainder(explained, documents - documentsOwn(explained.row),
                  {Reason::contactBalance, kContactText, kContactEarlier, -1}, contactGaps_,
                  readContactBalanceGaps, sentences);
  }

  using BalanceGaps = std::map<RowKey, std::vector<BalanceGap>>;
  using ReadBalanceGaps = std::vector<BalanceGap>(ado::Connection&, const PostingTerms&);

  void tellRemainder(ExplainedRow& explained, Amounts rest, const Remainder& kind,
                     std::optional<BalanceGaps>& known, ReadBalanceGaps& read,
                     Sentences& sentences) {
    if (rest.isZero()) return;
    for (const BalanceGap& gap : earlierGaps(explained.row.key, rest, kind, known, read)) {
      RowReason told{.reason = Reason::carriedForward};
      for (Measures* measures : {&told.difference.local, &told.difference.original}) {
        const bool local = measures == &told.difference.local;
        measures->opening =
            kind.sign * (local ? gap.debit - gap.credit : gap.debitFor - gap.creditFor);
        measures->balance = measures->opening;
      }
      rest -= told.difference;
      told.text = sentences.of(kind.earlierText, {textOf(periodOf(gap.time))});
      explained.reasons.push_back(std::move(told));
    }
    if (!rest.isZero())
      explained.reasons.push_back(
          {.reason = kind.reason, .difference = rest, .text = sentences.of(kind.text)});
  }

  /// Gaps of earlier periods, where they are what the opening balance differs by.
  std::vector<BalanceGap> earlierGaps(const RowKey& row, const Amounts& rest, const Remainder& kind,
                                      std::optional<BalanceGaps>& known, ReadBalanceGaps& read) {
    if (rest.local.opening.isZero() && rest.original.opening.isZero()) return {};
    if (!known) {
      known.emplace();
      for (BalanceGap& gap : read(connection_, terms_)) (*known)[gap.row].push_back(std::move(gap));
    }
    std::vector<BalanceGap> earlier;
    Decimal local, original;
    for (const BalanceGap& gap : (*known)[row]) {
      if (gap.time >= terms_.checked()) continue;
      local += kind.sign * (gap.debit - gap.credit);
      original += kind.sign * (gap.debitFor - gap.creditFor);
      earlier.push_back(gap);
    }
    if (local != rest.local.opening || original != rest.original.opening) return {};
    return earlier;
  }

  Period periodOf(int time) const {
    const int periods = terms_.periodsOfYear;
    return {(time - 1) / periods, (time - 1) % periods + 1};
  }

  ado::Connection& connection_;
  PostingTerms terms_;
  Findings found_;
  std::map<RowKey, Amounts> withoutEstimates_;
  std::optional<BalanceGaps> ledgerGaps_, contactGaps_;
  std::vector<std::string> notes_;
};

Inquiry::Inquiry(ado::Connection& connection, const Scope& scope)
    : explainer_(std::make_unique<Explainer>(connection, scope)) {
  explainer_->ask();
}
Inquiry::Inquiry(Inquiry&& other) noexcept = default;
Inquiry& Inquiry::operator=(Inquiry&& other) noexcept = default;
Inquiry::~Inquiry() = default;

Explanation Inquiry::explain(ado::Recordset& rows, ado::Recordset* withoutEstimates) {
  return explainer_->all(rows, withoutEstimates);
}

std::vector<Match> matches(ado::Connection& connection, const Scope& scope) {
  return Inquiry::Explainer(connection, scope).matched();
}

Explanation explain(ado::Connection& connection, const Scope& scope, ado::Recordset& rows,
                    ado::Recordset* withoutEstimates) {
  return Inquiry(connection, scope).explain(rows, withoutEstimates);
}

}  // namespace velmora::explain
