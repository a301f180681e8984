// What holds for the interface as a whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

#include "support/host.h"

namespace {

using Names = std::set<std::string>;
using test::OutputOf;

Names Lines(std::istream&& text) {
  Names names;
  for (std::string line; std::getline(text, line);) names.insert(line);
  return names;
}

Names ExportList() { return Lines(std::ifstream(TESSEL_SOURCE_DIR "/src/exports.txt")); }

// The library of this build, or the file that the variable of this name has instead: a DLL.
std::string Library() {
  const char* named = std::getenv("TESSEL_LIBRARY");
  return named != nullptr ? named : TESSEL_LIBRARY;
}

bool IsDll(const std::string& file) { return file.ends_with(".dll"); }

std::string ListExports(const std::string& library) {
  if (IsDll(library)) {
    return OutputOf("objdump -p " + library +
                    " | awk '/Ordinal.Name Pointer/ {on = 1; next} !NF {on = 0} on {print $NF}'");
  }
  return OutputOf("nm -D --defined-only --without-symbol-versions " + library + " | awk '$2 != \"A\" {print $3}'");
}

TEST(Interface, LibraryExportsJustTheListedNames) {
  Names exported = Lines(std::istringstream(ListExports(Library())));
  // What sanitizers add to a library of theirs.
  std::erase_if(exported, [](const std::string& name) { return name.find("san") != std::string::npos; });
  EXPECT_EQ(ExportList(), exported);
}

// The owners of the C++ interface release each type by its own function.
TEST(Interface, EveryFreeFunctionHasItsOwner) {
  Names released = Lines(std::istringstream(
      OutputOf("grep -ho '= Free[A-Z][A-Za-z0-9]*' " TESSEL_SOURCE_DIR "/include/tessel/*.hpp | cut -c3-")));
  Names expected = ExportList();
  std::erase_if(expected,
                [](const std::string& name) { return !name.starts_with("Free") || name == "FreeAsn1Object"; });
  EXPECT_EQ(expected, released);
}

// The C++ interface takes no octets and size for a counted identifier and a number that follows it.
TEST(Interface, NumbersBehindIdentifiersAreToldFromSizes) {
  const std::string headers = TESSEL_SOURCE_DIR "/include/tessel/";
  const Names told =
      Lines(std::istringstream(OutputOf(R"(grep -oP 'kIdentifierPlace<decltype\(&\K\w+' )" + headers + "calls.hpp")));
  const Names declared = Lines(std::istringstream(
      OutputOf("cat " + headers +
               R"(*.h | tr -s ' \n' ' ' | grep -oP 'TESSEL_CALL \K\w+(?=\([^;]*const uint8_t\* \w+, )"
               R"(uint32_t (?!\w*([sS]ize|[lL]ength)\b))')")));
  EXPECT_EQ(declared, told);
}

TEST(Interface, LibraryNeedsTheSystemOnly) {
  const std::string library = Library();
  Names needed =
      Lines(std::istringstream(OutputOf("objdump -p " + library + " | awk '/NEEDED|DLL Name/ {print $NF}'")));
  // A sanitizer needs more.
  const Names expected = IsDll(library) ? Names{"KERNEL32.dll", "msvcrt.dll"} : Names{"libc.so.6"};
  if (needed.contains("libasan.so.8")) return;
  EXPECT_EQ(expected, needed);
}

#ifdef TESSEL_IS_HARDENED

// How often a pattern of grep is in what a command tells of the library.
long Count(const std::string& command, const std::string& pattern) {
  return std::atol(OutputOf(command + ' ' + Library() + " | { grep -cE '" + pattern + "' || true; }").c_str());
}

TEST(Interface, LibraryIsHardened) {
  if (IsDll(Library())) {
    EXPECT_EQ(2, Count("objdump -p", "DYNAMIC_BASE|NX_COMPAT"));
    EXPECT_EQ(Count("objdump -p", "pei-x86-64"), Count("objdump -p", "HIGH_ENTROPY_VA"));
    return;
  }
  EXPECT_EQ(1, Count("readelf -lW", "GNU_RELRO"));
  EXPECT_EQ(1, Count("readelf -dW", "BIND_NOW"));
  EXPECT_EQ(1, Count("readelf -lW", "GNU_STACK.* RW "));
  EXPECT_EQ(1, Count("nm -D", "U __stack_chk_fail"));
#if defined(__x86_64__)
  EXPECT_EQ(1, Count("readelf -nW", "x86 feature: .*SHSTK"));
#endif
#if defined(__x86_64__) || defined(__i386__)
  EXPECT_LE(Count("nm -D --defined-only", " T "), Count("objdump -d", "endbr"));
#endif
}

#endif

// The name in "TESSEL_API uint32_t TESSEL_CALL Name(...)" or "TESSEL_API extern const Asn1Item Name".
std::string DeclaredName(std::string_view declaration) {
  declaration = declaration.substr(0, declaration.find('('));
  return std::string(declaration.substr(declaration.find_last_of(" *\n") + 1));
}

// The declaration stands in a block that begins with a comment. A comment over several declarations names each, or the
// type that the declaration belongs to.
bool IsTold(const std::string& header, size_t position, const std::string& name) {
  const size_t block = header.rfind("\n\n", position);
  if (block == std::string::npos) return false;
  const std::string before = header.substr(block + 2, position - block - 2);
  if (!before.starts_with("/*")) return false;
  if (before.find("TESSEL_API") == std::string::npos) return true;
  return before.find(name + ":") != std::string::npos || before.find(name + ",") != std::string::npos;
}

TEST(Interface, EveryNameIsDeclaredOnceUnderAComment) {
  Names declared;
  for (const auto& entry : std::filesystem::directory_iterator(TESSEL_SOURCE_DIR "/include/tessel")) {
    std::stringstream text;
    text << std::ifstream(entry.path()).rdbuf();
    const std::string header = text.str();
    for (size_t at = header.find("\nTESSEL_API"); at != std::string::npos; at = header.find("\nTESSEL_API", at + 1)) {
      const std::string name = DeclaredName(header.substr(at + 1, header.find(';', at) - at - 1));
      EXPECT_TRUE(declared.insert(name).second) << name << " is declared twice";
      EXPECT_TRUE(IsTold(header, at, name)) << name << " is not told in a comment";
    }
  }
  EXPECT_EQ(ExportList(), declared);
}

// The page names the file of each deviation in a heading, has an entry for each mark in it, and each entry a test.
TEST(Interface, EveryDeviationIsOnThePageWithATestThatExists) {
  const std::string source = TESSEL_SOURCE_DIR;
  const std::string page = source + "/docs/deviations.md";
  const auto lines = [](const std::string& command) { return Lines(std::istringstream(OutputOf(command))); };
  const std::string entries =
      "awk '/^## / {file = $NF} /^- / {++entries[file]} END {for (file in entries) print file\":\"";
  EXPECT_EQ(lines("cd " + source + " && grep -rc '// DEVIATES: ' src include | grep -v ':0$'"),
            lines(entries + "entries[file]}' " + page));
  EXPECT_EQ(OutputOf("grep -c '^- ' " + page), OutputOf("grep -c '`[*]$' " + page)) << "an entry ends with its tests";
  const Names named = lines("grep -oP '`\\K[A-Z][A-Za-z0-9]*[.][A-Z][A-Za-z0-9]*(?=`)' " + page);
  const Names tests = lines(R"(grep -rhoP '^TEST(_[FP])?\(\K\w+, \w+' )" + source + "/tests | sed 's/, /./'");
  EXPECT_GT(named.size(), 40U);
  for (const std::string& name : named) EXPECT_TRUE(tests.contains(name)) << name;
}

}  // namespace
