#include "VyrAnnStandardXMLParserDOMCodec.h"

#include <utility>

#include "StandardDocumentBuilder.h"
#include "StandardXMLDecoder.h"
#include "StandardXMLEncoder.h"
#include "VyrAnnStandardXMLParserDOMCodecUnit.h"
#include "VyrFiles.h"
#include "VyrWithinMemory.h"
#include "VyrXMLDOM.h"

namespace {

constexpr const char* kNoReason =
    "the XML framework of the host makes no document of it and gives no reason; ask the host's "
    "maker";

void TraceLine(const char* format) {
  VyrTrace& trace = XMLCodecTrace();
  if (trace.IsOn()) trace.Print("%s%s\n", VyrTrace::Indentation().c_str(), format);
}

}  // namespace

HRESULT VyrAnnStandardXMLParserDOMCodec::Init(VyrAnnStandardXMLNode* typeDefTop,
                                              VyrAnnStandardXMLNode* enumTop,
                                              VyrAnnStandardXMLNode* rootTop) {
  if (!kXMLCodecUnit.CheckPointer(typeDefTop) || !kXMLCodecUnit.CheckPointer(enumTop) ||
      !kXMLCodecUnit.CheckPointer(rootTop)) {
    return E_UNEXPECTED;
  }
  typeDefTop_ = VyrAnnStandardXMLNode_var::Share(typeDefTop);
  enumTop_ = VyrAnnStandardXMLNode_var::Share(enumTop);
  rootTop_ = VyrAnnStandardXMLNode_var::Share(rootTop);
  return S_OK;
}

HRESULT VyrAnnStandardXMLParserDOMCodec::DecodeXMLFile(VyrUnicodeView path) {
  return VyrWithinMemory(problem_, [&] {
    const VyrTraceBlock block(XMLCodecTrace(), "VyrAnnStandardXMLParserDOMCodec::DecodeXMLFile");
    return Decode(path, true);
  });
}

HRESULT VyrAnnStandardXMLParserDOMCodec::DecodeXMLString(VyrUnicodeView text) {
  return VyrWithinMemory(problem_, [&] {
    const VyrTraceBlock block(XMLCodecTrace(), "VyrAnnStandardXMLParserDOMCodec::DecodeXMLString");
    return Decode(text, false);
  });
}

HRESULT VyrAnnStandardXMLParserDOMCodec::Decode(VyrUnicodeView source, bool isFile) {
  problem_ = {0, "the codec was not initialised"};
  if (!kXMLCodecUnit.CheckPointer(typeDefTop_.Get()) ||
      !kXMLCodecUnit.CheckPointer(enumTop_.Get()) || !kXMLCodecUnit.CheckPointer(rootTop_.Get())) {
    return E_UNEXPECTED;
  }
  problem_ = {};
  VyrIXMLDOMDocumentBuilder_var builder;
  if (const HRESULT result = MakeStandardDocumentBuilder(kXMLCodecUnit, XMLCodecTrace(), builder);
      VyrFailed(result)) {
    problem_ = {0, "the XML framework of the host lacks what standard files need"};
    return result;
  }
  VyrIDOMDocument_var document;
  const HRESULT built = isFile ? builder->BuildFromFile(source, document)
                               : builder->BuildFromString(source, document);
  if (VyrFailed(built)) {
    TraceLine("BuildDocument failed");
    problem_ = builder->GetProblem();
    if (problem_.IsEmpty()) problem_ = {0, kNoReason};
    return E_FAIL;
  }
  if (!kXMLCodecUnit.CheckPointer(document.Get())) {
    problem_ = {0, kNoReason};
    return E_UNEXPECTED;
  }
  StandardXMLDecoder decoder(document->GetTree(), isFile ? std::string(source) : "text in memory");
  const HRESULT result = decoder.Decode({*typeDefTop_, *enumTop_, *rootTop_});
  problem_ = decoder.GetProblem();
  if (decoder.GetDocumentName()) {
    documentName_ = *decoder.GetDocumentName();
    documentType_ = *decoder.GetDocumentType();
  }
  return result;
}

HRESULT VyrAnnStandardXMLParserDOMCodec::Encode(std::string& out) {
  problem_ = {0, "the codec was not initialised"};
  for (const VyrAnnStandardXMLNode_var* top : {&enumTop_, &typeDefTop_, &rootTop_}) {
    if (!kXMLCodecUnit.CheckPointer(top->Get())) return E_UNEXPECTED;
    if (!kXMLCodecUnit.Check((*top)->GetNumOfValue() == 0, "a top node holds a value")) {
      problem_ = {0, (*top)->GetNodeName() + " holds a value; only nodes can stand there"};
      return E_UNEXPECTED;
    }
  }
  StandardXMLEncoder encoder;
  const HRESULT result =
      encoder.Encode({*typeDefTop_, *enumTop_, *rootTop_}, documentName_, documentType_, out);
  problem_ = encoder.GetProblem();
  return result;
}

HRESULT VyrAnnStandardXMLParserDOMCodec::SaveInFile(VyrUnicodeView path) {
  return VyrWithinMemory(problem_, [&] {
    const VyrTraceBlock block(XMLCodecTrace(), "VyrAnnStandardXMLParserDOMCodec::SaveInFile");
    std::string text;
    if (const HRESULT result = Encode(text); VyrFailed(result)) return result;
    const std::string problem = VyrSaveFile(path, text);
    if (kXMLCodecUnit.Check(problem.empty(), problem)) return S_OK;
    problem_ = {0, problem};
    return E_FAIL;
  });
}

HRESULT VyrAnnStandardXMLParserDOMCodec::SaveInString(VyrUnicodeString& out) {
  return VyrWithinMemory(problem_, [&] {
    const VyrTraceBlock block(XMLCodecTrace(), "VyrAnnStandardXMLParserDOMCodec::SaveInString");
    std::string text;
    const HRESULT result = Encode(text);
    if (VyrSucceeded(result)) out = std::move(text);
    return result;
  });
}
