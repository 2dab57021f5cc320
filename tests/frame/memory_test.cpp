#include "orv2_geo/frame/memory.h"

#include <cstdint>
#include <cstring>

#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

// About the sizes from which on larger pages are asked for.
constexpr std::size_t sizes[] = {1,       8,       4096,    2097151, 2097152,
                                 2097153, 2101248, 4194303, 4194304, 8000123};

TEST(Memory, EveryByteIsThereAndZeroWhereAsked) {
  const long before = allocations_in_use();
  for (const std::size_t bytes : sizes) {
    auto* const any = static_cast<unsigned char*>(obtain(bytes));
    std::memset(any, 2, bytes);
    give_back(any);
    // As often as not the same memory again.
    auto* const zeroed = static_cast<unsigned char*>(obtain_zeroed(bytes));
    EXPECT_EQ(zeroed[0], 0) << bytes;
    EXPECT_EQ(std::memcmp(zeroed, zeroed + 1, bytes - 1), 0) << bytes;
    std::memset(zeroed, 1, bytes);
    give_back(zeroed);
  }
  give_back(nullptr);
  EXPECT_EQ(allocations_in_use(), before);
}

TEST(Memory, WhatIsRefusedIs7OrNull) {
  for (const std::size_t bytes : sizes) {
    EXPECT_EQ(failure_of([&] {
                const RefusedAllocation refusal(0);
                obtain(bytes);
              }),
              7);
    const RefusedAllocation refusal(0);
    EXPECT_EQ(obtain_if_any(bytes), nullptr);
  }
  // More than half of all addresses is lent by nobody.
  constexpr std::size_t too_much = SIZE_MAX / 2 + 1;
  EXPECT_EQ(failure_of([] { obtain_zeroed(too_much); }), 7);
  EXPECT_FALSE(buffer_if_any<std::uint64_t>(too_much / sizeof(std::uint64_t)));
}

TEST(Memory, ABufferGivesItselfBack) {
  const long before = allocations_in_use();
  {
    Buffer<std::uint64_t> buffer = buffer_if_any<std::uint64_t>(300000);
    ASSERT_TRUE(buffer);
    buffer[299999] = 1;
    EXPECT_EQ(allocations_in_use(), before + 1);
    buffer = buffer_if_any<std::uint64_t>(3);
    EXPECT_EQ(allocations_in_use(), before + 1);
  }
  EXPECT_EQ(allocations_in_use(), before);
}

}  // namespace
}  // namespace orv2_geo
