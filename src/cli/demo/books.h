#pragma once

#include <deque>
#include <map>
#include <span>
#include <vector>

#include "cli/demo/balances.h"
#include "cli/demo/random.h"
#include "cli/demo/tables.h"

namespace velmora::cli::demo {

/// Voucher words, as entered in t_VoucherGroup.
enum class VoucherGroup { kJournal = 1, kReceipt = 2, kPayment = 3 };

/// Who made a voucher: the books' own module, inventory, or a person in the ledger.
enum class VoucherOrigin { kModule, kInventory, kByHand };

struct VoucherHead {
  int period = 0;
  int day = 1;
  VoucherGroup group = VoucherGroup::kJournal;
  std::string_view explanation = {};
  VoucherOrigin origin = VoucherOrigin::kModule;
  bool unposted = false;
};

/// A line of a voucher. A line with a partner posts to a control account.
struct Posting {
  int account = 0;
  const Partner* partner = nullptr;
  Currency currency;
  Amount amount;
  bool debit = true;
};

/// A contact record. It counts in the contact balances only as `post` says.
struct Contact {
  int type = 0;
  int pre = 0;
  bool initial = false;
  int period = 0;
  collections::Date date;
  collections::Date financialDate;
  std::string_view number = {};
  int ownBill = 0;  ///< receivables' or payables' own document
  int invoice = 0;  ///< invoice of the inventory module
  const Partner* partner = nullptr;
  Amount amount;
  int account = 0;  ///< 0: none
  bool audited = true;
  int voucher = 0;
};

/// A document that may be settled: its contact record and what it stands for there.
struct Document {
  const Partner* partner = nullptr;
  int contact = 0;
  int bill = 0;
  int type = 0;  ///< of the contact record
  int voucher = 0;
  bool initial = false;
  Amount amount;
};

/// The books of one side: hands out numbers, keeps the balances in step with what is
/// written and holds the documents that wait for their settlement.
class Books {
 public:
  /// `ledger` and `tables` are shared by both sides and outlive the books.
  Books(const SideTerms& side, Tables& tables, AccountBalances& ledger,
        std::vector<Partner> partners, std::uint64_t seed);

  const SideTerms& side() const { return side_; }
  Tables& tables() { return tables_; }
  Random& random() { return random_; }
  const std::vector<Partner>& partners() const { return partners_; }
  const Partner& anyPartner();
  /// One whose documents are in local currency.
  const Partner& anyLocalPartner();
  /// Another partner with the same currency.
  const Partner& counterpartOf(const Partner& partner) const;

  std::string nextNumber(Series series);
  /// How many invoices, other receivables or payables and receipts or payments have
  /// been numbered.
  int documents() const;

  /// Writes a voucher and posts it to the ledger's balances unless it is to stay
  /// unposted; vouchers dated ahead stay unposted too. Returns its id.
  int addVoucher(const VoucherHead& head, std::span<const Posting> postings);
  /// Writes a contact record and returns its id.
  int addContact(const Contact& contact);
  /// Counts an amount in the contact balances; `increase`: more is owed.
  void postContact(const Partner& partner, int account, int period, Amount amount, bool increase) {
    contacts_.add(partner, account, period, amount, increase);
  }
  /// Enters what was owed before the first period, in both ledgers.
  void postOpening(const Partner& partner, int account, Amount amount, bool increase);
  /// The same for what receivables or payables do not know, in the ledger alone.
  void postLedgerOpening(const Partner& partner, int account, Amount amount, bool increase);

  /// Invoices that no receipt has settled yet, oldest first.
  std::deque<Document>& openInvoices() { return openInvoices_; }
  /// Advances from before the first period that no invoice has taken yet.
  std::deque<Document>& initialAdvances() { return initialAdvances_; }

  void writeBalances();

 private:
  void writeLedgerDetail();
  void writeContactBalances();

  const SideTerms& side_;
  Tables& tables_;
  AccountBalances& ledger_;
  std::vector<Partner> partners_;
  Random random_;
  std::array<int, kSeriesCount> numbers_{};
  PartnerBalances contacts_;
  PartnerBalances details_;
  std::deque<Document> openInvoices_;
  std::deque<Document> initialAdvances_;
};

/// Writes the balances of whole accounts, once both sides are complete.
void writeAccountBalances(Tables& tables, const AccountBalances& ledger);

}  // namespace velmora::cli::demo
