#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "UpgradeRun.h"

// What no file that can be read leads to is shown here, what the others are told by the tool's
// tests of the same name.

namespace {

using Omission = VyrDrwUpgradeOmission;

testing::Matcher<Omission> Is(Omission::Fault fault, Omission::Work work, const char* place,
                              const char* name, const char* value = "") {
  return testing::Eq(Omission{fault, work, place, name, value});
}

}  // namespace

void PrintTo(const VyrDrwUpgradeOmission& omission, std::ostream* out) {
  *out << omission.fault << "/" << omission.work << " " << omission.place.CString() << " "
       << omission.name.CString() << " " << omission.value.CString();
}

TEST(UpgradeOmissions, AVersionThatIsNotRaisedIsOne) {
  struct Case {
    const char* command;
    Omission::Fault fault;
    const char* value;
  };
  for (const Case& made :
       {Case{"", Omission::Missing, ""}, Case{"Root:Version:string:120:0", Omission::OtherType, ""},
        Case{"Root:Version:int:110:0", Omission::OtherValue, "110"}}) {
    UpgradeRun run("ISO", 120);
    run.Delete("Root.Version");
    if (*made.command != 0) run.AddValue(made.command);
    EXPECT_EQ(run.Step(130).size(), 1u);
    EXPECT_THAT(
        run.Standard().GetUpgradeOmissions(),
        testing::ElementsAre(Is(made.fault, Omission::VersionKept, "Root", "Version", made.value)));
  }
  UpgradeRun run("ISO", 120);
  run.AddNode("Root.Version:Extra:0");
  run.Step(130);
  EXPECT_THAT(
      run.Standard().GetUpgradeOmissions(),
      testing::ElementsAre(Is(Omission::OtherShape, Omission::VersionKept, "Root", "Version")));
}

TEST(UpgradeOmissions, AnUnknownParentIsToldOnceForEachThingThatDependsOnIt) {
  UpgradeRun run("ISO", 120);
  run.SetParent("DIN");
  run.Step(130);
  EXPECT_THAT(
      run.Standard().GetUpgradeOmissions(),
      testing::ElementsAre(Is(Omission::UnknownParent, Omission::SymbolsLeftOut, "", "", "DIN")));
}

TEST(UpgradeOmissions, AnUpgradeThatNothingIsWrongWithHasNone) {
  for (const char* parent : kParents) {
    EXPECT_TRUE(
        UpgradeRun(Origin{parent, true}, kCurrentVersion).Standard().GetUpgradeOmissions().empty());
    UpgradeRun run(parent, kCurrentVersion);
    EXPECT_EQ(run.Standard().GetNumOfUpgradeOmissions(), 0u);
  }
}
