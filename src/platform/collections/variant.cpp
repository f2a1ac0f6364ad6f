#include "velmora/collections/variant.h"

#include <array>
#include <atomic>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>

#include "platform/collections/number_text.h"
#include "velmora/collections/letter_case.h"
#include "velmora/com/error.h"

namespace velmora::collections {

/// Counted characters, which stand in memory right behind this.
struct Variant::Text {
  std::atomic<std::uint32_t> references{1};
  std::size_t size;

  explicit Text(std::size_t length) : size(length) {}

  char* characters() { return reinterpret_cast<char*>(this + 1); }

  static Text* create(std::string_view text) {
    void* memory = ::operator new(sizeof(Text) + text.size());
    Text* created = new (memory) Text(text.size());
    std::memcpy(created->characters(), text.data(), text.size());
    return created;
  }
  void add() noexcept { references.fetch_add(1, std::memory_order_relaxed); }
  void release() noexcept {
    if (references.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    this->~Text();
    ::operator delete(this);
  }
};

namespace {

/// Day zero of the suite's dates, 1899-12-30, which is what Empty reads as.
constexpr Date kDayZero = Date::fromMicroseconds(-25'569 * std::int64_t{86'400'000'000});

/// The value for a message. Long texts are left out: a connection string given in
/// the wrong place would show its password.
std::string described(const Variant& value) {
  constexpr std::size_t kLongestShown = 30;
  std::string type(name(value.type()));
  if (value.type() == VarType::object || value.isEmpty() || value.isNull()) return type;
  if (value.text().size() > kLongestShown) return "a long " + type;
  return type + " '" + value.toText() + "'";
}

[[noreturn]] void throwUnreadable(const Variant& value, std::string_view wanted) {
  const auto number = value.isNull() ? com::error::kInvalidUseOfNull : com::error::kTypeMismatch;
  throw com::Error(number, "Velmora.Variant",
                   described(value) + " cannot be read as " + std::string(wanted));
}

[[noreturn]] void throwTooLarge(const Variant& value, std::string_view wanted) {
  throw com::Error(com::error::kOverflow, "Velmora.Variant",
                   described(value) + " does not fit " + std::string(wanted));
}

std::int64_t wholePart(const Variant& value, double number) {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  if (!(number >= -kLimit && number < kLimit)) throwTooLarge(value, name(VarType::int64));
  return static_cast<std::int64_t>(number);
}

Decimal leadingDecimal(const Variant& value) {
  const auto number = leadingNumber(value.text());
  if (number.empty()) return 0;
  if (const auto decimal = tryDecimal(number)) return *decimal;
  throwTooLarge(value, name(VarType::decimal));
}

double leadingDouble(const Variant& value) {
  auto number = leadingNumber(value.text());
  if (number.starts_with('+')) number.remove_prefix(1);
  double result = 0;
  const auto end = std::from_chars(number.data(), number.data() + number.size(), result);
  if (end.ec == std::errc::result_out_of_range) throwTooLarge(value, name(VarType::real));
  return result;
}

template <class Integer>
Integer narrowed(const Variant& value, VarType wanted) {
  const std::int64_t wide = value.toInt64();
  if (wide < std::numeric_limits<Integer>::min() || wide > std::numeric_limits<Integer>::max())
    throwTooLarge(value, name(wanted));
  return static_cast<Integer>(wide);
}

/// Plain digits where a person would write them, an exponent beyond.
std::string doubleText(double value) {
  const double size = std::abs(value);
  if (size == 0 || (size >= 1e-15 && size < 1e21)) return Decimal::fromDouble(value).toString();
  std::array<char, 32> buffer;
  const auto end = std::to_chars(buffer.begin(), buffer.end(), value);
  return {buffer.data(), end.ptr};
}

}  // namespace

std::string_view name(VarType type) noexcept {
  constexpr std::array<std::string_view, 11> names{"Empty", "Null",   "Boolean", "Int16",
                                                   "Int32", "Int64",  "Double",  "Decimal",
                                                   "Date",  "String", "Object"};
  return names[static_cast<std::size_t>(type)];
}

Variant::Variant(bool value) noexcept : type_(VarType::boolean) {
  integer_ = value ? 1 : 0;
}
Variant::Variant(std::int16_t value) noexcept : type_(VarType::int16) {
  integer_ = value;
}
Variant::Variant(std::int32_t value) noexcept : type_(VarType::int32) {
  integer_ = value;
}
Variant::Variant(std::int64_t value) noexcept : type_(VarType::int64) {
  integer_ = value;
}
Variant::Variant(double value) noexcept : type_(VarType::real) {
  real_ = value;
}
Variant::Variant(Date value) noexcept : type_(VarType::date) {
  integer_ = value.microseconds();
}

Variant::Variant(const Decimal& value) noexcept : type_(VarType::decimal), scale_(value.scale()) {
  const auto bits = static_cast<uint128>(value.coefficient());
  words_[0] = static_cast<std::uint64_t>(bits);
  words_[1] = static_cast<std::uint64_t>(bits >> 64);
}

Variant::Variant(std::string_view value) : type_(VarType::string) {
  text_ = value.empty() ? nullptr : Text::create(value);
}

Variant::Variant(com::Ref<com::IUnknown> object, int) noexcept : type_(VarType::object) {
  object_ = object.detach();
}

void Variant::share() noexcept {
  if (type_ == VarType::string && text_ != nullptr) text_->add();
  if (type_ == VarType::object && object_ != nullptr) object_->AddRef();
}

void Variant::release() noexcept {
  if (type_ == VarType::string && text_ != nullptr) text_->release();
  if (type_ == VarType::object && object_ != nullptr) object_->Release();
}

bool Variant::toBool() const {
  switch (type_) {
    case VarType::empty:
      return false;
    case VarType::boolean:
    case VarType::int16:
    case VarType::int32:
    case VarType::int64:
      return integer_ != 0;
    case VarType::real:
      return real_ != 0;
    case VarType::decimal:
      return (words_[0] | words_[1]) != 0;
    case VarType::string:
      if (equalsIgnoringCase(text(), "true")) return true;
      return leadingDouble(*this) != 0;
    default:
      throwUnreadable(*this, name(VarType::boolean));
  }
}

std::int16_t Variant::toInt16() const {
  return narrowed<std::int16_t>(*this, VarType::int16);
}
std::int32_t Variant::toInt32() const {
  return narrowed<std::int32_t>(*this, VarType::int32);
}

std::int64_t Variant::toInt64() const {
  switch (type_) {
    case VarType::empty:
      return 0;
    case VarType::boolean:
      return -integer_;
    case VarType::int16:
    case VarType::int32:
    case VarType::int64:
      return integer_;
    case VarType::real:
      return wholePart(*this, real_);
    case VarType::decimal:
      return toDecimal().toInt64();
    case VarType::string:
      return leadingDecimal(*this).toInt64();
    default:
      throwUnreadable(*this, name(VarType::int64));
  }
}

double Variant::toDouble() const {
  switch (type_) {
    case VarType::real:
      return real_;
    case VarType::decimal:
      return toDecimal().toDouble();
    case VarType::string:
      return leadingDouble(*this);
    case VarType::null:
    case VarType::date:
    case VarType::object:
      throwUnreadable(*this, name(VarType::real));
    default:
      return static_cast<double>(toInt64());
  }
}

Decimal Variant::toDecimal() const {
  switch (type_) {
    case VarType::real:
      return Decimal::fromDouble(real_);
    case VarType::decimal:
      return Decimal(static_cast<int128>((static_cast<uint128>(words_[1]) << 64) | words_[0]),
                     scale_);
    case VarType::string:
      return leadingDecimal(*this);
    case VarType::null:
    case VarType::date:
    case VarType::object:
      throwUnreadable(*this, name(VarType::decimal));
    default:
      return toInt64();
  }
}

Date Variant::toDate() const {
  if (type_ == VarType::date) return Date::fromMicroseconds(integer_);
  if (type_ == VarType::empty) return kDayZero;
  if (type_ == VarType::string)
    if (const auto date = Date::tryParse(text())) return *date;
  throwUnreadable(*this, name(VarType::date));
}

std::string Variant::toText() const {
  switch (type_) {
    case VarType::empty:
      return {};
    case VarType::boolean:
      return integer_ != 0 ? "True" : "False";
    case VarType::int16:
    case VarType::int32:
    case VarType::int64:
      return std::to_string(integer_);
    case VarType::real:
      return doubleText(real_);
    case VarType::decimal:
      return toDecimal().normalized().toString();
    case VarType::date:
      return Date::fromMicroseconds(integer_).toString();
    case VarType::string:
      return std::string(text());
    default:
      throwUnreadable(*this, name(VarType::string));
  }
}

std::string_view Variant::text() const noexcept {
  if (type_ != VarType::string || text_ == nullptr) return {};
  return {text_->characters(), text_->size};
}

com::Ref<com::IUnknown> Variant::toObject() const {
  if (type_ == VarType::object) return com::Ref<com::IUnknown>(object_);
  if (type_ == VarType::empty) return {};
  throwUnreadable(*this, name(VarType::object));
}

void Variant::throwNotA(const com::Guid& iid) {
  throw com::Error(com::error::kTypeMismatch, "Velmora.Variant",
                   "the object does not have the interface " + iid.toString());
}

bool operator==(const Variant& a, const Variant& b) noexcept {
  if (a.type_ != b.type_) return false;
  switch (a.type_) {
    case VarType::empty:
    case VarType::null:
      return true;
    case VarType::real:
      return a.real_ == b.real_;
    case VarType::decimal:
      return a.toDecimal() == b.toDecimal();
    case VarType::string:
      return a.text_ == b.text_ || a.text() == b.text();
    case VarType::object:
      return a.object_ == b.object_;
    default:
      return a.integer_ == b.integer_;
  }
}

}  // namespace velmora::collections
