#pragma once

#include <atomic>

#include "HolStandardInfraExport.h"
#include "VyrMetaClass.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

/// Base of every reference-counted object: starts with one reference, for whoever created it.
/// Made on the heap only and never copied; the last `Release` destroys it. References may be
/// counted on any thread; the rest of an object is used as its class says.
class HOLSTANDARDINFRA_EXPORT VyrBaseUnknown : public IUnknown {
 public:
  VyrBaseUnknown(const VyrBaseUnknown&) = delete;
  VyrBaseUnknown& operator=(const VyrBaseUnknown&) = delete;

  /// Answers for `IUnknown` alone.
  HRESULT QueryInterface(const IID& iid, void** object) override;
  unsigned long AddRef() override { return count_.fetch_add(1, std::memory_order_relaxed) + 1; }
  unsigned long Release() override;
  /// True when whoever asks holds the only reference there is.
  bool IsOnlyReference() const { return count_.load(std::memory_order_acquire) == 1; }

  /// The meta-class of this class; it lives as long as the process.
  static const VyrMetaClass& MetaObject();
  /// The meta-class of the object's own class.
  virtual const VyrMetaClass& GetMetaObject() const { return MetaObject(); }
  /// Name of the object's own class.
  const char* IsA() const { return GetMetaObject().GetName(); }
  /// 1 when the object is of the class `className` or of one below it, else 0, as for null.
  int IsAKindOf(const char* className) const {
    return className != nullptr && GetMetaObject().IsAKindOf(className) ? 1 : 0;
  }

 protected:
  VyrBaseUnknown() = default;
  virtual ~VyrBaseUnknown() = default;

 private:
  std::atomic<unsigned int> count_{1};
};

/// Base of an object that implements `Interfaces`, each with its `kIid`: answers `QueryInterface`
/// for them and counts references for all of them together. `IUnknown` is answered through the
/// first.
template <class First, class... Others>
class VyrImplements : public VyrBaseUnknown, public First, public Others... {
 public:
  /// Answers for `IUnknown` and for each of the interfaces.
  HRESULT QueryInterface(const IID& iid, void** object) override {
    if (object == nullptr) return E_INVALIDARG;
    *object = nullptr;
    if (iid == First::kIid || iid == IUnknown::kIid) *object = static_cast<First*>(this);
    ((iid == Others::kIid ? void(*object = static_cast<Others*>(this)) : void()), ...);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  /// Adds a reference, whichever interface it is asked of.
  unsigned long AddRef() final { return VyrBaseUnknown::AddRef(); }
  /// Gives a reference back, likewise.
  unsigned long Release() final { return VyrBaseUnknown::Release(); }

 protected:
  VyrImplements() = default;
  ~VyrImplements() override = default;
};

/// The interface `Interface` of an object, which is only borrowed, in a handle with a reference of
/// its own; null when the object is null or lacks it.
template <class Interface>
VyrVar<Interface> VyrQuery(IUnknown* object) {
  void* found = nullptr;
  if (object == nullptr || VyrFailed(object->QueryInterface(Interface::kIid, &found))) return {};
  return VyrVar<Interface>(static_cast<Interface*>(found));
}

/// Gives a class its place in the object framework: its meta-class under `Derived::kClassName`,
/// in the library `Derived::kLibrary`. `Derived` is made by the framework through its default
/// constructor where it has a public one.
template <class Derived, class Base = VyrBaseUnknown>
class VyrFrameworkClass : public Base {
 public:
  /// Name of the class, as it stands in its meta-class.
  static const char* ClassName() { return Derived::kClassName; }
  /// Identifier of the class; see `VyrMetaClass::GetClassId`.
  static IID ClassId() { return MetaObject().GetClassId(); }
  /// The meta-class of the class; it lives as long as the process.
  static const VyrMetaClass& MetaObject() {
    static const VyrMetaClass meta(Derived::kClassName, Derived::kLibrary, &Base::MetaObject(),
                                   &CreateItself);
    return meta;
  }
  /// A new object with one reference for the caller; null where the class has no public default
  /// constructor.
  static VyrBaseUnknown* CreateItself() {
    if constexpr (requires { new Derived(); }) {
      return new Derived();
    } else {
      return nullptr;
    }
  }
  /// The meta-class of the object's own class.
  const VyrMetaClass& GetMetaObject() const override { return MetaObject(); }

 protected:
  using Base::Base;
};
