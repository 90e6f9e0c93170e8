#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

// Arguments that several subcommands take.

/// FILE, an XML standard.
CLI::Option* AddFile(CLI::App& command, std::string& file);
/// FILE..., XML standards.
CLI::Option* AddFiles(CLI::App& command, std::vector<std::string>& files);
/// -o FILE
CLI::Option* AddOutput(CLI::App& command, std::string& output);
/// --json
CLI::Option* AddJson(CLI::App& command, bool& json);
/// Examples, a line each, and a note after the options of the help.
void AddExamples(CLI::App& command, const std::vector<std::string>& lines,
                 const std::string& note = {});

/// Makes an argument the path of a file, as the operating system writes it.
CLI::Option* TakesPath(CLI::Option* option);
