#include "memory/failing.h"

#include <algorithm>
#include <iostream>
#include <iterator>

#include "memory/call_graph.h"

namespace test {
namespace {

std::vector<Scenario> AllScenarios() {
  std::vector<Scenario> all = EngineScenarios();
  all.insert(all.end(), X509Scenarios().begin(), X509Scenarios().end());
  return all;
}

std::vector<Bytes> ResultsOf(const Scenario& scenario, bool fails) {
  Caller caller(fails);
  scenario.run(caller);
  return caller.Results();
}

class FailingMemory : public testing::TestWithParam<Scenario> {};

// What is left over is looked at in a second run, when the tests themselves take nothing more to keep.
TEST_P(FailingMemory, IsSurvivedWithNothingLostAndNothingLeft) {
  const std::vector<Bytes> undisturbed = ResultsOf(GetParam(), false);
  EXPECT_EQ(undisturbed, ResultsOf(GetParam(), true));
  const HeapCount heap;
  ResultsOf(GetParam(), true);
  EXPECT_EQ(0, heap.Held());
}

INSTANTIATE_TEST_SUITE_P(Scenarios, FailingMemory, testing::ValuesIn(AllScenarios()),
                         [](const auto& scenario) { return scenario.param.name; });

TEST(FailingScenarios, LetEveryFunctionFailThatAllocates) {
  const ExportedFunctions functions = ReadCallGraph();
  ASSERT_FALSE(functions.allocating.empty()) << "nothing was read from " TESSEL_LIBRARY;
  for (const Scenario& scenario : AllScenarios()) ResultsOf(scenario, true);
  std::vector<std::string> missing;
  std::ranges::set_difference(functions.allocating, Caller::MadeToFail(), std::back_inserter(missing));
  EXPECT_EQ(std::vector<std::string>(), missing);
  std::cout << functions.all.size() << " exported functions, of which " << functions.allocating.size()
            << " can allocate; an allocation failed in " << Caller::MadeToFail().size() << ", " << Caller::Failures()
            << " failed in all\n";
}

}  // namespace
}  // namespace test
