#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <memory>
#include <string>

#include "DiagnosticsCapture.h"
#include "HostSettings.h"
#include "OnThreads.h"
#include "TemporaryFolder.h"
#include "VyrAnnStandardServices.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrAnnStandardXMLParserDOMCodec.h"
#include "VyrAnnStdEngineeringSymbolsServices.h"
#include "VyrDftStandardServices.h"
#include "VyrDftStdPersistence.h"

// What the process has once: several threads may reach for it at the same time.

namespace {

struct Shipped {
  const char* name;
  const char* parent;
};
constexpr std::array<Shipped, 3> kShipped = {
    {{"ISO", "ISO"}, {"JIS", "JIS"}, {"ANSI-ASME", "ANSI"}}};

class SharedSlots : public testing::Test {
 protected:
  ~SharedSlots() override {
    VyrDftStandardServices::ReleaseOOTBStandards();
    VyrAnnStandardServices::ReleaseCachedDocument();
  }

 private:
  const TemporaryFolder work_;
  const EnvironmentVariable site_{"VYR_STANDARD_PATH", ""};
  const EnvironmentVariable output_{"WOB_ODT_OUT", work_.Path().string()};
};

/// Everything that a drawing asks of its standard; the parent tells whether it is the right one.
void ExpectUsable(const Shipped& standard) {
  VyrAnnStandardServices services(standard.name);
  EXPECT_EQ(services.IsShared(), 1);
  EXPECT_EQ(services.CheckXMLStructure(), S_OK);
  int version = 0;
  EXPECT_EQ(services.GetVersion(version), S_OK);
  EXPECT_EQ(version, 220);
  VyrUnicodeString parent;
  EXPECT_EQ(services.GetStandardParentName(parent), S_OK);
  EXPECT_EQ(parent, standard.parent);
  VyrDrwStdSheetFormat* formats = nullptr;
  int count = 0;
  EXPECT_EQ(services.GetAvailableSheetFormats(&formats, count), S_OK);
  const std::unique_ptr<VyrDrwStdSheetFormat[]> ownedFormats(formats);
  EXPECT_GT(count, 0);
  VyrDrwStdSheetStyle style;
  EXPECT_TRUE(VyrSucceeded(services.GetDefaultSheetStyle(style)));
  double scale = 0;
  EXPECT_EQ(services.GetSheetScale(scale), S_OK);
}

/// Counts the codecs that it makes, on any thread.
class CountingFactory : public VyrAnnStandardXMLParserCodecFactory {
 public:
  VyrAnnStandardXMLParserCodec* CreateCodec() override {
    ++made_;
    return codecs_.CreateCodec();
  }
  int Made() const { return made_; }

 private:
  std::atomic<int> made_{0};
  VyrAnnStandardXMLParserDOMCodecFactory codecs_;
};

TEST_F(SharedSlots, ThreadsThatOpenOneStandardShareItsDocument) {
  CountingFactory factory;
  VyrAnnStandardXMLParser::SetCodecFactory(&factory);
  ExpectUsable(kShipped[0]);
  EXPECT_EQ(factory.Made(), 1);
  OnThreads([](int) {
    for (int i = 0; i < 5; ++i) ExpectUsable(kShipped[0]);
  });
  EXPECT_EQ(factory.Made(), 1) << "another document was made";
  VyrAnnStandardServices::ReleaseCachedDocument();
  VyrAnnStandardXMLParser::SetCodecFactory(nullptr);
}

TEST_F(SharedSlots, ThreadsThatOpenDifferentStandardsReplaceTheCachedOne) {
  OnThreads([](int number) {
    for (int i = 0; i < 3; ++i) ExpectUsable(kShipped[(number + i) % kShipped.size()]);
  });
}

TEST_F(SharedSlots, CachedDocumentMayBeReleasedWhileOthersUseIt) {
  OnThreads([](int number) {
    for (int i = 0; i < 5; ++i) {
      if (number == 0) VyrAnnStandardServices::ReleaseCachedDocument();
      ExpectUsable(kShipped[0]);
    }
  });
}

/// A sink of a host that asks the standard on which an operation reports for its version.
TEST_F(SharedSlots, SinkMayAskTheStandardThatIsReportedOn) {
  const TemporaryFolder site;
  site.Write("Bare.xml",
             "<std:node xmlns:std='http://schemas.hol-standard.example/drafting/std' "
             "name='drafting'><std:node name='Version'><std:intval>210</std:intval></std:node>"
             "</std:node>");
  const EnvironmentVariable path("VYR_STANDARD_PATH", site.Path().string());
  VyrAnnStandardServices services("Bare");
  int asked = 0;
  const auto ask = [&](std::string_view) {
    int version = 0;
    services.GetVersion(version);
    ++asked;
  };
  VyrDiagnosticSinks before = VyrSetDiagnosticSinks({ask, ask, ask, ask});
  EXPECT_EQ(services.CheckXMLStructure(), S_FALSE);
  VyrSetDiagnosticSinks(std::move(before));
  EXPECT_GT(asked, 0);
}

TEST_F(SharedSlots, ThreadsGetTheSameShippedStandard) {
  std::array<VyrIDrwStandard_var, kThreads> standards;
  OnThreads(
      [&](int number) { standards[number] = VyrDftStandardServices::GetOOTBStandard("JIS"); });
  for (const VyrIDrwStandard_var& standard : standards) {
    ASSERT_TRUE(standard);
    EXPECT_EQ(standard.Get(), standards[0].Get());
  }
}

TEST_F(SharedSlots, ShippedStandardsMayBeReleasedWhileOthersOpenThem) {
  OnThreads([](int number) {
    for (int i = 0; i < 3; ++i) {
      if (number == 0) VyrDftStandardServices::ReleaseOOTBStandards();
      EXPECT_TRUE(VyrDftStandardServices::GetOOTBStandard(number % 2 == 0 ? "ISO" : "ASME"));
    }
  });
}

TEST_F(SharedSlots, TablesOfVersionsAndSymbolsAreReadByAll) {
  OnThreads([](int) {
    EXPECT_EQ(VyrDftStdPersistence::CheckExplicitVersionNumberIsValid(220), 1);
    EXPECT_EQ(VyrDftStdPersistence::GetCurrentVersion(), 220);
    VyrUnicodeString font, code, small, large;
    EXPECT_EQ(VyrAnnStdEngineeringSymbolsServices::GetEngSymbolDefinitionAndImage(
                  "<DIAMETER>", VyrAnnStdEngineeringSymbolsServices::StrokeFonts,
                  VyrAnnStdEngineeringSymbolsServices::ParentISO, font, code, small, large, 0),
              S_OK);
    EXPECT_EQ(VyrDftStandardServices::GetIndexFromKeyword("DIMLOverrun"), 4);
  });
}

TEST_F(SharedSlots, CodecFactoryThatIsSetWhileDocumentsAreMadeIsNotLost) {
  CountingFactory factory;
  for (int round = 0; round < 100; ++round) {
    VyrAnnStandardXMLParser::SetCodecFactory(nullptr);
    OnThreads([&](int number) {
      if (number == 0) {
        VyrAnnStandardXMLParser::SetCodecFactory(&factory);
      } else {
        VyrAnnStandardXMLParser document;
        EXPECT_EQ(document.AddNodeWithPath("Root:Node", 0), 0);
      }
    });
    const int before = factory.Made();
    { VyrAnnStandardXMLParser document; }
    EXPECT_EQ(factory.Made(), before + 1) << "round " << round;
  }
  VyrAnnStandardXMLParser::SetCodecFactory(nullptr);
}

}  // namespace
