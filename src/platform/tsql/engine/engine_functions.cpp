#include "platform/tsql/engine/engine_functions.h"

namespace velmora::tsql {

std::string DecimalFunction::name() const {
  return std::string(operation == Operation::divide ? "velmora_div_" : "velmora_mul_") +
         std::to_string(leftScale) + "_" + std::to_string(rightScale) + "_" +
         std::to_string(resultScale);
}

}  // namespace velmora::tsql
