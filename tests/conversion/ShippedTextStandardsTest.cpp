#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "DiagnosticsCapture.h"
#include "ExpectedKeywords.h"
#include "LegacyText.h"
#include "ParseStandardAccess.h"
#include "TemporaryFolder.h"

namespace {

using Access = VyrDrwParseStandardAccess;
using ValueType = VyrAnnStandardXMLValue::Type;
using testing::IsEmpty;

struct ShippedStandard {
  const char* file;
  const char* parent;
  int id;
};

void PrintTo(const ShippedStandard& standard, std::ostream* out) {
  *out << standard.file;
}

/// A parameter as it stands in a text standard, and the type that its notation tells.
struct Entry {
  std::string name;
  std::string value;
  ValueType type;
};
using Entries = std::vector<Entry>;

struct TextContent {
  Entries general;
  std::vector<Entries> tolerances;
  std::vector<Entries> displays;
};

Entry ReadEntry(const std::string& line) {
  const std::size_t nameEnd = line.find(' ');
  Entry entry{line.substr(0, nameEnd), line.substr(line.find_first_not_of(' ', nameEnd)),
              ValueType::ValueInt};
  std::string& value = entry.value;
  for (const ExpectedKeyword& row : ExpectedKeywords()) {
    if (row.keyword != entry.name) continue;
    if (row.kind == 's' || row.kind == 'w') entry.type = ValueType::ValueString;
    // One length is written without a decimal point, since "0" is what later releases look for.
    if (row.kind == 'f') entry.type = ValueType::ValueFloat;
  }
  if (entry.type != ValueType::ValueString && value.find('.') != std::string::npos) {
    entry.type = ValueType::ValueFloat;
  }
  if (value.front() == '"') {
    value = value.substr(1, value.size() - 2);
    for (std::size_t at = value.find("\"\""); at != std::string::npos;
         at = value.find("\"\"", at + 1)) {
      value.erase(at, 1);
    }
  }
  return entry;
}

/// The content of a shipped file, whose layout is plain: no blanks before a name.
TextContent ReadContent(const std::string& path) {
  TextContent content;
  Entries* entries = &content.general;
  bool inComment = false;
  std::istringstream text(ReadWholeFile(path));
  for (std::string line; std::getline(text, line);) {
    if (line == "BEGIN_COMMENT_BLOCK" || line == "END_COMMENT_BLOCK") {
      inComment = line == "BEGIN_COMMENT_BLOCK";
    } else if (inComment || line.empty()) {
      continue;
    } else if (line == "BEGIN_TOLERANCE") {
      entries = &content.tolerances.emplace_back();
    } else if (line == "BEGIN_NUMERICAL_DISPLAY") {
      entries = &content.displays.emplace_back();
    } else if (line.starts_with("END_")) {
      entries = &content.general;
    } else {
      entries->push_back(ReadEntry(line));
    }
  }
  return content;
}

/// A tree as text, one line per node and value with everything that they hold.
std::string TreeText(const VyrAnnStandardXMLNode& node, const std::string& indentation) {
  std::string text =
      indentation + node.GetNodeName().CString() + " " + std::to_string(node.GetNodeType()) + "\n";
  for (const auto& value : node.GetValues()) {
    text += indentation + "=" + std::to_string(value->GetType()) + " " +
            std::to_string(value->GetRangeVal()) + " " + value->GetValueName().CString() + ":" +
            value->GetValue().CString() + "\n";
  }
  for (const auto& child : node.GetNodes()) text += TreeText(*child, indentation + " ");
  return text;
}

std::string DocumentText(VyrDrwParseStandard& standard) {
  std::string text;
  for (const char* top : {"Root", "Enum", "TypeDef"}) {
    const VyrAnnStandardXMLNode_var node(Access::Document(standard)->GetNodeWithPath(top));
    text += node ? TreeText(*node, "") : "no top\n";
  }
  return text;
}

void ExpectValue(const VyrAnnStandardXMLValue& value, const Entry& entry) {
  EXPECT_EQ(value.GetValue(), VyrUnicodeString(entry.value)) << entry.name;
  EXPECT_EQ(value.GetType(), entry.type) << entry.name;
}

/// Groups as instances behind the `predefined` ready-made ones, in the order of the file.
void ExpectGroups(VyrDrwParseStandard& standard, const char* path, const char* type, int predefined,
                  const std::vector<Entries>& groups) {
  const VyrAnnStandardXMLNode_var formats(Access::Document(standard)->GetNodeWithPath(path));
  ASSERT_TRUE(formats);
  ASSERT_EQ(formats->GetNumOfNode(), predefined + static_cast<int>(groups.size()));
  std::size_t place = static_cast<std::size_t>(predefined);
  for (const Entries& group : groups) {
    const VyrAnnStandardXMLNode& instance = *formats->GetNodes()[place++];
    EXPECT_EQ(instance.GetNodeType(), VyrAnnStandardXMLNode::NodeInstance);
    EXPECT_EQ(instance.GetNodeName(), type);
    ASSERT_EQ(instance.GetValues().size(), group.size());
    for (std::size_t i = 0; i < group.size(); ++i) {
      const VyrAnnStandardXMLValue& value = *instance.GetValues()[i];
      // The type calls the field that names an instance "Name".
      EXPECT_EQ(value.GetValueName(), VyrUnicodeString(i == 0 ? "Name" : group[i].name));
      ExpectValue(value, group[i]);
    }
  }
}

class ShippedText : public testing::TestWithParam<ShippedStandard> {
 protected:
  ShippedText() : path_(std::string(HOL_STANDARDS "/legacy/") + GetParam().file), text_(path_) {}
  void SetUp() override {
    ASSERT_EQ(text_.DecodeText(), S_OK)
        << text_.GetProblem().line << ": " << text_.GetProblem().text.CString();
  }
  std::string Save(VyrDrwParseStandard& standard, const std::string& name) const {
    VyrDrwParseStandardUpgradeOptions options;
    EXPECT_EQ(standard.EncodeToFile((folder_ / name).c_str(), 1, options), S_OK);
    return folder_ / name;
  }

  DiagnosticsCapture capture_;
  TemporaryFolder folder_;
  std::string path_;
  VyrDrwParseStandard text_;
};

TEST_P(ShippedText, TellsItsParentStandard) {
  EXPECT_EQ(text_.GetParentStandard(), GetParam().parent);
  EXPECT_EQ(text_.GetParentStandardId(), GetParam().id);
  EXPECT_EQ(text_.GetVersion(), 0);
  EXPECT_THAT(capture_.errors, IsEmpty());
}

TEST_P(ShippedText, HoldsEveryParameterIncludingTheOptionalOnes) {
  const TextContent content = ReadContent(path_);
  EXPECT_EQ(content.general.size(), 117u);
  for (const Entries& group : content.tolerances) EXPECT_EQ(group.size(), 19u);
  for (const Entries& group : content.displays) EXPECT_EQ(group.size(), 35u);
  EXPECT_FALSE(content.tolerances.empty());
  EXPECT_FALSE(content.displays.empty());
  EXPECT_EQ(Access::Parameters(text_).size(),
            117 + 19 * content.tolerances.size() + 35 * content.displays.size());
}

TEST_P(ShippedText, ConvertedStandardHoldsEveryParameterAndEveryGroup) {
  VyrDrwParseStandard standard(Save(text_, "first.xml"));
  standard.Decode();
  EXPECT_EQ(standard.GetVersion(), 1);
  EXPECT_EQ(standard.GetParentStandard(), GetParam().parent);
  EXPECT_EQ(standard.GetParentStandardId(), GetParam().id);
  const TextContent content = ReadContent(path_);
  for (const Entry& entry : content.general) {
    const VyrAnnStandardXMLNode_var node(
        Access::Document(standard)->GetNodeWithPath("Root.Dimension." + entry.name));
    ASSERT_TRUE(node) << entry.name;
    ASSERT_EQ(node->GetNumOfValue(), 1);
    ExpectValue(*node->GetValues().front(), entry);
  }
  ExpectGroups(standard, "Root.ToleranceFormats", "ToleranceDisplay", 1, content.tolerances);
  ExpectGroups(standard, "Root.ValueFormats", "NumericalDisplay", 8, content.displays);
  EXPECT_THAT(capture_.errors, IsEmpty());
}

TEST_P(ShippedText, DecodingAndEncodingKeepsTheTrees) {
  VyrDrwParseStandard first(Save(text_, "first.xml"));
  first.Decode();
  VyrDrwParseStandard second(Save(first, "second.xml"));
  second.Decode();
  EXPECT_EQ(second.GetVersion(), 1);
  EXPECT_EQ(second.GetParentStandard(), GetParam().parent);
  EXPECT_EQ(DocumentText(second), DocumentText(first));
  EXPECT_EQ(DocumentText(first), DocumentText(text_));
  EXPECT_EQ(ReadWholeFile(folder_ / "second.xml"), ReadWholeFile(folder_ / "first.xml"));
  EXPECT_THAT(capture_.errors, IsEmpty());
}

TEST_P(ShippedText, HasSeveralGroupsAndTheDisplaysThatLaterContentRefersTo) {
  const TextContent content = ReadContent(path_);
  EXPECT_GE(content.tolerances.size(), 2u);
  std::vector<std::string> displays;
  for (const Entries& group : content.displays) displays.push_back(group.front().value);
  EXPECT_THAT(displays, testing::IsSupersetOf({"NUM.DIMM", "NUM.ADMS", "FEET-INC"}));
}

TEST(ShippedTexts, AsmeIsAnsiWithAnotherDatumMode) {
  TextContent ansi = ReadContent(HOL_STANDARDS "/legacy/ANSI.txt");
  const TextContent asme = ReadContent(HOL_STANDARDS "/legacy/ASME.txt");
  for (Entry& entry : ansi.general) {
    if (entry.name == "TXTDatumMode") {
      EXPECT_EQ(entry.value, "2");
      entry.value = "1";
    }
  }
  const auto flat = [](const TextContent& content) {
    std::string text;
    const auto add = [&](const Entries& entries) {
      for (const Entry& entry : entries) text += entry.name + "=" + entry.value + "\n";
    };
    add(content.general);
    for (const Entries& group : content.tolerances) add(group);
    for (const Entries& group : content.displays) add(group);
    return text;
  };
  EXPECT_EQ(flat(asme), flat(ansi));
}

INSTANTIATE_TEST_SUITE_P(All, ShippedText,
                         testing::Values(ShippedStandard{"ISO.txt", "ISO", 4},
                                         ShippedStandard{"JIS.txt", "JIS", 8},
                                         ShippedStandard{"ANSI.txt", "ANSI", 1},
                                         ShippedStandard{"ASME.txt", "ASME", 2}),
                         [](const auto& test) { return std::string(test.param.parent); });

}  // namespace
