#include "support/openssl.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <utility>

namespace test {

namespace fs = std::filesystem;

Openssl::Openssl() {
  std::random_device random;
  folder_ = fs::temp_directory_path() / ("tessel-" + std::to_string(random()) + "-" + std::to_string(random()));
  // An existing folder is never taken.
  if (!fs::create_directory(folder_)) std::abort();
}

Openssl::~Openssl() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

void Openssl::Write(const std::string& file, const Bytes& octets) const {
  std::ofstream stream(folder_ / file, std::ios::binary);
  stream.write(reinterpret_cast<const char*>(octets.data()), static_cast<std::streamsize>(octets.size()));
}

Bytes Openssl::Read(const std::string& file) const {
  std::ifstream stream(folder_ / file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string Openssl::Run(const std::string& arguments) const { return Print(arguments, true); }
std::string Openssl::Refusal(const std::string& arguments) const { return Print(arguments, false); }

std::vector<Element> Openssl::Parse(const Bytes& octets) const {
  Write("parsed.der", octets);
  std::istringstream lines(Run("asn1parse -inform DER -in parsed.der"));
  Element root;
  size_t at = 0;
  size_t depth = 0;
  size_t header = 0;
  size_t length = 0;
  for (std::string line; std::getline(lines, line);) {
    // A text with a line break goes on in a line of another form.
    if (std::sscanf(line.c_str(), "%zu:d=%zu hl=%zu l=%zu ", &at, &depth, &header, &length) != 4) continue;
    Element* parent = &root;
    while (depth-- > 0) parent = &parent->children.back();
    const auto start = octets.begin() + static_cast<ptrdiff_t>(at);
    const auto content = start + static_cast<ptrdiff_t>(header);
    const auto end = content + static_cast<ptrdiff_t>(length);
    parent->children.push_back({{start, end}, {content, end}, {}});
  }
  return std::move(root.children);
}

Bytes Openssl::NewKey(const Scheme& scheme, const std::string& file) const {
  (void)Run("genpkey" + scheme.Engine() + scheme.key + " -out " + file);
  (void)Run("pkey" + scheme.Engine() + "-pubout -outform DER -out public.der -in " + file);
  return Read("public.der");
}

Bytes Openssl::Sign(const Scheme& scheme, const std::string& file, const Bytes& octets) const {
  Write("signed", octets);
  (void)Run("dgst" + scheme.Engine() + scheme.digest + " -out signature -sign " + file + " signed");
  return Read("signature");
}

std::string Openssl::Print(const std::string& arguments, bool succeeds) const {
  const std::string command = "cd \"" + folder_.string() + "\" && openssl " + arguments + " >printed.txt 2>&1";
  const int result = std::system(command.c_str());
  const Bytes octets = Read("printed.txt");
  std::string printed(octets.begin(), octets.end());
  EXPECT_TRUE(succeeds == (result == 0)) << "openssl " << arguments << "\n" << printed;
  return printed;
}

}  // namespace test
