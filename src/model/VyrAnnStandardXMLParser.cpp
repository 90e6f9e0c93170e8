#include "VyrAnnStandardXMLParser.h"

#include "VyrAnnStandardXMLParserDOMCodec.h"
#include "VyrAnnStandardXMLParserUnit.h"

std::atomic<VyrAnnStandardXMLParserCodecFactory*> VyrAnnStandardXMLParser::_codecFactory{nullptr};

namespace {

using Node = VyrAnnStandardXMLNode;

VyrAnnStandardXMLNode_var NewTop(const char* name) {
  return VyrAnnStandardXMLNode_var(new Node(Node::NodeTop, name));
}

}  // namespace

VyrAnnStandardXMLParser::VyrAnnStandardXMLParser() {
  root_ = NewTop("Root");
  enumTop_ = NewTop("Enum");
  typeDefTop_ = NewTop("TypeDef");
  VyrAnnStandardXMLParserCodecFactory* factory = _codecFactory;
  if (factory == nullptr) {
    // Kept to the end of the process: static objects of a host may make documents in their end.
    static auto* const defaultFactory = new VyrAnnStandardXMLParserDOMCodecFactory();
    // Not over one that another thread has set meanwhile.
    if (_codecFactory.compare_exchange_strong(factory, defaultFactory)) factory = defaultFactory;
  }
  codec_.reset(factory->CreateCodec());
  if (!kXMLParserUnit.CheckPointer(codec_.get())) return;
  if (VyrFailed(codec_->Init(typeDefTop_.Get(), enumTop_.Get(), root_.Get()))) {
    kXMLParserUnit.Raise("Codec initialized failed!");
  }
}

void VyrAnnStandardXMLParser::SetCodecFactory(VyrAnnStandardXMLParserCodecFactory* factory) {
  _codecFactory = factory;
}

VyrAnnStandardXMLNode* VyrAnnStandardXMLParser::GetNodeWithPath(VyrUnicodeView path) {
  std::string_view rest;
  Node* top = GetStartNodeWithPath(path, rest);
  if (top == nullptr) return nullptr;
  return rest.empty() ? VyrAnnStandardXMLNode_var::Share(top).Detach()
                      : top->GetNodeWithPath(rest, 1);
}

VyrUnicodeString VyrAnnStandardXMLParser::GetValueWithPath(VyrUnicodeView path) {
  std::string_view rest;
  Node* top = GetStartNodeWithPath(path, rest);
  if (top == nullptr || rest.empty()) return {};
  const VyrAnnStandardXMLNode_var node(top->GetNodeWithPath(rest, 1));
  if (!node || node->GetValues().empty()) return {};
  return node->GetValues().front()->GetValue();
}

int VyrAnnStandardXMLParser::Check() {
  if (!root_) return 1;
  return root_->Check(enumTop_.Get(), "Enum undefined: Root") == 0 ? 1 : 0;
}

int VyrAnnStandardXMLParser::DecodeXML(VyrUnicodeView source, int fromFile) {
  if (!kXMLParserUnit.CheckPointer(codec_.get())) return 1;
  const HRESULT result =
      fromFile != 0 ? codec_->DecodeXMLFile(source) : codec_->DecodeXMLString(source);
  return VyrFailed(result) ? 1 : 0;
}

HRESULT VyrAnnStandardXMLParser::SaveInFile(VyrUnicodeView path) {
  if (!kXMLParserUnit.CheckPointer(codec_.get())) return E_UNEXPECTED;
  return codec_->SaveInFile(path);
}

void VyrAnnStandardXMLParser::SaveInString(VyrUnicodeString& out) {
  if (!kXMLParserUnit.CheckPointer(codec_.get())) return;
  if (VyrFailed(codec_->SaveInString(out))) kXMLParserUnit.Raise("Failed to save");
}

VyrProblem VyrAnnStandardXMLParser::GetProblem() const {
  return codec_ ? codec_->GetProblem() : VyrProblem{0, "no codec is installed"};
}
