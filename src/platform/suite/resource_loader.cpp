#include "platform/suite/resource_loader.h"

#include <algorithm>

#include "velmora/com/error.h"

namespace velmora::suite {

namespace {

std::string upperCased(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return text;
}

}  // namespace

const com::DispatchTable<ResourceLoader>& ResourceLoader::dispatchTable() {
  using collections::Variant;
  static const auto table = [] {
    auto made = std::make_unique<com::DispatchTable<ResourceLoader>>(
        "Loader", "Q8RESLOADER.Loader", com::Guid::parse("5E0A3B6C-7D12-4F0B-9C55-2B1D8E4A7F01"),
        com::IDispatch::kInterfaceId);
    made->method("LoadString", &ResourceLoader::LoadString, {"key"})
        .method("Unload", &ResourceLoader::Unload, {})
        .property(
            "ResFileBaseName", [](ResourceLoader& loader) { return Variant(loader.baseName_); },
            [](ResourceLoader& loader, const Variant& value) {
              loader.Unload();
              loader.baseName_ = value.toText();
            })
        .property(
            "LanguageID", [](ResourceLoader& loader) { return Variant(loader.language_); },
            [](ResourceLoader& loader, const Variant& value) {
              loader.Unload();
              loader.language_ = value.toText();
            });
    return made;
  }();
  return *table;
}

std::string ResourceLoader::LoadString(const std::string& key) {
  if (!catalogue_)
    catalogue_ = MessageCatalogue::cached(findMessageFile(baseName_ + "_" + upperCased(language_)));
  const auto text = catalogue_->find(key);
  if (!text)
    throw com::Error(com::error::kInvalidArgument, "Q8RESLOADER.Loader",
                     "There is no text '" + key + "' in language " + language_);
  return std::string(*text);
}

void ResourceLoader::Unload() {
  catalogue_.reset();
}

}  // namespace velmora::suite
