#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "InputFile.h"
#include "VyrXMLDOM.h"

/// Where the nodes of a standard stand in its file.
class NodeLines {
 public:
  /// A file that was read as a standard before.
  explicit NodeLines(const InputFile& file);

  /// Line of the node that `path` leads to, a name for each level below the document element; 0
  /// when it is not known.
  int LineOf(const std::vector<std::string_view>& path) const;
  /// The same for a child of that node, at an index from 0.
  int LineOfChild(const std::vector<std::string_view>& path, std::size_t index) const;

 private:
  VyrXMLTree::Index Find(const std::vector<std::string_view>& path) const;
  VyrXMLTree::Index ChildOf(VyrXMLTree::Index parent, std::size_t index) const;
  bool IsNode(VyrXMLTree::Index item) const;
  std::string_view NameOf(VyrXMLTree::Index item) const;
  int Line(VyrXMLTree::Index item) const;

  VyrIDOMDocument_var document_;
  const VyrXMLTree* tree_ = nullptr;
};
