#pragma once

#include <string>
#include <vector>

namespace velmora::explain {

enum class Comparison { initial, period, closing };

struct Period {
  int year = 0;
  int period = 0;
  bool operator==(const Period&) const = default;
};

/// An account of the ledger's side. The closing comparison may subtract one.
struct ScopeAccount {
  int id = 0;
  bool subtracted = false;
};

/// The comparison that is to be explained, as its filter asked for it.
struct Scope {
  Comparison comparison = Comparison::period;
  bool receivables = true;
  Period period;
  std::vector<ScopeAccount> accounts;
  int itemClass = 1;
  int currency = 0;                 ///< 0: all currencies together
  bool byCurrency = false;          ///< rows per foreign currency
  bool detail = true;               ///< rows per customer or supplier
  bool unposted = false;            ///< the ledger takes unposted vouchers of the period too
  std::string firstItem, lastItem;  ///< numbers of the range; empty: open
  std::string language = "chs";
  std::string callerString;  ///< whose row access applies; empty: nobody's
};

}  // namespace velmora::explain
