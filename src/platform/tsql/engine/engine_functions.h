#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora::tsql {

/// Arithmetic of decimals that DuckDB's own cannot give exactly.
/// The provider registers it as a scalar function
///   name(DECIMAL(38,leftScale), DECIMAL(38,rightScale)) -> DECIMAL(38,resultScale)
/// NULL in, NULL out. The exact result is cut (quotient) or rounded half away from zero
/// (all others) at resultScale. `money` and `smallMoney` are the left value in the range of
/// the type, whatever the right one. Errors, by text: divisor zero kDivideByZero, more than
/// 38 digits, or beyond the range, kArithmeticOverflow.
struct DecimalFunction {
  enum class Operation { multiply, divide, add, subtract, remainder, money, smallMoney };
  Operation operation = Operation::divide;
  int leftScale = 0;
  int rightScale = 0;
  int resultScale = 0;

  /// For instance "velmora_div_4_10_6"; one name, one function.
  std::string name() const;
  friend bool operator==(const DecimalFunction&, const DecimalFunction&) = default;
};

inline constexpr std::string_view kDivideByZero = "8134: Divide by zero error encountered.";
inline constexpr std::string_view kArithmeticOverflow =
    "8115: Arithmetic overflow error converting expression to data type numeric.";

/// A DuckDB error text as SQL Server would say it, without a word of the engine's: errors that
/// translated statements raise themselves ("245: Conversion failed ...") as they are, others by
/// number and sense; nothing for one that has none.
std::optional<std::string> sqlServerError(std::string_view engineMessage);

}  // namespace velmora::tsql
