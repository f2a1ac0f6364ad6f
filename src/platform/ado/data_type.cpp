#include "velmora/ado/data_type.h"

#include <algorithm>
#include <iterator>

#include "velmora/collections/letter_case.h"

namespace velmora::ado {

namespace {

struct TypeRow {
  DataTypeEnum type;
  std::string_view name;
  DataKind kind;
  int bytes;
};

constexpr TypeRow kTypes[] = {
    {adEmpty, "adEmpty", DataKind::variant, 0},
    {adSmallInt, "adSmallInt", DataKind::integer, 2},
    {adInteger, "adInteger", DataKind::integer, 4},
    {adSingle, "adSingle", DataKind::real, 4},
    {adDouble, "adDouble", DataKind::real, 8},
    {adCurrency, "adCurrency", DataKind::decimal, 8},
    {adDate, "adDate", DataKind::date, 8},
    {adBSTR, "adBSTR", DataKind::text, 0},
    {adBoolean, "adBoolean", DataKind::boolean, 2},
    {adVariant, "adVariant", DataKind::variant, 16},
    {adDecimal, "adDecimal", DataKind::decimal, 16},
    {adUnsignedTinyInt, "adUnsignedTinyInt", DataKind::integer, 1},
    {adBigInt, "adBigInt", DataKind::integer, 8},
    {adGUID, "adGUID", DataKind::text, 16},
    {adBinary, "adBinary", DataKind::text, 0},
    {adChar, "adChar", DataKind::text, 0},
    {adWChar, "adWChar", DataKind::text, 0},
    {adNumeric, "adNumeric", DataKind::decimal, 19},
    {adDBDate, "adDBDate", DataKind::date, 6},
    {adDBTime, "adDBTime", DataKind::date, 6},
    {adDBTimeStamp, "adDBTimeStamp", DataKind::date, 16},
    {adVarChar, "adVarChar", DataKind::text, 0},
    {adLongVarChar, "adLongVarChar", DataKind::text, 0},
    {adVarWChar, "adVarWChar", DataKind::text, 0},
    {adLongVarWChar, "adLongVarWChar", DataKind::text, 0},
    {adVarBinary, "adVarBinary", DataKind::text, 0},
};

const TypeRow& rowOf(DataTypeEnum type) noexcept {
  static constexpr TypeRow unknown{adVariant, "?", DataKind::variant, 0};
  const auto* found =
      std::ranges::find_if(kTypes, [type](const TypeRow& row) { return row.type == type; });
  return found == std::end(kTypes) ? unknown : *found;
}

}  // namespace

DataKind kindOf(DataTypeEnum type) noexcept {
  return rowOf(type).kind;
}

std::string_view dataTypeName(DataTypeEnum type) noexcept {
  return rowOf(type).name;
}

std::optional<DataTypeEnum> dataTypeNamed(std::string_view name) noexcept {
  for (const TypeRow& row : kTypes)
    if (collections::equalsIgnoringCase(row.name, name)) return row.type;
  return std::nullopt;
}

int fixedSize(DataTypeEnum type) noexcept {
  return rowOf(type).bytes;
}

}  // namespace velmora::ado
