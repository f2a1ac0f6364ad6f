#pragma once

#include <optional>
#include <string_view>

#include "velmora/ado/enums.h"

namespace velmora::ado {

/// What the values of a column are, whatever their width.
enum class DataKind { integer, real, decimal, boolean, date, text, variant };

DataKind kindOf(DataTypeEnum type) noexcept;

/// Name of the enumeration, for instance "adInteger"; "?" for a number that is none.
std::string_view dataTypeName(DataTypeEnum type) noexcept;
/// The type of that name, letter case ignored.
std::optional<DataTypeEnum> dataTypeNamed(std::string_view name) noexcept;

/// Bytes of a value of a type with a fixed width, 0 for the others.
int fixedSize(DataTypeEnum type) noexcept;

}  // namespace velmora::ado
