#pragma once

#include <optional>
#include <string>

#include "Standard.h"
#include "VyrDrwNewerContent.h"

/// What speaks against the date of a standard; of one whose version cannot be told nothing.
std::optional<VyrDrwNewerContent> FindNewerContent(Standard& standard);

/// Says that a standard counts as older than what it holds, why, and with which commands it is
/// dated right.
std::string DatedBackText(const VyrDrwNewerContent& newer);

/// What is to be said when commands have brought that about: `before` and `after` are what was
/// found before and after them. Nothing when they did not.
std::optional<std::string> DatedBackByCommands(const std::optional<VyrDrwNewerContent>& before,
                                               const std::optional<VyrDrwNewerContent>& after);
