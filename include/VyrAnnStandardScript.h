#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "HolStandardInfraExport.h"
#include "VyrProblem.h"
#include "VyrResult.h"
#include "VyrUnicodeString.h"

class VyrAnnStandardXMLParser;

/// Path commands as a text, one a line: a verb, blanks, and the command to the end of the line
/// (blanks inside a command count). Empty lines and lines that begin with "#" mean nothing.
///
///     node       Root:Frames:8                        adds a node
///     instance   Root.Frames:FrameDef:0               adds an instance of a compound type
///     value      Root.Dimension:DIMLTail:float:2.0    adds a value, by name
///     field      Root.Frames.FrameDef:Type:int:1:0    adds a value to the entry last added
///     change     Root.Dimension.DIMLTail:2.5          changes a value
///     delete     Root.General.DefaultTextFont         deletes a node or a value
///     each       Root.Styles.Table .Text:Bold:...     adds a value below every child of a node
///     each-node  Root.Styles.Table :Leader:0          adds a node below every child of a node
///     each-change Root.Styles.Table .Text.Bold:Yes    changes a value below every child
///
///     [ANSI ASME]                                     limits the commands below it to standards of
///                                                     these parents, [not ISO] to all others;
///                                                     [any] ends the limit
///
/// The commands borrow the text they were parsed from. A script that is parsed is only read:
/// threads may share it, each with a document of its own.
class HOLSTANDARDINFRA_EXPORT VyrAnnStandardScript {
 public:
  /// What a command does; a verb each, as in the list above.
  enum class Verb : int {
    Node,        ///< "node"
    Instance,    ///< "instance"
    Value,       ///< "value"
    Field,       ///< "field"
    Change,      ///< "change"
    Delete,      ///< "delete"
    Each,        ///< "each"
    EachNode,    ///< "each-node"
    EachChange,  ///< "each-change"
  };

  /// Most bytes of text that a command of an each-verb may add: its own text, once for each child.
  /// One that would add more is a mistake, or an attempt to fill the memory.
  static constexpr std::size_t kMostAdded = std::size_t{256} << 20;

  /// One command of a script. Its texts are borrowed from the script's.
  struct Command {
    int line;                  ///< 1-based line of the script
    Verb verb;                 ///< what to do
    std::string_view parents;  ///< parent standards it is limited to, blank-separated; empty: any
    bool isForOthers;          ///< limited to all parent standards but those
    std::string_view path;     ///< node whose children are served, for the each-verbs
    std::string_view text;     ///< the command; for the each-verbs what follows the child's name

    /// True when the command concerns a standard of that parent ("ISO", "JIS", "ANSI" or "ASME").
    /// One of another parent, or of none, is concerned unless the command is limited to some.
    bool AppliesTo(std::string_view parentStandard) const;
    /// True for the each-verbs, which serve every child of a node.
    bool IsForEach() const {
      return verb == Verb::Each || verb == Verb::EachNode || verb == Verb::EachChange;
    }
    /// Runs the command, whatever the parent standard of `document`, which is only borrowed. Result
    /// as of the document's commands: 0 done, 1 nothing found to do it to, 2 a position that is no
    /// number; of an each-verb 0, or 1 when the node is missing, has no children, or nothing
    /// changes, or 3 when it would add more than `kMostAdded`, in which case nothing is added.
    int Run(VyrAnnStandardXMLParser& document) const;
  };

  /// Parses `script`, which must outlive this object. When a line is not valid there are no
  /// commands at all and `GetProblem` names the line.
  explicit VyrAnnStandardScript(VyrUnicodeView script);

  /// The commands in the order of their lines, borrowed from this object.
  std::span<const Command> GetCommands() const { return commands_; }
  /// The first line that is not valid, and what would be right; empty when all are.
  const VyrProblem& GetProblem() const { return problem_; }

 private:
  bool ReadLine(std::string_view line);
  bool ReadParents(std::string_view line);
  bool ReadCommand(std::string_view line);
  bool Fail(std::string text);

  int line_ = 0;
  std::string_view parents_;
  bool isForOthers_ = false;
  std::vector<Command> commands_;
  VyrProblem problem_;
};
