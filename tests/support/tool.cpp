#include "support/tool.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "support/octets.h"

namespace test {

namespace fs = std::filesystem;

std::string ReadAll(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

Lines SplitLines(const std::string& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string Text(const std::string& hex) {
  const Bytes octets = FromHex(hex);
  return {octets.begin(), octets.end()};
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
    text.replace(at, from.size(), to);
}

std::string Tool() {
  const char* command = std::getenv("TESSEL_TOOL");
  return command != nullptr ? command : TESSEL_TOOL;
}

bool IsForWindows() { return Tool().ends_with(".exe"); }

void ToolTest::SetUp() {
  std::string pattern = testing::TempDir() + "/tessel-tool-XXXXXX";
  ASSERT_NE(mkdtemp(pattern.data()), nullptr);
  folder_ = pattern;
}

void ToolTest::TearDown() { fs::remove_all(folder_); }

void ToolTest::Write(const std::string& name, const std::string& text) const {
  std::ofstream(folder_ / name, std::ios::binary) << text;
}

Result ToolTest::Shell(const std::string& command) const {
  const fs::path errors = folder_ / "stderr";
  const std::string setup = "cd '" + folder_.string() + "'; LC_ALL=C; export LC_ALL; tessel='" + Tool() + "'; ";
  Result result;
  FILE* pipe = popen((setup + "{ " + command + "\n} 2>'" + errors.string() + "'").c_str(), "r");
  if (pipe == nullptr) return result;
  std::array<char, 65536> chunk{};
  while (const size_t got = std::fread(chunk.data(), 1, chunk.size(), pipe)) result.out.append(chunk.data(), got);
  const int ended = pclose(pipe);
  if (WIFEXITED(ended)) result.status = WEXITSTATUS(ended);
  result.err = ReadAll(errors);
  std::erase(result.err, '\r');  // which ends lines on Windows
  return result;
}

}  // namespace test
