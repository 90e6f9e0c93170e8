#pragma once

#include <atomic>
#include <memory>

#include "HolStandardInfraExport.h"
#include "VyrAnnStandardXMLNode.h"
#include "VyrAnnStandardXMLParserCodec.h"
#include "VyrProblem.h"
#include "VyrResult.h"
#include "VyrUnicodeString.h"

/// A drafting standard in memory: the parameters ("Root"), the enumerations ("Enum") and the
/// compound types ("TypeDef"), built and edited by path commands.
///
/// The first segment of every path is "Root", "Enum" or "TypeDef"; names are joined by "." and
/// compared exactly. The fields of a command are separated by ":". A command acts at once and
/// returns 0 when done, 1 when the node it starts from or aims at does not exist, 2 when its
/// position is no number; with 1 and 2 nothing has changed. A position is 1-based and inserts
/// before the element now in that place; absent or below 1 it appends; one past the last element
/// is refused with a report, and the command still returns 0.
///
/// A document owns its three trees as long as nobody else holds a reference to their nodes. A copy
/// shares the trees and the codec of its source: each sees what the other edits. A document and its
/// copies are used from one thread at a time; other documents are no concern of theirs.
class HOLSTANDARDINFRA_EXPORT VyrAnnStandardXMLParser {
 public:
  /// An empty document with a codec of the factory installed. A factory that makes none,
  /// without which every load and save fails, and a codec that refuses the document are reported.
  VyrAnnStandardXMLParser();
  /// @{
  /// Shares the trees and the codec of the source.
  VyrAnnStandardXMLParser(const VyrAnnStandardXMLParser&) = default;
  VyrAnnStandardXMLParser& operator=(const VyrAnnStandardXMLParser&) = default;
  /// @}
  ~VyrAnnStandardXMLParser() = default;

  /// "Path:Name[:Pos]": adds a child node. Directly in "Enum" it is an enumeration, directly in
  /// "TypeDef" a compound type, elsewhere an instance when `instance` is not 0, else a plain node.
  int AddNodeWithPath(VyrUnicodeView command, int instance);
  /// "Path:Name:Type:Value[:Pos]": adds a value. Type is "int", "float", "string", "color",
  /// "enum." and the enumeration, or "float.", a unit, "." and the lower bound. Below "Root" the
  /// value is wrapped in a plain node called Name, except in an instance and with the occurrence
  /// -1, where it is added directly under that name. `occurrence` other than 1 addresses the last
  /// node of Path by its place: k >= 2 the k-th child of its parent, below 1 the last.
  int AddValueWithPath(VyrUnicodeView command, int occurrence);
  /// The same command for every child, of the parent of Path, that has the last name of Path: of
  /// "Root" and two names more. With each further name the parent's path is cut one character
  /// shorter than it should be, which existing tables of commands count on. `occurrence` as above,
  /// but of the parent. 1 when there is no such child.
  int AddValueWithPathForAllOccurence(VyrUnicodeView command, int occurrence);
  /// "Path:Text": sets the text of a node's only value, or "Path:Field:Text" of one of several; or
  /// replaces the text of the value that Path finds by its present text. 1 when neither is found
  /// and without a ":".
  int ChangeValueWithPath(VyrUnicodeView command);
  /// Removes the node at the path, else the value of that name, else the value of that text. 0 when
  /// removed, 1 when there is nothing of the kind.
  int DeleteNodeWithPath(VyrUnicodeView path);
  /// The node at the path with a reference for the caller; null when there is none.
  VyrAnnStandardXMLNode* GetNodeWithPath(VyrUnicodeView path);
  /// Text of the first value of the node at the path; empty when there is none.
  VyrUnicodeString GetValueWithPath(VyrUnicodeView path);

  /// 1 when every enumeration value of "Root" is defined, else 0; each that is not has been
  /// reported as one line of trace output.
  int Check();
  /// The format version that the document carries in "Root.Version", else the one that its content
  /// tells; -1 when the version it carries cannot be read.
  int GetVersion();

  /// Appends the content of a file (`fromFile` not 0: `source` is its path) or of an XML text
  /// (UTF-8) to the document. 0 on success; 1 on failure, and then the document is not to be used.
  int DecodeXML(VyrUnicodeView source, int fromFile);
  /// Writes the document to a file, all of it or nothing: when the result is negative the file is
  /// as it was.
  HRESULT SaveInFile(VyrUnicodeView path);
  /// Writes the document into `out`; left alone on failure, which is reported.
  void SaveInString(VyrUnicodeString& out);
  /// Why the last `DecodeXML` or save failed.
  VyrProblem GetProblem() const;

  /// Sets the factory for documents created from now on; null restores the default one. The
  /// factory stays the caller's and must outlive its use.
  static void SetCodecFactory(VyrAnnStandardXMLParserCodecFactory* factory);

 private:
  VyrAnnStandardXMLNode* GetStartNodeWithPath(std::string_view path, std::string_view& rest) const;
  HRESULT GetExplicitVersion(int& version);
  HRESULT IsVersioned(int release);

  std::shared_ptr<VyrAnnStandardXMLParserCodec> codec_;
  VyrAnnStandardXMLNode_var typeDefTop_;
  VyrAnnStandardXMLNode_var enumTop_;
  VyrAnnStandardXMLNode_var root_;

  static std::atomic<VyrAnnStandardXMLParserCodecFactory*> _codecFactory;
};
