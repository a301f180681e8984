// Objects of named types in tests, through the public interface.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "support/buffers.h"
#include "support/octets.h"
#include "support/status.h"
#include "tessel/calls.hpp"

namespace test {

using tessel::Call;
using tessel::Fetch;
using tessel::Get;
using tessel::Into;
using tessel::Make;
using tessel::ObjectIdentifier;
using tessel::Owned;
using tessel::Try;

inline uint32_t SizeOf(const Bytes& bytes) { return static_cast<uint32_t>(bytes.size()); }
inline Bytes ToBytes(std::string_view text) { return {text.begin(), text.end()}; }

// A counted identifier.
inline Bytes Counted(std::string_view dotted) { return Fetch(ConvertStringToOid, dotted); }

inline Owned<LibraryTime> TimeOf(uint32_t year, uint32_t month, uint32_t day) {
  Owned<LibraryTime> time = Make(CreateLibraryTime);
  Call(SetLibraryTime, time, day, month, year, 12, 30, 59);
  return time;
}

// What Fetch gives, of a function that is tested: the convention for buffers is tried in all its ways (buffers.h). One
// that does not end with the buffer and its length is called by a closure:
// FetchChecked([&](auto... out) { return GetCertificateSubjectUniqueId(certificate, out..., &unused); }).
template <class... Arguments>
Bytes FetchChecked(const Arguments&... arguments) {
  const auto expect = [](bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    if (!holds) ADD_FAILURE_AT(file, line) << "the convention for buffers is not kept";
  };
  Bytes octets;
  EXPECT_OK(FetchInAllWays(expect, octets, arguments...));
  return octets;
}

// Asks a function that ends with a buffer and its length for the length alone, and tells the status.
template <class... Parameters, class... Arguments>
uint32_t AskSize(uint32_t(TESSEL_CALL* function)(Parameters...), const Arguments&... arguments) {
  uint32_t size = 0;
  return Try(function, arguments..., nullptr, &size);
}

// Calls a function once for each of its pointers, with that one null, and expects to be refused. An argument that may
// be null is wrapped in Maybe.
template <class Type>
struct Maybe {
  Type value;
};

namespace detail {

template <class Type>
Type Plain(Type value) {
  return value;
}
template <class Type>
Type Plain(Maybe<Type> value) {
  return value.value;
}

template <size_t index, class Tuple, class Argument>
void ExpectRefusedWithout(auto function, Tuple arguments, const Argument& /*as given*/) {
  if constexpr (std::is_pointer_v<Argument>) {
    std::get<index>(arguments) = nullptr;
    EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, std::apply(function, arguments)) << "argument " << index;
  }
}

template <class Function, class Tuple, size_t... indices, class... Arguments>
void ExpectEachRefused(Function function, const Tuple& all, std::index_sequence<indices...> /*one each*/,
                       const Arguments&... arguments) {
  (ExpectRefusedWithout<indices>(function, all, arguments), ...);
}

}  // namespace detail

template <class... Parameters, class... Arguments>
void ExpectNullsRefused(uint32_t(TESSEL_CALL* function)(Parameters...), Arguments... arguments) {
  const std::tuple<Parameters...> all{detail::Plain(arguments)...};
  detail::ExpectEachRefused(function, all, std::index_sequence_for<Parameters...>(), arguments...);
}

}  // namespace test
