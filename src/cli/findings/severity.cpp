#include "cli/findings/findings.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"

namespace velmora::cli {

std::string seriousErrorText(const std::string& language) {
  constexpr const char* key = "严重错误";
  if (language == "chs") return key;
  try {
    const auto loader = com::CreateObject("Q8RESLOADER.Loader");
    loader->PutProperty("ResFileBaseName", "Q8ArAp");
    loader->PutProperty("LanguageID", language);
    return com::call(*loader, "LoadString", key).toText();
  } catch (const com::Error&) {
    return key;  // an untranslated finding carries the key itself
  }
}

Severity severityOf(const std::string& text, const std::string& seriousText) {
  return text.find(seriousText) != std::string::npos ? Severity::serious : Severity::warning;
}

}  // namespace velmora::cli
