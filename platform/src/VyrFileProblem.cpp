#include "VyrFileProblem.h"

#include <array>
#include <span>

#include "VyrSystemText.h"

namespace {

/// What may be done about an error.
struct Remedy {
  int error;
  const char* advice;
};

constexpr const char* kAskForPermission =
    "ask for permission to write there or choose another place";
constexpr const char* kMakeRoom = "make room there or choose another place";
constexpr const char* kLookAtFolder = "look at the spelling of its folder";
constexpr const char* kCircle = "its symbolic links lead to each other, name the file itself";

constexpr std::array kRemediesOfSaving = {
    Remedy{EACCES, kAskForPermission},
    Remedy{EPERM, kAskForPermission},
    Remedy{EROFS, kAskForPermission},
    Remedy{ENOSPC, kMakeRoom},
    Remedy{EDQUOT, kMakeRoom},
    Remedy{EFBIG, "raise the limit on the size of files or choose another place"},
    Remedy{ENOENT, "make its folder or look at the spelling of that"},
    Remedy{ENOTDIR, kLookAtFolder},
    Remedy{ELOOP, kCircle},
    Remedy{ENAMETOOLONG, "choose a shorter name"},
};

constexpr std::array kRemediesOfOpening = {
    Remedy{ENOENT, "look at the spelling of its name and folder"},
    Remedy{ENOTDIR, kLookAtFolder},
    Remedy{EACCES, "it takes the right to read it"},
    Remedy{ELOOP, kCircle},
};

std::string WithRemedy(const char* what, int error, std::span<const Remedy> remedies) {
  std::string problem = what + VyrSystemText(error);
  for (const Remedy& remedy : remedies) {
    if (remedy.error == error) problem.append("; ").append(remedy.advice);
  }
  return problem;
}

}  // namespace

std::string VyrNoRegularFile(bool isFolder, bool isNamed) {
  if (isFolder) {
    return isNamed ? "is a folder, not a file; name a file in it" : "is a folder, not a file";
  }
  return isNamed ? "is not a regular file; name one that is" : "is not a regular file";
}

std::string VyrNotOpened(const char* what, int error) {
  return WithRemedy(what, error, kRemediesOfOpening);
}

std::string VyrNotWritten(const char* what, int error) {
  return WithRemedy(what, error, kRemediesOfSaving);
}
