// Compiled message catalogues.

#include "common/fuzz.h"
#include "platform/suite/message_catalogue.h"
#include "velmora/com/error.h"

namespace velmora::fuzz {

void run(std::string_view input) {
  const MemoryFile file(input);
  try {
    const auto catalogue = suite::MessageCatalogue::read(file.path());
    std::size_t bytes = 0;  // of all translations found, so that each is read
    for (const char* key : {"", "凭证", "严重错误", "a", "zz"})
      if (const auto text = catalogue.find(key))
        for (const char c : *text) bytes += c != '\0' ? 1 : 0;
    for (std::size_t i = 0; i + 4 < input.size(); i += 4)
      if (const auto text = catalogue.find(input.substr(i, 4))) bytes += text->size();
    require(bytes <= input.size() * input.size() + 5 * input.size(), "more text than the file has",
            file.path());
  } catch (const com::Error& error) {
    requireReadable(error.description(), input);
  }
}

}  // namespace velmora::fuzz
