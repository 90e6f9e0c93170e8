#include "DecimalInteger.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrAnnStandardXMLParserUnit.h"
#include "VyrDftStdPersistence.h"

// How a document is dated: by the version that it carries, else by its content.

namespace {

using Persistence = VyrDftStdPersistence;

// Releases whose content can be told apart by a reference node; later ones write their version.
constexpr int kFirstTellingRelease = 10;
constexpr int kLastTellingRelease = 18;

}  // namespace

HRESULT VyrAnnStandardXMLParser::GetExplicitVersion(int& version) {
  version = -1;
  const VyrAnnStandardXMLNode_var node(
      GetNodeWithPath(VyrUnicodeString("Root.") + Persistence::GetVersionNodePath()));
  if (!node) return S_OK;
  const bool holdsOneValue = node->GetNodeType() == VyrAnnStandardXMLNode::NodePlain &&
                             node->GetNumOfNode() == 0 && node->GetNumOfValue() == 1;
  if (!kXMLParserUnit.Check(holdsOneValue, "Version must hold one value")) return E_UNEXPECTED;
  const VyrAnnStandardXMLValue& value = *node->GetValues().front();
  if (!kXMLParserUnit.Check(value.GetType() == VyrAnnStandardXMLValue::ValueInt,
                            "Version must be an int")) {
    return E_UNEXPECTED;
  }
  const auto number = ReadDecimalInteger(value.GetValue().View());
  if (!kXMLParserUnit.Check(number && Persistence::CheckExplicitVersionNumberIsValid(*number) != 0,
                            "Version is no known format version")) {
    return E_UNEXPECTED;
  }
  version = *number;
  return S_OK;
}

/// 1 when the document is older than the release, 0 when it is not.
HRESULT VyrAnnStandardXMLParser::IsVersioned(int release) {
  VyrUnicodeString path;
  auto status = Persistence::NodeAdded;
  if (VyrFailed(Persistence::GetReferenceNodeForRelease(release, path, status))) return E_FAIL;
  const VyrAnnStandardXMLNode_var node(GetNodeWithPath(VyrUnicodeString("Root.") + path));
  switch (status) {
    case Persistence::NodeAdded:
      return node ? S_OK : S_FALSE;
    case Persistence::NodeRemoved:
      return node ? S_FALSE : S_OK;
  }
  return E_FAIL;
}

int VyrAnnStandardXMLParser::GetVersion() {
  int version = -1;
  if (VyrFailed(GetExplicitVersion(version))) {
    kXMLParserUnit.Raise("The explicit version cannot be read");
    return -1;
  }
  if (version > 0) return version;
  int release = kFirstTellingRelease;
  // A failure counts as "older", as any result but 0 does.
  while (release <= kLastTellingRelease && IsVersioned(release) == S_OK) ++release;
  return Persistence::GetVersionFromRelease(release - 1);
}
