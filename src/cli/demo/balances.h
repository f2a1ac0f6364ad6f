#pragma once

#include <array>
#include <map>
#include <utility>
#include <vector>

#include "cli/demo/calendar.h"
#include "cli/demo/partners.h"

namespace velmora::cli::demo {

struct Movement {
  Amount debit;
  Amount credit;

  void add(Amount amount, bool isDebit) { (isDebit ? debit : credit) += amount; }
};

/// One balance from the opening to the current period.
struct History {
  Amount opening;
  std::array<Movement, kPeriods> periods;

  /// Adds a posting; before the first period it is part of the opening balance.
  /// Periods after the current one have no balances yet and are left out.
  void add(int period, Amount amount, bool isDebit);

  /// Calls row(period, begin, movement, end) for each period from the first on in
  /// which there is a balance or a movement.
  template <class Row>
  void forEachPeriod(Row row) const {
    Amount begin = opening;
    bool started = begin != Amount{};
    for (int period = 0; period < kPeriods; ++period) {
      const Movement& movement = periods[static_cast<std::size_t>(period)];
      const Amount end = begin + movement.debit - movement.credit;
      started = started || movement.debit != Amount{} || movement.credit != Amount{};
      if (started) row(period, begin, movement, end);
      begin = end;
    }
  }
};

/// Balances of a side's partners on its control accounts.
class PartnerBalances {
 public:
  PartnerBalances(const SideTerms& side, std::size_t partners)
      : accounts_(controlAccounts(side)), histories_(partners * (accounts_.size() + 1)) {
    accounts_.push_back(0);
  }

  /// `account` is a control account of the side, or 0 for what has none.
  void add(const Partner& partner, int account, int period, Amount amount, bool isDebit);

  /// Calls visit(position of the partner, account, history) for each of them.
  template <class Visit>
  void forEach(Visit visit) const {
    for (std::size_t i = 0; i < histories_.size(); ++i)
      visit(i / accounts_.size(), accounts_[i % accounts_.size()], histories_[i]);
  }

 private:
  std::vector<int> accounts_;
  std::vector<History> histories_;  ///< of each partner, one an account
};

/// Balances of whole accounts by currency.
class AccountBalances {
 public:
  void add(int account, int currency, int period, Amount amount, bool isDebit) {
    histories_[{account, currency}].add(period, amount, isDebit);
  }
  /// Calls visit(account, currency, history) for each of them, the sum of an account's
  /// currencies as currency 0.
  template <class Visit>
  void forEach(Visit visit) const {
    for (const auto& [key, history] : withTotals()) visit(key.first, key.second, history);
  }

 private:
  using Histories = std::map<std::pair<int, int>, History>;
  Histories withTotals() const;

  Histories histories_;
};

}  // namespace velmora::cli::demo
