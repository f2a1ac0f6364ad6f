#pragma once

#include <string>
#include <vector>

#include "velmora/ado/recordset.h"

namespace velmora::ado {

using collections::Date;
using collections::Decimal;
using collections::Null;

/// Open documents in memory, as settlement gets them: number, customer, amount and
/// the mark of a settled row.
inline RecordsetRef openDocuments() {
  auto rs = com::make<Recordset>();
  rs->Fields().Append("FID", adInteger);
  rs->Fields().Append("FCustomer", adVarWChar, 20);
  rs->Fields().Append("FAmount", adNumeric, 0, 20, 2);
  rs->Fields().Append("FRemark", adInteger);
  rs->Open();
  return rs;
}

inline void addDocument(Recordset& rs, int id, const Variant& customer, const Variant& amount) {
  rs.AddNew();
  rs.SetValue(0, id);
  rs.SetValue(1, customer);
  rs.SetValue(2, amount);
  rs.SetValue(3, 0);
  rs.Update();
}

/// Documents 1 to `count` of customers A, B and C in turn, amounts 10, 20, ...
inline RecordsetRef openDocuments(int count) {
  auto rs = openDocuments();
  for (int id = 1; id <= count; ++id)
    addDocument(*rs, id, std::string(1, static_cast<char>('A' + (id - 1) % 3)), id * 10);
  if (count > 0) rs->MoveFirst();
  return rs;
}

/// The first column from the first row of the view to its last.
inline std::vector<int> idsOf(Recordset& rs) {
  std::vector<int> ids;
  if (rs.RecordCount() > 0) rs.MoveFirst();
  for (; !rs.EOF_(); rs.MoveNext()) ids.push_back(rs.GetValue(0).toInt32());
  return ids;
}

}  // namespace velmora::ado
