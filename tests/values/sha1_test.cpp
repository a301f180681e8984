#include "values/sha1.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/host.h"
#include "support/octets.h"
#include "support/status.h"
#include "tessel/tessel.h"
#include "values/inputs.h"

namespace test {
namespace {

TEST(Sha1, IsThatOfSha1sumInEveryImplementation) {
  TESSEL_TEST_NEEDS_HOST();
  std::istringstream sums(OutputOnInputs("sha1sum *"));
  tessel::Sha1Compression* instructions = tessel::FindSha1Instructions();
  size_t compared = 0;
  std::string sum;
  for (std::string size; sums >> sum >> size; ++compared) {
    const std::string& octets = Inputs().at(std::stoul(size));
    const Guarded input(Bytes(octets.begin(), octets.end()));
    Bytes digest(21, 0xEE);
    ASSERT_OK(sha1(input.Data(), input.Size(), digest.data()));
    ASSERT_EQ(FromHex(sum + "EE"), digest) << size;
    digest.pop_back();
    for (tessel::Sha1Compression* compress : {&tessel::CompressSha1Portably, instructions}) {
      if (compress == nullptr) continue;
      const tessel::Sha1Digest other = tessel::Sha1By(*compress, {input.Data(), input.Size()});
      ASSERT_EQ(digest, Bytes(other.begin(), other.end())) << size;
    }
  }
  EXPECT_EQ(Inputs().size(), compared);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, sha1(nullptr, 0, Bytes(20).data()));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, sha1(Bytes(20).data(), 20, nullptr));
}

}  // namespace
}  // namespace test
