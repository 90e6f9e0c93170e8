#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DiagnosticsCapture.h"
#include "FakeDOM.h"
#include "VyrDftXMLNodeID.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

const auto kIdIsNull = ": ID is null [VyrDftXMLNodeID]";

void ExpectNull(const VyrDftXMLNodeID& id) {
  EXPECT_EQ(id.IsNULL(), 1);
  EXPECT_EQ(id.ToString(), "<>");
}

TEST(NodeID, DefaultIsNull) {
  const DiagnosticsCapture capture;
  ExpectNull(VyrDftXMLNodeID());
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(NodeID, HoldsNamespaceAndLocalName) {
  const DiagnosticsCapture capture;
  for (const char* uri : {"uri", ""}) {
    const VyrDftXMLNodeID id(uri, "Dimension");
    EXPECT_EQ(id.IsNULL(), 0);
    EXPECT_EQ(id.GetNamespaceURI(), uri);
    EXPECT_EQ(id.GetLocalName(), "Dimension");
  }
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(NodeID, EmptyLocalNameIsReportedAndGivesTheNullIdentifier) {
  DiagnosticsCapture capture;
  const VyrDftXMLNodeID id("uri", "");
  EXPECT_THAT(CheckTexts(capture.errors),
              ElementsAre(": Local name can't be empty [VyrDftXMLNodeID]"));
  ExpectNull(id);
  EXPECT_TRUE(id == VyrDftXMLNodeID());
  EXPECT_EQ(id.GetNamespaceURI(), "");
}

TEST(NodeID, EmptyLocalNameGoesToTheAbendLogInTheDevelopmentStage) {
  const DiagnosticsCapture capture(true);
  const VyrDftXMLNodeID id("uri", "");
  EXPECT_THAT(CheckTexts(capture.abends),
              ElementsAre(": Local name can't be empty [VyrDftXMLNodeID]"));
  EXPECT_EQ(capture.printed, capture.abends);
  EXPECT_THAT(capture.errors, IsEmpty());
  ExpectNull(id);
}

TEST(NodeID, PartsOfANullIdentifierAreEmptyAndReported) {
  const DiagnosticsCapture capture;
  EXPECT_EQ(VyrDftXMLNodeID().GetNamespaceURI(), "");
  EXPECT_EQ(VyrDftXMLNodeID().GetLocalName(), "");
  EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(kIdIsNull, kIdIsNull));
}

TEST(NodeID, TextIsTheNamespaceInAnglesAndTheName) {
  EXPECT_EQ(VyrDftXMLNodeID("u", "n").ToString(), "<u>n");
  EXPECT_EQ(VyrDftXMLNodeID("uri", "Dimension").ToString(), "<uri>Dimension");
  EXPECT_EQ(VyrDftXMLNodeID("", "n").ToString(), "<>n");
}

TEST(NodeID, EqualityComparesNullnessThenNameThenNamespace) {
  const VyrDftXMLNodeID null;
  const VyrDftXMLNodeID id("u", "n");
  struct {
    VyrDftXMLNodeID a;
    VyrDftXMLNodeID b;
    bool equal;
  } const cases[] = {
      {null, null, true},
      {null, id, false},
      {id, null, false},
      {id, VyrDftXMLNodeID("u", "n"), true},
      {id, VyrDftXMLNodeID("u", "m"), false},
      {id, VyrDftXMLNodeID("v", "n"), false},
      {id, VyrDftXMLNodeID("u", "N"), false},
      {id, VyrDftXMLNodeID("n", "u"), false},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(test.a == test.b, test.equal) << test.a.ToString().CString();
    EXPECT_EQ(test.a != test.b, !test.equal) << test.a.ToString().CString();
  }
}

TEST(NodeID, CopyIsMemberWise) {
  const VyrDftXMLNodeID id("u", "n");
  VyrDftXMLNodeID assigned;
  assigned = id;
  EXPECT_TRUE(assigned == id);
  EXPECT_TRUE(VyrDftXMLNodeID(id) == id);
}

TEST(NodeIDFromElement, TakesNamespaceAndLocalName) {
  const VyrDftXMLNodeID id =
      VyrDftXMLNodeID::BuildFromElement(DocumentElementOf("<p:node xmlns:p='uri'/>"));
  EXPECT_TRUE(id == VyrDftXMLNodeID("uri", "node"));
}

TEST(NodeIDFromElement, WithoutANamespaceTheTagNameIdentifies) {
  EXPECT_TRUE(VyrDftXMLNodeID::BuildFromElement(DocumentElementOf("<node/>")) ==
              VyrDftXMLNodeID("", "node"));
  auto element = FakeElement::Make();
  element->tagName.text = "p:tag";
  EXPECT_TRUE(VyrDftXMLNodeID::BuildFromElement(element) == VyrDftXMLNodeID("", "p:tag"));
}

TEST(NodeIDFromElement, LocalNameWinsOverTheTagName) {
  auto element = FakeElement::Make();
  element->localName.text = "local";
  element->tagName.text = "p:tag";
  EXPECT_TRUE(VyrDftXMLNodeID::BuildFromElement(element) == VyrDftXMLNodeID("", "local"));
}

TEST(NodeIDFromElement, NullElementIsReported) {
  for (const bool development : {false, true}) {
    const DiagnosticsCapture capture(development);
    ExpectNull(VyrDftXMLNodeID::BuildFromElement({}));
    EXPECT_THAT(CheckTexts(development ? capture.abends : capture.errors),
                ElementsAre("ON POINTER : NULL handler [VyrDftXMLNodeID]"));
  }
}

TEST(NodeIDFromElement, NamesThatCannotBeReadAreReportedAndGiveTheNullIdentifier) {
  const FakeText fails{E_FAIL, "x"};
  struct {
    const char* what;
    FakeText localName, namespaceURI, tagName;
  } const cases[] = {
      {"local name fails", fails, {S_OK, "u"}, {S_OK, "t"}},
      {"namespace fails", {S_OK, "n"}, fails, {S_OK, "t"}},
      {"namespace without a local name", {}, {S_OK, "u"}, {S_OK, "t"}},
      {"tag name fails", {}, {}, fails},
      {"no name at all", {}, {}, {}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    auto element = FakeElement::Make();
    element->localName = test.localName;
    element->namespaceURI = test.namespaceURI;
    element->tagName = test.tagName;
    const DiagnosticsCapture capture;
    ExpectNull(VyrDftXMLNodeID::BuildFromElement(element));
    EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(EndsWith("[VyrDftXMLNodeID]")));
  }
}

}  // namespace
