// The library loaded, called and unloaded a thousand times: what the process has stays as it was.
#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <fstream>
#include <iostream>
#include <string>
#include <thread>

#include "tests/threads/late_library.h"
#include "tests/threads/sanitizer.h"

namespace orv2_geo::testing_support {
namespace {

constexpr int rounds = 1000;

struct Held {
  std::size_t regions = 0;
  std::size_t resident = 0;
  std::size_t heap = 0;
};

Held held() {
  Held now;
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) ++now.regions;
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages >> pages;
  now.resident = pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  now.heap = mallinfo2().uordblks + mallinfo2().hblkhd;
  return now;
}

void load_and_unload(void (*use)(void* library)) {
  void* const library = dlopen(LIBRARY, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  use(library);
  EXPECT_EQ(dlclose(library), 0);
}

void call(void* library) { EXPECT_TRUE(bearing_is_right(library)); }

void expect_nothing_grows(const char* how, void (*round)()) {
  for (int i = 0; i < rounds / 10; ++i) round();
  const Held before = held();
  for (int i = 0; i < rounds; ++i) round();
  const Held after = held();
  std::cout << rounds << " times " << how << ": " << after.regions << " regions, "
            << after.resident / 1024 << " KB resident and " << after.heap / 1024
            << " KB of the heap, before " << before.regions << ", " << before.resident / 1024
            << " and " << before.heap / 1024 << '\n';
  // The sanitizer keeps memory of its own, now and then in another region.
  EXPECT_LE(after.regions, before.regions + (instrumented ? rounds / 20 : 2));
  if (instrumented) return;
  EXPECT_LE(after.resident, before.resident + 512 * 1024);
  EXPECT_LE(after.heap, before.heap + 16 * 1024);
}

TEST(Reload, OnOneThreadNothingGrows) {
  expect_nothing_grows("on one thread", [] { load_and_unload(call); });
}

TEST(Reload, OnAThreadEachNothingGrows) {
  expect_nothing_grows("on a thread each", [] { std::thread(load_and_unload, call).join(); });
}

// What a host still holds, and what its threads have of the library, lives on.
TEST(Reload, TheLibraryStays) {
  load_and_unload(call);
  void* const library = dlopen(LIBRARY, RTLD_NOW | RTLD_NOLOAD);
  ASSERT_NE(library, nullptr);
  EXPECT_TRUE(bearing_is_right(library));
  EXPECT_EQ(dlclose(library), 0);
}

}  // namespace
}  // namespace orv2_geo::testing_support
