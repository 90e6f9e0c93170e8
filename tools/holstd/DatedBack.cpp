#include "DatedBack.h"

#include "Format.h"
#include "VyrAnnStandardScript.h"

namespace {

using Cause = VyrDrwNewerContent::Cause;

std::string Version(int version) {
  return "version " + std::to_string(version);
}

/// How the version comes to be told wrongly.
std::string CauseOf(const VyrDrwNewerContent& newer) {
  const std::string node = Quoted(newer.node.View());
  const std::string dated = Version(newer.version);
  switch (newer.cause) {
    case Cause::Missing:
      return "counts as " + dated + " because " + node + " is missing";
    case Cause::Present:
      return "counts as " + dated + " because " + node + " is there, which later versions have not";
    case Cause::Stated:
      return "counts as " + dated + " because " + node + " says so";
  }
  return {};
}

/// The options of `edit` that run the commands. None of them holds a quote.
std::string OptionsOf(const VyrUnicodeString& commands) {
  std::string options;
  std::string_view rest = commands.View();
  for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
    options.append(" -c '").append(rest.substr(0, end)).append("'");
    rest.remove_prefix(end + 1);
  }
  return options;
}

}  // namespace

std::optional<VyrDrwNewerContent> FindNewerContent(Standard& standard) {
  return standard.version < 0 ? std::nullopt : VyrFindNewerContent(standard.document);
}

std::string DatedBackText(const VyrDrwNewerContent& newer) {
  const bool isBackEmpty = newer.cause == Cause::Missing && !(newer.node == "Root.Version");
  return CauseOf(newer) + ", but has " + Quoted(newer.found.View()) + " of " +
         Version(newer.contentVersion) + "; take the file from before that change, or " +
         (isBackEmpty ? "put back what tells the version, without what it held: " : "run ") +
         "holstd edit FILE --in-place" + OptionsOf(newer.commands);
}

std::optional<std::string> DatedBackByCommands(const std::optional<VyrDrwNewerContent>& before,
                                               const std::optional<VyrDrwNewerContent>& after) {
  if (!after || (before && before->version <= after->version)) return std::nullopt;
  return "after the commands it " + DatedBackText(*after);
}
