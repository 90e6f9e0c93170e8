#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

/// Smart handle of a reference-counted object; every `..._var` name is one.
///
/// Built from a raw pointer it adopts that reference, since operations hand out counted ones;
/// `Share` adds a reference to a pointer that is only borrowed. A handle is used from one thread at
/// a time; handles of one object may be made and destroyed on several.
template <class T>
class VyrVar {
 public:
  /// @{
  /// A null handle.
  VyrVar() = default;
  VyrVar(std::nullptr_t) {}  // NOLINT(google-explicit-constructor)
  /// @}
  /// Adopts the caller's reference to `adopted`, which may be null.
  VyrVar(T* adopted) noexcept : object_(adopted) {}  // NOLINT(google-explicit-constructor)
  /// Adds a reference.
  VyrVar(const VyrVar& other) noexcept : object_(other.object_) {
    if (object_ != nullptr) object_->AddRef();
  }
  /// Takes over the reference and leaves `other` null.
  VyrVar(VyrVar&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  /// A handle of a base class to the same object; adds a reference.
  template <class Derived>
  requires std::is_convertible_v<Derived*, T*> VyrVar(const VyrVar<Derived>& other)
  noexcept  // NOLINT(google-explicit-constructor)
      : VyrVar(Share(other.Get())) {}
  ~VyrVar() {
    if (object_ != nullptr) object_->Release();
  }

  /// Gives back the reference held so far and takes that of `other`.
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
  /// A further reference to the object for the caller; null when the handle is.
  T* NewReference() const { return VyrVar(*this).Detach(); }

  /// @{
  /// The object, borrowed; the handle must not be null.
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  /// @}
  /// True when the handle is not null.
  explicit operator bool() const { return object_ != nullptr; }

  /// Equal when both hold the same object, or none.
  friend bool operator==(const VyrVar& a, const VyrVar& b) { return a.object_ == b.object_; }
  /// True when the handle is null.
  friend bool operator==(const VyrVar& a, std::nullptr_t) { return a.object_ == nullptr; }

 private:
  T* object_ = nullptr;
};
