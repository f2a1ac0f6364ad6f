#pragma once

#include <cstddef>
#include <vector>

#include "platform/ado/odbc/handles.h"
#include "velmora/ado/rowset.h"

namespace velmora::ado::odbc {

/// The columns of the statement's current result; none when it returns no rows. A column
/// of a type that the account set does not use counts as a text.
std::vector<FieldDefinition> describeColumns(const Statement& statement);

/// The cell of the current row in column `index` (from 0) as its field holds it. Decimals
/// are read digit by digit, texts as UTF-8.
///
/// Raises kProvider naming the column: a text with half a surrogate pair, a decimal that
/// is no number or has more than 38 digits, a day that is none, and what the driver reports.
/// To be called column by column from the left, once each.
Variant readCell(const Statement& statement, std::size_t index, const FieldDefinition& field);

}  // namespace velmora::ado::odbc
