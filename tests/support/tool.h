// The `tessel` command, run as its users run it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace test {

using Lines = std::vector<std::string>;

std::string ReadAll(const std::filesystem::path& path);
Lines SplitLines(const std::string& text);
std::string Text(const std::string& hex);  // of the octets that are written so
void ReplaceAll(std::string& text, const std::string& from, const std::string& to);

// The command that is tested: the tool of this build, or what the variable TESSEL_TOOL has, which runs tessel.exe.
std::string Tool();
bool IsForWindows();

struct Result {
  int status = -1;
  std::string out;
  std::string err;
};

// Each test has a folder of its own, in which its commands run.
class ToolTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  void Write(const std::string& name, const std::string& text) const;

  // $tessel in the command is the tool.
  [[nodiscard]] Result Shell(const std::string& command) const;

  std::filesystem::path folder_;
};

}  // namespace test
