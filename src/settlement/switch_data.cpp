#include "settlement/switch_data.h"

#include <algorithm>
#include <vector>

#include "frame/call/text.h"
#include "settlement/numbers.h"
#include "settlement/rounding.h"
#include "velmora/com/error.h"

namespace velmora::settlement {

using collections::Decimal;
using collections::Dictionary;
using collections::DictionaryRef;
using collections::Fraction;
using collections::Variant;
using collections::Vector;

namespace {

/// One target column: which columns its amounts come from.
class Option {
 public:
  Option(const Variant& item, std::size_t number, const SwitchRules& rules)
      : name_("option " + std::to_string(number)), dictionary_(dictionaryOf(item)) {
    target = required("FFieldName");
    check = required("FChkFieldName");
    if (rules.lessSecondCheck) secondCheck = column("FChkFieldName2");
    distributes = numberOf("FType").isZero();
    if (distributes) return;
    source = required("FSrcFieldName");
    places = column("FDecimal");
    rate = column("FRateFieldName");
    divides = !numberOf("FRateType").isZero();
  }

  Decimal amount() const { return numberOf("FAmount"); }
  void lowerAmountBy(const Decimal& taken) { dictionary_->Set("FAmount", amount() - taken); }

  std::string target, check, secondCheck, source, places, rate;  // empty: none
  bool distributes, divides = false;
  /// A row took all that was left: what its column could not hold is for no other row.
  bool usedUp = false;

 private:
  DictionaryRef dictionaryOf(const Variant& item) const {
    auto dictionary = item.type() == collections::VarType::object ? item.toObject().as<Dictionary>()
                                                                  : DictionaryRef();
    if (dictionary) return dictionary;
    throw com::Error(com::error::kTypeMismatch, "clsPublic", name_ + " is no Dictionary");
  }
  std::string column(const char* key) const {
    const Variant& value = dictionary_->Value(key);
    return value.isNull() ? std::string() : std::string(trimmed(value.toText()));
  }
  std::string required(const char* key) const {
    std::string name = column(key);
    if (!name.empty()) return name;
    throw com::Error(com::error::kInvalidArgument, "clsPublic",
                     name_ + ": " + key + " is empty; expected the name of a column");
  }
  Decimal numberOf(const char* key) const {
    return numberIn(dictionary_->Value(key), [&] { return name_ + ", " + key; });
  }

  std::string name_;
  DictionaryRef dictionary_;
};

class Filling {
 public:
  Filling(SwitchRows& rows, const SwitchRules& rules) : rows_(rows), rules_(rules) {}

  void fillRow(std::vector<Option>& options) {
    takenWhole_ = false;
    for (Option& option : options) {
      if (option.distributes)
        distribute(option);
      else
        rows_.set(option.target, converted(option));
    }
    if (rules_.copiesPlanned) copyPlanned();
  }

 private:
  /// The most the row may take.
  Decimal available(const Option& option) const {
    const Decimal check = rows_.number(option.check);
    return option.secondCheck.empty() ? check : check - rows_.number(option.secondCheck);
  }

  bool takesRest() const { return rules_.lastTakesRest && rows_.atLast(); }

  void distribute(Option& option) {
    const Decimal taken = share(option);
    rows_.set(option.target, taken);
    option.lowerAmountBy(taken);
  }

  /// What the row takes, as its column holds it.
  Decimal share(Option& option) {
    const Decimal amount = option.amount();
    if (amount.isZero() || option.usedUp) return 0;
    const int decimals = rows_.decimals(option.target);
    const Decimal most = available(option).rounded(decimals);
    if (rules_.testsSign && amount.sign() * most.sign() <= 0)
      return rules_.oppositeTakesWhole ? most : Decimal(0);
    const auto exceeds = amount.abs() <=> most.abs();
    const bool takesMost = exceeds > 0 ? !takesRest() : exceeds == 0 && rules_.equalTakesWhole;
    if (takesMost) {
      takenWhole_ = true;
      return most;
    }
    option.usedUp = true;
    return amount.rounded(decimals);
  }

  /// The source amount in the other currency, at most what the row may take.
  Decimal converted(const Option& option) const {
    const Decimal amount = rows_.number(option.source);
    if (amount.isZero()) return 0;
    const Decimal most = available(option);
    if (rules_.keepsTakenWhole && takenWhole_) return most;
    const Decimal value = atRate(option, amount);
    if (value.abs() <= most.abs()) return value.abs();
    return takesRest() ? value : most;
  }

  Decimal atRate(const Option& option, const Decimal& amount) const {
    constexpr int usualPlaces = 2;
    const int places =
        option.places.empty() ? usualPlaces : decimalPlaces(rows_.number(option.places), [&] {
          return rows_.where(option.places);
        });
    const Decimal rate = option.rate.empty() ? 1 : rows_.number(option.rate);
    if (option.divides && rate.isZero())
      throw com::Error(com::error::kDivisionByZero, "clsPublic",
                       rows_.where(option.rate) + ": an amount cannot be divided by the rate 0");
    const Fraction value = option.divides ? Fraction(amount, 1, rate) : Fraction(amount, rate, 1);
    return RoundAmount(value, std::min(places, rows_.decimals(option.target)));
  }

  void copyPlanned() {
    rows_.set("FQty_remain", rows_.value("Fqty_plan"));
    rows_.set("FAmount_remain", rows_.value("FAmount_Plan"));
    rows_.set("FAmountFor_remain", rows_.value("FAmountFor_Plan"));
  }

  SwitchRows& rows_;
  const SwitchRules& rules_;
  bool takenWhole_ = false;  // by an option of the row at work
};

/// Puts a recordset on its first row at the end of a walk, however that ends.
class BackToFirst {
 public:
  explicit BackToFirst(ado::Recordset& rows) : rows_(rows) {}
  ~BackToFirst() {
    if (rows_.State() == ado::adStateOpen && rows_.RecordCount() > 0) rows_.MoveFirst();
  }
  BackToFirst(const BackToFirst&) = delete;
  BackToFirst& operator=(const BackToFirst&) = delete;

 private:
  ado::Recordset& rows_;
};

bool flag(const DictionaryRef& dFilter, const char* key) {
  return dFilter && dFilter->Value(key).toBool();
}

void fillRecordset(ado::Recordset& rsEntry, const Vector& vOption, const SwitchRules& rules) {
  const BackToFirst back(rsEntry);
  RecordsetRows rows(rsEntry);
  fillSwitchData(rows, vOption, rules);
}

}  // namespace

void fillSwitchData(SwitchRows& rows, const Vector& vOption, const SwitchRules& rules) {
  std::vector<Option> options;
  for (const Variant& item : vOption) options.emplace_back(item, options.size() + 1, rules);
  Filling filling(rows, rules);
  while (rows.next()) filling.fillRow(options);
}

void GetSwitchData(ado::Recordset& rsEntry, const Vector& vOption, const DictionaryRef& dFilter) {
  SwitchRules rules;
  rules.oppositeTakesWhole = flag(dFilter, "bSwitchRobEntry");
  fillRecordset(rsEntry, vOption, rules);
}

void GetSwitchDataExt(ado::Recordset& rsEntry, const Vector& vOption,
                      const DictionaryRef& dFilter) {
  SwitchRules rules;
  rules.oppositeTakesWhole = true;
  rules.equalTakesWhole = false;
  rules.lessSecondCheck = true;
  rules.lastTakesRest = flag(dFilter, "bCanOverAmt");
  rules.copiesPlanned = flag(dFilter, "bCopyFields");
  fillRecordset(rsEntry, vOption, rules);
}

void GetSwitchVectData(const Vector& rsEntry, const Vector& vOption) {
  SwitchRules rules;
  rules.testsSign = false;
  rules.equalTakesWhole = false;
  rules.keepsTakenWhole = false;
  VectorRows rows(rsEntry);
  fillSwitchData(rows, vOption, rules);
}

}  // namespace velmora::settlement
