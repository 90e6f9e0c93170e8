#include <cstdio>
#include <cstring>

#include "Memory.h"
#include "Ratios.h"

std::vector<Ratio>& Ratios() {
  static std::vector<Ratio> ratios;
  return ratios;
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    const bool isMedian = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
    if (run.error_occurred) hasFailed_ = true;
    if (isMedian) medians_[run.run_name.function_name] = run.GetAdjustedRealTime();
  }
}

void RatioReporter::PrintRatios() const {
  std::printf("\n%-58s %9s %9s\n", "ratio of medians, peers measured in the same run", "ratio",
              "promised");
  for (const Ratio& ratio : Ratios()) {
    const auto measured = medians_.find(ratio.measured);
    const auto peer = medians_.find(ratio.peer);
    const bool isRatio = !ratio.peer.empty();
    if (measured == medians_.end() || (isRatio && peer == medians_.end())) {
      std::printf("%-58s %9s\n", ratio.what.c_str(), "not run");
      continue;
    }
    const double value = measured->second / (isRatio ? peer->second : 1.0) / ratio.sizeRatio;
    std::printf("%-58s %9.4f ", ratio.what.c_str(), value);
    if (ratio.most > 0) {
      std::printf("%9.3f  %s\n", ratio.most, value <= ratio.most ? "kept" : "NOT KEPT");
    } else {
      std::printf("%9s\n", "-");
    }
  }
}

int main(int argc, char** argv) {
  // Repetitions in random order, so that a machine whose speed drifts is fair to both sides.
  std::vector<char*> arguments = {argv[0]};
  static char repetitions[] = "--benchmark_repetitions=9";
  static char interleaving[] = "--benchmark_enable_random_interleaving=true";
  static char aggregates[] = "--benchmark_report_aggregates_only=true";
  static char shortTime[] = "--benchmark_min_time=0.02";
  static char few[] = "--benchmark_repetitions=3";
  arguments.insert(arguments.end(), {repetitions, interleaving, aggregates});
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--quick") == 0) {
      arguments.insert(arguments.end(), {shortTime, few});
    } else {
      arguments.push_back(argv[i]);
    }
  }
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios();
  PrintMemoryRatios();
  benchmark::Shutdown();
  return reporter.HasFailed() ? 1 : 0;
}
