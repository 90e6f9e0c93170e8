#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "DiagnosticsCapture.h"
#include "TracedOperation.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(TracedOperation, NamesTheOperationAndTheObject) {
  VyrTrace channel("TestChannel", "");
  channel.Switch(true);
  // Of an address the low 32 bits are shown.
  const auto* const object = reinterpret_cast<const void*>(std::uintptr_t{0x7FFF12345678});
  const DiagnosticsCapture capture;
  {
    const TracedOperation traced(channel, "Class::Operation", "Name", object);
    TraceLine(channel, "%s%d and '%s'\n", 5, "text");
  }
  EXPECT_THAT(capture.traces,
              ElementsAre("{ Class::Operation\n", "  Alias: 'Name'\tAddress:(0x12345678)\n",
                          "  5 and 'text'\n", "} Class::Operation\n"));
}

TEST(TracedOperation, IsSilentWhileTheChannelIsOff) {
  VyrTrace channel("TestChannel", "");
  const DiagnosticsCapture capture;
  const TracedOperation traced(channel, "Class::Operation", "Name", &channel);
  TraceLine(channel, "%sline\n");
  EXPECT_EQ(VyrTrace::Indentation(), "");
  EXPECT_THAT(capture.traces, IsEmpty());
}

}  // namespace
