#include "VyrDifTransientStandard.h"

#include <string>

#include "StandardDocumentBuilder.h"
#include "VyrDftStandardServices.h"
#include "VyrDftStdPersistence.h"

// Loading a standard, and what it says of itself.

namespace {

constexpr const char* kParentStandard = "Dimension.ParentStandard";

/// Tells where a file is at fault and why, in one line, before the check that names the unit.
void ReportUnreadable(const VyrUnicodeString& file, const VyrProblem& problem) {
  std::string line(file.View());
  if (problem.line > 0) line.append(":").append(std::to_string(problem.line));
  line.append(": ").append(problem.IsEmpty() ? "no document was made" : problem.text.View());
  line.append("\n");
  VyrSysLogError(line);
  kTransientStandardUnit.Raise("the standard cannot be read");
}

}  // namespace

VyrDifTransientStandard::VyrDifTransientStandard(const VyrUnicodeString& fileName,
                                                 const VyrUnicodeString& name)
    : name_(name), fileName_(fileName) {
  VyrDifTransientStandard::Load();
}

HRESULT VyrDifTransientStandard::Load() {
  TracedOperation traced = Traced("VyrDifTransientStandard::Load");
  traced.KeepObject();
  if (!kTransientStandardUnit.Check(!document_, "a document is already held")) return E_UNEXPECTED;
  VyrIXMLDOMDocumentBuilder_var builder;
  if (VyrFailed(
          MakeStandardDocumentBuilder(kTransientStandardUnit, transientStandardTrace, builder))) {
    return E_UNEXPECTED;
  }
  VyrIDOMDocument_var document;
  if (VyrFailed(builder->BuildFromFile(fileName_, document)) || !document) {
    ReportUnreadable(fileName_, builder->GetProblem());
    return E_UNEXPECTED;
  }
  document_ = document;
  version_ = kUnknownVersion;
  TraceLine(transientStandardTrace, "%sXML has been parsed!\n");
  return S_OK;
}

HRESULT VyrDifTransientStandard::ToBeImplemented() {
  kTransientStandardUnit.Raise("TO_BE_IMPLEMENTED...");
  return E_NOTIMPL;
}

HRESULT VyrDifTransientStandard::GetName(unsigned short** name) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::GetName");
  if (name == nullptr) return E_INVALIDARG;
  *name = name_.NewUtf16Copy();
  return S_OK;
}

HRESULT VyrDifTransientStandard::GetName(VyrUnicodeString& name) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::GetName");
  name = name_;
  return S_OK;
}

HRESULT VyrDifTransientStandard::GetParentStandard(unsigned short** name) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::GetParentStandard");
  if (name == nullptr) return E_INVALIDARG;
  // Callers of this form take an empty text for "none": it does not fail where the other one does.
  VyrUnicodeString parent;
  GetValue(kParentStandard, 1, parent);
  *name = parent.NewUtf16Copy();
  return S_OK;
}

HRESULT VyrDifTransientStandard::GetParentStandard(VyrUnicodeString& name) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::GetParentStandard");
  const HRESULT result = GetValue(kParentStandard, 1, name);
  const bool isFound = kTransientStandardUnit.Check(result == S_OK, "no parent standard");
  return isFound ? S_OK : E_UNEXPECTED;
}

HRESULT VyrDifTransientStandard::GetVersion(int* version) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::GetVersion");
  if (version == nullptr) return E_INVALIDARG;
  const auto standard = VyrQuery<VyrIDrwStandard>(AsUnknown());
  if (!kTransientStandardUnit.CheckPointer(standard.Get())) return E_UNEXPECTED;
  *version = standard->GetVersion();
  return S_OK;
}

int VyrDifTransientStandard::GetVersion() {
  TracedOperation traced = Traced("VyrDifTransientStandard::GetVersion");
  if (version_ != kUnknownVersion) return version_;
  traced.KeepObject();
  // Standards of before version 110 do not tell theirs: it shows in what they hold.
  if (GetValue(VyrDftStdPersistence::GetVersionNodePath().CString(), 1, version_) != S_OK) {
    VyrUnicodeString file = fileName_;
    VyrUnicodeString standardClass;
    VyrDftStandardServices::GetStandardClassAndVersion(file, standardClass, version_);
  }
  return version_;
}

HRESULT VyrDifTransientStandard::GetAnnotationMode(int* mode) {
  const TracedOperation traced = Traced("VyrDifTransientStandard::GetAnnotationMode");
  if (mode == nullptr) return E_INVALIDARG;
  *mode = 0;
  return S_OK;
}
