#include <random>
#include <set>

#include "HostileText.h"
#include "VyrSteps.h"
#include "VyrXMLNameIndex.h"
#include "VyrXMLNameWalk.h"
#include "XMLTest.h"

namespace {

using Index = VyrXMLTree::Index;
using Step = VyrXMLNameWalk::Step;

unsigned Below(std::mt19937& random, unsigned limit) {
  return static_cast<unsigned>(random() % limit);
}

/// The numbers of the elements' names as this test gives them: 0 for "A", 1 for "B" and so on.
std::vector<std::uint32_t> NumbersOf(const VyrXMLTree& tree) {
  std::vector<std::uint32_t> numbers(tree.GetCount(), VyrXMLNameWalk::kUnnamed);
  for (Index item = 1; item < tree.GetCount(); ++item) {
    if (tree.GetKind(item) != VyrXMLTree::Kind::Element || tree.GetAttributes(item).empty()) {
      continue;
    }
    numbers[item] = static_cast<std::uint32_t>(tree.GetValue(tree.GetAttributes(item)[0])[0] - 'A');
  }
  return numbers;
}

/// The same by what the steps say, one after the other.
std::vector<Index> Followed(const VyrXMLTree& tree, const std::vector<std::uint32_t>& numbers,
                            const std::vector<Step>& steps) {
  std::set<Index> contexts = {tree.GetDocumentElement()};
  for (const Step& step : steps) {
    std::set<Index> found;
    for (Index item = 1; item < tree.GetCount(); ++item) {
      if (numbers[item] != step.number) continue;
      Index up = tree.GetParent(item);
      while (!step.isChild && up != VyrXMLTree::kNone && !contexts.contains(up)) {
        up = tree.GetParent(up);
      }
      if (contexts.contains(up)) found.insert(item);
    }
    contexts = found;
  }
  return {contexts.begin(), contexts.end()};
}

/// A random tree of elements with one of few names, or none.
std::string RandomXML(std::mt19937& random, int elements, unsigned names, bool isDeep) {
  std::string xml = "<r>";
  int open = 0;
  for (int i = 0; i < elements; ++i) {
    while (open > 0 && Below(random, isDeep ? 8 : 2) == 0) {
      xml += "</x>";
      --open;
    }
    const char name = static_cast<char>('A' + Below(random, names));
    xml += Below(random, 20) == 0 ? "<x>text" : std::string("<x name='") + name + "'>";
    ++open;
  }
  return xml + Repeated("</x>", static_cast<std::size_t>(open)) + "</r>";
}

TEST(XMLNameWalk, FindsWhatTheStepsFindOneAfterTheOther) {
  std::mt19937 random(1);
  std::size_t found = 0;
  for (int round = 0; round < 400; ++round) {
    const unsigned names = 1 + Below(random, 3);
    const Parsed parsed = ParseText(RandomXML(random, 60, names, round % 2 == 0));
    const std::vector<std::uint32_t> numbers = NumbersOf(parsed.Tree());
    for (int chain = 0; chain < 20; ++chain) {
      std::vector<Step> steps(1 + Below(random, 7));
      const unsigned children = Below(random, 4);
      for (Step& step : steps) step = {Below(random, names), Below(random, 4) < children};
      const std::vector<Index> expected = Followed(parsed.Tree(), numbers, steps);
      ASSERT_EQ(VyrXMLNameWalk(parsed.Tree(), numbers).Find(steps), expected)
          << round << " " << chain;
      found += expected.size();
    }
  }
  EXPECT_GT(found, 10'000u) << "or nothing is compared";
}

/// Names of a chain as deep as its document.
struct Shape {
  const char* name;
  std::string (*nameAt)(std::size_t level);
  bool (*isChildAt)(std::size_t step);
};

const Shape kShapes[] = {
    {"one name, at any depth", [](std::size_t) { return std::string("A"); },
     [](std::size_t) { return false; }},
    {"one name, children", [](std::size_t) { return std::string("A"); },
     [](std::size_t step) { return step > 0; }},
    {"one name, children of children at any depth", [](std::size_t) { return std::string("A"); },
     [](std::size_t step) { return step % 2 == 1; }},
    {"two names", [](std::size_t level) { return std::string(level % 2 == 0 ? "A" : "B"); },
     [](std::size_t) { return false; }},
    {"a rare name now and then",
     [](std::size_t level) { return std::string(level % 100 == 99 ? "B" : "A"); },
     [](std::size_t) { return false; }},
    {"names of their own", [](std::size_t level) { return "n" + std::to_string(level); },
     [](std::size_t) { return false; }},
};

TEST(XMLNameWalk, LongChainsInDeepDocumentsTakeStepsInProportion) {
  for (const Shape& shape : kShapes) {
    std::uint64_t before = 0;
    for (const std::size_t levels : {2'000u, 4'000u, 8'000u, 16'000u}) {
      std::string xml = "<r>";
      for (std::size_t i = 0; i < levels; ++i) xml += "<x name='" + shape.nameAt(i) + "'>";
      xml += Repeated("</x>", levels) + "</r>";
      const Parsed parsed = ParseText(xml);
      const VyrXMLNameIndex index(parsed.Tree());
      std::vector<std::string> names;
      for (std::size_t i = 0; i < levels; ++i) names.push_back(shape.nameAt(i));
      std::vector<VyrNameChain::Step> steps;
      for (std::size_t i = 0; i < levels; ++i) steps.push_back({"", names[i], shape.isChildAt(i)});
      const std::uint64_t start = VyrSteps::GetCount();
      EXPECT_THAT(index.Find({"", "r", steps}), testing::ElementsAre(levels + 1)) << shape.name;
      steps.push_back({"", "A", false});
      EXPECT_THAT(index.Find({"", "r", steps}), testing::IsEmpty()) << shape.name;
      const std::uint64_t taken = VyrSteps::GetCount() - start;
      if (before != 0) {
        EXPECT_LT(taken, before * 5 / 2) << shape.name << " " << levels;
      }
      before = taken;
    }
  }
}

}  // namespace
