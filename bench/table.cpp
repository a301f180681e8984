#include "table.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace bench {
namespace {

// OpenSSL looks at this variable when it is loaded, so each kind of processor has a process of its own.
constexpr const char* kPlainProcessor = "OPENSSL_ia32cap";

Processor ThisProcessor() { return std::getenv(kPlainProcessor) != nullptr ? Processor::kPlain : Processor::kAsItIs; }

std::vector<Row>& Rows() {
  static std::vector<Row> rows;
  return rows;
}

bool IsSameResult(std::string first, std::string second) {
  for (std::string* result : {&first, &second}) {
    std::erase_if(*result, [](char c) { return c == '\r' || c == '\n'; });
  }
  return !first.empty() && first == second;
}

std::string NameOf(const Row& row, const char* side) {
  return row.operation + '/' + std::to_string(row.octets) + '/' + row.function + '/' + side;
}

void Register(const std::string& name, const Call& call) {
  benchmark::RegisterBenchmark(name.c_str(), [call](benchmark::State& state) {
    for (auto iteration : state) {
      (void)iteration;
      benchmark::DoNotOptimize(call());
      benchmark::ClobberMemory();
    }
  });
}

Call Copying(size_t octets) {
  return [from = std::string(octets, 'x'), to = std::string(octets, ' ')]() mutable {
    std::memcpy(to.data(), from.data(), from.size());
    return std::string_view(to);
  };
}

std::string FloorOf(const Row& row) { return "memcpy/" + std::to_string(row.octets); }

// Keeps the least time of each name: on a machine that others use too, that of the run that was disturbed least.
class LeastTimes : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      const double time = run.cpu_accumulated_time / static_cast<double>(run.iterations) * 1e6;
      const auto [least, isNew] = microseconds_.try_emplace(run.run_name.function_name, time);
      if (!isNew) least->second = std::min(least->second, time);
    }
  }
  // 0 when it was not measured.
  double operator[](const std::string& name) { return microseconds_[name]; }

 private:
  std::map<std::string, double> microseconds_;
};

void PrintHead() {
  std::puts(
      "Microseconds of processor time for one call on one thread, the least of several runs. The floor, memcpy, "
      "copies\n"
      "the octets. MB/s is tessel's, of octets, not of the characters of their text. ratio: how many times as fast as\n"
      "OpenSSL tessel is.\n");
  std::printf("%-32s %9s %9s %9s %9s %7s %6s  %s\n", "operation", "octets", "memcpy", "tessel", "OpenSSL", "MB/s",
              "ratio", "function of OpenSSL");
}

void Print(const Row& row, LeastTimes& times) {
  const double tessel = times[NameOf(row, "tessel")];
  const double openssl = times[NameOf(row, "openssl")];
  if (tessel == 0 || openssl == 0) return;  // The caller asked for other rows.
  std::printf("%-32s %9zu %9.2f %9.2f %9.2f %7.0f %6.2f  %s\n", row.operation.c_str(), row.octets, times[FloorOf(row)],
              tessel, openssl, static_cast<double>(row.octets) / tessel, openssl / tessel, row.function.c_str());
}

void MeasureRows() {
  std::set<size_t> floors;
  for (const Row& row : Rows()) {
    if (floors.insert(row.octets).second) Register(FloorOf(row), Copying(row.octets));
    Register(NameOf(row, "tessel"), row.tessel);
    Register(NameOf(row, "openssl"), row.openssl);
  }
  LeastTimes times;
  benchmark::RunSpecifiedBenchmarks(&times);
  for (const Row& row : Rows()) Print(row, times);
  std::fflush(stdout);
}

}  // namespace

void Add(Row row) {
  if (row.processor != ThisProcessor()) return;
  if (!IsSameResult(std::string(row.tessel()), std::string(row.openssl()))) {
    std::fprintf(stderr, "%s: the results differ\n", row.operation.c_str());
    std::exit(1);
  }
  Rows().push_back(std::move(row));
}

}  // namespace bench

int main(int count, char** arguments) {
  // The runs of all rows are mixed, so that a disturbance meets both sides. What the caller says comes later and
  // prevails.
  std::vector<std::string> options = {arguments[0], "--benchmark_repetitions=15", "--benchmark_min_time=0.03",
                                      "--benchmark_enable_random_interleaving=true"};
  options.insert(options.end(), arguments + 1, arguments + count);
  std::vector<char*> pointers;
  std::string again = std::string(bench::kPlainProcessor) + "=0:0";
  for (std::string& option : options) {
    pointers.push_back(option.data());
    again += " '" + option + "'";
  }
  int left = static_cast<int>(pointers.size());
  benchmark::Initialize(&left, pointers.data());

  const bool isFirst = bench::ThisProcessor() == bench::Processor::kAsItIs;
  if (isFirst) bench::PrintHead();
  bench::AddValues();
  bench::MeasureRows();
  return !isFirst || std::system(again.c_str()) == 0 ? 0 : 1;
}
