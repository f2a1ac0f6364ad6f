#include "platform/tsql/values/arithmetic.h"

#include <cmath>
#include <limits>
#include <string>

#include "platform/tsql/engine/engine_functions.h"
#include "platform/tsql/values/value_error.h"

namespace velmora::tsql::values {
namespace {

[[noreturn]] void raiseZeroDivisor() {
  throw ValueError(std::string(kDivideByZero));
}

template <class Value>
Value finiteValue(Value value, const char* type) {
  if (std::isfinite(value)) return value;
  throw ValueError(
      std::string("8115: Arithmetic overflow error converting expression to data type ") + type +
      ".");
}

double defined(double value) {
  if (std::isnan(value)) throw ValueError("3623: An invalid floating point operation occurred.");
  return finiteValue(value, "float");
}

}  // namespace

std::int64_t quotient(std::int64_t a, std::int64_t b) {
  if (b == 0) raiseZeroDivisor();
  if (b == -1 && a == std::numeric_limits<std::int64_t>::min())
    throw ValueError("8115: Arithmetic overflow error converting expression to data type bigint.");
  return a / b;
}

std::int64_t remainder(std::int64_t a, std::int64_t b) {
  if (b == 0) raiseZeroDivisor();
  return b == -1 ? 0 : a % b;
}

double ratio(double a, double b) {
  if (b == 0) raiseZeroDivisor();
  return finite(a / b);
}

double finite(double value) {
  return finiteValue(value, "float");
}

float finiteReal(float value) {
  return finiteValue(value, "real");
}

double squareRoot(double value) {
  return defined(std::sqrt(value));
}

double square(double value) {
  return finite(value * value);
}

double exponential(double value) {
  return finite(std::exp(value));
}

double logarithm(double value) {
  return defined(value <= 0 ? std::nan("") : std::log(value));
}

double decimalLogarithm(double value) {
  return defined(value <= 0 ? std::nan("") : std::log10(value));
}

double power(double base, double exponent) {
  if (base == 0 && exponent < 0) raiseZeroDivisor();
  return defined(std::pow(base, exponent));
}

}  // namespace velmora::tsql::values
