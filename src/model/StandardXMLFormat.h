#pragma once

#include <array>
#include <string_view>

#include "VyrAnnStandardXMLNode.h"
#include "VyrAnnStandardXMLValue.h"

// The XML format of standard files: names, and which element stands for what.

inline constexpr const char* kStandardNamespace =
    "http://schemas.hol-standard.example/drafting/std";

inline constexpr std::string_view kNameAttribute = "name";
inline constexpr std::string_view kBoundAttribute = "minval";
inline constexpr std::string_view kTypeAttribute = "type";

/// An element that stands for a node of the tree.
struct NodeElement {
  std::string_view localName;
  std::string_view qualifiedName;
  VyrAnnStandardXMLNode::Type type;
};

inline constexpr std::array<NodeElement, 4> kNodeElements = {{
    {"node", "std:node", VyrAnnStandardXMLNode::NodePlain},
    {"typedef", "std:typedef", VyrAnnStandardXMLNode::NodeTypeDef},
    {"enumdef", "std:enumdef", VyrAnnStandardXMLNode::NodeEnum},
    {"typeval", "std:typeval", VyrAnnStandardXMLNode::NodeInstance},
}};

/// An element that stands for a value.
struct ValueElement {
  std::string_view localName;
  std::string_view qualifiedName;
  VyrAnnStandardXMLValue::Type type;
};

inline constexpr std::array<ValueElement, 5> kValueElements = {{
    {"intval", "std:intval", VyrAnnStandardXMLValue::ValueInt},
    {"floatval", "std:floatval", VyrAnnStandardXMLValue::ValueFloat},
    {"strval", "std:strval", VyrAnnStandardXMLValue::ValueString},
    {"enumval", "std:enumval", VyrAnnStandardXMLValue::ValueEnum},
    {"colorval", "std:colorval", VyrAnnStandardXMLValue::ValueColor},
}};

/// True when an element of type `parent` may hold an element of type `child`. The document element
/// is `NodeTop` here.
constexpr bool MayHoldNode(VyrAnnStandardXMLNode::Type parent, VyrAnnStandardXMLNode::Type child) {
  using Node = VyrAnnStandardXMLNode;
  switch (parent) {
    case Node::NodeTop:
      return child == Node::NodePlain || child == Node::NodeTypeDef || child == Node::NodeEnum;
    case Node::NodePlain:
    case Node::NodeInstance:
      return child == Node::NodePlain || child == Node::NodeInstance || child == Node::NodeTypeDef;
    case Node::NodeTypeDef:
    case Node::NodeEnum:
      return false;
  }
  return false;
}

/// True when an element of type `parent` may hold a value element.
constexpr bool MayHoldValue(VyrAnnStandardXMLNode::Type parent,
                            VyrAnnStandardXMLValue::Type value) {
  using Node = VyrAnnStandardXMLNode;
  switch (parent) {
    case Node::NodeTop:
      return false;
    case Node::NodePlain:
    case Node::NodeInstance:
      return true;
    case Node::NodeTypeDef:
      return value != VyrAnnStandardXMLValue::ValueColor;
    case Node::NodeEnum:
      return value == VyrAnnStandardXMLValue::ValueString;
  }
  return false;
}
