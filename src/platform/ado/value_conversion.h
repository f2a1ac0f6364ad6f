#pragma once

#include "velmora/ado/rowset.h"

namespace velmora::ado {

/// `value` as the column `field` holds it: Null or of the Variant type of the
/// column (see Rowset). Empty becomes Null. Numbers come from numbers, booleans
/// and whole texts; they are rounded half away from zero to the column's scale,
/// integers to whole numbers (a decimal column without precision and scale keeps
/// every digit). Dates come from dates and texts, texts from anything but objects.
///
/// Raises kAdoDataConversion naming column, value and what was expected: a text that
/// is no number or date, a number out of the type's or the precision's range, a text
/// longer than the column, Null where the column takes none.
Variant convertToField(const Variant& value, const FieldDefinition& field);

}  // namespace velmora::ado
