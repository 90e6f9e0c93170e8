#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "VyrTrace.h"
#include "VyrUtf8.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Trace, ChannelIsOffUntilItIsSwitchedOn) {
  const DiagnosticsCapture capture;
  VyrTrace channel("TestChannel", "A channel of the tests");
  EXPECT_FALSE(channel.IsOn());
  channel.Print("unseen\n");
  { const VyrTraceBlock block(channel, "Unseen"); }
  EXPECT_THAT(capture.traces, IsEmpty());
  channel.Switch(true);
  EXPECT_TRUE(channel.IsOn());
  channel.Print("%s=%d\n", "seen", 5);
  channel.Switch(false);
  channel.Print("unseen\n");
  EXPECT_THAT(capture.traces, ElementsAre("seen=5\n"));
}

TEST(Trace, BlocksIndentWhatIsTracedInsideThem) {
  const DiagnosticsCapture capture;
  VyrTrace channel("TestChannel", "");
  channel.Switch(true);
  EXPECT_EQ(VyrTrace::Indentation(), "");
  {
    const VyrTraceBlock outer(channel, "Outer");
    EXPECT_EQ(VyrTrace::Indentation(), "  ");
    {
      const VyrTraceBlock inner(channel, "Inner");
      channel.Print("%sline\n", VyrTrace::Indentation().c_str());
    }
    EXPECT_EQ(VyrTrace::Indentation(), "  ");
  }
  EXPECT_EQ(VyrTrace::Indentation(), "");
  EXPECT_THAT(capture.traces,
              ElementsAre("{ Outer\n", "  { Inner\n", "    line\n", "  } Inner\n", "} Outer\n"));
}

TEST(Trace, BlockOfAChannelThatIsOffDoesNotIndent) {
  VyrTrace channel("TestChannel", "");
  const VyrTraceBlock block(channel, "Operation");
  EXPECT_EQ(VyrTrace::Indentation(), "");
}

TEST(Trace, SwitchInsideABlockLeavesTheIndentationBalanced) {
  const DiagnosticsCapture capture;
  VyrTrace channel("TestChannel", "");
  {
    const VyrTraceBlock startedOff(channel, "A");
    channel.Switch(true);
  }
  EXPECT_EQ(VyrTrace::Indentation(), "");
  {
    const VyrTraceBlock startedOn(channel, "B");
    channel.Switch(false);
  }
  EXPECT_EQ(VyrTrace::Indentation(), "");
  EXPECT_THAT(capture.traces, ElementsAre("{ B\n"));
}

TEST(Trace, LineIsCutAtItsSizeWithItsEndKept) {
  constexpr std::size_t lineSize = 20;
  for (const std::string character : {"x", "\u00E9", "\u5BF8", "\U0001F600"}) {
    VyrTrace channel("TestChannel", "", 0, "STDERR", int{lineSize});
    channel.Switch(true);
    for (std::size_t count = 0; count < 60; ++count) {
      std::string text;
      for (std::size_t i = 0; i < count; ++i) text += character;
      const DiagnosticsCapture capture;
      channel.Print("%s\n", text.c_str());
      ASSERT_EQ(capture.traces.size(), 1u);
      std::string line = capture.traces.front();
      EXPECT_LE(line.size(), lineSize);
      EXPECT_EQ(VyrFindInvalidUtf8(line), std::string::npos) << text;
      ASSERT_EQ(line.back(), '\n');
      line.pop_back();
      EXPECT_EQ(line, text.substr(0, line.size()));
      // A byte is left for the line's end and one for the zero behind it.
      const bool mustFit = text.size() + 2 <= lineSize;
      const bool fillsTheLine = line.size() + character.size() + 2 > lineSize;
      EXPECT_TRUE(mustFit ? line == text : fillsTheLine) << line;
    }
  }
}

TEST(Trace, ChannelIsFoundByItsExactNameWhileItLives) {
  EXPECT_EQ(VyrTrace::Find("TestChannel"), nullptr);
  {
    VyrTrace channel("TestChannel", "Title");
    EXPECT_EQ(VyrTrace::Find("TestChannel"), &channel);
    EXPECT_EQ(VyrTrace::Find("testchannel"), nullptr);
    EXPECT_EQ(VyrTrace::Find(""), nullptr);
    EXPECT_STREQ(channel.GetTitle(), "Title");
    int visited = 0;
    VyrTrace::ForEach([&](VyrTrace& each) { visited += &each == &channel; });
    EXPECT_EQ(visited, 1);
  }
  EXPECT_EQ(VyrTrace::Find("TestChannel"), nullptr);
}

}  // namespace
