#include "Version0Lines.h"

#include "VyrDrwParseParameter.h"
#include "VyrDrwParseStandard.h"
#include "VyrXMLWriter.h"

namespace {

using Type = VyrDrwParseKeyword::Type;

constexpr std::size_t kBlanksPerLevel = 3;

std::string_view ElementOf(Type type) {
  switch (type) {
    case Type::Int:
      return "std:intval";
    case Type::Float:
      return "std:floatval";
    default:
      return "std:strval";
  }
}

std::string Named(std::string_view element, std::string_view name) {
  std::string start = "<";
  start.append(element);
  if (!name.empty())
    start.append(" name=\"").append(VyrXMLWriter::EscapeAttribute(name)).append("\"");
  return start.append(">");
}

std::string EndOf(std::string_view element) {
  return "</" + std::string(element) + ">";
}

}  // namespace

void AddLine(VyrUnicodeString& text, int level, std::string_view line) {
  std::string indented(kBlanksPerLevel * static_cast<std::size_t>(level), ' ');
  indented.append(line);
  VyrDrwParseStandard::AddOutputLine(text, indented.c_str(), 1);
}

void BeginNode(VyrUnicodeString& text, int level, std::string_view name) {
  AddLine(text, level, Named("std:node", name));
}

void EndNode(VyrUnicodeString& text, int level) {
  AddLine(text, level, EndOf("std:node"));
}

void BeginInstance(VyrUnicodeString& text, int level, std::string_view name) {
  AddLine(text, level, Named("std:typeval", name));
}

void EndInstance(VyrUnicodeString& text, int level) {
  AddLine(text, level, EndOf("std:typeval"));
}

void AddValueLine(VyrUnicodeString& text, int level, Type type, std::string_view name,
                  std::string_view value) {
  const std::string_view element = ElementOf(type);
  AddLine(text, level, Named(element, name) + VyrXMLWriter::Escape(value) + EndOf(element));
}

void AddWrappedValue(VyrUnicodeString& text, int level, Type type, std::string_view name,
                     std::string_view value) {
  BeginNode(text, level, name);
  AddValueLine(text, level + 1, type, {}, value);
  EndNode(text, level);
}

void VyrDrwParseParameter::Write(VyrUnicodeString& text) const {
  if (!group_) {
    AddWrappedValue(text, 2, type_, name_.View(), value_.View());
  } else {
    const int row = FindKeywordRow(name_.View());
    const bool namesGroup = row == kToleranceNameRow || row == kDisplayNameRow;
    AddValueLine(text, 5, type_, namesGroup ? "Name" : name_.View(), value_.View());
  }
}
