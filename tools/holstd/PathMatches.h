#pragma once

#include <string>
#include <vector>

#include "InputFile.h"
#include "VyrXMLDOM.h"

/// A value as it stands in the file.
struct FileValue {
  std::string type;  ///< "int", "float", "string", "enum" or "color"; empty: there is no value
  std::string text;
  std::string label;      ///< the enumeration of an enum, the lower bound of a float; mostly empty
  bool isDirect = false;  ///< not wrapped in a node
};

/// The elements that a path finds in the file of a standard, by the rule of the queries. They tell
/// what to ask the standard for, not what it answers.
class PathMatches {
 public:
  /// `file` was read as a standard before. Throws `Failure`.
  PathMatches(const InputFile& file, const std::string& path);
  /// Of another path in the same file.
  PathMatches(const PathMatches& other, const std::string& path);

  /// How many there are, in document order; indices count from 0.
  std::size_t Count() const { return elements_.size(); }
  /// The value that the standard would answer from.
  FileValue ValueAt(std::size_t index) const;
  /// Types of all that an element holds; a node, an instance or a definition is "node".
  std::vector<std::string> ContentTypes(std::size_t index) const;

 private:
  std::vector<VyrIDOMNode_var> Find(const std::string& path) const;

  VyrIDOMDocument_var document_;
  VyrUnicodeString namespace_;
  std::vector<VyrIDOMNode_var> elements_;
};
