#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "VyrXPathNameChain.h"

namespace {

const VyrXPathNamespaces kNamespaces = {{"std", "u:old"}, {"std", "u:std"}, {"o", "u:o"},
                                        {"e", ""},        {"xml", "u:x"},   {"P-1._x", "u:p"}};

/// A chain in one line: namespace and name of the root, then of every step.
std::string Told(const std::string& expression) {
  VyrNameChain chain;
  if (!VyrReadNameChain(expression, kNamespaces, chain)) return "no chain";
  std::string told = "{" + std::string(chain.rootNamespaceURI) + "}" + std::string(chain.rootName);
  for (const VyrNameChain::Step& step : chain.steps) {
    told += step.isChild ? "/" : "//";
    told += "{" + std::string(step.namespaceURI) + "}" + std::string(step.name);
  }
  return told;
}

TEST(XPathNameChain, RootAndStepsAreReadInOrder) {
  EXPECT_EQ(Told("std:node"), "{u:std}node");
  EXPECT_EQ(Told("std:node//std:*[@name='A']"), "{u:std}node//{u:std}A");
  EXPECT_EQ(Told("std:node/std:*[@name='A']//std:*[@name='B']/std:*[@name='C']"),
            "{u:std}node/{u:std}A//{u:std}B/{u:std}C");
}

TEST(XPathNameChain, EachStepHasANamespaceOfItsOwn) {
  EXPECT_EQ(Told("o:r//std:*[@name='A']//o:*[@name='B']//std:*[@name='C']"),
            "{u:o}r//{u:std}A//{u:o}B//{u:std}C");
  EXPECT_EQ(Told("P-1._x:n-1.x_"), "{u:p}n-1.x_");
}

TEST(XPathNameChain, NameIsWhatStandsBetweenTheQuotes) {
  const auto step = [](const std::string& literal) {
    return Told("std:node//std:*[@name=" + literal + "]");
  };
  const std::string found = "{u:std}node//{u:std}";
  EXPECT_EQ(step("''"), found);
  EXPECT_EQ(step("\"it's\""), found + "it's");
  EXPECT_EQ(step("'say \"x\"'"), found + "say \"x\"");
  EXPECT_EQ(step("' a.b/c]//std:*[ '"), found + " a.b/c]//std:*[ ");
  EXPECT_EQ(step("'\xC3\xA9 \xE6\xBC\xA2 &lt;\x7F'"), found + "\xC3\xA9 \xE6\xBC\xA2 &lt;\x7F");
  EXPECT_EQ(step("'a\t\r\nb'"), found + "a\t\r\nb");
}

TEST(XPathNameChain, EverythingElseIsLeftToOthers) {
  const std::string step = "//std:*[@name='A']";
  const std::string cases[] = {
      "",
      "node",
      "std:",
      ":node",
      "std:1node",
      "std:n\xC3\xA9",
      "/std:node" + step,
      "//std:*[@name='A']",
      "std:*" + step,
      "std:node/",
      "std:node//",
      "std:node///std:*[@name='A']",
      "std:node//*[@name='A']",
      "std:node//std:node[@name='A']",
      "std:node//std:*[@o:name='A']",
      "std:node//std:*[@names='A']",
      "std:node//std:*['A'=@name]",
      "std:node//std:*[@name!='A']",
      "std:node//std:*[@name='A'",
      "std:node//std:*[@name='A'][1]",
      "std:node//std:*[@name='A']x",
      "std:node//std:*[@name='A' or 1]",
      "std:node//std:*[@name='it's']",
      "std:node//std:*[@name='A\"]",
      "std:node//std:*[@name=A]",
      "std:node//std:*[@name=",
      "std:node//std:*[ @name='A']",
      "std:node //std:*[@name='A']",
      " std:node",
      "std:node ",
      "std:node" + step + "/text()",
      "std:node" + step + " | std:node",
      "(std:node" + step + ")",
      "child::std:node" + step,
      "std:node()" + step,
  };
  for (const std::string& expression : cases) EXPECT_EQ(Told(expression), "no chain") << expression;
}

TEST(XPathNameChain, PrefixMustStandForANamespaceThatElementsCanBeIn) {
  for (const std::string prefix : {"unknown", "e", "xml", "Std"}) {
    EXPECT_EQ(Told(prefix + ":node"), "no chain") << prefix;
    EXPECT_EQ(Told("std:node//" + prefix + ":*[@name='A']"), "no chain") << prefix;
  }
}

TEST(XPathNameChain, ControlCharactersAreNoPartOfAName) {
  for (int c = 0; c < 0x20; ++c) {
    const std::string text = std::string("std:node//std:*[@name='A") + static_cast<char>(c) + "']";
    const bool isAllowed = c == '\t' || c == '\n' || c == '\r';
    EXPECT_EQ(Told(text) != "no chain", isAllowed) << c;
  }
}

TEST(XPathNameChain, IsReadHoweverLongItIs) {
  std::string expression = "std:node";
  std::string told = "{u:std}node";
  for (int i = 0; i < 20'000; ++i) {
    const std::string name = "level " + std::to_string(i);
    expression += "//std:*[@name='" + name + "']";
    told += "//{u:std}" + name;
  }
  EXPECT_EQ(Told(expression), told);
}

TEST(XPathNameChain, HasNamesOfAnyLength) {
  const std::string name(1'000'000, 'x');
  EXPECT_EQ(Told("std:node//std:*[@name='" + name + "']"), "{u:std}node//{u:std}" + name);
}

}  // namespace
