#include "SheetStyleReader.h"

#include <array>
#include <utility>

#include "NumberText.h"
#include "VyrAnnStandardServicesUnit.h"

namespace {

using Node = VyrAnnStandardXMLNode;
using Words = std::array<std::string_view, 2>;  // of the codes 0 and 1

constexpr Words kOrientations = {"Portrait", "Landscape"};
constexpr Words kNoYes = {"No", "Yes"};
constexpr Words kProjectionMethods = {"First angle", "Third angle"};
constexpr Words kGenViewsPosModes = {"FixedCG", "FixedAxis"};

/// What was read of a style, as bits.
enum Field : unsigned {
  Scale = 1,
  Format = 2,
  Orientation = 4,
  DisplayFormat = 8,
  ProjectionMethod = 16,
  GenViewsPosMode = 32,
};

// Standards made from the old text standards say no more than this of a sheet.
constexpr unsigned kMinimal = Scale | ProjectionMethod;
constexpr unsigned kComplete = kMinimal | Format | Orientation | DisplayFormat | GenViewsPosMode;

/// The first value of the child that wraps a field, borrowed from the tree; null without one.
const VyrUnicodeString* FieldText(const Node& style, std::string_view name) {
  const VyrAnnStandardXMLNode_var wrapper(style.GetNodeByName(name));
  return wrapper && !wrapper->GetValues().empty() ? &wrapper->GetValues().front()->GetValue()
                                                  : nullptr;
}

/// Reads a field that is one of two words; 1, or 0 when it is absent or another word.
template <class Code>
unsigned char ReadWord(const Node& style, std::string_view name, const Words& words, Code& code) {
  const VyrUnicodeString* const text = FieldText(style, name);
  if (text == nullptr) return 0;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (text->View() != words[i]) continue;
    code = static_cast<Code>(i);
    return 1;
  }
  return 0;
}

bool ReadScale(const Node& style, double& scale) {
  const VyrUnicodeString* const text = FieldText(style, "GlobalScale");
  const auto number = text == nullptr ? std::nullopt : ReadReal(text->View());
  if (number) scale = *number;
  return number.has_value();
}

HRESULT Completeness(unsigned read) {
  if (read == kComplete) return S_OK;
  if (read == kMinimal || read == (kMinimal | GenViewsPosMode)) return S_FALSE;
  kStandardServicesUnit.Raise("Bad xml structure");
  return E_FAIL;
}

}  // namespace

SheetStyleReader::SheetStyleReader(const Node* formats) {
  if (formats == nullptr) return;
  formats_.reserve(formats->GetNodes().size());
  for (const VyrAnnStandardXMLNode_var& format : formats->GetNodes()) {
    if (format->GetValues().empty()) continue;
    formats_.emplace(format->GetValues().front()->GetValue().View(), format.Get());
  }
}

bool SheetStyleReader::ReadFormat(std::string_view name, VyrDrwStdSheetFormat& format) const {
  const auto found = formats_.find(name);
  return found != formats_.end() && formatReader_.Read(*found->second, format);
}

HRESULT SheetStyleReader::Read(const Node& node, VyrDrwStdSheetStyle& style) const {
  VyrDrwStdSheetStyle read;
  read.name = node.GetNodeName();
  const bool hasScale = ReadScale(node, read.scale);
  const VyrUnicodeString* const format = FieldText(node, "Format");
  read.hasFormat = format != nullptr && ReadFormat(format->View(), read.format) ? 1 : 0;
  read.hasOrientation = ReadWord(node, "Orientation", kOrientations, read.orientation);
  read.hasDisplayFormat = ReadWord(node, "DisplayFormat", kNoYes, read.displayFormat);
  const bool hasProjectionMethod =
      ReadWord(node, "ProjectionMethod", kProjectionMethods, read.projectionMethod) != 0;
  read.hasGenViewsPosMode =
      ReadWord(node, "GenViewsPosMode", kGenViewsPosModes, read.genViewsPosMode);

  const auto bit = [](bool isRead, Field field) { return isRead ? unsigned{field} : 0U; };
  const HRESULT result = Completeness(bit(hasScale, Scale) | bit(read.hasFormat != 0, Format) |
                                      bit(read.hasOrientation != 0, Orientation) |
                                      bit(read.hasDisplayFormat != 0, DisplayFormat) |
                                      bit(hasProjectionMethod, ProjectionMethod) |
                                      bit(read.hasGenViewsPosMode != 0, GenViewsPosMode));
  if (VyrSucceeded(result)) style = std::move(read);
  return result;
}
