#pragma once

#include <string>

#include "velmora/ado/recordset.h"
#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"

namespace velmora::settlement {

/// The entry rows of a new document, walked one after the other.
class SwitchRows {
 public:
  virtual ~SwitchRows() = default;

  /// Goes to the next row, at first to the first one; false at the end.
  virtual bool next() = 0;
  /// Whether the current row is the last one.
  virtual bool atLast() const = 0;
  /// The current row's value. Raises naming the column when there is none.
  virtual collections::Variant value(const std::string& column) const = 0;
  virtual void set(const std::string& column, const collections::Variant& value) = 0;
  /// Digits that the column keeps after the point; those of a number without limit.
  /// Raises naming the column when there is none.
  virtual int decimals(const std::string& column) const = 0;

  /// Raises naming row and column when the value is no number.
  collections::Decimal number(const std::string& column) const;
  /// "row 3, column FRate", for messages.
  std::string where(const std::string& column) const;

 protected:
  std::size_t row_ = 0;  ///< from 1; 0 before the first
};

class RecordsetRows final : public SwitchRows {
 public:
  explicit RecordsetRows(ado::Recordset& rows) : rows_(rows) {}
  bool next() override;
  bool atLast() const override;
  collections::Variant value(const std::string& column) const override;
  void set(const std::string& column, const collections::Variant& value) override;
  int decimals(const std::string& column) const override;

 private:
  ado::Recordset& rows_;
};

/// Rows that are dictionaries.
class VectorRows final : public SwitchRows {
 public:
  explicit VectorRows(const collections::Vector& rows) : rows_(rows) {}
  bool next() override;
  bool atLast() const override { return row_ == rows_.Size(); }
  collections::Variant value(const std::string& column) const override;
  void set(const std::string& column, const collections::Variant& value) override;
  int decimals(const std::string& /*column*/) const override {
    return collections::Decimal::kMaxDigits;
  }

 private:
  const collections::Vector& rows_;
  collections::DictionaryRef current_;
};

}  // namespace velmora::settlement
