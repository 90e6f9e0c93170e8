#include "FileProblem.h"

#include <algorithm>
#include <iterator>

#include "Format.h"

void FileProblems::Add(FileProblems others) {
  std::move(others.told_.begin(), others.told_.end(), std::back_inserter(told_));
  more_ += others.more_;
}

void FileProblems::SortTold() {
  std::stable_sort(told_.begin(), told_.end(),
                   [](const FileProblem& a, const FileProblem& b) { return a.line < b.line; });
}

void FileProblems::ComplainOf(const std::string& file, const Session& session) const {
  for (const FileProblem& problem : told_) {
    session.Complain({kNegativeAnswer, file, problem.line, problem.text});
  }
  if (more_ == 0) return;
  session.Complain({kNegativeAnswer, file, 0,
                    "and " + Counted(static_cast<long>(more_), "problem") + " more like these"});
}

void FileProblems::WarnOf(const std::string& file, const Session& session) const {
  for (const FileProblem& problem : told_) session.Warn(file, problem.text);
  if (more_ == 0) return;
  session.Warn(file, "and " + Counted(static_cast<long>(more_), "value") + " more like these");
}
