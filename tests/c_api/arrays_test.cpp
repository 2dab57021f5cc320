// Arrays and texts across the boundary; the host's own buffers above all.
#include <gtest/gtest.h>

#include <limits>
#include <tuple>
#include <vector>

#include "orv2_geo/c_api/handles.h"
#include "tests/c_api/boundary.h"
#include "tests/support/expect_failure.h"

namespace orv2_geo::testing_support {
namespace {

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

// ---- A host's buffer -------------------------------------------------------

struct Request {
  std::int32_t old_lower;
  std::uint32_t old_count;
  std::int32_t lower;
  std::uint32_t count;
  std::int16_t keep;
  friend bool operator==(const Request&, const Request&) = default;
};

// Keeps what it is asked to keep, as the header wants it.
struct Buffer {
  std::vector<double> elements{1.0, 2.0, 3.0, 4.0};
  std::vector<Request> requests;
  std::int32_t status = 0;
  bool answers_null = false;
  const char* words = nullptr;

  void follow(const Request& asked) {
    std::vector<double> fresh(asked.count);
    for (std::uint32_t i = 0; asked.keep != 0 && i < asked.count; ++i) {
      const std::int64_t place = std::int64_t{asked.lower} + i - asked.old_lower;
      if (place >= 0 && place < asked.old_count) fresh[i] = elements[static_cast<size_t>(place)];
    }
    elements = fresh;
  }

  static std::int32_t resize(void* context, std::int32_t old_lower, std::uint32_t old_count,
                             std::int32_t lower, std::uint32_t count, std::int16_t keep,
                             void** data) {
    auto& buffer = *static_cast<Buffer*>(context);
    buffer.requests.push_back({old_lower, old_count, lower, count, keep});
    if (buffer.words != nullptr) orv2_set_failure(buffer.status, buffer.words, "Host.Buffer");
    if (buffer.status != 0) return buffer.status;
    buffer.follow(buffer.requests.back());
    *data = buffer.answers_null ? nullptr : buffer.elements.data();
    return 0;
  }

  orv2_handle adopted(std::int32_t lower) {
    orv2_handle array = 0;
    orv2_array_adopt(ORV2_DOUBLE_ARRAY, elements.data(), lower,
                     static_cast<std::uint32_t>(elements.size()), resize, this, &array);
    return array;
  }
};

void expect_as_adopted(orv2_handle array, const Buffer& buffer) {
  std::int32_t lower = 0;
  std::int32_t upper = 0;
  void* data = nullptr;
  EXPECT_EQ(orv2_array_bounds(array, &lower, &upper), 0);
  EXPECT_EQ(std::make_pair(lower, upper), std::make_pair(10, 13));
  EXPECT_EQ(orv2_array_data(array, &data), 0);
  EXPECT_EQ(data, buffer.elements.data());
}

TEST(AdoptedArrays, AskTheHostWithTheOldAndTheNewBounds) {
  Buffer buffer;
  const Owned array(buffer.adopted(10));
  ASSERT_EQ(orv2_array_resize(array, 11, 15, -1), 0);
  ASSERT_EQ(orv2_array_resize(array, -2, 0, 0), 0);
  ASSERT_EQ(orv2_array_resize(array, -2, 4, 7), 0);  // any non-zero pattern keeps
  const std::vector<Request> expected{{10, 4, 11, 5, -1}, {11, 5, -2, 3, 0}, {-2, 3, -2, 7, -1}};
  EXPECT_EQ(buffer.requests, expected);
}

TEST(AdoptedArrays, WorkInThePlaceThatTheHostAnswersWith) {
  Buffer buffer;
  const Owned array(buffer.adopted(10));
  ASSERT_EQ(orv2_array_resize(array, 11, 15, -1), 0);
  auto& typed = c_api::array_of<DoubleArray>(c_api::array_item(array));
  EXPECT_EQ(typed(11), 2.0);
  typed(15) = 9.0;
  EXPECT_EQ(buffer.elements, (std::vector<double>{2.0, 3.0, 4.0, 0.0, 9.0}));
}

TEST(AdoptedArrays, AreAsTheyWereWhenTheHostFails) {
  for (const std::int32_t status : {7, 10, -1, 12345}) {
    Buffer buffer;
    buffer.status = status;
    const Owned array(buffer.adopted(10));
    EXPECT_EQ(orv2_array_resize(array, 0, 9, -1), status);
    expect_as_adopted(array, buffer);
  }
}

TEST(AdoptedArrays, HandOnTheWordsOfAHostThatFails) {
  Buffer buffer;
  buffer.status = -77;
  buffer.words = "no cabe";
  const Owned array(buffer.adopted(10));
  EXPECT_EQ(orv2_array_resize(array, 0, 9, -1), -77);
  EXPECT_EQ(last_failure().description, "no cabe");
  EXPECT_EQ(last_failure().source, "Host.Buffer");
}

TEST(AdoptedArrays, TakeANullAddressForNoMemory) {
  Buffer buffer;
  buffer.answers_null = true;
  const Owned array(buffer.adopted(10));
  EXPECT_EQ(orv2_array_resize(array, 10, 13, -1), 7);
  std::int32_t lower = 0;
  std::int32_t upper = 0;
  EXPECT_EQ(orv2_array_bounds(array, &lower, &upper), 0);
  EXPECT_EQ(std::make_pair(lower, upper), std::make_pair(10, 13));
}

TEST(AdoptedArrays, AreNotAskedForWhatCannotBe) {
  Buffer buffer;
  const Owned array(buffer.adopted(10));
  EXPECT_EQ(orv2_array_resize(array, 5, 4, -1), 9);
  EXPECT_EQ(orv2_array_resize(array, 5, 3, -1), 9);
  EXPECT_EQ(orv2_array_resize(array, highest, lowest, 0), 9);
  orv2_array_lock(array);
  EXPECT_EQ(orv2_array_resize(array, 0, 9, -1), 10);
  EXPECT_TRUE(buffer.requests.empty());
  expect_as_adopted(array, buffer);
}

// ---- Elements that the host keeps, whatever the shape ------------------------------

struct Kept : Buffer {
  int releases = 0;

  static std::int32_t resize_or_release(void* context, std::int32_t old_lower,
                                        std::uint32_t old_count, std::int32_t lower,
                                        std::uint32_t count, std::int16_t keep, void** data) {
    if (data != nullptr) return resize(context, old_lower, old_count, lower, count, keep, data);
    auto& kept = *static_cast<Kept*>(context);
    EXPECT_EQ(count, 0U);
    ++kept.releases;
    kept.elements.clear();
    return kept.status;
  }

  orv2_handle hosted(const orv2_array_info& shape) {
    orv2_handle array = 0;
    EXPECT_EQ(orv2_array_host(&shape, elements.data(), resize_or_release, this, &array), 0);
    return array;
  }
};

orv2_array_info described(orv2_handle array) {
  orv2_array_info info{};
  EXPECT_EQ(orv2_array_describe(array, &info), 0);
  return info;
}

TEST(HostArrays, BeginUnallocatedAndGetTheirElementsFromTheHost) {
  Kept kept;
  kept.elements.clear();
  const Owned array(kept.hosted({ORV2_DOUBLE_ARRAY, 0, 0, 0, 0, 0}));
  EXPECT_EQ(described(array).allocated, 0);
  EXPECT_EQ(described(array).dimensions, 0);
  ASSERT_EQ(orv2_array_resize(array, 3, 5, -1), 0);
  EXPECT_EQ(kept.requests, (std::vector<Request>{{0, 0, 3, 3, -1}}));
  EXPECT_EQ(described(array).lower, 3);
  EXPECT_EQ(described(array).count, 3U);
  void* data = nullptr;
  EXPECT_EQ(orv2_array_data(array, &data), 0);
  EXPECT_EQ(data, kept.elements.data());
}

TEST(HostArrays, OfAForeignDimensionCountHaveNoElementInReach) {
  Kept kept;
  const Owned array(kept.hosted({ORV2_DOUBLE_ARRAY, 2, -1, 0, 7, 4}));
  EXPECT_EQ(described(array).dimensions, 2);
  EXPECT_EQ(described(array).lower, 7);
  auto& typed = c_api::array_of<DoubleArray>(c_api::array_item(array));
  EXPECT_EQ(failure_of([&] { typed(7) = 1.0; }), 9);
  ASSERT_EQ(orv2_array_resize(array, 0, 1, 0), 0);
  EXPECT_EQ(described(array).dimensions, 1);
}

TEST(HostArrays, AreToldWhenARoutineLeavesThemUnallocated) {
  Kept kept;
  const Owned array(kept.hosted({ORV2_DOUBLE_ARRAY, 1, -1, 0, 0, 4}));
  auto& typed = c_api::array_of<DoubleArray>(c_api::array_item(array));
  typed = DoubleArray();
  EXPECT_EQ(kept.releases, 1);
  EXPECT_EQ(described(array).allocated, 0);
  typed = DoubleArray(0, 2);
  EXPECT_EQ(kept.elements, std::vector<double>(3, 0.0));
}

TEST(HostArrays, StayAsTheyWereWhenTheHostKeepsTheElements) {
  Kept kept;
  kept.status = 10;
  const Owned array(kept.hosted({ORV2_DOUBLE_ARRAY, 1, -1, 0, 0, 4}));
  auto& typed = c_api::array_of<DoubleArray>(c_api::array_item(array));
  EXPECT_EQ(failure_of([&] { typed = DoubleArray(); }), 10);
  EXPECT_EQ(described(array).count, 4U);
}

TEST(AdoptedArrays, WithoutACallbackHaveAFixedSize) {
  double elements[] = {1.0, 2.0};
  orv2_handle array = 0;
  ASSERT_EQ(orv2_array_adopt(ORV2_DOUBLE_ARRAY, elements, 0, 2, nullptr, nullptr, &array), 0);
  const Owned owned(array);
  EXPECT_EQ(orv2_array_resize(array, 0, 1, -1), 10);
  EXPECT_EQ(orv2_array_resize(array, 0, 5, 0), 10);
}

TEST(AdoptedArrays, WhoseBoundsDoNotFitAreOutOfRange) {
  double element = 0.0;
  orv2_handle array = 77;
  EXPECT_EQ(orv2_array_adopt(ORV2_DOUBLE_ARRAY, &element, highest, 2, nullptr, nullptr, &array), 9);
  EXPECT_EQ(array, 77U);
  EXPECT_EQ(orv2_array_adopt(ORV2_DOUBLE_ARRAY, &element, highest, 1, nullptr, nullptr, &array), 0);
  EXPECT_EQ(orv2_release(array), 0);
}

TEST(AdoptedArrays, FollowAWholeAssignment) {
  Buffer buffer;
  const Owned array(buffer.adopted(10));
  auto& typed = c_api::array_of<DoubleArray>(c_api::array_item(array));
  DoubleArray other(3, 4);
  other(3) = 33.0;
  typed = other;
  EXPECT_EQ(buffer.requests, (std::vector<Request>{{10, 4, 3, 2, 0}}));
  EXPECT_EQ(buffer.elements, (std::vector<double>{33.0, 0.0}));
  DoubleArray nothing;
  nothing.make(1, 0);
  typed = nothing;
  EXPECT_TRUE(buffer.elements.empty());
  EXPECT_EQ(typed.count(), 0U);
}

TEST(AdoptedArrays, AreAskedForNothingWhereTheyBecomeUnallocated) {
  Buffer buffer;
  const Owned array(buffer.adopted(10));
  auto& typed = c_api::array_of<DoubleArray>(c_api::array_item(array));
  typed = DoubleArray();
  EXPECT_EQ(buffer.requests, (std::vector<Request>{{10, 4, 0, 0, 0}}));
  std::int32_t lower = 0, upper = 0;
  EXPECT_EQ(orv2_array_bounds(array, &lower, &upper), 9);
  ASSERT_EQ(orv2_array_resize(array, 1, 2, 0), 0);
  EXPECT_EQ(buffer.requests.back(), (Request{0, 0, 1, 2, 0}));
}

// The dialog closed by its title bar before anything was counted leaves the new
// numbers without storage.
TEST(AdoptedArrays, OfFixedSizeAre10WhereADialogWouldLeaveThemUnallocated) {
  const auto close = [](void*, orv2_form* form) { return orv2_form_close(form); };
  const auto box = [](void*, const char*, std::int32_t, const char*) { return 0; };
  const orv2_user_interface screen{sizeof(screen), nullptr, box, close, nullptr};
  ASSERT_EQ(orv2_set_user_interface(&screen), 0);
  std::int32_t points = 2;
  std::int16_t notice = 0;
  std::int32_t numbers[] = {7, 8, 9};
  orv2_handle adopted = 0;
  ASSERT_EQ(orv2_array_adopt(ORV2_LONG_ARRAY, numbers, 0, 3, nullptr, nullptr, &adopted), 0);
  const Owned arrays(new_object("Orv2_Geo.cgeo_Matrices")), NewInd(adopted);
  const Owned X(new_array()), Y(new_array()), Z(new_array());
  const Owned codigo(new_array(ORV2_STRING_ARRAY)), Nombre(new_array(ORV2_STRING_ARRAY));
  const Owned CapaP(new_array(ORV2_SHORT_ARRAY));
  orv2_value aviso = tagged(ORV2_BOOL | ORV2_BYREF);
  aviso.as.pointer = &notice;
  const orv2_value arguments[] = {pointing_at(&points),
                                  tagged(ORV2_DOUBLE_ARRAY, X),
                                  tagged(ORV2_DOUBLE_ARRAY, Y),
                                  tagged(ORV2_DOUBLE_ARRAY, Z),
                                  tagged(ORV2_STRING_ARRAY, codigo),
                                  tagged(ORV2_STRING_ARRAY, Nombre),
                                  tagged(ORV2_SHORT_ARRAY, CapaP),
                                  tagged(ORV2_LONG_ARRAY, NewInd),
                                  aviso};
  EXPECT_EQ(orv2_call_name(arrays, "Quita_Pts_Repetidos", arguments, std::size(arguments), nullptr),
            10);
  orv2_set_user_interface(nullptr);
  orv2_array_info info{};
  ASSERT_EQ(orv2_array_describe(NewInd, &info), 0);
  EXPECT_EQ(info.count, 3U);
  void* data = nullptr;
  ASSERT_EQ(orv2_array_data(NewInd, &data), 0);
  EXPECT_EQ(data, numbers);
  EXPECT_EQ(numbers[1], 8);
}

// ---- The library's own -----------------------------------------------------

struct Made {
  std::int32_t lower;
  std::uint32_t count;
  std::uint16_t dimensions;
  std::int32_t status;
};

TEST(MadeArrays, HaveTheBoundsAskedFor) {
  const Made rows[] = {
      {0, 4, 1, 0}, {-3, 2, 1, 0}, {highest, 1, 1, 0}, {lowest, 1, 1, 0},  {5, 0, 1, 0},
      {0, 4, 2, 0}, {0, 4, 60, 0}, {0, 4, 0, 5},       {highest, 2, 1, 9}, {1, 0x80000000U, 1, 9}};
  for (const std::uint16_t type : array_types) {
    for (const Made& row : rows) {
      orv2_handle array = 77;
      ASSERT_EQ(orv2_array_make(type, row.lower, row.count, row.dimensions, &array), row.status);
      if (row.status != 0) {
        EXPECT_EQ(array, 77U);
        continue;
      }
      const Owned owned(array);
      orv2_array_info info{};
      ASSERT_EQ(orv2_array_describe(array, &info), 0);
      EXPECT_EQ(std::tie(info.type, info.dimensions, info.allocated, info.locked),
                std::make_tuple(type, row.dimensions, std::int16_t{-1}, std::int16_t{0}));
      EXPECT_EQ(std::tie(info.lower, info.count), std::tie(row.lower, row.count));
    }
  }
}

TEST(MadeArrays, WithoutElementsHaveBoundsAndNoAddress) {
  const Owned array(new_array(ORV2_LONG_ARRAY, 5, 0));
  std::int32_t lower = 0;
  std::int32_t upper = 0;
  void* data = &lower;
  EXPECT_EQ(orv2_array_bounds(array, &lower, &upper), 0);
  EXPECT_EQ(std::make_pair(lower, upper), std::make_pair(5, 4));
  EXPECT_EQ(orv2_array_data(array, &data), 0);
  EXPECT_EQ(data, nullptr);
}

TEST(MadeArrays, WithoutElementsAtTheLowestIndexHaveNoUpperBound) {
  const Owned array(new_array(ORV2_LONG_ARRAY, lowest, 0));
  std::int32_t lower = 77;
  std::int32_t upper = 78;
  EXPECT_EQ(orv2_array_bounds(array, &lower, &upper), 6);
  EXPECT_EQ(std::make_pair(lower, upper), std::make_pair(77, 78));
}

TEST(MadeArrays, OfMoreDimensionsCannotKeepTheirElements) {
  orv2_handle array = 0;
  ASSERT_EQ(orv2_array_make(ORV2_DOUBLE_ARRAY, 0, 4, 2, &array), 0);
  const Owned owned(array);
  EXPECT_EQ(orv2_array_resize(array, 0, 9, -1), 9);
  EXPECT_EQ(orv2_array_resize(array, 0, 9, 0), 0);
}

TEST(MadeArrays, OfMoreDimensionsReachNoText) {
  orv2_handle array = 0;
  ASSERT_EQ(orv2_array_make(ORV2_STRING_ARRAY, 0, 4, 2, &array), 0);
  const Owned owned(array);
  const std::uint16_t* units = nullptr;
  std::size_t count = 0;
  EXPECT_EQ(orv2_array_get_text(array, 0, &units, &count), 9);
  EXPECT_EQ(orv2_array_set_text(array, 0, nullptr, 0), 9);
}

TEST(MadeArrays, LocksAreCounted) {
  const Owned array(new_array());
  EXPECT_EQ(orv2_array_lock(array), 0);
  EXPECT_EQ(orv2_array_lock(array), 0);
  EXPECT_EQ(orv2_array_unlock(array), 0);
  EXPECT_EQ(orv2_array_resize(array, 0, 9, 0), 10);
  EXPECT_EQ(orv2_array_unlock(array), 0);
  EXPECT_EQ(orv2_array_resize(array, 0, 9, 0), 0);
  EXPECT_EQ(orv2_array_unlock(array), 5);
}

TEST(MadeArrays, ALockedOneCanBeReleased) {
  const orv2_handle array = new_array();
  orv2_array_lock(array);
  EXPECT_EQ(orv2_release(array), 0);
  EXPECT_EQ(orv2_array_unlock(array), 5);
}

TEST(MadeArrays, TextsSurviveWithTheirIndex) {
  const Owned array(new_array(ORV2_STRING_ARRAY, 0, 3));
  const std::uint16_t word[] = {'u', 0xd800, 0};  // an unpaired surrogate and a zero travel
  ASSERT_EQ(orv2_array_set_text(array, 2, word, 3), 0);
  ASSERT_EQ(orv2_array_resize(array, 2, 8, -1), 0);
  const std::uint16_t* units = nullptr;
  std::size_t count = 0;
  ASSERT_EQ(orv2_array_get_text(array, 2, &units, &count), 0);
  EXPECT_EQ(std::vector<std::uint16_t>(units, units + count),
            std::vector<std::uint16_t>(word, word + 3));
}

// ---- Texts that come from themselves ---------------------------------------

TEST(Texts, CanBeSetFromTheirOwnUnits) {
  const Owned text(new_text(u"abcdef"));
  const Owned array(new_array(ORV2_STRING_ARRAY, 0, 1));
  const std::uint16_t* units = nullptr;
  std::size_t count = 0;
  ASSERT_EQ(orv2_text_get(text, &units, &count), 0);
  ASSERT_EQ(orv2_array_set_text(array, 0, units, count), 0);
  ASSERT_EQ(orv2_text_set(text, units + 2, 3), 0);
  EXPECT_EQ(c_api::text_of(text).view(), u"cde");
  ASSERT_EQ(orv2_array_get_text(array, 0, &units, &count), 0);
  ASSERT_EQ(orv2_array_set_text(array, 0, units + 1, 2), 0);
  ASSERT_EQ(orv2_array_get_text(array, 0, &units, &count), 0);
  EXPECT_EQ(std::vector<std::uint16_t>(units, units + count),
            (std::vector<std::uint16_t>{'b', 'c'}));
}

TEST(Texts, WithoutContentHaveAnAddressAndNoUnits) {
  const Owned text(new_text(u""));
  const std::uint16_t* units = nullptr;
  std::size_t count = 99;
  EXPECT_EQ(orv2_text_get(text, &units, &count), 0);
  EXPECT_EQ(count, 0U);
  EXPECT_NE(units, nullptr);
}

}  // namespace
}  // namespace orv2_geo::testing_support
