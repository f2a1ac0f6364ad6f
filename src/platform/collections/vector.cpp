#include "velmora/collections/vector.h"

#include "velmora/com/error.h"

namespace velmora::collections {

namespace {

void checkIndex(std::size_t index, std::size_t size) {
  if (index < size) return;
  throw com::Error(com::error::kInvalidArgument, "Velmora.Vector",
                   "index " + std::to_string(index) + " is out of range; the vector has " +
                       std::to_string(size) + " items");
}

}  // namespace

const Variant& Vector::Item(std::size_t index) const {
  checkIndex(index, items_.size());
  return items_[index];
}

void Vector::SetItem(std::size_t index, Variant value) {
  checkIndex(index, items_.size());
  items_[index] = std::move(value);
}

void* Vector::find(const com::Guid& iid) noexcept {
  return iid == kInterfaceId ? this : Object::find(iid);
}

}  // namespace velmora::collections
