#include "tessel/pem.hpp"

#include <gtest/gtest.h>

#include <string>

#include "support/octets.h"

namespace test {
namespace {

// Each block in a line: label, line, headers, octets or problem.
std::string Walked(std::string_view text) {
  std::string all;
  tessel::PemReader reader(text);
  while (const std::optional<tessel::PemBlock> block = reader.Next()) {
    all += std::string(block->label) + ' ' + std::to_string(block->line) + ' ';
    if (!block->headers.empty()) all += '(' + std::string(block->headers) + ") ";
    all += (block->problem.empty() ? ToHex(block->octets) : block->problem) + '\n';
  }
  return all;
}

TEST(PemReader, BlocksAreReadInAnyLayout) {
  EXPECT_EQ(Walked("text\n-----BEGIN A-----\nMAA=\n-----END A-----\nmore\n-----BEGIN B C-----\r\nMA\r\nA=\r\n"
                   "-----END B C-----\r\n"),
            "A 2 30 00\nB C 6 30 00\n");
  EXPECT_EQ(Walked("\t -----BEGIN A----- \n \tM A\n\n\tA=\n  -----END A-----  "), "A 1 30 00\n");
  EXPECT_EQ(Walked("-----BEGIN A-----MAA=-----END A-----\n-----BEGIN B-----\nMA==\n-----END B-----"),
            "A 1 30 00\nB 2 30\n");
  EXPECT_EQ(Walked("-----BEGIN K-----\nProc-Type: 4,ENCRYPTED\nDEK-Info: X,00\n\nMAA=\n-----END K-----\n"),
            "K 1 (Proc-Type: 4,ENCRYPTED\nDEK-Info: X,00) 30 00\n");
  EXPECT_EQ(
      Walked("\xEF\xBB\xBF-----BEGIN A-----\rMA\rA=\r-----END A----------BEGIN B-----\rX-Y: Z\r\rMA==\r"
             "-----END B-----\r\n\n-----BEGIN C-----MA==-----END C----- -----BEGIN D-----\nMA==\n-----END D-----\n"
             "\xEF\xBB\xBF -----BEGIN E-----\nA: B\nMA==\n-----END E-----"),
      "A 1 30 00\nB 4 (X-Y: Z) 30\nC 10 30\nD 10 30\n"
      "E 13 (A: B\nMA==) nothing follows the headers of the block\n");
  EXPECT_EQ(Walked("no block"), "");
}

TEST(PemReader, ABrokenBlockDoesNotHideTheNext) {
  EXPECT_EQ(Walked("-----BEGIN A-----\nMAA=\n-----BEGIN A-----\nMAA!\n-----END A-----\n-----BEGIN A-----\n"
                   "-----END A-----\n-----BEGIN A-----\nMAA=\n-----END B-----\n-----BEGIN A-----MAA=-----END B-----\n"
                   "-----BEGIN A-----\nMAA=\n"),
            "A 1 line 3: another block begins before the END line\n"
            "A 3 the text between the marker lines is not Base64\n"
            "A 6 the block is empty\n"
            "A 8 line 10: the END line does not fit the BEGIN line\n"
            "A 11 line 11: the END line does not fit the BEGIN line\n"
            "A 12 the END line is missing\n");
}

TEST(Base64, WhiteSpaceIsPassedOverAndNothingElse) {
  const std::string long_ = std::string(30000, 'A') + "\n" + std::string(2768, 'A') + "AAAA";
  EXPECT_EQ(Bytes(24579), tessel::DecodeBase64(long_));
  EXPECT_EQ((Bytes{0x30, 0x00}), tessel::DecodeBase64(" M A\tA\n=\r\n"));
  for (const std::string& text : {std::string(), std::string(" \n"), std::string("MA"), std::string("MAA=MAA="),
                                  std::string("MA-="), std::string("AAAA-----END"), std::string("\xCD\xC1\xC1\xBD"),
                                  long_ + "=", std::string(16380, 'A') + "AA==" + "AAAA"}) {
    EXPECT_FALSE(tessel::DecodeBase64(text)) << text.substr(0, 20);
  }
}

}  // namespace
}  // namespace test
