#include "ModelTest.h"
#include "VyrInstanceCounter.h"

namespace modeltest {
namespace {

class ValueCheck : public ModelTest {};

TEST(Value, TypesHaveTheNumbersOfTheContract) {
  EXPECT_EQ(Value::ValueInt, 1);
  EXPECT_EQ(Value::ValueFloat, 2);
  EXPECT_EQ(Value::ValueString, 3);
  EXPECT_EQ(Value::ValueEnum, 4);
  EXPECT_EQ(Value::ValueColor, 5);
  EXPECT_EQ(Node::NodeTop, 0);
  EXPECT_EQ(Node::NodePlain, 1);
  EXPECT_EQ(Node::NodeTypeDef, 2);
  EXPECT_EQ(Node::NodeEnum, 3);
  EXPECT_EQ(Node::NodeInstance, 4);
}

TEST(Value, ConstructionTakesTheTextBeforeTheName) {
  const Value_var value(new Value(Value::ValueFloat, "2.0", "0.5", 1));
  EXPECT_EQ(value->GetType(), Value::ValueFloat);
  EXPECT_EQ(value->GetValue(), "2.0");
  EXPECT_EQ(value->GetValueName(), "0.5");
  EXPECT_EQ(value->GetRangeVal(), 1);
}

TEST(Value, TextAndRangeFlagAreReplacedAndTheRestStays) {
  const Value_var value = NewValue(Value::ValueString, "old", "Name");
  value->SetValue("尺寸 \"new\"");
  value->SetRangeVal(1);
  EXPECT_EQ(value->GetValue(), "尺寸 \"new\"");
  EXPECT_EQ(value->GetRangeVal(), 1);
  EXPECT_EQ(value->GetValueName(), "Name");
  EXPECT_EQ(value->GetType(), Value::ValueString);
}

TEST(Value, CloneHasTheFourFieldsAndIsIndependent) {
  const Value_var value = NewValue(Value::ValueFloat, "2.0", "0.5", 1);
  const Value_var copy(value->Clone());
  EXPECT_EQ(Describe(*copy), "float 0.5>=2.0");
  EXPECT_EQ(CountReferences(*copy), 1u);
  copy->SetValue("3.0");
  copy->SetRangeVal(0);
  EXPECT_EQ(Describe(*value), "float 0.5>=2.0");
}

TEST_F(ValueCheck, UndefinedLiteralIsReportedOnOneLineWhateverTheTextsHold) {
  const Node_var enums = NewNode("Enum");
  const Value_var value = NewValue(Value::ValueEnum, "x\nEnum undefined: forged", "Yes\u2028No");
  EXPECT_EQ(value->Check(enums.Get(), "Enum undefined: Root.a\rb"), 1);
  EXPECT_THAT(TakeTraces(), testing::ElementsAre(
                                "Enum undefined: Root.a\\x0Db.x\\nEnum undefined: forged with enum "
                                "\"Yes\\u2028No\"\n"));
}

TEST(Node, ConstructionGivesAnEmptyNode) {
  const Node_var node(new Node(Node::NodeInstance, "A0 ISO"));
  EXPECT_EQ(node->GetNodeType(), Node::NodeInstance);
  EXPECT_EQ(node->GetNodeName(), "A0 ISO");
  EXPECT_EQ(node->GetNumOfNode(), 0);
  EXPECT_EQ(node->GetNumOfValue(), 0);
  node->SetNodeName("A1 ISO");
  EXPECT_EQ(node->GetNodeName(), "A1 ISO");
}

template <class Class>
class ModelMetaClass : public testing::Test {};
using ModelClasses = testing::Types<Node, Value>;
TYPED_TEST_SUITE(ModelMetaClass, ModelClasses);

TYPED_TEST(ModelMetaClass, IsRegisteredUnderTheClassNameInThisLibrary) {
  const std::string name =
      std::is_same_v<TypeParam, Node> ? "VyrAnnStandardXMLNode" : "VyrAnnStandardXMLValue";
  EXPECT_EQ(TypeParam::ClassName(), name);
  EXPECT_EQ(TypeParam::MetaObject().GetName(), name);
  EXPECT_STREQ(TypeParam::MetaObject().GetLibrary(), "HolStandardInfra");
  const VyrVar<VyrBaseUnknown> made(TypeParam::CreateItself());
  ASSERT_TRUE(made);
  EXPECT_EQ(made->IsA(), name);
  EXPECT_EQ(made->IsAKindOf(name.c_str()), 1);
  EXPECT_EQ(made->IsAKindOf("VyrBaseUnknown"), 1);
  EXPECT_EQ(made->IsAKindOf("VyrAnnStandardXMLParser"), 0);
  EXPECT_EQ(&made->GetMetaObject(), &TypeParam::MetaObject());
  EXPECT_EQ(TypeParam::ClassId(), TypeParam::MetaObject().GetClassId());
}

TEST(ModelMetaClass, NodesAndValuesAreToldApart) {
  EXPECT_FALSE(Node::ClassId() == Value::ClassId());
}

#ifdef HOL_DEVELOPMENT_BUILD
long CountLive() {
  long live = -1;
  VyrInstanceCounter::ForEach([&](const VyrInstanceCounter& counter) {
    if (std::string_view(counter.GetName()) == kClassUnitName) live = counter.GetLive();
  });
  return live;
}

TEST(ModelInstanceCounter, NodesAndValuesShareOneCounter) {
  Node_var node = NewNode("N");
  const long before = CountLive();
  ASSERT_GE(before, 1);
  AddString(*node, "name", "text");
  EXPECT_EQ(CountLive(), before + 1);
  const Node_var child = AddChild(*node, "child");
  EXPECT_EQ(CountLive(), before + 2);
  node = nullptr;
  EXPECT_EQ(CountLive(), before) << "the child is held and its parent is not";
}
#endif

}  // namespace
}  // namespace modeltest
