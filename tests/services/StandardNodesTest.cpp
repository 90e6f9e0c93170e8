#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "FakeDOM.h"
#include "StandardNodes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kUnit = " [VyrDifTransientStandard]";

std::vector<std::string> NamesOf(const StandardNodes& nodes) {
  std::vector<std::string> names;
  for (const VyrIDOMNode_var& node : nodes) names.emplace_back(NodeNameOf(*node).View());
  return names;
}

TEST(StandardNodes, ChildrenAreAllButTextsOfBlanks) {
  const auto element = DocumentElementOf("<r>\n <a/>text<!--c-->\t<b/><![CDATA[ ]]>\r\n</r>");
  EXPECT_THAT(NamesOf(ChildrenOf(*element)),
              ElementsAre("a", "#text", "#comment", "b", "#cdata-section"));
  EXPECT_THAT(ChildrenOf(*DocumentElementOf("<r> </r>")), IsEmpty());
}

TEST(StandardNodes, FirstChildPassesBlanksAndTellsText) {
  struct {
    const char* xml;
    bool isNode, isText;
    const char* text;
  } const cases[] = {
      {"<r/>", false, false, ""},
      {"<r> \n</r>", false, false, ""},
      {"<r> x</r>", true, true, " x"},
      {"<r> <a/></r>", true, false, ""},
      {"<r><![CDATA[x]]></r>", true, false, ""},
  };
  for (const auto& test : cases) {
    const StandardChild child = FirstChildOf(*DocumentElementOf(test.xml));
    EXPECT_EQ(bool(child.node), test.isNode) << test.xml;
    EXPECT_EQ(child.isText, test.isText) << test.xml;
    EXPECT_EQ(child.text, test.text) << test.xml;
  }
}

TEST(StandardNodes, ListsThatCannotBeReadAreReportedAndEmpty) {
  struct {
    void (*spoil)(FakeNodeList&);
    const char* report;
  } const cases[] = {
      {[](FakeNodeList& list) { list.lengthResult = E_FAIL; },
       "BOOL IS FALSE: number of nodes not readable"},
      {[](FakeNodeList& list) { list.itemResult = E_FAIL; }, "BOOL IS FALSE: node cannot be read"},
      {[](FakeNodeList& list) { list.item = {}; }, "BOOL IS FALSE: node cannot be read"},
  };
  for (const auto& test : cases) {
    auto list = FakeNodeList::Make();
    list->item = FakeElement::Make();
    EXPECT_EQ(CopyNodes(*list).size(), 2u);
    test.spoil(*list);
    const DiagnosticsCapture capture;
    EXPECT_THAT(CopyNodes(*list), IsEmpty());
    EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(test.report + kUnit));
  }
}

TEST(StandardNodes, ChildrenThatCannotBeReadAreReportedAndNone) {
  auto element = FakeElement::Make();
  for (const HRESULT result : {E_FAIL, S_OK}) {
    element->childrenResult = result;  // with a null list
    const DiagnosticsCapture capture;
    EXPECT_THAT(ChildrenOf(*element), IsEmpty());
    EXPECT_THAT(CheckTexts(capture.errors),
                ElementsAre("BOOL IS FALSE: children cannot be read" + kUnit));
  }
}

TEST(StandardNodes, AttributeIsEmptyWhereThereIsNone) {
  const auto element = DocumentElementOf("<r name='n' empty=''>text</r>");
  EXPECT_EQ(AttributeOf(*element, "name"), "n");
  EXPECT_EQ(AttributeOf(*element, "empty"), "");
  EXPECT_EQ(AttributeOf(*element, "other"), "");
  EXPECT_EQ(AttributeOf(*FirstChildOf(*element).node, "name"), "");
}

}  // namespace
