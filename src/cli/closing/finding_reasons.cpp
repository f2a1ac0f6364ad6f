#include "cli/closing/finding_reasons.h"

#include <algorithm>
#include <fmt/format.h>

#include "explain/sentences.h"

namespace velmora::cli {

namespace {

using explain::Explanation;
using explain::Reason;
using explain::RowReason;

constexpr int kReturnedBill = 10;

/// The check items whose findings tell something else than a document's number.
struct SpecialItems {
  std::string vouchers, writeOffs, returnedBills;

  explicit SpecialItems(const std::string& language) {
    explain::Sentences sentences(language);
    vouchers = sentences.of("%1凭证检查", {""});
    writeOffs = sentences.of("%1转销凭证检查", {""});
    returnedBills = sentences.of("%1退票凭证检查", {""});
  }
};

/// What stands in brackets: "转账[YSZZ000003][核销序号: 24]" has two texts.
std::vector<std::string> inBrackets(const std::string& message) {
  std::vector<std::string> texts;
  for (std::size_t open = message.find('['); open != std::string::npos;) {
    const std::size_t close = message.find(']', open);
    if (close == std::string::npos) break;
    texts.push_back(message.substr(open + 1, close - open - 1));
    open = message.find('[', close);
  }
  return texts;
}

/// The number at the end of "核销序号：22"; 0 where there is none.
int numberAtEnd(const std::string& text) {
  const std::size_t before = text.find_last_not_of("0123456789");
  const std::string digits = before == std::string::npos ? "" : text.substr(before + 1);
  return digits.empty() || digits.size() > 9 ? 0 : std::stoi(digits);
}

bool isVoucherAlone(const RowReason& reason) {
  return reason.voucher &&
         (reason.reason == Reason::noDocument || reason.reason == Reason::estimates ||
          reason.reason == Reason::cancelledVoucher);
}

/// The reasons by what a finding may tell of them.
class Places {
 public:
  explicit Places(const Explanation& explanation) {
    for (const explain::ExplainedRow& row : explanation.rows)
      for (const RowReason& reason : row.reasons) {
        hidden_ = hidden_ || reason.reason == Reason::notShown;
        add(row.row, reason);
      }
  }

  bool hidden() const { return hidden_; }
  /// Nothing where documents of different types share the number: which is meant cannot be told.
  std::optional<std::vector<ReasonInRow>> ofDocument(const std::string& number) const {
    const auto types = documents_.find(number);
    if (types == documents_.end()) return std::vector<ReasonInRow>();
    if (types->second.size() > 1) return std::nullopt;
    return types->second.begin()->second;
  }
  std::vector<ReasonInRow> ofVoucher(const std::string& name) const {
    return found(vouchers_, name);
  }
  std::vector<ReasonInRow> ofSettlement(int number) const { return found(settlements_, number); }
  /// Of the n-th returned bill without voucher, from 0.
  std::vector<ReasonInRow> ofReturnedBill(std::size_t n) const {
    return n < returnedBills_.size()
               ? std::next(returnedBills_.begin(), static_cast<int>(n))->second
               : std::vector<ReasonInRow>();
  }

 private:
  template <class Map, class Key>
  static std::vector<ReasonInRow> found(const Map& places, const Key& key) {
    const auto place = places.find(key);
    return place == places.end() ? std::vector<ReasonInRow>() : place->second;
  }

  void add(const explain::ComparedRow& row, const RowReason& reason) {
    const ReasonInRow place{&row, &reason};
    const bool voucherAlone = isVoucherAlone(reason);
    if (voucherAlone)
      vouchers_[fmt::format("{}-{}", reason.voucher->ledgerWord, reason.voucher->number)].push_back(
          place);
    // Where a voucher only probably belongs to the document, the amount is the voucher's.
    if (!reason.document || (voucherAlone && reason.probable)) return;
    addDocument(place, *reason.document);
    for (const explain::DocumentRef& document : reason.furtherDocuments)
      addDocument(place, document);
  }

  void addDocument(const ReasonInRow& place, const explain::DocumentRef& document) {
    if (document.settlement != 0) settlements_[document.settlement].push_back(place);
    if (document.contactType == kReturnedBill &&
        place.reason->reason == Reason::transferWithoutVoucher)
      returnedBills_[document.id].push_back(place);
    const bool isSettlement = document.contactType == 0;
    if (!isSettlement) documents_[document.number][document.contactType].push_back(place);
  }

  std::map<std::string, std::map<int, std::vector<ReasonInRow>>> documents_;  // by FType, too
  std::map<std::string, std::vector<ReasonInRow>> vouchers_;
  std::map<int, std::vector<ReasonInRow>> settlements_, returnedBills_;
  bool hidden_ = false;
};

/// The reasons that the findings show in, taken one after the other.
class Matcher {
 public:
  Matcher(const Places& places, const std::string& language) : places_(places), items_(language) {}

  std::optional<std::vector<ReasonInRow>> of(const Finding& finding) {
    auto found = named(finding);
    if (found && found->empty() && places_.hidden()) return std::nullopt;
    return found;
  }

 private:
  std::optional<std::vector<ReasonInRow>> named(const Finding& finding) {
    if (finding.item == items_.returnedBills) return places_.ofReturnedBill(returnedBills_++);
    if (finding.item == items_.writeOffs) return places_.ofSettlement(numberAtEnd(finding.message));
    const std::vector<std::string> texts = inBrackets(finding.message);
    if (texts.empty()) return std::nullopt;
    if (finding.item == items_.vouchers) return places_.ofVoucher(texts.front());
    if (texts.size() > 1)
      if (const int settlement = numberAtEnd(texts.back()); settlement != 0)
        return places_.ofSettlement(settlement);
    return places_.ofDocument(texts.front());
  }

  const Places& places_;
  SpecialItems items_;
  std::size_t returnedBills_ = 0;
};

}  // namespace

FindingReasons::FindingReasons(const Findings& findings, const Explanation& explanation,
                               const std::string& language) {
  const Places places(explanation);
  Matcher matcher(places, language);
  for (const Finding& finding : findings) {
    auto& reasons = byFinding_[finding.id] = matcher.of(finding);
    if (!reasons) continue;
    for (const ReasonInRow& place : *reasons) {
      auto& items = checks_[place.reason];
      if (std::ranges::find(items, finding.item) == items.end()) items.push_back(finding.item);
    }
  }
}

const std::optional<std::vector<ReasonInRow>>& FindingReasons::of(const Finding& finding) const {
  return byFinding_.at(finding.id);
}

std::optional<explain::Amounts> FindingReasons::moved(const Finding& finding) const {
  const auto& reasons = of(finding);
  if (!reasons) return std::nullopt;
  explain::Amounts sum;
  for (const ReasonInRow& place : *reasons) sum += place.reason->difference;
  return sum;
}

const std::vector<std::string>& FindingReasons::checksOf(const RowReason& reason) const {
  static const std::vector<std::string> none;
  const auto found = checks_.find(&reason);
  return found == checks_.end() ? none : found->second;
}

}  // namespace velmora::cli
