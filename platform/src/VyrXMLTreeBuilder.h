#pragma once

#include <cstdint>
#include <limits>
#include <string_view>
#include <unordered_map>

#include "VyrXMLTree.h"

/// Fills a tree from the events of a parser.
class VyrXMLTreeBuilder {
 public:
  /// A name by the addresses of its parts, which the parser keeps unique per text; null: absent.
  struct NameKey {
    const char* localName;
    const char* prefix;
    const char* namespaceURI;
    friend bool operator==(const NameKey&, const NameKey&) = default;
  };

  /// The most bytes of text that the offsets in a tree can address.
  static constexpr std::size_t kMostText = std::numeric_limits<std::uint32_t>::max();

  /// `documentSize`, in bytes, tells how much memory to set aside at once.
  VyrXMLTreeBuilder(VyrXMLTree& tree, std::size_t documentSize, std::size_t mostText = kMostText);

  void StartElement(const NameKey& name, int line);
  /// Adds to the element just started.
  void AddAttribute(const NameKey& name, std::string_view value);
  /// Nothing when no element is open.
  void EndElement();
  /// Text runs that follow each other become one item, as CDATA sections do not.
  void AddText(std::string_view text, int line);
  void AddLeaf(VyrXMLTree::Kind kind, std::string_view text, int line);
  void AddProcessingInstruction(const NameKey& target, std::string_view text, int line);
  void EndDocument();

  /// False when the document outgrew what the tree can address.
  bool FitsInTree() const { return fits_; }

 private:
  struct NameKeyHash {
    std::size_t operator()(const NameKey& key) const;
  };

  std::uint32_t NameId(const NameKey& key);
  std::string_view StoreNamespace(const char* name);
  std::uint32_t StoreText(std::string_view text);
  VyrXMLTree::Index AddItem(VyrXMLTree::Kind kind, std::uint32_t name, int line);

  VyrXMLTree& tree_;
  std::size_t mostText_;
  VyrXMLTree::Index parent_ = VyrXMLTree::kDocument;
  bool fits_ = true;
  std::unordered_map<NameKey, std::uint32_t, NameKeyHash> nameIds_;
  std::unordered_map<const char*, std::string_view> namespaces_;
};
