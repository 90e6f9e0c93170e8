#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "Objections.h"
#include "VyrAnnStandardXMLParser.h"

/// The literals that the enumerations of a standard define. Each enumeration is read once, however
/// many literals are asked for. Borrows the document, which must not change.
class DefinedLiterals {
 public:
  explicit DefinedLiterals(VyrAnnStandardXMLParser& document);

  /// Says that a literal is not defined, and what would be; empty when it is. No application opens
  /// a standard with such a literal. Where the whole enumeration was missing before, nothing is
  /// worse.
  std::string ObjectionTo(const WrittenLiteral& written);

 private:
  using Node = VyrAnnStandardXMLNode;
  using Texts = std::unordered_set<std::string_view>;

  const Texts& TextsOf(const Node& enumeration);
  std::string UnknownEnumeration(const WrittenLiteral& written) const;
  static std::string UnknownLiteral(const WrittenLiteral& written, const Node& enumeration);

  VyrAnnStandardXMLNode_var top_;
  std::unordered_map<const Node*, Texts> texts_;
};
