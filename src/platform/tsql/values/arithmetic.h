#pragma once

#include <cstdint>

/// Arithmetic of whole and floating numbers. Errors are ValueErrors: 8134 for a divisor of
/// zero, 8115 for a result beyond the type.
namespace velmora::tsql::values {

/// a / b cut towards zero, and what is left of a.
std::int64_t quotient(std::int64_t a, std::int64_t b);
std::int64_t remainder(std::int64_t a, std::int64_t b);

double ratio(double a, double b);
/// The value, unless it is beyond the largest float.
double finite(double value);
float finiteReal(float value);

/// Error 3623 where the function is not defined, 8115 beyond float.
double squareRoot(double value);
double square(double value);
double exponential(double value);
double logarithm(double value);
double decimalLogarithm(double value);
double power(double base, double exponent);

}  // namespace velmora::tsql::values
