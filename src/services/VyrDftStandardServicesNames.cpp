#include "VyrDftStandardServices.h"
#include "VyrDrwParseKeywordTable.h"

// Names: those in dotted paths, and those of the old parameter set.

namespace {

constexpr char kSeparator = '.';

VyrUnicodeString NameInRow(int row, const char* VyrDrwParseKeyword::*column) {
  return row < 0 ? VyrUnicodeString() : VyrUnicodeString(VyrDrwParseKeywordTable()[row].*column);
}

}  // namespace

VyrUnicodeString VyrDftStandardServices::GetAttributeSingleName(VyrUnicodeString path) {
  const std::string_view text = path.View();
  const std::size_t dot = text.rfind(kSeparator);
  return dot == std::string_view::npos ? VyrUnicodeString()
                                       : VyrUnicodeString(text.substr(dot + 1));
}

VyrUnicodeString VyrDftStandardServices::GetFatherNode(VyrUnicodeString path) {
  const std::string_view text = path.View();
  std::size_t dot = text.rfind(kSeparator);
  if (dot == std::string_view::npos) return {};
  if (dot > 0 && dot == text.size() - 1) {
    if (const std::size_t earlier = text.rfind(kSeparator, dot - 1); earlier != text.npos) {
      dot = earlier;
    }
  }
  return text.substr(0, dot);
}

int VyrDftStandardServices::GetIndexFromKeyword(const VyrUnicodeString& keyword) {
  return FindKeywordRow(keyword.View());
}

int VyrDftStandardServices::GetIndexFromParam(const VyrUnicodeString& parameter) {
  return FindLegacyNameRow(parameter.View());
}

VyrUnicodeString VyrDftStandardServices::GetKeywordFromParam(const VyrUnicodeString& parameter) {
  return NameInRow(GetIndexFromParam(parameter), &VyrDrwParseKeyword::keyword);
}

VyrUnicodeString VyrDftStandardServices::GetParamFromKeyword(const VyrUnicodeString& keyword) {
  return NameInRow(GetIndexFromKeyword(keyword), &VyrDrwParseKeyword::legacyName);
}
