// harness.h: what a harness defines; start.cpp is the same in all.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orv2_geo::fuzzing {

/// Tries one input. What it finds ends the program: a sanitizer's report, a failed EXPECT
/// or ASSERT, an exception, memory left behind.
void try_input(const std::uint8_t* data, std::size_t size);

}  // namespace orv2_geo::fuzzing
