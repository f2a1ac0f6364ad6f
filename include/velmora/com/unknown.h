#pragma once

#include <atomic>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "velmora/com/guid.h"

namespace velmora::com {

/// Root of every object that can be shared between components: counted
/// references and the question which interfaces it has.
class IUnknown {
 public:
  static constexpr Guid kInterfaceId = Guid::parse("00000000-0000-0000-C000-000000000046");

  /// The object as the interface `iid`, with a reference added for the caller;
  /// nullptr when the object does not have that interface. The pointer is to be
  /// cast to the very interface type that `iid` names.
  virtual void* QueryInterface(const Guid& iid) noexcept = 0;
  virtual std::uint32_t AddRef() noexcept = 0;
  virtual std::uint32_t Release() noexcept = 0;

 protected:
  IUnknown() = default;
  IUnknown(const IUnknown&) = default;
  IUnknown& operator=(const IUnknown&) = default;
  ~IUnknown() = default;
};

/// Owning reference to a counted object. Empty stands for "nothing".
template <class T>
class Ref {
 public:
  Ref() noexcept = default;
  // NOLINTBEGIN(google-explicit-constructor): as for pointers.
  Ref(std::nullptr_t) noexcept {}
  explicit Ref(T* object) noexcept : object_(object) { add(); }
  Ref(const Ref& other) noexcept : object_(other.object_) { add(); }
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <class U>
  requires std::is_convertible_v<U*, T*> Ref(const Ref<U>& other)
  noexcept : object_(other.get()) { add(); }
  template <class U>
  requires std::is_convertible_v<U*, T*> Ref(Ref<U>&& other)
  noexcept : object_(other.detach()) {}
  // NOLINTEND(google-explicit-constructor)
  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ref() {
    if (object_ != nullptr) object_->Release();
  }

  /// Takes over a reference that was already counted.
  static Ref adopt(T* object) noexcept {
    Ref ref;
    ref.object_ = object;
    return ref;
  }
  /// Gives the counted reference away.
  [[nodiscard]] T* detach() noexcept { return std::exchange(object_, nullptr); }

  T* get() const noexcept { return object_; }
  T& operator*() const noexcept { return *object_; }
  T* operator->() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }
  friend bool operator==(const Ref& a, const Ref& b) noexcept { return a.object_ == b.object_; }
  friend bool operator==(const Ref& a, std::nullptr_t) noexcept { return a.object_ == nullptr; }

  /// The same object as another interface; empty when it does not have it.
  template <class U>
  Ref<U> as() const noexcept {
    if (object_ == nullptr) return {};
    return Ref<U>::adopt(static_cast<U*>(object_->QueryInterface(U::kInterfaceId)));
  }

 private:
  void add() const noexcept {
    if (object_ != nullptr) object_->AddRef();
  }

  T* object_ = nullptr;
};

/// Base of a counted object that offers `Interfaces`, each of them a type with
/// a `kInterfaceId` derived from IUnknown; the first one also answers for
/// IUnknown. Objects live on the heap and are made with `make`.
template <class... Interfaces>
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): Release alone deletes.
class Object : public Interfaces... {
 public:
  void* QueryInterface(const Guid& iid) noexcept override {
    void* found = find(iid);
    if (found != nullptr) AddRef();
    return found;
  }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }

  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

 protected:
  Object() = default;
  virtual ~Object() = default;

  /// The interface `iid` without counting, nullptr when absent. A class that is
  /// itself used as an interface (a recordset, a dictionary) adds its own id.
  virtual void* find(const Guid& iid) noexcept {
    void* found = nullptr;
    (match<Interfaces>(iid, found), ...);
    return found;
  }

 private:
  template <class Interface>
  void match(const Guid& iid, void*& found) noexcept {
    if (found != nullptr) return;
    if (iid == Interface::kInterfaceId) found = static_cast<Interface*>(this);
    if constexpr (requires { typename Interface::Base; }) {
      using Parent = typename Interface::Base;
      if (found == nullptr && iid == Parent::kInterfaceId) found = static_cast<Parent*>(this);
    }
    if (found == nullptr && iid == IUnknown::kInterfaceId)
      found = static_cast<IUnknown*>(static_cast<Interface*>(this));
  }

  std::atomic<std::uint32_t> references_{0};
};

template <class T, class... Arguments>
Ref<T> make(Arguments&&... arguments) {
  return Ref<T>(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace velmora::com
