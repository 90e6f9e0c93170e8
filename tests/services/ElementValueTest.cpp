#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "DiagnosticsCapture.h"
#include "ElementValue.h"
#include "FakeDOM.h"

namespace {

using testing::ElementsAre;

TEST(ElementValue, IsTheFirstTextOfTheElementOrOfItsFirstElement) {
  struct {
    const char* xml;
    HRESULT result;
    const char* text;
    const char* type;
  } const cases[] = {
      {"<a>5</a>", S_OK, "5", "a"},
      {"<p:a xmlns:p='u'> 5 </p:a>", S_OK, " 5 ", "p:a"},
      {"<a>\n <b>5</b>\n <c>6</c></a>", S_OK, "5", "b"},
      {"<a><b>\t5</b></a>", S_OK, "\t5", "b"},
      {"<a>5<b>6</b></a>", S_OK, "5", "a"},
      {"<a>\u00A0</a>", S_OK, "\u00A0", "a"},
      {"<a/>", S_FALSE, "", ""},
      {"<a> \t\r\n</a>", S_FALSE, "", ""},
      {"<a><b/></a>", S_FALSE, "", ""},
      {"<a><b> </b><c>6</c></a>", S_FALSE, "", ""},
      {"<a><![CDATA[5]]></a>", S_FALSE, "", ""},
      {"<a><!--5--></a>", S_FALSE, "", ""},
      {"<a><b><c>5</c></b></a>", E_UNEXPECTED, "", ""},
      {"<a><b><![CDATA[5]]></b></a>", E_UNEXPECTED, "", ""},
  };
  for (const auto& test : cases) {
    const DiagnosticsCapture capture;
    ElementValue value;
    EXPECT_EQ(ReadElementValue(*DocumentElementOf(test.xml), value), test.result) << test.xml;
    EXPECT_EQ(value.text, test.text) << test.xml;
    EXPECT_EQ(value.typeName, test.type) << test.xml;
    EXPECT_EQ(capture.errors.size(), test.result == E_UNEXPECTED ? 1u : 0u) << test.xml;
  }
}

TEST(ElementValue, ChildrenOfAHostThatCannotBeReadAreReportedAndCountAsNone) {
  auto element = FakeElement::Make();
  element->childrenResult = E_FAIL;
  const DiagnosticsCapture capture;
  ElementValue value;
  EXPECT_EQ(ReadElementValue(*element, value), S_FALSE);
  EXPECT_EQ(capture.errors.size(), 1u);
}

TEST(ElementValue, ColourWithABadComponentAddsNone) {
  const DiagnosticsCapture capture;
  std::vector<int> components = {7};
  EXPECT_EQ(AppendAs({"1 two 3", "std:colorval"}, components), E_UNEXPECTED);
  EXPECT_THAT(components, ElementsAre(7));
}

TEST(ElementValue, TextMayBeEmptyInADocumentOfAHostAndIsNoNumber) {
  const DiagnosticsCapture capture;
  int number = 77;
  double real = 7.5;
  std::vector<int> components = {1};
  EXPECT_EQ(ReadAs({"", "std:intval"}, number), E_UNEXPECTED);
  EXPECT_EQ(ReadAs({"", "std:floatval"}, real), E_UNEXPECTED);
  EXPECT_EQ(AppendAs({"", "std:colorval"}, components), E_UNEXPECTED);
  EXPECT_EQ(number, 77);
  EXPECT_EQ(real, 7.5);
  EXPECT_THAT(components, ElementsAre(1));
  EXPECT_EQ(capture.errors.size(), 3u);
  VyrUnicodeString text = "before";
  EXPECT_EQ(ReadAs({"", "std:strval"}, text), S_OK);
  EXPECT_EQ(text, "");
}

TEST(ElementValue, IntegersAreReadAsFarAsTheyGo) {
  struct {
    const char* text;
    int number;
  } const cases[] = {
      {"0", 0},
      {" \t\n12", 12},
      {"+3", 3},
      {"-0", 0},
      {"12abc", 12},
      {"3.9", 3},
      {"2147483647", 2147483647},
      {"-2147483648", -2147483647 - 1},
      {"007", 7},
  };
  for (const auto& test : cases) {
    int number = 77;
    EXPECT_EQ(ReadAs({test.text, "std:intval"}, number), S_OK) << test.text;
    EXPECT_EQ(number, test.number) << test.text;
  }
}

}  // namespace
