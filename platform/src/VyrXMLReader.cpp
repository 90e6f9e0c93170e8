#include "VyrXMLReader.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <string>

#include "VyrQuietXML.h"
#include "VyrUtf8.h"
#include "VyrXMLTreeBuilder.h"

namespace {

// Replaced entity text may add this much, plus this many times the document's own size. A real
// standard uses entities for a few symbols; more is an attack on memory.
constexpr std::size_t kFreeExpansion = std::size_t{1} << 20;
constexpr std::size_t kExpansionFactor = 8;
constexpr const char* kOutOfProportion =
    " expands out of proportion to the file; write the text out";

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
class Reader {
 public:
  Reader(xmlParserCtxt* context, VyrXMLTree& tree, std::size_t documentSize, VyrProblem& problem)
      : context_(context),
        builder_(tree, documentSize),
        expansionLeft_(kFreeExpansion + kExpansionFactor * documentSize),
        problem_(problem) {
    InstallHandlers();
  }

  bool Finish(bool isWellFormed) {
    // The parser takes a zero byte, and half a character at the end, for the end of the document.
    if (isWellFormed && !IsAllRead()) {
      Refuse(Line(), "not well-formed XML: cut off by a zero byte or by half a character");
    }
    if (isWellFormed && problem_.IsEmpty()) {
      builder_.EndDocument();
      return true;
    }
    if (problem_.IsEmpty()) {
      problem_ = {1, "not an XML document; a standard begins with a std:node element"};
    }
    return false;
  }

 private:
  static Reader& Of(void* self) { return *static_cast<Reader*>(self); }

  void InstallHandlers() {
    xmlSAXHandler& sax = *context_->sax;
    std::memset(&sax, 0, sizeof sax);
    sax.initialized = XML_SAX2_MAGIC;
    // The library keeps declared entities in its own document; it asks for one by these calls.
    sax.startDocument = [](void* self) { xmlSAX2StartDocument(Of(self).context_); };
    sax.internalSubset = [](void* self, const xmlChar* name, const xmlChar* publicId,
                            const xmlChar* systemId) {
      xmlSAX2InternalSubset(Of(self).context_, name, publicId, systemId);
    };
    sax.entityDecl = [](void* self, const xmlChar* name, int type, const xmlChar* publicId,
                        const xmlChar* systemId, xmlChar* content) {
      xmlSAX2EntityDecl(Of(self).context_, name, type, publicId, systemId, content);
    };
    sax.getEntity = [](void* self, const xmlChar* name) {
      return Of(self).Admit(xmlSAX2GetEntity(Of(self).context_, name));
    };
    sax.getParameterEntity = [](void* self, const xmlChar* name) {
      return Of(self).Admit(xmlSAX2GetParameterEntity(Of(self).context_, name));
    };
    sax.startElementNs = OnStartElement;
    sax.endElementNs = [](void* self, const xmlChar*, const xmlChar*, const xmlChar*) {
      Of(self).builder_.EndElement();
    };
    sax.characters = [](void* self, const xmlChar* text, int size) {
      Of(self).builder_.AddText(View(text, size), Of(self).Line());
      Of(self).StopWhenTooLarge();
    };
    sax.ignorableWhitespace = sax.characters;
    sax.cdataBlock = [](void* self, const xmlChar* text, int size) {
      Of(self).builder_.AddLeaf(VyrXMLTree::Kind::CData, View(text, size), Of(self).Line());
      Of(self).StopWhenTooLarge();
    };
    sax.comment = [](void* self, const xmlChar* text) {
      Of(self).builder_.AddLeaf(VyrXMLTree::Kind::Comment, View(text), Of(self).Line());
    };
    sax.processingInstruction = [](void* self, const xmlChar* target, const xmlChar* text) {
      // The target is not interned by the parser; a copy in its dictionary makes it so.
      const xmlChar* unique = xmlDictLookup(Of(self).context_->dict, target, -1);
      Of(self).builder_.AddProcessingInstruction({Narrow(unique), nullptr, nullptr}, View(text),
                                                 Of(self).Line());
    };
    sax.serror = OnError;
    context_->userData = this;
  }

  static void OnStartElement(void* self, const xmlChar* localName, const xmlChar* prefix,
                             const xmlChar* uri, int, const xmlChar**, int attributeCount,
                             int defaultedCount, const xmlChar** attributes) {
    Reader& reader = Of(self);
    reader.builder_.StartElement({Narrow(localName), Narrow(prefix), Narrow(uri)}, reader.Line());
    for (int i = 0; i < attributeCount; ++i, attributes += 5) {
      const auto size = static_cast<int>(attributes[4] - attributes[3]);
      // Values that the type declaration adds come last; they expand the document as entities do.
      const bool isDefault = i >= attributeCount - defaultedCount;
      if (isDefault &&
          !reader.Spend(sizeof(VyrXMLTree::Attribute) + static_cast<std::size_t>(size))) {
        return reader.Refuse(reader.Line(), "default value of attribute '" +
                                                std::string(View(attributes[0])) + "'" +
                                                kOutOfProportion);
      }
      reader.builder_.AddAttribute(
          {Narrow(attributes[0]), Narrow(attributes[1]), Narrow(attributes[2])},
          View(attributes[3], size));
    }
    reader.StopWhenTooLarge();
  }

  static void OnError(void* self, xmlError* error) {
    // A namespace is a name like any other, whether or not it is a well-formed address.
    if (error->level < XML_ERR_ERROR || error->code == XML_WAR_NS_URI) return;
    std::string text = error->message == nullptr ? "not well formed" : error->message;
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
    std::replace(text.begin(), text.end(), '\n', ' ');
    // The library cuts long messages anywhere, inside a character too.
    text.resize(std::min(VyrFindInvalidUtf8(text), text.size()));
    Reader& reader = Of(self);
    const int line = reader.Line();
    reader.Refuse(line == 0 ? error->line : line, "not well-formed XML: " + text);
  }

  /// Lets the parser use an entity, or stops it. Asked once for every reference that is replaced,
  /// so the sum of what is admitted is what the document expands to.
  xmlEntity* Admit(xmlEntity* entity) {
    if (entity == nullptr) return nullptr;
    const std::string name = "entity '" + std::string(View(entity->name)) + "'";
    if (entity->etype == XML_EXTERNAL_GENERAL_PARSED_ENTITY ||
        entity->etype == XML_EXTERNAL_GENERAL_UNPARSED_ENTITY ||
        entity->etype == XML_EXTERNAL_PARAMETER_ENTITY) {
      Refuse(Line(), name + " lies outside the file; a standard must be complete in itself");
      return nullptr;
    }
    if (!Spend(static_cast<std::size_t>(entity->length) + 1)) {
      Refuse(Line(), name + kOutOfProportion);
      return nullptr;
    }
    return entity;
  }

  bool Spend(std::size_t expansion) {
    if (expansion > expansionLeft_) return false;
    expansionLeft_ -= expansion;
    return true;
  }

  bool IsAllRead() const {
    const xmlParserInput* input = context_->input;
    if (input == nullptr || input->cur != input->end) return false;
    return input->buf == nullptr || input->buf->raw == nullptr || xmlBufUse(input->buf->raw) == 0;
  }

  void StopWhenTooLarge() {
    if (!builder_.FitsInTree()) Refuse(Line(), "larger than 4 GB of text; split the standard");
  }

  void Refuse(int line, std::string text) {
    if (!problem_.IsEmpty()) return;
    problem_ = {line, std::move(text)};
    xmlStopParser(context_);
  }

  /// The line of the document itself: inside an entity, the line that refers to it.
  int Line() const { return context_->inputNr == 0 ? 0 : context_->inputTab[0]->line; }

  xmlParserCtxt* context_;
  VyrXMLTreeBuilder builder_;
  std::size_t expansionLeft_;
  VyrProblem& problem_;
};

}  // namespace

bool VyrReadXML(std::string_view document, const char* encoding, VyrXMLTree& tree,
                VyrProblem& problem) {
  problem = {};
  if (document.empty()) {
    problem = {1, "empty; a standard begins with a std:node element"};
    return false;
  }
  if (document.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    problem = {0, "larger than 2 GB; split the standard"};
    return false;
  }
  xmlInitParser();
  const VyrQuietXML quiet;
  const std::unique_ptr<xmlParserCtxt, ContextDeleter> context(xmlNewParserCtxt());
  Reader reader(context.get(), tree, document.size(), problem);
  const int options = XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_HUGE |
                      (encoding == nullptr ? 0 : XML_PARSE_IGNORE_ENC);
  xmlDoc* declarations =
      xmlCtxtReadMemory(context.get(), document.data(), static_cast<int>(document.size()), nullptr,
                        encoding, options);
  const bool isWellFormed = declarations != nullptr;
  if (declarations != nullptr) xmlFreeDoc(declarations);
  return reader.Finish(isWellFormed);
}
