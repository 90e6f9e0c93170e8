#include "VyrAnnStandardServices.h"

#include <memory>
#include <string>
#include <utility>

#include "SharedStandardDocument.h"
#include "StandardDocumentCache.h"
#include "VyrAnnStandardServicesUnit.h"
#include "VyrDftStandardServices.h"
#include "VyrFiles.h"
#include "VyrTrace.h"

// Opening a standard, and what it says of itself as a whole.

namespace {

VyrTrace& ServicesTrace() {
  static VyrTrace trace("DftStdServs", "Trace of VyrAnnStandardServices class", 0, "STDERR", 1024);
  return trace;
}

// Made when the library loads, so that a host finds the channel by name before it is first used.
[[maybe_unused]] const VyrTrace& registeredTrace = ServicesTrace();

/// `format` takes the indentation and the path.
void TraceFile(const char* format, VyrUnicodeView path) {
  VyrTrace& trace = ServicesTrace();
  if (trace.IsOn()) trace.Print(format, VyrTrace::Indentation().c_str(), std::string(path).c_str());
}

/// Empty when there is no such standard.
VyrUnicodeString FindStandard(const char* name) {
  char* found = nullptr;
  VyrDftStandardServices::FindStandardFileInEnv(name, &found);
  const std::unique_ptr<char[]> path(found);
  return path.get();
}

/// One line for the one who has to mend the file: the report of a failed check has no room for a
/// path.
void ReportRefusal(VyrUnicodeView path, const VyrProblem& problem) {
  std::string line(path);
  if (problem.line > 0) line.append(":").append(std::to_string(problem.line));
  line.append(": ");
  line.append(problem.IsEmpty() ? "is no standard that can be read" : problem.text.View());
  VyrSysLogError(line.append("\n"));
}

struct Loaded {
  StandardDocumentCache::Document document;
  bool isLasting = true;  ///< whether the file would give the same again
};

/// No document, reported, for a file that cannot be read or has undefined enumeration values.
Loaded Load(VyrUnicodeView path) {
  auto document = std::make_shared<SharedStandardDocument>();
  VyrAnnStandardXMLParser& parser = document->parser;
  if (parser.DecodeXML(path, 1) != 0) {
    const VyrProblem problem = parser.GetProblem();
    ReportRefusal(path, problem);
    return {nullptr, problem.isLasting};
  }
  if (parser.Check() == 0) {
    ReportRefusal(path, {0,
                         "has values that their enumerations do not define, named by the lines "
                         "\"Enum undefined\" of the trace; correct them or define their literals"});
    return {};
  }
  return {std::move(document)};
}

}  // namespace

VyrAnnStandardServices::VyrAnnStandardServices(const char* standardName) {
  const VyrTraceBlock block(ServicesTrace(), "VyrAnnStandardServices::VyrAnnStandardServices");
  const VyrUnicodeString path = FindStandard(standardName);
  const VyrUnicodeString shown = path.IsEmpty() ? VyrUnicodeString(standardName) : path;
  StandardDocumentCache& cache = StandardDocumentCache::OfProcess();
  // Before the file is read: one that changes meanwhile will be read anew the next time.
  const auto stamp = VyrModificationTime(path);
  if (!stamp) {
    TraceFile("%sFailed to get stats of %s. Can't cache.\n", shown);
  } else if (cache.Find(path, *stamp, document_)) {
    shared_ = 1;
    TraceFile("%sUsing cached value for %s.\n", path);
    return;
  }
  Loaded loaded;
  if (!path.IsEmpty()) loaded = Load(path);
  document_ = std::move(loaded.document);
  TraceFile("%sCreating a new parser for %s.\n", shown);
  // A file that may be well is tried again when it is opened again.
  if (stamp && loaded.isLasting && cache.Store(path, *stamp, document_)) shared_ = 1;
}

std::unique_ptr<VyrAnnStandardServices> VyrAnnStandardServices::OpenFile(VyrUnicodeView path) {
  std::unique_ptr<VyrAnnStandardServices> services(new VyrAnnStandardServices);
  services->document_ = Load(path).document;
  return services;
}

VyrAnnStandardServices::~VyrAnnStandardServices() = default;

void VyrAnnStandardServices::ReleaseCachedDocument() {
  StandardDocumentCache::OfProcess().Release();
}

HRESULT VyrAnnStandardServices::CheckXMLStructure() {
  const auto refuse = [](const char* message, HRESULT result) {
    kStandardServicesUnit.Raise(message);
    return result;
  };
  const StandardDocumentInUse parser(document_);
  if (!parser) return refuse("No parser available", E_FAIL);
  if (parser->Check() == 0) return refuse("Bad enumerate structure in xml file", S_FALSE);
  const int version = parser->GetVersion();
  if (version < 1) return refuse("The version of the file could not be determined", S_FALSE);
  if (version < kVersionOfRelease14) return S_OK;
  VyrDrwStdSheetStyle* styles = nullptr;
  int count = 0;
  if (VyrFailed(GetAvailableSheetStyles(&styles, count))) {
    return refuse("The R14 sheet styles are corrupted", S_FALSE);
  }
  const std::unique_ptr<VyrDrwStdSheetStyle[]> owner(styles);
  if (count == 0) return refuse("No sheet styles defined in the R14 standard file", S_FALSE);
  return S_OK;
}

HRESULT VyrAnnStandardServices::GetStandardParentName(VyrUnicodeString& name) {
  const StandardDocumentInUse parser(document_);
  if (!parser) return E_FAIL;
  name = parser->GetValueWithPath("Root.Dimension.ParentStandard");
  return S_OK;
}

HRESULT VyrAnnStandardServices::GetVersion(int& version) {
  const StandardDocumentInUse parser(document_);
  if (!parser) return E_FAIL;
  version = parser->GetVersion();
  return version >= 1 ? S_OK : E_FAIL;
}

int VyrAnnStandardServices::IsSwitchable(int version) {
  const StandardDocumentInUse parser(document_);
  return parser && parser->GetVersion() >= version ? 1 : 0;
}
