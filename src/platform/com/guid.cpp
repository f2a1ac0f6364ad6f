#include "velmora/com/guid.h"

#include <stdexcept>

namespace velmora::com {

std::string Guid::toString() const {
  constexpr char digits[] = "0123456789ABCDEF";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += digits[bytes[i] / 16];
    text += digits[bytes[i] % 16];
  }
  return text;
}

void detail::throwBadGuid(std::string_view text) {
  throw std::invalid_argument("'" + std::string(text) +
                              "' is no id; expected XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX");
}

}  // namespace velmora::com
