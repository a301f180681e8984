// Memory that fails at every place where it can: each call of a scenario is made with its first allocation failing,
// then with its second, and so on, always on the same objects, until it succeeds without a failure.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "memory/heap.h"
#include "support/octets.h"
#include "tessel/calls.hpp"

namespace test {

// What a function does, as far as it decides about trying again and what a failure may leave.
enum class Effect : uint8_t {
  // It changes nothing, or makes an object of its own. It may do without the memory that failed, and is called again
  // all the same.
  kReads,
  // It must fail with the memory, and leave everything as it was.
  kChanges,
};

// Makes the calls of one scenario.
class Caller {
 public:
  // Without failures every call is made once.
  explicit Caller(bool fails) : fails_(fails) {}

  // What must be the same before and after every failure from here on: the encoding of the object at hand.
  void Watch(std::function<Bytes()> encode) { encode_ = std::move(encode); }

  // An argument that is a closure is asked for its value before every try.
  template <class... Parameters, class... Arguments>
  void Read(uint32_t (*function)(Parameters...), const Arguments&... arguments) {
    Repeat(Effect::kReads, function, arguments...);
  }
  template <class Result, class... Parameters, class... Arguments>
  Result Change(Result (*function)(Parameters...), const Arguments&... arguments) {
    return Repeat(Effect::kChanges, function, arguments...);
  }

  // For a function that makes an object: it goes into `owned`, in place of the one of the try before. After a failure
  // the handle must be null.
  template <class Object>
  auto Into(tessel::Owned<Object>& owned) {
    return [this, &owned] { return Prepare<Object>(owned.Out()); };
  }
  auto Into(tessel::Tree& tree) {
    return [this, &tree] { return Prepare<void>(tree.Out()); };
  }

  // An object that the function takes even when it fails, made anew for every try.
  template <class Make>
  auto Taken(Make make) {
    return [this, make] {
      const HeapCount heap;
      auto* object = make();
      taken_ += heap.Held();
      return object;
    };
  }

  // The capacity of a buffer, told anew before every try.
  static constexpr uint32_t kCapacity = 100000;
  static auto Capacity(uint32_t& length) {
    return [&length] { return &(length = kCapacity); };
  }

  // For a function that ends with a buffer and its length. The buffer is so large that encoders take memory for it. The
  // result, which is the same with and without that memory, is noted.
  template <class... Parameters, class... Arguments>
  Bytes Get(uint32_t (*function)(Parameters...), const Arguments&... arguments) {
    using Buffer = std::tuple_element_t<sizeof...(Arguments), std::tuple<Parameters...>>;
    Bytes buffer(kCapacity);
    uint32_t length = 0;
    std::vector<Bytes> results;
    const auto again = [&buffer, &length] {
      std::ranges::fill(buffer, uint8_t{0xEE});
      return &(length = kCapacity);
    };
    lookAtSuccess_ = [&] {
      results.emplace_back(buffer.begin(), buffer.begin() + length);
      EXPECT_EQ(results.front(), results.back());
    };
    Read(function, arguments..., reinterpret_cast<Buffer>(buffer.data()), again);
    lookAtSuccess_ = nullptr;
    Note(results.at(0));
    return results.at(0);
  }

  // What the scenario comes to, to be compared with the same scenario without failures.
  void Note(const Bytes& result) { results_.push_back(result); }
  [[nodiscard]] const std::vector<Bytes>& Results() const { return results_; }

  // Of all scenarios of the process: the functions in which an allocation failed, and how many did.
  static const std::set<std::string>& MadeToFail();
  static uint64_t Failures();

 private:
  template <class Object>
  Object** Prepare(Object** place) {
    static std::max_align_t untouched;
    *place = reinterpret_cast<Object*>(&untouched);
    expectNull_ = [place] {
      EXPECT_EQ(nullptr, *place);
      *place = nullptr;
    };
    return place;
  }

  template <class Argument>
  static decltype(auto) Resolve(const Argument& argument) {
    if constexpr (std::is_invocable_v<const Argument&>) {
      return argument();
    } else {
      return (argument);
    }
  }

  template <class Result, class... Parameters, class... Arguments>
  Result Repeat(Effect effect, Result (*function)(Parameters...), const Arguments&... arguments) {
    for (uint64_t n = 1;; ++n) {
      taken_ = 0;
      expectNull_ = nullptr;
      const std::tuple<Parameters...> resolved{Resolve(arguments)...};
      const Bytes before = encode_ ? encode_() : Bytes();
      const HeapCount heap;
      Result result{};
      bool hasFailed = false;
      {
        const FailingAllocation failing(fails_ ? n : 0);
        result = std::apply(function, resolved);
        hasFailed = failing.Happened();
      }
      const int64_t left = heap.Held();
      const bool succeeded = IsSuccess(result);
      if (!hasFailed) {
        EXPECT_TRUE(succeeded) << Called(reinterpret_cast<void*>(function)) << " gave " << result
                               << " without a failure";
        if (lookAtSuccess_) lookAtSuccess_();
        return result;
      }
      NoteFailure(reinterpret_cast<void*>(function));
      if (succeeded && effect == Effect::kReads) {
        if (lookAtSuccess_) lookAtSuccess_();
        continue;
      }
      SCOPED_TRACE(Called(reinterpret_cast<void*>(function)) + ", allocation " + std::to_string(n));
      ExpectOutOfMemory(result);
      if (succeeded) return result;
      if (expectNull_) expectNull_();
      EXPECT_EQ(-taken_, left);
      EXPECT_EQ(before, encode_ ? encode_() : Bytes());
    }
  }

  static bool IsSuccess(uint32_t status) { return status == 0; }
  static bool IsSuccess(const void* object) { return object != nullptr; }
  static void ExpectOutOfMemory(uint32_t status) { EXPECT_EQ(1U, status); }
  static void ExpectOutOfMemory(const void* object) { EXPECT_EQ(nullptr, object); }
  static std::string Called(void* function);
  static void NoteFailure(void* function);

  const bool fails_;
  std::function<Bytes()> encode_;
  std::function<void()> expectNull_;
  std::function<void()> lookAtSuccess_;
  int64_t taken_ = 0;
  std::vector<Bytes> results_;
};

struct Scenario {
  const char* name;
  void (*run)(Caller& caller);
};
// How GoogleTest shows it.
inline void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }

// In the files of the scenarios.
const std::vector<Scenario>& EngineScenarios();
const std::vector<Scenario>& X509Scenarios();

}  // namespace test
