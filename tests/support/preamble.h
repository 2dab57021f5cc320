// preamble.h: what the tests of every room use. In them the names of testing_support
// need no prefix.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "tests/support/expect_failure.h"

namespace orv2_geo {
namespace testing_support {

inline constexpr double nan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double inf = std::numeric_limits<double>::infinity();
inline constexpr float nan_single = std::numeric_limits<float>::quiet_NaN();
inline constexpr float inf_single = std::numeric_limits<float>::infinity();

/// The ends of the 32-bit numbers, and so of subscripts.
inline constexpr std::int32_t lowest_long = std::numeric_limits<std::int32_t>::min();
inline constexpr std::int32_t highest_long = std::numeric_limits<std::int32_t>::max();

}  // namespace testing_support

using namespace testing_support;

}  // namespace orv2_geo
