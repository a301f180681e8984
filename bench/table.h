// What a benchmark program does: it measures sides of operations beside each other, in one run, and prints a table in
// Markdown.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace bench {

enum class Kind : uint8_t {
  kTessel,
  kPeer,
  // The first of an operation is the 1 that its other figures are compared with.
  kFloor,
  // A line to compare with that is not the same operation. No ratio is formed with it.
  kAside,
};

struct Label {
  Kind kind;
  // Who, and what is called: OpenSSL `d2i_X509`. In one table it says the same of every operation.
  std::string name;
  // What is done for the figure, and what is not.
  std::string remark;
};

// Does the whole operation once. False: it failed.
using Work = std::function<bool()>;

struct Side {
  Label label;
  // This is timed.
  Work work;
  // Does it once more and looks whether the result is right.
  Work check;
};

struct Operation {
  std::string name;
  // How many certificates or entries the operation is about: figures are for one of them.
  double items = 1;
  std::vector<Side> sides{};
};

struct Figure {
  std::string operation;
  Label label;
  double value;
};

struct Heading {
  std::string title;
  // What stands between the title and the table.
  std::string text;
  // What the figures are, as the head of their column.
  std::string unit;
};

struct Options {
  // --full: also what takes minutes or gigabytes.
  bool isFull = false;
};

// Reads --full and leaves the other arguments to Google Benchmark. Ends the program when it does not know one.
Options Initialize(int count, char** arguments);

// Checks each side, ending the program when one is wrong, and then measures them all, in an order that changes from run
// to run. The figures are nanoseconds for one item, the least of all runs. Sides that --benchmark_filter leaves out
// have none.
std::vector<Figure> Measure(const std::vector<Operation>& operations);

void Print(const Heading& heading, const std::vector<Figure>& figures);

// A table whose first row is its head, and whose first columns are texts. Rows may be shorter than the head.
using Rows = std::vector<std::vector<std::string>>;
void PrintTable(const std::string& title, const std::string& text, const Rows& rows, size_t textColumns);

// To three digits, or to the whole number: 1.23, 12.3, 123, 12,345.
std::string Rounded(double value);

// 200000 as 200,000.
std::string Grouped(uint64_t number);

// Ends the program with an error that says what went wrong.
[[noreturn]] void Stop(const std::string& what);
void Require(bool isRight, const std::string& what);

}  // namespace bench
