#pragma once

#include "HolStandardInfraExport.h"
#include "VyrUnicodeString.h"
#include "VyrXMLDOM.h"

/// Identifies an element by its namespace and its local name. Two null identifiers are equal, a
/// null and any other are not. A value: threads may share one.
class HOLSTANDARDINFRA_EXPORT VyrDftXMLNodeID {
 public:
  /// A null identifier.
  VyrDftXMLNodeID() = default;
  /// The identifier of these names; `namespaceURI` is empty for an element in no namespace. An
  /// empty local name is reported and gives a null identifier.
  VyrDftXMLNodeID(VyrUnicodeString namespaceURI, VyrUnicodeString localName);
  /// The identifier of an element; null, reported, for a null element and for one that does not
  /// tell its names. An element without a namespace is identified by its tag name.
  static VyrDftXMLNodeID BuildFromElement(VyrIDOMElement_var element);

  /// The namespace; empty for an element in none, and, reported, for a null identifier.
  VyrUnicodeString GetNamespaceURI() const;
  /// The name without its prefix; empty, and reported, for a null identifier.
  VyrUnicodeString GetLocalName() const;
  /// 1 for a null identifier, else 0.
  int IsNULL() const { return isNull_; }
  /// "<namespace>name"; "<>" for a null identifier.
  VyrUnicodeString ToString() const;

  /// Equal when both are null, or when neither is and both names are equal, case included.
  friend HOLSTANDARDINFRA_EXPORT bool operator==(const VyrDftXMLNodeID& a,
                                                 const VyrDftXMLNodeID& b);

 private:
  int isNull_ = 1;
  VyrUnicodeString namespaceURI_;
  VyrUnicodeString localName_;
};
