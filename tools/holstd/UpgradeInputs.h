#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Session.h"

/// A standard to upgrade and where the result goes; empty when nothing is written.
struct UpgradeInput {
  std::string file;
  std::string target;
};

/// The standards that arguments name. A folder stands for the regular files in it, not in folders
/// below, whose names end in ".xml" and do not begin with a dot, sorted by name. What cannot be
/// taken is told and `worst` raised to its status.
std::vector<std::string> FilesOf(const std::vector<std::string>& arguments, const Session& session,
                                 ExitStatus& worst);

/// True when several standards are named, or a folder, whatever is in it.
bool NamesMany(const std::vector<std::string>& arguments);
/// Calls `visit` for every standard that arguments name, whatever happens to the others, and
/// returns the worst status. Standard input can be one of them only.
ExitStatus ForEachStandard(Session& session, const std::vector<std::string>& arguments,
                           const std::function<ExitStatus(const std::string& file)>& visit);

/// The result of a standard in a folder has the name of its file.
std::string TargetIn(const std::string& folder, const std::string& file);
/// Throws `Failure` when two results would be one file.
void RefuseSameTargets(const std::vector<UpgradeInput>& inputs);
