#include "ModelTest.h"

namespace modeltest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kUnknownType = "Failed to find value type, str has been set but it's wrong!";

class Commands : public ModelTest {
 protected:
  Document document;
};

TEST_F(Commands, ANewDocumentHasThreeEmptyTops) {
  EXPECT_EQ(Describe(document), "top Enum\ntop TypeDef\ntop Root");
}

// Adding nodes

struct NodeRow {
  const char* command;
  int instance;
  int result;
  const char* path = nullptr;  // where to look afterwards; null: nothing has changed
  const char* expected = nullptr;
};
// Each on Root{plain P{a, b}, plain A0 ISO}.
constexpr NodeRow kNodeRows[] = {
    {"Root:Dimension:0", 0, 0, "Root",
     "top Root{plain P{plain a, plain b}, plain A0 ISO, plain Dimension}"},
    {"Root:Dimension", 0, 0, "Root.Dimension", "plain Dimension"},
    {"Root:Dimension", 1, 0, "Root.Dimension", "instance Dimension"},
    {"Root:Dimension", -3, 0, "Root.Dimension", "instance Dimension"},
    {"Root.:Dimension", 0, 0, "Root.Dimension", "plain Dimension"},
    {"Root.P:Formats:0", 1, 0, "Root.P", "plain P{plain a, plain b, instance Formats}"},
    {"Root.P:A1 ISO:1", 0, 0, "Root.P", "plain P{plain A1 ISO, plain a, plain b}"},
    {"Root.P:x:2,", 0, 0, "Root.P", "plain P{plain a, plain x, plain b}"},
    {"Root.P:x:-4", 0, 0, "Root.P", "plain P{plain a, plain b, plain x}"},
    {"Root.P:x: +1", 0, 0, "Root.P", "plain P{plain x, plain a, plain b}"},
    {"Root.A0 ISO:x", 0, 0, "Root.A0 ISO", "plain A0 ISO{plain x}"},
    {"Root.P", 0, 0, "Root.P", "plain P{plain a, plain b, plain }"},
    {"Root.P:", 0, 0, "Root.P", "plain P{plain a, plain b, plain }"},
    {"Enum:YesNo", 0, 0, "Enum", "top Enum{enum YesNo}"},
    {"Enum:YesNo:0", 1, 0, "Enum", "top Enum{enum YesNo}"},
    {"TypeDef:Formats", 0, 0, "TypeDef", "top TypeDef{typedef Formats}"},
    {"TypeDef:Formats:0,", 1, 0, "TypeDef", "top TypeDef{typedef Formats}"},
    // Only the exact tops make definitions.
    {"Enum.:YesNo", 0, 0, "Enum", "top Enum{plain YesNo}"},
    {"TypeDef.:T", 1, 0, "TypeDef", "top TypeDef{instance T}"},
    {"root:X", 0, 1},
    {"Styles:X", 0, 1},
    {" Root:X", 0, 1},
    {"", 0, 1},
    {"Root.Missing:X", 0, 1},
    {"Root.p:X", 0, 1},
    {"Root.Missing:X:abc", 0, 1},
    {"Root.P:X:abc", 0, 2},
    {"Root.P:X:,", 0, 2},
    {"Root.P:X:2147483648", 0, 2},
};

TEST_F(Commands, NodesAreAddedWhereThePathLeadsOrNothingIsChanged) {
  for (const NodeRow& row : kNodeRows) {
    SCOPED_TRACE(testing::Message() << row.command << " instance " << row.instance);
    Document fresh;
    for (const char* command : {"Root:P", "Root.P:a", "Root.P:b", "Root:A0 ISO"}) {
      ASSERT_EQ(fresh.AddNodeWithPath(command, 0), 0);
    }
    const std::string before = Describe(fresh);
    EXPECT_EQ(fresh.AddNodeWithPath(row.command, row.instance), row.result);
    if (row.path == nullptr) {
      EXPECT_EQ(Describe(fresh), before);
    } else {
      EXPECT_EQ(DescribeAt(fresh, row.path), row.expected);
    }
  }
}

TEST_F(Commands, APositionPastTheLastChildIsReportedAddsNothingAndIsDone) {
  document.AddNodeWithPath("Root:a", 0);
  EXPECT_EQ(document.AddNodeWithPath("Root:b:2", 0), 0);
  EXPECT_EQ(document.AddValueWithPath("Root:b:int:1:2", 1), 0);
  EXPECT_EQ(DescribeAt(document, "Root"), "top Root{plain a}");
  EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName), RefusedBy(kClassUnitName)));
}

// Adding values

struct ValueRow {
  const char* command;
  int occurrence;
  int result;
  const char* path = nullptr;
  const char* expected = nullptr;
};
// Each on Root{Dimension{a, b, c}, SheetFormat{instance Formats, plain Other}},
// Enum{Frame(f, g)}, TypeDef{Formats}.
constexpr ValueRow kValueRows[] = {
    {"Root.Dimension:X:int:1:2", 1, 0, "Root.Dimension",
     "plain Dimension{plain a, plain X(int =1), plain b, plain c}"},
    {"Root.Dimension:X:int:5:3,", 1, 0, "Root.Dimension",
     "plain Dimension{plain a, plain b, plain X(int =5), plain c}"},
    {"Root.Dimension:X:int:5:0,", 1, 0, "Root.Dimension",
     "plain Dimension{plain a, plain b, plain c, plain X(int =5)}"},
    {"Root.Dimension:X:string:", 1, 0, "Root.Dimension.X", "plain X(string =)"},
    {"Root.Dimension:X:string", 1, 0, "Root.Dimension.X", "plain X(string =)"},
    {"Root.Dimension:X:color:0 0 255:0", 1, 0, "Root.Dimension.X", "plain X(color =0 0 255)"},
    {"Root.Dimension:X:float:2.0:0", 1, 0, "Root.Dimension.X", "plain X(float =2.0)"},
    {"Root.Dimension:Ratio:float.m.0.5:2.0:0", 1, 0, "Root.Dimension.Ratio",
     "plain Ratio(float 0.5>=2.0)"},
    {"Root.Dimension:X:enum.YesNo:Yes:0", 1, 0, "Root.Dimension.X", "plain X(enum YesNo=Yes)"},
    {"Root:X:int:1", 1, 0, "Root.X", "plain X(int =1)"},
    {"Root.Dimension.a:X:string:A0 ISO:0", 1, 0, "Root.Dimension.a",
     "plain a{plain X(string =A0 ISO)}"},
    // Instances, definitions and the occurrence -1 take the value itself.
    {"Root.SheetFormat.Formats:Width:float.m.0.0:2.0", 1, 0, "Root.SheetFormat.Formats",
     "instance Formats(float Width>=2.0)"},
    {"Root.SheetFormat.Formats:Own:enum.YesNo:Yes", 1, 0, "Root.SheetFormat.Formats",
     "instance Formats(enum Own=Yes)"},
    {"Root.SheetFormat.Formats:Name:string:A0 ISO:0,", -1, 0, "Root.SheetFormat.Other",
     "plain Other(string Name=A0 ISO)"},
    {"Root.SheetFormat.Formats:Name:string:A0:0", 2, 0, "Root.SheetFormat.Other",
     "plain Other{plain Name(string =A0)}"},
    {"Root.SheetFormat.Formats:Name:string:A0:0", 0, 0, "Root.SheetFormat.Other",
     "plain Other{plain Name(string =A0)}"},
    {"Root.SheetFormat.Formats:Name:string:A0:0", -2, 0, "Root.SheetFormat.Other",
     "plain Other{plain Name(string =A0)}"},
    {"Root.Anything:Name:string:A0:0", -1, 0, "Root.SheetFormat",
     "plain SheetFormat(string Name=A0){instance Formats, plain Other}"},
    {"Root:Name:string:A0:0", -1, 0, "Root",
     "top Root(string Name=A0){plain Dimension{plain a, plain b, plain c}, "
     "plain SheetFormat{instance Formats, plain Other}}"},
    {"Enum.Frame::string:h:2,", 1, 0, "Enum.Frame", "enum Frame(string =f, string =h, string =g)"},
    {"Enum.Frame::string:h:0", 1, 0, "Enum.Frame", "enum Frame(string =f, string =g, string =h)"},
    {"TypeDef.Formats:Name:string:XXX:0", 1, 0, "TypeDef.Formats",
     "typedef Formats(string Name=XXX)"},
    {"TypeDef.Formats:Kind:enum.Kind:Land:0", 1, 0, "TypeDef.Formats",
     "typedef Formats(enum Kind=Land)"},
    {"Enum:X:int:1", 1, 0, "Enum", "top Enum(int X=1){enum Frame(string =f, string =g)}"},
    // Not found, and bad positions.
    {"root.Dimension:X:int:5", 1, 1},
    {"Styles:X:int:5", 1, 1},
    {"", 1, 1},
    {"Root.Missing:X:int:5:abc", 1, 1},
    {"Root.:X:int:5", 1, 1},
    {"Root.Missing.Formats:X:int:5", -1, 1},
    {"Root.Dimension:X:int:5:abc", 1, 2},
    {"Root.Dimension:X:int:5:x", -1, 2},
    {"TypeDef.Formats:X:int:5:,", 1, 2},
    // A value cannot hold a colon: what follows it is the position.
    {"Root.Dimension:X:string:a:b", 1, 2},
    {"Root.Dimension:X:string:a:0:b", 1, 0, "Root.Dimension.X", "plain X(string =a)"},
};

Document Prepared() {
  Document document;
  for (const char* command :
       {"Root:Dimension", "Root.Dimension:a", "Root.Dimension:b", "Root.Dimension:c",
        "Root:SheetFormat", "Enum:Frame", "TypeDef:Formats"}) {
    EXPECT_EQ(document.AddNodeWithPath(command, 0), 0);
  }
  EXPECT_EQ(document.AddNodeWithPath("Root.SheetFormat:Formats", 1), 0);
  EXPECT_EQ(document.AddNodeWithPath("Root.SheetFormat:Other", 0), 0);
  EXPECT_EQ(document.AddValueWithPath("Enum.Frame::string:f", 1), 0);
  EXPECT_EQ(document.AddValueWithPath("Enum.Frame::string:g", 1), 0);
  return document;
}

TEST_F(Commands, ValuesAreWrappedBelowRootAndHeldDirectlyElsewhereOrNothingIsChanged) {
  for (const ValueRow& row : kValueRows) {
    SCOPED_TRACE(testing::Message() << row.command << " occurrence " << row.occurrence);
    Document fresh = Prepared();
    const std::string before = Describe(fresh);
    EXPECT_EQ(fresh.AddValueWithPath(row.command, row.occurrence), row.result);
    if (row.path == nullptr) {
      EXPECT_EQ(Describe(fresh), before);
    } else {
      EXPECT_EQ(DescribeAt(fresh, row.path), row.expected);
    }
  }
}

TEST_F(Commands, AnUnknownTypeWordIsReportedAndGivesAString) {
  document.AddNodeWithPath("Root:Dimension", 0);
  EXPECT_EQ(document.AddValueWithPath("Root.Dimension:X:integer:5:0", 1), 0);
  EXPECT_EQ(DescribeAt(document, "Root.Dimension"), "plain Dimension{plain X(string =5)}");
  EXPECT_THAT(TakeReports(), ElementsAre(Raised(kUnknownType, kParserUnitName)));
  EXPECT_EQ(document.AddValueWithPath("Root.Dimension:Y:some.thing:5:0", 1), 0);
  EXPECT_EQ(DescribeAt(document, "Root.Dimension.Y"), "plain Y(string =5)");
  EXPECT_THAT(TakeReports(), IsEmpty());
  EXPECT_EQ(document.AddValueWithPath("Root.Missing:X:integer:5:0", 1), 1);
  EXPECT_THAT(TakeReports(), IsEmpty()) << "the target is looked for before the type is read";
}

TEST_F(Commands, AnUnknownTypeWordInADevelopmentStageRunGoesToTheAbendLog) {
  VyrSetDevelopmentStage(true);
  EXPECT_EQ(document.AddValueWithPath("Root:X:integer:5:0", 1), 0);
  EXPECT_EQ(document.GetValueWithPath("Root.X"), "5");
  EXPECT_THAT(CheckTexts(log.abends), ElementsAre(Raised(kUnknownType, kParserUnitName)));
  EXPECT_EQ(log.printed, log.abends);
  log.printed.clear();
  log.abends.clear();
}

TEST_F(Commands, InsertionBeforeTheThirdNeedsAThird) {
  document.AddNodeWithPath("Root:Dimension", 0);
  document.AddNodeWithPath("Root.Dimension:a", 0);
  document.AddNodeWithPath("Root.Dimension:b", 0);
  EXPECT_EQ(document.AddValueWithPath("Root.Dimension:X:int:5:3,", 1), 0);
  EXPECT_EQ(DescribeAt(document, "Root.Dimension"), "plain Dimension{plain a, plain b}");
  EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName)));
  document.AddNodeWithPath("Root.Dimension:c", 0);
  EXPECT_EQ(document.AddValueWithPath("Root.Dimension:X:int:5:3,", 1), 0);
  EXPECT_EQ(DescribeAt(document, "Root.Dimension"),
            "plain Dimension{plain a, plain b, plain X(int =5), plain c}");
}

TEST_F(Commands, OccurrencesBeyondTheChildrenFindNoTarget) {
  document.AddNodeWithPath("Root:a", 0);
  EXPECT_EQ(document.AddValueWithPath("Root.a:X:int:1", 2), 1);
  EXPECT_EQ(document.AddValueWithPath("Root.a.b:X:int:1", -1), 1);
  EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName), RefusedBy(kClassUnitName)));
}

// Adding to all occurrences

class AllOccurrences : public Commands {
 protected:
  int Add(const char* command, int occurrence = 1) {
    return document.AddValueWithPathForAllOccurence(command, occurrence);
  }
  void AddNodes(std::initializer_list<const char*> commands, int instance = 0) {
    for (const char* command : commands) {
      ASSERT_EQ(document.AddNodeWithPath(command, instance), 0) << command;
    }
  }
};

TEST_F(AllOccurrences, EverySheetStyleOfTheNameGetsAValueOfItsOwn) {
  AddNodes({"Root:Styles", "Root.Styles:Sheet", "Root.Styles:Sheet", "Root.Styles:Text",
            "Root.Styles:Sheet", "Root.Styles:Sheet"});
  EXPECT_EQ(Add("Root.Styles.Sheet:Scale:float:1.0:0,"), 0);
  const std::string sheet = "plain Sheet{plain Scale(float =1.0)}";
  EXPECT_EQ(DescribeAt(document, "Root.Styles"),
            "plain Styles{" + sheet + ", " + sheet + ", plain Text, " + sheet + ", " + sheet + "}");
  document.ChangeValueWithPath("Root.Styles.Sheet.Scale:2.0");
  EXPECT_THAT(DescribeAt(document, "Root.Styles"), testing::HasSubstr(sheet));
}

TEST_F(AllOccurrences, AreServedInAnInstanceAndWithMinusOneDirectly) {
  AddNodes({"Root:P"});
  AddNodes({"Root.P:N"}, 1);
  AddNodes({"Root.P:N"}, 0);
  EXPECT_EQ(Add("Root.P.N:X:float.m.0.5:2"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.P"),
            "plain P{instance N(float X>=2), plain N{plain X(float 0.5>=2)}}");
  EXPECT_EQ(Add("Root.P.N:Y:enum.E:3", -1), 0);
  EXPECT_EQ(DescribeAt(document, "Root.P"),
            "plain P{instance N(float X>=2, enum Y=3), "
            "plain N(enum Y=3){plain X(float 0.5>=2)}}");
}

TEST_F(AllOccurrences, OnlyRootWithADotIsAccepted) {
  AddNodes({"Enum:Frame", "TypeDef:T", "Root:P", "Root.P:N"});
  const std::string before = Describe(document);
  for (const char* command : {"Enum.Frame.X:A:int:1", "TypeDef.T:A:int:1", "root.P.N:A:int:1",
                              "Root:A:int:1", "Root", "", "P.N:A:int:1", "Root.P.Missing:A:int:1",
                              "Root.Missing.N:A:int:1", "Root.P:A:int:1", "Root.:A:int:1"}) {
    EXPECT_EQ(Add(command), 1) << command;
  }
  EXPECT_EQ(Describe(document), before);
}

TEST_F(AllOccurrences, ABadPositionIsTriedOnEachAndAddsNothing) {
  AddNodes({"Root:P", "Root.P:N", "Root.P:N"});
  EXPECT_EQ(Add("Root.P.N:A:int:1:abc"), 2);
  EXPECT_EQ(DescribeAt(document, "Root.P"), "plain P{plain N, plain N}");
  EXPECT_EQ(Add("Root.P.Missing:A:int:1:abc"), 1);
}

TEST_F(AllOccurrences, APositionThatOneOfThemLacksIsReportedForIt) {
  AddNodes({"Root:P", "Root.P:N", "Root.P:N", "Root.P.N:a"});
  EXPECT_EQ(Add("Root.P.N:A:int:1:1"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.P"), "plain P{plain N{plain A(int =1), plain a}, plain N}");
  EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName)));
}

TEST_F(AllOccurrences, AnUnknownTypeWordIsReportedOnce) {
  AddNodes({"Root:P", "Root.P:N", "Root.P:N"});
  EXPECT_EQ(Add("Root.P.N:A:integer:1"), 0);
  EXPECT_THAT(TakeReports(), ElementsAre(Raised(kUnknownType, kParserUnitName)));
}

// Positions of the dots are summed, each counted in the text after the one before: one character
// of the parent's path is lost for every dot in it.

TEST_F(AllOccurrences, WithTwoDotsTheParentIsOneCharacterShort) {
  AddNodes({"Root:A", "Root.A:Bcd", "Root.A.Bcd:N", "Root.A:Bc", "Root.A.Bc:N"});
  // "A.Bcd.N": 1 + 3 = 4 characters, "A.Bc".
  EXPECT_EQ(Add("Root.A.Bcd.N:X:int:1"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.A"),
            "plain A{plain Bcd{plain N}, plain Bc{plain N{plain X(int =1)}}}");
}

TEST_F(AllOccurrences, WithThreeDotsTheParentIsTwoCharactersShort) {
  AddNodes({"Root:A", "Root.A:B", "Root.A.B:Cde", "Root.A.B.Cde:N", "Root.A.B:C", "Root.A.B.C:N"});
  // "A.B.Cde.N": 1 + 1 + 3 = 5 characters, "A.B.C".
  EXPECT_EQ(Add("Root.A.B.Cde.N:X:int:1"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.A.B"),
            "plain B{plain Cde{plain N}, plain C{plain N{plain X(int =1)}}}");
}

TEST_F(AllOccurrences, WithOneLetterNamesTheParentEndsInADot) {
  AddNodes({"Root:A", "Root.A:B", "Root.A.B:N", "Root.A:C", "Root.A.C:N", "Root.A:"});
  AddNodes({"Root.A.:N"});
  // "A.B.N": 1 + 1 = 2 characters, "A.": the child without a name.
  EXPECT_EQ(Add("Root.A.B.N:X:int:1"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.A."), "plain {plain N{plain X(int =1)}}");
  // By place the last child of A, whatever the cut left of its name.
  EXPECT_EQ(Add("Root.A.B.N:Y:int:2", 3), 0);
  EXPECT_EQ(DescribeAt(document, "Root.A."), "plain {plain N{plain X(int =1), plain Y(int =2)}}");
}

TEST_F(AllOccurrences, PositionsAreCharactersAndNotBytes) {
  AddNodes({"Root:寸法", "Root.寸法:補助線", "Root.寸法.補助線:線", "Root.寸法:補助",
            "Root.寸法.補助:線"});
  // "寸法.補助線.線": 2 + 3 = 5 characters, "寸法.補助".
  EXPECT_EQ(Add("Root.寸法.補助線.線:X:int:1"), 0);
  EXPECT_EQ(DescribeAt(document, "Root.寸法"),
            "plain 寸法{plain 補助線{plain 線}, plain 補助{plain 線{plain X(int =1)}}}");
}

TEST_F(AllOccurrences, WithoutADotTheParentPathIsEmpty) {
  AddNodes({"Root:A", "Root:B", "Root.B:B", "Root.B:B"});
  EXPECT_EQ(Add("Root.B:X:int:1"), 1) << "no child of Root has an empty name";
  EXPECT_EQ(Add("Root.B:X:int:1", 2), 0) << "by place, the second child is the parent";
  EXPECT_EQ(DescribeAt(document, "Root.B"),
            "plain B{plain B{plain X(int =1)}, plain B{plain X(int =1)}}");
}

// Changing, deleting and reading

TEST_F(Commands, ChangingTakesTheOnlyValueOrTheNamedOneOrTheOneOfTheText) {
  struct Row {
    const char* command;
    int result;
    const char* expected;
  };
  constexpr const char* unchanged =
      "top Root{plain One(int =1), instance Two(string W=2, string H=3), "
      "plain Par{plain Kid}}";
  constexpr Row rows[] = {
      {"Root.One:0", 0,
       "top Root{plain One(int =0), instance Two(string W=2, string H=3), plain Par{plain Kid}}"},
      {"Root.One:", 0,
       "top Root{plain One(int =), instance Two(string W=2, string H=3), plain Par{plain Kid}}"},
      {"Root.One:a:b:c", 0,
       "top Root{plain One(int =a:b:c), instance Two(string W=2, string H=3), plain Par{plain "
       "Kid}}"},
      {"Root.Two:H:9:8", 0,
       "top Root{plain One(int =1), instance Two(string W=2, string H=9:8), plain Par{plain Kid}}"},
      {"Root.Two:H", 0, unchanged},
      // A value that is found by its present text.
      {"Root.Two.3:33", 0,
       "top Root{plain One(int =1), instance Two(string W=2, string H=33), plain Par{plain Kid}}"},
      {"Root.One.1:x:y", 0,
       "top Root{plain One(int =x:y), instance Two(string W=2, string H=3), plain Par{plain Kid}}"},
      {"Root.Two.H:33", 1, unchanged},
      {"Root.One", 1, unchanged},
      {"Root", 1, unchanged},
      {"", 1, unchanged},
      {"Root.Missing:0", 1, unchanged},
      {"Root.Par.Missing:0", 1, unchanged},
      {"root.One:0", 1, unchanged},
      {":0", 1, unchanged},
      {"Root.one:0", 1, unchanged},
  };
  for (const Row& row : rows) {
    Document fresh;
    fresh.AddValueWithPath("Root:One:int:1", 1);
    fresh.AddNodeWithPath("Root:Two", 1);
    fresh.AddValueWithPath("Root.Two:W:string:2", 1);
    fresh.AddValueWithPath("Root.Two:H:string:3", 1);
    fresh.AddNodeWithPath("Root:Par", 0);
    fresh.AddNodeWithPath("Root.Par:Kid", 0);
    EXPECT_EQ(fresh.ChangeValueWithPath(row.command), row.result) << row.command;
    EXPECT_EQ(DescribeAt(fresh, "Root"), row.expected) << row.command;
  }
}

TEST_F(Commands, ChangingANodeThatRefusesItIsDoneAndReported) {
  document.AddNodeWithPath("Root:Par", 0);
  document.AddNodeWithPath("Root.Par:Kid", 0);
  EXPECT_EQ(document.ChangeValueWithPath("Root.Par:x"), 0);
  EXPECT_EQ(document.ChangeValueWithPath("Root:x"), 0);
  EXPECT_THAT(TakeReports(), ElementsAre(RefusedBy(kClassUnitName), RefusedBy(kClassUnitName)));
  EXPECT_EQ(document.ChangeValueWithPath("Root.Par.Kid:Name:x"), 0);
  EXPECT_THAT(TakeReports(), ElementsAre(NullPointer(kClassUnitName)));
}

TEST_F(Commands, ALiteralIsRenamedByItsText) {
  document.AddNodeWithPath("Enum:YesNo", 0);
  document.AddValueWithPath("Enum.YesNo::string:Yes", 1);
  document.AddValueWithPath("Enum.YesNo::string:No", 1);
  EXPECT_EQ(document.ChangeValueWithPath("Enum.YesNo.No:Never"), 0);
  EXPECT_EQ(DescribeAt(document, "Enum.YesNo"), "enum YesNo(string =Yes, string =Never)");
}

TEST_F(Commands, DeletingRemovesTheFirstThatThePathNames) {
  constexpr std::tuple<const char*, int, const char*> rows[] = {
      {"Root.P", 0, "top Root{plain Q}"},
      {"Root.P.a", 0, "top Root{plain P{plain a, plain b(string n=t)}, plain Q}"},
      {"Root.P.b.n", 0, "top Root{plain P{plain a, plain a, plain b}, plain Q}"},
      {"Root.P.b.t", 0, "top Root{plain P{plain a, plain a, plain b}, plain Q}"},
      {"Root.Missing", 1, ""},
      {"Root.P.Missing", 1, ""},
      {"Root", 1, ""},
      {"Root.", 1, ""},
      {"", 1, ""},
      {"root.P", 1, ""},
      {"P", 1, ""},
      {"Root.P:", 1, ""},
      {"Enum.P", 1, ""}};
  for (const auto& [path, result, expected] : rows) {
    Document fresh;
    for (const char* command : {"Root:P", "Root.P:a", "Root.P:a", "Root.P:b", "Root:Q"}) {
      fresh.AddNodeWithPath(command, 0);
    }
    const Node_var b(fresh.GetNodeWithPath("Root.P.b"));
    AddString(*b, "n", "t");
    const std::string before = DescribeAt(fresh, "Root");
    EXPECT_EQ(fresh.DeleteNodeWithPath(path), result) << path;
    EXPECT_EQ(DescribeAt(fresh, "Root"), result == 0 ? expected : before) << path;
  }
}

TEST_F(Commands, ReadingGivesTheFirstValueOfANode) {
  document.AddNodeWithPath("Root:P", 0);
  document.AddValueWithPath("Root.P:X:int:5", 1);
  document.AddNodeWithPath("Root.P:I", 1);
  document.AddValueWithPath("Root.P.I:a:string:first", 1);
  document.AddValueWithPath("Root.P.I:b:string:second", 1);
  document.AddNodeWithPath("Enum:E", 0);
  document.AddValueWithPath("Enum.E::string:Yes", 1);
  constexpr std::pair<const char*, const char*> rows[] = {
      {"Root.P.X", "5"}, {"Root.P.I", "first"}, {"Enum.E", "Yes"}, {"Root.P", ""}, {"Root", ""},
      {"Enum", ""},      {"TypeDef", ""},       {"Root.", ""},     {"", ""},       {"Root.Q", ""},
      {"root.P.X", ""},  {"Root.P.x", ""},      {"Root.P.X.5", ""}};
  for (const auto& [path, text] : rows) EXPECT_EQ(document.GetValueWithPath(path), text) << path;
}

TEST_F(Commands, TheTopsAreFoundByTheirOwnNamesOnly) {
  for (const char* top : {"Root", "Enum", "TypeDef"}) {
    const Node_var node(document.GetNodeWithPath(top));
    ASSERT_TRUE(node) << top;
    EXPECT_EQ(node->GetNodeName(), top);
    EXPECT_EQ(node->GetNodeType(), Node::NodeTop);
    EXPECT_EQ(Node_var(document.GetNodeWithPath(std::string(top) + ".")).Get(), node.Get());
  }
  for (const char* path :
       {"root", "ROOT", "Typedef", "enum", "", "Styles", "Root.Styles", "Root "}) {
    EXPECT_EQ(document.GetNodeWithPath(path), nullptr) << path;
  }
}

TEST_F(Commands, CopiesShareTheTrees) {
  Document copy(document);
  Document assigned;
  assigned.AddNodeWithPath("Root:Lost", 0);
  assigned = document;
  copy.AddNodeWithPath("Root:A", 0);
  assigned.AddValueWithPath("Root.A:X:int:1", 1);
  document.ChangeValueWithPath("Root.A.X:2");
  for (Document* each : {&document, &copy, &assigned}) {
    EXPECT_EQ(DescribeAt(*each, "Root"), "top Root{plain A{plain X(int =2)}}");
  }
}

// The document's check

TEST_F(Commands, CheckOfUndefinedLiteralsReportsALineEach) {
  document.AddNodeWithPath("Enum:YesNo", 0);
  document.AddValueWithPath("Enum.YesNo::string:Yes", 1);
  document.AddNodeWithPath("Root:Dimension", 0);
  EXPECT_EQ(document.Check(), 1);
  document.AddValueWithPath("Root.Dimension:Blanking:enum.YesNo:Yes", 1);
  EXPECT_EQ(document.Check(), 1);
  document.ChangeValueWithPath("Root.Dimension.Blanking:Maybe");
  EXPECT_EQ(document.Check(), 0);
  EXPECT_THAT(
      TakeTraces(),
      ElementsAre("Enum undefined: Root.Root.Dimension.Blanking.Maybe with enum \"YesNo\"\n"));
}

TEST_F(Commands, AFieldThatIsNotNamedLikeItsEnumerationFailsTheCheck) {
  document.AddNodeWithPath("Enum:YesNo", 0);
  document.AddValueWithPath("Enum.YesNo::string:Yes", 1);
  document.AddNodeWithPath("Root:Type", 1);
  document.AddValueWithPath("Root.Type:YesNo:enum.YesNo:Yes", 1);
  EXPECT_EQ(document.Check(), 1);
  document.AddValueWithPath("Root.Type:Blanking:enum.YesNo:Yes", 1);
  EXPECT_EQ(document.Check(), 0);
  EXPECT_THAT(TakeTraces(),
              ElementsAre("Enum undefined: Root.Root.Type.Yes with enum \"Blanking\"\n"));
}

TEST_F(Commands, ATypeDefinitionsFieldIsLookedUpUnderItsOwnName) {
  document.AddNodeWithPath("Enum:YesNo", 0);
  document.AddValueWithPath("Enum.YesNo::string:Yes", 1);
  document.AddNodeWithPath("TypeDef:T", 0);
  document.AddValueWithPath("TypeDef.T:YesNo:enum.YesNo:Yes", 1);
  document.AddValueWithPath("TypeDef.T:Blanking:enum.YesNo:Yes", 1);
  // The definition among the parameters, where a standard may hold one as well.
  const Node_var typeDef(document.GetNodeWithPath("TypeDef.T"));
  const Node_var root(document.GetNodeWithPath("Root"));
  root->AddNode(typeDef.Get(), -1);
  EXPECT_EQ(document.Check(), 0);
  EXPECT_THAT(TakeTraces(),
              ElementsAre("Enum undefined: Root.Root.T.Yes with enum \"Blanking\"\n"));
}

}  // namespace
}  // namespace modeltest
