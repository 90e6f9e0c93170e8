#pragma once

#include <atomic>

#include "HolStandardInfraExport.h"
#include "VyrMetaClass.h"
#include "VyrUnknown.h"
#include "VyrVar.h"

/// Base of every reference-counted object: starts with one reference, for whoever created it.
/// Made on the heap only and never copied; the last `Release` destroys it.
class HOLSTANDARDINFRA_EXPORT VyrBaseUnknown : public IUnknown {
 public:
  VyrBaseUnknown(const VyrBaseUnknown&) = delete;
  VyrBaseUnknown& operator=(const VyrBaseUnknown&) = delete;

  HRESULT QueryInterface(const IID& iid, void** object) override;
  unsigned long AddRef() override { return count_.fetch_add(1, std::memory_order_relaxed) + 1; }
  unsigned long Release() override;
  /// True when whoever asks holds the only reference there is.
  bool IsOnlyReference() const { return count_.load(std::memory_order_acquire) == 1; }

  static const VyrMetaClass& MetaObject();
  virtual const VyrMetaClass& GetMetaObject() const { return MetaObject(); }
  /// Name of the object's own class.
  const char* IsA() const { return GetMetaObject().GetName(); }
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
  HRESULT QueryInterface(const IID& iid, void** object) override {
    if (object == nullptr) return E_INVALIDARG;
    *object = nullptr;
    if (iid == First::kIid || iid == IUnknown::kIid) *object = static_cast<First*>(this);
    ((iid == Others::kIid ? void(*object = static_cast<Others*>(this)) : void()), ...);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  unsigned long AddRef() final { return VyrBaseUnknown::AddRef(); }
  unsigned long Release() final { return VyrBaseUnknown::Release(); }

 protected:
  VyrImplements() = default;
  ~VyrImplements() override = default;
};

/// The interface `Interface` of an object, null when the object is null or lacks it.
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
  static const char* ClassName() { return Derived::kClassName; }
  static IID ClassId() { return MetaObject().GetClassId(); }
  static const VyrMetaClass& MetaObject() {
    static const VyrMetaClass meta(Derived::kClassName, Derived::kLibrary, &Base::MetaObject(),
                                   &CreateItself);
    return meta;
  }
  static VyrBaseUnknown* CreateItself() {
    if constexpr (requires { new Derived(); }) {
      return new Derived();
    } else {
      return nullptr;
    }
  }
  const VyrMetaClass& GetMetaObject() const override { return MetaObject(); }

 protected:
  using Base::Base;
};
