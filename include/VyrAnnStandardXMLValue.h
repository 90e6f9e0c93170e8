#pragma once

#include "HolStandardInfraExport.h"
#include "VyrBaseUnknown.h"
#include "VyrInstanceCounter.h"
#include "VyrUnicodeString.h"

class VyrAnnStandardXMLNode;

/// Shared by the two classes of the typed tree: one counter tells whether every node and value of
/// a document was given back.
struct VyrAnnStandardXMLClass {
  static constexpr const char* kClassName = "VyrAnnStandardXMLClass";
};

/// A typed value of a drafting standard: a parameter's value, a field of a compound type or a
/// literal of an enumeration.
///
/// Reference-counted; a new value carries one reference for its creator. Used from one thread at a
/// time, together with the tree that holds it.
class HOLSTANDARDINFRA_EXPORT VyrAnnStandardXMLValue final
    : public VyrFrameworkClass<VyrAnnStandardXMLValue>,
      private VyrCountedInstance<VyrAnnStandardXMLClass> {
 public:
  static constexpr const char* kClassName = "VyrAnnStandardXMLValue";
  static constexpr const char* kLibrary = "HolStandardInfra";

  enum Type : int {
    ValueInt = 1,
    ValueFloat = 2,
    ValueString = 3,
    ValueEnum = 4,
    ValueColor = 5,
  };

  /// `value` is the value as text: decimal numbers, three blank-separated components from 0 to 255
  /// for a colour, the literal itself for an enumeration. `name` and `rangeVal` as below.
  VyrAnnStandardXMLValue(Type type, VyrUnicodeView value, VyrUnicodeView name, int rangeVal);
  /// An empty string value, as the object framework makes it.
  VyrAnnStandardXMLValue() : VyrAnnStandardXMLValue(ValueString, {}, {}, 0) {}

  Type GetType() const { return type_; }
  /// A value that a type definition, an enumeration or an instance holds directly: its own name
  /// (empty for a literal). A value wrapped in a parameter's node: the enumeration's name for a
  /// `ValueEnum`, the lower bound for a bounded float, else empty.
  const VyrUnicodeString& GetValueName() const { return name_; }
  const VyrUnicodeString& GetValue() const { return value_; }
  void SetValue(VyrUnicodeView value);
  /// 1: a float whose lower bound is the text in `GetValueName`; otherwise 0. The bound is stored
  /// for whoever edits the standard and not enforced here.
  int GetRangeVal() const { return rangeVal_; }
  void SetRangeVal(int rangeVal) { rangeVal_ = rangeVal; }

  /// Number of undefined enumeration literals in this value: 0 or 1. Only a `ValueEnum` can be
  /// undefined, when `enumTop` has no such literal in the enumeration that `GetValueName` names;
  /// it is then reported as one line that begins with `context`. A null `enumTop` checks nothing.
  int Check(VyrAnnStandardXMLNode* enumTop, VyrUnicodeView context) const;
  /// An independent copy; the caller owns its reference.
  VyrAnnStandardXMLValue* Clone() const;

 private:
  friend struct VyrFirstMatchAccess;
  ~VyrAnnStandardXMLValue() override = default;

  Type type_;
  int rangeVal_;
  bool isIndexed_ = false;
  VyrUnicodeString name_;
  VyrUnicodeString value_;
};

using VyrAnnStandardXMLValue_var = VyrVar<VyrAnnStandardXMLValue>;
