#include "frame/call/parse.h"

#include "frame/call/text.h"
#include "platform/suite/caller_string.h"
#include "velmora/com/error.h"

namespace velmora {

CParse::CParse() : properties_(com::make<collections::Dictionary>()) {}

bool CParse::ParseString(std::string_view text) {
  text_ = text;
  properties_->RemoveAll();
  properties_ = suite::callerProperties(text_);
  return true;
}

std::string CParse::GetProperty(std::string_view name) const {
  if (!properties_->Lookup(name))
    throw com::Error(com::error::kInvalidArgument, "CParse",
                     "the connection string has no property \"" + std::string(name) + "\"");
  return properties_->Value(name).toText();
}

std::string CParse::LanguageID() const {
  constexpr std::string_view key = "LANGUAGE";
  return properties_->Lookup(key) ? properties_->Value(key).toText() : "chs";
}

bool CParse::IsIndustry() const {
  return upperCased(GetProperty("AcctType")) == "GY";
}

std::string CParse::GetRzObjectName(std::string_view name) const {
  const std::string edition = upperCased(GetProperty("Q8Version"));
  return edition == "VRQ" ? std::string(name) + "_" + edition : std::string(name);
}

}  // namespace velmora
