#include "cli/demo/balances.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace velmora::cli::demo {

void History::add(int period, Amount amount, bool isDebit) {
  if (period > kCurrentPeriod) return;
  if (period < 0)
    opening += isDebit ? amount : -amount;
  else
    periods[static_cast<std::size_t>(period)].add(amount, isDebit);
}

void PartnerBalances::add(const Partner& partner, int account, int period, Amount amount,
                          bool isDebit) {
  const auto found = std::find(accounts_.begin(), accounts_.end(), account);
  if (found == accounts_.end())
    throw std::out_of_range(std::to_string(account) + " is no control account of the side");
  const auto slot = static_cast<std::size_t>(found - accounts_.begin());
  const auto first = static_cast<std::size_t>(partner.index) * accounts_.size();
  histories_.at(first + slot).add(period, amount, isDebit);
}

AccountBalances::Histories AccountBalances::withTotals() const {
  Histories all = histories_;
  for (const auto& [key, history] : histories_) {
    History& total = all[{key.first, 0}];
    total.opening += history.opening;
    for (std::size_t i = 0; i < history.periods.size(); ++i) {
      total.periods[i].debit += history.periods[i].debit;
      total.periods[i].credit += history.periods[i].credit;
    }
  }
  return all;
}

}  // namespace velmora::cli::demo
