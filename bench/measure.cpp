// The measuring half of table.h.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string_view>

#include "table.h"

namespace bench {
namespace {

std::string NameOf(const Operation& operation, const Side& side) { return operation.name + '/' + side.label.name; }

void Register(const std::string& name, const Work& work) {
  benchmark::RegisterBenchmark(name.c_str(), [&work](benchmark::State& state) {
    for (auto iteration : state) {
      (void)iteration;
      if (!work()) {
        state.SkipWithError("the operation failed");
        return;
      }
      benchmark::ClobberMemory();
    }
  });
}

// Keeps the least time of each name: on a machine that others use too, that of the run that was disturbed least.
class LeastTimes : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) Stop(run.run_name.function_name + ": " + run.error_message);
      if (run.run_type != Run::RT_Iteration) continue;
      const double time = run.cpu_accumulated_time / static_cast<double>(run.iterations) * 1e9;
      const auto [least, isNew] = nanoseconds_.try_emplace(run.run_name.function_name, time);
      if (!isNew) least->second = std::min(least->second, time);
    }
  }
  // Null when it was not measured.
  [[nodiscard]] const double* Find(const std::string& name) const {
    const auto found = nanoseconds_.find(name);
    return found == nanoseconds_.end() ? nullptr : &found->second;
  }

 private:
  std::map<std::string, double> nanoseconds_;
};

}  // namespace

void Stop(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::exit(1);
}

void Require(bool isRight, const std::string& what) {
  if (!isRight) Stop(what);
}

Options Initialize(int count, char** arguments) {
  Options options;
  // The runs of all rows are mixed, so that a disturbance meets all sides. What the caller says comes later and
  // prevails.
  static std::vector<std::string> texts = {arguments[0], "--benchmark_repetitions=15", "--benchmark_min_time=0.03",
                                           "--benchmark_enable_random_interleaving=true"};
  for (int i = 1; i < count; ++i) {
    if (std::string_view(arguments[i]) == "--full") {
      options.isFull = true;
    } else {
      texts.emplace_back(arguments[i]);
    }
  }
  std::vector<char*> pointers;
  pointers.reserve(texts.size());
  for (std::string& text : texts) pointers.push_back(text.data());
  int left = static_cast<int>(pointers.size());
  benchmark::Initialize(&left, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(left, pointers.data())) std::exit(2);
  return options;
}

std::vector<Figure> Measure(const std::vector<Operation>& operations) {
  for (const Operation& operation : operations) {
    for (const Side& side : operation.sides) {
      Require(side.check(), NameOf(operation, side) + ": the result is wrong");
      Register(NameOf(operation, side), side.work);
    }
  }
  LeastTimes times;
  benchmark::RunSpecifiedBenchmarks(&times);
  benchmark::ClearRegisteredBenchmarks();

  std::vector<Figure> figures;
  for (const Operation& operation : operations) {
    for (const Side& side : operation.sides) {
      const double* time = times.Find(NameOf(operation, side));
      if (time != nullptr) figures.push_back({operation.name, side.label, *time / operation.items});
    }
  }
  return figures;
}

}  // namespace bench
