#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "velmora/collections/variant.h"

namespace velmora::collections {

/// Keyed bag of values. Keys keep the order and the spelling of their first
/// insertion and are matched without regard to letter case.
///
/// Clones share their keys until one of them gets or loses a key, so that the
/// rows of one result cost their values, not their keys.
class Dictionary final : public com::Object<com::IUnknown> {
 public:
  static constexpr com::Guid kInterfaceId =
      com::Guid::parse("6E2C2A0B-3D0B-4B52-9D0E-0B7B3C6A5B11");

  Dictionary();
  ~Dictionary() override;

  /// The value under `key`; Empty when absent.
  const Variant& Value(std::string_view key) const noexcept;
  /// The value under `key`, or `fallback` when absent.
  Variant GetValue(std::string_view key, Variant fallback) const;
  /// Whether `key` is present.
  bool Lookup(std::string_view key) const noexcept;
  /// Sets or inserts.
  void Set(std::string_view key, Variant value);
  /// Inserts; kDuplicateKey naming the key when it is present.
  void Add(std::string_view key, Variant value);
  /// Removes; absent keys are ignored.
  void Remove(std::string_view key);
  void RemoveAll();
  std::size_t Count() const noexcept;

  /// By position, 0-based, in insertion order. `i` must be less than Count().
  const std::string& Key(std::size_t i) const noexcept;
  const Variant& Item(std::size_t i) const noexcept;
  void SetItem(std::size_t i, Variant value) noexcept;
  /// Position of `key`.
  std::optional<std::size_t> IndexOf(std::string_view key) const noexcept;

  /// A new dictionary with the same entries; shares the keys.
  com::Ref<Dictionary> Clone() const;
  /// A new dictionary with the same keys, shared, and these values in their order, one
  /// for each key.
  com::Ref<Dictionary> CloneWith(std::vector<Variant> values) const;
  /// Whether the two share their keys, so that positions found in one hold in the other.
  bool SharesKeys(const Dictionary& other) const noexcept { return keys_ == other.keys_; }

 private:
  class Keys;
  Dictionary(std::shared_ptr<Keys> keys, std::vector<Variant> values);
  void insert(std::string_view key, Variant value);
  void* find(const com::Guid& iid) noexcept override;
  Keys& ownKeys();

  std::shared_ptr<Keys> keys_;
  std::vector<Variant> values_;
};

using DictionaryRef = com::Ref<Dictionary>;

}  // namespace velmora::collections
