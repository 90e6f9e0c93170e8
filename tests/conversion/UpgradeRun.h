#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "ParseStandardAccess.h"
#include "VyrAnnStandardChanges.h"

// Standards that tests bring from one version to another.

inline constexpr const char* kParents[] = {"ISO", "JIS", "ANSI", "ASME"};
/// Every version that a step leads to, after 1: the document composed from a text standard.
inline constexpr int kVersions[] = {1,   2,   30,  40,  50,  60,  70,  80,  90,  100, 110,
                                    120, 130, 140, 150, 160, 170, 180, 190, 200, 210, 220};
inline constexpr int kCurrentVersion = 220;

/// A shipped text standard and the option bit of its upgrade.
struct Origin {
  const char* parent;
  bool isShipped;

  bool IsIsoOrJis() const {
    return std::string_view(parent) == "ISO" || std::string_view(parent) == "JIS";
  }
};

inline void PrintTo(const Origin& origin, std::ostream* out) {
  *out << origin.parent << (origin.isShipped ? ", shipped" : ", of a site");
}

inline std::vector<Origin> AllOrigins() {
  std::vector<Origin> origins;
  for (const char* parent : kParents) {
    for (const bool isShipped : {false, true}) origins.push_back({parent, isShipped});
  }
  return origins;
}

inline std::string OriginName(const testing::TestParamInfo<Origin>& info) {
  return std::string(info.param.parent) + (info.param.isShipped ? "Shipped" : "OfASite");
}

inline VyrDrwParseStandardUpgradeOptions OptionsOf(bool isShipped) {
  VyrDrwParseStandardUpgradeOptions options;
  options.OOTBStandard = isShipped ? 1 : 0;
  return options;
}

inline std::string SavedText(VyrAnnStandardXMLParser& document) {
  VyrUnicodeString text;
  document.SaveInString(text);
  return text.CString();
}

/// Differences of two documents, one a line: "+ path new", "~ path new" and "- path".
inline std::vector<std::string> ChangeLines(VyrAnnStandardXMLParser& before,
                                            VyrAnnStandardXMLParser& after) {
  std::vector<std::string> lines;
  for (const char* top : {"Enum", "TypeDef", "Root"}) {
    const VyrAnnStandardXMLNode_var old(before.GetNodeWithPath(top));
    const VyrAnnStandardXMLNode_var now(after.GetNodeWithPath(top));
    for (const VyrAnnStandardChange& change : VyrCompareStandards(*old, *now)) {
      std::string line = change.kind == VyrAnnStandardChange::Kind::Added     ? "+ "
                         : change.kind == VyrAnnStandardChange::Kind::Changed ? "~ "
                                                                              : "- ";
      line += change.path.CString();
      if (!change.after.IsEmpty()) line += std::string(" ") + change.after.CString();
      lines.push_back(line);
    }
  }
  return lines;
}

/// A copy that shares nothing with its source: what saving and reading make of it.
inline std::unique_ptr<VyrAnnStandardXMLParser> CopyOf(VyrAnnStandardXMLParser& document) {
  auto copy = std::make_unique<VyrAnnStandardXMLParser>();
  EXPECT_EQ(copy->DecodeXML(SavedText(document), 0), 0);
  return copy;
}

/// A standard that is upgraded step by step, and edited between the steps.
class UpgradeRun {
 public:
  using Access = VyrDrwParseStandardAccess;

  /// A shipped text standard as it is at `version`.
  UpgradeRun(const Origin& origin, int version)
      : origin_(origin), standard_(std::string(HOL_STANDARDS "/legacy/") + origin.parent + ".txt") {
    EXPECT_GE(standard_.DecodeText(), 0);
    auto options = OptionsOf(origin.isShipped);
    EXPECT_GE(standard_.Upgrade(version, options), 0);
  }
  UpgradeRun(const char* parent, int version) : UpgradeRun(Origin{parent, false}, version) {}

  VyrDrwParseStandard& Standard() { return standard_; }
  VyrAnnStandardXMLParser& Document() { return *Access::Document(standard_); }

  /// The next steps see this parent standard.
  void SetParent(const char* parent) { Access::ParentStandard(standard_) = parent; }
  void Change(const std::string& command) {
    EXPECT_EQ(Document().ChangeValueWithPath(command), 0) << command;
  }
  void Delete(const std::string& path) {
    EXPECT_EQ(Document().DeleteNodeWithPath(path), 0) << path;
  }
  void AddNode(const std::string& command) {
    EXPECT_EQ(Document().AddNodeWithPath(command, 0), 0) << command;
  }
  void AddValue(const std::string& command) {
    EXPECT_EQ(Document().AddValueWithPath(command, 1), 0) << command;
  }
  /// Adds a style that is a copy of the default one of its family.
  void AddStyle(const std::string& family, const char* name) {
    const auto parent = Node("Root.Styles." + family);
    const auto style = Node("Root.Styles." + family + ".Default");
    ASSERT_TRUE(parent && style);
    const VyrAnnStandardXMLNode_var copy(style->Clone());
    copy->SetNodeName(name);
    parent->AddNode(copy.Get(), -1);
  }

  /// Runs the one step to `version` and returns the checks that failed.
  std::vector<std::string> Step(int version) {
    const DiagnosticsCapture capture;
    Access::RunStep(standard_, version, origin_.isShipped);
    return CheckTexts(capture.errors);
  }

  VyrAnnStandardXMLNode_var Node(const std::string& path) {
    return VyrAnnStandardXMLNode_var(Document().GetNodeWithPath(path));
  }
  bool Has(const std::string& path) { return static_cast<bool>(Node(path)); }
  /// The first value of a node; "(none)" without the node.
  std::string Value(const std::string& path) {
    return Has(path) ? Document().GetValueWithPath(path).CString() : "(none)";
  }
  /// The value with the enumeration that it is of, as "YesNo:No".
  std::string EnumValue(const std::string& path) {
    const auto node = Node(path);
    if (!node || node->GetValues().empty()) return "(none)";
    const VyrAnnStandardXMLValue& value = *node->GetValues().front();
    if (value.GetType() != VyrAnnStandardXMLValue::ValueEnum) return "(no enumeration)";
    return std::string(value.GetValueName().CString()) + ":" + value.GetValue().CString();
  }
  /// Texts of all values of a node.
  std::vector<std::string> Values(const std::string& path) {
    std::vector<std::string> texts;
    if (const auto node = Node(path)) {
      for (const auto& value : node->GetValues()) texts.emplace_back(value->GetValue().CString());
    }
    return texts;
  }
  /// The field `field` of every child of a node.
  std::vector<std::string> Fields(const std::string& path, const char* field) {
    std::vector<std::string> texts;
    const auto node = Node(path);
    if (!node) return texts;
    for (const auto& child : node->GetNodes()) {
      const VyrAnnStandardXMLValue_var value(child->GetValueByName(field));
      texts.emplace_back(value ? value->GetValue().CString() : "(none)");
    }
    return texts;
  }
  std::vector<std::string> Children(const std::string& path) {
    std::vector<std::string> names;
    if (const auto node = Node(path)) {
      for (const auto& child : node->GetNodes()) names.emplace_back(child->GetNodeName().CString());
    }
    return names;
  }

 private:
  Origin origin_;
  VyrDrwParseStandard standard_;
};
