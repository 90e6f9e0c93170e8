#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The words of a line of a shell as a program would be given them: without their quotes, with the
/// user's folder for "~" and the values of variables. The last word is the one that the line ends
/// in, empty after a blank. No command that the line holds is run: it stays as it is written.
std::vector<std::string> WordsOfShellLine(std::string_view line);
