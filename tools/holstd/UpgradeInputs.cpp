#include "UpgradeInputs.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "Format.h"
#include "StandardFiles.h"
#include "VyrUtf8.h"

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kExtension = ".xml";

/// The standards of a folder. Throws `Failure`.
std::vector<std::string> FilesIn(const std::string& folder, const Session& session,
                                 ExitStatus& worst) {
  std::vector<std::string> files;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (!name.ends_with(kExtension) || name.starts_with('.')) continue;
    std::error_code unknown;
    const fs::file_type type = entry->symlink_status(unknown).type();
    if (type == fs::file_type::symlink) {
      // It may lead out of the folder, to what nobody wants to have replaced.
      session.Warn(entry->path().string(), "left out, it is a symbolic link; name it to take it");
    } else if (type == fs::file_type::regular && VyrFindInvalidUtf8(name) != std::string::npos) {
      session.Complain(
          {kInvalidInput, folder, 0,
           "holds a file " + JsonLine(name) + " whose name is not UTF-8 text; rename it"});
      worst = std::max(worst, kInvalidInput);
    } else if (type == fs::file_type::regular) {
      files.push_back(entry->path().string());
    }
  }
  if (error) throw Failure{kInvalidInput, folder, 0, "cannot be listed: " + error.message()};
  if (files.empty()) {
    throw Failure{kNegativeAnswer, folder, 0, "holds no standard; their names end in .xml"};
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

std::vector<std::string> FilesOf(const std::vector<std::string>& arguments, const Session& session,
                                 ExitStatus& worst) {
  std::vector<std::string> files;
  for (const std::string& argument : arguments) {
    std::error_code error;
    if (argument == "-" || !fs::is_directory(argument, error)) {
      files.push_back(argument);
      continue;
    }
    try {
      const std::vector<std::string> found = FilesIn(argument, session, worst);
      files.insert(files.end(), found.begin(), found.end());
    } catch (const Failure& failure) {
      worst = std::max(worst, session.Refuse(failure));
    }
  }
  return files;
}

bool NamesMany(const std::vector<std::string>& arguments) {
  std::error_code error;
  return arguments.size() > 1 || fs::is_directory(arguments.front(), error);
}

ExitStatus ForEachStandard(Session& session, const std::vector<std::string>& arguments,
                           const std::function<ExitStatus(const std::string& file)>& visit) {
  ExitStatus worst = kDone;
  const std::vector<std::string> files = FilesOf(arguments, session, worst);
  return std::max(ForEachFile(session, files, visit), worst);
}

std::string TargetIn(const std::string& folder, const std::string& file) {
  std::string name = file;
  try {
    name = FileOrStandard(file).file;
  } catch (const Failure&) {
    // Whoever reads it tells of it.
  }
  return fs::path(folder) / fs::path(name).filename();
}

void RefuseSameTargets(const std::vector<UpgradeInput>& inputs) {
  std::map<fs::path, const UpgradeInput*> taken;
  for (const UpgradeInput& input : inputs) {
    if (input.target.empty()) continue;
    std::error_code error;
    fs::path path = fs::weakly_canonical(fs::absolute(input.target, error), error);
    if (error) path = input.target;
    const auto [other, isNew] = taken.emplace(std::move(path), &input);
    if (isNew) continue;
    throw Failure{kUndecided, input.target, 0,
                  "would hold the results of both " + Quoted(other->second->file) + " and " +
                      Quoted(input.file) + "; nothing was written, name each target once"};
  }
}
