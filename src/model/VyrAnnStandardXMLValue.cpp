#include "VyrAnnStandardXMLValue.h"

#include <string>

#include "FirstMatchIndex.h"
#include "VyrAnnStandardXMLNode.h"
#include "VyrDiagnostics.h"

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
  std::string line(context);
  line.append(".").append(value_.View());
  line.append(" with enum \"").append(name_.View()).append("\"\n");
  VyrTraceOutput(line);
  return 1;
}

VyrAnnStandardXMLValue* VyrAnnStandardXMLValue::Clone() const {
  return new VyrAnnStandardXMLValue(type_, value_, name_, rangeVal_);
}
