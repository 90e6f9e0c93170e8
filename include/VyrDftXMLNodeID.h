#pragma once

#include "HolStandardInfraExport.h"
#include "VyrUnicodeString.h"
#include "VyrXMLDOM.h"

/// Identifies an element by its namespace and its local name. Two null identifiers are equal, a
/// null and any other are not.
class HOLSTANDARDINFRA_EXPORT VyrDftXMLNodeID {
 public:
  /// A null identifier.
  VyrDftXMLNodeID() = default;
  /// An empty local name is reported and gives a null identifier.
  VyrDftXMLNodeID(VyrUnicodeString namespaceURI, VyrUnicodeString localName);
  /// The identifier of an element; null, reported, for a null element and for one that does not
  /// tell its names. An element without a namespace is identified by its tag name.
  static VyrDftXMLNodeID BuildFromElement(VyrIDOMElement_var element);

  /// Both are empty, and reported, for a null identifier.
  VyrUnicodeString GetNamespaceURI() const;
  VyrUnicodeString GetLocalName() const;
  int IsNULL() const { return isNull_; }
  /// "<namespace>name"; "<>" for a null identifier.
  VyrUnicodeString ToString() const;

  friend HOLSTANDARDINFRA_EXPORT bool operator==(const VyrDftXMLNodeID& a,
                                                 const VyrDftXMLNodeID& b);

 private:
  int isNull_ = 1;
  VyrUnicodeString namespaceURI_;
  VyrUnicodeString localName_;
};
