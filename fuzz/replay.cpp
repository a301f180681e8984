// Stands in for libFuzzer's main where that is not there: gives the program each file of the folders that it is told.
// One that is not there has no files.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int count, char** arguments) {
  size_t files = 0;
  for (int i = 1; i < count; ++i) {
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(arguments[i], missing)) {
      std::ifstream file(entry.path(), std::ios::binary);
      const std::vector<char> octets{std::istreambuf_iterator<char>(file), {}};
      // Told before, so that the last one is known after a crash.
      std::printf("%s\n", entry.path().c_str());
      std::fflush(stdout);
      LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(octets.data()), octets.size());
      ++files;
    }
  }
  std::printf("%zu inputs\n", files);
  return files == 0 ? 1 : 0;
}
