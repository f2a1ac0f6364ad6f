#pragma once

#include <array>
#include <string_view>

#include "platform/tsql/syntax/ast_expression.h"

namespace velmora::tsql {

/// What may stand in parentheses behind a type's name.
enum class TypeSize { None, Length, LengthOrMax, PrecisionAndScale, Precision };

struct TypeName {
  std::string_view name;
  TypeKind kind;
  TypeSize size;
  int maxSize;
};

/// The first name of a kind is the one that is printed.
inline constexpr auto kTypeNames = std::to_array<TypeName>({
    {"bit", TypeKind::Bit, TypeSize::None, 0},
    {"tinyint", TypeKind::TinyInt, TypeSize::None, 0},
    {"smallint", TypeKind::SmallInt, TypeSize::None, 0},
    {"int", TypeKind::Int, TypeSize::None, 0},
    {"integer", TypeKind::Int, TypeSize::None, 0},
    {"bigint", TypeKind::BigInt, TypeSize::None, 0},
    {"decimal", TypeKind::Decimal, TypeSize::PrecisionAndScale, 38},
    {"numeric", TypeKind::Decimal, TypeSize::PrecisionAndScale, 38},
    {"dec", TypeKind::Decimal, TypeSize::PrecisionAndScale, 38},
    {"money", TypeKind::Money, TypeSize::None, 0},
    {"smallmoney", TypeKind::SmallMoney, TypeSize::None, 0},
    {"float", TypeKind::Float, TypeSize::Precision, 53},
    {"real", TypeKind::Real, TypeSize::None, 0},
    {"date", TypeKind::Date, TypeSize::None, 0},
    {"time", TypeKind::Time, TypeSize::Precision, 7},
    {"datetime", TypeKind::DateTime, TypeSize::None, 0},
    {"smalldatetime", TypeKind::SmallDateTime, TypeSize::None, 0},
    {"datetime2", TypeKind::DateTime2, TypeSize::Precision, 7},
    {"char", TypeKind::Char, TypeSize::Length, 8000},
    {"varchar", TypeKind::VarChar, TypeSize::LengthOrMax, 8000},
    {"nchar", TypeKind::NChar, TypeSize::Length, 4000},
    {"nvarchar", TypeKind::NVarChar, TypeSize::LengthOrMax, 4000},
    {"text", TypeKind::Text, TypeSize::None, 0},
    {"ntext", TypeKind::NText, TypeSize::None, 0},
    {"uniqueidentifier", TypeKind::UniqueIdentifier, TypeSize::None, 0},
});

}  // namespace velmora::tsql
