// The convention for buffers, tried in all its ways: for the tests and for the fuzz programs, which differ in what they
// do when something does not hold.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <type_traits>

#include "tessel/calls.hpp"

namespace test {

// Calls read(buffer, length) without a buffer, with one that is an octet too small and with one that is just large
// enough, which delivers the octets. When the first of these fails there are no others, and its status is returned.
//
// expect(holds) is told what must hold. It points to the line here by its further parameters, __builtin_FILE() and
// __builtin_LINE(). A text may turn out shorter than it was said to be: its NUL need not count in the end.
template <class Expect, class Read>
uint32_t FetchInAllWays(Expect expect, tessel::Bytes& octets, Read read, bool isText = false) {
  constexpr uint8_t kUntouched = 0xEE;
  octets.clear();
  uint32_t size = 0;
  const uint32_t status = read(static_cast<uint8_t*>(nullptr), &size);
  if (status != TESSEL_OK) return status;

  // With an octet behind that nothing may be written to.
  octets.assign(size_t{size} + 1, kUntouched);
  uint32_t length = size;
  if (size != 0) {
    length = size - 1;
    expect(read(octets.data(), &length) == TESSEL_BUFFER_TOO_SMALL);
    expect(length == size);
    expect(std::ranges::all_of(octets, [](uint8_t octet) { return octet == kUntouched; }));
    length = size;
  }
  expect(read(octets.data(), &length) == TESSEL_OK);
  expect(length == size || (isText && length < size));
  expect(octets[size] == kUntouched);
  octets.resize(length);
  return status;
}

// The same of a function that ends with the buffer and its length, with its other arguments as tessel::Call takes them.
template <class Expect, class... Parameters, class... Arguments>
uint32_t FetchInAllWays(Expect expect, tessel::Bytes& octets, uint32_t(TESSEL_CALL* function)(Parameters...),
                        const Arguments&... arguments) {
  using Buffer = std::tuple_element_t<sizeof...(Parameters) - 2, std::tuple<Parameters...>>;
  const auto read = [&](uint8_t* buffer, uint32_t* length) {
    return tessel::Try(function, arguments..., reinterpret_cast<Buffer>(buffer), length);
  };
  return FetchInAllWays(expect, octets, read, std::is_same_v<Buffer, char*>);
}

}  // namespace test
