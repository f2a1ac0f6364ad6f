#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "velmora/collections/dictionary.h"

namespace velmora::collections {

/// The keys of a dictionary in order of insertion, found without regard to letter
/// case: by comparison while they are few, through an open-addressing table of
/// positions beyond that.
class Dictionary::Keys {
 public:
  std::size_t size() const noexcept { return names_.size(); }
  const std::string& name(std::size_t i) const noexcept { return names_[i]; }
  std::optional<std::size_t> find(std::string_view key) const noexcept;
  /// `key` must be absent.
  void append(std::string_view key);
  void remove(std::size_t position);

 private:
  static constexpr std::uint32_t kFree = UINT32_MAX;

  std::size_t slotFor(std::string_view key) const noexcept;
  void index(std::size_t position) noexcept;
  void rebuildIndex();

  std::vector<std::string> names_;
  std::vector<std::uint32_t> slots_;  // empty while the keys are few
};

}  // namespace velmora::collections
