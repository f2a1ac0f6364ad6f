#pragma once

#include "velmora/ado/recordset.h"
#include "velmora/collections/dictionary.h"

namespace velmora::settlement {

/// The groups that are settled apart from one another: filter text by group key, in
/// the order in which the groups come in `rsSrcBill`. `dDictSwitch`: column of the
/// filter → column whose value makes the group key; nothing or empty: no groups. The
/// first row of a group decides its filter. Leaves `rsSrcBill` at its end; raises when
/// it is nothing or has no rows while grouping is asked for.
collections::DictionaryRef BuildGroupFilters(const ado::RecordsetRef& rsSrcBill,
                                             const collections::DictionaryRef& dDictSwitch);

}  // namespace velmora::settlement
