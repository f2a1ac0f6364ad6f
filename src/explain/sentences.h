#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

#include "explain/explanation.h"
#include "velmora/com/dispatch.h"

namespace velmora::explain {

/// Texts in the caller's language, by their wording in simplified Chinese.
class Sentences {
 public:
  explicit Sentences(std::string language) : language_(std::move(language)) {}

  /// `text` translated, "%1", "%2" ... replaced.
  std::string of(std::string_view text, std::initializer_list<std::string> values = {});

  std::string document(const DocumentRef& document) const;
  std::string voucher(const VoucherRef& voucher) const;

 private:
  std::string language_;
  com::Ref<com::IDispatch> loader_;
  std::map<std::string, std::string, std::less<>> translated_;
};

/// "2009-03".
std::string textOf(Period period);

}  // namespace velmora::explain
