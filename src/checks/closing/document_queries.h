#pragma once

// The three kinds of documents that several closing checks ask about, each as one query
// with the columns FDate, FType, FBillNo, FCurrencyID, FAccountID, FAmount, FAmountFor,
// FErrInfo. What a check asks differs in the conditions.

#include <string>
#include <string_view>

#include "checks/closing/query_filter.h"

namespace velmora::closing {

/// Names of the inventory module's invoices, by side.
struct InvoiceTables {
  const char* invoice;
  const char* entry;
  const char* accountColumn;
};

/// Invoices of the inventory module (alias v1, s5 where `styleJoin` joins it), with the
/// amounts of their entries. `where` begins with "Where" and holds every condition.
std::string invoiceQuery(const QueryFilter& filter, const InvoiceTables& tables,
                         std::string_view styleJoin, std::string_view where,
                         std::string_view error);

/// AR/AP documents (alias v1). `join` is a further join line or empty.
std::string arpBillQuery(const QueryFilter& filter, std::string_view join, std::string_view where,
                         std::string_view error);

/// Receipts and payments (alias v1, entry lines v2), one row per document and account.
std::string receiptQuery(const QueryFilter& filter, std::string_view where, std::string_view error);

}  // namespace velmora::closing
