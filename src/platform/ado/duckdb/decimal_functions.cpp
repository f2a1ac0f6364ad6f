#include "platform/ado/duckdb/decimal_functions.h"

#include <algorithm>
#include <string_view>

#include "platform/collections/powers_of_ten.h"
#include "platform/collections/uint256.h"

namespace velmora::ado::embedded {

namespace {

using collections::Decimal;
using collections::int128;
using collections::multiply;
using collections::powerOfTen;
using collections::uint128;
using collections::UInt256;
using tsql::DecimalFunction;

constexpr int kMaxDigits = Decimal::kMaxDigits;
constexpr uint128 kLimit = powerOfTen(kMaxDigits);

uint128 magnitude(int128 value) {
  return value < 0 ? uint128{0} - static_cast<uint128>(value) : static_cast<uint128>(value);
}

/// value / divisor cut to a whole number, by machine words where they reach.
UInt256 quotient(const UInt256& value, uint128 divisor) {
  if (value.high == 0) return {0, value.low / divisor};
  return divide(value, {0, divisor}).quotient;
}

/// |left * right| at the result scale.
std::optional<UInt256> product(uint128 left, uint128 right, int dropped) {
  const UInt256 exact = multiply(left, right);
  if (dropped <= 0) return multiply(exact, powerOfTen(-dropped));
  // At most 76 digits: cut all but one of the surplus, then round with the last.
  const int first = std::min(dropped - 1, kMaxDigits);
  const UInt256 shorter =
      quotient(quotient(exact, powerOfTen(first)), powerOfTen(dropped - 1 - first));
  return quotient(add(shorter, {0, 5}), 10);
}

/// A value at a scale, its sign apart.
struct Signed {
  UInt256 magnitude;
  bool negative = false;
};

/// left + right at the larger of both scales: at most 39 digits more than either has.
Signed sum(int128 left, int128 right, int leftScale, int rightScale) {
  const int scale = std::max(leftScale, rightScale);
  const UInt256 a = multiply(magnitude(left), powerOfTen(scale - leftScale));
  const UInt256 b = multiply(magnitude(right), powerOfTen(scale - rightScale));
  if ((left < 0) == (right < 0)) return {add(a, b), left < 0};
  return a >= b ? Signed{subtract(a, b), left < 0} : Signed{subtract(b, a), right < 0};
}

/// What is left of left when right is taken off as often as it goes; the sign is left's.
Signed rest(int128 left, int128 right, int leftScale, int rightScale) {
  const int scale = std::max(leftScale, rightScale);
  const UInt256 a = multiply(magnitude(left), powerOfTen(scale - leftScale));
  const UInt256 b = multiply(magnitude(right), powerOfTen(scale - rightScale));
  return {divide(a, b).remainder, left < 0};
}

/// The value with `dropped` digits less, rounded half away from zero.
UInt256 shortened(const UInt256& value, int dropped) {
  if (dropped <= 0) return value;
  const UInt256 shorter = quotient(value, powerOfTen(dropped - 1));
  return quotient(add(shorter, {0, 5}), 10);
}

/// |left / right| with the dividend's coefficient moved by `exponent` digits. nullopt
/// when the moved dividend alone is longer than 256 bits: the quotient has more than 38
/// digits then.
std::optional<UInt256> ratio(uint128 left, uint128 right, int exponent) {
  // NOLINTNEXTLINE(clang-analyzer-core.DivideZero): a divisor of zero was refused before
  if (exponent < 0) return UInt256{0, left / powerOfTen(-exponent) / right};
  const int first = std::min(exponent, kMaxDigits);
  const auto dividend = multiply(multiply(left, powerOfTen(first)), powerOfTen(exponent - first));
  if (!dividend) return std::nullopt;
  return quotient(*dividend, right);
}

int128 widened(const duckdb_hugeint& value) {
  return static_cast<int128>((static_cast<uint128>(static_cast<std::uint64_t>(value.upper)) << 64) |
                             value.lower);
}

duckdb_hugeint narrowed(int128 value) {
  return {static_cast<std::uint64_t>(value), static_cast<std::int64_t>(value >> 64)};
}

bool divides(DecimalFunction::Operation operation) {
  return operation == DecimalFunction::Operation::divide ||
         operation == DecimalFunction::Operation::remainder;
}

/// The largest coefficient of the operation's result; money reaches one further below zero.
uint128 limitOf(DecimalFunction::Operation operation, bool negative) {
  using enum DecimalFunction::Operation;
  if (operation == money) return uint128{INT64_MAX} + (negative ? 1 : 0);
  if (operation == smallMoney) return uint128{INT32_MAX} + (negative ? 1 : 0);
  return kLimit - 1;
}

std::optional<Signed> result(const DecimalFunction& function, int128 left, int128 right) {
  using enum DecimalFunction::Operation;
  const int a = function.leftScale, b = function.rightScale;
  const bool negative = (left < 0) != (right < 0);
  const int beyond = std::max(a, b) - function.resultScale;
  switch (function.operation) {
    case divide: {
      const auto quotient = ratio(magnitude(left), magnitude(right), function.resultScale + b - a);
      if (!quotient) return std::nullopt;
      return Signed{*quotient, negative};
    }
    case add:
    case subtract: {
      const Signed exact = sum(left, function.operation == add ? right : -right, a, b);
      return Signed{shortened(exact.magnitude, beyond), exact.negative};
    }
    case remainder: {
      const Signed exact = rest(left, right, a, b);
      return Signed{shortened(exact.magnitude, beyond), exact.negative};
    }
    case money:
    case smallMoney:
      right = 1;
      break;
    case multiply:
      break;
  }
  const auto exact = product(magnitude(left), magnitude(right), a + b - function.resultScale);
  if (!exact) return std::nullopt;
  return Signed{*exact, (left < 0) != (right < 0)};
}

bool isValid(const std::uint64_t* validity, idx_t row) {
  return !validity || (validity[row / 64] >> (row % 64) & 1) != 0;
}

/// One chunk of rows: reads the two inputs, writes the results.
struct Call {
  const DecimalFunction& function;
  duckdb_vector left, right, output;
  idx_t rows;

  /// The error text, empty when all went well.
  std::string_view run() const;
};

std::string_view Call::run() const {
  const auto* leftValues = static_cast<const duckdb_hugeint*>(duckdb_vector_get_data(left));
  const auto* rightValues = static_cast<const duckdb_hugeint*>(duckdb_vector_get_data(right));
  auto* results = static_cast<duckdb_hugeint*>(duckdb_vector_get_data(output));
  const auto* leftValidity = duckdb_vector_get_validity(left);
  const auto* rightValidity = duckdb_vector_get_validity(right);
  for (idx_t row = 0; row < rows; ++row) {
    if (!isValid(leftValidity, row) || !isValid(rightValidity, row)) {
      duckdb_vector_ensure_validity_writable(output);
      duckdb_validity_set_row_invalid(duckdb_vector_get_validity(output), row);
      continue;
    }
    const auto divisor = widened(rightValues[row]);
    if (divisor == 0 && divides(function.operation)) return tsql::kDivideByZero;
    const auto result = exactResult(function, widened(leftValues[row]), divisor);
    if (!result) return tsql::kArithmeticOverflow;
    results[row] = narrowed(*result);
  }
  return {};
}

void evaluate(duckdb_function_info info, duckdb_data_chunk input, duckdb_vector output) {
  const auto* function =
      static_cast<const DecimalFunction*>(duckdb_scalar_function_get_extra_info(info));
  const Call call{*function, duckdb_data_chunk_get_vector(input, 0),
                  duckdb_data_chunk_get_vector(input, 1), output,
                  duckdb_data_chunk_get_size(input)};
  const auto error = call.run();
  if (!error.empty()) duckdb_scalar_function_set_error(info, std::string(error).c_str());
}

LogicalType decimalType(int scale) {
  return LogicalType(duckdb_create_decimal_type(kMaxDigits, static_cast<std::uint8_t>(scale)));
}

}  // namespace

std::optional<int128> exactResult(const DecimalFunction& function, int128 left, int128 right) {
  const auto exact = result(function, left, right);
  if (!exact || exact->magnitude.high != 0) return std::nullopt;
  if (exact->magnitude.low > limitOf(function.operation, exact->negative)) return std::nullopt;
  const auto value = static_cast<int128>(exact->magnitude.low);
  return exact->negative ? -value : value;
}

void DecimalFunctions::require(const DecimalFunction& function) {
  const auto name = function.name();
  if (!known_.insert(name).second) return;
  const ScalarFunction scalar(duckdb_create_scalar_function());
  duckdb_scalar_function_set_name(scalar.get(), name.c_str());
  duckdb_scalar_function_add_parameter(scalar.get(), decimalType(function.leftScale).get());
  duckdb_scalar_function_add_parameter(scalar.get(), decimalType(function.rightScale).get());
  duckdb_scalar_function_set_return_type(scalar.get(), decimalType(function.resultScale).get());
  duckdb_scalar_function_set_extra_info(
      scalar.get(), new DecimalFunction(function),
      [](void* data) { delete static_cast<DecimalFunction*>(data); });
  duckdb_scalar_function_set_function(scalar.get(), evaluate);
  // The engine answers an error for a function that another connection of the database
  // has made known already, and for nothing else that could happen here.
  duckdb_register_scalar_function(session_.handle(), scalar.get());
}

}  // namespace velmora::ado::embedded
