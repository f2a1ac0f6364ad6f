#include "cli/output/result_writer.h"

namespace velmora::cli {

using collections::Variant;
using collections::VarType;

std::string cellText(const Variant& value) {
  switch (value.type()) {
    case VarType::empty:
    case VarType::null:
      return {};
    case VarType::boolean:
      return value.toBool() ? "1" : "0";
    case VarType::decimal:
      return value.toDecimal().toString();
    case VarType::object:
      return "(object)";
    default:
      return value.toText();
  }
}

}  // namespace velmora::cli
