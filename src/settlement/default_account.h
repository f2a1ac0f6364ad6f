#pragma once

#include <cstdint>
#include <string>

#include "frame/call/data_source.h"

namespace velmora::settlement {

/// The column of an item's table with the account for documents of `classTypeId`; empty
/// when items have none for them. `itemClassId`: 1 customers, 8 suppliers.
std::string GetAccountFieldName(std::int32_t classTypeId, std::int32_t itemClassId);

/// The account to propose: the item's own, else the document type's, else 0. Raises the
/// database's error.
std::int32_t GetDefaultAcctID(const CDataSource& dataSource, std::int32_t itemClassId,
                              std::int32_t itemId, std::int32_t classTypeId);

}  // namespace velmora::settlement
