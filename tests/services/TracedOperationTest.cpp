#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "DiagnosticsCapture.h"
#include "TracedOperation.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Object : public VyrBaseUnknown {};

TEST(TracedOperation, NamesTheOperationAndTheObject) {
  VyrTrace channel("TestChannel", "");
  channel.Switch(true);
  const VyrVar<Object> object(new Object);
  // Of an address the low 32 bits are shown.
  char address[16];
  std::snprintf(address, sizeof address, "0x%x",
                static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(object.Get())));
  const DiagnosticsCapture capture;
  {
    const TracedOperation traced(channel, "Class::Operation", "Name", *object);
    TraceLine(channel, "%s%d and '%s'\n", 5, "text");
  }
  EXPECT_THAT(capture.traces,
              ElementsAre("{ Class::Operation\n",
                          std::string("  Alias: 'Name'\tAddress:(") + address + ")\n",
                          "  5 and 'text'\n", "} Class::Operation\n"));
}

TEST(TracedOperation, IsSilentWhileTheChannelIsOff) {
  VyrTrace channel("TestChannel", "");
  const DiagnosticsCapture capture;
  const VyrVar<Object> object(new Object);
  const TracedOperation traced(channel, "Class::Operation", "Name", *object);
  EXPECT_TRUE(object->IsOnlyReference()) << "the quickest queries count nothing";
  TraceLine(channel, "%sline\n");
  EXPECT_EQ(VyrTrace::Indentation(), "");
  EXPECT_THAT(capture.traces, IsEmpty());
}

}  // namespace
