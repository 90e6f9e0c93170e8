#include "VyrAnnStandardXMLValue.h"

#include <string>

#include "FirstMatchIndex.h"
#include "VyrAnnStandardXMLNode.h"
#include "VyrDiagnostics.h"
#include "VyrShownText.h"

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
  // A deep tree may have such a value on each level: lines that held the whole path would come to
  // the square of the file.
  const auto shown = [](std::string_view text) { return VyrShownText(text, kMostShownInTrace); };
  std::string line = shown(context);
  line.append(".").append(shown(value_.View()));
  line.append(" with enum \"").append(shown(name_.View())).append("\"\n");
  VyrTraceOutput(line);
  return 1;
}

VyrAnnStandardXMLValue* VyrAnnStandardXMLValue::Clone() const {
  return new VyrAnnStandardXMLValue(type_, value_, name_, rangeVal_);
}
