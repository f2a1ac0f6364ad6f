#pragma once

#include "explain/gaps.h"
#include "explain/sentences.h"

namespace velmora::explain {

/// Tells the reason of each gap. The amounts are the gap's own, whatever is recognised.
class Recognition {
 public:
  Recognition(const PostingTerms& terms, const Findings& findings, Sentences& sentences);

  /// The reason of a gap in a row that shows amounts with `decimals`.
  RowReason of(const Gap& gap, int decimals);

  /// Whether inventory made the voucher, as an estimate for goods without invoice.
  bool isEstimate(const Gap& gap) const;

 private:
  const Voucher* voucherOf(const Gap& gap) const;
  const std::vector<const Document*>& documentsOf(const Gap& gap) const;
  const Document* documentOf(const Gap& gap) const;
  bool mayNotBeShown(const Document* document) const;
  /// The other row that the voucher, or its documents, show in.
  const Gap* counterpart(const Gap& gap) const;

  /// As the reader calls it: what the account set itself calls it is in its own language.
  DocumentRef named(const Document& document);

  void tellDocumentAlone(const Gap& gap, RowReason& told);
  void tellMissingVoucher(RowReason& told);
  void tellVoucherAlone(const Gap& gap, const Voucher& voucher, RowReason& told);
  void tellPair(const Gap& gap, const Voucher& voucher, const Document& document, int decimals,
                RowReason& told);
  bool tellPeriods(const Voucher& voucher, const Document& document, RowReason& told);
  bool tellPlaces(const Gap& gap, const Voucher& voucher, const Document& document,
                  RowReason& told);
  bool onSubtractedAccount(const Voucher& voucher) const;
  void tellAccounts(const Document& document, const Voucher& voucher, int own, int other,
                    RowReason& told);
  void tellOtherRow(const Gap& gap, RowReason& told);
  void tellCarriedForward(const Gap& gap, RowReason& told);
  /// The likely other half of a document or voucher that stands alone.
  void tellTogether(const Gap& gap, RowReason& told);
  std::string accountNumber(int account) const;
  std::string itemNumber(int item) const;

  const PostingTerms& terms_;
  const Findings& findings_;
  Sentences& sentences_;
  std::map<std::pair<int, Decimal>, std::vector<const Gap*>> byBalance_;  ///< of a voucher
  std::map<std::pair<int, int>, std::vector<const Document*>> named_;     ///< by voucher and item
  std::map<const Gap*, const Gap*> together_, reversed_;
  std::map<int, std::string> accountNumbers_, itemNumbers_;
};

}  // namespace velmora::explain
