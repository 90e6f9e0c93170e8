#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "HostDOM.h"
#include "StandardInMemory.h"
#include "VirtualTable.h"
#include "VyrDftStandardServices.h"
#include "VyrDifTransientStandard.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using Standard = VyrDifTransientStandard;
using Slots = std::vector<std::size_t>;

constexpr auto kParent =
    "<std:node name='Dimension'><std:node name='ParentStandard'><std:strval>ISO</std:strval>"
    "</std:node></std:node>";
const std::string kUnit = " [VyrDifTransientStandard]";

template <class Class>
Slots SlotsOfValues() {
  return {SlotOf<HRESULT(const char*, int, VyrUnicodeString&)>(&Class::GetValue),
          SlotOf<HRESULT(const char*, VyrUnicodeString**, int*)>(&Class::GetValue),
          SlotOf<HRESULT(const char*, int, double&)>(&Class::GetValue),
          SlotOf<HRESULT(const char*, double*, int*)>(&Class::GetValue),
          SlotOf<HRESULT(const char*, int, int&)>(&Class::GetValue),
          SlotOf<HRESULT(const char*, int*, int*)>(&Class::GetValue),
          SlotOf<HRESULT()>(&Class::ReservedA)};
}

template <class Class>
Slots SlotsOfEToM() {
  return {SlotOf<HRESULT()>(&Class::ReservedE), SlotOf<HRESULT()>(&Class::ReservedF),
          SlotOf<HRESULT()>(&Class::ReservedG), SlotOf<HRESULT()>(&Class::ReservedH),
          SlotOf<HRESULT()>(&Class::ReservedI), SlotOf<HRESULT()>(&Class::ReservedJ),
          SlotOf<HRESULT()>(&Class::ReservedK), SlotOf<HRESULT()>(&Class::ReservedL),
          SlotOf<HRESULT()>(&Class::ReservedM)};
}

Slots operator+(Slots a, const Slots& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

using OutText = HRESULT(unsigned short**);
using OutString = HRESULT(VyrUnicodeString&);
using TypeOnly = HRESULT(const char*, VyrDftStandardValueType*);
using TypeAndCount = HRESULT(const char*, VyrDftStandardValueType*, int*);

/// What comes first in every table of an object.
class BaseProbe : public VyrBaseUnknown {
 public:
  virtual void First() {}
};

constexpr std::size_t kInterfaceBase = 3;  // QueryInterface, AddRef and Release

TEST(TransientStandardTable, ObjectOperationsFollowTheBaseObjectsInTheirOrder) {
  const Slots slots =
      Slots{SlotOf<OutText>(&Standard::GetName), SlotOf<OutString>(&Standard::GetName),
            SlotOf<OutText>(&Standard::GetParentStandard),
            SlotOf<OutString>(&Standard::GetParentStandard), SlotOf(&Standard::HasNode)} +
      SlotsOfValues<Standard>() +
      Slots{SlotOf<TypeOnly>(&Standard::GetValueType),
            SlotOf<TypeAndCount>(&Standard::GetValueType),
            SlotOf(&Standard::GetLineThicknessIndex),
            SlotOf(&Standard::ReservedB),
            SlotOf(&Standard::ReservedC),
            SlotOf(&Standard::ReservedD),
            SlotOf<HRESULT(int*)>(&Standard::GetVersion),
            SlotOf<int()>(&Standard::GetVersion),
            SlotOf(&Standard::GetAnnotationMode)} +
      SlotsOfEToM<Standard>() +
      Slots{SlotOf(&Standard::GetStylesNames),
            SlotOf(&Standard::GetStylePath),
            SlotOf(&Standard::GetStyle),
            SlotOf(&Standard::GetAvailableStyles),
            SlotOf(&Standard::ReservedN),
            SlotOf(&Standard::GetCurrentStyle),
            SlotOf(&Standard::SetCurrentStyle),
            SlotOf(&Standard::ReservedO),
            SlotOf(&Standard::FillAvailableStyles),
            SlotOf(&Standard::FindCurrentStyle),
            SlotOf(&Standard::StoreCurrentStyle),
            SlotOf(&Standard::Load)};
  EXPECT_EQ(slots, SlotsFrom(SlotOf(&BaseProbe::First), 42));
}

TEST(TransientStandardTable, DraftingInterface) {
  using I = VyrIDftStandard;
  const Slots slots = Slots{SlotOf<OutText>(&I::GetName), SlotOf<OutText>(&I::GetParentStandard),
                            SlotOf<TypeAndCount>(&I::GetValueType)} +
                      SlotsOfValues<I>();
  EXPECT_EQ(slots, SlotsFrom(kInterfaceBase, 10));
}

TEST(TransientStandardTable, EarlierDraftingInterface) {
  using I = VyrIHolStandard;
  const Slots slots = Slots{SlotOf<OutText>(&I::GetName), SlotOf<OutText>(&I::GetParentStandard),
                            SlotOf<TypeOnly>(&I::GetValueType)} +
                      SlotsOfValues<I>();
  EXPECT_EQ(slots, SlotsFrom(kInterfaceBase, 10));
}

TEST(TransientStandardTable, DrawingInterface) {
  using I = VyrIDrwStandard;
  const Slots slots = Slots{SlotOf<OutText>(&I::GetName), SlotOf<OutString>(&I::GetName),
                            SlotOf<OutText>(&I::GetParentStandard),
                            SlotOf<OutString>(&I::GetParentStandard), SlotOf(&I::HasNode)} +
                      SlotsOfValues<I>() +
                      Slots{SlotOf<TypeAndCount>(&I::GetValueType),
                            SlotOf(&I::GetLineThicknessIndex),
                            SlotOf(&I::ReservedB),
                            SlotOf(&I::ReservedC),
                            SlotOf(&I::ReservedD),
                            SlotOf<int()>(&I::GetVersion),
                            SlotOf(&I::GetAnnotationMode)} +
                      SlotsOfEToM<I>() +
                      Slots{SlotOf(&I::GetStylesNames), SlotOf(&I::GetStylePath)};
  EXPECT_EQ(slots, SlotsFrom(kInterfaceBase, 30));
}

TEST(TransientStandardTable, StyleManagerInterface) {
  using I = VyrIDftStyleManager;
  const Slots slots = {SlotOf(&I::GetStyle),        SlotOf(&I::GetAvailableStyles),
                       SlotOf(&I::ReservedN),       SlotOf(&I::GetVersion),
                       SlotOf(&I::GetCurrentStyle), SlotOf(&I::SetCurrentStyle),
                       SlotOf(&I::ReservedO)};
  EXPECT_EQ(slots, SlotsFrom(kInterfaceBase, 7));
}

TEST(TransientStandard, HasItsPlaceInTheObjectFramework) {
  const TransientStandard standard = StandardOf(kParent);
  EXPECT_STREQ(standard->IsA(), "VyrDifTransientStandard");
  EXPECT_STREQ(Standard::MetaObject().GetLateType(), "VyrNull");
  EXPECT_STREQ(Standard::MetaObject().GetLibrary(), "HolStandardInfra");
  EXPECT_STREQ(Standard::MetaObject().GetBase()->GetName(), "VyrBaseUnknown");
  EXPECT_EQ(Standard::CreateItself(), nullptr);
}

TEST(TransientStandard, AnswersItsFourInterfacesWithACountedReferenceEach) {
  const TransientStandard standard = StandardOf(kParent);
  const auto drafting = VyrQuery<VyrIDftStandard>(static_cast<VyrIDrwStandard*>(standard.Get()));
  const auto earlier = VyrQuery<VyrIHolStandard>(drafting.Get());
  const auto drawing = VyrQuery<VyrIDrwStandard>(earlier.Get());
  const auto styles = VyrQuery<VyrIDftStyleManager>(drawing.Get());
  ASSERT_TRUE(drafting && earlier && drawing && styles);
  EXPECT_EQ(CountOf(*standard), 5u);
  EXPECT_FALSE(VyrQuery<VyrIDftStyle>(drawing.Get()));
  unsigned short* name = nullptr;
  EXPECT_EQ(earlier->GetName(&name), S_OK);
  EXPECT_EQ(Taken(name), "Test");
  EXPECT_EQ(drafting->GetParentStandard(&name), S_OK);
  EXPECT_EQ(Taken(name), "ISO");
}

#ifdef HOL_DEVELOPMENT_BUILD
TEST(TransientStandard, IsCountedWhileItLives) {
  const auto live = [] {
    long count = 0;
    VyrInstanceCounter::ForEach([&](const VyrInstanceCounter& counter) {
      if (counter.GetName() == std::string("VyrDifTransientStandard")) count += counter.GetLive();
    });
    return count;
  };
  TransientStandard standard = StandardOf(kParent);
  EXPECT_EQ(live(), 1);
  standard = nullptr;
  EXPECT_EQ(live(), 0);
}
#endif

TEST(TransientStandard, TellsItsName) {
  const char* const name = "Norme d\u00E9tail\u00E9e \U0001F4D0";
  const TransientStandard standard = StandardOf(kParent, name);
  unsigned short* copy = nullptr;
  EXPECT_EQ(standard->GetName(&copy), S_OK);
  EXPECT_EQ(Taken(copy), name);
  VyrUnicodeString text;
  EXPECT_EQ(standard->GetName(text), S_OK);
  EXPECT_EQ(text, name);
  EXPECT_EQ(standard->GetName(nullptr), E_INVALIDARG);
}

TEST(TransientStandard, TellsItsParentStandard) {
  const DiagnosticsCapture capture;
  const TransientStandard standard = StandardOf(kParent);
  unsigned short* copy = nullptr;
  EXPECT_EQ(standard->GetParentStandard(&copy), S_OK);
  EXPECT_EQ(Taken(copy), "ISO");
  VyrUnicodeString text;
  EXPECT_EQ(standard->GetParentStandard(text), S_OK);
  EXPECT_EQ(text, "ISO");
  EXPECT_EQ(standard->GetParentStandard(nullptr), E_INVALIDARG);
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(TransientStandard, MissingParentIsEmptyInOneFormAndAReportedFailureInTheOther) {
  DiagnosticsCapture capture;
  const TransientStandard standard = StandardOf("");
  unsigned short* copy = nullptr;
  EXPECT_EQ(standard->GetParentStandard(&copy), S_OK);
  EXPECT_EQ(Taken(copy), "");
  EXPECT_THAT(capture.errors, IsEmpty());
  VyrUnicodeString text = "kept";
  EXPECT_EQ(standard->GetParentStandard(text), E_UNEXPECTED);
  EXPECT_EQ(text, "kept");
  EXPECT_THAT(CheckTexts(capture.errors), ElementsAre("BOOL IS FALSE: no parent standard" + kUnit));
}

TEST(TransientStandard, AnnotationModeIsAlwaysZero) {
  const TransientStandard standard = StandardOf("");
  int mode = 7;
  EXPECT_EQ(standard->GetAnnotationMode(&mode), S_OK);
  EXPECT_EQ(mode, 0);
  EXPECT_EQ(standard->GetAnnotationMode(nullptr), E_INVALIDARG);
}

TEST(TransientStandard, ReservedOperationsAreReportedAndNotImplemented) {
  constexpr std::array reserved = {
      &Standard::ReservedA, &Standard::ReservedB, &Standard::ReservedC, &Standard::ReservedD,
      &Standard::ReservedE, &Standard::ReservedF, &Standard::ReservedG, &Standard::ReservedH,
      &Standard::ReservedI, &Standard::ReservedJ, &Standard::ReservedK, &Standard::ReservedL,
      &Standard::ReservedM, &Standard::ReservedN, &Standard::ReservedO};
  static_assert(reserved.size() == 15);
  const TransientStandard standard = StandardOf("");
  for (const auto operation : reserved) {
    const DiagnosticsCapture capture;
    EXPECT_EQ((standard.Get()->*operation)(), E_NOTIMPL);
    EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(": TO_BE_IMPLEMENTED..." + kUnit));
  }
}

TEST(TransientStandardVersion, IsTheValueThatTheStandardHolds) {
  const DiagnosticsCapture capture;
  const TransientStandard standard =
      StandardOf("<std:node name='Version'><std:intval>170</std:intval></std:node>");
  EXPECT_EQ(standard->GetVersion(), 170);
  EXPECT_EQ(standard->GetVersion(), 170);
  int version = 0;
  EXPECT_EQ(VyrQuery<VyrIDftStyleManager>(static_cast<VyrIDftStandard*>(standard.Get()))
                ->GetVersion(&version),
            S_OK);
  EXPECT_EQ(version, 170);
  EXPECT_EQ(standard->GetVersion(nullptr), E_INVALIDARG);
  EXPECT_EQ(CountOf(*standard), 1u);
  EXPECT_THAT(capture.errors, IsEmpty());
}

int ClassifiedVersion(const std::string& file) {
  VyrUnicodeString path = file;
  VyrUnicodeString standardClass;
  int version = -2;
  VyrDftStandardServices::GetStandardClassAndVersion(path, standardClass, version);
  return version;
}

TEST(TransientStandardVersion, OfAStandardThatDoesNotTellIsThatOfItsFileAndKept) {
  // What came with release 10, which wrote version 2, and nothing of any later one.
  const TemporaryFolder folder;
  const std::string file =
      folder.Write("old.xml", StandardText(std::string(kParent) + "<std:node name='Annotation'/>"));
  const DiagnosticsCapture capture;
  const TransientStandard standard(new Standard(file, "old"));
  EXPECT_EQ(standard->GetVersion(), 2);
  std::filesystem::remove(file);
  EXPECT_EQ(standard->GetVersion(), 2);
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(TransientStandardVersion, ThatIsNoIntegerIsReportedAndReadFromTheFile) {
  const TemporaryFolder folder;
  const std::string file = folder.Write(
      "odd.xml", StandardText("<std:node name='Version'><std:strval>170</std:strval></std:node>"));
  DiagnosticsCapture capture;
  const int classified = ClassifiedVersion(file);
  capture.Clear();
  EXPECT_EQ(TransientStandard(new Standard(file, "odd"))->GetVersion(), classified);
  ASSERT_FALSE(capture.errors.empty());
  EXPECT_THAT(CheckText(capture.errors.front()), HasSubstr("Unexpected value type"));
}

TEST(TransientStandardVersion, OfAFileThatCannotBeReadIsWhatTheClassifierSays) {
  const DiagnosticsCapture capture;
  const TransientStandard standard(new Standard("/no/such.xml", "x"));
  EXPECT_EQ(standard->GetVersion(), ClassifiedVersion("/no/such.xml"));
}

TEST(TransientStandardVersion, ShippedStandardsAreCurrent) {
  for (const char* name : {"ISO", "JIS", "ANSI-ASME"}) {
    EXPECT_EQ(ShippedStandard(name)->GetVersion(), 220) << name;
  }
}

/// What a standard says that could not be loaded.
void ExpectNothingIsFound(Standard& standard) {
  const DiagnosticsCapture capture;
  int number = 5;
  double real = 5;
  VyrUnicodeString text = "kept";
  VyrUnicodeString* texts = nullptr;
  int count = 5;
  EXPECT_EQ(standard.GetValue("a", 1, number), E_FAIL);
  EXPECT_EQ(standard.GetValue("a", 1, real), E_FAIL);
  EXPECT_EQ(standard.GetValue("a", 1, text), E_FAIL);
  EXPECT_EQ(standard.GetValue("a", &number, &count), E_FAIL);
  EXPECT_EQ(standard.GetValue("a", &real, &count), E_FAIL);
  EXPECT_EQ(standard.GetValue("a", &texts, &count), E_FAIL);
  EXPECT_EQ(number + count, 10);
  EXPECT_EQ(real, 5);
  EXPECT_EQ(text, "kept");
  EXPECT_EQ(standard.HasNode(""), 0);
  VyrDftStandardValueType type;
  EXPECT_EQ(standard.GetValueType("a", &type, nullptr), E_FAIL);
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST(TransientStandardLoading, FileThatCannotBeReadIsReportedWithPlaceAndReason) {
  const TemporaryFolder folder;
  const std::string missing = folder / "missing.xml";
  const std::string broken = folder.Write("broken.xml", "<a>\n<b>\n</a>\n");
  struct {
    std::string file, place;
  } const cases[] = {{missing, missing + ": "}, {broken, broken + ":3: "}};
  for (const auto& test : cases) {
    const DiagnosticsCapture capture;
    const TransientStandard standard(new Standard(test.file, "x"));
    ASSERT_EQ(capture.errors.size(), 2u);
    EXPECT_THAT(capture.errors[0], StartsWith(test.place));
    EXPECT_GT(capture.errors[0].size(), test.place.size() + 1);
    EXPECT_EQ(capture.errors[0].find('\n'), capture.errors[0].size() - 1);
    EXPECT_EQ(CheckText(capture.errors[1]), ": the standard cannot be read" + kUnit);
    ExpectNothingIsFound(*standard);
  }
}

TEST(TransientStandardLoading, FileThatIsNoStandardLoadsAndHoldsNothing) {
  const TemporaryFolder folder;
  const DiagnosticsCapture capture;
  const TransientStandard standard(new Standard(folder.Write("page.xml", "<html/>"), "page"));
  EXPECT_THAT(capture.errors, IsEmpty());
  ExpectNothingIsFound(*standard);
}

TEST(TransientStandardLoading, HappensOnce) {
  const TransientStandard standard = StandardOf(kParent);
  const DiagnosticsCapture capture;
  EXPECT_EQ(standard->Load(), E_UNEXPECTED);
  EXPECT_THAT(CheckTexts(capture.errors),
              ElementsAre("BOOL IS FALSE: a document is already held" + kUnit));
  EXPECT_EQ(standard->HasNode("Dimension"), 1);
}

TEST(TransientStandardLoading, TakesAnotherFileOnceTheFirstCouldNotBeRead) {
  const TemporaryFolder folder;
  const DiagnosticsCapture capture;
  const TransientStandard standard(new Standard(folder / "late.xml", "late"));
  EXPECT_EQ(standard->GetVersion(), 1) << "that of a document without content";
  folder.Write("late.xml", StandardText(std::string(kParent) +
                                        "<std:node name='Version'><std:intval>220</std:intval>"
                                        "</std:node>"));
  EXPECT_EQ(standard->Load(), S_OK);
  EXPECT_EQ(standard->HasNode("Dimension"), 1);
  EXPECT_EQ(standard->GetVersion(), 220);
}

TEST(TransientStandardLoading, SetsTheOptionsAndTraces) {
  HostDOM host(StandardText(kParent));
  const TraceOn trace("DifCptWithStd");
  ASSERT_TRUE(trace.IsFound());
  EXPECT_STREQ(VyrTrace::Find("DifCptWithStd")->GetTitle(), "VyrDifTransientStandard traces");
  {
    const DiagnosticsCapture capture;
    const TransientStandard standard(new Standard("any.xml", "Any"));
    EXPECT_THAT(host.optionsSet, ElementsAre("VyrDoValidation=false", "VyrEnableNameSpaces=true"));
    EXPECT_THAT(
        capture.traces,
        ElementsAre("{ VyrDifTransientStandard::Load\n", StartsWith("  Alias: 'Any'\tAddress:(0x"),
                    "  VyrIXMLDOMDocumentBuilder supported options:\n", "    VyrDoValidation\n",
                    "    VyrEnableNameSpaces\n", "  VyrDoValidation option found\n",
                    "  VyrEnableNameSpaces option found\n", "  XML has been parsed!\n",
                    "} VyrDifTransientStandard::Load\n"));
  }
  host.options = {kVyrEnableNameSpaces};
  host.optionsSet.clear();
  const DiagnosticsCapture capture;
  const TransientStandard standard(new Standard("any.xml", "Any"));
  EXPECT_THAT(host.optionsSet, ElementsAre("VyrEnableNameSpaces=true"));
  EXPECT_THAT(capture.traces,
              testing::Contains("  Warning: VyrDoValidation is not supported; we assume that "
                                "parser is not validating\n"));
}

TEST(TransientStandardLoading, FrameworkOfTheHostThatLacksSomethingIsReported) {
  struct {
    void (*spoil)(HostDOM&);
    std::string report;
  } const cases[] = {
      {[](HostDOM& host) { host.builderResult = E_FAIL; }, "BOOL IS FALSE: no document builder"},
      {[](HostDOM& host) { host.hasBuilder = false; }, "ON POINTER : NULL handler"},
      {[](HostDOM& host) { host.options = {kVyrDoValidation}; }, ": Namespaces not supported!"},
      {[](HostDOM& host) { host.optionResult = E_FAIL; },
       "BOOL IS FALSE: the builder refuses an option"},
  };
  for (const auto& test : cases) {
    HostDOM host(StandardText(kParent));
    test.spoil(host);
    const DiagnosticsCapture capture;
    const TransientStandard standard(new Standard("any.xml", "Any"));
    EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(test.report + kUnit));
    ExpectNothingIsFound(*standard);
  }
}

TEST(TransientStandardLoading, BuilderWithoutADocumentIsReported) {
  for (const bool fails : {false, true}) {
    HostDOM host(StandardText(kParent));
    host.hasDocument = false;
    if (fails) host.buildResult = E_FAIL;
    if (fails) host.problem = {12, "the reason"};
    const DiagnosticsCapture capture;
    const TransientStandard standard(new Standard("any.xml", "Any"));
    ASSERT_EQ(capture.errors.size(), 2u);
    EXPECT_EQ(capture.errors[0],
              fails ? "any.xml:12: the reason\n" : "any.xml: no document was made\n");
    ExpectNothingIsFound(*standard);
  }
}

TEST(TransientStandardLoading, GoesToTheAbendLogInTheDevelopmentStage) {
  const DiagnosticsCapture capture(true);
  const TransientStandard standard(new Standard("/no/such.xml", "x"));
  EXPECT_THAT(capture.errors, ElementsAre(StartsWith("/no/such.xml: ")));
  EXPECT_THAT(CheckTexts(capture.abends), ElementsAre(": the standard cannot be read" + kUnit));
}

}  // namespace
