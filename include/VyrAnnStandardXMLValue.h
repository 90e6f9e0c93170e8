#pragma once

#include <cstdint>

#include "HolStandardInfraExport.h"
#include "VyrBaseUnknown.h"
#include "VyrInstanceCounter.h"
#include "VyrUnicodeString.h"

class VyrAnnStandardXMLNode;
class VyrKeyListener;

/// Shared by the two classes of the typed tree: one counter tells whether every node and value of
/// a document was given back.
struct VyrAnnStandardXMLClass {
  static constexpr const char* kClassName = "VyrAnnStandardXMLClass";  ///< of the counter
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
  static constexpr const char* kClassName = "VyrAnnStandardXMLValue";  ///< of the meta-class
  static constexpr const char* kLibrary = "HolStandardInfra";          ///< of the meta-class

  /// Type of a value, and the word that path commands have for it. The numbers are fixed: callers
  /// compare with them.
  enum Type : int {
    ValueInt = 1,     ///< "int": a decimal integer
    ValueFloat = 2,   ///< "float": a decimal number; shipped standards have millimetres and degrees
    ValueString = 3,  ///< "string": any text
    ValueEnum = 4,    ///< "enum.NAME": a literal of the enumeration NAME
    ValueColor = 5,   ///< "color": red, green and blue
  };

  /// `value` is the value as text: decimal numbers, three blank-separated components from 0 to 255
  /// for a colour, the literal itself for an enumeration. It is kept as it is, whether or not it
  /// suits the type. `name` is what `GetValueName` tells, `rangeVal` what `GetRangeVal` tells.
  VyrAnnStandardXMLValue(Type type, VyrUnicodeView value, VyrUnicodeView name, int rangeVal);
  /// An empty string value, as the object framework makes it.
  VyrAnnStandardXMLValue() : VyrAnnStandardXMLValue(ValueString, {}, {}, 0) {}

  /// The type; as the value was made.
  Type GetType() const { return type_; }
  /// Of a value that a type definition, an enumeration or an instance holds directly: its own name
  /// (empty for a literal). Of a value wrapped in a parameter's node: the enumeration's name for a
  /// `ValueEnum`, the lower bound for a bounded float, else empty. Borrowed from the value.
  const VyrUnicodeString& GetValueName() const { return name_; }
  /// The value as text, borrowed until it is set.
  const VyrUnicodeString& GetValue() const { return value_; }
  /// Replaces the text, whatever it says.
  void SetValue(VyrUnicodeView value);
  /// 1: a float whose lower bound is the text in `GetValueName`; otherwise 0. The bound is stored
  /// for whoever edits the standard and not enforced here.
  int GetRangeVal() const { return rangeVal_; }
  /// Sets that number.
  void SetRangeVal(int rangeVal) { rangeVal_ = rangeVal; }

  /// Number of undefined enumeration literals in this value: 0 or 1. Only a `ValueEnum` can be
  /// undefined, when `enumTop` has no such literal in the enumeration that `GetValueName` names;
  /// it is then reported as one line of trace output that begins with `context`. A null `enumTop`
  /// checks nothing.
  int Check(VyrAnnStandardXMLNode* enumTop, VyrUnicodeView context) const;
  /// An independent copy; the caller owns its reference.
  VyrAnnStandardXMLValue* Clone() const;

 private:
  friend struct VyrIndexedPlaces;
  ~VyrAnnStandardXMLValue() override = default;

  Type type_;
  int rangeVal_;
  std::uint32_t listenedAs_ = 0;        // the number by which the listener knows this value
  VyrKeyListener* listener_ = nullptr;  // to be told of another text; borrowed
  VyrUnicodeString name_;
  VyrUnicodeString value_;
};

/// Counted reference to a value.
using VyrAnnStandardXMLValue_var = VyrVar<VyrAnnStandardXMLValue>;
