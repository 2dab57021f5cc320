// Many threads at once, each with objects of its own; objects that are used from others;
// threads that end with things alive; a process that is divided.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <set>
#include <thread>

#include "orv2_geo/orv2_geo.hpp"
#include "tests/c_api/boundary.h"
#include "tests/threads/sanitizer.h"
#include "tests/vectors/portable_call.h"
#include "tests/vectors/vector_file.h"

namespace orv2_geo::vectors {
namespace {

using testing_support::new_array;
using testing_support::new_object;
using testing_support::new_text;
using testing_support::Owned;
using testing_support::pointing_at;

constexpr std::size_t threads_at_once = 8;
constexpr std::int32_t not_its_thread = 5;

// A sanitizer takes up to ten times as long.
constexpr std::size_t step = testing_support::instrumented ? 10 : 1;

void in_threads(std::size_t count, const std::function<void(std::size_t)>& work) {
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < count; ++i) threads.emplace_back(work, i);
  for (std::thread& thread : threads) thread.join();
}

// ---- Every member on every thread -----------------------------------------------

// What the threads do: calls of the file, and calls that show a form, with what they do alone.
struct Work {
  std::size_t class_index;
  std::vector<VectorCall> calls;
  std::size_t forms = 0;
};

bool writes_variable(const VectorClass& one, const VectorCall& call) {
  return one.members.at(call.position).name.starts_with("put_");
}

Work work_of(std::size_t class_index, std::size_t each = step) {
  const VectorClass& one = classes_of_file()[class_index];
  Work work{class_index, {}, 0};
  PortableObject object(("Orv2_Geo." + one.name).c_str());
  object.press(buttons_of_forms());
  for (std::size_t i = 0; i < one.calls.size(); ++i) {
    const VectorCall& call = one.calls[i];
    if (i % each != 0 && !writes_variable(one, call)) continue;
    work.calls.push_back(call);
    VectorCall shown = with_form(call);
    shown.outcome = object.call(shown.position, shown.given, by_value(class_index, shown));
    if (!object.showed_form()) continue;
    ++work.forms;
    work.calls.push_back(shown);
  }
  return work;
}

// How many calls end otherwise than alone.
std::size_t other_outcomes(const Work& work) {
  std::size_t others = 0;
  PortableObject object(("Orv2_Geo." + classes_of_file()[work.class_index].name).c_str());
  object.press(buttons_of_forms());
  for (const VectorCall& call : work.calls) {
    const std::vector<bool> values = by_value(work.class_index, call);
    others += !(object.call(call.position, call.given, values) == call.outcome);
  }
  return others;
}

TEST(Threads, DoTogetherWhatTheyDoAlone) {
  std::vector<Work> all;
  std::size_t calls = 0, forms = 0, members = 0;
  for (std::size_t c = 0; c < classes_of_file().size(); ++c) {
    all.push_back(work_of(c));
    std::set<std::size_t> positions;
    for (const VectorCall& call : all.back().calls) positions.insert(call.position);
    calls += all.back().calls.size();
    forms += all.back().forms;
    members += positions.size();
    orv2_class_info info{};
    ASSERT_EQ(orv2_class_at(c, &info), 0);
    EXPECT_EQ(positions.size(), info.member_count) << info.name;
  }
  EXPECT_GT(forms, 0U);
  std::atomic<std::size_t> others{0};
  in_threads(threads_at_once, [&](std::size_t thread) {
    // Each begins with another class.
    for (std::size_t i = 0; i < all.size(); ++i) {
      others += other_outcomes(all[(i + thread) % all.size()]);
    }
  });
  EXPECT_EQ(others, 0U);
  std::cout << threads_at_once << " threads, " << members << " members, " << calls
            << " calls each, " << forms << " of them with a form\n";
}

// ---- Things of another thread -----------------------------------------------------

struct Things {
  Owned object{new_object()}, array{new_array()}, text{new_text()};
};

std::int32_t bearing_of(orv2_handle object, double& azimuth) {
  double east = 1.0, north = 1.0;
  const orv2_value arguments[] = {pointing_at(&east), pointing_at(&north), pointing_at(&azimuth)};
  return orv2_call_name(object, "Azimut", arguments, 3, nullptr);
}

// Whatever is asked of another thread's things but to count references is refused.
std::size_t not_refused(const Things& things) {
  double azimuth = 0.0;
  std::size_t position = 0;
  orv2_array_info info{};
  void* data = nullptr;
  const std::uint16_t* units = nullptr;
  std::size_t count = 0;
  const std::int32_t statuses[] = {
      bearing_of(things.object, azimuth),
      orv2_find_member(things.object, "Azimut", ORV2_ANY, &position),
      orv2_class_of(things.object, &position),
      orv2_array_describe(things.array, &info),
      orv2_array_data(things.array, &data),
      orv2_array_resize(things.array, 0, 5, 0),
      orv2_array_lock(things.array),
      orv2_text_get(things.text, &units, &count),
      orv2_text_set(things.text, nullptr, 0),
  };
  std::size_t wrong = azimuth != 0.0;
  for (const std::int32_t status : statuses) wrong += status != not_its_thread;
  wrong += orv2_reference(things.object) != 0;
  wrong += orv2_release(things.object) != 0;
  return wrong;
}

TEST(Threads, AreRefusedTheThingsOfOthers) {
  const Things things;
  std::atomic<bool> over{false};
  std::atomic<std::size_t> wrong{0}, rounds{0};
  std::thread others([&] {
    in_threads(threads_at_once - 1, [&](std::size_t) {
      while (!over) wrong += not_refused(things), ++rounds;
    });
  });
  double azimuth = 0.0;
  for (int i = 0; rounds < 5000 || i < 5000; ++i) {
    ASSERT_EQ(bearing_of(things.object, azimuth), 0);
    ASSERT_EQ(orv2_array_resize(things.array, 0, i % 9, 1), 0);
    const Things others_may_meet_when_they_end;
  }
  over = true;
  others.join();
  EXPECT_EQ(wrong, 0U);
  EXPECT_NEAR(azimuth, 50.0, 1e-6);
}

TEST(Threads, AreRefusedTheObjectsOfOthersInCpp) {
  const ObjectRef object = create(testing_support::algorismos);
  std::atomic<std::size_t> refused{0};
  in_threads(threads_at_once, [&](std::size_t) {
    for (int i = 0; i < 1000; ++i) {
      try {
        object->call("Arccos", {});
      } catch (const RunFailure& failure) {
        refused += failure.number() == not_its_thread;
      }
    }
  });
  EXPECT_EQ(refused, 1000 * threads_at_once);
}

// ---- Ends -------------------------------------------------------------------------

// Makes one of each and lets them lie.
std::array<orv2_handle, 4> left_behind() {
  const orv2_host_object callbacks{sizeof callbacks, nullptr, nullptr, nullptr};
  orv2_handle host = 0;
  orv2_host_object_new(&callbacks, nullptr, &host);
  double azimuth = 0.0;
  const orv2_handle object = new_object();
  bearing_of(object, azimuth);
  return {object, new_array(ORV2_STRING_ARRAY), new_text(), host};
}

TEST(Threads, EndWithThingsAlive) {
  constexpr std::size_t generations = 50;
  for (std::size_t generation = 0; generation < generations; ++generation) {
    std::array<std::array<orv2_handle, 4>, threads_at_once> left;
    in_threads(threads_at_once, [&](std::size_t thread) {
      left[thread] = left_behind();
      // Another thread's, which may have ended or not.
      orv2_release(left[thread][0] ^ 1U);
    });
    for (const auto& handles : left) {
      for (const orv2_handle handle : handles) {
        std::size_t position = 0;
        EXPECT_EQ(orv2_class_of(handle, &position), not_its_thread);
        EXPECT_EQ(orv2_release(handle), not_its_thread);
      }
    }
  }
}

// The child does all of one class, in a thread too where it may have one, and ends as a program.
[[noreturn]] void live_as_child(const Work& work) {
  alarm(60);
  std::size_t others = other_outcomes(work);
  if (!testing_support::instrumented) std::thread([&] { others += other_outcomes(work); }).join();
  // What the threads hold that the child has not looks lost to a sanitizer at the program's end.
  if (testing_support::instrumented) std::_Exit(others == 0 ? 0 : 1);
  std::exit(others == 0 ? 0 : 1);
}

// Threads that make things, use them and let them go without an end; told to stand still, they
// hold what they have.
class WorkingThreads {
 public:
  static constexpr std::size_t count = 2;

  WorkingThreads()
      : others_([this] {
          in_threads(count, [this](std::size_t) {
            while (!over_) round();
          });
        }) {
    while (rounds_ < threads_at_once) std::this_thread::yield();
  }

  ~WorkingThreads() {
    over_ = true;
    others_.join();
  }

  WorkingThreads(const WorkingThreads&) = delete;
  WorkingThreads& operator=(const WorkingThreads&) = delete;

  void stand_still() {
    told_ = true;
    while (standing_ < count) std::this_thread::yield();
  }

  void go_on() {
    told_ = false;
    told_.notify_all();
    while (standing_ > 0) std::this_thread::yield();
  }

 private:
  void round() {
    const Things own;
    double azimuth = 0.0;
    bearing_of(own.object, azimuth);
    pause_if_told();
    ++rounds_;
  }

  void pause_if_told() {
    if (!told_) return;
    ++standing_;
    told_.wait(true);
    --standing_;
  }

  std::atomic<bool> over_{false}, told_{false};
  std::atomic<std::size_t> rounds_{0}, standing_{0};
  std::thread others_;
};

// The address sanitizer of gcc 12 leaves its allocator's lock in the child as it is: with a thread
// in there, the child's first allocation would wait for ever. Under a sanitizer the threads
// therefore stand still while the process is divided; without one it is divided at any moment.
pid_t fork_beside(WorkingThreads& others) {
  if (!testing_support::instrumented) return fork();
  others.stand_still();
  const pid_t child = fork();
  if (child != 0) others.go_on();
  return child;
}

TEST(Threads, AChildOfForkGoesOn) {
  const Work sorts = work_of(4, 20);
  const Things things;
  WorkingThreads others;
  for (int i = 0; i < (testing_support::instrumented ? 3 : 10); ++i) {
    const pid_t child = fork_beside(others);
    ASSERT_GE(child, 0);
    if (child == 0) live_as_child(sorts);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  }
  double azimuth = 0.0;
  EXPECT_EQ(bearing_of(things.object, azimuth), 0);
}

}  // namespace
}  // namespace orv2_geo::vectors
