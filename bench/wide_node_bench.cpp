#include <benchmark/benchmark.h>

#include <charconv>
#include <cstring>
#include <numeric>
#include <random>
#include <vector>

#include "Ratios.h"
#include "VyrAnnStandardXMLParser.h"

// The cost of one path command must not depend on how many children a node has.

namespace {

/// A command about the child of one number, made in place.
class Command {
 public:
  Command(const char* before, int number, const char* after) {
    Add(before);
    end_ = std::to_chars(end_, text_ + sizeof text_, number).ptr;
    Add(after);
  }
  operator std::string_view() const {  // NOLINT(google-explicit-constructor)
    return {text_, static_cast<std::size_t>(end_ - text_)};
  }

 private:
  void Add(const char* piece) { end_ = std::copy_n(piece, std::strlen(piece), end_); }

  char text_[64];
  char* end_ = text_;
};

/// In which order the children are looked up. A shuffled order pays for the memory of the tree
/// itself, whatever finds the child; it is told, not promised.
enum class Order { AsAppended, Shuffled };

/// Appends `count` named children to a node and finds each again by name. An iteration is one
/// child appended and found.
void AppendAndFind(benchmark::State& state, int count, Order order) {
  std::vector<int> numbers(static_cast<std::size_t>(count));
  std::iota(numbers.begin(), numbers.end(), 0);
  if (order == Order::Shuffled) std::shuffle(numbers.begin(), numbers.end(), std::mt19937(1));
  while (state.KeepRunningBatch(count)) {
    VyrAnnStandardXMLParser document;
    document.AddNodeWithPath("Root:Wide", 0);
    for (int i = 0; i < count; ++i) {
      document.AddValueWithPath(std::string_view(Command("Root.Wide:P", i, ":int:1:0,")), 1);
    }
    for (const int i : numbers) {
      if (document.GetValueWithPath(std::string_view(Command("Root.Wide.P", i, ""))).IsEmpty()) {
        state.SkipWithError("a child was not found");
      }
    }
    state.PauseTiming();
    { const VyrAnnStandardXMLParser dying = std::exchange(document, VyrAnnStandardXMLParser()); }
    state.ResumeTiming();
  }
}

/// Changes each of `count` fields of an instance by its name. An iteration is one change.
void ChangeFields(benchmark::State& state, int count) {
  VyrAnnStandardXMLParser document;
  document.AddNodeWithPath("Root:Wide", 1);
  for (int i = 0; i < count; ++i) {
    document.AddValueWithPath(std::string_view(Command("Root.Wide:F", i, ":int:1:0,")), 1);
  }
  while (state.KeepRunningBatch(count)) {
    for (int i = 0; i < count; ++i) {
      if (document.ChangeValueWithPath(std::string_view(Command("Root.Wide:F", i, ":2"))) != 0) {
        state.SkipWithError("a field was not found");
      }
    }
  }
}

[[maybe_unused]] const bool registered = [] {
  for (const int count : {1'000, 100'000}) {
    const std::string name = "change_fields_" + std::to_string(count);
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
      ChangeFields(state, count);
    })->Unit(benchmark::kNanosecond);
  }
  Ratios().push_back({"change a field, one of 100000 / one of 1000", "change_fields_100000",
                      "change_fields_1000", 2.0});
  for (const Order order : {Order::AsAppended, Order::Shuffled}) {
    const std::string how = order == Order::AsAppended ? "in_order" : "shuffled";
    for (const int count : {1'000, 100'000, 1'000'000}) {
      const std::string name = "append_and_find_" + how + "_" + std::to_string(count);
      benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        AppendAndFind(state, count, order);
      })->Unit(benchmark::kNanosecond);
      if (count == 1'000) continue;
      Ratios().push_back(
          {"append and find, " + how + ", one of " + std::to_string(count) + " / one of 1000", name,
           "append_and_find_" + how + "_1000", order == Order::AsAppended ? 2.0 : 0.0});
    }
  }
  return true;
}();

}  // namespace
