#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

/// Finds the name that somebody may have meant who wrote another one. Names that are considered
/// again cost nothing, and of a great many the first few thousand are compared.
class NearestName {
 public:
  explicit NearestName(std::string_view written);

  void Consider(std::string_view name);
  /// The nearest name that was considered; empty when none is near.
  std::string Get() const { return near_.empty() ? std::string() : near_.front().second; }
  /// The nearest few, the nearest first.
  std::vector<std::string> GetFew() const;

 private:
  std::string written_;
  std::size_t limit_;  ///< names as far away as this are not near
  std::unordered_set<std::string> compared_;
  std::vector<std::pair<std::size_t, std::string>> near_;  ///< the few, with how far they are
};

/// What somebody may have meant who wrote a path that leads nowhere.
struct PathCorrection {
  bool isNeeded = false;  ///< some name leads nowhere, or is empty
  std::string dots;       ///< what is wrong with the dots; empty when they stand between names
  std::string below;      ///< the beginning of the path that is there
  std::string name;       ///< the name after it, which is not
  std::string nearest;    ///< the nearest name there; empty when none is near
  std::string path;       ///< a whole path of names that are there; empty when there is none near

  /// What is wrong and what would be right, as a message. `relation` is how a name stands to those
  /// before it, "in" or "below"; `otherwise` ends the message when nothing is near.
  std::string Message(const std::string& relation, const std::string& otherwise) const;
};

/// Goes through the names of a path and takes the nearest one wherever a name leads nowhere.
/// `advance` goes on to what the next name leads to, from where the names before it have led; it
/// says false, and stays there, when that is nothing. `considerNext` offers the names that may
/// follow.
PathCorrection CorrectPath(std::string_view path,
                           const std::function<bool(std::string_view name)>& advance,
                           const std::function<void(NearestName& nearest)>& considerNext);
