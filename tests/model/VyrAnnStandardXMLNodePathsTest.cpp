#include <climits>

#include "ModelTest.h"

namespace modeltest {
namespace {

using testing::ElementsAre;

class NodePaths : public ModelTest {
 protected:
  /// Root{Sheet{Name, Formats[first], Formats[second]}, A0 ISO{X}}, each a node with its number.
  NodePaths() : root(NewNode("Root", Node::NodeTop)) {
    const Node_var sheet = AddChild(*root, "Sheet");
    const Node_var paper = AddChild(*root, "A0 ISO");
    nodes = {root,
             sheet,
             paper,
             AddChild(*sheet, "Name"),
             AddChild(*sheet, "Formats"),
             AddChild(*sheet, "Formats"),
             AddChild(*paper, "X")};
  }
  enum Place { Root, Sheet, Paper, Name, FirstFormats, SecondFormats, X, Nothing };

  const Node* At(Place place) const { return place == Nothing ? nullptr : nodes[place].Get(); }

  Node_var root;
  std::vector<Node_var> nodes;
};

TEST_F(NodePaths, EverySegmentIsMatchedByNameWithTheOccurrenceOne) {
  constexpr std::pair<const char*, Place> rows[] = {{"Sheet", Sheet},
                                                    {"Sheet.Name", Name},
                                                    {"Sheet.Formats", FirstFormats},
                                                    {"A0 ISO", Paper},
                                                    {"A0 ISO.X", X},
                                                    {"sheet", Nothing},
                                                    {"Sheet.formats", Nothing},
                                                    {"Sheet.", Nothing},
                                                    {".Sheet", Nothing},
                                                    {"", Nothing},
                                                    {"Sheet..Name", Nothing},
                                                    {"Missing.Name", Nothing},
                                                    {"A0", Nothing},
                                                    {"A0 ISO .X", Nothing},
                                                    {"Sheet.Name.Deeper", Nothing}};
  for (const auto& [path, place] : rows) {
    const Node_var found(root->GetNodeWithPath(path, 1));
    EXPECT_EQ(found.Get(), At(place)) << path;
  }
}

TEST_F(NodePaths, AnotherOccurrenceTakesTheLastSegmentByPlaceWhateverItsName) {
  struct Row {
    const char* path;
    int occurrence;
    Place place;
  };
  constexpr Row rows[] = {
      {"Sheet.Formats", 3, SecondFormats},
      {"Sheet.Formats", 2, FirstFormats},
      {"Sheet.Formats", -1, SecondFormats},
      {"Sheet.Formats", 0, SecondFormats},
      {"Sheet.Formats", INT_MIN, SecondFormats},
      {"Sheet.Anything", 2, FirstFormats},
      {"Sheet.", 0, SecondFormats},
      {"Name", 2, Paper},
      {"", -1, Paper},
  };
  for (const Row& row : rows) {
    const Node_var found(root->GetNodeWithPath(row.path, row.occurrence));
    EXPECT_EQ(found.Get(), At(row.place)) << row.path << " " << row.occurrence;
  }
  // Called on the node itself, as the last step of every longer path.
  EXPECT_EQ(Node_var(nodes[Sheet]->GetNodeWithPath("Formats", 3)).Get(), At(SecondFormats));
  EXPECT_EQ(Node_var(nodes[Sheet]->GetNodeWithPath("Formats", 1)).Get(), At(FirstFormats));
  EXPECT_EQ(Node_var(nodes[Sheet]->GetNodeWithPath("Formats", -1)).Get(), At(SecondFormats));
}

TEST_F(NodePaths, SegmentsBeforeTheLastAreMatchedByNameWhateverTheOccurrence) {
  EXPECT_EQ(root->GetNodeWithPath("Missing.Formats", -1), nullptr);
  EXPECT_EQ(root->GetNodeWithPath("Missing.Formats", 2), nullptr);
  EXPECT_EQ(Node_var(root->GetNodeWithPath("Sheet.Formats.Z", 1)).Get(), nullptr);
}

TEST_F(NodePaths, APlaceThatDoesNotExistGivesNullAndAReport) {
  EXPECT_EQ(root->GetNodeWithPath("Sheet.Formats", 4), nullptr);
  EXPECT_EQ(root->GetNodeWithPath("Sheet.Formats", INT_MAX), nullptr);
  EXPECT_EQ(root->GetNodeWithPath("Sheet.Name.Child", -1), nullptr);
  EXPECT_EQ(root->GetNodeWithPath("Sheet.Name.Child", 0), nullptr);
  EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName), RefusedBy(kClassUnitName),
                                         RefusedBy(kClassUnitName), RefusedBy(kClassUnitName)));
}

TEST_F(NodePaths, FoundNodesComeWithAReferenceForTheCaller) {
  const Node_var found(root->GetNodeWithPath("A0 ISO.X", 1));
  EXPECT_EQ(CountReferences(*found), 3u) << "the list's, the fixture's and the caller's";
}

TEST_F(NodePaths, AValueIsFoundByItsTextAndNotByItsName) {
  const Node_var enums = NewNode("Enum", Node::NodeTop);
  const Node_var yesNo = AddChild(*enums, "YesNo", Node::NodeEnum);
  AddString(*yesNo, "Yes", "No");
  AddString(*yesNo, "", "Maybe so");
  AddString(*yesNo, "later", "No");
  EXPECT_EQ(Value_var(enums->GetValueWithPath("YesNo.No")).Get(), yesNo->GetValues()[0].Get());
  EXPECT_EQ(Value_var(enums->GetValueWithPath("YesNo.Maybe so")).Get(),
            yesNo->GetValues()[1].Get());
  EXPECT_EQ(Value_var(yesNo->GetValueWithPath("No")).Get(), yesNo->GetValues()[0].Get());
  for (const char* path : {"YesNo.Yes", "YesNo", "Missing.No", "YesNo.no", "YesNo.", "", "No"}) {
    EXPECT_EQ(enums->GetValueWithPath(path), nullptr) << path;
  }
  const Value_var found(yesNo->GetValueWithPath("No"));
  EXPECT_EQ(CountReferences(*found), 2u);
}

TEST_F(NodePaths, DeletionTriesChildNamesThenValueNamesThenValueTexts) {
  const Node_var parent = AddChild(*root, "P");
  const Node_var node = AddChild(*parent, "N");
  AddString(*node, "other", "X");
  AddString(*node, "X", "1");
  AddString(*node, "X", "2");
  AddChild(*node, "X");
  constexpr const char* steps[] = {
      "plain N(string other=X, string X=1, string X=2)",
      "plain N(string other=X, string X=2)",
      "plain N(string other=X)",
      "plain N",
  };
  for (const char* step : steps) {
    EXPECT_EQ(root->DeleteNodeWithPath("P.N.X"), 0);
    EXPECT_EQ(Describe(*node), step);
  }
  EXPECT_EQ(root->DeleteNodeWithPath("P.N.X"), 1);
}

TEST_F(NodePaths, DeletionTakesTheFirstOfEqualNames) {
  EXPECT_EQ(root->DeleteNodeWithPath("Sheet.Formats"), 0);
  ASSERT_EQ(nodes[Sheet]->GetNumOfNode(), 2);
  EXPECT_EQ(nodes[Sheet]->GetNodes()[1].Get(), At(SecondFormats));
  EXPECT_EQ(CountReferences(*nodes[FirstFormats]), 1u) << "the list gave its reference back";
}

TEST_F(NodePaths, DeletionOfWhatIsNotThereChangesNothing) {
  const std::string before = Describe(*root);
  for (const char* path : {"", "Missing", "Missing.Name", "Sheet.Missing", "Sheet.", "sheet",
                           "Sheet.Name.Deeper", ".Sheet", "A0"}) {
    EXPECT_EQ(root->DeleteNodeWithPath(path), 1) << path;
  }
  EXPECT_EQ(Describe(*root), before);
}

TEST_F(NodePaths, ADeletedTreeLivesAsLongAsItIsHeld) {
  const Node_var paper = nodes[Paper];
  EXPECT_EQ(root->DeleteNodeWithPath("A0 ISO"), 0);
  EXPECT_EQ(Describe(*paper), "plain A0 ISO{plain X}");
  EXPECT_EQ(Describe(*root), "top Root{plain Sheet{plain Name, plain Formats, plain Formats}}");
}

TEST_F(NodePaths, OnlyTheFirstDotCountsAtEachLevelSoNoNameWithADotIsFound) {
  AddChild(*root, "a.b");
  EXPECT_EQ(root->GetNodeWithPath("a.b", 1), nullptr);
  EXPECT_EQ(root->DeleteNodeWithPath("a.b"), 1);
  EXPECT_TRUE(Node_var(root->GetNodeByName("a.b")));
}

}  // namespace
}  // namespace modeltest
