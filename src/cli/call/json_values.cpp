#include "cli/call/json_values.h"

#include <limits>

#include "cli/call/json_recordset.h"
#include "cli/secrets.h"
#include "velmora/ado/recordset.h"
#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"

namespace velmora::cli {

using collections::Date;
using collections::Decimal;
using collections::Dictionary;
using collections::Variant;
using collections::VarType;
using collections::Vector;

namespace {

Variant integerFromJson(std::int64_t value) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (value < Limits::min() || value > Limits::max()) return value;
  return static_cast<std::int32_t>(value);
}

const std::string& textOf(const Json& json, const char* wanted) {
  if (!json.is_string()) throw JsonError(wanted + (", not " + jsonText(json)));
  return json.get_ref<const std::string&>();
}

Variant decimalFromJson(const Json& json) {
  const std::string& text = textOf(json, "$decimal holds a number as text");
  const auto value = Decimal::tryParse(text);
  if (!value) throw JsonError("\"" + text + "\" is not a decimal number of up to 38 digits");
  return *value;
}

Variant dateFromJson(const Json& json) {
  const std::string& text = textOf(json, "$date holds a date as text");
  const auto value = Date::tryParse(text);
  if (!value) throw JsonError("\"" + text + "\" is not a date such as 2009-03-01T10:20:30");
  return *value;
}

Variant markedValueFromJson(const std::string& mark, const Json& json) {
  if (mark == "$decimal") return decimalFromJson(json);
  if (mark == "$date") return dateFromJson(json);
  if (mark == "$recordset") return recordsetFromJson(json);
  throw JsonError("\"" + mark + "\" is unknown; $decimal, $date and $recordset are known");
}

Variant dictionaryFromJson(const Json& json) {
  const auto dictionary = com::make<Dictionary>();
  for (const auto& [key, value] : json.items()) {
    if (key.starts_with('$')) throw JsonError("\"" + key + "\" stands alone in its object");
    if (dictionary->Lookup(key))
      throw JsonError("\"" + key + "\" occurs twice (keys ignore letter case)");
    try {
      dictionary->Set(key, valueFromJson(value));
    } catch (JsonError& error) {
      error.within(key);
      throw;
    }
  }
  return dictionary;
}

Variant vectorFromJson(const Json& json) {
  const auto vector = com::make<Vector>();
  vector->Reserve(json.size());
  for (std::size_t i = 0; i < json.size(); ++i) {
    try {
      vector->Add(valueFromJson(json[i]));
    } catch (JsonError& error) {
      error.within("[" + std::to_string(i) + "]");
      throw;
    }
  }
  return vector;
}

Json marked(const char* mark, Json value) {
  Json json = Json::object();
  json[mark] = std::move(value);
  return json;
}

std::string isoText(Date date) {
  std::string text = date.toString();
  if (const auto blank = text.find(' '); blank != std::string::npos) text[blank] = 'T';
  return text;
}

Json jsonFromAny(const Variant& value, int depth);

Json jsonFromObject(const com::Ref<com::IUnknown>& object, int depth) {
  if (!object) return nullptr;
  if (depth > kMaxJsonDepth) throw JsonError("objects nested too deeply for JSON");
  if (const auto dictionary = object.as<Dictionary>()) {
    Json json = Json::object();
    for (std::size_t i = 0; i < dictionary->Count(); ++i) {
      const Variant& item = dictionary->Item(i);
      json[dictionary->Key(i)] =
          item.isString() ? Json(withoutPasswords(item.text())) : jsonFromAny(item, depth + 1);
    }
    return json;
  }
  if (const auto vector = object.as<Vector>()) {
    Json json = Json::array();
    for (const Variant& item : *vector) json.push_back(jsonFromAny(item, depth + 1));
    return json;
  }
  if (const auto recordset = object.as<ado::Recordset>())
    return marked("$recordset", jsonFromRecordset(*recordset));
  throw JsonError("an object that is no dictionary, vector or recordset has no JSON form");
}

Json jsonFromAny(const Variant& value, int depth) {
  switch (value.type()) {
    case VarType::empty:
    case VarType::null:
      return nullptr;
    case VarType::boolean:
      return value.toBool();
    case VarType::int16:
    case VarType::int32:
    case VarType::int64:
      return value.toInt64();
    case VarType::real:
      return value.toDouble();
    case VarType::decimal:
      return marked("$decimal", value.toDecimal().toString());
    case VarType::date:
      return marked("$date", isoText(value.toDate()));
    case VarType::string:
      return value.text();
    case VarType::object:
      return jsonFromObject(value.toObject(), depth);
  }
  return nullptr;
}

}  // namespace

Variant valueFromJson(const Json& json) {
  switch (json.type()) {
    case Json::value_t::boolean:
      return json.get<bool>();
    case Json::value_t::string:
      return json.get_ref<const std::string&>();
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
      return integerFromJson(json.get<std::int64_t>());
    case Json::value_t::number_float:
      return json.get<double>();
    case Json::value_t::array:
      return vectorFromJson(json);
    case Json::value_t::object:
      if (json.size() == 1 && json.begin().key().starts_with('$'))
        return markedValueFromJson(json.begin().key(), json.begin().value());
      return dictionaryFromJson(json);
    default:
      return collections::Null();
  }
}

Json jsonFromValue(const Variant& value) {
  return jsonFromAny(value, 0);
}

}  // namespace velmora::cli
