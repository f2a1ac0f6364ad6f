#include "explain/postings.h"

#include <fmt/format.h>
#include <functional>
#include <vector>

#include "common/sql_lines.h"

namespace velmora::explain {

namespace {

/// A server may take the type of a union's or case's first amount for all: none is a bare 0.
constexpr const char* kNothing = "cast(0 as decimal(28,4))";

/// Where postings come from: the clauses of their query and the expressions of its columns.
struct Source {
  std::string from, where;
  std::string voucher = "0", source = "0", document = "0";
  std::string account, item, currency;
  std::string time;
  /// Debit and credit in local currency, or ("For") in that of the document. Receivables and
  /// payables call debit what makes the contact owe, or be owed, more.
  std::function<std::string(const char*form)> debit, credit;
  bool ledger = false;
  bool opening = false;  ///< no movement of any period
};

class Sources {
 public:
  explicit Sources(const PostingTerms& terms) : terms_(terms), scope_(terms.scope) {}

  Source voucherLines(bool posted) const {
    Source lines;
    lines.ledger = true;
    lines.from = "t_VoucherEntry l inner join t_Voucher h on h.FVoucherID = l.FVoucherID" +
                 detailJoin("l", posted);
    lines.voucher = "l.FVoucherID";
    lines.account = "l.FAccountID";
    lines.item = "s.FItemID";
    lines.currency = "l.FCurrencyID";
    lines.time = timeOf("h");
    lines.debit = [](const char* form) {
      return fmt::format("case when l.FDC = 1 then l.FAmount{} else 0 end", form);
    };
    lines.credit = [](const char* form) {
      return fmt::format("case when isnull(l.FDC,0) <> 1 then l.FAmount{} else 0 end", form);
    };
    lines.where = (posted ? "h.FPosted = 1" + sinceFirst("h")
                          : fmt::format("h.FPosted = 0 and h.FYear = {} and h.FPeriod = {}",
                                        scope_.period.year, scope_.period.period)) +
                  accounts("l.FAccountID") + currencies("l");
    return lines;
  }

  /// What the ledger had before the first period, or where initial data are compared.
  Source ledgerOpening() const {
    const Period period = scope_.comparison == Comparison::initial ? scope_.period : terms_.first;
    Source balances = ledgerBalances();
    balances.opening = true;
    balances.source = std::to_string(kInitialSource);
    balances.time = openingTime();
    balances.debit = [](const char* form) { return fmt::format("u.FBeginBalance{}", form); };
    balances.credit = [](const char*) { return kNothing; };
    balances.where +=
        fmt::format(" and u.FYear = {} and u.FPeriod = {}", period.year, period.period);
    return balances;
  }

  Source ledgerMovements() const {
    Source balances = ledgerBalances();
    balances.debit = [](const char* form) { return fmt::format("u.FDebit{}", form); };
    balances.credit = [](const char* form) { return fmt::format("u.FCredit{}", form); };
    balances.where += sinceFirst("u");
    return balances;
  }

  Source initialData() const {
    Source data;
    data.opening = true;
    data.from = "t_rp_BegData c inner join t_rp_BegDataEntry e on e.FInterID = c.FInterID" +
                itemJoin("c.FComID") + terms_.initialAccess.from;
    data.source = std::to_string(kInitialSource);
    data.account = "isnull(c.FAccountID,0)";
    data.item = "c.FComID";
    data.currency = "c.FCurrencyID";
    data.time = openingTime();
    data.debit = [](const char* form) {
      return fmt::format(
          "case when c.FType in (5,6,15,16) then -e.FAmount{0} else e.FAmount{0} end", form);
    };
    data.credit = [](const char*) { return kNothing; };
    data.where = documentCondition(data.account) + terms_.initialAccess.condition;
    return data;
  }

  /// Contact records, audited ones alone: only they count in the contact balances. Receipts and
  /// payments count line by line.
  Source contactRecords(bool receipts) const {
    Source records;
    records.from = "t_rp_Contact c" + itemJoin("c.FCustomer");
    if (receipts) records.from += " inner join t_rp_ARBillOfSH d on d.FBillID = c.FRPBillID";
    records.from += terms_.access.from;
    records.account = receipts ? "isnull(d.FAccountID,0)" : "isnull(c.FAccountID,0)";
    setVoucher(records, "c", "c.FID", kContactSource);
    records.item = "c.FCustomer";
    records.currency = "c.FCurrencyID";
    records.time = timeOf("c");
    const std::string amount = receipts ? "d.FSettleAmount" : "c.FAmount";
    // Refunds make the contact owe more again; so does what a transfer brings, while what it
    // takes away is kept negative. Bad debts are given up.
    const std::string raises =
        receipts ? "c.FPre < 0" : "c.FType not in (8,9) or (c.FType = 9 and c.FAmount > 0)";
    const std::string lowered = receipts ? "" : "case when c.FType = 9 then -1 else 1 end * ";
    records.debit = [=](const char* form) {
      return fmt::format("case when {} then {}{} else 0 end", raises, amount, form);
    };
    records.credit = [=](const char* form) {
      return fmt::format("case when not ({}) then {}{}{} else 0 end", raises, lowered, amount,
                         form);
    };
    records.where = fmt::format("c.FStatus = 1 and c.FIsInit = 0 and c.FType {} (5,6){} and ",
                                receipts ? "in" : "not in", sinceFirst("c")) +
                    documentCondition(records.account) + terms_.access.condition;
    return records;
  }

  /// Offsets of advances against invoices.
  Source offsets() const {
    Source entries;
    entries.from =
        "t_rp_CheckEntry a"
        " inner join t_rp_NewCheckInfo c on c.FID = a.FID and c.FContactID = a.FContactID"
        " inner join t_PeriodDate p on c.FCheckDate >= p.FStartDate and c.FCheckDate <= "
        "p.FEndDate" +
        itemJoin("c.FCustomer");
    // The side as a whole has no accounts, which the documents would have to tell.
    if (scope_.comparison != Comparison::closing)
      entries.from +=
          std::string(" left join t_rp_ARPBill b on b.FBillID = c.FBillID") +
          (terms_.hasInvoices ? " left join ICSale f on f.FInterID = c.FBillID"
                                " left join ICPurchase g on g.FInterID = c.FBillID"
                              : "") +
          " left join t_rp_BegData n on n.FInterID = c.FBillID"
          " left join t_rp_ARBillOfSH d on d.FBillID = a.FBillID and d.FIndex = a.FEntryID";
    entries.account = std::string(
                          "isnull(case when a.FIsInit <> 0 then n.FAccountID"
                          " when a.FType in (1,2) then b.FAccountID") +
                      (terms_.hasInvoices ? " when a.FType = 3 then f.FCussentAcctID"
                                            " when a.FType = 4 then g.FCussentAcctID"
                                          : "") +
                      " when a.FType in (5,6) then d.FAccountID end,0)";
    setVoucher(entries, "c", "c.FID", kSettlementSource);
    entries.item = "c.FCustomer";
    entries.currency = "c.FCurrencyID";
    entries.time = timeOf("p");
    const auto amountOf = [](const char* when) {
      return [when](const char* form) {
        return fmt::format("case when c.FType {} (5,6,15,16) then a.FCheckAmount{} else 0 end",
                           when, form);
      };
    };
    entries.debit = amountOf("in");
    entries.credit = amountOf("not in");
    entries.where = fmt::format("c.FCheckType = 1 and c.FRP = {} and c.FItemClassID = {}{}", side(),
                                scope_.itemClass, sinceFirst("p"));
    if (scope_.comparison != Comparison::closing) entries.where += accounts(entries.account);
    entries.where += currencies("c");
    return entries;
  }

  Source contactBalances() const {
    Source balances;
    balances.from = "t_rp_ContactBal c" + itemJoin("c.FCustomer") + terms_.access.from;
    balances.account = "c.FAccountID";
    balances.item = "c.FCustomer";
    balances.currency = "c.FCurrencyID";
    balances.time = timeOf("c");
    balances.debit = [](const char* form) { return fmt::format("c.FDebit{}", form); };
    balances.credit = [](const char* form) { return fmt::format("c.FCredit{}", form); };
    balances.where =
        documentCondition(balances.account) + sinceFirst("c") + terms_.access.condition;
    return balances;
  }

  std::vector<Source> ledgerPostings() const {
    std::vector<Source> sources{ledgerOpening()};
    if (scope_.comparison == Comparison::initial) return sources;
    sources.push_back(voucherLines(true));
    if (scope_.unposted) sources.push_back(voucherLines(false));
    return sources;
  }

  std::vector<Source> documents() const {
    std::vector<Source> sources{initialData()};
    if (scope_.comparison == Comparison::initial) return sources;
    sources.push_back(contactRecords(false));
    sources.push_back(contactRecords(true));
    if (terms_.offsetsCount) sources.push_back(offsets());
    return sources;
  }

 private:
  const char* side() const { return scope_.receivables ? "1" : "0"; }

  std::string timeOf(const char* alias) const {
    return fmt::format("{0}.FYear*{1}+{0}.FPeriod", alias, terms_.periodsOfYear);
  }
  std::string openingTime() const {
    const bool compared = scope_.comparison == Comparison::initial;
    return std::to_string(compared ? terms_.checked() : terms_.time(terms_.first) - 1);
  }
  std::string sinceFirst(const char* alias) const {
    return fmt::format(" and {} between {} and {}", timeOf(alias), terms_.time(terms_.first),
                       terms_.checked());
  }

  std::string accountList() const {
    std::string list;
    for (const ScopeAccount& account : scope_.accounts)
      list += (list.empty() ? "" : ",") + std::to_string(account.id);
    return list;
  }
  std::string accounts(const std::string& column) const {
    return fmt::format(" and {} in ({})", column, accountList());
  }
  std::string currencies(const char* alias) const {
    if (scope_.byCurrency) return fmt::format(" and {}.FCurrencyID > 1", alias);
    if (scope_.currency == 0) return "";
    return fmt::format(" and {}.FCurrencyID = {}", alias, scope_.currency);
  }

  /// The rows' customers or suppliers.
  std::string itemJoin(const std::string& column) const {
    if (!scope_.detail) return "";
    std::string join = fmt::format(" inner join t_Item i on i.FItemID = {} and i.FItemClassID = {}",
                                   column, scope_.itemClass);
    if (!scope_.firstItem.empty()) join += " and i.FNumber >= " + quoted(scope_.firstItem);
    if (!scope_.lastItem.empty()) join += " and i.FNumber <= " + quoted(scope_.lastItem);
    return join;
  }

  /// From a ledger's row to the customers or suppliers of its combination.
  std::string detailJoin(const std::string& alias, bool posted) const {
    if (scope_.detail)
      return fmt::format(" inner join t_ItemDetailV s on s.FDetailID = {}.FDetailID", alias) +
             itemJoin("s.FItemID");
    if (scope_.comparison != Comparison::closing || !posted) return "";
    return fmt::format(
        " inner join t_Account t on t.FAccountID = {0}.FAccountID"
        " inner join t_ItemDetailV s on s.FDetailID = {0}.FDetailID"
        " and (t.FDetailID = 0 or s.FItemClassID = {1})",
        alias, scope_.itemClass);
  }

  Source ledgerBalances() const {
    Source balances;
    balances.ledger = true;
    balances.from = "t_Balance u" + detailJoin("u", true);
    balances.account = "u.FAccountID";
    balances.item = "s.FItemID";
    balances.currency = "u.FCurrencyID";
    balances.time = timeOf("u");
    balances.where = (scope_.byCurrency ? std::string("u.FCurrencyID > 1")
                                        : fmt::format("u.FCurrencyID = {}", scope_.currency)) +
                     accounts("u.FAccountID");
    if (!scope_.detail && scope_.comparison != Comparison::closing)
      balances.where += " and u.FDetailID = 0";
    return balances;
  }

  /// Of receivables' and payables' own tables, alias c.
  std::string documentCondition(const std::string& account) const {
    std::string condition = fmt::format("c.FItemClassID = {}", scope_.itemClass);
    if (!scope_.byCurrency) condition += fmt::format(" and c.FRP = {}", side());
    if (scope_.comparison != Comparison::closing)
      condition += " and " + account + " in (" + accountList() + ")";
    return condition + currencies("c");
  }

  static void setVoucher(Source& source, const std::string& alias, const std::string& key,
                         int kind) {
    const std::string has = "case when " + alias + ".FVoucherID > 0 then ";
    source.voucher = has + alias + ".FVoucherID else 0 end";
    source.source = has + "0 else " + std::to_string(kind) + " end";
    source.document = has + "0 else " + key + " end";
  }

  const PostingTerms& terms_;
  const Scope& scope_;
};

/// The columns that tell the row.
std::string rowColumns(const Scope& scope, const Source& source) {
  return fmt::format("{} as FAcctID, {} as FItemID, {} as FCurrencyID",
                     scope.comparison == Comparison::closing ? "0" : source.account,
                     scope.detail ? source.item : "0", scope.byCurrency ? source.currency : "0");
}

/// What a posting adds to the debit measure, the credit measure and the balance. A liability
/// grows on the ledger's credit side; in the closing comparison the contact balances' sides
/// are kept and the ledger's are exchanged, otherwise the other way round.
class MeasureColumns {
 public:
  MeasureColumns(const Scope& scope, const Source& source) : scope_(scope), source_(source) {}

  std::string of(const char* form) const {
    const std::string debit = "(" + source_.debit(form) + ")",
                      credit = "(" + source_.credit(form) + ")";
    const bool closing = scope_.comparison == Comparison::closing;
    const bool exchanged = !scope_.receivables && source_.ledger == closing;
    const std::string sign = source_.ledger ? movementSign() : "-";
    const bool owes = source_.ledger && scope_.receivables;
    return fmt::format("{} as FIn{}, {} as FOut{}, {}({} - {}) as FNet{}",
                       source_.opening ? kNothing : sign + (exchanged ? credit : debit), form,
                       source_.opening ? kNothing : sign + (exchanged ? debit : credit), form,
                       owes ? "" : "-", debit, credit, form);
  }

 private:
  /// A subtracted account's movements count against the others', its balance does not. Unposted
  /// vouchers count as they are.
  std::string movementSign() const {
    std::string subtracted;
    for (const ScopeAccount& account : scope_.accounts)
      if (account.subtracted)
        subtracted += (subtracted.empty() ? "" : ",") + std::to_string(account.id);
    if (subtracted.empty() || source_.where.starts_with("h.FPosted = 0")) return "";
    return fmt::format("case when {} in ({}) then -1 else 1 end * ", source_.account, subtracted);
  }

  const Scope& scope_;
  const Source& source_;
};

std::string posting(const Scope& scope, const Source& source) {
  const MeasureColumns columns(scope, source);
  return fmt::format(
      "select {} as FVoucherID, {} as FSource, {} as FDocumentID,\n {},\n {} as FLines, {} as "
      "FDocuments, {} as FTime,\n {},\n {}\n from {}\n where {}",
      source.voucher, source.source, source.document, rowColumns(scope, source),
      source.ledger ? 1 : 0, source.ledger ? 0 : 1, source.time, columns.of(""), columns.of("For"),
      source.from, source.where);
}

std::string postings(const Scope& scope, const std::vector<Source>& sources) {
  std::string query;
  for (const Source& source : sources)
    query += (query.empty() ? "" : "\nunion all\n") + posting(scope, source);
  return query;
}

// Sums over postings `f`, to be filled in by inBothCurrencies. Those of earlier periods, by far
// the most, move the opening balance and the balance alike and nothing else: two sums a currency
// are enough for them.
constexpr std::string_view kEarlierSums =
    "sum(f.FNet{1}) as FOpening{1}, {0} as FDebit{1}, {0} as FCredit{1}, "
    "sum(f.FNet{1}) as FBalance{1}";
constexpr std::string_view kPeriodSums =
    "{0} as FOpening{1}, sum(f.FIn{1}) as FDebit{1}, sum(f.FOut{1}) as FCredit{1}, "
    "sum(f.FNet{1}) as FBalance{1}";
/// Of both together.
constexpr std::string_view kSums =
    "sum(g.FOpening{1}), sum(g.FDebit{1}), sum(g.FCredit{1}), sum(g.FBalance{1})";

constexpr std::string_view kEarlierGaps = "sum(f.FNet{1}) <> 0";
constexpr std::string_view kPeriodGaps =
    "sum(f.FIn{1}) <> 0 or sum(f.FOut{1}) <> 0 or sum(f.FNet{1}) <> 0";
constexpr std::string_view kGaps =
    "sum(g.FOpening{1}) <> 0 or sum(g.FDebit{1}) <> 0 or sum(g.FCredit{1}) <> 0 or "
    "sum(g.FBalance{1}) <> 0";

std::string inBothCurrencies(std::string_view columns, const char* separator) {
  return fmt::format(fmt::runtime(columns), kNothing, "") + separator +
         fmt::format(fmt::runtime(columns), kNothing, "For");
}

/// Movements by row and time, without sign.
std::string movements(const Scope& scope, const Source& source, const char* sign) {
  std::string amounts;
  for (const char* form : {"", "For"})
    amounts += fmt::format(", {0}({1}) as FDebit{2}, {0}({3}) as FCredit{2}", sign,
                           source.debit(form), form, source.credit(form));
  return fmt::format("select {}, {} as FTime{}\n from {}\n where {}", rowColumns(scope, source),
                     source.time, amounts, source.from, source.where);
}

/// Balances less what they are made of, by row and time.
std::string movementGaps(const Scope& scope, const Source& balances,
                         const std::vector<Source>& parts) {
  std::string query = movements(scope, balances, "");
  for (const Source& part : parts) query += "\nunion all\n" + movements(scope, part, "-");
  return fmt::format(
      "select f.FAcctID, f.FItemID, f.FCurrencyID, f.FTime, sum(f.FDebit), sum(f.FCredit),"
      " sum(f.FDebitFor), sum(f.FCreditFor)\nfrom (\n{}\n) f\n"
      "group by f.FAcctID, f.FItemID, f.FCurrencyID, f.FTime\n"
      "having sum(f.FDebit) <> 0 or sum(f.FCredit) <> 0 or sum(f.FDebitFor) <> 0 or"
      " sum(f.FCreditFor) <> 0\norder by 1, 2, 3, 4",
      query);
}

}  // namespace

std::string createGaps() {
  std::string amounts;
  for (const char* form : {"", "For"})
    for (const char* measure : {"FOpening", "FDebit", "FCredit", "FBalance"})
      amounts += fmt::format(", {}{} decimal(28,4)", measure, form);
  return "create table #ExplainGap (FVoucherID int, FSource int, FDocumentID int, FAcctID int, "
         "FItemID int, FCurrencyID int, FLines int, FDocuments int, FLedger decimal(28,4), "
         "FOwn decimal(28,4)" +
         amounts + ")";
}

std::string insertGaps(const PostingTerms& terms, Sought sought) {
  const Sources sources(terms);
  std::vector<Source> all = sources.ledgerPostings();
  for (Source& document : sources.documents()) all.push_back(std::move(document));
  const bool gaps = sought == Sought::gaps;
  const auto key = [](const char* alias) {
    return fmt::format(
        "{0}.FVoucherID, {0}.FSource, {0}.FDocumentID, {0}.FAcctID, {0}.FItemID, {0}.FCurrencyID",
        alias);
  };
  // What each side has of the period is told of all its postings alone.
  const std::string sides = gaps
                                ? fmt::format("{0} as FLedger, {0} as FOwn", kNothing)
                                : "sum(case when f.FLines = 1 then f.FNet else 0 end) as FLedger, "
                                  "sum(case when f.FDocuments = 1 then -f.FNet else 0 end) as FOwn";
  return fmt::format(
      "insert into #ExplainGap\n"
      "select {gkey}, sum(g.FLines), sum(g.FDocuments), sum(g.FLedger), sum(g.FOwn),\n {sums}\n"
      "from (\n"
      "select {fkey}, sum(f.FLines) as FLines, sum(f.FDocuments) as FDocuments,\n"
      " {nothing} as FLedger, {nothing} as FOwn, 0 as FOfPeriod,\n {earlierSums}\n"
      "from (\n{postings}\n) f where f.FTime < {checked}\n"
      "group by {fkey}\nhaving {earlierGaps}\n"
      "union all\n"
      "select {fkey}, sum(f.FLines), sum(f.FDocuments),\n {sides}, 1,\n {periodSums}\n"
      "from (\n{postings}\n) f where f.FTime = {checked}\n"
      "group by {fkey}{periodGaps}\n"
      ") g\ngroup by {gkey}\nhaving {having}",
      fmt::arg("gkey", key("g")), fmt::arg("fkey", key("f")), fmt::arg("nothing", kNothing),
      fmt::arg("sums", inBothCurrencies(kSums, ",\n ")),
      fmt::arg("earlierSums", inBothCurrencies(kEarlierSums, ",\n ")),
      fmt::arg("periodSums", inBothCurrencies(kPeriodSums, ",\n ")), fmt::arg("sides", sides),
      fmt::arg("postings", postings(terms.scope, all)), fmt::arg("checked", terms.checked()),
      fmt::arg("earlierGaps", inBothCurrencies(kEarlierGaps, " or ")),
      fmt::arg("periodGaps",
               gaps ? "\nhaving " + inBothCurrencies(kPeriodGaps, " or ") : std::string()),
      fmt::arg("having", gaps ? inBothCurrencies(kGaps, " or ") : "max(g.FOfPeriod) = 1"));
}

std::string documentSums(const PostingTerms& terms) {
  const std::string documents = postings(terms.scope, Sources(terms).documents());
  const auto part = [&](std::string_view sums, const char* compare) {
    return fmt::format(
        "select f.FAcctID, f.FItemID, f.FCurrencyID,\n {}\nfrom (\n{}\n) f where f.FTime {} {}\n"
        "group by f.FAcctID, f.FItemID, f.FCurrencyID",
        inBothCurrencies(sums, ",\n "), documents, compare, terms.checked());
  };
  return fmt::format(
      "select g.FAcctID, g.FItemID, g.FCurrencyID,\n {}\nfrom (\n{}\nunion all\n{}\n) g\n"
      "group by g.FAcctID, g.FItemID, g.FCurrencyID",
      inBothCurrencies(kSums, ",\n "), part(kEarlierSums, "<"), part(kPeriodSums, "="));
}

std::string contactBalanceGaps(const PostingTerms& terms) {
  const Sources sources(terms);
  std::vector<Source> documents{sources.contactRecords(false), sources.contactRecords(true)};
  // Only the balances of the side as a whole have the offsets, once as debit and credit.
  if (terms.offsetsCount && terms.scope.comparison == Comparison::closing)
    documents.push_back(sources.offsets());
  return movementGaps(terms.scope, sources.contactBalances(), documents);
}

std::string ledgerBalanceGaps(const PostingTerms& terms) {
  const Sources sources(terms);
  return movementGaps(terms.scope, sources.ledgerMovements(), {sources.voucherLines(true)});
}

}  // namespace velmora::explain
