#include <memory>

#include "NumberText.h"
#include "SharedStandardDocument.h"
#include "SheetFormatReader.h"
#include "SheetStyleReader.h"
#include "VyrAnnStandardServices.h"
#include "VyrAnnStandardServicesUnit.h"

// The sheets of a standard: formats, styles, the default style and its scale.

namespace {

using Node = VyrAnnStandardXMLNode;
using Node_var = VyrAnnStandardXMLNode_var;

constexpr const char* kFormatsPath = "Root.SheetFormat";
constexpr const char* kStylesPath = "Root.Styles.Sheet";

Node_var DefaultStyle(VyrAnnStandardXMLParser& document) {
  const Node_var styles(document.GetNodeWithPath(kStylesPath));
  return Node_var(styles ? styles->GetDefaultNode() : nullptr);
}

/// Reads every child of a node into a new array that the caller takes over, all or none. The result
/// is that of the last child.
template <class Record, class Read>
HRESULT ReadChildren(const Node& parent, Record** records, int& count, const Read& read) {
  count = parent.GetNumOfNode();
  if (count == 0) return E_FAIL;
  auto array = std::make_unique<Record[]>(static_cast<std::size_t>(count));
  Record* next = array.get();
  HRESULT last = S_OK;
  for (const Node_var& child : parent.GetNodes()) {
    const HRESULT result = read(*child, *next);
    // Those that follow one which cannot be read are still looked at, so that all are reported.
    if (VyrFailed(result)) continue;
    last = result;
    ++next;
  }
  if (next != array.get() + count) {
    kStandardServicesUnit.Raise("Bad xml structure");
    return E_FAIL;
  }
  *records = array.release();
  return last;
}

}  // namespace

HRESULT VyrAnnStandardServices::GetAvailableSheetFormats(VyrDrwStdSheetFormat** formats,
                                                         int& count) {
  const StandardDocumentInUse parser(document_);
  if (!parser || formats == nullptr || parser->GetVersion() < kVersionOfRelease14) return E_FAIL;
  const Node_var node(parser->GetNodeWithPath(kFormatsPath));
  if (!node) return E_FAIL;
  const SheetFormatReader reader;
  return ReadChildren(*node, formats, count, [&](const Node& child, VyrDrwStdSheetFormat& format) {
    return reader.Read(child, format) ? S_OK : E_FAIL;
  });
}

HRESULT VyrAnnStandardServices::GetAvailableSheetStyles(VyrDrwStdSheetStyle** styles, int& count) {
  const StandardDocumentInUse parser(document_);
  if (!parser || styles == nullptr || parser->GetVersion() < kVersionOfRelease11) return E_FAIL;
  const Node_var node(parser->GetNodeWithPath(kStylesPath));
  if (!node) return E_FAIL;
  const Node_var formats(parser->GetNodeWithPath(kFormatsPath));
  const SheetStyleReader reader(formats.Get());
  return ReadChildren(*node, styles, count, [&](const Node& child, VyrDrwStdSheetStyle& style) {
    return reader.Read(child, style);
  });
}

HRESULT VyrAnnStandardServices::GetDefaultSheetStyle(VyrDrwStdSheetStyle& style) {
  const StandardDocumentInUse parser(document_);
  if (!parser || parser->GetVersion() < kVersionOfRelease11) return E_FAIL;
  const Node_var node = DefaultStyle(*parser);
  if (!node) return E_FAIL;
  const Node_var formats(parser->GetNodeWithPath(kFormatsPath));
  return SheetStyleReader(formats.Get()).Read(*node, style);
}

HRESULT VyrAnnStandardServices::GetSheetScale(double& scale) {
  const StandardDocumentInUse parser(document_);
  if (!parser) return E_FAIL;
  const Node_var style = DefaultStyle(*parser);
  const Node_var wrapper(style ? style->GetNodeByName("GlobalScale") : nullptr);
  if (!wrapper || wrapper->GetValues().empty()) return E_FAIL;
  scale = ReadReal(wrapper->GetValues().front()->GetValue().View()).value_or(scale);
  return S_OK;
}
