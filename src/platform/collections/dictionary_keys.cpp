#include "platform/collections/dictionary_keys.h"

#include <bit>

#include "velmora/collections/letter_case.h"

namespace velmora::collections {

namespace {

constexpr std::size_t kFewKeys = 8;

/// FNV-1a over the lower-cased characters, the high bits folded in.
std::size_t hashIgnoringCase(std::string_view key) noexcept {
  std::uint64_t hash = 14695981039346656037U;
  for (const char c : key)
    hash = (hash ^ static_cast<unsigned char>(lowerCased(c))) * 1099511628211U;
  return static_cast<std::size_t>(hash ^ (hash >> 32));
}

}  // namespace

std::optional<std::size_t> Dictionary::Keys::find(std::string_view key) const noexcept {
  if (!slots_.empty()) {
    const std::uint32_t position = slots_[slotFor(key)];
    return position == kFree ? std::nullopt : std::optional<std::size_t>(position);
  }
  for (std::size_t i = 0; i < names_.size(); ++i)
    if (equalsIgnoringCase(names_[i], key)) return i;
  return std::nullopt;
}

void Dictionary::Keys::append(std::string_view key) {
  names_.emplace_back(key);
  // At most half of the slots are taken, so that a search always ends.
  if (names_.size() > kFewKeys && names_.size() * 2 > slots_.size()) {
    rebuildIndex();
  } else if (!slots_.empty()) {
    index(names_.size() - 1);
  }
}

void Dictionary::Keys::remove(std::size_t position) {
  names_.erase(names_.begin() + static_cast<std::ptrdiff_t>(position));
  if (!slots_.empty()) rebuildIndex();
}

/// The slot that holds the key, else the free one where it belongs.
std::size_t Dictionary::Keys::slotFor(std::string_view key) const noexcept {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hashIgnoringCase(key) & mask;
  while (slots_[slot] != kFree && !equalsIgnoringCase(names_[slots_[slot]], key))
    slot = (slot + 1) & mask;
  return slot;
}

void Dictionary::Keys::index(std::size_t position) noexcept {
  slots_[slotFor(names_[position])] = static_cast<std::uint32_t>(position);
}

void Dictionary::Keys::rebuildIndex() {
  slots_.assign(std::bit_ceil(names_.size() * 4), kFree);
  for (std::size_t i = 0; i < names_.size(); ++i) index(i);
}

}  // namespace velmora::collections
