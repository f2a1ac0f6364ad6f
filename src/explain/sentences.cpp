#include "explain/sentences.h"

#include <fmt/format.h>
#include <vector>

#include "velmora/collections/format.h"
#include "velmora/com/class_table.h"

namespace velmora::explain {

std::string textOf(Period period) {
  return fmt::format("{}-{:02}", period.year, period.period);
}

std::string Sentences::of(std::string_view text, std::initializer_list<std::string> values) {
  auto found = translated_.find(text);
  if (found == translated_.end()) {
    std::string translation(text);
    if (language_ != "chs") {
      if (!loader_) {
        loader_ = com::CreateObject("Q8RESLOADER.Loader");
        loader_->PutProperty("ResFileBaseName", "Q8ArAp");
        loader_->PutProperty("LanguageID", language_);
      }
      translation = com::call(*loader_, "LoadString", text).toText();
    }
    found = translated_.emplace(text, std::move(translation)).first;
  }
  const std::vector<collections::Variant> parameters(values.begin(), values.end());
  return collections::FormatString(found->second, parameters);
}

std::string Sentences::document(const DocumentRef& document) const {
  return document.type.empty() ? document.number : document.type + " " + document.number;
}

std::string Sentences::voucher(const VoucherRef& voucher) const {
  return fmt::format("{}-{}", voucher.word, voucher.number);
}

}  // namespace velmora::explain
