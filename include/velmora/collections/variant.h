#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "velmora/collections/date.h"
#include "velmora/collections/decimal.h"
#include "velmora/com/unknown.h"

namespace velmora::collections {

/// Stands for the database's NULL.
struct Null {
  friend constexpr bool operator==(Null, Null) = default;
};

enum class VarType : std::uint8_t {
  empty,
  null,
  boolean,
  int16,
  int32,
  int64,
  real,  ///< double
  decimal,
  date,
  string,
  object,
};

/// Name of the type as messages show it, for instance "Int32".
std::string_view name(VarType type) noexcept;

/// A value of any of the types that options, rows and arguments carry.
///
/// 24 bytes; a text is counted and shared between copies, because settlement and
/// result rows copy the same texts again and again.
///
/// The to... readers convert: Empty reads as 0, false, "", nothing or the date
/// 1899-12-30; a text gives its leading number ("12a" and " 12" read as 12, "x"
/// as 0) and, as a boolean, "true"/"false" in any case or leading number <> 0; a
/// fraction read as an integer is cut ("-3.5x" gives -3); true reads as the
/// number -1; a Double reads as the decimal with its shortest text; a number out
/// of range raises kOverflow; Null raises kInvalidUseOfNull; anything else
/// kTypeMismatch.
class Variant {
 public:
  Variant() noexcept {}
  // NOLINTBEGIN(google-explicit-constructor): a value stands for its variant.
  Variant(Null) noexcept : type_(VarType::null) {}
  Variant(bool value) noexcept;
  Variant(std::int16_t value) noexcept;
  Variant(std::int32_t value) noexcept;
  Variant(std::int64_t value) noexcept;
  Variant(double value) noexcept;
  Variant(const Decimal& value) noexcept;
  Variant(Date value) noexcept;
  Variant(std::string_view value);
  Variant(const std::string& value) : Variant(std::string_view(value)) {}
  Variant(const char* value) : Variant(std::string_view(value)) {}
  /// An empty reference makes the object value "nothing".
  template <class T>
  Variant(const com::Ref<T>& object) noexcept : Variant(com::Ref<com::IUnknown>(object), 0) {}
  // NOLINTEND(google-explicit-constructor)
  Variant(const Variant& other) noexcept : type_(other.type_), scale_(other.scale_) {
    words_[0] = other.words_[0];
    words_[1] = other.words_[1];
    if (isCounted()) share();
  }
  Variant(Variant&& other) noexcept : type_(other.type_), scale_(other.scale_) {
    words_[0] = other.words_[0];
    words_[1] = other.words_[1];
    other.type_ = VarType::empty;
  }
  Variant& operator=(Variant other) noexcept {
    std::swap(type_, other.type_);
    std::swap(scale_, other.scale_);
    std::swap(words_, other.words_);
    return *this;
  }
  ~Variant() {
    if (isCounted()) release();
  }

  VarType type() const noexcept { return type_; }
  bool isEmpty() const noexcept { return type_ == VarType::empty; }
  bool isNull() const noexcept { return type_ == VarType::null; }
  bool isString() const noexcept { return type_ == VarType::string; }
  /// Boolean is not numeric.
  bool isNumeric() const noexcept { return type_ >= VarType::int16 && type_ <= VarType::decimal; }

  bool toBool() const;
  std::int16_t toInt16() const;
  std::int32_t toInt32() const;
  std::int64_t toInt64() const;
  double toDouble() const;
  Decimal toDecimal() const;
  /// Also from a text that Date::tryParse takes.
  Date toDate() const;
  /// "True"/"False", numbers without trailing zeros of the fraction, dates as
  /// Date::toString.
  std::string toText() const;
  /// The counted text itself; empty for every other type.
  std::string_view text() const noexcept;
  /// The object, possibly nothing; kTypeMismatch when it is neither object nor Empty.
  com::Ref<com::IUnknown> toObject() const;
  /// The object as `T`; nothing when it is nothing; kTypeMismatch when it is another class.
  template <class T>
  com::Ref<T> toObject() const {
    const auto object = toObject();
    auto found = object.template as<T>();
    if (object && !found) throwNotA(T::kInterfaceId);
    return found;
  }

  /// Same type and same value; decimals by value, objects by identity.
  friend bool operator==(const Variant& a, const Variant& b) noexcept;

 private:
  struct Text;  // counted characters
  Variant(com::Ref<com::IUnknown> object, int) noexcept;
  // Copies are made by the million: only texts and objects leave the inlined path.
  bool isCounted() const noexcept { return type_ == VarType::string || type_ == VarType::object; }
  void share() noexcept;
  void release() noexcept;
  [[noreturn]] static void throwNotA(const com::Guid& iid);

  VarType type_ = VarType::empty;
  std::int32_t scale_ = 0;  // of a decimal
  union {
    std::uint64_t words_[2] = {0, 0};  // a decimal's coefficient, low word first
    std::int64_t integer_;             // boolean, integers, date
    double real_;
    Text* text_;
    com::IUnknown* object_;
  };
};

static_assert(sizeof(Variant) == 24);

}  // namespace velmora::collections
