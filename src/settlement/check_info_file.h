#pragma once

#include <string>

#include "velmora/ado/recordset.h"
#include "velmora/collections/vector.h"

namespace velmora::settlement {

// Tables of check information as text files in the installation folder, for a person to
// read: `sFileName`.txt, replaced when it is there. Both raise when the folder or the
// file cannot be had, for a name that would leave the folder, and for a row that is no
// row; what was written before stays.

/// One line a Dictionary row, of its own values; the header is that of the first row.
void WriteCheckInfoByVector(const collections::Vector& rows, const std::string& sFileName);

/// One line a row of the view; `rows` is left at its end.
void WriteCheckInfoByRs(ado::Recordset& rows, const std::string& sFileName);

}  // namespace velmora::settlement
