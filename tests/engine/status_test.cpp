#include "support/status.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tessel/tessel.h"

namespace {

TEST(Status, PlaceIsThatOfTheLastFailure) {
  uint32_t line = 0;
  ASSERT_STATUS(TESSEL_INVALID_ARGUMENT, CheckAsn1Boolean(nullptr));
  EXPECT_STREQ("primitives.cpp", GetLastFileErrorAsn(&line));
  EXPECT_GT(line, 0U);
  EXPECT_LT(line, 1000U);
  // Success does not clear it, and a null line is allowed.
  ASSERT_OK(FreeAsn1Object(nullptr, nullptr));
  EXPECT_STREQ("primitives.cpp", GetLastFileErrorAsn(nullptr));
  // A code that is passed up keeps the place where it was found.
  Certificate* certificate = nullptr;
  ASSERT_STATUS(TESSEL_MALFORMED, DecodeCertificate(reinterpret_cast<const uint8_t*>("\x30\x00"), 2, &certificate));
  EXPECT_STREQ("decoder.cpp", GetLastFileErrorAsn(&line));
}

TEST(Status, BannerWritesBackTextLengthOrNeededCapacity) {
  char banner[100] = {};
  uint32_t length = sizeof banner;
  ASSERT_OK(GetVersionInfo(banner, &length));
  ASSERT_EQ(std::strlen(banner), length);
  EXPECT_EQ(0U, std::string(banner).find("TESSEL v1.0 (32bit) 05/02/2019 (R.3729) "));
  const uint32_t textLength = length;

  char exact[100];
  std::memset(exact, 'x', sizeof exact);
  length = textLength + 1;
  EXPECT_OK(GetVersionInfo(exact, &length));
  EXPECT_EQ(textLength, length);
  EXPECT_STREQ(banner, exact);
  EXPECT_EQ('x', exact[textLength + 1]);

  std::memset(exact, 'x', sizeof exact);
  length = textLength;
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, GetVersionInfo(exact, &length));
  EXPECT_EQ(textLength + 1, length);
  EXPECT_EQ('x', exact[0]);

  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, GetVersionInfo(nullptr, &length));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, GetVersionInfo(exact, nullptr));
}

}  // namespace
