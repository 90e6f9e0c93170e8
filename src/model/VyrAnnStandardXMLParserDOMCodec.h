#pragma once

#include "VyrAnnStandardXMLNode.h"
#include "VyrAnnStandardXMLParserCodec.h"

/// The codec of standard XML files.
class VyrAnnStandardXMLParserDOMCodec final : public VyrAnnStandardXMLParserCodec {
 public:
  HRESULT Init(VyrAnnStandardXMLNode* typeDefTop, VyrAnnStandardXMLNode* enumTop,
               VyrAnnStandardXMLNode* rootTop) override;
  HRESULT DecodeXMLString(VyrUnicodeView text) override;
  HRESULT DecodeXMLFile(VyrUnicodeView path) override;
  HRESULT SaveInFile(VyrUnicodeView path) override;
  HRESULT SaveInString(VyrUnicodeString& out) override;
  VyrProblem GetProblem() const override { return problem_; }

 private:
  HRESULT Decode(VyrUnicodeView source, bool isFile);
  HRESULT Encode(std::string& out);

  VyrAnnStandardXMLNode_var typeDefTop_;
  VyrAnnStandardXMLNode_var enumTop_;
  VyrAnnStandardXMLNode_var rootTop_;
  VyrUnicodeString documentType_;
  VyrUnicodeString documentName_;
  VyrProblem problem_;
};

class VyrAnnStandardXMLParserDOMCodecFactory final : public VyrAnnStandardXMLParserCodecFactory {
 public:
  VyrAnnStandardXMLParserCodec* CreateCodec() override {
    return new VyrAnnStandardXMLParserDOMCodec();
  }
};
