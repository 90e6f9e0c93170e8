#include <memory>
#include <optional>
#include <thread>
#include <utility>

#include "StandardDocumentCache.h"
#include "StandardFiles.h"
#include "VyrAnnStandardServices.h"
#include "VyrAnnStandardXMLNode.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrAnnStandardXMLParserDOMCodec.h"

namespace {

using namespace standardfile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Services = VyrAnnStandardServices;

std::string Parent(const std::string& name) {
  return Node("Dimension", Parameter("ParentStandard", Text(name)));
}

std::string ParentOf(Services& services) {
  VyrUnicodeString name = "not answered";
  EXPECT_EQ(services.GetStandardParentName(name), S_OK);
  return name.CString();
}

/// Number of nodes and values of all documents.
long CountLiveNodes() {
  long live = 0;
  VyrInstanceCounter::ForEach([&live](const VyrInstanceCounter& counter) {
    if (counter.GetName() == std::string(VyrAnnStandardXMLClass::kClassName)) {
      live += counter.GetLive();
    }
  });
  return live;
}

/// Counts how often a document is read from a file, and gives access to the last document.
class WatchingFactory : public VyrAnnStandardXMLParserCodecFactory {
 public:
  WatchingFactory() { VyrAnnStandardXMLParser::SetCodecFactory(this); }
  WatchingFactory(const WatchingFactory&) = delete;
  WatchingFactory& operator=(const WatchingFactory&) = delete;
  ~WatchingFactory() override { VyrAnnStandardXMLParser::SetCodecFactory(nullptr); }

  VyrAnnStandardXMLParserCodec* CreateCodec() override { return new Codec(*this); }

  int decodes = 0;
  VyrAnnStandardXMLNode_var root;

 private:
  class Codec : public VyrAnnStandardXMLParserCodec {
   public:
    explicit Codec(WatchingFactory& factory) : factory_(factory) {}
    HRESULT Init(VyrAnnStandardXMLNode* typeDefTop, VyrAnnStandardXMLNode* enumTop,
                 VyrAnnStandardXMLNode* rootTop) override {
      factory_.root = VyrAnnStandardXMLNode_var::Share(rootTop);
      return codec_.Init(typeDefTop, enumTop, rootTop);
    }
    HRESULT DecodeXMLString(VyrUnicodeView text) override { return codec_.DecodeXMLString(text); }
    HRESULT DecodeXMLFile(VyrUnicodeView path) override {
      ++factory_.decodes;
      return codec_.DecodeXMLFile(path);
    }
    HRESULT SaveInFile(VyrUnicodeView path) override { return codec_.SaveInFile(path); }
    HRESULT SaveInString(VyrUnicodeString& out) override { return codec_.SaveInString(out); }
    VyrProblem GetProblem() const override { return codec_.GetProblem(); }

   private:
    WatchingFactory& factory_;
    VyrAnnStandardXMLParserDOMCodec codec_;
  };
};

/// Codecs of a host that refuse every file.
class RefusingFactory : public VyrAnnStandardXMLParserCodecFactory {
 public:
  explicit RefusingFactory(VyrProblem problem) : problem_(std::move(problem)) {
    VyrAnnStandardXMLParser::SetCodecFactory(this);
  }
  RefusingFactory(const RefusingFactory&) = delete;
  RefusingFactory& operator=(const RefusingFactory&) = delete;
  ~RefusingFactory() override { VyrAnnStandardXMLParser::SetCodecFactory(nullptr); }

  VyrAnnStandardXMLParserCodec* CreateCodec() override { return new Codec(*this); }

  int decodes = 0;

 private:
  class Codec : public VyrAnnStandardXMLParserCodec {
   public:
    explicit Codec(RefusingFactory& factory) : factory_(factory) {}
    HRESULT Init(VyrAnnStandardXMLNode*, VyrAnnStandardXMLNode*, VyrAnnStandardXMLNode*) override {
      return S_OK;
    }
    HRESULT DecodeXMLString(VyrUnicodeView) override { return E_FAIL; }
    HRESULT DecodeXMLFile(VyrUnicodeView) override {
      ++factory_.decodes;
      return E_FAIL;
    }
    HRESULT SaveInFile(VyrUnicodeView) override { return E_FAIL; }
    HRESULT SaveInString(VyrUnicodeString&) override { return E_FAIL; }
    VyrProblem GetProblem() const override { return factory_.problem_; }

   private:
    RefusingFactory& factory_;
  };

  VyrProblem problem_;
};

class AnnStandardServices : public StandardFilesTest {
 protected:
  /// The lines that opening a standard traces.
  std::vector<std::string> TracesOfOpening(const char* name) {
    const TraceOn trace("DftStdServs");
    EXPECT_TRUE(trace.IsFound());
    const Services services(name);
    return TakeTraces();
  }
  static auto Block(const std::vector<std::string>& lines) {
    std::vector<std::string> traced = {"{ VyrAnnStandardServices::VyrAnnStandardServices\n"};
    for (const std::string& line : lines) traced.push_back("  " + line + "\n");
    traced.emplace_back("} VyrAnnStandardServices::VyrAnnStandardServices\n");
    return testing::ElementsAreArray(traced);
  }
  std::string Created(const char* name) const {
    return "Creating a new parser for " + CopyOf(name) + ".";
  }
  std::string Reused(const char* name) const {
    return "Using cached value for " + CopyOf(name) + ".";
  }

  /// A standard that does not exist is reported by the container, not again by the services.
  void ExpectReportsOfTheContainerOnly() {
    EXPECT_THAT(TakeErrors(), testing::Each(testing::StartsWith("VyrStdServices: ")));
  }

  /// Every query of a standard without a document fails and leaves its outputs alone.
  static void ExpectNoAnswers(Services& services) {
    VyrDrwStdSheetFormat* formats = nullptr;
    VyrDrwStdSheetStyle* styles = nullptr;
    VyrDrwStdSheetStyle style;
    VyrUnicodeString name = "untouched";
    double scale = 7;
    int count = 7;
    int version = 7;
    EXPECT_EQ(services.GetAvailableSheetFormats(&formats, count), E_FAIL);
    EXPECT_EQ(services.GetAvailableSheetStyles(&styles, count), E_FAIL);
    EXPECT_EQ(services.GetDefaultSheetStyle(style), E_FAIL);
    EXPECT_EQ(services.GetSheetScale(scale), E_FAIL);
    EXPECT_EQ(services.GetStandardParentName(name), E_FAIL);
    EXPECT_EQ(services.GetVersion(version), E_FAIL);
    EXPECT_EQ(services.IsSwitchable(0), 0);
    EXPECT_EQ(services.IsSwitchable(-1), 0);
    EXPECT_EQ(formats, nullptr);
    EXPECT_EQ(styles, nullptr);
    EXPECT_EQ(count, 7);
    EXPECT_EQ(version, 7);
    EXPECT_EQ(scale, 7);
    EXPECT_EQ(name, "untouched");
    EXPECT_EQ(style.name, "");
  }
};

// --- The cache -----------------------------------------------------------------------------------

TEST_F(AnnStandardServices, FirstOpeningReadsTheStandardAndSecondTakesItFromTheCache) {
  Write("SITE", Version("220"));
  WatchingFactory factory;
  EXPECT_THAT(TracesOfOpening("SITE"), Block({Created("SITE")}));
  EXPECT_THAT(TracesOfOpening("SITE"), Block({Reused("SITE")}));
  EXPECT_EQ(factory.decodes, 1);
}

TEST_F(AnnStandardServices, NothingIsTracedWhileTheChannelIsOff) {
  Write("SITE", Version("220"));
  const Services first("SITE");
  const Services second("SITE");
  EXPECT_THAT(TakeTraces(), IsEmpty());
}

TEST_F(AnnStandardServices, TraceLineIsCutAt1024Bytes) {
  const std::string longName(2000, 'x');
  const std::vector<std::string> traces = TracesOfOpening(longName.c_str());
  ASSERT_EQ(traces.size(), 4u);
  EXPECT_EQ(traces[1].size(), 1023u) << "the size counts the zero at the end";
  ExpectReportsOfTheContainerOnly();
}

TEST_F(AnnStandardServices, ObjectsOfAnUnchangedStandardShareOneDocument) {
  Write("SITE", Version("220"));
  const Services first("SITE");
  const long nodes = CountLiveNodes();
  EXPECT_GT(nodes, 0);
  const Services second("SITE");
  EXPECT_EQ(CountLiveNodes(), nodes);
  EXPECT_EQ(first.IsShared(), 1);
  EXPECT_EQ(second.IsShared(), 1);
}

TEST_F(AnnStandardServices, TouchedStandardIsReadAnewAndTheCachedDocumentDestroyed) {
  Write("SITE", Version("220"));
  WatchingFactory factory;
  { const Services services("SITE"); }
  factory.root = nullptr;
  const long nodes = CountLiveNodes();
  Touch("SITE", 1);
  EXPECT_THAT(TracesOfOpening("SITE"), Block({Created("SITE")}))
      << "times are told apart by a nanosecond";
  EXPECT_EQ(factory.decodes, 2);
  factory.root = nullptr;
  EXPECT_EQ(CountLiveNodes(), nodes);
}

TEST_F(AnnStandardServices, ReplacedDocumentLivesAsLongAsItIsUsed) {
  Write("SITE", Parent("ISO"));
  std::optional<Services> before(std::in_place, "SITE");
  const long nodes = CountLiveNodes();
  Write("SITE", Parent("JIS"), 1);
  Services after("SITE");
  EXPECT_EQ(ParentOf(*before), "ISO");
  EXPECT_EQ(ParentOf(after), "JIS");
  EXPECT_EQ(CountLiveNodes(), 2 * nodes);
  before.reset();
  EXPECT_EQ(CountLiveNodes(), nodes);
  EXPECT_EQ(ParentOf(after), "JIS");
}

TEST_F(AnnStandardServices, OnlyTheStandardThatWasOpenedLastIsKept) {
  Write("A", Parent("ISO"));
  Write("B", Parent("JIS"));
  WatchingFactory factory;
  for (const char* name : {"A", "B", "A"}) {
    EXPECT_THAT(TracesOfOpening(name), Block({Created(name)}))
        << "the same time is not enough, the path counts too";
  }
  EXPECT_THAT(TracesOfOpening("A"), Block({Reused("A")}));
  EXPECT_EQ(factory.decodes, 3);
  Services services("A");
  EXPECT_EQ(ParentOf(services), "ISO");
}

TEST_F(AnnStandardServices, ReleasedCacheKeepsNothingAlive) {
  Write("SITE", Parent("ISO"));
  {
    Services services("SITE");
    Services::ReleaseCachedDocument();
    EXPECT_EQ(ParentOf(services), "ISO");
  }
  EXPECT_EQ(CountLiveNodes(), 0);
  EXPECT_THAT(TracesOfOpening("SITE"), Block({Created("SITE")}));
}

TEST_F(AnnStandardServices, InvalidCacheStatusLeavesTheCacheAloneAndTheDocumentToTheObject) {
  Write("A", Parent("ISO"));
  Write("B", Parent("JIS"));
  { const Services services("A"); }
  const long nodes = CountLiveNodes();
  StandardDocumentCache& cache = StandardDocumentCache::OfProcess();
  cache.cacheStatus = 2;
  {
    Services services("B");
    EXPECT_THAT(TakeReports(), ElementsAre(Raised("Cache status is invalid!")));
    EXPECT_EQ(services.IsShared(), 0);
    EXPECT_EQ(ParentOf(services), "JIS");
    EXPECT_EQ(cache.cachedPath.View(), CopyOf("A"));
  }
  EXPECT_EQ(CountLiveNodes(), nodes) << "the object destroys a document of its own";
  cache.cacheStatus = StandardDocumentCache::Valid;
  EXPECT_THAT(TracesOfOpening("A"), Block({Reused("A")}));
}

TEST_F(AnnStandardServices, MayBeOpenedOnSeveralThreads) {
  Write("A", Parent("ISO"));
  Write("B", Parent("JIS"));
  { const Services a("A"), b("B"); }
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([i] {
      for (int opening = 0; opening < 25; ++opening) {
        const Services services((i + opening) % 2 == 0 ? "A" : "B");
        EXPECT_EQ(services.IsShared(), 1);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// --- Standards without a document ----------------------------------------------------------------

TEST_F(AnnStandardServices, FileIsOpenedWithoutTheContainerAndWithoutTheCache) {
  const TemporaryFolder elsewhere;
  const std::string path = elsewhere.Write("any name", Standard(Parent("JIS")));
  const auto services = Services::OpenFile(path);
  EXPECT_EQ(ParentOf(*services), "JIS");
  EXPECT_EQ(services->IsShared(), 0);
  elsewhere.Write("any name", Standard(Parent("ANSI")));
  EXPECT_EQ(ParentOf(*Services::OpenFile(path)), "ANSI");
  EXPECT_EQ(ParentOf(*services), "JIS");
}

TEST_F(AnnStandardServices, UnknownStandardHasNoDocumentAndIsNotCached) {
  Write("SITE", Version("220"));
  { const Services services("SITE"); }
  EXPECT_THAT(TracesOfOpening("NONE"), Block({"Failed to get stats of NONE. Can't cache.",
                                              "Creating a new parser for NONE."}));
  Services services("NONE");
  EXPECT_EQ(services.IsShared(), 0);
  ExpectNoAnswers(services);
  ExpectReportsOfTheContainerOnly();
  EXPECT_THAT(TracesOfOpening("SITE"), Block({Reused("SITE")}));
}

TEST_F(AnnStandardServices, NullIsNoStandard) {
  Services services(nullptr);
  EXPECT_EQ(services.IsShared(), 0);
  ExpectNoAnswers(services);
}

TEST_F(AnnStandardServices, FileThatIsNoXMLIsReportedOnceByFileAndLine) {
  Write("BAD", "<std:node name='A'>\n<oops\n</std:node>\n");
  Services first("BAD");
  EXPECT_THAT(TakeErrors(), ElementsAre(HasSubstr(CopyOf("BAD") + ":4: ")));
  ExpectNoAnswers(first);
  EXPECT_THAT(TracesOfOpening("BAD"), Block({Reused("BAD")})) << "failed until it is modified";
  Services second("BAD");
  ExpectNoAnswers(second);
  EXPECT_THAT(TakeErrors(), IsEmpty());

  Write("BAD", Parent("ISO"), 1);
  Services mended("BAD");
  EXPECT_EQ(ParentOf(mended), "ISO");
}

TEST_F(AnnStandardServices, FailureThatLastsIsKeptWithOrWithoutALine) {
  const VyrProblem problems[] = {{0, "has no mark of the host's own format"}, {0, ""}, {7, "odd"}};
  for (const VyrProblem& problem : problems) {
    SCOPED_TRACE(problem.text.CString());
    Write("HOSTS", Version("220"), static_cast<long long>(problem.text.View().size()));
    RefusingFactory factory(problem);
    EXPECT_THAT(TracesOfOpening("HOSTS"), Block({Created("HOSTS")}));
    EXPECT_THAT(TakeErrors(), ElementsAre(HasSubstr(CopyOf("HOSTS"))));
    EXPECT_THAT(TracesOfOpening("HOSTS"), Block({Reused("HOSTS")}));
    Services services("HOSTS");
    EXPECT_EQ(services.IsShared(), 1);
    ExpectNoAnswers(services);
    EXPECT_EQ(factory.decodes, 1);
    EXPECT_THAT(TakeErrors(), IsEmpty());
  }
}

TEST_F(AnnStandardServices, FailureThatMayPassIsTriedAgainWhetherItHasALineOrNot) {
  const VyrProblem problems[] = {{0, "out of memory", false}, {7, "out of memory", false}};
  for (const VyrProblem& problem : problems) {
    Write("HOSTS", Parent("JIS"), problem.line);
    {
      RefusingFactory factory(problem);
      for (int opening = 1; opening <= 2; ++opening) {
        Services services("HOSTS");
        EXPECT_EQ(services.IsShared(), 0);
        ExpectNoAnswers(services);
        EXPECT_EQ(factory.decodes, opening);
        EXPECT_THAT(TakeErrors(), ElementsAre(HasSubstr(CopyOf("HOSTS"))));
      }
    }
    Services services("HOSTS");
    EXPECT_EQ(ParentOf(services), "JIS");
  }
}

TEST_F(AnnStandardServices, ElementThatAStandardCannotHoldIsReportedByFileAndLine) {
  Write("BAD", Text("a value at the top"));
  Services services("BAD");
  EXPECT_THAT(TakeErrors(),
              ElementsAre(HasSubstr("Invalid node"), HasSubstr(CopyOf("BAD") + ":2: ")));
  ExpectNoAnswers(services);
}

TEST_F(AnnStandardServices, StandardWithAnUndefinedEnumerationValueHasNoDocument) {
  const long nodes = CountLiveNodes();
  Write("BAD", "<std:enumdef name='YesNo'><std:strval>Yes</std:strval></std:enumdef>" +
                   Version("220") +
                   Parameter("Blanking", "<std:enumval name='YesNo'>Maybe</std:enumval>"));
  Services services("BAD");
  EXPECT_THAT(TakeTraces(), ElementsAre(HasSubstr("Blanking.Maybe with enum \"YesNo\"")));
  EXPECT_THAT(TakeErrors(), ElementsAre(HasSubstr(CopyOf("BAD") + ": ")));
  ExpectNoAnswers(services);
  EXPECT_EQ(CountLiveNodes(), nodes);
  EXPECT_EQ(services.IsShared(), 1) << "what the cache keeps is that there is no document";
}

// --- What a standard says of itself --------------------------------------------------------------

TEST_F(AnnStandardServices, ParentStandardIsWhatTheStandardSaysOrEmpty) {
  Write("SITE", Parent("ASME"));
  Services site("SITE");
  EXPECT_EQ(ParentOf(site), "ASME");
  Write("NONE", Version("220"));
  Services none("NONE");
  EXPECT_EQ(ParentOf(none), "");
}

TEST_F(AnnStandardServices, VersionIsThatOfTheDocument) {
  Write("SITE", Version("170"));
  int version = 0;
  EXPECT_EQ(Services("SITE").GetVersion(version), S_OK);
  EXPECT_EQ(version, 170);
}

TEST_F(AnnStandardServices, VersionBelow1Fails) {
  Write("SITE", Version("abc"));
  Services services("SITE");
  int version = 0;
  EXPECT_EQ(services.GetVersion(version), E_FAIL);
  EXPECT_EQ(version, -1);
  TakeReports();
}

TEST_F(AnnStandardServices, IsSwitchableUpToItsVersion) {
  Write("SITE", Version("170"));
  Services services("SITE");
  EXPECT_EQ(services.IsSwitchable(160), 1);
  EXPECT_EQ(services.IsSwitchable(170), 1);
  EXPECT_EQ(services.IsSwitchable(171), 0);
}

// --- The structural check ------------------------------------------------------------------------

TEST_F(AnnStandardServices, CheckWithoutADocumentFails) {
  Services services("NONE");
  ExpectReportsOfTheContainerOnly();
  EXPECT_EQ(services.CheckXMLStructure(), E_FAIL);
  EXPECT_THAT(TakeReports(), ElementsAre(Raised("No parser available")));
}

TEST_F(AnnStandardServices, CheckRefusesUndefinedEnumerationValues) {
  Write("SITE", Version("220"));
  WatchingFactory factory;
  Services services("SITE");
  const int added =
      factory.root->AddNodeWithValue("Late", VyrAnnStandardXMLValue::ValueEnum, "No", "YesNo", -1);
  ASSERT_EQ(added, 1);
  EXPECT_EQ(services.CheckXMLStructure(), S_FALSE);
  EXPECT_THAT(TakeReports(), ElementsAre(Raised("Bad enumerate structure in xml file")));
  EXPECT_THAT(TakeTraces(), ElementsAre(HasSubstr("Late.No")));
}

TEST_F(AnnStandardServices, CheckRefusesAVersionThatCannotBeTold) {
  Write("SITE", Version("abc"));
  EXPECT_EQ(Services("SITE").CheckXMLStructure(), S_FALSE);
  EXPECT_THAT(TakeReports(),
              testing::Contains(Raised("The version of the file could not be determined")));
}

TEST_F(AnnStandardServices, CheckDoesNotLookAtStylesBeforeRelease14) {
  // What releases 10 to 13 brought, and nothing of release 14: version 50.
  Write("R13", Node("Annotation", "") + Styles(Style("Default", {})) +
                   Node("Dimension", Node("CurvilinearLengthSymbol", "")));
  Services services("R13");
  int version = 0;
  ASSERT_EQ(services.GetVersion(version), S_OK);
  ASSERT_EQ(version, 50);
  EXPECT_EQ(services.CheckXMLStructure(), S_OK);
}

TEST_F(AnnStandardServices, CheckReadsTheStylesFromRelease14On) {
  Write("R14",
        Node("Annotation", "") +
            Node("Styles", Node("Sheet", Style("Default", {})) + Node("DimensionsSystem", "")) +
            Node("Dimension", Node("CurvilinearLengthSymbol", "")));
  Services services("R14");
  int version = 0;
  ASSERT_EQ(services.GetVersion(version), S_OK);
  ASSERT_EQ(version, 60);
  EXPECT_EQ(services.CheckXMLStructure(), S_FALSE);
  EXPECT_THAT(TakeReports(), ElementsAre(Raised("Bad xml structure"), Raised("Bad xml structure"),
                                         Raised("The R14 sheet styles are corrupted")));
}

TEST_F(AnnStandardServices, CheckCallsStylesCorruptedWhenThereIsNone) {
  for (const std::string& styles : {std::string(), Styles("")}) {
    Write("SITE", Version("220") + styles, static_cast<long long>(styles.size()));
    EXPECT_EQ(Services("SITE").CheckXMLStructure(), S_FALSE);
    EXPECT_THAT(TakeReports(), ElementsAre(Raised("The R14 sheet styles are corrupted")));
  }
}

TEST_F(AnnStandardServices, CheckAcceptsAMinimalStyle) {
  Write("SITE", Version("220") + Styles(Style("Default", {{"GlobalScale", "1.0"},
                                                          {"ProjectionMethod", "First angle"}})));
  EXPECT_EQ(Services("SITE").CheckXMLStructure(), S_OK);
}

// --- The shipped standards -----------------------------------------------------------------------

class ShippedStandard : public AnnStandardServices,
                        public testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(ShippedStandard, IsSoundAndOfTheCurrentVersion) {
  const auto& [name, parent] = GetParam();
  VyrStdServices::SetFolders({HOL_STANDARDS});
  Services services(name);
  EXPECT_EQ(services.CheckXMLStructure(), S_OK);
  EXPECT_EQ(services.IsSwitchable(220), 1);
  EXPECT_EQ(ParentOf(services), parent);
}

INSTANTIATE_TEST_SUITE_P(All, ShippedStandard,
                         testing::Values(std::pair("ISO", "ISO"), std::pair("JIS", "JIS"),
                                         std::pair("ANSI-ASME", "ANSI")),
                         [](const auto& test) { return std::string(test.param.second); });

}  // namespace
