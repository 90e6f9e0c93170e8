#pragma once

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
///     [ANSI ASME]                                     limits the commands below it to standards of
///                                                     these parents, [not ISO] to all others;
///                                                     [any] ends the limit
///
/// The commands borrow the text they were parsed from.
class HOLSTANDARDINFRA_EXPORT VyrAnnStandardScript {
 public:
  enum class Verb : int { Node, Instance, Value, Field, Change, Delete, Each, EachNode };

  struct Command {
    int line;  ///< 1-based line of the script
    Verb verb;
    std::string_view parents;  ///< parent standards it is limited to, blank-separated; empty: any
    bool isForOthers;          ///< limited to all parent standards but those
    std::string_view path;     ///< node whose children are served, for the two each-verbs
    std::string_view text;     ///< the command; for the each-verbs what follows the child's name

    /// True when the command concerns a standard of that parent.
    bool AppliesTo(std::string_view parentStandard) const;
    /// Runs the command. Result as of the document's commands; of an each-verb 1 when the node is
    /// missing or has no children.
    int Run(VyrAnnStandardXMLParser& document) const;
  };

  /// Parses `script`, which must outlive this object. When a line is not valid there are no
  /// commands at all and `GetProblem` names the line.
  explicit VyrAnnStandardScript(VyrUnicodeView script);

  std::span<const Command> GetCommands() const { return commands_; }
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
