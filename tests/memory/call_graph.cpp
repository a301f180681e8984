#include "memory/call_graph.h"

#include <fstream>
#include <map>
#include <sstream>

#include "support/host.h"

namespace test {
namespace {

using Names = std::set<std::string>;

// "malloc@plt" and "Function+0x12" without what follows the name.
std::string NameOf(const std::string& symbol) { return symbol.substr(0, symbol.find_first_of("@+")); }

// The functions that each function names. A line "0000000000001234 <name>:" begins one; in the lines of its
// instructions the names stand in angle brackets too.
std::map<std::string, Names> ReadCalls() {
  std::map<std::string, Names> calls;
  std::istringstream lines(OutputOf("LC_ALL=C objdump -d --no-show-raw-insn " TESSEL_LIBRARY));
  std::string function;
  for (std::string line; std::getline(lines, line);) {
    const size_t begin = line.find('<');
    const size_t end = line.rfind('>');
    if (begin == std::string::npos || end == std::string::npos || end < begin) continue;
    const std::string name = NameOf(line.substr(begin + 1, end - begin - 1));
    // A label within a function, of which every file has its own by the same names.
    if (name.starts_with(".L")) continue;
    if (line.ends_with(">:")) {
      function = name;
      calls[function];
    } else {
      calls[function].insert(name);
    }
  }
  return calls;
}

}  // namespace

ExportedFunctions ReadCallGraph() {
  const std::map<std::string, Names> calls = ReadCalls();
  Names reaching = {"malloc", "calloc", "realloc"};
  for (size_t before = 0; before != reaching.size();) {
    before = reaching.size();
    for (const auto& [function, called] : calls) {
      for (const std::string& name : called) {
        if (reaching.contains(name)) reaching.insert(function);
      }
    }
  }
  ExportedFunctions exported;
  std::ifstream names(TESSEL_SOURCE_DIR "/src/exports.txt");
  for (std::string name; std::getline(names, name);) {
    if (!calls.contains(name)) continue;
    exported.all.insert(name);
    if (reaching.contains(name)) exported.allocating.insert(name);
  }
  return exported;
}

}  // namespace test
