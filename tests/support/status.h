// Comparisons of statuses. One that fails tells both by their names, and the place in the library where it was found.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tessel/error.hpp"

// EXPECT_STATUS(TESSEL_ABSENT, GetCertificateVersion(certificate, &version)) << "no version";
#define EXPECT_STATUS(expected, status) EXPECT_PRED_FORMAT2(::test::CompareStatuses, expected, status)
#define ASSERT_STATUS(expected, status) ASSERT_PRED_FORMAT2(::test::CompareStatuses, expected, status)
#define EXPECT_OK(status) EXPECT_STATUS(TESSEL_OK, status)
#define ASSERT_OK(status) ASSERT_STATUS(TESSEL_OK, status)

namespace test {

inline testing::AssertionResult CompareStatuses(const char* /*expected*/, const char* call, uint32_t expected,
                                                uint32_t status) {
  if (status == expected) return testing::AssertionSuccess();
  const auto name = [](uint32_t number) {
    return tessel::StatusName(number).empty() ? std::to_string(number) : std::string(tessel::StatusName(number));
  };
  testing::AssertionResult failure = testing::AssertionFailure() << call << "\n  is " << name(status);
  const tessel::FailurePlace place = tessel::FailurePlace::Last();
  if (status != TESSEL_OK && place.module != nullptr) failure << " (" << place.module << ":" << place.line << ")";
  return failure << ", not " << name(expected);
}

}  // namespace test
