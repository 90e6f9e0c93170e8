#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "DiagnosticsCapture.h"
#include "TreeDifference.h"
#include "VyrAnnStandardXMLNode.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrAnnStandardXMLValue.h"

namespace modeltest {

using Document = VyrAnnStandardXMLParser;
using Node = VyrAnnStandardXMLNode;
using Node_var = VyrAnnStandardXMLNode_var;
using Value = VyrAnnStandardXMLValue;
using Value_var = VyrAnnStandardXMLValue_var;

inline constexpr const char* kClassUnitName = "VyrAnnStandardXMLClass";
inline constexpr const char* kParserUnitName = "VyrAnnStandardXMLParser";
inline constexpr const char* kCodecUnitName = "VyrAnnStandardXMLParserDOMCodec";

/// The report of a check that has a message and no kind; a report shows 40 characters of it.
inline std::string Raised(std::string_view message, std::string_view unit) {
  return ": " + std::string(message.substr(0, 40)) + " [" + std::string(unit) + "]";
}
/// The report of a null pointer.
inline std::string NullPointer(std::string_view unit) {
  return "ON POINTER : NULL handler [" + std::string(unit) + "]";
}
/// Matches the report of a condition that does not hold, whatever its message.
inline auto RefusedBy(const std::string& unit) {
  return testing::AllOf(testing::StartsWith("BOOL IS FALSE: "),
                        testing::EndsWith(" [" + unit + "]"));
}

/// A test in which every report and trace line must be asked for: one left over is a failure.
class ModelTest : public testing::Test {
 protected:
  std::vector<std::string> TakeReports() { return CheckTexts(std::exchange(log.errors, {})); }
  std::vector<std::string> TakeTraces() { return std::exchange(log.traces, {}); }

  void TearDown() override {
    EXPECT_THAT(log.errors, testing::IsEmpty());
    EXPECT_THAT(log.traces, testing::IsEmpty());
    EXPECT_THAT(log.printed, testing::IsEmpty());
    EXPECT_THAT(log.abends, testing::IsEmpty());
  }

  DiagnosticsCapture log;
};

inline Node_var NewNode(std::string_view name, Node::Type type = Node::NodePlain) {
  return Node_var(new Node(type, name));
}
inline Value_var NewValue(Value::Type type, std::string_view text, std::string_view name = {},
                          int rangeVal = 0) {
  return Value_var(new Value(type, text, name, rangeVal));
}
inline Node_var AddChild(Node& parent, std::string_view name, Node::Type type = Node::NodePlain) {
  Node_var child = NewNode(name, type);
  parent.AddNode(child.Get(), -1);
  return child;
}
inline void AddString(Node& node, std::string_view name, std::string_view text) {
  node.AddValue(NewValue(Value::ValueString, text, name).Get(), -1);
}

/// A small tree on one line, as `plain Dimension(int X=5, ...){plain A, ...}`; the name of a value
/// stands before its "=", which is ">=" when its range flag is set.
inline std::string Describe(const Node& node) {
  constexpr const char* types[] = {"top", "plain", "typedef", "enum", "instance"};
  std::string text = std::string(types[node.GetNodeType()]) + " " + node.GetNodeName().CString();
  const auto list = [&text](const auto& items, char open, char close) {
    char before = open;
    for (const auto& item : items) {
      text += before;
      if (before == ',') text += ' ';
      text += Describe(*item);
      before = ',';
    }
    if (before == ',') text += close;
  };
  list(node.GetValues(), '(', ')');
  list(node.GetNodes(), '{', '}');
  return text;
}

/// What stands at a path of the document, on one line.
inline std::string DescribeAt(Document& document, const char* path) {
  const Node_var node(document.GetNodeWithPath(path));
  return node ? Describe(*node) : "nothing";
}

/// The three trees of the document, each on a line.
inline std::string Describe(Document& document) {
  return DescribeAt(document, "Enum") + "\n" + DescribeAt(document, "TypeDef") + "\n" +
         DescribeAt(document, "Root");
}

/// Number of references to an object.
inline unsigned long CountReferences(VyrBaseUnknown& object) {
  object.AddRef();
  return object.Release();
}

/// Names of the items of a list, separated by blanks.
inline std::string NamesOf(const Node::Nodes& nodes) {
  std::string names;
  for (const Node_var& node : nodes)
    names.append(names.empty() ? "" : " ").append(node->GetNodeName().View());
  return names;
}

}  // namespace modeltest
