// Tests that compare with a program of the host, such as openssl or sha1sum.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

// Stands first in such a test. Programs for Windows cannot run those of the host, not even under Wine, and the code
// that is compared is the same for every system.
#ifdef _WIN32
#define TESSEL_TEST_NEEDS_HOST() GTEST_SKIP() << "compares with a program that Windows does not have"
#else
#define TESSEL_TEST_NEEDS_HOST() static_cast<void>(0)
#endif

namespace test {

// What a command of the shell prints; nothing when it fails.
inline std::string OutputOf(const std::string& command) {
  std::string output;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return output;
  char part[65536];
  while (const size_t got = std::fread(part, 1, sizeof part, pipe)) output.append(part, got);
  return pclose(pipe) == 0 ? output : std::string();
}

}  // namespace test
