// Random calls over valid storage: whatever they hold, each one answers.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "tests/c_api/boundary.h"

namespace orv2_geo::testing_support {
namespace {

constexpr int call_count = 200000;
constexpr std::size_t place_count = 8;

constexpr double awkward[] = {0.0,
                              -0.0,
                              1.0,
                              -1.0,
                              0.5,
                              2.5,
                              200.0,
                              -399.99,
                              1e-300,
                              1e300,
                              -1e300,
                              1e12,
                              std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()};
constexpr const char* texts[] = {
    "",         "0.5",   " 12 ",
    "1e400",    "-",     "abc",
    "\xff\xfe", nullptr, "0.500000000000000000000000000000000000000000000000001"};

// The host's variables and handles that random values point at. Sizes stay
// small, so that no member works for long.
class Storage {
 public:
  Storage() { refresh(); }
  ~Storage() {
    for (const orv2_handle handle : handles_) orv2_release(handle);
    for (const orv2_handle object : objects_) orv2_release(object);
  }
  Storage(const Storage&) = delete;
  Storage& operator=(const Storage&) = delete;

  std::size_t below(std::size_t end) { return random_() % end; }

  orv2_handle object() { return objects_[below(objects_.size())]; }

  orv2_value value() {
    const std::size_t kind = below(20);
    if (kind == 0) return tagged(static_cast<int>(below(0x10000)) | 0x200, random_());
    const bool by_reference = below(2) != 0;
    if (kind < 12) return of_type(kind % 3 == 0 ? ORV2_F32 : ORV2_F64, by_reference);
    return of_type(ORV2_NONE + static_cast<int>(below(16)), by_reference);
  }

  // Other objects, other arrays, other numbers in the variables.
  void refresh() {
    renew(objects_[below(objects_.size())], [&] { return any_object(); });
    renew(handles_[below(handles_.size())], [&] { return any_handle(); });
    for (std::size_t i = 0; i < place_count; ++i) {
      doubles_[i] = number();
      singles_[i] = static_cast<float>(awkward[below(8)]);
      longs_[i] = static_cast<std::int32_t>(below(9)) - 2;
      shorts_[i] = static_cast<std::int16_t>(below(9)) - 2;
      variables_[i] = below(3) == 0 ? 0 : object_or_not();
    }
  }

 private:
  template <class Make>
  void renew(orv2_handle& place, Make&& make) {
    orv2_release(place);
    place = make();
  }

  double number() { return awkward[below(std::size(awkward))]; }

  orv2_handle any_object() {
    if (below(2) != 0) return new_object(below(2) != 0 ? algorismos : func_deriv);
    orv2_class_info info{};
    orv2_class_at(below(orv2_class_count()), &info);
    return new_object(info.registered_name);
  }

  orv2_handle any_handle() {
    if (below(4) == 0) return new_text(below(2) != 0 ? u"0.25" : u"x");
    const std::uint16_t type = array_types[below(std::size(array_types))];
    orv2_handle array = 0;
    if (below(5) == 0) return orv2_array_new(type, &array), array;
    const auto dimensions = static_cast<std::uint16_t>(below(10) == 0 ? 2 : 1);
    orv2_array_make(type, static_cast<std::int32_t>(below(3)) - 1,
                    static_cast<std::uint32_t>(below(12)), dimensions, &array);
    if (below(10) == 0) orv2_array_lock(array);
    return array;
  }

  // A handle of any kind, in force or not.
  orv2_handle object_or_not() {
    switch (below(8)) {
      case 0: return 0;
      case 1: return random_();
      case 2: return handles_[below(handles_.size())] + (orv2_handle{1} << 32U);
      case 3: return object();
      default: return handles_[below(handles_.size())];
    }
  }

  template <class T>
  void* place_in(std::array<T, place_count>& places) {
    return below(12) == 0 ? nullptr : &places[below(place_count)];
  }

  void* variable_of_type(int type) {
    switch (type) {
      case ORV2_I16:
      case ORV2_BOOL: return place_in(shorts_);
      case ORV2_I32: return place_in(longs_);
      case ORV2_F32: return place_in(singles_);
      case ORV2_F64: return place_in(doubles_);
      default: return place_in(variables_);
    }
  }

  orv2_value of_type(int type, bool by_reference) {
    orv2_value value = tagged(type | (by_reference ? ORV2_BYREF : 0));
    const bool pointing = (type >= ORV2_I16 && type <= ORV2_BOOL) || type == ORV2_OBJECT;
    if (by_reference && pointing) {
      value.as.pointer = variable_of_type(type);
    } else if (type == ORV2_F64) {
      value.as.f64 = number();
    } else if (type == ORV2_F32) {
      value.as.f32 = static_cast<float>(awkward[below(8)]);
    } else if (type == ORV2_I32) {
      value.as.i32 = static_cast<std::int32_t>(below(9)) - 2;
    } else if (type == ORV2_I16 || type == ORV2_BOOL) {
      value.as.i16 = static_cast<std::int16_t>(below(9)) - 2;
    } else if (type == ORV2_UTF8) {
      value.as.utf8 = texts[below(std::size(texts))];
    } else {
      value.as.handle = object_or_not();
    }
    return value;
  }

  std::mt19937_64 random_{20240607};
  std::array<orv2_handle, 8> objects_{};
  std::array<orv2_handle, 16> handles_{};
  std::array<double, place_count> doubles_{};
  std::array<float, place_count> singles_{};
  std::array<std::int32_t, place_count> longs_{};
  std::array<std::int16_t, place_count> shorts_{};
  std::array<orv2_handle, place_count> variables_{};
};

constexpr std::uint16_t untouched = 0x5a5a;

// One random call; its status.
std::int32_t random_call(Storage& storage, orv2_value& result) {
  orv2_value arguments[20];
  const std::size_t count = storage.below(storage.below(10) == 0 ? 20 : 8);
  for (std::size_t i = 0; i < count; ++i) arguments[i] = storage.value();
  const std::size_t position = storage.below(40);
  orv2_value* const place = storage.below(8) == 0 ? nullptr : &result;
  return orv2_call(storage.object(), position, arguments, count, place);
}

// The members that work today, with arguments they may like.
std::int32_t likely_call(Storage& storage, orv2_value& result) {
  static constexpr const char* names[] = {"Azimut", "Azimut_s", "Atan2",  "Atn2",  "Arccos",
                                          "An360",  "F_LogN",   "F_TanH", "F_Sen", "RPi",
                                          "Pi",     "An400",    "F_Cos",  "ATAN2", "nothing"};
  orv2_value arguments[3] = {storage.value(), storage.value(), storage.value()};
  const char* const name = names[storage.below(std::size(names))];
  return orv2_call_name(storage.object(), name, arguments, storage.below(4), &result);
}

void expect_consistent(std::int32_t status, const orv2_value& result, int i) {
  if (status == 0) return;
  ASSERT_EQ(result.tag, untouched) << "call " << i;
  orv2_failure failure{};
  ASSERT_EQ(orv2_last_failure(&failure), 0);
  ASSERT_EQ(failure.number, status) << "call " << i;
  ASSERT_NE(failure.description[0], '\0') << "call " << i;
}

// A user interface that shows nothing and leaves every form open.
class Silence {
 public:
  Silence() {
    const orv2_user_interface callbacks{
        sizeof(callbacks), nullptr, [](void*, const char*, std::int32_t, const char*) { return 0; },
        [](void*, orv2_form*) { return 0; }, nullptr};
    orv2_set_user_interface(&callbacks);
  }
  ~Silence() { orv2_set_user_interface(nullptr); }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;
};

TEST(RandomCalls, AnswerWithSuccessOrWithAFailureInWords) {
  const Silence silence;
  Storage storage;
  int successes = 0;
  for (int i = 0; i < call_count && !HasFatalFailure(); ++i) {
    if (i % 16 == 0) storage.refresh();
    orv2_value result = tagged(untouched);
    const std::int32_t status =
        i % 2 == 0 ? random_call(storage, result) : likely_call(storage, result);
    expect_consistent(status, result, i);
    successes += status == 0 ? 1 : 0;
  }
  // Not every call may be refused at the door.
  EXPECT_GT(successes, call_count / 50);
}

// ---- Everything else -------------------------------------------------------

using Doing = std::int32_t (*)(std::mt19937_64&, orv2_handle);

const Doing doings[] = {
    [](auto&, orv2_handle h) { return orv2_reference(h); },
    [](auto&, orv2_handle h) { return orv2_release(h); },
    [](auto&, orv2_handle h) { return orv2_release(h); },
    [](auto&, orv2_handle h) { return orv2_array_lock(h); },
    [](auto&, orv2_handle h) { return orv2_array_unlock(h); },
    [](auto& random, orv2_handle h) {
      const auto lower = static_cast<std::int32_t>(random() % 9) - 4;
      return orv2_array_resize(h, lower, lower + static_cast<std::int32_t>(random() % 20) - 3,
                               static_cast<std::int16_t>(random() % 2));
    },
    [](auto& random, orv2_handle h) {
      const std::uint16_t units[] = {'a', 0, 0xd83d};
      return orv2_array_set_text(h, static_cast<std::int32_t>(random() % 9) - 4, units,
                                 random() % 4);
    },
    [](auto& random, orv2_handle h) {
      const std::uint16_t units[] = {'a', 0, 0xd83d};
      return orv2_text_set(h, units, random() % 4);
    },
    [](auto& random, orv2_handle h) {
      const std::uint16_t* units = nullptr;
      std::size_t count = 0;
      return orv2_array_get_text(h, static_cast<std::int32_t>(random() % 9) - 4, &units, &count);
    },
    [](auto&, orv2_handle h) {
      void* data = nullptr;
      return orv2_array_data(h, &data);
    },
    [](auto&, orv2_handle h) {
      std::int32_t lower = 0;
      std::int32_t upper = 0;
      return orv2_array_bounds(h, &lower, &upper);
    },
};

orv2_handle anything(std::mt19937_64& random) {
  switch (random() % 3) {
    case 0: return new_object(func_deriv);
    case 1: return new_text(u"abc");
    default:
      return new_array(array_types[random() % 5], static_cast<std::int32_t>(random() % 5) - 2,
                       static_cast<std::uint32_t>(random() % 8));
  }
}

TEST(RandomCalls, OnHandlesOfAnyKindAndAgeAnswer) {
  std::mt19937_64 random(77);
  std::array<orv2_handle, 24> handles{};
  int successes = 0;
  for (int i = 0; i < call_count; ++i) {
    orv2_handle& handle = handles[random() % handles.size()];
    if (random() % 8 == 0) {
      while (handle != 0 && orv2_release(handle) == 0) {
      }
      handle = anything(random);
    }
    const std::int32_t status = doings[random() % std::size(doings)](random, handle);
    if (status == 0) {
      ++successes;
    } else {
      ASSERT_EQ(last_failure().number, status);
    }
  }
  EXPECT_GT(successes, call_count / 10);
  for (const orv2_handle handle : handles) {
    while (handle != 0 && orv2_release(handle) == 0) {
    }
  }
}

}  // namespace
}  // namespace orv2_geo::testing_support
