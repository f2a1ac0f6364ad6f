#pragma once

#include <cstdint>
#include <string>

namespace velmora::settlement {

/// Decimals of the account set's local currency, read through a second public object of
/// the same transaction. Raises the database's error, or that there is no such currency.
std::int32_t GetBaseCurrencyScale(const std::string& sDsn);

}  // namespace velmora::settlement
