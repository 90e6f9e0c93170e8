#include "VyrAnnStandardXMLValue.h"

#include <string>

#include "IndexedPlaces.h"
#include "VyrAnnStandardXMLNode.h"
#include "VyrDiagnostics.h"
#include "VyrShownText.h"

namespace {

/// Where a value stands. A deep tree may have an undefined one on each level: lines that held the
/// whole path would come to the square of the file. So the outer names go; what the caller says
/// before the first of them stays, as that tells what the line is about.
std::string ShownContext(std::string_view context) {
  constexpr std::string_view afterSubject = ": ";
  if (context.size() <= kMostShownInTrace) return VyrShownText(context, kMostShownInTrace);
  const std::size_t end = context.substr(0, kMostShownInMessage).find(afterSubject);
  const std::size_t path = end == std::string_view::npos ? 0 : end + afterSubject.size();
  return VyrShownText(context.substr(0, path)) +
         VyrShownEnd(context.substr(path), kMostShownInTrace);
}

}  // namespace

VyrAnnStandardXMLValue::VyrAnnStandardXMLValue(Type type, VyrUnicodeView value, VyrUnicodeView name,
                                               int rangeVal)
    : type_(type), rangeVal_(rangeVal), name_(name), value_(value) {}

void VyrAnnStandardXMLValue::SetValue(VyrUnicodeView value) {
  VyrIndexedPlaces::Change(*this, value_, value);
}

int VyrAnnStandardXMLValue::Check(VyrAnnStandardXMLNode* enumTop, VyrUnicodeView context) const {
  if (enumTop == nullptr || type_ != ValueEnum) return 0;
  const VyrAnnStandardXMLValue_var literal(enumTop->GetValueWithPath(name_ + "." + value_));
  if (literal) return 0;
  const auto shown = [](std::string_view text) { return VyrShownText(text, kMostShownInTrace); };
  std::string line = ShownContext(context);
  line.append(".").append(shown(value_.View()));
  line.append(" with enum \"").append(shown(name_.View())).append("\"\n");
  VyrTraceOutput(line);
  return 1;
}

VyrAnnStandardXMLValue* VyrAnnStandardXMLValue::Clone() const {
  return new VyrAnnStandardXMLValue(type_, value_, name_, rangeVal_);
}
