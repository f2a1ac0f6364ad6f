#include "cli/settlement/distribution.h"

#include <algorithm>

#include "cli/component.h"
#include "cli/failure.h"
#include "velmora/collections/dictionary.h"
#include "velmora/collections/letter_case.h"
#include "velmora/com/class_table.h"
#include "velmora/interfaces.h"

namespace velmora::cli {

using ado::RecordsetRef;
using collections::Decimal;
using collections::Dictionary;
using collections::DictionaryRef;
using collections::VectorRef;

namespace {

constexpr const char* kColumnKeys[] = {"FFieldName",    "FChkFieldName",  "FChkFieldName2",
                                       "FSrcFieldName", "FRateFieldName", "FDecimal"};
constexpr const char* kPlanned[] = {"Fqty_plan",   "FAmount_Plan",   "FAmountFor_Plan",
                                    "FQty_remain", "FAmount_remain", "FAmountFor_remain"};

std::vector<std::string> parts(const std::string& option, const std::string& text,
                               std::size_t least, std::size_t most, const char* expected) {
  std::vector<std::string> found(1);
  for (const char c : text) {
    if (c == ',')
      found.emplace_back();
    else
      found.back() += c;
  }
  if (found.size() >= least && found.size() <= most) return found;
  throw UsageError(option + ": \"" + text + "\" is not " + expected);
}

/// The rows as dictionaries, and back.
VectorRef dictionariesOf(ado::Recordset& rows) {
  auto dictionaries = com::make<collections::Vector>();
  for (; !rows.EOF_(); rows.MoveNext()) {
    auto row = com::make<Dictionary>();
    for (std::size_t i = 0; i < rows.fieldCount(); ++i)
      row->Set(rows.definition(i).name, rows.GetValue(i));
    dictionaries->Add(row);
  }
  return dictionaries;
}

void takeOver(const collections::Vector& dictionaries, ado::Recordset& rows) {
  if (rows.RecordCount() > 0) rows.MoveFirst();
  for (const ado::Variant& item : dictionaries) {
    const auto row = item.toObject<Dictionary>();
    for (std::size_t i = 0; i < rows.fieldCount(); ++i)
      rows.SetValue(i, row->Value(rows.definition(i).name));
    rows.MoveNext();
  }
}

}  // namespace

void Distribution::addDistribution(const std::string& text) {
  const auto given =
      parts("--distribute", text, 3, 4, "AMOUNT,INTO,LIMIT or AMOUNT,INTO,LIMIT,LESS");
  const auto amount = Decimal::tryParse(given[0]);
  if (!amount) throw UsageError("--distribute: \"" + given[0] + "\" is no amount");
  auto option = com::make<Dictionary>();
  option->Set("FType", 0);
  option->Set("FAmount", *amount);
  option->Set("FFieldName", given[1]);
  option->Set("FChkFieldName", given[2]);
  if (given.size() > 3) option->Set("FChkFieldName2", given[3]);
  options->Add(option);
}

void Distribution::addConversion(const std::string& text) {
  const auto given =
      parts("--convert", text, 3, 6, "SOURCE,INTO,LIMIT[,RATE[,multiply|divide[,PLACES]]]");
  auto option = com::make<Dictionary>();
  option->Set("FType", 1);
  option->Set("FSrcFieldName", given[0]);
  option->Set("FFieldName", given[1]);
  option->Set("FChkFieldName", given[2]);
  if (given.size() > 3) option->Set("FRateFieldName", given[3]);
  if (given.size() > 4 && given[4] != "multiply" && given[4] != "divide")
    throw UsageError("--convert: \"" + given[4] + "\" is neither multiply nor divide");
  option->Set("FRateType", given.size() > 4 && given[4] == "divide" ? 1 : 0);
  if (given.size() > 5) option->Set("FDecimal", given[5]);
  options->Add(option);
}

ColumnKind Distribution::kindOf(const std::string& column) const {
  const auto named = [&](const ado::Variant& item) {
    const auto option = item.toObject<Dictionary>();
    return std::ranges::any_of(kColumnKeys, [&](const char* key) {
      return collections::equalsIgnoringCase(option->Value(key).toText(), column);
    });
  };
  const bool planned = copyPlanned && std::ranges::any_of(kPlanned, [&](const char* name) {
                         return collections::equalsIgnoringCase(name, column);
                       });
  return planned || std::ranges::any_of(*options, named) ? ColumnKind::amount : ColumnKind::text;
}

RecordsetRef Distribution::fill(const RecordsetRef& rows) const {
  std::vector<AddedColumn> targets;
  for (const ado::Variant& item : *options) {
    const std::string target = item.toObject<Dictionary>()->Value("FFieldName").toText();
    const bool known =
        hasColumn(*rows, target) || std::ranges::any_of(targets, [&](const AddedColumn& added) {
          return collections::equalsIgnoringCase(added.name, target);
        });
    if (!known)
      targets.push_back(
          {target, ColumnKind::amount, [](ado::Recordset&) { return collections::Null(); }});
  }
  RecordsetRef filled = withColumns(
      rows, [this](const std::string& name) { return kindOf(name); }, targets);
  const auto object = componentObject<_clsPublic>();
  auto dFilter = com::make<Dictionary>();
  VectorRef givenOptions = options;
  std::string message;
  switch (rules) {
    case Rules::standard:
      dFilter->Set("bSwitchRobEntry", takeOpposite);
      object->GetSwitchData(filled, givenOptions, message, dFilter);
      break;
    case Rules::extended:
      dFilter->Set("bCanOverAmt", restToLast);
      dFilter->Set("bCopyFields", copyPlanned);
      object->GetSwitchDataExt("", filled, givenOptions, dFilter, message);
      break;
    case Rules::plain: {
      VectorRef dictionaries = dictionariesOf(*filled);
      object->GetSwitchVectData(dictionaries, givenOptions, message);
      if (message.empty()) takeOver(*dictionaries, *filled);
      break;
    }
  }
  if (!message.empty()) throw Failure("the rows could not be filled: " + message);
  return filled;
}

std::vector<Decimal> Distribution::rest() const {
  std::vector<Decimal> amounts;
  for (const ado::Variant& item : *options) {
    const auto option = item.toObject<Dictionary>();
    if (option->Value("FType").toInt32() == 0)
      amounts.push_back(option->Value("FAmount").toDecimal());
  }
  return amounts;
}

}  // namespace velmora::cli
