#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace velmora::suite {

/// The texts of one language, compiled by msgfmt (.mo). Immutable once read.
class MessageCatalogue {
 public:
  /// Raises com::Error naming the file when it cannot be read or is no catalogue.
  static MessageCatalogue read(const std::string& path);
  /// The catalogue at `path`, read once per process and shared by all threads.
  static std::shared_ptr<const MessageCatalogue> cached(const std::string& path);

  /// The translation of `key`; nullopt when there is none.
  std::optional<std::string_view> find(std::string_view key) const;

 private:
  explicit MessageCatalogue(std::string bytes) : bytes_(std::move(bytes)) {}
  bool isValid() const;
  std::uint32_t word(std::size_t offset) const;
  std::string_view entry(std::uint32_t table, std::uint32_t index) const;

  std::string bytes_;
};

/// Path of the compiled catalogue `name` ("Q8ArAp_EN"): in $VELMORA_MESSAGES, else
/// beside the platform library (../share/velmora/messages when installed,
/// ../messages in a build tree). Raises com::Error naming the folders looked in.
std::string findMessageFile(std::string_view name);

}  // namespace velmora::suite
