#include "cli/call/field_types.h"

#include <algorithm>
#include <array>

namespace velmora::cli {

namespace {

constexpr std::array kFieldTypes{
    FieldType{ado::adSmallInt, "adSmallInt", CellKind::integer},
    FieldType{ado::adInteger, "adInteger", CellKind::integer},
    FieldType{ado::adSingle, "adSingle", CellKind::real},
    FieldType{ado::adDouble, "adDouble", CellKind::real},
    FieldType{ado::adCurrency, "adCurrency", CellKind::decimal},
    FieldType{ado::adDate, "adDate", CellKind::date},
    FieldType{ado::adBSTR, "adBSTR", CellKind::text},
    FieldType{ado::adBoolean, "adBoolean", CellKind::boolean},
    FieldType{ado::adVariant, "adVariant", CellKind::any},
    FieldType{ado::adDecimal, "adDecimal", CellKind::decimal},
    FieldType{ado::adUnsignedTinyInt, "adUnsignedTinyInt", CellKind::integer},
    FieldType{ado::adBigInt, "adBigInt", CellKind::integer},
    FieldType{ado::adGUID, "adGUID", CellKind::text},
    FieldType{ado::adBinary, "adBinary", CellKind::text},
    FieldType{ado::adChar, "adChar", CellKind::text},
    FieldType{ado::adWChar, "adWChar", CellKind::text},
    FieldType{ado::adNumeric, "adNumeric", CellKind::decimal},
    FieldType{ado::adDBDate, "adDBDate", CellKind::date},
    FieldType{ado::adDBTime, "adDBTime", CellKind::text},
    FieldType{ado::adDBTimeStamp, "adDBTimeStamp", CellKind::date},
    FieldType{ado::adVarChar, "adVarChar", CellKind::text},
    FieldType{ado::adLongVarChar, "adLongVarChar", CellKind::text},
    FieldType{ado::adVarWChar, "adVarWChar", CellKind::text},
    FieldType{ado::adLongVarWChar, "adLongVarWChar", CellKind::text},
    FieldType{ado::adVarBinary, "adVarBinary", CellKind::text}};

template <class Matches>
const FieldType* findIf(Matches matches) {
  const auto found = std::find_if(kFieldTypes.begin(), kFieldTypes.end(), matches);
  return found == kFieldTypes.end() ? nullptr : &*found;
}

}  // namespace

const FieldType* findFieldType(std::string_view name) noexcept {
  return findIf([name](const FieldType& type) { return type.name == name; });
}

const FieldType* findFieldType(ado::DataTypeEnum wanted) noexcept {
  return findIf([wanted](const FieldType& type) { return type.type == wanted; });
}

}  // namespace velmora::cli
