#include "platform/suite/resource_loader.h"

#include "velmora/collections/letter_case.h"
#include "velmora/com/error.h"

namespace velmora::suite {

namespace {

constexpr const char* kProgId = "Q8RESLOADER.Loader";

/// The file name's part for `language`. Only these name files: what a caller's string gives
/// must not lead out of the folder of messages.
std::string_view fileSuffix(std::string_view language) {
  for (const std::string_view known : {"CHS", "CHT", "EN"})
    if (collections::equalsIgnoringCase(language, known)) return known;
  throw com::Error(com::error::kInvalidArgument, kProgId,
                   "There are no texts in language \"" + std::string(language) +
                       "\"; chs, CHT or EN is expected");
}

}  // namespace

const com::DispatchTable<ResourceLoader>& ResourceLoader::dispatchTable() {
  using collections::Variant;
  static const auto table = [] {
    auto made = std::make_unique<com::DispatchTable<ResourceLoader>>(
        "Loader", kProgId, com::Guid::parse("5E0A3B6C-7D12-4F0B-9C55-2B1D8E4A7F01"),
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
    catalogue_ = MessageCatalogue::cached(
        findMessageFile(baseName_ + "_" + std::string(fileSuffix(language_))));
  const auto text = catalogue_->find(key);
  if (!text)
    throw com::Error(com::error::kInvalidArgument, kProgId,
                     "There is no text '" + key + "' in language " + language_);
  return std::string(*text);
}

void ResourceLoader::Unload() {
  catalogue_.reset();
}

}  // namespace velmora::suite
