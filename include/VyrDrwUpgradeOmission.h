#pragma once

#include "VyrUnicodeString.h"

/// Something that an upgrade did not do, or did by a guess, because a node of the standard is
/// missing or not as the format of that version has it.
struct VyrDrwUpgradeOmission {
  /// What was found.
  enum Fault : int {
    Missing,        ///< `place` has no `name`
    Absent,         ///< there is no `place`
    Empty,          ///< there is no style in `place`
    Taken,          ///< `place` has a `name` of its own already
    FewerNodes,     ///< `place` does not hold all that it has in the format
    OtherShape,     ///< `name` of `place`, or `place` itself, is not one value
    OtherType,      ///< `name` of `place` is a value of another type
    OtherValue,     ///< `name` of `place` is `value`, which the format does not know there
    UnknownParent,  ///< the parent standard `value` is none that the format knows
    Unforeseen,     ///< anything else; only the failed checks tell what
  };
  /// What was therefore not done, or guessed.
  enum Work : int {
    BlankingKept,         ///< the blanking of a style was not converted
    BlankingAssumed,      ///< blanking was taken as "AreaFill"
    AlignmentAssumed,     ///< the alignment of a system of dimensions was taken as "Center"
    TablesKept,           ///< no table style was given cell styles
    CellsKept,            ///< the cells of a table style were not moved
    MarginsKept,          ///< a margin, and those after it, were not moved
    ArrowsKept,           ///< the arrows of a callout got no thickness and position
    ShippedCalloutsKept,  ///< old shipped values of callouts were not replaced from there on
    ViewTextLeftOut,      ///< no text style of view names was made
    ViewTextNotCentred,   ///< the text style of view names was not centred
    NameLeftOut,          ///< `name` was not added
    ValueKept,            ///< the value was not changed
    SymbolsLeftOut,       ///< engineering symbols were not appended or changed
    ParentContentKept,    ///< what depends on the parent standard was left as it was
    VersionKept,          ///< the version was not raised
    PlaceKept,            ///< something was left as it was
  };

  Fault fault = Unforeseen;  ///< what was found
  Work work = PlaceKept;     ///< what was therefore not done
  VyrUnicodeString place;    ///< path of a node, as the commands have it; may be empty
  VyrUnicodeString name;     ///< what is sought or to be made there; may be empty
  VyrUnicodeString value;    ///< what is there instead; may be empty

  /// True when both tell the same.
  bool operator==(const VyrDrwUpgradeOmission& other) const {
    return fault == other.fault && work == other.work && place == other.place &&
           name == other.name && value == other.value;
  }
};
