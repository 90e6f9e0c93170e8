#include "CommandDescriptions.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <set>

namespace {

std::vector<std::string> NamesOf(const std::set<CLI::Option*>& options) {
  std::vector<std::string> names;
  for (const CLI::Option* option : options) names.push_back(option->get_name());
  std::sort(names.begin(), names.end());  // the set has them as they lie in memory
  return names;
}

ArgumentDescription Describe(const CLI::Option& option) {
  ArgumentDescription description;
  for (const std::string& name : option.get_snames()) description.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) description.names.push_back("--" + name);
  const bool isFlag = option.get_items_expected_max() == 0;
  if (!isFlag) {
    description.value = option.get_positional() ? option.get_name(true) : option.get_type_name();
  }
  description.text = option.get_description();
  description.isRequired = option.get_required();
  description.isRepeated = option.get_expected_max() == CLI::detail::expected_max_vector_size;
  description.excludes = NamesOf(option.get_excludes());
  return description;
}

CommandDescription Describe(const CLI::App& command) {
  CommandDescription description;
  description.name = command.get_name();
  description.summary = command.get_description();
  description.notes = command.get_footer();
  for (const CLI::Option* option : command.get_options()) {
    auto& kind = option->get_positional() ? description.words : description.options;
    kind.push_back(Describe(*option));
  }
  return description;
}

}  // namespace

std::vector<CommandDescription> DescribeCommands(const CLI::App& tool) {
  std::vector<CommandDescription> commands = {Describe(tool)};
  const auto isShown = [](const CLI::App* command) { return !command->get_group().empty(); };
  for (const CLI::App* command : tool.get_subcommands(isShown)) {
    commands.push_back(Describe(*command));
  }
  return commands;
}
