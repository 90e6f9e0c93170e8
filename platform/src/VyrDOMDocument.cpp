#include "VyrDOMDocument.h"

#include <array>
#include <atomic>
#include <utility>

#include "VyrFiles.h"
#include "VyrWithinMemory.h"
#include "VyrXMLNameIndex.h"
#include "VyrXMLReader.h"
#include "VyrXPathExpression.h"
#include "VyrXPathMirror.h"

VyrDOMDocument::VyrDOMDocument(VyrXMLTree tree) : tree_(std::move(tree)) {}

VyrDOMDocument::~VyrDOMDocument() = default;

HRESULT VyrDOMDocument::GetDocumentElement(VyrIDOMElement_var& element) {
  element = VyrQuery<VyrIDOMElement>(VyrMakeDOMNode(*this, tree_.GetDocumentElement()).Get());
  return element ? S_OK : E_UNEXPECTED;
}

HRESULT VyrDOMDocument::CreateExpression(VyrUnicodeView expression,
                                         VyrIXMLXPathExpression_var& created) {
  created = VyrMakeXPathExpression(*this, expression);
  return S_OK;
}

const VyrXMLNameIndex& VyrDOMDocument::NameIndex() {
  if (!nameIndex_) nameIndex_ = std::make_unique<VyrXMLNameIndex>(tree_);
  return *nameIndex_;
}

VyrXPathMirror& VyrDOMDocument::Mirror() {
  if (!mirror_) mirror_ = std::make_unique<VyrXPathMirror>(tree_);
  return *mirror_;
}

namespace {

class DOMDocumentBuilder final : public VyrImplements<VyrIXMLDOMDocumentBuilder>,
                                 VyrCountedInstance<DOMDocumentBuilder> {
 public:
  static constexpr const char* kClassName = "VyrDOMDocumentBuilder";

  std::span<const std::string_view> GetOptions() override {
    static constexpr std::array options = {kVyrDoValidation, kVyrEnableNameSpaces};
    return options;
  }

  HRESULT SetOption(std::string_view option, std::string_view value) override {
    const bool isSupported = (option == kVyrDoValidation && value == "false") ||
                             (option == kVyrEnableNameSpaces && value == "true");
    return isSupported ? S_OK : E_FAIL;
  }

  HRESULT BuildFromFile(VyrUnicodeView path, VyrIDOMDocument_var& document) override {
    std::string content;
    std::string problem = VyrReadFile(path, content);
    if (problem.empty()) return Build(content, nullptr, document);
    problem_ = {0, std::move(problem), false};
    return E_FAIL;
  }

  HRESULT BuildFromString(VyrUnicodeView text, VyrIDOMDocument_var& document) override {
    return Build(text, "UTF-8", document);
  }

  const VyrProblem& GetProblem() override { return problem_; }

 private:
  HRESULT Build(std::string_view text, const char* encoding, VyrIDOMDocument_var& document) {
    return VyrWithinMemory(problem_, [&] {
      VyrXMLTree tree;
      if (!VyrReadXML(text, encoding, tree, problem_)) return E_FAIL;
      document = new VyrDOMDocument(std::move(tree));
      return S_OK;
    });
  }

  VyrProblem problem_;
};

HRESULT CreatePlatformBuilder(VyrIXMLDOMDocumentBuilder_var& builder) {
  builder = new DOMDocumentBuilder();
  return S_OK;
}

std::atomic<VyrDOMDocumentBuilderFactory> builderFactory{CreatePlatformBuilder};

}  // namespace

HRESULT CreateVyrIXMLDOMDocumentBuilder(VyrIXMLDOMDocumentBuilder_var& builder) {
  return builderFactory.load()(builder);
}

void VyrSetDOMDocumentBuilderFactory(VyrDOMDocumentBuilderFactory factory) {
  builderFactory = factory == nullptr ? CreatePlatformBuilder : factory;
}
