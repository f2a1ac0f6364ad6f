#include "platform/ado/duckdb/parameters.h"

#include <string>

#include "platform/ado/value_conversion.h"

namespace velmora::ado::embedded {

namespace {

tsql::Variable toVariable(const ParameterValue& parameter, std::size_t number) {
  tsql::Variable variable{tsql::parameterType(parameter.type, parameter.size)};
  auto field = tsql::fieldDefinition("parameter " + std::to_string(number), variable.type);
  const bool isDecimal = variable.type.kind == tsql::SqlKind::decimal;
  if (isDecimal) field.precision = field.numericScale = 0;  // every digit
  variable.value = convertToField(parameter.value, field);
  if (isDecimal && !variable.value.isNull())
    variable.type = tsql::SqlType::decimal(collections::Decimal::kMaxDigits,
                                           variable.value.toDecimal().scale());
  return variable;
}

}  // namespace

std::vector<tsql::Variable> toVariables(std::span<const ParameterValue> parameters) {
  std::vector<tsql::Variable> variables;
  for (const auto& parameter : parameters)
    variables.push_back(toVariable(parameter, variables.size() + 1));
  return variables;
}

}  // namespace velmora::ado::embedded
