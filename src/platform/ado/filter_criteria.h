#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "velmora/ado/data_type.h"
#include "velmora/ado/rowset.h"

namespace velmora::ado {

/// "column operator value". A Null cell satisfies none but isNull.
struct Comparison {
  enum class Operation { equal, notEqual, less, greater, lessOrEqual, greaterOrEqual };

  std::size_t field = 0;
  Operation operation = Operation::equal;
  Variant value;                      ///< Decimal, Double, Boolean, Date, or a String in lower case
  std::optional<std::int64_t> whole;  ///< the value when it is a whole number

  bool satisfiedBy(const Variant& cell) const;
};

/// "column like 'pattern'": the text in lower case, open at either end or none.
struct Pattern {
  std::size_t field = 0;
  std::string text;
  bool openStart = false;
  bool openEnd = false;

  bool satisfiedBy(const Variant& cell) const;
};

/// "column = null", "column <> null".
struct NullTest {
  std::size_t field = 0;
  bool expected = true;

  bool satisfiedBy(const Variant& cell) const { return cell.isNull() == expected; }
};

struct Criterion;
struct AllOf {
  std::vector<Criterion> parts;
};
struct AnyOf {
  std::vector<Criterion> parts;
};

struct Criterion {
  std::variant<Comparison, Pattern, NullTest, AllOf, AnyOf> node;

  /// `cells` are the cells of one row.
  bool satisfiedBy(const Variant* cells) const;
  void forEachField(const std::function<void(std::size_t)>& visit) const;
};

/// The parts joined by the outermost "and", all of which a row has to satisfy.
/// Empty criteria have none.
class FilterCriteria {
 public:
  struct Part {
    Criterion criterion;
    std::string text;  ///< as written, without blanks around it
  };

  FilterCriteria() = default;
  explicit FilterCriteria(std::vector<Part> parts);

  const std::vector<Part>& parts() const noexcept { return parts_; }
  bool satisfiedBy(const Variant* cells) const;
  /// Whether the outcome can depend on the column.
  bool reads(std::size_t field) const noexcept;
  /// Whether every row that satisfies these criteria also satisfies `wider`,
  /// because they repeat each of its parts.
  bool narrows(const FilterCriteria& wider) const;

 private:
  std::vector<Part> parts_;
  std::vector<bool> fields_;
};

}  // namespace velmora::ado
