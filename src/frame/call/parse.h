#pragma once

#include <string>
#include <string_view>

#include "velmora/collections/dictionary.h"

namespace velmora {

/// Takes the suite's connection string apart and answers its properties by name,
/// letter case ignored.
class CParse {
 public:
  CParse();

  /// Reads "key=value;..." (values optionally in braces) in place of what was there
  /// before. Always true; a key that occurs twice raises kDuplicateKey.
  bool ParseString(std::string_view text);

  /// The whole text last given to ParseString; sibling components take it unchanged.
  const std::string& PropsString() const noexcept { return text_; }

  /// Raises kInvalidArgument naming the property when it is absent.
  std::string GetProperty(std::string_view name) const;

  std::string ConStr() const { return GetProperty("ConnectString"); }
  std::string ConDBMSName() const { return GetProperty("DBMS Name"); }
  std::string ConDBMSVersion() const { return GetProperty("DBMS Version"); }
  std::string UserName() const { return GetProperty("UserName"); }
  std::string UserID() const { return GetProperty("UserID"); }
  /// The caller's language code as given; "chs" when absent.
  std::string LanguageID() const;
  /// Whether the account set is an industrial one.
  bool IsIndustry() const;
  /// `name` or, in the edition that keeps its own variant, the variant's name.
  std::string GetRzObjectName(std::string_view name) const;

 private:
  std::string text_;
  collections::DictionaryRef properties_;
};

}  // namespace velmora
