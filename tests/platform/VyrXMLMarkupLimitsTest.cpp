#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "HostileText.h"
#include "VyrXMLMarkupLimits.h"
#include "VyrXMLReader.h"

namespace {

/// "accepted", or the line and the text of the refusal.
std::string AnswerTo(std::string_view document) {
  VyrXMLTree tree;
  VyrProblem problem;
  if (VyrReadXML(document, nullptr, tree, problem)) return "accepted";
  return std::to_string(problem.line) + ": " + problem.text.CString();
}

std::string Attributes(std::size_t count) {
  return Numbered(count, [](auto n) { return " a" + n + "=''"; });
}

TEST(XMLMarkupLimits, CountsNothingButTheAttributesOfATag) {
  const std::string many = Repeated("=<a='", 2000);
  const std::string most = Attributes(kMostXMLAttributes);
  for (const std::string& document :
       {"<r>" + Repeated("x = y ", 2000) + "</r>", "<!--" + many + "--><r/>",
        "<r><![CDATA[" + many + "]]></r>", "<?p " + many + "?><r/>",
        "<r a='" + Repeated("= \" > ", 2000) + "'/>", "<r a=\"" + Repeated("= ' > ", 2000) + "\"/>",
        "<r" + most + ">" + Repeated("x = y ", 2000) + "<s" + most + "/></r>",
        "<r" + most + "><!--" + most + "--></r" + std::string(5000, ' ') + ">",
        "<!DOCTYPE r [<!-- ]> ' --><?p ]> \" ?><!ENTITY e \"]>'\">]><r" + most + "/>"}) {
    EXPECT_FALSE(VyrFindXMLExcess(document)) << document.substr(0, 40);
    EXPECT_EQ(AnswerTo(document), "accepted") << document.substr(0, 40);
  }
}

TEST(XMLMarkupLimits, FindsTheTagWithOneAttributeTooManyWhereverItStands) {
  const std::string tag = "<s" + Attributes(kMostXMLAttributes + 1) + "/>";
  for (const std::string before :
       {"<r>", "<r>\n<a b='>'/>\n", "<!--\n<--><r>", "<r>\n<![CDATA[<!--]]>", "<?p <!--?>\n<r>",
        "<!DOCTYPE r [\n<!ENTITY e \"]><!--\"><!-- ' -->]>\n<r>", "<r a=\"<!--\">"}) {
    const auto excess = VyrFindXMLExcess(before + tag + "</r>");
    ASSERT_TRUE(excess) << before;
    EXPECT_EQ(excess->place, before.size()) << before;
    const auto lines = std::count(before.begin(), before.end(), '\n') + 1;
    EXPECT_THAT(AnswerTo(before + tag + "</r>"),
                testing::StartsWith(std::to_string(lines) + ": has"));
  }
}

TEST(XMLMarkupLimits, DeclarationMayBeAsLongAsTheLimitAndNoLonger) {
  const auto document = [](std::size_t size) {
    const std::string begin = "<!DOCTYPE r [";
    const std::string end = "]>";
    return begin + std::string(size - begin.size() - end.size(), ' ') + end + "<r/>";
  };
  EXPECT_FALSE(VyrFindXMLExcess(document(kMostXMLDeclarations)));
  EXPECT_TRUE(VyrFindXMLExcess(document(kMostXMLDeclarations + 1)));
}

}  // namespace
