#include "VyrAnnStandardXMLValue.h"

#include <string>

#include "FirstMatchIndex.h"
#include "VyrAnnStandardXMLNode.h"
#include "VyrDiagnostics.h"
#include "VyrUtf8.h"

namespace {

/// What a line shows of a text of any length: a tree deeper than this has a value on each level,
/// and lines that held the whole path would come to the square of the file.
std::string Shown(std::string_view text) {
  constexpr std::size_t mostShown = 4096;
  if (text.size() <= mostShown) return std::string(text);
  return std::string(VyrCutUtf8(text, mostShown)) + "...";
}

}  // namespace

VyrAnnStandardXMLValue::VyrAnnStandardXMLValue(Type type, VyrUnicodeView value, VyrUnicodeView name,
                                               int rangeVal)
    : type_(type), rangeVal_(rangeVal), name_(name), value_(value) {}

void VyrAnnStandardXMLValue::SetValue(VyrUnicodeView value) {
  if (isIndexed_) IndexedKeyChanges::Count();
  value_ = value;
}

int VyrAnnStandardXMLValue::Check(VyrAnnStandardXMLNode* enumTop, VyrUnicodeView context) const {
  if (enumTop == nullptr || type_ != ValueEnum) return 0;
  const VyrAnnStandardXMLValue_var literal(enumTop->GetValueWithPath(name_ + "." + value_));
  if (literal) return 0;
  std::string line(Shown(context));
  line.append(".").append(Shown(value_.View()));
  line.append(" with enum \"").append(Shown(name_.View())).append("\"\n");
  VyrTraceOutput(line);
  return 1;
}

VyrAnnStandardXMLValue* VyrAnnStandardXMLValue::Clone() const {
  return new VyrAnnStandardXMLValue(type_, value_, name_, rangeVal_);
}
