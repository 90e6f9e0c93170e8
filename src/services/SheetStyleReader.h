#pragma once

#include <string_view>
#include <unordered_map>

#include "SheetFormatReader.h"
#include "VyrAnnStandardXMLNode.h"
#include "VyrDrwStdSheetStyle.h"
#include "VyrResult.h"

/// Reads sheet styles from the children of a standard's node "Root.Styles.Sheet".
class SheetStyleReader {
 public:
  /// `formats` is the node "Root.SheetFormat", where the formats are looked up that styles name; it
  /// must outlive the reader and not be edited. Null: no format is found.
  explicit SheetStyleReader(const VyrAnnStandardXMLNode* formats);

  /// `S_OK` for a complete style, `S_FALSE` for a minimal one, `E_FAIL`, reported, for anything
  /// else; `style` is then left alone.
  HRESULT Read(const VyrAnnStandardXMLNode& node, VyrDrwStdSheetStyle& style) const;

 private:
  bool ReadFormat(std::string_view name, VyrDrwStdSheetFormat& format) const;

  SheetFormatReader formatReader_;
  /// The first format of each name. The names are borrowed from the nodes.
  std::unordered_map<std::string_view, const VyrAnnStandardXMLNode*> formats_;
};
