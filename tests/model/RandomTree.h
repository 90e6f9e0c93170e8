#pragma once

#include <array>
#include <cstdint>
#include <random>
#include <string>

#include "ModelTest.h"

namespace modeltest {

/// Choices that are the same in every run and on every machine.
class Choices {
 public:
  explicit Choices(std::uint32_t seed) : engine_(seed) {}

  int Below(int limit) { return static_cast<int>(engine_() % static_cast<std::uint32_t>(limit)); }
  bool OneIn(int count) { return Below(count) == 0; }
  template <class List>
  auto Of(const List& list) {
    return list[static_cast<std::size_t>(Below(static_cast<int>(std::size(list))))];
  }

 private:
  std::mt19937 engine_;
};

/// Names and texts that a codec could spoil.
inline constexpr std::array<const char*, 20> kOddTexts = {
    "",           "Name",  "name",   "A0 ISO",     " leading",   "trailing ", " ",
    "\n",         "\r\n",  "\t tab", "two\nlines", "寸法補助線", "𝄞 clef",    "\"quoted\" 'too'",
    "<std:node>", "a & b", "]]>",    "1.0",        "Root:X:int", "&amp;"};

/// Adds a random value that a codec must keep.
inline void AddRandomValue(Choices& choices, Node& node, std::initializer_list<Value::Type> types) {
  const std::vector<Value::Type> list(types);
  const std::string name = choices.Of(kOddTexts);
  const int rangeVal = !name.empty() && choices.OneIn(4) ? 1 : 0;
  node.AddValue(NewValue(choices.Of(list), choices.Of(kOddTexts), name, rangeVal).Get(), -1);
}

inline Node_var RandomTypeDef(Choices& choices) {
  Node_var node = NewNode(choices.Of(kOddTexts), Node::NodeTypeDef);
  for (int count = 1 + choices.Below(4); count > 0; --count) {
    AddRandomValue(choices, *node,
                   {Value::ValueInt, Value::ValueFloat, Value::ValueString, Value::ValueEnum});
  }
  return node;
}

/// A random tree of a form that a standard file can hold, of at most `depth` levels.
inline Node_var RandomParameters(Choices& choices, Node::Type type, int depth) {
  Node_var node = NewNode(choices.Of(kOddTexts), type);
  for (int count = choices.Below(4); count > 0; --count) {
    AddRandomValue(choices, *node,
                   {Value::ValueInt, Value::ValueFloat, Value::ValueString, Value::ValueEnum,
                    Value::ValueColor});
  }
  for (int count = depth > 1 ? choices.Below(5) : 0; count > 0; --count) {
    const Node_var child =
        choices.OneIn(6)
            ? RandomTypeDef(choices)
            : RandomParameters(choices, choices.OneIn(3) ? Node::NodeInstance : Node::NodePlain,
                               depth - 1);
    node->AddNode(child.Get(), -1);
  }
  return node;
}

inline Node_var RandomEnum(Choices& choices) {
  const std::string name = choices.Of(kOddTexts);
  Node_var node = NewNode(name, Node::NodeEnum);
  for (int count = 1 + choices.Below(4); count > 0; --count) {
    AddString(*node, choices.OneIn(3) ? name : std::string(), choices.Of(kOddTexts));
  }
  return node;
}

/// Fills a document with random trees.
inline void FillRandomly(Choices& choices, Document& document) {
  const Node_var enums(document.GetNodeWithPath("Enum"));
  const Node_var typeDefs(document.GetNodeWithPath("TypeDef"));
  const Node_var root(document.GetNodeWithPath("Root"));
  for (int i = choices.Below(4); i > 0; --i) enums->AddNode(RandomEnum(choices).Get(), -1);
  for (int i = choices.Below(4); i > 0; --i) typeDefs->AddNode(RandomTypeDef(choices).Get(), -1);
  for (int i = choices.Below(5); i > 0; --i) {
    root->AddNode(RandomParameters(choices, Node::NodePlain, 5).Get(), -1);
  }
}

}  // namespace modeltest
