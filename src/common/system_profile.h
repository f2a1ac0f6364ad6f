#pragma once

#include <cstdint>
#include <string_view>

#include "frame/call/data_source.h"
#include "velmora/collections/variant.h"

namespace velmora {

/// One setting: the stored value, possibly Null, or `fallback` when there is none. The
/// category "ARP" (exactly so) is receivables/payables; any other one is looked up in
/// the settings of the other modules.
collections::Variant ReadSystemProfile(const CDataSource& dataSource, std::string_view key,
                                       std::string_view category,
                                       const collections::Variant& fallback = "0");

/// The same as a whole number: the leading number of the text, cut to an integer; 0
/// without one. Null raises kInvalidUseOfNull.
std::int32_t readProfileNumber(const CDataSource& dataSource, std::string_view key,
                               std::string_view category);

/// Current year and period of receivables or payables, 0 where not set.
std::int32_t readCurrentYear(const CDataSource& dataSource, bool bArp);
std::int32_t readCurrentPeriod(const CDataSource& dataSource, bool bArp);

/// Whether the caller is a sub-system of the receivables side.
bool IsArSubSystem(const CDataSource& dataSource);

}  // namespace velmora
