// Handles from their first reference to their last, on one thread and on more.
#include "orv2_geo/c_api/handles.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <set>
#include <thread>
#include <vector>

#include "orv2_geo/c_api/guard.h"
#include "orv2_geo/c_api/values.h"
#include "orv2_geo/frame/variant.h"
#include "tests/c_api/boundary.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo::testing_support {
namespace {

constexpr std::uint64_t index_mask = 0xffffffffU;

bool is_alive(orv2_handle object) {
  std::size_t class_index = 0;
  return orv2_class_of(object, &class_index) == 0;
}
bool is_alive_array(orv2_handle array) {
  orv2_array_info info{};
  return orv2_array_describe(array, &info) == 0;
}

// ---- A host's object that counts and acts ----------------------------------

struct Host {
  int releases = 0;
  int calls = 0;
  std::function<std::int32_t()> on_call = [] { return 0; };

  static std::int32_t call(void* context, const char*, const orv2_value*, std::size_t,
                           orv2_value* result) {
    auto& host = *static_cast<Host*>(context);
    ++host.calls;
    result->tag = ORV2_I32;
    result->as.i32 = 17;
    return host.on_call();
  }
  static void release(void* context) { ++static_cast<Host*>(context)->releases; }

  orv2_handle new_handle() {
    const orv2_host_object callbacks{sizeof(callbacks), nullptr, call, release};
    orv2_handle handle = 0;
    orv2_host_object_new(&callbacks, this, &handle);
    return handle;
  }
};

// ---- One thread ------------------------------------------------------------

TEST(OneThread, AReleasedHandleIsNeverValidAgain) {
  constexpr int cycles = 100000;
  const orv2_handle first = new_object();
  orv2_release(first);
  std::set<orv2_handle> seen{first};
  for (int i = 0; i < cycles; ++i) {
    const orv2_handle object = new_object();
    ASSERT_TRUE(seen.insert(object).second);
    ASSERT_FALSE(is_alive(first));
    ASSERT_EQ(orv2_release(object), 0);
  }
}

TEST(OneThread, CyclesOfCreationAndReleaseUseTheSameSlots) {
  constexpr int cycles = 100000;
  std::set<std::uint64_t> slots;
  const long before = allocations_in_use();
  for (int i = 0; i < cycles; ++i) {
    const orv2_handle kept[] = {new_object(), new_array(), new_text()};
    for (const orv2_handle handle : kept) {
      slots.insert(handle & index_mask);
      ASSERT_EQ(orv2_release(handle), 0);
    }
  }
  EXPECT_LE(slots.size(), 3U);
  slots.clear();
  EXPECT_EQ(allocations_in_use(), before);
}

TEST(OneThread, ASlotWhoseGenerationsAreUsedUpIsRetired) {
  const std::uint32_t usual = std::exchange(c_api::last_generation, 1000);
  std::set<orv2_handle> seen;
  std::set<std::uint64_t> slots;
  for (int i = 0; i < 5000; ++i) {
    const orv2_handle object = new_object();
    EXPECT_NE(object, 0U);
    EXPECT_TRUE(seen.insert(object).second);
    slots.insert(object & index_mask);
    orv2_release(object);
  }
  EXPECT_GE(slots.size(), 5U);
  c_api::last_generation = usual;
}

TEST(OneThread, ManyHandlesLiveSideBySide) {
  constexpr std::size_t many = 5000;  // more than one chunk of slots
  std::vector<orv2_handle> handles;
  for (std::size_t i = 0; i < many; ++i) handles.push_back(new_array());
  EXPECT_EQ(std::set<orv2_handle>(handles.begin(), handles.end()).size(), many);
  for (const orv2_handle handle : handles) ASSERT_TRUE(is_alive_array(handle));
  for (std::size_t i = 0; i < many; i += 2) ASSERT_EQ(orv2_release(handles[i]), 0);
  for (std::size_t i = 1; i < many; i += 2) {
    ASSERT_FALSE(is_alive_array(handles[i - 1]));
    ASSERT_TRUE(is_alive_array(handles[i]));
    ASSERT_EQ(orv2_release(handles[i]), 0);
  }
}

TEST(OneThread, EveryReferenceMustBeReleased) {
  for (const orv2_handle handle : {new_object(), new_array(), new_text()}) {
    for (int i = 0; i < 3; ++i) ASSERT_EQ(orv2_reference(handle), 0);
    for (int i = 0; i < 4; ++i) ASSERT_EQ(orv2_release(handle), 0);
    EXPECT_EQ(orv2_release(handle), 5);
  }
}

// ---- Other threads ---------------------------------------------------------

TEST(OtherThreads, AReleaseThereEndsTheObjectAtTheOwnersNextCreation) {
  Host host;
  const orv2_handle handle = host.new_handle();
  std::thread([&] { EXPECT_EQ(orv2_release(handle), 0); }).join();
  EXPECT_EQ(host.releases, 0);
  const Owned next(new_text());
  EXPECT_EQ(host.releases, 1);
  EXPECT_EQ(orv2_release(handle), 5);
}

TEST(OtherThreads, AReferenceThereKeepsTheObjectPastTheOwnersRelease) {
  const orv2_handle object = new_object();
  std::thread([&] { EXPECT_EQ(orv2_reference(object), 0); }).join();
  EXPECT_EQ(orv2_release(object), 0);
  EXPECT_TRUE(is_alive(object));
  EXPECT_EQ(orv2_release(object), 0);
  EXPECT_FALSE(is_alive(object));
}

TEST(OtherThreads, ManyReferencesAreCountedWithThoseReleasedThere) {
  constexpr int many = 70000;  // more than 16 bits hold
  const orv2_handle object = new_object();
  for (int i = 1; i < many; ++i) ASSERT_EQ(orv2_reference(object), 0);
  for (int left = many; left > 1;) {
    std::thread([&] {
      for (int i = 0; i < 9999; ++i) orv2_release(object);
    }).join();
    left -= 9999;
    const Owned next(new_text());  // counts what was released there
    ASSERT_EQ(is_alive(object), left > 0) << left;
    if (left < 9999) {
      for (; left > 1; --left) ASSERT_EQ(orv2_release(object), 0);
    }
  }
  EXPECT_TRUE(is_alive(object));
  EXPECT_EQ(orv2_release(object), 0);
  EXPECT_FALSE(is_alive(object));
}

TEST(OtherThreads, AReferenceReleasedWhereItWasTakenChangesNothing) {
  const Owned object(new_object());
  std::thread([&] {
    EXPECT_EQ(orv2_reference(object), 0);
    EXPECT_EQ(orv2_release(object), 0);
  }).join();
  const Owned next(new_object());
  EXPECT_TRUE(is_alive(object));
}

TEST(OtherThreads, MoreReleasesThanReferencesEndTheObjectOnce) {
  Host host;
  const orv2_handle handle = host.new_handle();
  std::thread([&] {
    for (int i = 0; i < 3; ++i) orv2_release(handle);
  }).join();
  const Owned next(new_object());
  EXPECT_EQ(host.releases, 1);
  EXPECT_FALSE(is_alive(handle));
  EXPECT_TRUE(is_alive(next));
}

TEST(OtherThreads, ReleasingFromManyAtOnceLosesNoReference) {
  constexpr int threads = 4;
  constexpr int rounds = 2000;
  const Owned object(new_object());
  std::vector<std::thread> running;
  for (int t = 0; t < threads; ++t) {
    running.emplace_back([&] {
      for (int i = 0; i < rounds; ++i) {
        orv2_reference(object);
        orv2_release(object);
      }
    });
  }
  for (int i = 0; i < rounds; ++i) {
    const Owned passing(new_array());
    orv2_reference(object);
    orv2_release(object);
  }
  for (std::thread& one : running) one.join();
  const Owned next(new_object());
  EXPECT_TRUE(is_alive(object));
}

TEST(OtherThreads, HandOverEndsWhatTheOwnerMade) {
  constexpr int count = 3000;
  std::vector<orv2_handle> handles;
  for (int i = 0; i < count; ++i) handles.push_back(new_array());
  std::thread([&] {
    for (const orv2_handle handle : handles) ASSERT_EQ(orv2_release(handle), 0);
  }).join();
  const Owned next(new_object());
  for (const orv2_handle handle : handles) ASSERT_FALSE(is_alive_array(handle));
}

TEST(OtherThreads, AReleasedObjectMayReleaseOthersAsItEnds) {
  // Ending the first ends the second, while the owner settles its accounts.
  static orv2_handle second = 0;
  second = new_array();
  orv2_reference(second);
  struct Releasing {
    static void release(void*) {
      orv2_release(second);
      orv2_release(second);
    }
  };
  const orv2_host_object callbacks{sizeof(callbacks), nullptr, nullptr, Releasing::release};
  orv2_handle first = 0;
  ASSERT_EQ(orv2_host_object_new(&callbacks, nullptr, &first), 0);
  const Owned bystander(new_object());
  std::thread([&] { orv2_release(first); }).join();
  const Owned next(new_object());
  EXPECT_FALSE(is_alive_array(second));
  EXPECT_TRUE(is_alive(bystander));
  EXPECT_TRUE(is_alive(next));
}

TEST(OtherThreads, TheEndOfAThreadFreesWhatItLeftWithoutCallingTheHost) {
  Host host;
  const Owned warm(new_object());
  const long before = allocations_in_use();
  std::thread([&] {
    new_object();
    new_array(ORV2_STRING_ARRAY);
    new_text();
    host.new_handle();
  }).join();
  EXPECT_EQ(host.releases, 0);
  // The thread's own state is given back by whoever joins it.
  EXPECT_LE(allocations_in_use(), before);
}

TEST(OtherThreads, SlotsOfEndedThreadsAreUsedAgain) {
  std::set<std::uint64_t> slots;
  for (int i = 0; i < 200; ++i) {
    std::thread([&] {
      for (int k = 0; k < 10; ++k) slots.insert(new_text() & index_mask);
    }).join();
  }
  EXPECT_LE(slots.size(), 10U);
}

TEST(OtherThreads, ALateReleaseNeverReachesTheNextItemOfItsSlot) {
  std::atomic<orv2_handle> ending{0};
  std::atomic<bool> over{false};
  std::atomic<int> tries{0};
  std::thread late([&] {
    for (; !over; ++tries) orv2_release(ending);
  });
  for (int round = 0; round < 500; ++round) {
    // Its thread ends while the other still releases it; its slot comes here.
    std::thread([&] { ending = new_text(); }).join();
    const orv2_handle reused[] = {new_text(), new_text()};
    for (const int now = tries; tries < now + 2;) std::this_thread::yield();
    const Owned settled(new_array());
    for (const orv2_handle handle : reused) EXPECT_EQ(orv2_release(handle), 0);
  }
  over = true;
  late.join();
}

TEST(OtherThreads, EachHasAFailureOfItsOwn) {
  orv2_release(12345);
  std::thread([] {
    EXPECT_EQ(last_failure().number, 0);
    orv2_handle handle = 0;
    orv2_create("nothing", &handle);
    EXPECT_EQ(last_failure().number, 429);
  }).join();
  EXPECT_EQ(last_failure().number, 5);
}

// ---- In the middle of a call -----------------------------------------------

TEST(InTheMiddleOfACall, AHostObjectThatReleasesItselfLivesUntilTheCallEnds) {
  Host host;
  const orv2_handle handle = host.new_handle();
  host.on_call = [&] {
    EXPECT_EQ(orv2_release(handle), 0);
    EXPECT_EQ(host.releases, 0);
    return 0;
  };
  const Variant answer = c_api::object_of(handle)->call("Go", {});
  ASSERT_NE(answer.get<std::int32_t>(), nullptr);
  EXPECT_EQ(*answer.get<std::int32_t>(), 17);
  EXPECT_EQ(host.releases, 1);
}

TEST(InTheMiddleOfACall, AHostObjectWithoutOtherReferencesThanTheCallsLives) {
  Host host;
  const orv2_handle handle = host.new_handle();
  LateBound* const object = c_api::object_of(handle).get();
  host.on_call = [&] { return orv2_release(handle); };
  object->call("Go", {});
  EXPECT_EQ(host.releases, 1);
}

TEST(InTheMiddleOfACall, WhatArgumentsStandForLivesUntilTheyAreGone) {
  Host host;
  const Owned caller(host.new_handle());
  const orv2_handle array = new_array(ORV2_DOUBLE_ARRAY, 0, 4);
  const orv2_handle text = new_text(u"abc");
  orv2_handle object = new_object();
  host.on_call = [&] {
    EXPECT_EQ(orv2_release(array), 0);
    EXPECT_EQ(orv2_release(text), 0);
    EXPECT_EQ(orv2_release(object), 0);
    EXPECT_FALSE(is_alive_array(array));  // the handles are stale at once
    EXPECT_FALSE(is_alive(object));
    return 0;
  };
  const orv2_value values[] = {tagged(ORV2_DOUBLE_ARRAY | ORV2_BYREF, array),
                               tagged(ORV2_TEXT | ORV2_BYREF, text), pointing_at(&object)};
  {
    c_api::HostArguments reader(values);
    const Argument arguments[] = {reader.read(0), reader.read(1), reader.read(2)};
    c_api::object_of(caller)->call("Go", {});
    EXPECT_EQ((*arguments[0].variable_of<DoubleArray>())(3), 0.0);
    EXPECT_EQ(arguments[1].variable_of<Text>()->view(), u"abc");
    EXPECT_NE(arguments[2].variable_of<ObjectRef>()->get(), nullptr);
  }
  EXPECT_EQ(host.calls, 1);
}

TEST(InTheMiddleOfACall, WhatArgumentsStandForIsFreedWithThem) {
  const Owned warm(new_object());
  orv2_release(12345);
  const long before = allocations_in_use();
  const orv2_handle array = new_array(ORV2_STRING_ARRAY, 0, 4);
  const orv2_value values[] = {tagged(ORV2_STRING_ARRAY, array), tagged(ORV2_STRING_ARRAY, array)};
  {
    c_api::HostArguments reader(values);
    EXPECT_EQ(reader.read(0).variable, reader.read(1).variable);
    orv2_release(array);
    EXPECT_GT(allocations_in_use(), before);
  }
  EXPECT_EQ(allocations_in_use(), before);
}

TEST(InTheMiddleOfACall, APinnedSlotGoesToNobodyElse) {
  const orv2_handle array = new_array();
  std::vector<orv2_handle> others;
  {
    const c_api::Pin pin(array);
    orv2_release(array);
    for (int i = 0; i < 2000; ++i) others.push_back(new_text());
    for (const orv2_handle other : others) ASSERT_NE(other & index_mask, array & index_mask);
  }
  for (const orv2_handle other : others) EXPECT_EQ(orv2_release(other), 0);
}

TEST(InTheMiddleOfACall, APinnedObjectReleasedElsewhereEndsWithThePin) {
  Host host;
  const orv2_handle handle = host.new_handle();
  {
    const c_api::Pin pin(handle);
    std::thread([&] { orv2_release(handle); }).join();
    const Owned settled(new_text());
    EXPECT_FALSE(is_alive(handle));
    EXPECT_EQ(host.releases, 0);
  }
  EXPECT_EQ(host.releases, 1);
}

TEST(InTheMiddleOfACall, AHostsReleaseIsCalledOnceForManyReferences) {
  Host host;
  const orv2_handle handle = host.new_handle();
  {
    const ObjectRef kept = c_api::object_of(handle);
    orv2_reference(handle);
    orv2_release(handle);
    orv2_release(handle);
    EXPECT_EQ(host.releases, 0);
    EXPECT_EQ(orv2_release(handle), 5);
  }
  EXPECT_EQ(host.releases, 1);
}

TEST(InTheMiddleOfACall, AnAdoptedArrayMayBeReleasedByItsOwnCallback) {
  static orv2_handle array = 0;
  static orv2_handle next = 0;  // may lie where the released one lay
  static double buffer[8] = {};
  const orv2_resize resize = [](void*, std::int32_t, std::uint32_t, std::int32_t, std::uint32_t,
                                std::int16_t, void** data) {
    *data = buffer;
    const std::int32_t status = orv2_release(array);
    next = new_array(ORV2_DOUBLE_ARRAY, 100, 2);
    return status;
  };
  ASSERT_EQ(orv2_array_adopt(ORV2_DOUBLE_ARRAY, buffer, 0, 4, resize, nullptr, &array), 0);
  EXPECT_EQ(orv2_array_resize(array, 0, 7, -1), 0);
  EXPECT_FALSE(is_alive_array(array));
  orv2_array_info info{};
  EXPECT_EQ(orv2_array_describe(next, &info), 0);
  EXPECT_EQ(info.lower, 100);
  EXPECT_EQ(orv2_release(next), 0);
}

}  // namespace
}  // namespace orv2_geo::testing_support
