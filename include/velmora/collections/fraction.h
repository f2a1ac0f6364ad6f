#pragma once

#include <optional>

#include "velmora/collections/decimal.h"

namespace velmora::collections {

/// amount × factor / divisor, exact: no digit is lost before the result is rounded, once,
/// however long prices and rates are.
class Fraction {
 public:
  /// Raises kDivisionByZero.
  Fraction(const Decimal& amount, const Decimal& factor, const Decimal& divisor);

  /// Whether the value is larger than `limit`, not negative, either way.
  bool exceeds(std::int64_t limit) const;
  /// Rounded half away from zero, with exactly `scale` decimals; nullopt when that needs
  /// more than 38 digits. Raises kOverflow when scale is not in 0..38.
  std::optional<Decimal> tryRounded(int scale) const;

 private:
  Decimal amount_, factor_, divisor_;
};

}  // namespace velmora::collections
