#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlmemory.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "FailingMemory.h"
#include "HostileText.h"
#include "ProcessApart.h"
#include "TreeContent.h"
#include "VyrXMLReader.h"

// Memory that runs out at any request of the XML parser, which asks for it by other means than the
// rest of the library: the document is refused or read, and read as a whole.

namespace {

/// The parser's requests, of which one fails, or one and all after it.
struct ParserRequests {
  std::size_t made = 0;
  std::size_t failing = 0;  ///< number of the request that fails; 0: none does
  Failing how = Failing::Once;
} parserRequests;

bool Fails() {
  const std::size_t request = ++parserRequests.made;
  if (parserRequests.failing == 0 || request < parserRequests.failing) return false;
  return request == parserRequests.failing || parserRequests.how == Failing::Onward;
}

void* Allocate(std::size_t size) {
  return Fails() ? nullptr : std::malloc(size);
}
void* Reallocate(void* memory, std::size_t size) {
  return Fails() ? nullptr : std::realloc(memory, size);
}
char* Duplicate(const char* text) {
  return Fails() ? nullptr : ::strdup(text);
}

/// Every kind of markup, text that entities put together, and more levels, attributes and
/// namespaces than the parser has room for at first.
std::string Document() {
  return "<?xml version='1.0' encoding='UTF-8'?>\n"
         "<!DOCTYPE r [<!ENTITY e 'a text of an entity \u00B1'><!ENTITY f '<b c=\"d\">&e;</b>'>"
         "<!ENTITY % p '<!ENTITY g \"x\">'> %p;<!ATTLIST d more CDATA 'a default'>]>\n"
         "<r xmlns:n='a namespace'><!-- a comment --><?target what it is to do there?>"
         "<![CDATA[a section]]>&e;&f;&amp;&#x2300;&g;<d/><a b='&e;&#10;'/>" +
         Numbered(50, [](auto n) { return "<n:a" + n + " b" + n + "='" + n + "'>"; }) +
         [] {
           std::string ends;
           for (int i = 50; i-- > 0;) ends += "</n:a" + std::to_string(i) + ">";
           return ends;
         }() +
         "<a" + Numbered(30, [](auto n) { return " b" + n + "='" + n + "'"; }) + "/><a" +
         Numbered(25, [](auto n) { return " xmlns:c" + n + "='" + n + "'"; }) + "/>" +
         Repeated("a text that is as long as many blocks of the parser\n", 2000) + "</r>";
}

/// The content of a document, or why there is none.
std::string AnswerTo(const std::string& document) {
  VyrXMLTree tree;
  VyrProblem problem;
  const bool isRead = VyrReadXML(document, nullptr, tree, problem);
  return isRead ? ContentOf(tree) : "refused: " + std::string(problem.text.View());
}

/// What comes of a failure at one request: "refused", for whatever reason, since the parser may
/// take a name that it could not store for a missing one; "read", or what is wrong; "none" when
/// there are not so many requests.
std::string AnswerToFailure(const std::string& document, Failing how, std::size_t request) {
  ::xmlMemSetup(std::free, Allocate, Reallocate, Duplicate);
  const std::string whole = AnswerTo(document);
  if (whole.starts_with("refused")) return whole;
  parserRequests = {0, request, how};
  const std::string answer = AnswerTo(document);
  const bool hasFailed = parserRequests.made >= request;
  parserRequests = {};
  if (!hasFailed) return answer == whole ? "none" : "another content";
  if (answer == whole) return "read";
  return answer.starts_with("refused: ") ? "refused" : "another content";
}

/// Each request in a process of its own: "sound", or at which one what is wrong.
std::string AnswerToFailures(const std::string& document, Failing how) {
  std::size_t refused = 0;
  for (std::size_t request = 1;; ++request) {
    const ApartRun run = RunApart([&] { return AnswerToFailure(document, how, request); });
    const std::string answer = run.hasEnded ? run.answer : run.end;
    if (answer == "none") {
      return refused > 50 ? "sound" : std::to_string(refused) + " refusals only";
    }
    if (answer != "read" && answer != "refused") {
      return "request " + std::to_string(request) + ": " + answer;
    }
    refused += answer == "refused" ? 1 : 0;
  }
}

TEST(ParserMemory, DocumentIsReadOrRefusedWhicheverRequestOfTheParserFails) {
  for (const Failing how : {Failing::Once, Failing::Onward}) {
    EXPECT_EQ(AnswerToFailures(Document(), how), "sound");
  }
}

}  // namespace
