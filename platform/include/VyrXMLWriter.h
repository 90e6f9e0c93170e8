#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "HolStandardInfraExport.h"

/// Writes an XML document as text: UTF-8, an element with child elements over several lines with
/// two blanks of indentation per level, an element with text on one line, a final newline. The
/// same calls give the same bytes.
///
/// Elements nested deeper than `kIndentedLevels` get no further indentation, so that the text
/// stays in proportion to the tree however deep it is. Used from one thread at a time.
class HOLSTANDARDINFRA_EXPORT VyrXMLWriter {
 public:
  /// Number of levels that are indented.
  static constexpr std::size_t kIndentedLevels = 40;

  /// A document that has no element yet, of which there must be one.
  VyrXMLWriter();

  /// `qualifiedName` must be a valid XML name and outlive the element.
  void StartElement(std::string_view qualifiedName);
  /// Adds an attribute to the element just started. False, and nothing is written, when `value`
  /// holds what XML cannot: a control character, or bytes that are not UTF-8.
  [[nodiscard]] bool AddAttribute(std::string_view name, std::string_view value);
  /// Adds text to the element just started; the same rule as for attributes. An element with text
  /// takes no child elements.
  [[nodiscard]] bool AddText(std::string_view text);
  /// Ends the element that was started last and has not ended; there must be one.
  void EndElement();

  /// The document, complete once every element has ended; the writer is used up then.
  std::string TakeText();

  /// Byte offset of the first character of `text` that XML cannot hold, or `npos`.
  static std::size_t FindUnwritable(std::string_view text);
  /// `text` with the characters escaped that have a meaning in element content.
  static std::string Escape(std::string_view text);
  /// The same for an attribute's value between double quotes.
  static std::string EscapeAttribute(std::string_view text);

 private:
  void CloseStartTag();
  void BreakLine(std::size_t level);

  std::string text_;
  std::vector<std::string_view> open_;
  bool inStartTag_ = false;
  bool hasText_ = false;
};
