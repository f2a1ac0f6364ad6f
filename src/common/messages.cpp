#include "common/messages.h"

#include <span>

#include "frame/call/kept_error_info.h"
#include "frame/call/loader_slot.h"
#include "frame/call/text.h"
#include "velmora/collections/format.h"
#include "velmora/com/class_table.h"

namespace velmora {

namespace {

std::string loadString(std::string_view key, std::string_view language) {
  const auto loader = com::CreateObject("Q8RESLOADER.Loader");
  keepMessageLoader(loader);
  loader->PutProperty("ResFileBaseName", "Q8ArAp");
  loader->PutProperty("LanguageID", language);
  return com::call(*loader, "LoadString", key).toText();
}

}  // namespace

std::string LoadMessage(std::string_view text, std::string_view language) {
  if (language == "chs") return std::string(text);
  const KeptErrorInfo kept;
  try {
    const std::string_view key = trimmed(text);
    const auto leading =
        key.empty() ? text.size() : static_cast<std::size_t>(key.data() - text.data());
    std::string message(text.substr(0, leading));
    message += loadString(key, language);
    return message.append(text.substr(leading + key.size()));
  } catch (...) {
    return std::string(text);
  }
}

std::string LoadMessageFmt(std::string_view text, std::string_view language,
                           std::initializer_list<collections::Variant> parameters) {
  return collections::FormatString(LoadMessage(text, language),
                                   std::span(parameters.begin(), parameters.size()));
}

}  // namespace velmora
