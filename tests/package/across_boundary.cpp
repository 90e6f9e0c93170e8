// A program of another module, built from an installed library by what pkg-config says: types and
// objects must be the same ones on both sides. Prints what it read; 1 when something differs.

#include <cstdio>
#include <memory>
#include <string>
#include <typeinfo>

#include "VyrAnnStandardXMLNode.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrAnnStandardXMLParserCodec.h"
#include "VyrDftStandardServices.h"
#include "VyrDifDftStyle.h"
#include "VyrIDftStandard.h"
#include "VyrIDftStyleManager.h"
#include "VyrStdServices.h"

namespace {

bool Expect(bool isTrue, const char* what) {
  if (!isTrue) std::fprintf(stderr, "not so across the boundary: %s\n", what);
  return isTrue;
}

// An object that the library made, known here by its base only.
bool KnowsNodes() {
  VyrAnnStandardXMLParser document;
  document.AddNodeWithPath("Root:Site", 0);
  const VyrAnnStandardXMLNode_var found(document.GetNodeWithPath("Root.Site"));
  if (!Expect(static_cast<bool>(found), "a document has the node that was added")) return false;
  VyrBaseUnknown* const base = found.Get();
  return Expect(typeid(*base) == typeid(VyrAnnStandardXMLNode), "a node is of its type") &&
         Expect(dynamic_cast<VyrAnnStandardXMLNode*>(base) == found.Get(), "a node is a node") &&
         Expect(dynamic_cast<VyrAnnStandardXMLValue*>(base) == nullptr, "a node is no value") &&
         Expect(base->IsAKindOf("VyrAnnStandardXMLNode") == 1, "a node knows its class");
}

// An object behind an interface that has no code in the library.
bool KnowsStyles(IUnknown* standard) {
  const auto manager = VyrQuery<VyrIDftStyleManager>(standard);
  if (!Expect(static_cast<bool>(manager), "a standard manages styles")) return false;
  const std::unique_ptr<unsigned short[]> type(VyrUnicodeString("Text").NewUtf16Copy());
  const std::unique_ptr<unsigned short[]> name(VyrUnicodeString("ViewText").NewUtf16Copy());
  VyrIDftStyle* found = nullptr;
  manager->GetStyle(name.get(), type.get(), &found);
  const VyrVar<VyrIDftStyle> style(found);
  return Expect(static_cast<bool>(style), "a standard has the style that is asked for") &&
         Expect(dynamic_cast<VyrDifDftStyle*>(style.Get()) != nullptr, "a style is a style");
}

class NoCodec final : public VyrAnnStandardXMLParserCodec {
 public:
  HRESULT Init(VyrAnnStandardXMLNode*, VyrAnnStandardXMLNode*, VyrAnnStandardXMLNode*) override {
    return S_OK;
  }
  HRESULT DecodeXMLString(VyrUnicodeView) override { return E_NOTIMPL; }
  HRESULT DecodeXMLFile(VyrUnicodeView) override { return E_NOTIMPL; }
  HRESULT SaveInFile(VyrUnicodeView) override { return E_NOTIMPL; }
  HRESULT SaveInString(VyrUnicodeString& out) override {
    out = "written by another module";
    return S_OK;
  }
};

class NoCodecs final : public VyrAnnStandardXMLParserCodecFactory {
 public:
  VyrAnnStandardXMLParserCodec* CreateCodec() override { return new NoCodec; }
};

// The library calls a class of this module through the virtual table of its base.
bool IsCalled() {
  NoCodecs codecs;
  VyrAnnStandardXMLParser::SetCodecFactory(&codecs);
  VyrUnicodeString text;
  VyrAnnStandardXMLParser().SaveInString(text);
  VyrAnnStandardXMLParser::SetCodecFactory(nullptr);
  return Expect(text == "written by another module", "a document uses our codec");
}

}  // namespace

int main() {
  const VyrIDrwStandard_var iso = VyrDftStandardServices::GetOOTBStandard("ISO");
  const auto standard = VyrQuery<VyrIDftStandard>(iso.Get());
  VyrUnicodeString parent;
  const bool isDone =
      Expect(standard && !VyrFailed(standard->GetValue("Dimension.ParentStandard", 1, parent)),
             "the shipped ISO is found and read") &&
      KnowsNodes() && KnowsStyles(standard.Get()) && IsCalled();
  VyrDftStandardServices::ReleaseOOTBStandards();
  if (!isDone) return 1;
  std::printf("dimensions follow %s\n", parent.CString());
  return 0;
}
