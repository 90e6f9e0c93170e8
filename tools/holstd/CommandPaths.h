#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "EntryList.h"
#include "PathNames.h"
#include "VyrAnnStandardScript.h"
#include "VyrAnnStandardXMLParser.h"

/// The paths of commands as the tool takes them, while commands edit a document. The language knows
/// the first of equal names alone; here brackets lead to any entry and any value, as paths are
/// printed, or to the entry of that "Name". A name that is written just so, brackets included,
/// comes first.
class CommandPaths {
 public:
  using Verb = VyrAnnStandardScript::Verb;
  using Node = VyrAnnStandardXMLNode;
  using Node_var = VyrAnnStandardXMLNode_var;
  using Value_var = VyrAnnStandardXMLValue_var;

  /// `document` must outlive this object, through which alone it is edited.
  explicit CommandPaths(VyrAnnStandardXMLParser& document) : document_(document) {}

  VyrAnnStandardXMLParser& Document() const { return document_; }

  /// Cuts the path off a command, with the ":" behind it; false when there is none.
  bool CutPath(std::string_view& command, std::string_view& path);
  /// The node that a path leads to; null when it leads to none, or by a "Name" to several.
  Node_var NodeAt(std::string_view path);
  /// The value that a path leads to as values are printed; null for all others.
  Value_var ValueAt(std::string_view path);
  /// The entry that `field` fills: the last one of the list that the path is in, or with brackets
  /// behind the path the one that they mean. Null when there is none.
  Node_var EntryToFill(std::string_view path);
  /// True when several children of a node have the name.
  bool HasSeveral(Node& holder, std::string_view name);
  /// Why a path leads to nothing.
  std::string Missing(std::string_view path);

  /// Does a command that serves one place; result as of the document's commands.
  int Run(Verb verb, std::string_view command);
  /// Does a command at a node in the tree called `top`; `rest` is what follows the node's path.
  int RunAt(std::string_view top, Node& node, Verb verb, std::string_view rest);

 private:
  /// An entry of a list, which has it as a child of its holder.
  struct Entry {
    Node_var holder;
    Node_var entry;
  };

  Node_var ChildOf(Node& holder, const PathName& name);
  EntryLists& ListsOf(Node& holder);
  EntryList* ListIn(const Node& holder, std::string_view name);
  Node_var EntryCalled(Node& holder, const PathName& name);
  std::vector<Entry> EntriesOn(Verb verb, std::string_view path);
  int RunAlone(Verb verb, std::string_view path, std::string_view command);
  int Add(Verb verb, std::string_view path, std::string_view command);
  int Change(std::string_view command);
  int Delete(std::string_view path);

  VyrAnnStandardXMLParser& document_;
  std::string several_;  ///< which entries the path means that was looked for last
  std::unordered_map<const Node*, EntryLists> lists_;  ///< by their holders
};
