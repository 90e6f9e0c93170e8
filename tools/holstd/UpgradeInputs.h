#pragma once

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

/// Throws `Failure` when two results would be one file.
void RefuseSameTargets(const std::vector<UpgradeInput>& inputs);
