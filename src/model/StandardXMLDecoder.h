#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "StandardTops.h"
#include "VyrProblem.h"
#include "VyrResult.h"
#include "VyrXMLTree.h"

/// Builds the trees of a document from a parsed XML document.
class StandardXMLDecoder {
 public:
  /// `source` names the document in warnings. The tree must outlive the decoder.
  StandardXMLDecoder(const VyrXMLTree& tree, std::string source);

  /// Appends to the three trees. When an element is refused, what was appended before it stays.
  HRESULT Decode(const StandardTops& tops);

  const VyrProblem& GetProblem() const { return problem_; }
  /// Attributes of the document element; nothing when it was refused.
  const std::optional<VyrUnicodeString>& GetDocumentName() const { return documentName_; }
  const std::optional<VyrUnicodeString>& GetDocumentType() const { return documentType_; }

 private:
  using Index = VyrXMLTree::Index;

  /// What an element name stands for.
  struct Meaning {
    enum Kind : std::uint8_t { OtherNamespace, Unknown, Node, Value };
    Kind kind = OtherNamespace;
    VyrAnnStandardXMLNode::Type nodeType = VyrAnnStandardXMLNode::NodePlain;
    VyrAnnStandardXMLValue::Type valueType = VyrAnnStandardXMLValue::ValueString;
  };

  static Meaning MeaningOf(const VyrXMLTree::Name& name);
  const Meaning& MeaningOf(Index element) const { return meanings_[tree_.GetNameId(element)]; }
  bool IsStandardElement(Index child);

  bool CheckDocumentElement(Index root);
  HRESULT DecodeTopElement(Index element, Index root, const StandardTops& tops);
  VyrAnnStandardXMLNode_var BuildTop(Index element);
  VyrAnnStandardXMLNode_var BuildNodeTree(Index top);
  VyrAnnStandardXMLNode_var BuildEnum(Index element);
  VyrAnnStandardXMLNode_var BuildTypeDef(Index element);
  bool AddValuesOnly(Index element, VyrAnnStandardXMLNode& node);
  VyrAnnStandardXMLValue_var BuildValue(Index element, VyrAnnStandardXMLValue::Type type);
  std::string_view TextOf(Index element, std::string& joined);

  std::string_view AttributeOf(Index element, std::uint32_t nameId) const;
  std::optional<std::string_view> FindAttribute(Index element, std::uint32_t nameId) const;
  std::uint32_t AttributeId(std::string_view localName) const;
  void RefuseElement(const char* format, Index element, Index parent);
  void TraceBuilt(const char* format, Index element, const VyrAnnStandardXMLNode& node);
  std::string Identifier(Index element) const;
  std::string Location(Index element) const;

  const VyrXMLTree& tree_;
  std::string source_;
  std::vector<Meaning> meanings_;  // by name identifier
  std::uint32_t nameAttribute_;
  std::uint32_t boundAttribute_;
  VyrProblem problem_;
  std::optional<VyrUnicodeString> documentName_;
  std::optional<VyrUnicodeString> documentType_;
};
