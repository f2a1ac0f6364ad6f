#include <utility>

#include "velmora/ado/data_type.h"
#include "velmora/ado/recordset.h"
#include "velmora/com/error.h"

namespace velmora::ado {

namespace {

void checkDefinition(const FieldDefinition& field) {
  const auto refuse = [&field](const std::string& what) {
    throw com::Error(com::error::kAdoInvalidArgument, "ADODB.Fields",
                     "Column '" + field.name + "': " + what);
  };
  if (dataTypeName(field.type) == "?" || field.type == adEmpty)
    refuse("there is no type " + std::to_string(field.type));
  constexpr int most = collections::Decimal::kMaxDigits;
  const int digits = field.precision == 0 ? most : field.precision;
  if (field.precision < 0 || digits > most || field.numericScale < 0 || field.numericScale > digits)
    refuse("precision " + std::to_string(field.precision) + " and scale " +
           std::to_string(field.numericScale) + "; expected 0 to 38 and 0 to the precision");
}

}  // namespace

const std::string& Field::Name() const {
  return owner_->definition(index_).name;
}
DataTypeEnum Field::Type() const {
  return owner_->definition(index_).type;
}
std::int64_t Field::DefinedSize() const {
  return owner_->definition(index_).definedSize;
}
int Field::Precision() const {
  return owner_->definition(index_).precision;
}
int Field::NumericScale() const {
  return owner_->definition(index_).numericScale;
}
const Variant& Field::Value() const {
  return owner_->GetValue(index_);
}
void Field::Value(const Variant& value) {
  owner_->SetValue(index_, value);
}

std::size_t Fields::Count() const {
  return owner_->fieldCount();
}

Field Fields::operator()(std::string_view name) const {
  return {*owner_, owner_->fieldIndex(name)};
}

Field Fields::operator()(std::size_t index) const {
  owner_->definition(index);
  return {*owner_, index};
}

void Fields::Append(std::string_view name, DataTypeEnum type, std::int64_t definedSize,
                    int precision, int numericScale) {
  const int bytes = fixedSize(type);
  FieldDefinition field{std::string(name), type,         bytes == 0 ? definedSize : bytes,
                        precision,         numericScale, true};
  checkDefinition(field);
  owner_->appendField(std::move(field));
}

}  // namespace velmora::ado
