#include "frame/memory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "tests/support/expect_failure.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

using namespace testing_support;

// Sizes about those where large pages begin to be asked for, and where the last one
// is no longer worth it.
std::vector<std::size_t> sizes() {
  std::vector<std::size_t> all = {1, 8, 4096};
  for (const std::size_t page : {large_page(), 2 * large_page()}) {
    if (page == 0) continue;
    for (const std::size_t quarter : {0U, 1U, 2U, 3U}) {
      const std::size_t size = page - quarter * (large_page() / 4);
      for (const std::size_t one : {size - 1, size, size + 1}) all.push_back(one);
    }
  }
  return all;
}

TEST(Memory, EveryByteIsThereAndZeroWhereAsked) {
  const long before = allocations_in_use();
  for (const std::size_t bytes : sizes()) {
    auto* const zeroed = static_cast<unsigned char*>(obtain_zeroed(bytes));
    EXPECT_EQ(zeroed[0], 0) << bytes;
    EXPECT_EQ(std::memcmp(zeroed, zeroed + 1, bytes - 1), 0) << bytes;
    auto* const any = static_cast<unsigned char*>(obtain(bytes));
    std::memset(zeroed, 1, bytes);
    std::memset(any, 2, bytes);
    EXPECT_EQ(zeroed[bytes - 1], 1) << bytes;
    give_back(zeroed, bytes);
    give_back(any, bytes);
  }
  give_back(nullptr, 0);
  give_back(nullptr, std::size_t{64} << 20);
  EXPECT_EQ(allocations_in_use(), before);
}

TEST(Memory, ALotBeginsWithALargePageAndTakesLittleMore) {
  if (large_page() == 0) GTEST_SKIP() << "this system lends no large pages";
  for (const std::size_t bytes : sizes()) {
    void* memory = nullptr;
    const std::size_t taken = peak_bytes_of([&] { memory = obtain(bytes); });
    if (bytes >= large_page() / 4 * 3) {
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % large_page(), 0U) << bytes;
    }
    EXPECT_LE(taken, bytes + large_page() / 4 + 8192) << bytes;
    give_back(memory, bytes);
  }
}

TEST(Memory, WhatIsRefusedIs7OrNull) {
  for (const std::size_t bytes : sizes()) {
    EXPECT_EQ(failure_of([&] {
                const RefusedAllocation refusal(0);
                obtain(bytes);
              }),
              7);
    const RefusedAllocation refusal(0);
    EXPECT_EQ(obtain_if_any(bytes), nullptr);
  }
  EXPECT_EQ(failure_of([] { obtain_zeroed(std::size_t{1} << 62); }), 7);
  EXPECT_FALSE(room_if_any<std::uint64_t>(std::size_t{1} << 59));
}

TEST(Memory, RoomGivesItselfBack) {
  const long before = allocations_in_use();
  {
    Room<std::uint64_t> room = room_if_any<std::uint64_t>(300000);
    ASSERT_TRUE(room);
    room[299999] = 1;
    EXPECT_EQ(allocations_in_use(), before + 1);
    room = room_if_any<std::uint64_t>(3);
    EXPECT_EQ(allocations_in_use(), before + 1);
  }
  EXPECT_EQ(allocations_in_use(), before);
}

}  // namespace
}  // namespace orv2_geo
