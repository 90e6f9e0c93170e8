#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "DiagnosticsCapture.h"
#include "HostSettings.h"
#include "StandardInMemory.h"
#include "StyleFakes.h"
#include "TemporaryFolder.h"
#include "VyrAnnStandardServices.h"
#include "VyrAnnStandardXMLNode.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDftStandardServices.h"
#include "VyrDftStyleToolbox.h"
#include "VyrDifDftStyle.h"
#include "VyrDrwParseStandard.h"
#include "VyrHolVisuEventsToolbox.h"

// A host's sink may ask the object that reports for more, or let go of it.

namespace {

using testing::IsEmpty;

/// Does something whenever the library traces or reports, but not for what comes of that itself.
class SinkThatDoes {
 public:
  explicit SinkThatDoes(std::function<void()> work) : work_(std::move(work)) {
    const auto sink = [this](std::string_view) { Receive(); };
    before_ = VyrSetDiagnosticSinks({sink, sink, sink, sink});
  }
  SinkThatDoes(const SinkThatDoes&) = delete;
  SinkThatDoes& operator=(const SinkThatDoes&) = delete;
  ~SinkThatDoes() { VyrSetDiagnosticSinks(std::move(before_)); }

  int received = 0;

 private:
  void Receive() {
    if (isBusy_) return;
    ++received;
    isBusy_ = true;
    work_();
    isBusy_ = false;
  }

  std::function<void()> work_;
  VyrDiagnosticSinks before_;
  bool isBusy_ = false;
};

/// All channels on, or none.
class Channels {
 public:
  explicit Channels(bool on) {
    VyrTrace::ForEach([on](VyrTrace& channel) { channel.Switch(on); });
  }
  Channels(const Channels&) = delete;
  Channels& operator=(const Channels&) = delete;
  ~Channels() {
    VyrTrace::ForEach([](VyrTrace& channel) { channel.Switch(false); });
  }
};

std::string Node(const std::string& name, const std::string& content) {
  return "<std:node name='" + name + "'>" + content + "</std:node>\n";
}

/// 20 parameters, lists of 50 entries, styles, formats, thicknesses, and what is reported.
std::string Content() {
  std::string content = Node("Dimension", Node("ParentStandard", "<std:strval>ISO</std:strval>"));
  content += Node("Annotation", "");
  std::string list;
  std::string formats;
  std::string thicknesses;
  for (int i = 0; i < 50; ++i) {
    const std::string number = std::to_string(i);
    content += Node("p" + number, "<std:intval>" + number + "</std:intval>");
    list += "<std:typeval name='Row'><std:intval name='i'>" + number +
            "</std:intval><std:floatval name='f'>" + number +
            "</std:floatval><std:strval name='s'>" + number + "</std:strval></std:typeval>";
  }
  for (int i = 1; i <= 3; ++i) {
    formats += "<std:typeval name='Formats'><std:strval name='Name'>A" + std::to_string(i) +
               "</std:strval><std:floatval name='Width'>1</std:floatval><std:floatval "
               "name='Height'>2</std:floatval><std:strval name='FormatOrientationType'>"
               "PortraitOnly</std:strval></std:typeval>";
    thicknesses += "<std:typeval name='LineThicknessDef'><std:floatval name='mm'>0." +
                   std::to_string(i) + "</std:floatval></std:typeval>";
  }
  const std::string style = Node("Thickness", "<std:intval>5</std:intval>") +
                            Node("Color", "<std:colorval>1 2 3</std:colorval>") +
                            Node("Font", Node("Name", "<std:strval>SICH</std:strval>") +
                                             Node("Size", "<std:floatval>3.5</std:floatval>")) +
                            Node("Odd", "<std:strval>text</std:strval>");
  return content + Node("T", list) + Node("SheetFormat", formats) +
         Node("LineThickness", thicknesses) +
         Node("Styles", Node("Text", Node("Default", style) + Node("Bold", style)));
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += text + ",";
  return joined;
}

template <class Value, class Object>
std::string ScalarOf(Object& object, const char* path, int index = 1) {
  Value value{};
  const HRESULT result = object.GetValue(path, index, value);
  if constexpr (std::is_same_v<Value, VyrUnicodeString>) {
    return std::to_string(result) + ":" + value.CString();
  } else {
    return std::to_string(result) + ":" + std::to_string(value);
  }
}

template <class Number, class Object>
std::string ArrayOf(Object& object, const char* path) {
  std::string text;
  for (const Number number : NumbersOf<Number>(object, path)) text += std::to_string(number) + ",";
  return text;
}

VyrIDftStyle_var StyleOf(VyrDifTransientStandard& standard, const char* name) {
  VyrIDftStyle* style = nullptr;
  standard.GetStyle(Utf16(name), Utf16("Text"), &style);
  return VyrIDftStyle_var(style);
}

std::string NamesOf(VyrDifTransientStandard& standard, const char* type) {
  VyrListValVyrUnicodeString names;
  std::string text = std::to_string(standard.GetStylesNames(type, &names));
  for (const VyrUnicodeString& name : names) text.append(":").append(name.View());
  return text;
}

std::string AvailableStyles(VyrDifTransientStandard& standard) {
  VyrIUnknownList* found = nullptr;
  if (standard.GetAvailableStyles(nullptr, &found, nullptr) != S_OK) return "none";
  const VyrIUnknownList_var list(found);
  unsigned int count = 0;
  list->Count(&count);
  return std::to_string(count);
}

std::string FormatsOf(VyrDifTransientStandard& standard) {
  VyrDrwStdSheetFormat* found = nullptr;
  int count = 0;
  const HRESULT result = VyrDftStandardServices::GetSheetFormats(&standard, &found, count);
  const std::unique_ptr<VyrDrwStdSheetFormat[]> formats(found);
  std::string text = std::to_string(result);
  for (int i = 0; i < count; ++i) text.append(":").append(formats[i].name.View());
  return text;
}

std::string TypeOf(VyrDifTransientStandard& standard, const char* path) {
  auto type = VyrDftUnknownValue;
  int count = 0;
  const HRESULT result = standard.GetValueType(path, &type, &count);
  return std::to_string(result) + ":" + std::to_string(type) + ":" + std::to_string(count);
}

std::string ThicknessIndex(VyrDifTransientStandard& standard) {
  int index = 0;
  standard.GetLineThicknessIndex(0.21, &index);
  return std::to_string(index);
}

std::string GraphicsOf(VyrDifTransientStandard& standard) {
  const VyrIDftStyle_var style = StyleOf(standard, "Default");
  VyrVisPropertiesValues values;
  const HRESULT result =
      VyrDftStyleToolbox::GetPropertiesValueFromStyle(style.Get(), "", VyrVisLines, 0, values);
  return std::to_string(result) + ":" + std::to_string(values.width.value_or(0)) + ":" +
         std::to_string(values.color ? values.color->blue : 0);
}

/// Every kind of query, with an answer that does not depend on what was asked before.
using Query = std::string (*)(VyrDifTransientStandard&);
const std::vector<std::pair<const char*, Query>> kQueries = {
    {"HasNode", [](auto& s) { return std::to_string(s.HasNode("p7")); }},
    {"HasNodeMissing", [](auto& s) { return std::to_string(s.HasNode("none")); }},
    {"HasNodeBadPath", [](auto& s) { return std::to_string(s.HasNode("a'b")); }},
    {"Int", [](auto& s) { return ScalarOf<int>(s, "T.i", 50); }},
    {"Real", [](auto& s) { return ScalarOf<double>(s, "T.f", 50); }},
    {"Text", [](auto& s) { return ScalarOf<VyrUnicodeString>(s, "T.s", 50); }},
    {"PastTheLast", [](auto& s) { return ScalarOf<int>(s, "T.i", 51); }},
    {"WrongType", [](auto& s) { return ScalarOf<double>(s, "T.i", 1); }},
    {"NoText", [](auto& s) { return ScalarOf<VyrUnicodeString>(s, "T", 1); }},
    {"Ints", [](auto& s) { return ArrayOf<int>(s, "T.i"); }},
    {"Reals", [](auto& s) { return ArrayOf<double>(s, "T.f"); }},
    {"Texts", [](auto& s) { return Joined(TextsOf(s, "T.s")); }},
    {"WrongTypes", [](auto& s) { return ArrayOf<double>(s, "T.s"); }},
    {"Type", [](auto& s) { return TypeOf(s, "SheetFormat"); }},
    {"MixedTypes", [](auto& s) { return TypeOf(s, "T.Row"); }},
    {"UnknownType", [](auto& s) { return TypeOf(s, "Text.Default.Color"); }},
    {"Styles", [](auto& s) { return NamesOf(s, "Text"); }},
    {"NoStyles", [](auto& s) { return NamesOf(s, "None"); }},
    {"AvailableStyles", [](auto& s) { return AvailableStyles(s); }},
    {"Thickness", [](auto& s) { return ThicknessIndex(s); }},
    {"Formats", [](auto& s) { return FormatsOf(s); }},
    {"Version", [](auto& s) { return std::to_string(s.GetVersion()); }},
    {"Graphics", [](auto& s) { return GraphicsOf(s); }},
    {"Reserved", [](auto& s) { return std::to_string(s.ReservedA()); }},
    {"Parent",
     [](auto& s) {
       VyrUnicodeString name;
       return std::to_string(s.GetParentStandard(name)) + name.CString();
     }},
    {"Current",
     [](auto& s) {
       unsigned short* name = nullptr;
       s.GetCurrentStyle(Utf16("Text"), &name, nullptr);
       return Taken(name);
     }},
    {"Name",
     [](auto& s) {
       unsigned short* name = nullptr;
       s.GetName(&name);
       return Taken(name);
     }},
};

void AskEverything(VyrDifTransientStandard& standard) {
  for (int i = 0; i < 20; ++i) standard.HasNode(("p" + std::to_string(i)).c_str());
  for (const auto& [name, query] : kQueries) query(standard);
}

class ReentrantSinks : public testing::TestWithParam<bool> {
 protected:
  ReentrantSinks() : path_(folder_.Write("s.xml", StandardText(Content()))) {}
  TransientStandard NewStandard() const {
    return TransientStandard(new VyrDifTransientStandard(path_, "Test"));
  }
  std::string AnswerAlone(Query query) const {
    const DiagnosticsCapture quiet;
    return query(*NewStandard());
  }

  const TemporaryFolder folder_;
  const std::string path_;
};

INSTANTIATE_TEST_SUITE_P(All, ReentrantSinks, testing::Bool(), [](const auto& test) {
  return test.param ? "WithTraces" : "WithReportsOnly";
});

TEST_P(ReentrantSinks, MayAskTheSameStandardEverythingDuringEveryQuery) {
  int received = 0;
  for (const auto& [name, query] : kQueries) {
    const std::string expected = AnswerAlone(query);
    const TransientStandard standard = NewStandard();
    SinkThatDoes sink([&] { AskEverything(*standard); });
    const Channels channels(GetParam());
    for (int pass = 0; pass < 2; ++pass) EXPECT_EQ(query(*standard), expected) << name;
    received += sink.received;
  }
  EXPECT_GT(received, 5);
}

TEST_P(ReentrantSinks, MayLetGoOfTheStandardDuringEveryQuery) {
  int releases = 0;
  for (const auto& [name, query] : kQueries) {
    const std::string expected = AnswerAlone(query);
    // At the first trace or report, the second, ... until there are no more.
    for (int when = 1;; ++when) {
      TransientStandard standard = NewStandard();
      VyrDifTransientStandard& borrowed = *standard;
      int left = when;
      SinkThatDoes sink([&] {
        if (--left == 0) standard = nullptr;
      });
      const Channels channels(GetParam());
      EXPECT_EQ(query(borrowed), expected) << name << ' ' << when;
      if (left > 0) break;
      ++releases;
      if (when > 40) break;
    }
  }
  EXPECT_GT(releases, 5);
}

TEST_P(ReentrantSinks, MayAskTheSameStyleOrLetGoOfIt) {
  const std::string longPath = std::string(500, 'x') + ".Size";
  const std::vector<std::pair<std::string, double>> cases = {
      {"Font.Size", 3.5}, {"Font.None", 0}, {"Odd", 0}};
  for (const bool isReleased : {false, true}) {
    for (const auto& [path, expected] : cases) {
      const TransientStandard standard = NewStandard();
      VyrIDftStyle_var style = StyleOf(*standard, "Default");
      VyrIDftStyle& borrowed = *style;
      SinkThatDoes sink([&] {
        if (isReleased) {
          style = nullptr;
          return;
        }
        double number = 0;
        int count = 0;
        for (const char* other : {"Color", "Font.Name", longPath.c_str(), "", "Thickness"}) {
          style->GetValue(other, 1, number);
          style->GetValue(other, static_cast<int*>(nullptr), &count);
          style->HasNode(other);
        }
      });
      const Channels channels(GetParam());
      double size = 0;
      borrowed.GetValue(path.c_str(), 1, size);
      EXPECT_EQ(size, expected) << path;
    }
  }
}

TEST_P(ReentrantSinks, MayLetGoOfStandardAndStyleTogether) {
  for (int when = 1; when < 30; ++when) {
    TransientStandard standard = NewStandard();
    VyrIDftStyle_var style = StyleOf(*standard, "Default");
    VyrIDftStyle& borrowed = *style;
    int left = when;
    SinkThatDoes sink([&] {
      if (--left != 0) return;
      style = nullptr;
      standard = nullptr;
    });
    const Channels channels(GetParam());
    int number = 0;
    borrowed.GetValue("Odd", 1, number);
    EXPECT_EQ(number, 0);
    if (left > 0) break;
  }
}

TEST_P(ReentrantSinks, MayInstallOtherSinksAndSwitchChannels) {
  for (const auto& [name, query] : kQueries) {
    const std::string expected = AnswerAlone(query);
    const TransientStandard standard = NewStandard();
    const DiagnosticsCapture around;
    const Channels channels(GetParam());
    const std::string held(1000, 'x');
    std::size_t seen = 0;
    const auto last = [&seen, held](std::string_view) { seen += held.size(); };
    const auto first = [&seen, held, last](std::string_view) {
      VyrSetDiagnosticSinks({last, last, last, last});
      VyrTrace::ForEach([](VyrTrace& channel) { channel.Switch(!channel.IsOn()); });
      seen += held.size();
    };
    VyrSetDiagnosticSinks({first, first, first, first});
    EXPECT_EQ(query(*standard), expected) << name;
    EXPECT_EQ(seen % held.size(), 0u);
    EXPECT_EQ(VyrTrace::Indentation(), "") << name;
  }
}

TEST(ReentrantListener, MayLetGoOfStyleAndElement) {
  const DiagnosticsCapture capture;
  VyrIDftStyle_var style(new FakeStyle);
  VyrVar<FakeDraftingElement> element(new FakeDraftingElement(VyrIDftStandard_var()));
  element->shown = {{VyrVisLines, {}}, {VyrVisPoints, {}}};
  int events = 0;
  auto before = VyrHolVisuEventsToolbox::SetModifyListener([&](auto&&...) {
    ++events;
    style = nullptr;
    element = nullptr;
    return S_OK;
  });
  EXPECT_EQ(VyrDftStyleToolbox::SetGraphicProperties(style.Get(), "", element.Get(), 0, 0,
                                                     DftStyleOnCreation, 0),
            S_OK);
  VyrHolVisuEventsToolbox::SetModifyListener(std::move(before));
  EXPECT_EQ(events, 2);
}

// --- Documents, cached services, the converter ---------------------------------------------------

/// A standard with 32 undefined enumeration values.
std::string Undefined() {
  std::string content = "<std:enumval name='YesNo'>Maybe</std:enumval>";
  for (int level = 0; level < 5; ++level) {
    content = Node("n" + std::to_string(level), content + content);
  }
  return StandardText(content);
}

TEST_P(ReentrantSinks, MayAskADocumentThatIsCheckedOrLetGoOfItsTree) {
  for (const bool isReleased : {false, true}) {
    VyrAnnStandardXMLParser document;
    ASSERT_EQ(document.DecodeXML(Undefined(), 0), 0);
    VyrAnnStandardXMLNode_var root(
        VyrAnnStandardXMLNode_var(document.GetNodeWithPath("Root"))->Clone());
    VyrAnnStandardXMLNode_var enums(
        VyrAnnStandardXMLNode_var(document.GetNodeWithPath("Enum"))->Clone());
    VyrAnnStandardXMLNode& top = *root;
    SinkThatDoes sink([&] {
      document.GetVersion();
      document.Check();
      document.GetValueWithPath("Root.n4.n3");
      VyrUnicodeString text;
      document.SaveInString(text);
      if (!isReleased) return;
      root = nullptr;
      enums = nullptr;
    });
    const Channels channels(GetParam());
    EXPECT_EQ(top.Check(enums.Get(), "Enum undefined: Root"), 32);
    EXPECT_EQ(document.Check(), 0);
    EXPECT_GT(sink.received, 1);
  }
}

TEST_P(ReentrantSinks, MayReadAndWriteDuringReadingAndWriting) {
  const std::string refused = StandardText("<std:strval/>");
  for (const std::string& text : {StandardText(Content()), refused}) {
    VyrAnnStandardXMLParser document;
    int inner = 0;
    SinkThatDoes sink([&] {
      VyrAnnStandardXMLParser other;
      inner += other.DecodeXML(StandardText(Content()), 0);
      VyrUnicodeString written;
      other.SaveInString(written);
      document.GetVersion();
      document.Check();
    });
    const Channels channels(GetParam());
    EXPECT_EQ(document.DecodeXML(text, 0), text == refused ? 1 : 0);
    EXPECT_EQ(document.GetProblem().IsEmpty(), text != refused);
    EXPECT_EQ(inner, 0);
    VyrUnicodeString written;
    document.SaveInString(written);
    EXPECT_FALSE(written.IsEmpty());
  }
}

TEST_P(ReentrantSinks, MayOpenAndReleaseCachedStandards) {
  const TemporaryFolder copies;
  const EnvironmentVariable output("WOB_ODT_OUT", copies.Path().string());
  const StandardFolders folders({folder_.Path().string()});
  folder_.Write("bad.xml", Undefined());
  const auto ask = [](const char* name) {
    VyrAnnStandardServices services(name);
    VyrDrwStdSheetFormat* formats = nullptr;
    VyrDrwStdSheetStyle* styles = nullptr;
    int count = 0;
    services.GetAvailableSheetFormats(&formats, count);
    services.GetAvailableSheetStyles(&styles, count);
    delete[] formats;
    delete[] styles;
    services.CheckXMLStructure();
    VyrUnicodeString parent;
    return services.GetStandardParentName(parent) == S_OK ? std::string(parent.View()) : "none";
  };
  SinkThatDoes sink([&] {
    ask("s");
    ask("bad");
    VyrAnnStandardServices::ReleaseCachedDocument();
    VyrDftStandardServices::GetOOTBStandard("ISO");
    VyrDftStandardServices::ReleaseOOTBStandards();
  });
  const Channels channels(GetParam());
  EXPECT_EQ(ask("s"), "ISO");
  EXPECT_EQ(ask("bad"), "none");
  EXPECT_FALSE(VyrDftStandardServices::GetOOTBStandard("ISO"));
  EXPECT_GT(sink.received, 2);
  VyrAnnStandardServices::ReleaseCachedDocument();
}

TEST_P(ReentrantSinks, MayAskTheConverterThatReads) {
  const std::string ansi =
      StandardText(Node("Dimension", Node("ParentStandard", "<std:strval>ANSI</std:strval>")));
  for (const std::string& text : {ansi, std::string("<other/>")}) {
    VyrDrwParseStandard converter(folder_.Write("c.xml", text));
    SinkThatDoes sink([&] {
      converter.Decode();
      converter.Check();
      converter.GetParentStandardId();
      VyrUnicodeString file = folder_ / "c.xml";
      VyrUnicodeString standardClass;
      int version = 0;
      VyrDftStandardServices::GetStandardClassAndVersion(file, standardClass, version);
    });
    const Channels channels(GetParam());
    converter.Decode();
    converter.Check();
    EXPECT_EQ(converter.GetParentStandard(), text == ansi ? "ANSI" : "");
    EXPECT_EQ(converter.GetVersion(), 1);
    EXPECT_GT(sink.received, 0);
  }
}

}  // namespace
