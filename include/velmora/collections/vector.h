#pragma once

#include <cstddef>
#include <vector>

#include "velmora/collections/variant.h"

namespace velmora::collections {

/// Ordered list of values, 0-based.
class Vector final : public com::Object<com::IUnknown> {
 public:
  static constexpr com::Guid kInterfaceId =
      com::Guid::parse("B8A9F7C4-5D2E-4C0F-8A73-5E0B9C4D1F22");

  void Add(Variant value) { items_.push_back(std::move(value)); }
  std::size_t Size() const noexcept { return items_.size(); }
  /// kInvalidArgument naming index and size when out of range.
  const Variant& Item(std::size_t index) const;
  void SetItem(std::size_t index, Variant value);
  void RemoveAll() noexcept { items_.clear(); }
  void Reserve(std::size_t count) { items_.reserve(count); }

  auto begin() const noexcept { return items_.begin(); }
  auto end() const noexcept { return items_.end(); }

 private:
  void* find(const com::Guid& iid) noexcept override;

  std::vector<Variant> items_;
};

using VectorRef = com::Ref<Vector>;

}  // namespace velmora::collections
