#include "platform/ado/filter_criteria.h"

#include <algorithm>
#include <compare>

#include "velmora/collections/letter_case.h"

namespace velmora::ado {

namespace {

using collections::lowerCased;
using collections::VarType;
using Operation = Comparison::Operation;

bool sameIgnoringCase(char c, char lower) {
  return lowerCased(c) == lower;
}

std::strong_ordering compareTexts(std::string_view text, std::string_view lower) {
  return std::lexicographical_compare_three_way(
      text.begin(), text.end(), lower.begin(), lower.end(), [](char a, char b) {
        return static_cast<unsigned char>(lowerCased(a)) <=> static_cast<unsigned char>(b);
      });
}

bool isInteger(VarType type) {
  return type == VarType::int16 || type == VarType::int32 || type == VarType::int64;
}

/// Unordered when the cell is of another kind than the value.
std::partial_ordering compare(const Variant& cell, const Comparison& comparison) {
  const Variant& value = comparison.value;
  if (comparison.whole && isInteger(cell.type())) return cell.toInt64() <=> *comparison.whole;
  if (value.isNumeric() && cell.isNumeric()) {
    if (cell.type() == VarType::real) return cell.toDouble() <=> value.toDouble();
    return cell.toDecimal() <=> value.toDecimal();
  }
  if (cell.type() != value.type()) return std::partial_ordering::unordered;
  switch (cell.type()) {
    case VarType::string:
      return compareTexts(cell.text(), value.text());
    case VarType::date:
      return cell.toDate() <=> value.toDate();
    case VarType::boolean:
      return cell.toBool() <=> value.toBool();
    default:
      return std::partial_ordering::unordered;
  }
}

bool holds(Operation operation, std::partial_ordering order) {
  switch (operation) {
    case Operation::equal:
      return std::is_eq(order);
    case Operation::notEqual:
      return std::is_lt(order) || std::is_gt(order);
    case Operation::less:
      return std::is_lt(order);
    case Operation::greater:
      return std::is_gt(order);
    case Operation::lessOrEqual:
      return std::is_lteq(order);
    case Operation::greaterOrEqual:
      return std::is_gteq(order);
  }
  return false;
}

template <class Leaf>
bool satisfied(const Leaf& leaf, const Variant* cells) {
  return leaf.satisfiedBy(cells[leaf.field]);
}
bool satisfied(const AllOf& all, const Variant* cells) {
  return std::ranges::all_of(all.parts, [&](const Criterion& c) { return c.satisfiedBy(cells); });
}
bool satisfied(const AnyOf& any, const Variant* cells) {
  return std::ranges::any_of(any.parts, [&](const Criterion& c) { return c.satisfiedBy(cells); });
}

template <class Node>
void visitFields(const Node& node, const std::function<void(std::size_t)>& visit) {
  if constexpr (requires { node.parts; })
    for (const Criterion& part : node.parts) part.forEachField(visit);
  else
    visit(node.field);
}

}  // namespace

bool Comparison::satisfiedBy(const Variant& cell) const {
  return !cell.isNull() && holds(operation, compare(cell, *this));
}

bool Pattern::satisfiedBy(const Variant& cell) const {
  if (!cell.isString()) return false;
  const std::string_view whole = cell.text();
  if (whole.size() < text.size()) return false;
  const auto matchesAt = [&](std::string_view part) {
    return std::ranges::equal(part, text, sameIgnoringCase);
  };
  if (openStart && openEnd)
    return std::search(whole.begin(), whole.end(), text.begin(), text.end(), sameIgnoringCase) !=
               whole.end() ||
           text.empty();
  if (openEnd) return matchesAt(whole.substr(0, text.size()));
  if (openStart) return matchesAt(whole.substr(whole.size() - text.size()));
  return matchesAt(whole);
}

bool Criterion::satisfiedBy(const Variant* cells) const {
  return std::visit([cells](const auto& part) { return satisfied(part, cells); }, node);
}

void Criterion::forEachField(const std::function<void(std::size_t)>& visit) const {
  std::visit([&visit](const auto& part) { visitFields(part, visit); }, node);
}

FilterCriteria::FilterCriteria(std::vector<Part> parts) : parts_(std::move(parts)) {
  for (const Part& part : parts_)
    part.criterion.forEachField([this](std::size_t field) {
      if (fields_.size() <= field) fields_.resize(field + 1);
      fields_[field] = true;
    });
}

bool FilterCriteria::satisfiedBy(const Variant* cells) const {
  return std::ranges::all_of(
      parts_, [cells](const Part& part) { return part.criterion.satisfiedBy(cells); });
}

bool FilterCriteria::reads(std::size_t field) const noexcept {
  return field < fields_.size() && fields_[field];
}

bool FilterCriteria::narrows(const FilterCriteria& wider) const {
  return std::ranges::all_of(wider.parts_, [this](const Part& part) {
    return std::ranges::find(parts_, part.text, &Part::text) != parts_.end();
  });
}

}  // namespace velmora::ado
