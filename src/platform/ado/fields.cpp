#include "velmora/ado/data_type.h"
#include "velmora/ado/recordset.h"
#include "velmora/com/error.h"

namespace velmora::ado {

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
  owner_->appendField({std::string(name), type, definedSize, precision, numericScale, true});
}

}  // namespace velmora::ado
