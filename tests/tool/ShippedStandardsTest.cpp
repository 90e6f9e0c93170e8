#include "ToolRun.h"

namespace {

struct Shipped {
  const char* text;
  const char* file;
  const char* parent;
};

class ShippedStandard : public testing::TestWithParam<Shipped> {
 protected:
  std::string File() const { return std::string(HOL_STANDARDS "/") + GetParam().file; }
};

TEST_P(ShippedStandard, IsWhatTheChainMakesOfItsText) {
  const TemporaryFolder folder;
  const std::string made = folder / "made.xml";
  const ToolRun run = RunTool({"convert", LegacyText(GetParam().text), "-o", made, "--shipped"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(ReadWholeFile(made) == ReadWholeFile(File()))
      << File() << " is not current; make it anew with scripts/make-standards.sh";
}

TEST_P(ShippedStandard, IsCurrentValidAndOfItsParent) {
  const auto info = ParsedJson(RunTool({"info", "--json", File()}))[0];
  EXPECT_EQ(info["version"], 220);
  EXPECT_EQ(info["parentStandard"], GetParam().parent);
  EXPECT_EQ(RunTool({"check", File()}).status, 0);
}

TEST_P(ShippedStandard, HasNothingLeftToUpgrade) {
  const TemporaryFolder folder;
  EXPECT_EQ(RunTool({"upgrade", File(), "--dry-run"}).status, 0);
  ASSERT_EQ(RunTool({"upgrade", File(), "-o", folder / "again.xml"}).status, 0);
  EXPECT_TRUE(ReadWholeFile(folder / "again.xml") == ReadWholeFile(File()));
}

INSTANTIATE_TEST_SUITE_P(All, ShippedStandard,
                         testing::Values(Shipped{"ISO", "ISO.xml", "ISO"},
                                         Shipped{"JIS", "JIS.xml", "JIS"},
                                         Shipped{"ASME", "ANSI-ASME.xml", "ASME"}),
                         [](const auto& test) { return std::string(test.param.parent); });

}  // namespace
