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

}  // namespace velmora::tsql::values
