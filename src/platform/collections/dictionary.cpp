#include "velmora/collections/dictionary.h"

#include <cassert>

#include "platform/collections/dictionary_keys.h"
#include "velmora/com/error.h"

namespace velmora::collections {

Dictionary::Dictionary() : keys_(std::make_shared<Keys>()) {}
Dictionary::~Dictionary() = default;

Dictionary::Dictionary(std::shared_ptr<Keys> keys, std::vector<Variant> values)
    : keys_(std::move(keys)), values_(std::move(values)) {}

const Variant& Dictionary::Value(std::string_view key) const noexcept {
  static const Variant absent;
  const auto position = IndexOf(key);
  return position ? values_[*position] : absent;
}

Variant Dictionary::GetValue(std::string_view key, Variant fallback) const {
  const auto position = IndexOf(key);
  if (position) return values_[*position];
  return fallback;
}

bool Dictionary::Lookup(std::string_view key) const noexcept {
  return IndexOf(key).has_value();
}

void Dictionary::Set(std::string_view key, Variant value) {
  if (const auto position = IndexOf(key)) {
    values_[*position] = std::move(value);
  } else {
    insert(key, std::move(value));
  }
}

void Dictionary::Add(std::string_view key, Variant value) {
  if (Lookup(key))
    throw com::Error(com::error::kDuplicateKey, "Velmora.Dictionary",
                     "the key '" + std::string(key) + "' is already present");
  insert(key, std::move(value));
}

void Dictionary::insert(std::string_view key, Variant value) {
  values_.push_back(std::move(value));
  try {
    ownKeys().append(key);
  } catch (...) {
    values_.pop_back();
    throw;
  }
}

void Dictionary::Remove(std::string_view key) {
  const auto position = IndexOf(key);
  if (!position) return;
  ownKeys().remove(*position);
  values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(*position));
}

void Dictionary::RemoveAll() {
  keys_ = std::make_shared<Keys>();
  values_.clear();
}

std::size_t Dictionary::Count() const noexcept {
  return values_.size();
}

const std::string& Dictionary::Key(std::size_t i) const noexcept {
  return keys_->name(i);
}
const Variant& Dictionary::Item(std::size_t i) const noexcept {
  return values_[i];
}
void Dictionary::SetItem(std::size_t i, Variant value) noexcept {
  values_[i] = std::move(value);
}

std::optional<std::size_t> Dictionary::IndexOf(std::string_view key) const noexcept {
  return keys_->find(key);
}

com::Ref<Dictionary> Dictionary::Clone() const {
  return com::Ref<Dictionary>(new Dictionary(keys_, values_));
}

com::Ref<Dictionary> Dictionary::CloneWith(std::vector<Variant> values) const {
  assert(values.size() == keys_->size());
  return com::Ref<Dictionary>(new Dictionary(keys_, std::move(values)));
}

void* Dictionary::find(const com::Guid& iid) noexcept {
  return iid == kInterfaceId ? this : Object::find(iid);
}

/// The keys for changing: a copy of its own when clones share them.
Dictionary::Keys& Dictionary::ownKeys() {
  if (keys_.use_count() > 1) keys_ = std::make_shared<Keys>(*keys_);
  return *keys_;
}

}  // namespace velmora::collections
