#include "platform/tsql/binding/types/type_rules.h"

#include <gtest/gtest.h>

namespace velmora::tsql::test {
namespace {

const SqlType kAmount = SqlType::decimal(28, 10);
const SqlType kTotal = SqlType::decimal(38, 4);

TEST(DecimalRules, GiveTheDocumentedPrecisionAndScale) {
  struct Rule {
    ArithmeticOperator op;
    SqlType a, b, result;
  };
  using enum ArithmeticOperator;
  const Rule rules[] = {
      {Add, SqlType::decimal(10, 2), SqlType::decimal(5, 4), SqlType::decimal(13, 4)},
      {Add, kTotal, kAmount, SqlType::decimal(38, 4)},
      {Subtract, kAmount, kAmount, SqlType::decimal(29, 10)},
      {Multiply, SqlType::decimal(10, 2), SqlType::decimal(5, 3), SqlType::decimal(16, 5)},
      {Multiply, SqlType::decimal(10, 0), kAmount, SqlType::decimal(38, 9)},
      {Multiply, kAmount, kAmount, SqlType::decimal(38, 6)},
      {Multiply, SqlType::decimal(1, 0), kTotal, SqlType::decimal(38, 4)},
      {Divide, SqlType::decimal(2, 1), SqlType::decimal(1, 0), SqlType::decimal(7, 6)},
      {Divide, SqlType::decimal(28, 4), SqlType::decimal(10, 0), SqlType::decimal(38, 14)},
      {Divide, SqlType::decimal(38, 6), kAmount, SqlType::decimal(38, 6)},
      {Modulo, SqlType::decimal(10, 2), SqlType::decimal(5, 4), SqlType::decimal(5, 4)},
  };
  for (const Rule& rule : rules) {
    EXPECT_EQ(declaration(decimalResult(rule.op, rule.a, rule.b)), declaration(rule.result))
        << declaration(rule.a) << " and " << declaration(rule.b);
  }
}

TEST(CommonType, IsTheHigherAndWideEnoughForBoth) {
  struct Pair {
    SqlType a, b, common;
  };
  const Pair pairs[] = {
      {SqlType::integer(), SqlType::decimal(5, 4), SqlType::decimal(14, 4)},
      {SqlType::varchar(10), SqlType::integer(), SqlType::integer()},
      {SqlType::varchar(10), SqlType::nvarchar(4), SqlType::nvarchar(10)},
      {SqlType::varchar(10), SqlType::varchar(SqlType::kMaxLength),
       SqlType::varchar(SqlType::kMaxLength)},
      {SqlType{SqlKind::character, 0, 0, 2}, SqlType{SqlKind::character, 0, 0, 5},
       SqlType::varchar(5)},
      {SqlType::varchar(10), SqlType::dateTime(), SqlType::dateTime()},
      {SqlType::of(SqlKind::money), SqlType::decimal(5, 1), SqlType::decimal(19, 4)},
      {SqlType::of(SqlKind::money), SqlType::integer(), SqlType::of(SqlKind::money)},
      {SqlType::decimal(38, 10), SqlType::floating(), SqlType::floating()},
      {SqlType::bit(), SqlType::integer(), SqlType::integer()},
      {SqlType{}, SqlType::nvarchar(3), SqlType::nvarchar(3)},
  };
  for (const Pair& pair : pairs) {
    EXPECT_EQ(declaration(commonType(pair.a, pair.b)), declaration(pair.common));
    EXPECT_EQ(commonType(pair.a, pair.b), commonType(pair.b, pair.a));
  }
}

TEST(SqlTypes, ShowAsTheFieldsOfARecordset) {
  const auto amount = fieldDefinition("FAmount", kAmount);
  EXPECT_EQ(amount.type, ado::adNumeric);
  EXPECT_EQ(amount.precision, 28);
  EXPECT_EQ(amount.numericScale, 10);
  const auto name = fieldDefinition("FName", SqlType::nvarchar(80), false);
  EXPECT_EQ(name.type, ado::adVarWChar);
  EXPECT_EQ(name.definedSize, 80);
  EXPECT_FALSE(name.nullable);
  EXPECT_EQ(fieldDefinition("FFlag", SqlType::bit()).type, ado::adBoolean);
  EXPECT_EQ(fieldDefinition("FMoney", SqlType::of(SqlKind::money)).type, ado::adCurrency);
}

}  // namespace
}  // namespace velmora::tsql::test
