// Inputs of many lengths, for tessel and for the programs that it is compared with.
#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>

#include "support/host.h"

namespace test {

// Random octets by their number: all to 200, and one that is large.
inline const std::map<size_t, std::string>& Inputs() {
  static const auto inputs = [random = std::mt19937()]() mutable {
    std::map<size_t, std::string> made;
    for (size_t size = 0; size <= 1000000; size += size < 200 ? 1 : 876543) {
      while (made[size].size() < size) made[size] += static_cast<char>(random());
    }
    return made;
  }();
  return inputs;
}

// What a shell command prints in a folder with the inputs, each a file with its size as its name.
inline std::string OutputOnInputs(const std::string& command) {
  const auto folder = std::filesystem::temp_directory_path() / ("tessel-" + std::to_string(std::random_device()()));
  std::filesystem::create_directory(folder);
  for (const auto& [size, octets] : Inputs()) std::ofstream(folder / std::to_string(size), std::ios::binary) << octets;
  std::string output = OutputOf("cd '" + folder.string() + "' && " + command);
  std::filesystem::remove_all(folder);
  return output;
}

}  // namespace test
