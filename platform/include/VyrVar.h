#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

/// Smart handle of a reference-counted object; every `..._var` name is one.
///
/// Built from a raw pointer it adopts that reference, since operations hand out counted ones;
/// `Share` adds a reference to a pointer that is only borrowed.
template <class T>
class VyrVar {
 public:
  VyrVar() = default;
  VyrVar(std::nullptr_t) {}                          // NOLINT(google-explicit-constructor)
  VyrVar(T* adopted) noexcept : object_(adopted) {}  // NOLINT(google-explicit-constructor)
  VyrVar(const VyrVar& other) noexcept : object_(other.object_) {
    if (object_ != nullptr) object_->AddRef();
  }
  VyrVar(VyrVar&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <class Derived>
  requires std::is_convertible_v<Derived*, T*> VyrVar(const VyrVar<Derived>& other)
  noexcept  // NOLINT(google-explicit-constructor)
      : VyrVar(Share(other.Get())) {}
  ~VyrVar() {
    if (object_ != nullptr) object_->Release();
  }

  VyrVar& operator=(VyrVar other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  /// A handle with a reference of its own to an object that somebody else holds.
  static VyrVar Share(T* borrowed) {
    if (borrowed != nullptr) borrowed->AddRef();
    return VyrVar(borrowed);
  }

  /// The object, borrowed from this handle; may be null.
  T* Get() const { return object_; }
  /// Hands the reference over to the caller and leaves the handle null.
  T* Detach() { return std::exchange(object_, nullptr); }
  /// A further reference to the object for the caller.
  T* NewReference() const { return VyrVar(*this).Detach(); }

  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }

  friend bool operator==(const VyrVar& a, const VyrVar& b) { return a.object_ == b.object_; }
  friend bool operator==(const VyrVar& a, std::nullptr_t) { return a.object_ == nullptr; }

 private:
  T* object_ = nullptr;
};
