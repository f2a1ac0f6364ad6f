#include "common/localized_field_name.h"

#include "frame/call/text.h"

namespace velmora {

std::string LocalizedFieldName(std::string_view stem, std::string_view language, bool addChsSuffix,
                               bool addAlias) {
  std::string field(stem);
  const std::string code = upperCased(language);
  if (code == "CHT") {
    field += "_CHT";
  } else if (code == "EN") {
    field += "_EN";
  } else if (addChsSuffix) {
    field += "_CHS";
  }
  if (addAlias) field.append(" as ").append(stem);
  return field;
}

}  // namespace velmora
