#include "platform/ado/recordset_view.h"

namespace velmora::ado {

void RecordsetView::test(std::size_t row, const Variant* cells) {
  if (criteria_.satisfiedBy(cells))
    rows_.insert(row);
  else
    rows_.erase(row);
}

}  // namespace velmora::ado
