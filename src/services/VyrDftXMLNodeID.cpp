#include "VyrDftXMLNodeID.h"

#include <utility>

#include "VyrDiagnostics.h"

namespace {

constexpr VyrSourceUnit kUnit("VyrDftXMLNodeID");

}  // namespace

VyrDftXMLNodeID::VyrDftXMLNodeID(VyrUnicodeString namespaceURI, VyrUnicodeString localName)
    : isNull_(localName.IsEmpty() ? 1 : 0),
      namespaceURI_(std::move(namespaceURI)),
      localName_(std::move(localName)) {
  if (isNull_ == 0) return;
  kUnit.Raise("Local name can't be empty");
  namespaceURI_ = "";
}

VyrDftXMLNodeID VyrDftXMLNodeID::BuildFromElement(VyrIDOMElement_var element) {
  if (!kUnit.CheckPointer(element.Get())) return {};
  VyrUnicodeString localName;
  VyrUnicodeString namespaceURI;
  if (!kUnit.Check(VyrSucceeded(element->GetLocalName(localName)), "local name cannot be read") ||
      !kUnit.Check(VyrSucceeded(element->GetNamespaceURI(namespaceURI)),
                   "namespace cannot be read")) {
    return {};
  }
  if (localName.IsEmpty()) {
    if (!kUnit.Check(namespaceURI.IsEmpty(), "namespace without a local name") ||
        !kUnit.Check(VyrSucceeded(element->GetTagName(localName)), "tag name cannot be read")) {
      return {};
    }
  }
  return {std::move(namespaceURI), std::move(localName)};
}

VyrUnicodeString VyrDftXMLNodeID::GetNamespaceURI() const {
  if (isNull_ != 0) kUnit.Raise("ID is null");
  return namespaceURI_;
}

VyrUnicodeString VyrDftXMLNodeID::GetLocalName() const {
  if (isNull_ != 0) kUnit.Raise("ID is null");
  return localName_;
}

VyrUnicodeString VyrDftXMLNodeID::ToString() const {
  return VyrUnicodeString("<") + namespaceURI_ + ">" + localName_;
}

bool operator==(const VyrDftXMLNodeID& a, const VyrDftXMLNodeID& b) {
  if (a.isNull_ != 0 || b.isNull_ != 0) return a.isNull_ == b.isNull_;
  return a.localName_ == b.localName_ && a.namespaceURI_ == b.namespaceURI_;
}
