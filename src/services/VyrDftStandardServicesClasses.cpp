#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "VyrAnnStandardXMLParser.h"
#include "VyrDftStandardServices.h"
#include "VyrDiagnostics.h"
#include "VyrDrwParseStandard.h"
#include "VyrEnvironment.h"
#include "VyrFiles.h"
#include "VyrUtf8.h"

// Telling standards apart by their parent standard.

namespace {

/// The parent standards that the lists tell apart.
enum class Class { ISO, JIS, ASME, ANSI, Other };

struct ClassAndVersion {
  VyrUnicodeString name;
  int version = 0;
};

void ReportUnreadable(const VyrUnicodeString& file, const VyrProblem& problem) {
  const std::string line = problem.line > 0 ? ":" + std::to_string(problem.line) : "";
  VyrSysLogError("VyrDftStandardServices: " + std::string(file.View()) + line + ": " +
                 problem.text.CString() + "\n");
}

/// What the reader of standards says of a file. One that cannot be read, which is reported, has no
/// class and, as for the reader, the version of an empty document.
ClassAndVersion Classify(const VyrUnicodeString& file) {
  // Reading a pipe, which a scanned folder may hold, would keep the caller waiting.
  if (!VyrIsReadableFile(file)) {
    ReportUnreadable(file, {0, "cannot be opened as a regular file"});
    return {{}, file.IsEmpty() ? 0 : VyrAnnStandardXMLParser().GetVersion()};
  }
  VyrDrwParseStandard reader(file);
  reader.Decode();
  if (!reader.GetProblem().IsEmpty()) ReportUnreadable(file, reader.GetProblem());
  return {reader.GetParentStandard(), reader.GetVersion()};
}

Class ClassOf(const VyrUnicodeString& file) {
  const VyrUnicodeString name = Classify(file).name;
  if (name == "ISO") return Class::ISO;
  if (name == "JIS") return Class::JIS;
  if (name == "ASME") return Class::ASME;
  if (name == "ANSI") return Class::ANSI;
  return Class::Other;
}

/// A list that takes each name once. Folders may hold thousands of files.
class UniqueNames {
 public:
  explicit UniqueNames(VyrListValVyrUnicodeString& names)
      : names_(names), known_(names.begin(), names.end()) {}
  bool Has(const VyrUnicodeString& name) const { return known_.contains(name); }
  void Add(const VyrUnicodeString& name) {
    if (known_.insert(name).second) names_.push_back(name);
  }

 private:
  VyrListValVyrUnicodeString& names_;
  std::unordered_set<VyrUnicodeString> known_;
};

/// Calls `visit` with path and base name of every entry of `dir` whose name contains "." and `ext`.
/// That it may stand anywhere, and is then cut from the end, is what site lists were made with.
template <class Visit>
void ForEachMatch(const char* dir, const char* ext, Visit visit) {
  std::vector<std::string> entries;
  if (dir == nullptr || ext == nullptr || !VyrListDirectory(dir, entries)) return;
  const VyrUnicodeString pattern = VyrUnicodeString(".") + ext;
  for (const std::string& entry : entries) {
    // A name that is no UTF-8 is none that a text can hold.
    if (VyrFindInvalidUtf8(entry) != std::string::npos) continue;
    const VyrUnicodeString name = entry;
    if (name.Find(pattern) < 0) continue;
    visit(VyrUnicodeString(dir) + "\\" + name,
          name.Substring(0, name.GetLength() - pattern.GetLength()));
  }
}

}  // namespace

void VyrDftStandardServices::ListFilesInDirectory(const char* dir, const char* ext,
                                                  VyrListValVyrUnicodeString& names,
                                                  unsigned char skipAnsi) {
  UniqueNames unique(names);
  ForEachMatch(dir, ext, [&](const VyrUnicodeString& path, const VyrUnicodeString& baseName) {
    if (unique.Has(baseName)) return;
    if (skipAnsi != 0 && ClassOf(path) == Class::ANSI) return;
    unique.Add(baseName);
  });
}

void VyrDftStandardServices::ListXMLStdInDirectory(const char* dir, const char* ext,
                                                   VyrListValVyrUnicodeString& iso,
                                                   VyrListValVyrUnicodeString& jis,
                                                   VyrListValVyrUnicodeString& asme) {
  UniqueNames isoNames(iso);
  UniqueNames jisNames(jis);
  UniqueNames asmeNames(asme);
  ForEachMatch(dir, ext, [&](const VyrUnicodeString& path, const VyrUnicodeString& baseName) {
    switch (ClassOf(path)) {
      case Class::ISO:
        return isoNames.Add(baseName);
      case Class::JIS:
        return jisNames.Add(baseName);
      case Class::ASME:
        return asmeNames.Add(baseName);
      case Class::ANSI:
      case Class::Other:
        return;
    }
  });
}

void VyrDftStandardServices::GetStandardClassAndVersion(VyrUnicodeString& fileName,
                                                        VyrUnicodeString& standardClass,
                                                        int& version) {
  ClassAndVersion found = Classify(fileName);
  standardClass = std::move(found.name);
  version = found.version;
}
