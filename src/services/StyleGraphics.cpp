#include "StyleGraphics.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "VyrIVisProperties.h"

namespace {

constexpr int kDefaultWidth = 2;
constexpr int kDefaultLineType = 1;
constexpr VyrVisColor kBlack;

/// A point symbol's number is its place here, from 1.
constexpr std::array<std::string_view, 9> kPointSymbols = {"Cross",      "Plus",       "Concentric",
                                                           "Coincident", "Fullcircle", "Fullsquare",
                                                           "Star",       "Dot",        "Smalldot"};

std::optional<unsigned int> PointSymbol(std::string_view name) {
  const auto found = std::find(kPointSymbols.begin(), kPointSymbols.end(), name);
  if (found == kPointSymbols.end()) return std::nullopt;
  return static_cast<unsigned int>(found - kPointSymbols.begin()) + 1;
}

unsigned int Width(int thickness) {
  return static_cast<unsigned int>(thickness < 1 ? kDefaultWidth : thickness);
}

unsigned int LineType(int lineType) {
  // The visualisation has the eighth line type at 0.
  if (lineType == 8) return 0;
  return static_cast<unsigned int>(lineType < 1 ? kDefaultLineType : lineType);
}

/// The values of a style below one path.
class StyleValues {
 public:
  StyleValues(VyrIDftStyle* style, const char* path)
      : style_(VyrIDftStyle_var::Share(style)), path_(Prefix(path)) {
    prefixLength_ = path_.size();
  }

  std::optional<int> Int(std::string_view name) { return Scalar<int>(name); }
  std::optional<VyrUnicodeString> Text(std::string_view name) {
    return Scalar<VyrUnicodeString>(name);
  }
  std::optional<VyrVisColor> Color(std::string_view name);

 private:
  static std::string Prefix(const char* path) {
    return path == nullptr || *path == '\0' ? std::string() : std::string(path) + ".";
  }

  const char* PathOf(std::string_view name) {
    path_.resize(prefixLength_);
    return path_.append(name).c_str();
  }

  template <class Value>
  std::optional<Value> Scalar(std::string_view name) {
    Value value{};
    if (VyrFailed(style_->GetValue(PathOf(name), 1, value))) return std::nullopt;
    return value;
  }

  /// Held: what a style reports may make the host let go of it. Null where it is not asked.
  VyrIDftStyle_var style_;
  std::string path_;
  std::size_t prefixLength_ = 0;
};

/// Three components of 0 or more make a colour.
std::optional<VyrVisColor> StyleValues::Color(std::string_view name) {
  std::array<int, 3> components{};
  constexpr int kComponents = components.size();
  // A query into an array does not know its size, and a site's standard decides how many numbers it
  // writes: those of each element that the path finds, each of any length. So their number is asked
  // for first, with no array; only exactly three are then read, into an array of three. Between the
  // two queries the number cannot change, since a standard in memory never does.
  int* const onlyCount = nullptr;
  int count = 0;
  const char* const path = PathOf(name);
  if (VyrFailed(style_->GetValue(path, onlyCount, &count)) || count != kComponents ||
      VyrFailed(style_->GetValue(path, components.data(), &count)) || count != kComponents) {
    return std::nullopt;
  }
  if (std::ranges::any_of(components, [](int component) { return component < 0; })) {
    return std::nullopt;
  }
  const auto [red, green, blue] = components;
  return VyrVisColor{static_cast<unsigned int>(red), static_cast<unsigned int>(green),
                     static_cast<unsigned int>(blue)};
}

void ReadLine(StyleValues& style, bool useDefaults, VyrVisPropertiesValues& values) {
  std::optional<int> width = kDefaultWidth;
  std::optional<int> lineType = kDefaultLineType;
  if (!useDefaults) {
    width = style.Int("Thickness");
    lineType = style.Int("LineType");
    if (!lineType) lineType = style.Int("Linetype");
  }
  // What could not be read is not set, not even to its default: the element keeps its own.
  if (width) values.width = Width(*width);
  if (lineType) values.lineType = LineType(*lineType);
}

HRESULT ReadPoint(StyleValues& style, bool useDefaults, VyrVisPropertiesValues& values) {
  if (useDefaults) return S_OK;
  const std::optional<VyrUnicodeString> name = style.Text("PointType");
  if (!name) return S_OK;
  const std::optional<unsigned int> symbol = PointSymbol(name->View());
  if (!symbol) return E_FAIL;
  values.symbolType = symbol;
  return S_OK;
}

}  // namespace

HRESULT ReadStyleGraphics(VyrIDftStyle* style, const char* path, int geometryType, bool useDefaults,
                          VyrVisPropertiesValues& values) {
  if (style == nullptr && !useDefaults) return E_FAIL;
  StyleValues styleValues(style, path);
  switch (geometryType) {
    case VyrVisLines:
      ReadLine(styleValues, useDefaults, values);
      break;
    case VyrVisPoints:
      if (const HRESULT result = ReadPoint(styleValues, useDefaults, values); VyrFailed(result)) {
        return result;
      }
      break;
    default:
      return E_FAIL;
  }
  values.color = useDefaults ? kBlack : styleValues.Color("Color").value_or(kBlack);
  return S_OK;
}
