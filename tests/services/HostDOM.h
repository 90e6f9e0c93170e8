#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "VyrBaseUnknown.h"
#include "VyrXMLDOM.h"
#include "VyrXPath.h"

/// The XML framework of a host, in place of the platform's while it lives. Documents that it builds
/// hold what `SetContent` said last, and each step of a search in them fails when a test says so.
class HostDOM {
 public:
  explicit HostDOM(const std::string& xml) {
    SetContent(xml);
    Current() = this;
  }
  HostDOM(const HostDOM&) = delete;
  HostDOM& operator=(const HostDOM&) = delete;
  ~HostDOM() {
    VyrSetDOMDocumentBuilderFactory(nullptr);
    Current() = nullptr;
  }

  void SetContent(const std::string& xml) {
    VyrSetDOMDocumentBuilderFactory(nullptr);
    VyrIXMLDOMDocumentBuilder_var builder;
    EXPECT_EQ(CreateVyrIXMLDOMDocumentBuilder(builder), S_OK);
    EXPECT_EQ(builder->BuildFromString(xml, content), S_OK);
    VyrSetDOMDocumentBuilderFactory(&MakeBuilder);
  }

  VyrIDOMDocument_var content;

  HRESULT builderResult = S_OK;
  bool hasBuilder = true;
  std::vector<std::string_view> options = {kVyrDoValidation, kVyrEnableNameSpaces};
  HRESULT optionResult = S_OK;
  HRESULT buildResult = S_OK;
  bool hasDocument = true;
  VyrProblem problem;

  bool hasFactory = true;
  HRESULT createResult = S_OK;
  HRESULT declareResult = S_OK;
  HRESULT evaluateResult = S_OK;
  bool hasList = true;
  VyrIDOMNodeList_var list;  ///< what every search finds, if set

  std::vector<std::string> optionsSet;   ///< "name=value" of each option that was set
  std::vector<std::string> expressions;  ///< each expression that was evaluated
  std::vector<std::string> namespaces;   ///< "prefix=uri" of each namespace that was declared

 private:
  class Expression final : public VyrImplements<VyrIXMLXPathExpression> {
   public:
    Expression(HostDOM& host, std::string text) : host_(host), text_(std::move(text)) {
      const auto factory = VyrQuery<VyrIXMLXPathFactory>(host.content.Get());
      factory->CreateExpression(text_, inner_);
    }
    HRESULT DeclareNamespace(VyrUnicodeView prefix, VyrUnicodeView uri) override {
      host_.namespaces.push_back(std::string(prefix) + "=" + std::string(uri));
      inner_->DeclareNamespace(prefix, uri);
      return host_.declareResult;
    }
    HRESULT Evaluate(VyrIDOMNodeList_var& nodes) override {
      host_.expressions.push_back(text_);
      if (VyrFailed(host_.evaluateResult) || !host_.hasList) return host_.evaluateResult;
      if (!host_.list) return inner_->Evaluate(nodes);
      nodes = host_.list;
      return S_OK;
    }

   private:
    HostDOM& host_;
    std::string text_;
    VyrIXMLXPathExpression_var inner_;
  };

  class Document final : public VyrImplements<VyrIDOMDocument, VyrIXMLXPathFactory> {
   public:
    explicit Document(HostDOM& host) : host_(host) {}
    HRESULT QueryInterface(const IID& iid, void** object) override {
      if (iid == VyrIXMLXPathFactory::kIid && !host_.hasFactory) return E_NOINTERFACE;
      return VyrImplements::QueryInterface(iid, object);
    }
    HRESULT CreateExpression(VyrUnicodeView text, VyrIXMLXPathExpression_var& created) override {
      if (VyrSucceeded(host_.createResult)) created = new Expression(host_, std::string(text));
      return host_.createResult;
    }
    HRESULT GetDocumentElement(VyrIDOMElement_var& element) override {
      return host_.content->GetDocumentElement(element);
    }
    const VyrXMLTree& GetTree() override { return host_.content->GetTree(); }
    HRESULT GetNodeType(VyrDOMNodeType& type) override { return host_.content->GetNodeType(type); }
    HRESULT GetNodeName(VyrUnicodeString& name) override {
      return host_.content->GetNodeName(name);
    }
    HRESULT GetLocalName(VyrUnicodeString&) override { return E_NOTIMPL; }
    HRESULT GetNamespaceURI(VyrUnicodeString&) override { return E_NOTIMPL; }
    HRESULT GetNodeValue(VyrUnicodeString&) override { return E_NOTIMPL; }
    HRESULT GetParentNode(VyrIDOMNode_var&) override { return E_NOTIMPL; }
    HRESULT GetChildNodes(VyrIDOMNodeList_var&) override { return E_NOTIMPL; }
    HRESULT GetAttributes(VyrIDOMNamedNodeMap_var&) override { return E_NOTIMPL; }
    HRESULT GetOwnerDocument(VyrIDOMDocument_var&) override { return E_NOTIMPL; }

   private:
    HostDOM& host_;
  };

  class Builder final : public VyrImplements<VyrIXMLDOMDocumentBuilder> {
   public:
    explicit Builder(HostDOM& host) : host_(host) {}
    std::span<const std::string_view> GetOptions() override { return host_.options; }
    HRESULT SetOption(std::string_view option, std::string_view value) override {
      host_.optionsSet.push_back(std::string(option) + "=" + std::string(value));
      return host_.optionResult;
    }
    HRESULT BuildFromFile(VyrUnicodeView, VyrIDOMDocument_var& document) override {
      if (VyrSucceeded(host_.buildResult) && host_.hasDocument) document = new Document(host_);
      return host_.buildResult;
    }
    HRESULT BuildFromString(VyrUnicodeView, VyrIDOMDocument_var&) override { return E_NOTIMPL; }
    const VyrProblem& GetProblem() override { return host_.problem; }

   private:
    HostDOM& host_;
  };

  static HostDOM*& Current() {
    static HostDOM* current = nullptr;
    return current;
  }
  static HRESULT MakeBuilder(VyrIXMLDOMDocumentBuilder_var& builder) {
    HostDOM& host = *Current();
    if (VyrSucceeded(host.builderResult) && host.hasBuilder) builder = new Builder(host);
    return host.builderResult;
  }
};
