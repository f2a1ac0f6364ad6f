#include "platform/ado/value_conversion.h"

#include "ado/documents.h"
#include "ado/expect_error.h"
#include "velmora/ado/data_type.h"

namespace velmora::ado {
namespace {

FieldDefinition column(DataTypeEnum type, std::int64_t size = 0, int precision = 0, int scale = 0) {
  return {"FColumn", type, size, precision, scale, true};
}
FieldDefinition numeric(int precision, int scale) {
  return column(adNumeric, 0, precision, scale);
}

TEST(ConvertToField, GivesTheTypeOfTheColumn) {
  struct Case {
    FieldDefinition field;
    Variant value;
    Variant expected;
  };
  const Date noon = Date::fromParts({2009, 3, 1, 12, 30});
  const auto decimal = [](const char* text) { return Variant(Decimal::parse(text)); };
  for (const Case& c : {
           Case{column(adInteger), " 12 ", 12},
           Case{column(adInteger), Decimal::parse("2.5"), 3},
           Case{column(adInteger), "-2.5", -3},
           Case{column(adInteger), 2.4999, 2},
           Case{column(adInteger), true, -1},
           Case{column(adInteger), "-2147483648", std::int32_t{-2147483647 - 1}},
           Case{column(adSmallInt), 7, std::int16_t{7}},
           Case{column(adUnsignedTinyInt), "255", std::int16_t{255}},
           Case{column(adBigInt), "9223372036854775807", std::int64_t{9223372036854775807}},
           Case{numeric(10, 2), "1.005", decimal("1.01")},
           Case{numeric(10, 2), "-1.005", decimal("-1.01")},
           Case{numeric(4, 2), "99.994", decimal("99.99")},
           Case{numeric(2, 2), "0.99", decimal("0.99")},
           Case{numeric(10, 2), 0.1, decimal("0.10")},
           Case{numeric(0, 0), "1.23456789", decimal("1.23456789")},
           Case{numeric(0, 2), "1.239", decimal("1.24")},
           Case{column(adCurrency), "1.00005", decimal("1.0001")},
           Case{column(adDouble), "1e3", 1000.0},
           Case{column(adSingle), 0.1, static_cast<double>(0.1F)},
           Case{column(adBoolean), "TRUE", true},
           Case{column(adBoolean), "0", false},
           Case{column(adBoolean), -1, true},
           Case{column(adDate), "2009-03-01 12:30", noon},
           Case{column(adDBDate), noon, Date::ymd(2009, 3, 1)},
           Case{column(adVarWChar, 4), "应收单据", "应收单据"},
           Case{column(adVarChar, 4), decimal("1.50"), "1.5"},
           Case{column(adBSTR), "any length", "any length"},
           Case{column(adVariant), 1.5, 1.5},
           Case{column(adInteger), Null{}, Null{}},
           Case{column(adInteger), Variant(), Null{}},
       }) {
    const Variant converted = convertToField(c.value, c.field);
    EXPECT_EQ(converted, c.expected) << dataTypeName(c.field.type) << ' ' << c.value.toText();
  }
  EXPECT_EQ(convertToField(5, numeric(10, 2)).toDecimal().scale(), 2);
}

TEST(ConvertToField, NamesColumnValueAndWhatWasExpected) {
  struct Case {
    FieldDefinition field;
    Variant value;
    const char* message;
  };
  FieldDefinition required = column(adInteger);
  required.nullable = false;
  for (const Case& c : {
           Case{column(adInteger), "12a", "'FColumn' (adInteger): '12a' is no number"},
           Case{column(adInteger), "", "'' is no number"},
           Case{column(adInteger), 2147483648.0, "expected -2147483648 to 2147483647"},
           Case{column(adUnsignedTinyInt), -1, "'-1' is out of range; expected 0 to 255"},
           Case{column(adBigInt), "9223372036854775808", "out of range"},
           Case{column(adInteger), Date::ymd(2009, 1, 1), "'2009-01-01' is no number"},
           Case{numeric(4, 2), "99.995", "at most 2 digits before the decimal point"},
           Case{numeric(38, 10), "99999999999999999999999999999", "expected at most"},
           Case{numeric(10, 2), 1e300, "at most 38 digits"},
           Case{column(adCurrency), "922337203685477.5808", "at most 922337203685477.5807"},
           Case{column(adDate), "1.3.2009", "'1.3.2009' is no date"},
           Case{column(adDate), 39873, "is no date"},
           Case{column(adBoolean), "yes", "'yes' is no number"},
           Case{column(adVarWChar, 3), "应收单据",
                "'应收单据' has 4 characters; expected at most 3"},
           Case{required, Null{}, "Null is not allowed"},
           Case{column(adVarWChar), openDocuments(), "object"},
       })
    expectError(com::error::kAdoDataConversion, c.message,
                [&] { convertToField(c.value, c.field); });
}

TEST(DataType, HasANameThatReadsBack) {
  for (const DataTypeEnum type : {adInteger, adVarWChar, adNumeric, adDBTimeStamp, adEmpty})
    EXPECT_EQ(dataTypeNamed(dataTypeName(type)), type);
  EXPECT_EQ(dataTypeNamed("ADINTEGER"), adInteger);
  EXPECT_EQ(dataTypeNamed("adNothing"), std::nullopt);
}

}  // namespace
}  // namespace velmora::ado
