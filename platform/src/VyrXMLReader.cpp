#include "VyrXMLReader.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "VyrQuietXML.h"
#include "VyrShownText.h"
#include "VyrUtf8.h"
#include "VyrWithinMemory.h"
#include "VyrXMLEncoding.h"
#include "VyrXMLMarkupLimits.h"
#include "VyrXMLTreeBuilder.h"

namespace {

// Replaced entity text may add this much, plus the document's own size. A real standard uses
// entities for a few symbols; more is an attack on memory.
constexpr std::size_t kFreeExpansion = std::size_t{1} << 20;
constexpr const char* kOutOfProportion =
    " expands out of proportion to the file; write the text out";

// The parser looks through lists of these, so that without a limit its time would grow with their
// square. A standard has one namespace and a dozen names.
constexpr std::size_t kMostNamespacesInScope = 256;
constexpr int kMostNames = 1 << 16;
constexpr std::size_t kMostOfNamespaceName = 4096;  // bytes
constexpr std::size_t kMostParameterText = kMostXMLDeclarations;
constexpr int kMostDefaults = 256;

/// What would be right, by the parser's error.
struct Remedy {
  int error;
  const char* text;
};

constexpr const char* kTakeWholeFile = "the text breaks off there; take a complete copy of it";
constexpr std::array<Remedy, 13> kRemedies = {{
    {XML_ERR_TAG_NOT_FINISHED, kTakeWholeFile},
    {XML_ERR_TAG_NAME_MISMATCH, "close every element with an end tag of its own name"},
    {XML_ERR_DOCUMENT_EMPTY, "a standard begins with a std:node element"},
    {XML_ERR_DOCUMENT_END, "nothing may follow the document element"},
    {XML_ERR_INVALID_CHAR, "leave the character out, no XML text may hold it"},
    {XML_ERR_UNDECLARED_ENTITY, "write the character itself, or declare the entity"},
    {XML_ERR_NAME_REQUIRED, "write '&' as &amp; and '<' as &lt; in a text"},
    {XML_ERR_ATTRIBUTE_REDEFINED, "give an attribute once"},
    {XML_ERR_ATTRIBUTE_NOT_STARTED, "put the value between quotes"},
    {XML_ERR_LT_IN_ATTRIBUTE, "write '<' as &lt; in a value"},
    {XML_ERR_MISPLACED_CDATA_END, "write ']]>' as ]]&gt; in a text"},
    {XML_ERR_RESERVED_XML_NAME, "the declaration <?xml ...?> begins the file and stands once"},
    {XML_NS_ERR_UNDEFINED_NAMESPACE, "declare the prefix with xmlns on an element around it"},
}};

std::string_view RemedyOf(int error) {
  const auto found = std::find_if(kRemedies.begin(), kRemedies.end(),
                                  [=](const Remedy& remedy) { return remedy.error == error; });
  return found == kRemedies.end() ? std::string_view() : found->text;
}

/// The parser begins some of its messages with the function that found the fault.
std::string_view WithoutFunctionName(std::string_view text) {
  const std::size_t end = text.find_first_of(" :");
  if (!text.starts_with("xml") || end == text.npos) return text;
  const std::size_t message = text.find_first_not_of(" :", end);
  const bool isName = text.substr(end, message - end).find(':') != text.npos;
  return isName && message != text.npos ? text.substr(message) : text;
}

struct ContextDeleter {
  void operator()(xmlParserCtxt* context) const {
    if (context->myDoc != nullptr) xmlFreeDoc(context->myDoc);
    xmlFreeParserCtxt(context);
  }
};

const char* Narrow(const xmlChar* text) {
  return reinterpret_cast<const char*>(text);
}

std::string_view View(const xmlChar* begin, int size) {
  return {Narrow(begin), static_cast<std::size_t>(size)};
}

std::string_view View(const xmlChar* text) {
  return text == nullptr ? "" : Narrow(text);
}

/// The parser's events, each sent on to the tree, and the guards against hostile entities.
///
/// The parser is never stopped from within an event: it would go on for some steps with pointers to
/// a text that it has left. After a refusal the text becomes blanks, so that it finds nothing more,
/// and what it still says is not heard.
class Reader {
 public:
  /// `text` is the one that the parser reads, from where it lies.
  Reader(xmlParserCtxt* context, std::string& text, VyrXMLTree& tree, VyrProblem& problem)
      : context_(context),
        text_(text),
        builder_(tree, text.size()),
        expansionLeft_(kFreeExpansion + text.size()),
        problem_(problem) {
    InstallHandlers();
  }

  /// Takes what the library tells where it knows no parser. When memory runs out there it goes on,
  /// and may leave out what an entity holds.
  static void TakeInnerError(void* self, xmlError* error) {
    if (error->code == XML_ERR_NO_MEMORY) static_cast<Reader*>(self)->RefuseForMemory();
  }

  bool Finish(bool isWellFormed) {
    if (!problem_.IsEmpty()) return false;
    RefuseTooManyNames();
    // Of a fault the parser tells, but not of memory that it lacks to begin with.
    if (!isWellFormed && problem_.IsEmpty()) RefuseForMemory();
    if (problem_.IsEmpty()) builder_.EndDocument();
    return problem_.IsEmpty();
  }

 private:
  /// Every event comes through here. After a refusal none is heard any more: the parser goes on
  /// with what it was given, and would end elements that were never started. No exception may pass
  /// through the parser, which is written in C.
  template <auto Event, class Result, class... Arguments>
  static Result On(void* self, Arguments... arguments) {
    Reader& reader = *static_cast<Reader*>(self);
    if (!reader.problem_.IsEmpty()) return Result();
    return VyrWithinMemory([&] { return (reader.*Event)(arguments...); },
                           [&] {
                             reader.RefuseForMemory();
                             return Result();
                           });
  }

  void InstallHandlers() {
    xmlSAXHandler& sax = *context_->sax;
    std::memset(&sax, 0, sizeof sax);
    sax.initialized = XML_SAX2_MAGIC;
    sax.startDocument = On<&Reader::StartDocument>;
    sax.internalSubset = On<&Reader::StartDeclarations>;
    sax.entityDecl = On<&Reader::DeclareEntity>;
    sax.attributeDecl = [](void* self, const xmlChar*, const xmlChar* name, int, int,
                           const xmlChar* value, xmlEnumeration* literals) {
      xmlFreeEnumeration(literals);
      On<&Reader::DeclareAttribute, void>(self, name, value);
    };
    sax.getEntity = On<&Reader::GetEntity>;
    sax.getParameterEntity = On<&Reader::GetParameterEntity>;
    sax.startElementNs = On<&Reader::StartElement>;
    sax.endElementNs = On<&Reader::EndElement>;
    sax.characters = On<&Reader::AddText>;
    sax.ignorableWhitespace = sax.characters;
    sax.cdataBlock = On<&Reader::AddCData>;
    sax.comment = On<&Reader::AddComment>;
    sax.processingInstruction = On<&Reader::AddInstruction>;
    sax.serror = [](void* self, xmlError* error) {
      // When memory runs out for the declarations, the parser names itself and not its user.
      if (self == error->ctxt) self = static_cast<xmlParserCtxt*>(error->ctxt)->userData;
      On<&Reader::TakeError, void>(self, error);
    };
    context_->userData = this;
  }

  // The library keeps declared entities in its own document; it asks for one by these calls.
  void StartDocument() { xmlSAX2StartDocument(context_); }

  void StartDeclarations(const xmlChar* name, const xmlChar* publicId, const xmlChar* systemId) {
    xmlSAX2InternalSubset(context_, name, publicId, systemId);
  }

  /// The content of an entity is parsed wherever the entity is referred to.
  void DeclareEntity(const xmlChar* name, int type, const xmlChar* publicId,
                     const xmlChar* systemId, xmlChar* content) {
    if (type == XML_INTERNAL_GENERAL_ENTITY) {
      const std::optional<VyrXMLExcess> excess = VyrFindXMLExcess(View(content));
      if (excess) return Refuse("entity " + VyrQuoted(View(name)) + " " + excess->text);
    }
    xmlSAX2EntityDecl(context_, name, type, publicId, systemId, content);
    // A declaration that memory runs out for is lost without a word.
    const bool isParameter =
        type == XML_INTERNAL_PARAMETER_ENTITY || type == XML_EXTERNAL_PARAMETER_ENTITY;
    const xmlEntity* const declared =
        isParameter ? xmlSAX2GetParameterEntity(context_, name) : xmlSAX2GetEntity(context_, name);
    // Of several for one name the first counts, which may be of another kind.
    const bool isMeant = declared != nullptr && static_cast<int>(declared->etype) == type;
    if (declared == nullptr || (isMeant && content != nullptr && declared->content == nullptr)) {
      RefuseForMemory();
    }
  }

  void DeclareAttribute(const xmlChar* name, const xmlChar* defaultValue) {
    if (defaultValue == nullptr || ++defaults_ <= kMostDefaults) return;
    Refuse("default value of attribute " + VyrQuoted(View(name)) + " is one of more than " +
           std::to_string(kMostDefaults) + "; write the attributes out");
  }

  xmlEntity* GetEntity(const xmlChar* name) { return Admit(xmlSAX2GetEntity(context_, name)); }

  xmlEntity* GetParameterEntity(const xmlChar* name) {
    return Admit(xmlSAX2GetParameterEntity(context_, name));
  }

  void StartElement(const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri,
                    int namespaceCount, const xmlChar** namespaces, int attributeCount,
                    int defaultedCount, const xmlChar** attributes) {
    if (!EnterNamespaces({namespaces, static_cast<std::size_t>(namespaceCount) * 2})) return;
    builder_.StartElement({Narrow(localName), Narrow(prefix), Narrow(uri)}, Line());
    for (int i = 0; i < attributeCount; ++i, attributes += 5) {
      const auto size = static_cast<int>(attributes[4] - attributes[3]);
      // Values that the type declaration adds come last; they expand the document as entities do.
      const bool isDefault = i >= attributeCount - defaultedCount;
      if (isDefault && !Spend(sizeof(VyrXMLTree::Attribute) + static_cast<std::size_t>(size))) {
        return Refuse("default value of attribute " + VyrQuoted(View(attributes[0])) +
                      kOutOfProportion);
      }
      builder_.AddAttribute({Narrow(attributes[0]), Narrow(attributes[1]), Narrow(attributes[2])},
                            View(attributes[3], size));
    }
    RefuseWhenTooLarge();
    RefuseTooManyNames();
  }

  void EndElement(const xmlChar*, const xmlChar*, const xmlChar*) {
    LeaveNamespaces();
    builder_.EndElement();
  }

  void AddText(const xmlChar* text, int size) {
    builder_.AddText(View(text, size), Line());
    RefuseWhenTooLarge();
  }

  void AddCData(const xmlChar* text, int size) {
    AddLeaf(VyrXMLTree::Kind::CData, View(text, size));
  }

  void AddComment(const xmlChar* text) { AddLeaf(VyrXMLTree::Kind::Comment, View(text)); }

  void AddLeaf(VyrXMLTree::Kind kind, std::string_view text) {
    builder_.AddLeaf(kind, text, Line());
    RefuseWhenTooLarge();
  }

  void AddInstruction(const xmlChar* target, const xmlChar* text) {
    // The target is not interned by the parser; a copy in its dictionary makes it so.
    const xmlChar* unique = xmlDictLookup(context_->dict, target, -1);
    if (unique == nullptr) return RefuseForMemory();
    builder_.AddProcessingInstruction({Narrow(unique), nullptr, nullptr}, View(text), Line());
    RefuseWhenTooLarge();
    RefuseTooManyNames();
  }

  void TakeError(xmlError* error) {
    // A namespace is a name like any other, whether or not it is a well-formed address.
    if (error->level < XML_ERR_ERROR || error->code == XML_WAR_NS_URI) return;
    // There is always a message, unless there was no memory for it.
    if (error->code == XML_ERR_NO_MEMORY || error->message == nullptr) return RefuseForMemory();
    std::string_view text = error->message;
    while (text.ends_with('\n') || text.ends_with(' ')) text.remove_suffix(1);
    text = WithoutFunctionName(text);
    // The library cuts long messages anywhere, inside a character too.
    text = text.substr(0, VyrFindInvalidUtf8(text));
    std::string_view remedy = RemedyOf(error->code);
    if (remedy.empty()) remedy = IsAtEnd() ? kTakeWholeFile : "mend the markup there";
    const int line = Line();
    RefuseAt(line == 0 ? error->line : line,
             "not well-formed XML: " + VyrShownText(text) + "; " + std::string(remedy));
  }

  /// Counts the namespaces that the element to start declares: prefix and name of each. The
  /// parser's own count is no help, it begins anew inside an entity.
  bool EnterNamespaces(std::span<const xmlChar* const> declared) {
    ++depth_;
    if (declared.empty()) return true;
    for (std::size_t i = 1; i < declared.size(); i += 2) {
      if (View(declared[i]).size() <= kMostOfNamespaceName) continue;
      Refuse("has a namespace name longer than " + std::to_string(kMostOfNamespaceName / 1024) +
             " KB; that of a standard is far shorter");
      return false;
    }
    declaring_.push_back({depth_, declared.size() / 2});
    namespacesInScope_ += declared.size() / 2;
    if (namespacesInScope_ <= kMostNamespacesInScope) return true;
    Refuse("has more than " + std::to_string(kMostNamespacesInScope) +
           " namespace declarations inside each other; declare a namespace once, on the document "
           "element");
    return false;
  }

  void LeaveNamespaces() {
    if (!declaring_.empty() && declaring_.back().depth == depth_) {
      namespacesInScope_ -= declaring_.back().count;
      declaring_.pop_back();
    }
    --depth_;
  }

  /// Lets the parser use an entity, or refuses it. Asked once for every reference that is replaced,
  /// so the sum of what is admitted is what the document expands to.
  xmlEntity* Admit(xmlEntity* entity) {
    if (entity == nullptr) return nullptr;
    const auto named = [&] { return "entity " + VyrQuoted(View(entity->name)); };
    if (entity->etype == XML_EXTERNAL_GENERAL_PARSED_ENTITY ||
        entity->etype == XML_EXTERNAL_GENERAL_UNPARSED_ENTITY ||
        entity->etype == XML_EXTERNAL_PARAMETER_ENTITY) {
      Refuse(named() + " lies outside the file; a standard must be complete in itself");
      return nullptr;
    }
    const std::size_t expansion = static_cast<std::size_t>(entity->length) + 1;
    const bool isParameter = entity->etype == XML_INTERNAL_PARAMETER_ENTITY;
    if (!Spend(expansion) || (isParameter && !SpendParameterText(expansion))) {
      Refuse(named() + kOutOfProportion);
      return nullptr;
    }
    return entity;
  }

  bool Spend(std::size_t expansion) {
    if (expansion > expansionLeft_) return false;
    expansionLeft_ -= expansion;
    return true;
  }

  /// What parameters expand to are declarations, with their limit.
  bool SpendParameterText(std::size_t expansion) {
    parameterText_ += expansion;
    return parameterText_ <= kMostParameterText;
  }

  bool IsAtEnd() const {
    return context_->inputNr > 0 && context_->inputTab[0]->cur >= context_->inputTab[0]->end;
  }

  void RefuseWhenTooLarge() {
    if (!builder_.FitsInTree()) Refuse("larger than 4 GB of text; split the standard");
  }

  void RefuseTooManyNames() {
    if (xmlDictSize(context_->dict) > kMostNames) {
      Refuse("has more than " + std::to_string(kMostNames) +
             " different element and attribute names; the names in a standard are those of its "
             "format");
    }
  }

  void Refuse(std::string text) { RefuseAt(Line(), std::move(text)); }

  void RefuseAt(int line, std::string text) {
    if (!problem_.IsEmpty()) return;
    problem_ = {line, std::move(text)};
    BlankText();
  }

  void RefuseForMemory() {
    VyrNoteOutOfMemory();
    VyrSayOutOfMemory(problem_);
    BlankText();
  }

  void BlankText() { std::fill(text_.begin(), text_.end(), ' '); }

  /// The line of the document itself: inside an entity, the line that refers to it.
  int Line() const { return context_->inputNr == 0 ? 0 : context_->inputTab[0]->line; }

  xmlParserCtxt* context_;
  std::string& text_;
  VyrXMLTreeBuilder builder_;
  std::size_t expansionLeft_;
  std::size_t parameterText_ = 0;
  int defaults_ = 0;
  std::size_t depth_ = 0;
  /// The open elements that declare namespaces, and how many.
  struct Declaring {
    std::size_t depth;
    std::size_t count;
  };
  std::vector<Declaring> declaring_;
  std::size_t namespacesInScope_ = 0;
  VyrProblem& problem_;
};

/// Room for the attributes of any element that is read, five fields for each. Where the parser has
/// to make more room and there is no memory for all of it, it goes on in room that it has freed
/// (libxml2 2.9.14).
void MakeRoomForAttributes(xmlParserCtxt& context) {
  constexpr std::size_t attributes = kMostXMLAttributes + kMostDefaults + 1;
  constexpr std::size_t fields = attributes * 5;
  context.atts = static_cast<const xmlChar**>(xmlMalloc(fields * sizeof(xmlChar*)));
  context.attallocs = static_cast<int*>(xmlMalloc(attributes * sizeof(int)));
  if (context.atts == nullptr || context.attallocs == nullptr) VyrThrowOutOfMemory();
  context.maxatts = static_cast<int>(fields);
}

bool Parse(std::string text, VyrXMLTree& tree, VyrProblem& problem) {
  xmlInitParser();
  const VyrQuietXML quiet;
  const std::unique_ptr<xmlParserCtxt, ContextDeleter> context(xmlNewParserCtxt());
  if (context == nullptr) VyrThrowOutOfMemory();
  MakeRoomForAttributes(*context);
  Reader reader(context.get(), text, tree, problem);
  xmlSetStructuredErrorFunc(&reader, Reader::TakeInnerError);
  xmlCtxtUseOptions(context.get(),
                    XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_HUGE | XML_PARSE_IGNORE_ENC);
  // The parser reads the text in place. A copy of its own it would move and free while it has
  // pointers to it, when memory runs out or a fault ends the reading.
  xmlParserInput* const input =
      xmlNewStringInputStream(context.get(), reinterpret_cast<const xmlChar*>(text.c_str()));
  if (input == nullptr) VyrThrowOutOfMemory();
  inputPush(context.get(), input);
  return reader.Finish(xmlParseDocument(context.get()) == 0);
}

bool Read(std::string_view document, const char* encoding, VyrXMLTree& tree, VyrProblem& problem) {
  if (document.empty()) {
    problem = {1, "empty; a standard begins with a std:node element"};
    return false;
  }
  std::string converted;
  std::string_view utf8;
  if (!VyrDecodeXMLText(document, encoding, converted, utf8, problem)) return false;
  if (utf8.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    problem = {1, "larger than 2 GB; split the standard"};
    return false;
  }
  if (const std::optional<VyrXMLExcess> excess = VyrFindXMLExcess(utf8)) {
    const std::string_view before = utf8.substr(0, excess->place);
    problem = {static_cast<int>(std::count(before.begin(), before.end(), '\n')) + 1, excess->text};
    return false;
  }
  const bool isConverted = utf8.data() == converted.data();
  return Parse(isConverted ? std::move(converted) : std::string(utf8), tree, problem);
}

}  // namespace

bool VyrReadXML(std::string_view document, const char* encoding, VyrXMLTree& tree,
                VyrProblem& problem) {
  problem = {};
  const HRESULT result = VyrWithinMemory(
      problem, [&] { return Read(document, encoding, tree, problem) ? S_OK : E_FAIL; });
  return VyrSucceeded(result);
}
