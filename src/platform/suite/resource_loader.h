#pragma once

#include <memory>
#include <string>

#include "platform/suite/message_catalogue.h"
#include "velmora/com/dispatch_table.h"

namespace velmora::suite {

/// "Q8RESLOADER.Loader": the texts of a resource file family in one language.
///
/// Properties ResFileBaseName ("Q8ArAp") and LanguageID ("chs", "CHT" or "EN"; letter case
/// ignored) choose the catalogue; LoadString gives a text by its key and raises
/// com::Error naming key, language or catalogue when there is none; Unload lets the
/// catalogue go.
class ResourceLoader final : public com::DispatchObject<ResourceLoader> {
 public:
  static const com::DispatchTable<ResourceLoader>& dispatchTable();

  std::string LoadString(const std::string& key);
  void Unload();

 private:
  std::string baseName_;
  std::string language_;
  std::shared_ptr<const MessageCatalogue> catalogue_;
};

}  // namespace velmora::suite
