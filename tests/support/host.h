// Tests that compare with a program of the host, such as openssl or sha1sum.
#pragma once

#include <gtest/gtest.h>

// Stands first in such a test. Programs for Windows cannot run those of the host, not even under Wine, and the code
// that is compared is the same for every system.
#ifdef _WIN32
#define TESSEL_TEST_NEEDS_HOST() GTEST_SKIP() << "compares with a program that Windows does not have"
#else
#define TESSEL_TEST_NEEDS_HOST() static_cast<void>(0)
#endif
