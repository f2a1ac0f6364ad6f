#include "explain/recognition.h"

#include <algorithm>
#include <array>

namespace velmora::explain {

namespace {

constexpr int kBadDebt = 8, kTransfer = 9, kReturnedBill = 10;

bool contains(const std::vector<int>& values, int value) {
  return std::ranges::find(values, value) != values.end();
}

/// The one that is on `account`, else the first.
const Document* best(const std::vector<const Document*>& documents, int account) {
  if (documents.empty()) return nullptr;
  const auto on = std::ranges::find_if(
      documents, [&](const Document* one) { return contains(one->accounts, account); });
  return on == documents.end() ? documents.front() : *on;
}

bool voucherAlone(const Gap& gap) {
  return gap.voucher != 0 && gap.documents == 0;
}

bool documentAlone(const Gap& gap) {
  return gap.voucher == 0 && gap.source != kInitialSource;
}

/// Less than the currency's last decimal for each line.
bool isRounding(const Gap& gap, int decimals) {
  const Decimal limit = Decimal::fromCoefficient(1, decimals) * Decimal(gap.lines + gap.documents);
  const Measures& amounts = gap.amounts.local;
  return std::ranges::all_of(
      std::array{amounts.opening, amounts.debit, amounts.credit, amounts.balance},
      [&](const Decimal& amount) { return amount.abs() < limit; });
}

/// What of a voucher and a document must be opposite for them to be one business.
using Likeness = std::tuple<RowKey, Decimal, Decimal>;

Likeness likeness(const Gap& gap) {
  return {gap.row, gap.amounts.local.balance, gap.amounts.original.balance};
}

Likeness opposite(const Gap& gap) {
  return {gap.row, -gap.amounts.local.balance, -gap.amounts.original.balance};
}

}  // namespace

Recognition::Recognition(const PostingTerms& terms, const Findings& findings, Sentences& sentences)
    : terms_(terms), findings_(findings), sentences_(sentences) {
  for (const auto& [key, document] : findings.documents)
    if (document.voucher > 0) named_[{document.voucher, document.item}].push_back(&document);
  std::multimap<Likeness, const Gap*> documents, vouchers;
  for (const Gap& gap : findings.gaps) {
    if (gap.voucher != 0) byBalance_[{gap.voucher, gap.amounts.local.balance}].push_back(&gap);
    if (documentAlone(gap) && documentOf(gap) != nullptr) documents.emplace(likeness(gap), &gap);
  }
  const auto take = [](auto& from, const Gap& gap, auto fits) -> const Gap* {
    const auto [first, last] = from.equal_range(opposite(gap));
    for (auto found = first; found != last; ++found) {
      if (!fits(*found->second)) continue;
      const Gap* other = found->second;
      from.erase(found);
      return other;
    }
    return nullptr;
  };
  for (const Gap& gap : findings.gaps) {
    const Voucher* voucher = voucherOf(gap);
    if (voucher == nullptr || !voucherAlone(gap) || !voucher->documents.empty()) continue;
    const int time = terms_.time(voucher->ref.period);
    const auto near = [&](const Gap& document) {
      const int distance = time - terms_.time(documentOf(document)->ref.period);
      return distance == 0 || distance == 1;
    };
    if (const Gap* document = take(documents, gap, near)) {
      together_[&gap] = document;
      together_[document] = &gap;
    } else if (const Gap* other = take(vouchers, gap, [](const Gap&) { return true; })) {
      reversed_[&gap] = other;
      reversed_[other] = &gap;
    } else {
      vouchers.emplace(likeness(gap), &gap);
    }
  }
  const bool restricted = terms.access.restricts();
  for (const auto& [id, voucher] : findings.vouchers)
    for (const VoucherLine& line : voucher.lines) {
      accountNumbers_.emplace(line.account, line.accountNumber);
      if (!restricted) itemNumbers_.emplace(line.item, line.itemNumber);
    }
  for (const auto& [key, document] : findings.documents)
    if (!document.hidden) itemNumbers_.emplace(document.item, document.itemNumber);
}

const Voucher* Recognition::voucherOf(const Gap& gap) const {
  const auto found = findings_.vouchers.find(gap.voucher);
  return found == findings_.vouchers.end() ? nullptr : &found->second;
}

/// Those of the row's contact, where there are any; a voucher may have very many.
const std::vector<const Document*>& Recognition::documentsOf(const Gap& gap) const {
  static const std::vector<const Document*> none;
  const auto ofContact = named_.find({gap.voucher, gap.row.item});
  if (ofContact != named_.end()) return ofContact->second;
  const Voucher* voucher = voucherOf(gap);
  return voucher == nullptr ? none : voucher->documents;
}

const Document* Recognition::documentOf(const Gap& gap) const {
  if (gap.voucher == 0) {
    const auto found = findings_.documents.find({gap.source, gap.document});
    return found == findings_.documents.end() ? nullptr : &found->second;
  }
  if (const auto& documents = documentsOf(gap); !documents.empty())
    return best(documents, gap.row.account);
  if (voucherOf(gap) != nullptr) return nullptr;
  const auto any = named_.lower_bound({gap.voucher, 0});
  const bool found = any != named_.end() && any->first.first == gap.voucher;
  return found ? best(any->second, gap.row.account) : nullptr;
}

const Gap* Recognition::counterpart(const Gap& gap) const {
  const auto same = byBalance_.find({gap.voucher, -gap.amounts.local.balance});
  if (same == byBalance_.end()) return nullptr;
  const auto other =
      std::ranges::find_if(same->second, [&](const Gap* one) { return one != &gap; });
  return other == same->second.end() ? nullptr : *other;
}

bool Recognition::isEstimate(const Gap& gap) const {
  const Voucher* voucher = voucherOf(gap);
  return voucher != nullptr && voucherAlone(gap) && voucher->documents.empty() &&
         voucher->origin == "Industry";
}

/// Totals of all contacts have initial data and vouchers of contacts that the user may not see.
bool Recognition::mayNotBeShown(const Document* document) const {
  if (document != nullptr) return document->hidden;
  return terms_.access.restricts() && !terms_.scope.detail;
}

DocumentRef Recognition::named(const Document& document) {
  DocumentRef ref = document.ref;
  if (document.source == kSettlementSource)
    ref.type = sentences_.of(terms_.scope.receivables ? "预收冲应收" : "预付冲应付");
  if (ref.contactType == kBadDebt) ref.type = sentences_.of("坏账");
  if (ref.contactType == kTransfer) ref.type = sentences_.of("转账");
  if (ref.contactType == kReturnedBill) ref.type = sentences_.of("退票");
  return ref;
}

RowReason Recognition::of(const Gap& gap, int decimals) {
  RowReason told;
  told.difference = gap.amounts;
  const Document* document = documentOf(gap);
  if (mayNotBeShown(document)) {
    told.reason = Reason::notShown;
    told.text = sentences_.of("您无权查看的单据。");
    return told;
  }
  if (document != nullptr) {
    told.document = named(*document);
    told.documents = 1;
  }
  const Voucher* voucher = voucherOf(gap);
  if (voucher != nullptr) {
    told.voucher = voucher->ref;
    told.documents = static_cast<int>(voucher->documents.size());
    // Those of other contacts have nothing to do with the row, and may be very many.
    if (document != nullptr && (gap.row.item == 0 || document->item == gap.row.item))
      for (const Document* other : documentsOf(gap))
        if (other != document && !other->hidden) told.furtherDocuments.push_back(named(*other));
  }
  if (gap.source == kInitialSource) {
    told.reason = Reason::initialData;
    told.text = sentences_.of("初始数据与总账期初余额不一致：请核对初始单据和期初余额。");
  } else if (gap.voucher == 0) {
    tellDocumentAlone(gap, told);
  } else if (voucher == nullptr) {
    tellMissingVoucher(told);
  } else if (document == nullptr) {
    tellVoucherAlone(gap, *voucher, told);
  } else {
    tellPair(gap, *voucher, *document, decimals, told);
  }
  tellOtherRow(gap, told);
  tellCarriedForward(gap, told);
  return told;
}

void Recognition::tellDocumentAlone(const Gap& gap, RowReason& told) {
  const Document* document = documentOf(gap);
  if (document == nullptr) {
    told.text = sentences_.of("原因不明：请联系技术支持。");
    return;
  }
  const bool offset = gap.source == kSettlementSource;
  const int type = document->ref.contactType;
  told.reason = offset                                      ? Reason::offsetWithoutVoucher
                : type >= kBadDebt && type <= kReturnedBill ? Reason::transferWithoutVoucher
                                                            : Reason::noVoucher;
  told.text = sentences_.of("%1未生成凭证：请生成凭证。", {sentences_.document(*told.document)});
  tellTogether(gap, told);
}

void Recognition::tellMissingVoucher(RowReason& told) {
  told.reason = Reason::cancelledVoucher;
  told.text = sentences_.of("%1的凭证已被删除或作废：请重新生成凭证。",
                            {told.document ? sentences_.document(*told.document) : ""});
}

void Recognition::tellVoucherAlone(const Gap& gap, const Voucher& voucher, RowReason& told) {
  const std::string name = sentences_.voucher(voucher.ref);
  if (isEstimate(gap)) {
    told.reason = Reason::estimates;
    told.text = sentences_.of("凭证%1由存货系统暂估：比较时请计入暂估和委外加工。", {name});
    return;
  }
  if (const auto reversed = reversed_.find(&gap); reversed != reversed_.end()) {
    told.reason = Reason::cancelledVoucher;
    told.text = sentences_.of("凭证%1与凭证%2互相冲销，没有对应单据。",
                              {name, sentences_.voucher(voucherOf(*reversed->second)->ref)});
    return;
  }
  told.reason = Reason::noDocument;
  told.text = voucher.origin.empty()
                  ? sentences_.of("凭证%1为手工录入，没有对应单据：请补录单据或更正凭证。", {name})
                  : sentences_.of("凭证%1由系统%2生成，没有对应单据：请补录单据或更正凭证。",
                                  {name, voucher.origin});
  tellTogether(gap, told);
}

void Recognition::tellTogether(const Gap& gap, RowReason& told) {
  const auto found = together_.find(&gap);
  if (found == together_.end()) return;
  const Gap& other = *found->second;
  told.probable = true;
  if (documentAlone(other)) {
    told.document = documentOf(other)->ref;
    told.documents = 1;
    told.text += sentences_.of("可能与%1属于同一笔业务。", {sentences_.document(*told.document)});
  } else {
    told.voucher = voucherOf(other)->ref;
    told.text += sentences_.of("可能与凭证%1属于同一笔业务。", {sentences_.voucher(*told.voucher)});
  }
}

void Recognition::tellPair(const Gap& gap, const Voucher& voucher, const Document& document,
                           int decimals, RowReason& told) {
  const std::string name = sentences_.voucher(voucher.ref),
                    paper = sentences_.document(*told.document);
  if (!document.audited) {
    told.reason = Reason::noDocument;
    told.text = sentences_.of("%1尚未审核，凭证%2已入总账：请审核单据。", {paper, name});
    return;
  }
  if (tellPeriods(voucher, document, told)) return;
  if (gap.lines == 0 && !voucher.ref.posted) {
    told.reason = Reason::notPosted;
    told.text = sentences_.of("%1的凭证%2未过账：请将凭证过账。", {paper, name});
    return;
  }
  if ((gap.lines == 0 || gap.documents == 0) && tellPlaces(gap, voucher, document, told)) return;
  const Decimal difference = gap.amounts.local.balance;
  const bool paired = gap.lines != 0 && gap.documents != 0;
  if (paired && gap.amounts.local.isZero()) {
    told.reason = Reason::otherCurrency;
    told.text = sentences_.of("%1与凭证%2的币别或原币金额不同：请更正凭证。", {paper, name});
  } else if (paired && onSubtractedAccount(voucher)) {
    told.reason = Reason::subtractedAccount;
    told.text = sentences_.of("凭证%2记在本次比较要减去的科目，%1则计入合计。", {paper, name});
  } else if (paired && isRounding(gap, decimals)) {
    told.reason = Reason::rounding;
    told.text = sentences_.of("%1与凭证%2相差%3，为尾差。", {paper, name, difference.toString()});
  } else if (paired || gap.documents != 0) {
    told.reason = Reason::otherAmount;
    told.text = sentences_.of("凭证%2与%1相差%3：请核对金额。",
                              {paper, name, difference.rescaled(decimals).toString()});
  } else {
    told.text = sentences_.of("凭证%2与%1的差异原因不明：请核对两者。", {paper, name});
  }
}

bool Recognition::onSubtractedAccount(const Voucher& voucher) const {
  return std::ranges::any_of(voucher.lines, [&](const VoucherLine& line) {
    return std::ranges::any_of(terms_.scope.accounts, [&](const ScopeAccount& account) {
      return account.subtracted && account.id == line.account;
    });
  });
}

bool Recognition::tellPeriods(const Voucher& voucher, const Document& document, RowReason& told) {
  if (voucher.ref.period == document.ref.period) return false;
  const std::string paper = sentences_.document(*told.document);
  if (document.business.year != 0 && document.business == voucher.ref.period) {
    told.reason = Reason::documentPeriod;
    told.text = sentences_.of("%1及凭证%2属于 %3 期，往来却计入 %4 期：请核对往来的财务日期。",
                              {paper, sentences_.voucher(voucher.ref), textOf(voucher.ref.period),
                               textOf(document.ref.period)});
    return true;
  }
  told.reason = Reason::otherPeriod;
  told.text = sentences_.of("凭证%2在 %3 期，%1在 %4 期：请使两者同期。",
                            {paper, sentences_.voucher(voucher.ref), textOf(voucher.ref.period),
                             textOf(document.ref.period)});
  if (!voucher.ref.posted) told.text += sentences_.of("凭证未过账。");
  return true;
}

void Recognition::tellAccounts(const Document& document, const Voucher& voucher, int own, int other,
                               RowReason& told) {
  // The document's type tells which of the two is the usual one.
  const bool voucherAsUsual = document.usualAccount != 0 && document.usualAccount == other;
  told.reason = own == 0 || voucherAsUsual ? Reason::documentAccount : Reason::otherAccount;
  const std::string paper = sentences_.document(*told.document),
                    name = sentences_.voucher(voucher.ref);
  if (own == 0)
    told.text = sentences_.of("%1没有往来科目，凭证%2记在科目 %3：请填写单据的往来科目。",
                              {paper, name, accountNumber(other)});
  else
    told.text = sentences_.of(voucherAsUsual
                                  ? "%1的往来科目是 %4，凭证%2记在科目 %3：请更正单据的往来科目。"
                                  : "%1的往来科目是 %4，凭证%2记在科目 %3：请更正凭证。",
                              {paper, name, accountNumber(other), accountNumber(own)});
}

bool Recognition::tellPlaces(const Gap& gap, const Voucher& voucher, const Document& document,
                             RowReason& told) {
  const int account = gap.row.account, item = gap.row.item;
  const bool sameItem = item == 0 || document.item == item;
  // Of several accounts, that of the other row that this one is short of.
  const Gap* other = counterpart(gap);
  const int elsewhere = other != nullptr && other->row.item == item ? other->row.account : 0;
  const std::string paper = sentences_.document(*told.document),
                    name = sentences_.voucher(voucher.ref);
  const auto tellContact = [&](int named, int posted) {
    told.reason = Reason::otherContact;
    told.text = sentences_.of("%1的往来单位是 %3，凭证%2记在 %4：请更正凭证。",
                              {paper, name, itemNumber(named), itemNumber(posted)});
  };
  if (gap.documents == 0) {
    if (!sameItem) {
      tellContact(document.item, item);
      return true;
    }
    if (account == 0 || contains(document.accounts, account) || document.accounts.empty())
      return false;
    const bool none = contains(document.accounts, 0);
    const int named = elsewhere != 0 ? elsewhere : document.accounts.back();
    tellAccounts(document, voucher, none ? 0 : named, account, told);
    return true;
  }
  for (const VoucherLine& line : voucher.lines)
    if (account != 0 && line.account == account && item != 0 && line.item != item) {
      tellContact(item, line.item);
      return true;
    }
  for (const VoucherLine& line : voucher.lines)
    if (account != 0 && line.account != account && line.item != 0 &&
        (item == 0 || line.item == item) && (elsewhere == 0 || line.account == elsewhere)) {
      tellAccounts(document, voucher, account, line.account, told);
      return true;
    }
  const auto compared = [&](const VoucherLine& line) {
    return std::ranges::any_of(terms_.scope.accounts,
                               [&](const ScopeAccount& one) { return one.id == line.account; });
  };
  for (const VoucherLine& line : voucher.lines) {
    if (account != 0 || line.item == 0) continue;
    if (item != 0 && line.item != item && compared(line)) {
      tellContact(item, line.item);
      return true;
    }
    if ((item == 0 || line.item == item) && !compared(line)) {
      told.reason = Reason::otherAccount;
      told.text = sentences_.of("%1的凭证%2记在科目 %3，该科目未参加比较。",
                                {paper, name, line.accountNumber});
      return true;
    }
  }
  return false;
}

void Recognition::tellOtherRow(const Gap& gap, RowReason& told) {
  const Gap* other = counterpart(gap);
  if (other == nullptr) return;
  told.other = OtherRow{accountNumber(other->row.account), itemNumber(other->row.item)};
  const auto& [account, item] = *told.other;
  if (account.empty())
    told.text += sentences_.of("另见往来单位 %1。", {item});
  else if (item.empty())
    told.text += sentences_.of("另见科目 %1。", {account});
  else
    told.text += sentences_.of("另见科目 %1 往来单位 %2。", {account, item});
}

void Recognition::tellCarriedForward(const Gap& gap, RowReason& told) {
  if (gap.amounts.local.opening.isZero() && gap.amounts.original.opening.isZero()) return;
  if (gap.source == kInitialSource) return;
  Period since = terms_.scope.period;
  const auto earlier = [&](const Period& period) {
    if (terms_.time(period) < terms_.time(since)) since = period;
  };
  if (told.document) earlier(told.document->period);
  if (told.voucher) earlier(told.voucher->period);
  if (since == terms_.scope.period) return;
  told.text += sentences_.of("自 %1 期结转。", {textOf(since)});
}

std::string Recognition::accountNumber(int account) const {
  const auto found = accountNumbers_.find(account);
  return found != accountNumbers_.end() ? found->second
         : account == 0                 ? ""
                                        : std::to_string(account);
}

std::string Recognition::itemNumber(int item) const {
  const auto found = itemNumbers_.find(item);
  if (found != itemNumbers_.end()) return found->second;
  return item == 0 ? "" : terms_.access.restricts() ? "***" : std::to_string(item);
}

}  // namespace velmora::explain
