#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "HolStandardInfraExport.h"

/// A parsed XML document as flat arrays: one item per node in document order, so that a subtree is
/// a range of items and a walk is a scan. Read only once it is built. The document object model
/// (`VyrIDOMDocument`) is a view of it.
class HOLSTANDARDINFRA_EXPORT VyrXMLTree {
 public:
  using Index = std::uint32_t;
  static constexpr Index kNone = ~Index{0};
  /// The item of the document node itself.
  static constexpr Index kDocument = 0;

  enum class Kind : std::uint8_t {
    Document,
    Element,
    Text,
    CData,
    Comment,
    ProcessingInstruction,
  };

  /// A name as written in the document; equal names share one identifier.
  struct Name {
    std::string namespaceURI;
    std::string localName;
    std::string qualifiedName;
  };

  struct Attribute {
    std::uint32_t name;
    std::uint32_t valueBegin;
    std::uint32_t valueSize;
  };

  VyrXMLTree();

  Index GetCount() const { return static_cast<Index>(items_.size()); }
  /// The document element, or `kNone` while the tree is being built.
  Index GetDocumentElement() const;
  Kind GetKind(Index item) const { return items_[item].kind; }
  Index GetParent(Index item) const { return items_[item].parent; }
  /// One past the last item of the subtree.
  Index GetEnd(Index item) const { return items_[item].end; }
  Index GetFirstChild(Index item) const { return item + 1 < items_[item].end ? item + 1 : kNone; }
  Index GetNextSibling(Index item) const {
    const Index next = items_[item].end;
    return item != kDocument && next < items_[items_[item].parent].end ? next : kNone;
  }
  /// 1-based line on which the item ends; for an element, on which its start tag ends.
  int GetLine(Index item) const { return static_cast<int>(items_[item].line); }
  /// Identifier of an element's or a processing instruction's name.
  std::uint32_t GetNameId(Index item) const { return items_[item].name; }
  const Name& GetName(std::uint32_t nameId) const { return names_[nameId]; }
  std::uint32_t GetNameCount() const { return static_cast<std::uint32_t>(names_.size()); }

  /// Content of a text, CDATA, comment or processing instruction item; borrowed from the tree.
  std::string_view GetText(Index item) const {
    return {text_.data() + items_[item].dataBegin, items_[item].dataSize};
  }
  /// Attributes of an element in document order, namespace declarations left out.
  std::span<const Attribute> GetAttributes(Index item) const {
    return {attributes_.data() + items_[item].dataBegin, items_[item].dataSize};
  }
  std::string_view GetValue(const Attribute& attribute) const {
    return {text_.data() + attribute.valueBegin, attribute.valueSize};
  }

 private:
  friend class VyrXMLTreeBuilder;

  struct Item {
    Kind kind;
    std::uint32_t line;
    std::uint32_t name;
    Index parent;
    Index end;
    std::uint32_t dataBegin;  // an element's first attribute, or where its text begins
    std::uint32_t dataSize;
  };

  std::vector<Item> items_;
  std::vector<Attribute> attributes_;
  std::vector<Name> names_;
  std::string text_;
};
