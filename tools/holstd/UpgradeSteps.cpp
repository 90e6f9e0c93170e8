#include "UpgradeSteps.h"

#include <algorithm>
#include <functional>

namespace {

using Kind = StandardDifference::Kind;

const char* KindName(Kind kind) {
  switch (kind) {
    case Kind::Added:
      return "added";
    case Kind::Changed:
      return "changed";
    case Kind::Removed:
      return "deleted";
    case Kind::Moved:
      return "moved";
  }
  return "";
}

using Painter = std::function<std::string(Session::Paint paint, const std::string& text)>;

std::string LineOf(const SnapshotChange& change, const Painter& painted) {
  std::string path = Printable(change.path);
  if (!change.entry.empty()) path += " (" + Printable(change.entry) + ")";
  switch (change.kind) {
    case Kind::Added:
      return painted(Session::Paint::Good, "  + " + path) + "  " + change.after;
    case Kind::Changed:
      return "  ~ " + path + "  " + change.before + " -> " + change.after;
    case Kind::Removed:
      return painted(Session::Paint::Bad, "  - " + path) + "  " + change.before;
    case Kind::Moved:
      return "  > " + path + "  from place " + change.before + " to " + change.after;
  }
  return "";
}

long Count(const UpgradeStep& step, Kind kind) {
  return std::count_if(step.changes.begin(), step.changes.end(),
                       [=](const SnapshotChange& change) { return change.kind == kind; });
}

std::string Summary(const UpgradeStep& step) {
  std::string text = "to " + std::to_string(step.version) + " (" + step.name + "):";
  const char* separator = " ";
  for (const Kind kind : {Kind::Added, Kind::Changed, Kind::Removed, Kind::Moved}) {
    text += separator + std::to_string(Count(step, kind)) + " " + KindName(kind);
    separator = ", ";
  }
  return text;
}

void Tell(const std::string& file, const std::vector<UpgradeStep>& steps, const Painter& painted,
          const std::function<void(const std::string& line)>& tell) {
  tell(Printable(file) + ": " +
       (steps.empty() ? "nothing to do" : Counted(static_cast<long>(steps.size()), "step")));
  for (const UpgradeStep& step : steps) {
    tell(Summary(step));
    for (const SnapshotChange& change : step.changes) tell(LineOf(change, painted));
  }
}

}  // namespace

Json AsJson(const UpgradeStep& step, bool hasChanges) {
  Json json;
  json["step"] = step.name;
  json["version"] = step.version;
  if (!hasChanges) return json;
  Json changes = Json::array();
  for (const SnapshotChange& change : step.changes) {
    Json entry;
    entry["change"] = KindName(change.kind);
    entry["path"] = change.path;
    if (!change.entry.empty()) entry["entry"] = change.entry;
    if (change.kind != Kind::Added) entry["before"] = change.before;
    if (change.kind != Kind::Removed) entry["after"] = change.after;
    changes.push_back(std::move(entry));
  }
  json["changes"] = std::move(changes);
  return json;
}

void TellSteps(const std::string& file, const std::vector<UpgradeStep>& steps, bool isDryRun,
               Session& session) {
  if (isDryRun) {
    const auto painted = [&](Session::Paint paint, const std::string& text) {
      return session.Painted(paint, text);
    };
    return Tell(file, steps, painted, [&](const std::string& line) { session.Print(line + "\n"); });
  }
  const auto plain = [](Session::Paint, const std::string& text) { return text; };
  Tell(file, steps, plain, [&](const std::string& line) { session.SayInDetail(line); });
}
