#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "HolStandardInfraExport.h"

/// A parsed XML document as flat arrays: one item per node in document order, so that a subtree is
/// a range of items and a walk is a scan. Read only once it is built. The document object model
/// (`VyrIDOMDocument`) is a view of it, and it owns every text that it gives. Indices and
/// identifiers are not checked: they must come from the tree itself. Threads may read one together.
class HOLSTANDARDINFRA_EXPORT VyrXMLTree {
 public:
  /// Place of an item, from 0, in document order.
  using Index = std::uint32_t;
  /// No item.
  static constexpr Index kNone = ~Index{0};
  /// The item of the document node itself.
  static constexpr Index kDocument = 0;

  /// What an item is.
  enum class Kind : std::uint8_t {
    Document,               ///< the document itself
    Element,                ///< an element
    Text,                   ///< a run of text
    CData,                  ///< a CDATA section
    Comment,                ///< a comment
    ProcessingInstruction,  ///< a processing instruction
  };

  /// A name as written in the document; equal names share one identifier.
  struct Name {
    std::string_view namespaceURI;  ///< empty for none; held by the tree, once for all names
    std::string localName;          ///< without the prefix
    std::string qualifiedName;      ///< with the prefix, as it is written
  };

  /// An attribute of an element; `GetName` and `GetValue` read it.
  struct Attribute {
    std::uint32_t name;        ///< identifier of its name
    std::uint32_t valueBegin;  ///< where the value begins in the texts of the tree
    std::uint32_t valueSize;   ///< of the value, in bytes
  };

  /// A tree of the document item alone, to be filled by the parser.
  VyrXMLTree();
  /// @{
  /// Takes over the items; texts and names that were borrowed from them may be so no more.
  VyrXMLTree(VyrXMLTree&&) = default;
  VyrXMLTree& operator=(VyrXMLTree&&) = default;
  /// @}

  /// Number of items, the document's included: every index is below it.
  Index GetCount() const { return static_cast<Index>(items_.size()); }
  /// The document element, or `kNone` while the tree is being built.
  Index GetDocumentElement() const;
  /// What the item is.
  Kind GetKind(Index item) const { return items_[item].kind; }
  /// The item that holds this one; `kNone` for the document.
  Index GetParent(Index item) const { return items_[item].parent; }
  /// One past the last item of the subtree.
  Index GetEnd(Index item) const { return items_[item].end; }
  /// The first child; `kNone` when there is none.
  Index GetFirstChild(Index item) const { return item + 1 < items_[item].end ? item + 1 : kNone; }
  /// The next child of the same parent; `kNone` when there is none.
  Index GetNextSibling(Index item) const {
    const Index next = items_[item].end;
    return item != kDocument && next < items_[items_[item].parent].end ? next : kNone;
  }
  /// 1-based line on which the item ends; for an element, on which its start tag ends.
  int GetLine(Index item) const { return static_cast<int>(items_[item].line); }
  /// Identifier of an element's or a processing instruction's name.
  std::uint32_t GetNameId(Index item) const { return items_[item].name; }
  /// The name of an identifier, borrowed from the tree.
  const Name& GetName(std::uint32_t nameId) const { return names_[nameId]; }
  /// Number of names: every identifier is below it.
  std::uint32_t GetNameCount() const { return static_cast<std::uint32_t>(names_.size()); }

  /// Content (UTF-8) of a text, CDATA, comment or processing instruction item; borrowed from the
  /// tree. Of these only.
  std::string_view GetText(Index item) const {
    return {text_.data() + items_[item].dataBegin, items_[item].dataSize};
  }
  /// Attributes of an element in document order, namespace declarations left out; borrowed from the
  /// tree. Of elements only.
  std::span<const Attribute> GetAttributes(Index item) const {
    return {attributes_.data() + items_[item].dataBegin, items_[item].dataSize};
  }
  /// Value of an attribute (UTF-8), borrowed from the tree.
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
  std::deque<std::string> namespaces_;  // which never moves what it holds
  std::string text_;
};
