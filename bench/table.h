// Benchmarks that print one table: what tessel does beside what OpenSSL does with the same input.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace bench {

// One call that is measured. Returns its result, or nothing when it failed.
using Call = std::function<std::string_view()>;

// Where a row is measured. On a plain processor OpenSSL is told to use none of the instructions that only some have.
enum class Processor : bool { kAsItIs, kPlain };

struct Row {
  std::string operation;
  // Those that the operation is about: the floor copies as many, and MB/s counts them.
  size_t octets;
  Call tessel;
  Call openssl;
  // What OpenSSL's side calls.
  std::string function;
  Processor processor = Processor::kAsItIs;
};

// Adds a row, after both sides were seen to have the same result, line breaks apart. Ends the program when they do not.
void Add(Row row);

// The topics: each has a file of its own and adds its rows.
void AddValues();

}  // namespace bench
