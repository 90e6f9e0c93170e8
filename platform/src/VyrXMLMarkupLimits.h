#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// The parser compares every attribute of an element with every other one, and the names of a
// declaration with each other. What would make that slow is found before it is parsed.

inline constexpr std::size_t kMostXMLAttributes = 256;
inline constexpr std::size_t kMostXMLDeclarations = 64 * 1024;  // bytes

struct VyrXMLExcess {
  std::size_t place;  ///< byte offset
  std::string text;   ///< what is wrong and what would be right
};

/// The first start tag with too many attributes or the document type declaration that is too long.
/// `text` is a document in UTF-8 or the content of an entity. Comments, CDATA sections, processing
/// instructions and quoted values may hold anything. Of text that is not well formed only what
/// stands before the fault counts.
std::optional<VyrXMLExcess> VyrFindXMLExcess(std::string_view text);
