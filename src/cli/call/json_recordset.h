#pragma once

#include "cli/call/json_text.h"
#include "velmora/ado/recordset.h"

namespace velmora::cli {

/// An in-memory recordset, on its first row, from
/// {"fields":[{"name":"FBillNo","type":"adVarWChar","size":80},...],"rows":[[...],...]}.
/// A text field without "size" takes texts of any length. adDecimal and adNumeric
/// take "precision" and "scale"; without "scale" it is that of the longest fraction
/// among the cells. A cell that would have to be rounded or cut is refused.
/// null gives a recordset that is not open. Raises JsonError.
ado::RecordsetRef recordsetFromJson(const Json& json);

/// Every row, whatever the recordset's filter and position, which stay as they are;
/// null for a recordset that is not open.
Json jsonFromRecordset(const ado::Recordset& recordset);

}  // namespace velmora::cli
