#pragma once

#include <string_view>

#include "HolStandardInfraExport.h"
#include "VyrUnknown.h"

class VyrBaseUnknown;

/// What the object framework knows of a class at run time. Made once per class, as a constant that
/// threads share; texts and meta-classes that it gives are borrowed for as long as the process
/// lives.
class HOLSTANDARDINFRA_EXPORT VyrMetaClass {
 public:
  /// Makes an object of the class, with one reference for the caller.
  using Creator = VyrBaseUnknown* (*)();

  /// `base` is null for the framework's root class, `creator` for a class that only its own
  /// library can make. All texts must outlive the process.
  constexpr VyrMetaClass(const char* name, const char* library, const VyrMetaClass* base,
                         Creator creator)
      : name_(name), library_(library), base_(base), creator_(creator) {}

  /// Name of the class.
  const char* GetName() const { return name_; }
  /// Name of the library that the class lies in.
  const char* GetLibrary() const { return library_; }
  /// The class that this one derives from; null for the framework's root class.
  const VyrMetaClass* GetBase() const { return base_; }
  /// Name of the class that this one extends once both are loaded. "VyrNull", as for every class
  /// here: it extends none.
  const char* GetLateType() const { return "VyrNull"; }
  /// True for the class itself and for every class below it.
  bool IsAKindOf(std::string_view className) const;
  /// Identifier derived from the class name: the same in every process and release.
  IID GetClassId() const;
  /// A new object with one reference for the caller, or null when the class cannot be made so.
  VyrBaseUnknown* CreateInstance() const { return creator_ == nullptr ? nullptr : creator_(); }

 private:
  const char* name_;
  const char* library_;
  const VyrMetaClass* base_;
  Creator creator_;
};
