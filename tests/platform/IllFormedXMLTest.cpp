#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <map>
#include <ostream>
#include <string>
#include <string_view>

#include "ProcessApart.h"
#include "VyrXMLReader.h"

// Every kind of fault that makes a text no XML, in files from the smallest to the largest, at their
// begin, in the middle and at the end. The parser works on the text piece by piece, so that both
// the size and the place decide what it has in hand when it finds the fault.

namespace {

using namespace std::string_view_literals;

/// Where a fault stands.
enum class Part {
  Content,         ///< in the document element, at each place
  Declarations,    ///< in the document type declaration, at each place of that
  XMLDeclaration,  ///< in place of it, which is at the begin only
  EndOfFile        ///< in the document element; the file ends with it
};

/// The line that a refusal names.
enum class Named {
  Fault,    ///< the one with the fault
  LastTag,  ///< that of the end tag of the document element, where it is seen that something lacks
  FileEnd   ///< the end of the file, which is looked for what would end the markup
};

constexpr std::string_view kNotWellFormed = "not well-formed XML: ";
constexpr std::string_view kNotUtf8 = "is not valid UTF-8 at byte ";

struct Fault {
  const char* name;
  Part part;
  std::string_view text;  // without a line end
  Named named = Named::Fault;
  std::string_view answer = kNotWellFormed;
};

std::ostream& operator<<(std::ostream& out, const Fault& fault) {
  return out << fault.name;
}

const Fault kFaults[] = {
    // Text
    {"end of a section in a text", Part::Content, "<a>First ]]> angle</a>"},
    {"'<' in a text", Part::Content, "<a>1 < 2</a>"},
    {"'&' in a text", Part::Content, "<a>1 & 2</a>"},
    {"control character", Part::Content, "<a>\x01</a>"},
    {"character that XML excludes", Part::Content, "<a>\uFFFE</a>"},
    // References
    {"entity that is not declared", Part::Content, "<a>&none;</a>"},
    {"reference without end", Part::Content, "<a>&amp </a>"},
    {"character zero", Part::Content, "<a>&#0;</a>"},
    {"character without number", Part::Content, "<a>&#;</a>"},
    {"character whose number is none", Part::Content, "<a>&#1a;</a>"},
    {"character beyond all", Part::Content, "<a>&#x110000;</a>"},
    {"half of a character", Part::Content, "<a>&#xD800;</a>"},
    {"entity that begins an element", Part::Content, "<a>&begin;</a>"},
    {"entity that ends an element", Part::Content, "<a>&end;</a>"},
    {"entity that refers to itself", Part::Content, "<a>&self;</a>"},
    {"entity with '<' in an attribute", Part::Content, "<a b='&element;'/>"},
    {"entity of another file", Part::Content, "<a>&outside;</a>", Named::Fault,
     "entity 'outside' lies outside the file"},
    {"entity of another file in an attribute", Part::Content, "<a b='&outside;'/>", Named::Fault,
     "entity 'outside' lies outside the file"},
    // Tags
    {"end tag of another element", Part::Content, "<a></b>"},
    {"end tag too many", Part::Content, "</a>"},
    {"end tag that lacks", Part::Content, "<a>", Named::LastTag},
    {"end tag with a blank", Part::Content, "<a></ a>"},
    {"end tag with an attribute", Part::Content, "<a></a b=''>"},
    {"tag without '>'", Part::Content, "<a <b/>"},
    {"tag with a lone '/'", Part::Content, "<a / >"},
    {"name that begins with a digit", Part::Content, "<1/>"},
    {"element after the document element", Part::Content, "</r><r>"},
    {"text after the document element", Part::Content, "</r>text"},
    // Attributes
    {"attribute without value", Part::Content, "<a b/>"},
    {"value without quotes", Part::Content, "<a b=1/>"},
    {"value without its second quote", Part::Content, "<a b='1/><c/>"},
    {"'<' in a value", Part::Content, "<a b='1<2'/>"},
    {"'&' in a value", Part::Content, "<a b='1&2'/>"},
    {"control character in a value", Part::Content, "<a b='\x02'/>"},
    {"attribute given twice", Part::Content, "<a b='1' b='2'/>"},
    {"attributes without a blank between", Part::Content, "<a b='1'c='2'/>"},
    // Namespaces
    {"prefix of an element that is not declared", Part::Content, "<p:a/>"},
    {"prefix of an attribute that is not declared", Part::Content, "<a p:b=''/>"},
    {"prefix of no namespace", Part::Content, "<a xmlns:p=''/>"},
    {"two prefixes of one attribute", Part::Content, "<a xmlns:p='u' xmlns:q='u' p:b='' q:b=''/>"},
    {"name with two colons", Part::Content, "<a:b:c/>"},
    {"prefix xml for something else", Part::Content, "<a xmlns:xml='u'/>"},
    {"prefix xmlns", Part::Content, "<a xmlns:xmlns='u'/>"},
    // Other markup
    {"'--' in a comment", Part::Content, "<!-- a -- b -->"},
    {"comment without end", Part::Content, "<!-- a", Named::FileEnd},
    {"section without end", Part::Content, "<![CDATA[ a", Named::FileEnd},
    {"section that is named otherwise", Part::Content, "<![cdata[ a ]]>"},
    {"instruction without end", Part::Content, "<?a b", Named::FileEnd},
    {"instruction without name", Part::Content, "<? a?>"},
    {"second XML declaration", Part::Content, "<?xml version='1.0'?>"},
    {"declaration of the type in the content", Part::Content, "<!DOCTYPE r>"},
    {"declaration of an element in the content", Part::Content, "<!ELEMENT a ANY>"},
    // Encoding
    {"byte of another encoding", Part::Content, "<a>\xE9</a>", Named::Fault, kNotUtf8},
    {"character that breaks off", Part::Content, "<a>\xE5\xAF</a>", Named::Fault, kNotUtf8},
    {"character in more bytes than it needs", Part::Content, "<a>\xC0\xAF</a>", Named::Fault,
     kNotUtf8},
    {"half of a character in bytes", Part::Content, "<a>\xED\xA0\x80</a>", Named::Fault, kNotUtf8},
    {"zero byte", Part::Content, "<a>\0</a>"sv, Named::Fault, "holds a zero byte"},
    // Declarations
    {"unknown declaration", Part::Declarations, "<!THING a>"},
    {"text among declarations", Part::Declarations, "text"},
    {"element among declarations", Part::Declarations, "<a/>"},
    {"entity without value", Part::Declarations, "<!ENTITY a>"},
    {"entity without name", Part::Declarations, "<!ENTITY 'a'>"},
    {"entity with more than a value", Part::Declarations, "<!ENTITY a 'b' c>"},
    {"entity with '&' in its value", Part::Declarations, "<!ENTITY a 'b & c'>"},
    {"parameter within a declaration", Part::Declarations, "<!ENTITY a '%parameter;'>"},
    {"parameter that is not declared", Part::Declarations, "<!ENTITY % a '%none;'> %a;"},
    {"element without content", Part::Declarations, "<!ELEMENT a>"},
    {"content without end", Part::Declarations, "<!ELEMENT a (b,c >"},
    {"attributes of no element", Part::Declarations, "<!ATTLIST>"},
    {"attribute of an unknown type", Part::Declarations, "<!ATTLIST a b THING ''>"},
    {"default value with '<'", Part::Declarations, "<!ATTLIST a b CDATA '<'>"},
    {"notation of nothing", Part::Declarations, "<!NOTATION a>"},
    {"conditional section", Part::Declarations, "<![INCLUDE[ <!ENTITY a 'b'> ]]>"},
    {"comment with '--' among declarations", Part::Declarations, "<!-- a -- b -->"},
    {"XML declaration among declarations", Part::Declarations, "<?xml version='1.0'?>"},
    // XML declaration
    {"declaration without version", Part::XMLDeclaration, "<?xml encoding='UTF-8'?>"},
    {"version without quotes", Part::XMLDeclaration, "<?xml version=1.0?>"},
    {"neither yes nor no", Part::XMLDeclaration, "<?xml version='1.0' standalone='maybe'?>"},
    {"declaration that does not end", Part::XMLDeclaration, "<?xml version='1.0'>"},
    {"blank before the declaration", Part::XMLDeclaration, " <?xml version='1.0'?>"},
    {"encoding that is not known", Part::XMLDeclaration, "<?xml version='1.0' encoding='x-none'?>",
     Named::Fault, "declares the encoding 'x-none', which is not known"},
    {"encoding that is another", Part::XMLDeclaration, "<?xml version='1.0' encoding='UTF-16'?>",
     Named::Fault, "declares the encoding 'UTF-16' but is not written in it"},
    // Files that break off
    {"end in a text", Part::EndOfFile, "<a>text"},
    {"end in a tag", Part::EndOfFile, "<a"},
    {"end in a value", Part::EndOfFile, "<a b='c"},
    {"end in a comment", Part::EndOfFile, "<!-- a"},
    {"end in a section", Part::EndOfFile, "<![CDATA[ a ]]"},
    {"end in an instruction", Part::EndOfFile, "<?a b"},
    {"end in a reference", Part::EndOfFile, "<a>&am"},
    {"end in an end tag", Part::EndOfFile, "<a></a"},
    {"end in a character", Part::EndOfFile, "<a>\xE5\xAF", Named::Fault, kNotUtf8},
};

constexpr std::array<std::size_t, 4> kSizes = {1'000, 70'000, 350'000, 12'000'000};
constexpr std::array kPlaces = {0.0, 0.5, 1.0};

/// A text of whole lines, in which faults are put at the begins of lines.
class Lines {
 public:
  /// `line` as often as it takes to be `size` bytes long.
  Lines(std::string_view line, std::size_t size)
      : lineSize_(line.size()), count_(size / line.size() + 1) {
    text_.reserve(lineSize_ * count_);
    for (std::size_t i = 0; i < count_; ++i) text_ += line;
  }

  std::size_t Count() const { return count_; }
  /// The lines before a place from 0 to 1.
  std::size_t Before(double place) const {
    return static_cast<std::size_t>(place * static_cast<double>(count_));
  }
  std::string_view First(std::size_t lines) const {
    return std::string_view(text_).substr(0, lines * lineSize_);
  }
  std::string_view After(std::size_t lines) const {
    return std::string_view(text_).substr(lines * lineSize_);
  }

 private:
  std::size_t lineSize_;
  std::size_t count_;
  std::string text_;
};

/// A well-formed file of some size: what stands in it where no fault does. It has no comments,
/// sections and instructions, which would end those that lack their end.
struct Whole {
  explicit Whole(std::size_t size)
      // The declaration of a type has its limit.
      : declarations("<!ENTITY text 'a text of an entity'>\n",
                     std::min(size / 4, std::size_t{48'000})),
        content("<a b=\"a value\">&text; &amp; \u5BF8<c/>" + std::string(250, 't') + "</a>\n",
                size) {}

  Lines declarations;
  Lines content;
};

const Whole& WholeOf(std::size_t size) {
  static std::map<std::size_t, Whole> wholes;
  return wholes.try_emplace(size, size).first->second;
}

constexpr std::string_view kXMLDeclaration = "<?xml version='1.0' encoding='UTF-8'?>";
constexpr std::string_view kBegin =
    "<!DOCTYPE r [<!ENTITY begin '<b>'><!ENTITY end '</a>'><!ENTITY self '&self;'>"
    "<!ENTITY element '<b/>'><!ENTITY outside SYSTEM 'file'><!ENTITY % parameter 'b'>\n";

/// A file with a fault in it, and the line that its refusal names.
struct Faulty {
  std::string text;
  int line = 0;
};

class FaultyFile {
 public:
  FaultyFile(const Fault& fault, const Whole& whole) : fault_(fault), whole_(whole) {}

  Faulty At(double place) {
    Add(fault_.part == Part::XMLDeclaration ? Marked() : kXMLDeclaration);
    Add("\n");
    Add(kBegin);
    AddLines(whole_.declarations, Part::Declarations, place);
    Add("]>\n<r>\n");
    AddLines(whole_.content, fault_.part == Part::EndOfFile ? Part::EndOfFile : Part::Content,
             place);
    if (fault_.part != Part::EndOfFile) AddEnd();
    return std::move(faulty_);
  }

 private:
  void Add(std::string_view text) { faulty_.text += text; }

  int LineHere() const {
    return static_cast<int>(std::count(faulty_.text.begin(), faulty_.text.end(), '\n')) + 1;
  }

  /// The fault, whose line is the one that is written now.
  std::string_view Marked() {
    if (fault_.named == Named::Fault) faulty_.line = LineHere();
    return fault_.text;
  }

  void AddLines(const Lines& lines, Part part, double place) {
    const bool isHere = part == fault_.part;
    const std::size_t before = isHere ? lines.Before(place) : 0;
    Add(lines.First(before));
    if (isHere) Add(Marked());
    if (isHere && part == Part::EndOfFile) return;
    if (isHere) Add("\n");
    Add(lines.After(before));
  }

  void AddEnd() {
    if (fault_.named == Named::LastTag) faulty_.line = LineHere();
    Add("</r>\n");
    if (fault_.named == Named::FileEnd) faulty_.line = LineHere();
  }

  const Fault& fault_;
  const Whole& whole_;
  Faulty faulty_;
};

/// Under the sanitizers a fault stands in the largest file at one place only, some faults at each:
/// all places would take a quarter of an hour, and are tried without them.
bool IsLeftOut(const Fault& fault, std::size_t size, double place) {
  const std::size_t chosen = std::string_view(fault.name).size() % kPlaces.size();
  return kIsSanitized && fault.part != Part::XMLDeclaration && size == kSizes.back() &&
         place != kPlaces[chosen];
}

class IllFormedXML : public testing::TestWithParam<Fault> {
 protected:
  /// Lets large blocks go back to the system when they are freed: a parser that reads a text which
  /// is no longer there ends the process instead of finding what it was.
  static void SetUpTestSuite() { ::mallopt(M_MMAP_THRESHOLD, 16 * 1024); }
};

TEST_P(IllFormedXML, IsRefusedWithItsLineWhateverTheSizeOfTheFileAndThePlace) {
  const Fault& fault = GetParam();
  for (const std::size_t size : kSizes) {
    for (const double place : kPlaces) {
      if (fault.part == Part::XMLDeclaration && place > 0) continue;
      if (IsLeftOut(fault, size, place)) continue;
      const Faulty file = FaultyFile(fault, WholeOf(size)).At(place);
      VyrXMLTree tree;
      VyrProblem problem;
      EXPECT_FALSE(VyrReadXML(file.text, nullptr, tree, problem)) << size << " at " << place;
      EXPECT_EQ(problem.line, file.line) << size << " at " << place;
      EXPECT_THAT(std::string(problem.text.View()), testing::StartsWith(std::string(fault.answer)))
          << size << " at " << place;
    }
  }
}
INSTANTIATE_TEST_SUITE_P(Faults, IllFormedXML, testing::ValuesIn(kFaults));

TEST(IllFormedXMLFile, IsReadWhereTheFaultIsLeftOut) {
  const Fault none = {"none", Part::Content, "<a/>"};
  for (const std::size_t size : kSizes) {
    for (const double place : kPlaces) {
      const Faulty file = FaultyFile(none, WholeOf(size)).At(place);
      VyrXMLTree tree;
      VyrProblem problem;
      EXPECT_TRUE(VyrReadXML(file.text, nullptr, tree, problem))
          << size << " at " << place << ": " << problem.text.CString();
    }
  }
}

}  // namespace
