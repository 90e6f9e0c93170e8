#include <cstdio>
#include <memory>

#include "ModelTest.h"
#include "RandomTree.h"

// The path commands against a model that does each of them the plainest way, over thousands of
// random commands. Narrow documents try every path; wide ones also the indexes of wide nodes.

namespace modeltest {
namespace {

struct ModelNode {
  Node::Type type;
  std::string name;
  std::vector<std::unique_ptr<ModelNode>> nodes = {};
  std::vector<Value_var> values = {};

  ModelNode* FirstNamed(const std::string& wanted) {
    for (auto& node : nodes) {
      if (node->name == wanted) return node.get();
    }
    return nullptr;
  }
};

/// Cuts `text` at the first separator; false when there is none.
bool Cut(const std::string& text, char separator, std::string& head, std::string& tail) {
  const std::size_t place = text.find(separator);
  head = text.substr(0, place);
  tail = place == std::string::npos ? "" : text.substr(place + 1);
  return place != std::string::npos;
}

ModelNode* Find(ModelNode& node, const std::string& path, int occurrence) {
  std::string head, tail;
  const bool hasTail = Cut(path, '.', head, tail);
  if (!hasTail && occurrence != 1) {
    const int count = static_cast<int>(node.nodes.size());
    const int place = occurrence < 1 ? count : occurrence;
    return place < 1 || place > count ? nullptr : node.nodes[place - 1].get();
  }
  ModelNode* child = node.FirstNamed(head);
  return child == nullptr || !hasTail ? child : Find(*child, tail, occurrence);
}

Value* FindValue(ModelNode& node, const std::string& path) {
  std::string head, tail;
  if (Cut(path, '.', head, tail)) {
    ModelNode* child = node.FirstNamed(head);
    return child == nullptr ? nullptr : FindValue(*child, tail);
  }
  for (const Value_var& value : node.values) {
    if (value->GetValue() == head) return value.Get();
  }
  return nullptr;
}

template <class List, class Test>
bool EraseFirst(List& list, Test test) {
  for (auto it = list.begin(); it != list.end(); ++it) {
    if (!test(*it)) continue;
    list.erase(it);
    return true;
  }
  return false;
}

int Delete(ModelNode& node, const std::string& path) {
  std::string head, tail;
  if (Cut(path, '.', head, tail)) {
    ModelNode* child = node.FirstNamed(head);
    return child == nullptr ? 1 : Delete(*child, tail);
  }
  const bool isDone =
      EraseFirst(node.nodes, [&](const auto& child) { return child->name == head; }) ||
      EraseFirst(node.values, [&](const auto& value) { return value->GetValueName() == head; }) ||
      EraseFirst(node.values, [&](const auto& value) { return value->GetValue() == head; });
  return isDone ? 0 : 1;
}

/// False when the position is no number; adds nothing when it is past the end.
template <class List, class Item>
bool Insert(List& list, const std::string& position, Item item) {
  int number = 0;
  if (!position.empty() && std::sscanf(position.c_str(), "%d", &number) != 1) return false;
  if (number < 1) {
    list.push_back(std::move(item));
  } else if (static_cast<std::size_t>(number) <= list.size()) {
    list.insert(list.begin() + (number - 1), std::move(item));
  }
  return true;
}

class ModelDocument {
 public:
  ModelNode root{Node::NodeTop, "Root"};
  ModelNode enums{Node::NodeTop, "Enum"};
  ModelNode typeDefs{Node::NodeTop, "TypeDef"};

  int AddNode(const std::string& command, int instance) {
    std::string path, name, position, rest;
    Cut(command, ':', path, rest);
    Cut(rest, ':', name, position);
    ModelNode* target = Target(path);
    if (target == nullptr) return 1;
    const Node::Type type = path == "Enum"      ? Node::NodeEnum
                            : path == "TypeDef" ? Node::NodeTypeDef
                            : instance != 0     ? Node::NodeInstance
                                                : Node::NodePlain;
    auto node = std::make_unique<ModelNode>(ModelNode{type, name});
    return Insert(target->nodes, position, std::move(node)) ? 0 : 2;
  }

  int AddValue(const std::string& command, int occurrence) {
    const Fields fields(command);
    std::string head, rest;
    const bool hasRest = Cut(fields.path, '.', head, rest);
    ModelNode* top = Top(head);
    ModelNode* target = top == nullptr || !hasRest ? top : Find(*top, rest, occurrence);
    if (target == nullptr) return 1;
    return Put(*target, fields, head == "Root" && occurrence != -1);
  }

  int AddToAll(const std::string& command, int occurrence) {
    const Fields fields(command);
    std::string head, path;
    if (!Cut(fields.path, '.', head, path) || head != "Root") return 1;
    std::size_t size = 0;
    std::string rest = path;
    for (std::size_t dot = rest.find('.'); dot != std::string::npos; dot = rest.find('.')) {
      size += dot;
      rest = rest.substr(dot + 1);
    }
    ModelNode* parent = Find(root, path.substr(0, size), occurrence);
    if (parent == nullptr) return 1;
    int result = 1;
    for (auto& child : parent->nodes) {
      if (child->name == rest) result = Put(*child, fields, occurrence != -1);
    }
    return result;
  }

  int Change(const std::string& command) {
    std::string path, text, head, rest;
    if (!Cut(command, ':', path, text)) return 1;
    Cut(path, '.', head, rest);
    ModelNode* top = Top(head);
    if (top == nullptr) return 1;
    if (ModelNode* node = Target(path)) {
      ChangeNode(*node, text);
      return 0;
    }
    Value* value = FindValue(*top, rest);
    if (value == nullptr) return 1;
    value->SetValue(text);
    return 0;
  }

  int DeleteAt(const std::string& path) {
    std::string head, rest;
    Cut(path, '.', head, rest);
    ModelNode* top = Top(head);
    return top == nullptr ? 1 : Delete(*top, rest);
  }

  std::string Read(const std::string& path) {
    std::string head, rest;
    Cut(path, '.', head, rest);
    ModelNode* node = rest.empty() ? nullptr : Target(path);
    return node == nullptr || node->values.empty() ? "" : node->values[0]->GetValue().CString();
  }

 private:
  struct Fields {
    explicit Fields(const std::string& command) {
      std::string rest;
      Cut(command, ':', path, rest);
      for (std::string* field : {&name, &type, &value}) {
        const std::string left = rest;
        Cut(left, ':', *field, rest);
      }
      position = rest;
    }
    std::string path, name, type, value, position;
  };

  ModelNode* Top(const std::string& head) {
    return head == "Root"      ? &root
           : head == "Enum"    ? &enums
           : head == "TypeDef" ? &typeDefs
                               : nullptr;
  }
  ModelNode* Target(const std::string& path) {
    std::string head, rest;
    Cut(path, '.', head, rest);
    ModelNode* top = Top(head);
    return top == nullptr || rest.empty() ? top : Find(*top, rest, 1);
  }

  static int Put(ModelNode& target, const Fields& fields, bool mayWrap) {
    Value::Type type = Value::ValueString;
    std::string qualifier, word, rest, unit;
    int rangeVal = 0;
    const bool hasDot = Cut(fields.type, '.', word, rest);
    if (hasDot && word == "enum") {
      type = Value::ValueEnum;
      qualifier = rest;
    } else if (hasDot && word == "float" && Cut(rest, '.', unit, qualifier)) {
      type = Value::ValueFloat;
      rangeVal = 1;
    } else if (!hasDot) {
      type = word == "int"     ? Value::ValueInt
             : word == "float" ? Value::ValueFloat
             : word == "color" ? Value::ValueColor
                               : Value::ValueString;
    }
    if (!mayWrap || target.type == Node::NodeInstance) {
      return Insert(target.values, fields.position,
                    NewValue(type, fields.value, fields.name, rangeVal))
                 ? 0
                 : 2;
    }
    auto wrapper = std::make_unique<ModelNode>(ModelNode{Node::NodePlain, fields.name});
    wrapper->values.push_back(NewValue(type, fields.value, qualifier, rangeVal));
    return Insert(target.nodes, fields.position, std::move(wrapper)) ? 0 : 2;
  }

  static void ChangeNode(ModelNode& node, const std::string& text) {
    if (!node.nodes.empty()) return;
    if (node.values.size() == 1) return node.values[0]->SetValue(text);
    std::string name, newText;
    if (!Cut(text, ':', name, newText)) return;
    for (const Value_var& value : node.values) {
      if (value->GetValueName() == name) return value->SetValue(newText);
    }
  }
};

/// The model's tree as one to compare with.
Node_var ToNode(const ModelNode& model) {
  Node_var node = NewNode(model.name, model.type);
  for (const auto& child : model.nodes) node->AddNode(ToNode(*child).Get(), -1);
  for (const auto& value : model.values) node->AddValue(value.Get(), -1);
  return node;
}

/// Random commands over `names` names; the first few are odd ones.
class Commands {
 public:
  Commands(std::uint32_t seed, int names, int deepest)
      : choices_(seed), names_(names), deepest_(deepest) {}

  Choices& Choose() { return choices_; }
  std::string Name() {
    constexpr const char* odd[] = {"", "A0 ISO", "寸法"};
    const int chosen = choices_.Below(names_);
    return chosen < 3 ? odd[chosen] : "n" + std::to_string(chosen);
  }
  std::string Path() {
    constexpr const char* tops[] = {"Root", "Root", "Root",    "Root", "Root",
                                    "Root", "Enum", "TypeDef", "root"};
    std::string path = choices_.Of(tops);
    for (int depth = choices_.Below(deepest_ + 1); depth > 0; --depth) path += "." + Name();
    return path;
  }
  std::string Position() {
    constexpr const char* positions[] = {"",     "",    ":0",   ":0,", ":1",  ":2,", ":3",
                                         ": +2", ":-1", ":abc", ":,",  ":70", ":150"};
    return choices_.Of(positions);
  }
  std::string ValueFields() {
    constexpr const char* types[] = {"int",    "float",       "string",  "color",
                                     "enum.E", "float.m.0.0", "float.m", "wrong"};
    return ":" + Name() + ":" + choices_.Of(types) + ":" + Name() + Position();
  }
  int Occurrence() {
    constexpr int occurrences[] = {1, 1, 1, 1, 1, -1, -1, 0, 2, 3, 90};
    return choices_.Of(occurrences);
  }

 private:
  Choices choices_;
  int names_;
  int deepest_;
};

/// Sends one random command to both and compares their results.
void SendOne(Commands& commands, Document& document, ModelDocument& model) {
  const int kind = commands.Choose().Below(12);
  const std::string path = commands.Path();
  const int occurrence = commands.Occurrence();
  if (kind < 3) {
    const std::string command = path + ":" + commands.Name() + commands.Position();
    ASSERT_EQ(document.AddNodeWithPath(command, kind), model.AddNode(command, kind)) << command;
  } else if (kind < 6) {
    const std::string command = path + commands.ValueFields();
    ASSERT_EQ(document.AddValueWithPath(command, occurrence), model.AddValue(command, occurrence))
        << command;
  } else if (kind == 6) {
    const std::string command = path + commands.ValueFields();
    ASSERT_EQ(document.AddValueWithPathForAllOccurence(command, occurrence),
              model.AddToAll(command, occurrence))
        << command;
  } else if (kind < 9) {
    const std::string command =
        path + ":" + commands.Name() + (occurrence == 1 ? ":" + commands.Name() : std::string());
    ASSERT_EQ(document.ChangeValueWithPath(command), model.Change(command)) << command;
  } else if (kind == 9) {
    ASSERT_EQ(document.DeleteNodeWithPath(path), model.DeleteAt(path)) << path;
  } else {
    ASSERT_EQ(document.GetValueWithPath(path).CString(), model.Read(path)) << path;
  }
}

void ExpectEqual(Document& document, const ModelDocument& model) {
  for (const ModelNode* top : {&model.root, &model.enums, &model.typeDefs}) {
    const Node_var node(document.GetNodeWithPath(top->name));
    ASSERT_EQ(FindDifference(*node, *ToNode(*top)), "");
  }
}

struct Shape {
  const char* name;
  int names;
  int deepest;
  int commands;
};

class CommandModel : public ModelTest, public testing::WithParamInterface<Shape> {};
INSTANTIATE_TEST_SUITE_P(Shapes, CommandModel,
                         testing::Values(Shape{"Deep", 5, 4, 3000}, Shape{"Narrow", 12, 2, 3000},
                                         Shape{"Wide", 120, 1, 3000},
                                         Shape{"WideWithDuplicates", 20, 1, 2000}),
                         [](const auto& test) { return test.param.name; });

TEST_P(CommandModel, AgreesWithTheDocumentAfterEveryCommand) {
  const Shape& shape = GetParam();
  for (std::uint32_t seed = 1; seed <= 4; ++seed) {
    Commands commands(seed, shape.names, shape.deepest);
    Document document;
    ModelDocument model;
    for (int i = 0; i < shape.commands; ++i) {
      SendOne(commands, document, model);
      log.Clear();
      if (HasFatalFailure()) return;
      if (i % 25 == 0) ExpectEqual(document, model);
      if (HasFatalFailure()) return;
    }
    ExpectEqual(document, model);
    const Node_var root(document.GetNodeWithPath("Root"));
    EXPECT_GT(root->GetNumOfNode(), shape.deepest == 1 ? 64 : 0) << "the sequence meets its aim";
  }
}

}  // namespace
}  // namespace modeltest
