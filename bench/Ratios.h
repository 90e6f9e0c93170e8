#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

/// A figure that is to be told as a multiple of another one of the same run.
struct Ratio {
  std::string what;
  std::string measured;  // name of a benchmark
  std::string peer;      // empty: the figure itself, divided by `sizeRatio`
  double most;           // what we promise; 0 promises nothing
  double sizeRatio = 1;  // how much more there was to do than in the peer
};

/// The ratios that the benchmark files ask for.
std::vector<Ratio>& Ratios();

/// Collects the median time per iteration of every benchmark and prints the ratios.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override;
  /// One line per ratio, with its promise and whether it was kept.
  void PrintRatios() const;
  /// True when a benchmark could not do its work.
  bool HasFailed() const { return hasFailed_; }

 private:
  std::map<std::string, double> medians_;
  bool hasFailed_ = false;
};
