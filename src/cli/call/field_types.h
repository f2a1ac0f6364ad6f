#pragma once

#include <string_view>

#include "velmora/ado/enums.h"

namespace velmora::cli {

/// How the cells of a column are written in JSON.
enum class CellKind { boolean, integer, real, decimal, date, text, any };

struct FieldType {
  ado::DataTypeEnum type;
  std::string_view name;  ///< "adVarWChar"
  CellKind kind;
};

/// nullptr when there is no such type.
const FieldType* findFieldType(std::string_view name) noexcept;
const FieldType* findFieldType(ado::DataTypeEnum type) noexcept;

}  // namespace velmora::cli
