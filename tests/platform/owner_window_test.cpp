#include "orv2_geo/platform/owner_window.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>

namespace orv2_geo {
namespace {

TEST(OwnerWindow, IsNamedForEachThreadAndTakenBack) {
  constexpr std::uint64_t large = 0xfedc'ba98'7654'3210;
  EXPECT_EQ(owner_window(), 0U);
  set_owner_window(large);
  EXPECT_EQ(owner_window(), large);
  std::uint64_t of_another_thread = 1;
  std::thread([&] { of_another_thread = owner_window(); }).join();
  EXPECT_EQ(of_another_thread, 0U);
  set_owner_window(0);
  EXPECT_EQ(owner_window(), 0U);
}

}  // namespace
}  // namespace orv2_geo
