#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iomanip>
#include <iterator>
#include <locale>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "DiagnosticsCapture.h"
#include "VyrBaseUnknown.h"
#include "VyrDftStandardServices.h"

struct VyrDftStandardServicesAccess {
  static HRESULT GetEnumNames(VyrListValVyrUnicodeString& names) {
    return VyrDftStandardServices::GetEnumNames(names);
  }
};

namespace {

using Services = VyrDftStandardServices;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr VyrFormatOrientationsType kUntouched = static_cast<VyrFormatOrientationsType>(77);

// --- Orientations --------------------------------------------------------------------------------

TEST(SheetOrientations, NamesAndNumbersAreInverse) {
  const std::pair<int, const char*> orientations[] = {{0, "LandscapeByDefault"},
                                                      {1, "PortraitByDefault"},
                                                      {2, "PortraitOnly"},
                                                      {3, "LandscapeOnly"}};
  for (const auto& [number, word] : orientations) {
    VyrFormatOrientationsType orientation = kUntouched;
    EXPECT_EQ(Services::GetEnumFromName(word, orientation), S_OK);
    EXPECT_EQ(orientation, number) << word;
    VyrUnicodeString name;
    EXPECT_EQ(Services::GetNameFromEnum(orientation, name), S_OK);
    EXPECT_EQ(name, word);
  }
}

TEST(SheetOrientations, UnknownWordFailsAndLeavesTheNumber) {
  for (const char* word : {"", "Landscape", "landscapebydefault", "PortraitOnly ", "0"}) {
    VyrFormatOrientationsType orientation = kUntouched;
    EXPECT_EQ(Services::GetEnumFromName(word, orientation), E_FAIL) << word;
    EXPECT_EQ(orientation, kUntouched);
  }
}

TEST(SheetOrientations, UnknownNumberFailsAndLeavesTheWord) {
  for (const int number : {-1, 4, 77}) {
    VyrUnicodeString word = "old";
    EXPECT_EQ(Services::GetNameFromEnum(static_cast<VyrFormatOrientationsType>(number), word),
              E_FAIL);
    EXPECT_EQ(word, "old");
  }
}

TEST(SheetOrientations, NamesAreListedPortraitFirst) {
  VyrListValVyrUnicodeString names = {"old"};
  EXPECT_EQ(VyrDftStandardServicesAccess::GetEnumNames(names), S_OK);
  EXPECT_THAT(names, ElementsAre("PortraitByDefault", "LandscapeByDefault", "PortraitOnly",
                                 "LandscapeOnly"));
}

// --- Formats -------------------------------------------------------------------------------------

/// A standard that answers what a test says and notes what it was asked.
class FakeStandard final : public VyrImplements<VyrIDftStandard> {
 public:
  static VyrVar<FakeStandard> Make() { return VyrVar<FakeStandard>(new FakeStandard); }

  std::vector<VyrDrwStdSheetFormat> formats;
  std::vector<std::string> orientations;
  int count = 0;
  HRESULT typeResult = S_OK;
  std::map<std::string, HRESULT> failures;  ///< by path
  std::vector<std::string> asked;

  void Add(const char* name, double width, double height, const char* orientation) {
    formats.push_back({name, width, height, 0, 0});
    orientations.emplace_back(orientation);
    count = static_cast<int>(formats.size());
  }

  HRESULT GetValueType(const char* path, VyrDftStandardValueType* type, int* found) override {
    EXPECT_STREQ(path, "SheetFormat");
    *type = VyrDftCompoundValue;
    *found = count;
    return typeResult;
  }
  HRESULT GetValue(const char* path, int index, VyrUnicodeString& value) override {
    const HRESULT result = Result(path, index);
    if (VyrFailed(result)) return result;
    const bool isName = std::string(path) == "SheetFormat.Name";
    EXPECT_TRUE(isName || std::string(path) == "SheetFormat.FormatOrientationType") << path;
    value = isName ? formats[index - 1].name : VyrUnicodeString(orientations[index - 1]);
    return S_OK;
  }
  HRESULT GetValue(const char* path, int index, double& value) override {
    const HRESULT result = Result(path, index);
    if (VyrFailed(result)) return result;
    const bool isWidth = std::string(path) == "SheetFormat.Width";
    EXPECT_TRUE(isWidth || std::string(path) == "SheetFormat.Height") << path;
    value = isWidth ? formats[index - 1].width : formats[index - 1].height;
    return S_OK;
  }

  HRESULT GetName(unsigned short**) override { return E_NOTIMPL; }
  HRESULT GetParentStandard(unsigned short**) override { return E_NOTIMPL; }
  HRESULT GetValue(const char*, VyrUnicodeString**, int*) override { return E_NOTIMPL; }
  HRESULT GetValue(const char*, double*, int*) override { return E_NOTIMPL; }
  HRESULT GetValue(const char*, int, int&) override { return E_NOTIMPL; }
  HRESULT GetValue(const char*, int*, int*) override { return E_NOTIMPL; }
  HRESULT ReservedA() override { return E_NOTIMPL; }

 private:
  HRESULT Result(const char* path, int index) {
    asked.push_back(std::string(path) + " " + std::to_string(index));
    if (const auto failure = failures.find(path); failure != failures.end()) return failure->second;
    return index >= 1 && index <= static_cast<int>(formats.size()) ? S_OK : E_FAIL;
  }
};

/// Name, width, height, orientation and the reserved place of a format.
std::string TextOf(const VyrDrwStdSheetFormat& format) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << format.name.CString() << std::fixed << std::setprecision(2) << ' ' << format.width
       << " x " << format.height << ' ' << format.orientation << ' ' << format.reserved;
  return text.str();
}

/// Texts of all formats of a standard, or none when they cannot be read.
std::vector<std::string> FormatsOf(VyrIDftStandard& standard) {
  VyrDrwStdSheetFormat* formats = nullptr;
  int count = -1;
  EXPECT_EQ(Services::GetSheetFormats(&standard, &formats, count), S_OK);
  const std::unique_ptr<VyrDrwStdSheetFormat[]> owned(formats);
  std::vector<std::string> texts;
  for (int i = 0; i < count; ++i) texts.push_back(TextOf(formats[i]));
  return texts;
}

TEST(SheetFormats, FieldsOfOneFormatAreReadAtItsIndex) {
  const auto standard = FakeStandard::Make();
  standard->Add("first", 1, 2, "LandscapeOnly");
  standard->Add("A0 ISO", 1189, 841, "PortraitOnly");
  VyrDrwStdSheetFormat format{"old", 9, 9, 9, 0};
  EXPECT_EQ(Services::GetFormatData(*standard, 2, format), S_OK);
  EXPECT_EQ(TextOf(format), "A0 ISO 1189.00 x 841.00 2 0");
  EXPECT_THAT(standard->asked,
              ElementsAre("SheetFormat.Name 2", "SheetFormat.Width 2", "SheetFormat.Height 2",
                          "SheetFormat.FormatOrientationType 2"));
}

TEST(SheetFormats, FirstFieldThatCannotBeReadFailsTheFormat) {
  const char* const paths[] = {"SheetFormat.Name", "SheetFormat.Width", "SheetFormat.Height",
                               "SheetFormat.FormatOrientationType"};
  for (std::size_t failing = 0; failing < std::size(paths); ++failing) {
    for (const HRESULT result : {E_FAIL, E_UNEXPECTED}) {
      const auto standard = FakeStandard::Make();
      standard->Add("A0", 1, 2, "PortraitOnly");
      standard->failures[paths[failing]] = result;
      VyrDrwStdSheetFormat format{"old", 9, 8, 7, 0};
      EXPECT_EQ(Services::GetFormatData(*standard, 1, format), result) << paths[failing];
      EXPECT_EQ(standard->asked.size(), failing + 1) << "it went on";
      EXPECT_EQ(TextOf(format), "old 9.00 x 8.00 7 0");
    }
  }
}

TEST(SheetFormats, UnknownOrientationFailsTheFormat) {
  const auto standard = FakeStandard::Make();
  standard->Add("A0", 1, 2, "Landscape");
  VyrDrwStdSheetFormat format{"old", 9, 8, 7, 0};
  EXPECT_EQ(Services::GetFormatData(*standard, 1, format), E_FAIL);
  EXPECT_EQ(TextOf(format), "old 9.00 x 8.00 7 0");
}

TEST(SheetFormats, AllFormatsOfAStandardAreHandedOutInOrder) {
  const auto standard = FakeStandard::Make();
  EXPECT_THAT(FormatsOf(*standard), IsEmpty());
  standard->Add("b", 1, 2, "PortraitOnly");
  standard->Add("a", 3, 4, "LandscapeByDefault");
  standard->Add("b", 5, 6, "PortraitByDefault");
  EXPECT_THAT(FormatsOf(*standard),
              ElementsAre("b 1.00 x 2.00 2 0", "a 3.00 x 4.00 0 0", "b 5.00 x 6.00 1 0"));
}

TEST(SheetFormats, ShippedStandardsHaveTheFormatsOfTheirFamily) {
  const std::vector<std::string> sizes = {"1189.00 x 841.00", "841.00 x 594.00", "594.00 x 420.00",
                                          "420.00 x 297.00",  "297.00 x 210.00", "354.00 x 250.00",
                                          "257.00 x 182.00",  "229.00 x 162.00"};
  const std::vector<std::string> letters = {"A0", "A1", "A2", "A3", "A4", "B4", "B5", "C5"};
  for (const std::string family : {"ISO", "JIS"}) {
    const auto opened =
        Services::GetStandardFromFile(std::string(HOL_STANDARDS "/") + family + ".xml", family);
    const auto standard = VyrQuery<VyrIDftStandard>(opened.Get());
    ASSERT_TRUE(standard);
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      expected.push_back(letters[i] + " " + family + " " + sizes[i] + " 0 0");
    }
    EXPECT_EQ(FormatsOf(*standard), expected);
  }
  const auto opened = Services::GetStandardFromFile(HOL_STANDARDS "/ANSI-ASME.xml", "ASME");
  EXPECT_THAT(FormatsOf(*VyrQuery<VyrIDftStandard>(opened.Get())),
              ElementsAre("A ANSI 279.40 x 215.90 0 0", "B ANSI 431.80 x 279.40 0 0",
                          "C ANSI 558.80 x 431.80 0 0", "D ANSI 863.60 x 558.80 0 0",
                          "E ANSI 1117.60 x 863.60 0 0", "F ANSI 1016.00 x 711.20 0 0",
                          "J U.S.Standard 1219.20 x 863.60 0 0", "Letter 279.40 x 215.90 0 0",
                          "Legal 355.60 x 215.90 0 0"));
}

TEST(SheetFormats, OneBadFormatSpoilsThemAllAndIsReported) {
  for (int bad = 0; bad < 3; ++bad) {
    const auto standard = FakeStandard::Make();
    for (int i = 0; i < 3; ++i) standard->Add("A", 1, 2, i == bad ? "?" : "PortraitOnly");
    const DiagnosticsCapture capture;
    VyrDrwStdSheetFormat* formats = nullptr;
    int count = 77;
    EXPECT_EQ(Services::GetSheetFormats(standard.Get(), &formats, count), E_FAIL);
    EXPECT_EQ(formats, nullptr);
    EXPECT_EQ(count, 77);
    EXPECT_THAT(CheckTexts(capture.errors),
                ElementsAre(": Bad imbedded standard structure [VyrDftStandardServices]"));
  }
}

TEST(SheetFormats, FewerFormatsThanCountedAreBadStructure) {
  const auto standard = FakeStandard::Make();
  standard->Add("A", 1, 2, "PortraitOnly");
  standard->count = 2;
  const DiagnosticsCapture capture;
  VyrDrwStdSheetFormat* formats = nullptr;
  int count = 0;
  EXPECT_EQ(Services::GetSheetFormats(standard.Get(), &formats, count), E_FAIL);
  EXPECT_EQ(capture.errors.size(), 1u);
}

TEST(SheetFormats, StandardWithoutFormatsGivesItsOwnResult) {
  for (const HRESULT result : {E_FAIL, E_UNEXPECTED}) {
    const auto standard = FakeStandard::Make();
    standard->Add("A", 1, 2, "PortraitOnly");
    standard->typeResult = result;
    VyrDrwStdSheetFormat* formats = nullptr;
    int count = 77;
    EXPECT_EQ(Services::GetSheetFormats(standard.Get(), &formats, count), result);
    EXPECT_EQ(formats, nullptr);
    EXPECT_EQ(count, 77);
    EXPECT_THAT(standard->asked, IsEmpty());
  }
}

TEST(SheetFormats, NegativeNumberOfFormatsIsRefused) {
  const auto standard = FakeStandard::Make();
  standard->count = -1;
  const DiagnosticsCapture capture;
  VyrDrwStdSheetFormat* formats = nullptr;
  int count = 77;
  EXPECT_EQ(Services::GetSheetFormats(standard.Get(), &formats, count), E_UNEXPECTED);
  EXPECT_EQ(formats, nullptr);
  EXPECT_EQ(capture.errors.size(), 1u);
}

TEST(SheetFormats, BadArgumentsAreRefusedAndReported) {
  const auto standard = FakeStandard::Make();
  standard->Add("A", 1, 2, "PortraitOnly");
  VyrDrwStdSheetFormat there;
  VyrDrwStdSheetFormat* null = nullptr;
  VyrDrwStdSheetFormat* notNull = &there;
  struct {
    VyrIDftStandard* standard;
    VyrDrwStdSheetFormat** formats;
  } const cases[] = {{nullptr, &null}, {standard.Get(), nullptr}, {standard.Get(), &notNull}};
  for (const auto& test : cases) {
    const DiagnosticsCapture capture;
    int count = 77;
    EXPECT_EQ(Services::GetSheetFormats(test.standard, test.formats, count), E_INVALIDARG);
    EXPECT_EQ(count, 77);
    EXPECT_EQ(capture.errors.size(), 1u);
  }
  EXPECT_EQ(notNull, &there);
  EXPECT_EQ(null, nullptr);
}

}  // namespace
