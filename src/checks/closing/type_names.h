#pragma once

#include <optional>
#include <span>
#include <string>

#include "checks/closing/query_filter.h"

namespace velmora::closing {

/// The name of the contact records with one FType and, where it tells them apart, one
/// FPre (-1 refund, 0 plain, 1 advance).
struct TypeName {
  int type;
  std::optional<int> pre;
  const char* name;
};

/// A CASE over the contact record `alias` that gives the document type's name in the
/// caller's language; "单据" (document) for a type without a name of its own, so that a
/// finding is never without one.
std::string typeNameCase(const QueryFilter& filter, const std::string& alias,
                         std::span<const TypeName> names);

}  // namespace velmora::closing
