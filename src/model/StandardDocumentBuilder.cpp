#include "StandardDocumentBuilder.h"

#include <algorithm>
#include <string>

namespace {

void TraceOptions(VyrTrace& trace, VyrIXMLDOMDocumentBuilder& builder) {
  if (!trace.IsOn()) return;
  const std::string indent = VyrTrace::Indentation();
  trace.Print("%sVyrIXMLDOMDocumentBuilder supported options:\n", indent.c_str());
  for (const std::string_view option : builder.GetOptions()) {
    trace.Print("%s  %s\n", indent.c_str(), std::string(option).c_str());
  }
}

void TraceLine(VyrTrace& trace, const char* text) {
  if (trace.IsOn()) trace.Print("%s%s\n", VyrTrace::Indentation().c_str(), text);
}

bool Supports(VyrIXMLDOMDocumentBuilder& builder, std::string_view option) {
  const auto options = builder.GetOptions();
  return std::find(options.begin(), options.end(), option) != options.end();
}

}  // namespace

HRESULT MakeStandardDocumentBuilder(const VyrSourceUnit& unit, VyrTrace& trace,
                                    VyrIXMLDOMDocumentBuilder_var& builder) {
  const auto set = [&](std::string_view option, std::string_view value) {
    return unit.Check(VyrSucceeded(builder->SetOption(option, value)),
                      "the builder refuses an option");
  };
  const HRESULT result = CreateVyrIXMLDOMDocumentBuilder(builder);
  if (!unit.Check(VyrSucceeded(result), "no document builder") ||
      !unit.CheckPointer(builder.Get())) {
    return E_UNEXPECTED;
  }
  TraceOptions(trace, *builder);
  if (Supports(*builder, kVyrDoValidation)) {
    TraceLine(trace, "VyrDoValidation option found");
    if (!set(kVyrDoValidation, "false")) return E_UNEXPECTED;
  } else {
    TraceLine(trace,
              "Warning: VyrDoValidation is not supported; we assume that parser is not validating");
  }
  if (!Supports(*builder, kVyrEnableNameSpaces)) {
    unit.Raise("Namespaces not supported!");
    return E_FAIL;
  }
  TraceLine(trace, "VyrEnableNameSpaces option found");
  return set(kVyrEnableNameSpaces, "true") ? S_OK : E_UNEXPECTED;
}
