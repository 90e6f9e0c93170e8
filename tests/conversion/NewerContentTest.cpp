#include <algorithm>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "UpgradeRun.h"
#include "VersionTraces.h"
#include "VyrAnnStandardScript.h"
#include "VyrDftStdPersistence.h"
#include "VyrDrwNewerContent.h"

// Standards that are dated earlier than what they hold.

namespace {

using Cause = VyrDrwNewerContent::Cause;
using Document = VyrAnnStandardXMLParser;
using Verb = VyrAnnStandardScript::Verb;
using testing::IsEmpty;

/// Calls `visit` with the document of every version, from 1 on, that the chain makes of a text.
void ForEachVersion(const Origin& origin, const std::function<void(int, Document&)>& visit) {
  VyrDrwParseStandard standard(std::string(HOL_STANDARDS "/legacy/") + origin.parent + ".txt");
  ASSERT_GE(standard.DecodeText(), 0);
  auto options = OptionsOf(origin.isShipped);
  ASSERT_GE(
      standard.Upgrade(-1, options,
                       [&](const char*, int version, auto& document) { visit(version, document); }),
      0);
}

/// A node by whose presence a document is told to be of a version.
struct Telling {
  std::string path;
  int version;
};

/// Those that a document of `version` has: deleting one of them dates it back.
std::vector<Telling> TellingNodes(int version) {
  const std::string versionNode = "Root." + std::string(VyrDftStdPersistence::GetVersionNodePath());
  if (version >= 110) return {{versionNode, 110}};
  std::vector<Telling> nodes;
  for (int release = 10; release <= 18; ++release) {
    VyrUnicodeString path;
    auto status = VyrDftStdPersistence::NodeAdded;
    EXPECT_EQ(VyrDftStdPersistence::GetReferenceNodeForRelease(release, path, status), S_OK);
    const int since = VyrDftStdPersistence::GetVersionFromRelease(release);
    if (status != VyrDftStdPersistence::NodeAdded || since > version) continue;
    nodes.push_back({"Root." + std::string(path.View()), since});
  }
  return nodes;
}

/// What is said of a document, for messages of tests.
std::string Told(Document& document) {
  const auto newer = VyrFindNewerContent(document);
  if (!newer) return "";
  return newer->node.CString() + std::string(", ") + newer->found.CString() + " of " +
         std::to_string(newer->contentVersion);
}

/// Runs commands as a script has them; every one finds what it names.
void Follow(Document& document, const VyrUnicodeString& commands) {
  const VyrAnnStandardScript script(commands.View());
  ASSERT_TRUE(script.GetProblem().IsEmpty()) << commands.CString();
  for (const auto& command : script.GetCommands()) {
    EXPECT_EQ(command.Run(document), 0) << command.text;
  }
}

class NewerContent : public testing::TestWithParam<Origin> {};

INSTANTIATE_TEST_SUITE_P(Origins, NewerContent, testing::ValuesIn(AllOrigins()), OriginName);

/// Literals, fields, enumerations and types of a document.
std::set<std::string> DefinitionsOf(Document& document) {
  std::set<std::string> definitions;
  for (const char* top : {"Enum", "TypeDef"}) {
    const VyrAnnStandardXMLNode_var tree(document.GetNodeWithPath(top));
    for (const auto& node : tree->GetNodes()) {
      const std::string path = std::string(top) + "." + node->GetNodeName().CString();
      definitions.insert(path);
      for (const auto& value : node->GetValues()) {
        const bool isLiteral = std::string_view(top) == "Enum";
        definitions.insert(path + "." +
                           (isLiteral ? value->GetValue() : value->GetValueName()).CString());
      }
    }
  }
  return definitions;
}

/// What the tables of traces say that a step adds of these.
std::set<std::string> DefinitionTraces(int version, const char* parent) {
  std::set<std::string> definitions;
  for (const VersionTable& table : VersionTables()) {
    if (table.version != version) continue;
    const VyrAnnStandardScript script(*table.table);
    for (const auto& command : script.GetCommands()) {
      const auto addition = AdditionOf(command);
      if (command.AppliesTo(parent) && addition && addition->IsDefinition()) {
        definitions.insert(addition->FullPath());
      }
    }
  }
  return definitions;
}

TEST_P(NewerContent, TheTracesOfAVersionAreExactlyTheDefinitionsThatItsStepAdds) {
  std::set<std::string> before;
  ForEachVersion(GetParam(), [&](int version, Document& document) {
    const std::set<std::string> now = DefinitionsOf(document);
    std::set<std::string> added;
    std::set_difference(now.begin(), now.end(), before.begin(), before.end(),
                        std::inserter(added, added.end()));
    if (version > 1) {
      EXPECT_EQ(DefinitionTraces(version, GetParam().parent), added) << version;
    }
    before = now;
  });
}

TEST_P(NewerContent, IsNotFoundInAnyStandardOfTheChain) {
  int standards = 0;
  ForEachVersion(GetParam(), [&](int version, Document& document) {
    EXPECT_EQ(document.GetVersion(), version);
    EXPECT_EQ(Told(document), "") << version;
    ++standards;
  });
  EXPECT_EQ(standards, static_cast<int>(std::size(kVersions)));
}

TEST_P(NewerContent, IsFoundWhicheverTellingNodeIsDeletedAndItsCommandsDateTheStandardRight) {
  int standards = 0;
  ForEachVersion(GetParam(), [&](int version, Document& original) {
    for (const Telling& telling : TellingNodes(version)) {
      SCOPED_TRACE(std::to_string(version) + " without " + telling.path);
      const auto document = CopyOf(original);
      ASSERT_EQ(document->DeleteNodeWithPath(telling.path), 0);
      const int dated = document->GetVersion();
      ASSERT_LT(dated, telling.version);
      const auto newer = VyrFindNewerContent(*document);
      ASSERT_TRUE(newer);
      EXPECT_EQ(newer->version, dated);
      EXPECT_EQ(newer->cause, Cause::Missing);
      EXPECT_EQ(newer->node, VyrUnicodeString(telling.path));
      Follow(*document, newer->commands);
      EXPECT_EQ(document->GetVersion(), version);
      EXPECT_EQ(document->Check(), 1);
      EXPECT_EQ(Told(*document), "");
      ++standards;
    }
  });
  EXPECT_EQ(standards, 51);
}

TEST_P(NewerContent, IsFoundWhereANodeIsBackThatLaterVersionsHaveNot) {
  ForEachVersion(GetParam(), [&](int version, Document& original) {
    if (version < 50 || version >= 110) return;
    const auto document = CopyOf(original);
    ASSERT_EQ(document->AddValueWithPath("Root.General:DefaultToleranceFormat:string:A", 1), 0);
    const auto newer = VyrFindNewerContent(*document);
    ASSERT_TRUE(newer) << version;
    EXPECT_EQ(newer->version, 40);
    EXPECT_EQ(newer->cause, Cause::Present);
    Follow(*document, newer->commands);
    EXPECT_EQ(document->GetVersion(), version);
  });
}

TEST_P(NewerContent, IsFoundWhereTheVersionThatIsStatedIsTooLow) {
  ForEachVersion(GetParam(), [&](int version, Document& original) {
    if (version <= 110) return;
    const auto document = CopyOf(original);
    ASSERT_EQ(document->ChangeValueWithPath("Root.Version:110"), 0);
    const auto newer = VyrFindNewerContent(*document);
    ASSERT_TRUE(newer) << version;
    EXPECT_EQ(newer->version, 110);
    EXPECT_EQ(newer->cause, Cause::Stated);
    Follow(*document, newer->commands);
    EXPECT_EQ(document->GetVersion(), version);
  });
}

TEST_P(NewerContent, IsFoundWithAllTellingNodesGone) {
  ForEachVersion(GetParam(), [&](int version, Document& original) {
    if (version == 1) return;
    const auto document = CopyOf(original);
    for (const int any : {110, 100}) {
      for (const Telling& telling : TellingNodes(any)) {
        static_cast<void>(document->DeleteNodeWithPath(telling.path));
      }
    }
    ASSERT_EQ(document->GetVersion(), 1);
    const auto newer = VyrFindNewerContent(*document);
    ASSERT_TRUE(newer) << version;
    Follow(*document, newer->commands);
    EXPECT_EQ(document->GetVersion(), newer->contentVersion);
    EXPECT_EQ(Told(*document), "") << version;
  });
}

TEST(NewerContentOfSites, IsNotFoundInTheirStandardsAtAnyVersion) {
  const auto root = std::filesystem::path(HOL_STANDARDS).parent_path();
  int files = 0;
  for (const char* folder : {"tests/data", "standards"}) {
    for (const auto& entry : std::filesystem::directory_iterator(root / folder)) {
      if (entry.path().extension() != ".xml") continue;
      for (const bool isShipped : {false, true}) {
        SCOPED_TRACE(entry.path());
        const DiagnosticsCapture capture;
        VyrDrwParseStandard standard(entry.path().string());
        standard.Decode();
        EXPECT_EQ(Told(standard.GetDocument()), "");
        auto options = OptionsOf(isShipped);
        EXPECT_EQ(standard.Upgrade(-1, options,
                                   [](const char*, int version, auto& document) {
                                     EXPECT_EQ(Told(document), "") << version;
                                   }),
                  S_OK);
      }
      ++files;
    }
  }
  EXPECT_EQ(files, 7);
}

TEST(NewerContentOfSites, AreNotTheirOwnEnumerationsAndTypesEvenOfLaterNames) {
  for (const int version : {1, 2, 30, 40, 50, 60, 70, 80, 90, 100, 110, 150, 210}) {
    UpgradeRun run("ISO", version);
    const std::set<std::string> known = DefinitionsOf(run.Document());
    // Every enumeration and type of the current version at once, with content of the site's own,
    // and each for itself just as the later version has it.
    for (const int later : kVersions) {
      for (const std::string& path : DefinitionTraces(later, "ISO")) {
        const std::size_t dot = path.find('.');
        if (known.contains(path) || path.find('.', dot + 1) != std::string::npos) continue;
        SCOPED_TRACE(std::to_string(version) + " with " + path);
        run.AddNode(path.substr(0, dot) + ":" + path.substr(dot + 1));
        run.AddValue(path + (dot == 4 ? "::string:Own" : ":Own:string:A"));
        EXPECT_EQ(Told(run.Document()), "");
      }
    }
  }
}

TEST(NewerContentOfSites, AreNotLaterEnumerationsOrTypesTakenOverOneByOne) {
  UpgradeRun latest("ISO", kCurrentVersion);
  for (const int version : {1, 2, 30, 40, 50, 60, 70, 80, 90, 100, 110, 150, 210}) {
    UpgradeRun run("ISO", version);
    for (const char* top : {"Enum", "TypeDef"}) {
      const auto tree = run.Node(top);
      for (const auto& definition : latest.Node(top)->GetNodes()) {
        if (VyrAnnStandardXMLNode_var(tree->GetNodeByName(definition->GetNodeName()))) continue;
        const std::string name = definition->GetNodeName().CString();
        const VyrAnnStandardXMLNode_var copy(definition->Clone());
        tree->AddNode(copy.Get(), -1);
        EXPECT_EQ(Told(run.Document()), "") << version << " with " << top << "." << name;
        ASSERT_EQ(tree->DeleteNodeWithPath(name), 0);
      }
    }
  }
}

TEST(NewerContentOfSites, NothingIsSaidOfADocumentThatCannotBeDated) {
  UpgradeRun run("ISO", kCurrentVersion);
  run.Change("Root.Version:115");
  const DiagnosticsCapture capture;
  EXPECT_EQ(Told(run.Document()), "");
}

}  // namespace
