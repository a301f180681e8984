// What only a DLL has.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "support/octets.h"
#include "support/status.h"
#include "tessel/tessel.h"

namespace {

std::string VersionText(const std::vector<char>& information, const char* name) {
  void* text = nullptr;
  UINT length = 0;
  const std::string path = std::string("\\StringFileInfo\\000004B0\\") + name;
  if (VerQueryValueA(information.data(), path.c_str(), &text, &length) == 0) return "(missing)";
  return static_cast<const char*>(text);
}

TEST(Dll, HasAVersionResource) {
  std::vector<char> information(GetFileVersionInfoSizeA("tessel.dll", nullptr));
  ASSERT_NE(0, GetFileVersionInfoA("tessel.dll", 0, static_cast<DWORD>(information.size()), information.data()));
  EXPECT_EQ("tessel", VersionText(information, "ProductName"));
  EXPECT_EQ(TESSEL_PROJECT_VERSION, VersionText(information, "FileVersion"));
}

TEST(Dll, FunctionsAreFoundByTheirPlainNames) {
  const auto found = GetProcAddress(GetModuleHandleA("tessel.dll"), "sha1");
  EXPECT_EQ(reinterpret_cast<void*>(&sha1), reinterpret_cast<void*>(found));
}

#ifndef _WIN64
struct Sha1Call {
  uint32_t offset;  // of the stack from a multiple of 16
  decltype(&sha1) function;
  const uint8_t* data;
  uint32_t size;
  uint8_t* digest;
};

// Compilers other than GCC keep the stack at multiples of 4 only.
TEST(Dll, CallersNeedNotAlignTheStackNorRemoveArguments) {
  const uint8_t text[] = {'a', 'b', 'c'};
  for (const uint32_t offset : {0U, 4U, 8U, 12U}) {
    test::Bytes digest(20);
    const Sha1Call call = {offset, &sha1, text, sizeof text, digest.data()};
    uint32_t status = ~0U;
    int32_t left = ~0;
    asm volatile(
        "movl %%esp, %%ebx; andl $-16, %%esp; subl (%[call]), %%esp; movl %%esp, %%edi;"
        "pushl 16(%[call]); pushl 12(%[call]); pushl 8(%[call]); call *4(%[call]);"
        "subl %%esp, %%edi; movl %%ebx, %%esp"
        : "=a"(status), "=&D"(left)
        : [call] "S"(&call)
        : "ebx", "ecx", "edx", "memory", "cc");
    EXPECT_OK(status);
    EXPECT_EQ(0, left);
    EXPECT_EQ("A9 99 3E 36 47 06 81 6A BA 3E 25 71 78 50 C2 6C 9C D0 D8 9D", test::ToHex(digest)) << offset;
  }
}
#endif

}  // namespace
