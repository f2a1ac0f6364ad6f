#include "settlement/numbers.h"

#include "velmora/com/error.h"

namespace velmora::settlement {

using collections::Decimal;
using collections::Variant;
using collections::VarType;

namespace {

std::string shown(const Variant& value) {
  constexpr std::size_t longest = 60;
  if (value.isNull()) return "Null";
  if (value.type() == VarType::object) return "an object";
  const std::string text = value.toText();
  return text.size() > longest ? "a long text" : "'" + text + "'";
}

}  // namespace

std::optional<Decimal> tryNumber(const Variant& value) {
  if (value.isNumeric()) return value.toDecimal();
  if (value.isString()) return Decimal::tryParse(value.text());
  if (value.isEmpty()) return Decimal(0);
  return std::nullopt;
}

void failNumber(const Variant& value, const std::string& where) {
  throw com::Error(value.isNull() ? com::error::kInvalidUseOfNull : com::error::kTypeMismatch,
                   "clsPublic", where + ": " + shown(value) + " where a number is expected");
}

void failPlaces(const Decimal& number, const std::string& where) {
  throw com::Error(com::error::kInvalidArgument, "clsPublic",
                   where + ": " + number.normalized().toString() +
                       " is no number of decimals; expected 0 to " +
                       std::to_string(Decimal::kMaxDigits));
}

}  // namespace velmora::settlement
