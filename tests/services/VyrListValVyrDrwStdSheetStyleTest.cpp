#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>

#include "DiagnosticsCapture.h"
#include "VyrListValVyrDrwStdSheetStyle.h"

namespace {

using testing::ElementsAre;
using List = VyrListValVyrDrwStdSheetStyle;

VyrDrwStdSheetStyle Style(const char* name, double scale = 1) {
  VyrDrwStdSheetStyle style;
  style.name = name;
  style.scale = scale;
  return style;
}

List ListOf(std::initializer_list<const char*> names) {
  List list;
  for (const char* name : names) list.Append(Style(name));
  return list;
}

TEST(ListOfSheetStyles, KeepsTheOrderOfAppendingFromPosition1) {
  List list;
  EXPECT_EQ(list.Size(), 0);
  list.Append(Style("B"));
  list.Append(Style("A"));
  EXPECT_EQ(list.Size(), 2);
  EXPECT_EQ(list[1].name, "B");
  EXPECT_EQ(list[2].name, "A");
  const List& readOnly = list;
  EXPECT_EQ(readOnly[2].name, "A");
  list[1].name = "C";
  EXPECT_EQ(readOnly[1].name, "C");
}

TEST(ListOfSheetStyles, TakesAStyleOfItsOwn) {
  List list = ListOf({"A"});
  for (int i = 0; i < 10; ++i) list.Append(list[1]);
  EXPECT_EQ(list, ListOf({"A", "A", "A", "A", "A", "A", "A", "A", "A", "A", "A"}));
}

TEST(ListOfSheetStyles, CapacityIsNoSize) {
  for (const int capacity : {INT_MIN, -1, 0, 1, 100}) {
    List list(capacity);
    EXPECT_EQ(list.Size(), 0) << capacity;
    list.Append(Style("A"));
    EXPECT_EQ(list, ListOf({"A"})) << capacity;
  }
}

TEST(ListOfSheetStyles, CopyIsIndependent) {
  List list = ListOf({"A", "B"});
  const List copy(list);
  List assigned = ListOf({"X"});
  assigned = list;
  list[1].name = "changed";
  list.Append(Style("C"));
  EXPECT_EQ(copy, ListOf({"A", "B"}));
  EXPECT_EQ(assigned, ListOf({"A", "B"}));
}

TEST(ListOfSheetStyles, RemoveAllLeavesAnEmptyListThatCanBeFilledAgain) {
  for (const List::MemoryHandling handling : {List::FreeMemory, List::KeepMemory}) {
    List list = ListOf({"A", "B"});
    list.RemoveAll(handling);
    EXPECT_EQ(list.Size(), 0);
    list.Append(Style("C"));
    EXPECT_EQ(list, ListOf({"C"}));
  }
}

TEST(ListOfSheetStyles, KeptMemoryIsUsedAgain) {
  List list = ListOf({"A"});
  const VyrDrwStdSheetStyle* const place = &list[1];
  list.RemoveAll(List::KeepMemory);
  list.Append(Style("B"));
  EXPECT_EQ(&list[1], place);
}

TEST(ListOfSheetStyles, EqualInSizeAndOrderOfNames) {
  EXPECT_TRUE(List() == List());
  EXPECT_TRUE(ListOf({"A", "B"}) == ListOf({"A", "B"}));
  EXPECT_FALSE(ListOf({"A", "B"}) == ListOf({"B", "A"}));
  EXPECT_FALSE(ListOf({"A"}) == ListOf({"A", "B"}));
  EXPECT_TRUE(ListOf({"A"}) != List());
  List scaled;
  scaled.Append(Style("A", 5));
  EXPECT_TRUE(scaled == ListOf({"A"}));
}

TEST(ListOfSheetStyles, PositionOutsideIsReportedAndAnsweredWithDefaults) {
  DiagnosticsCapture log;
  List list = ListOf({"A"});
  const List& readOnly = list;
  for (const int position : {INT_MIN, -1, 0, 2, INT_MAX}) {
    list[position].name = "written by a caller that is wrong";
    EXPECT_EQ(readOnly[position].name, "") << position;
    EXPECT_EQ(list[position].scale, 1) << position;
    EXPECT_EQ(CheckTexts(log.errors),
              std::vector<std::string>(3,
                                       "BOOL IS FALSE: no sheet style at this position "
                                       "[VyrListValVyrDrwStdSheetStyle]"));
    log.Clear();
  }
  EXPECT_EQ(list, ListOf({"A"}));
}

}  // namespace
