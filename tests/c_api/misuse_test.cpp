// Everything a host can do wrong is a failure with words, never more.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/c_api/boundary.h"

namespace orv2_geo::testing_support {
namespace {

// A place for every kind of result. A failing call leaves it as it was.
struct Results {
  orv2_handle handle;
  orv2_value value;
  orv2_failure failure;
  orv2_class_info class_info;
  orv2_member_info member_info;
  orv2_parameter_info parameter_info;
  orv2_array_info array_info;
  std::size_t size;
  std::int32_t number;
  std::int32_t upper;
  const char* words;
  const std::uint16_t* units;
  void* data;
};

Results results;
constexpr int untouched_byte = 0x5a;

void fill_results() { std::memset(static_cast<void*>(&results), untouched_byte, sizeof(results)); }

bool results_are_untouched() {
  const auto* bytes = reinterpret_cast<const unsigned char*>(&results);
  return std::all_of(bytes, bytes + sizeof(results),
                     [](unsigned char byte) { return byte == untouched_byte; });
}

void expect_refused(std::int32_t expected, const std::string& name,
                    const std::function<std::int32_t()>& call) {
  fill_results();
  EXPECT_EQ(call(), expected) << name;
  EXPECT_TRUE(results_are_untouched()) << name;
  const LastFailure failure = last_failure();
  EXPECT_EQ(failure.number, expected) << name;
  EXPECT_FALSE(failure.description.empty()) << name;
}

const std::uint16_t some_units[] = {'a', 'b'};

const orv2_array_info two_doubles{ORV2_DOUBLE_ARRAY, 1, -1, 0, 0, 2};

std::int32_t no_resize(void*, std::int32_t, std::uint32_t, std::int32_t, std::uint32_t,
                       std::int16_t, void**) {
  return 10;
}

// ---- Null pointers ---------------------------------------------------------

struct NullRow {
  const char* name;
  std::function<std::int32_t()> call;
};

class NullPointers : public ::testing::Test {
 protected:
  Owned object{new_object()};
  Owned array{new_array()};
  Owned texts{new_array(ORV2_STRING_ARRAY)};
  Owned text{new_text()};
  double buffer[2] = {};
};

TEST_F(NullPointers, InPlaceOfAResultAreAnInvalidCall) {
  const NullRow rows[] = {
      {"failure_at number", [&] { return orv2_failure_at(0, nullptr, &results.words); }},
      {"failure_at words", [&] { return orv2_failure_at(0, &results.number, nullptr); }},
      {"class_at", [&] { return orv2_class_at(0, nullptr); }},
      {"member_at", [&] { return orv2_member_at(0, 0, nullptr); }},
      {"parameter_at", [&] { return orv2_parameter_at(0, 0, 0, nullptr); }},
      {"parameter_use", [&] { return orv2_parameter_use(0, 0, 0, nullptr); }},
      {"create", [&] { return orv2_create(algorismos, nullptr); }},
      {"class_of", [&] { return orv2_class_of(object, nullptr); }},
      {"find_member", [&] { return orv2_find_member(object, "Azimut", ORV2_ANY, nullptr); }},
      {"array_new", [&] { return orv2_array_new(ORV2_LONG_ARRAY, nullptr); }},
      {"array_make", [&] { return orv2_array_make(ORV2_LONG_ARRAY, 0, 1, 1, nullptr); }},
      {"array_adopt",
       [&] {
         return orv2_array_adopt(ORV2_DOUBLE_ARRAY, buffer, 0, 2, nullptr, nullptr, nullptr);
       }},
      {"array_host",
       [&] { return orv2_array_host(&two_doubles, buffer, no_resize, nullptr, nullptr); }},
      {"array_describe", [&] { return orv2_array_describe(array, nullptr); }},
      {"array_bounds lower", [&] { return orv2_array_bounds(array, nullptr, &results.upper); }},
      {"array_bounds upper", [&] { return orv2_array_bounds(array, &results.number, nullptr); }},
      {"array_data", [&] { return orv2_array_data(array, nullptr); }},
      {"array_get_text units",
       [&] { return orv2_array_get_text(texts, 0, nullptr, &results.size); }},
      {"array_get_text count",
       [&] { return orv2_array_get_text(texts, 0, &results.units, nullptr); }},
      {"number_of_text", [&] { return orv2_number_of_text(some_units, 2, nullptr); }},
      {"has_user_interface", [&] { return orv2_has_user_interface(nullptr); }},
      {"text_new", [&] { return orv2_text_new(some_units, 2, nullptr); }},
      {"text_get units", [&] { return orv2_text_get(text, nullptr, &results.size); }},
      {"text_get count", [&] { return orv2_text_get(text, &results.units, nullptr); }},
      {"host_object_new",
       [&] {
         const orv2_host_object host{sizeof(host), nullptr, nullptr, nullptr};
         return orv2_host_object_new(&host, nullptr, nullptr);
       }},
  };
  for (const NullRow& row : rows) expect_refused(5, row.name, row.call);
}

TEST_F(NullPointers, InPlaceOfAnInputAreAnInvalidCall) {
  const std::size_t azimut = position_of(object, "Azimut");
  const NullRow rows[] = {
      {"create", [&] { return orv2_create(nullptr, &results.handle); }},
      {"find_member", [&] { return orv2_find_member(object, nullptr, ORV2_ANY, &results.size); }},
      {"call", [&] { return orv2_call(object, azimut, nullptr, 3, &results.value); }},
      {"call_name name",
       [&] { return orv2_call_name(object, nullptr, nullptr, 0, &results.value); }},
      {"call_name arguments",
       [&] { return orv2_call_name(object, "Azimut", nullptr, 3, &results.value); }},
      {"array_adopt",
       [&] {
         return orv2_array_adopt(ORV2_DOUBLE_ARRAY, nullptr, 0, 2, nullptr, nullptr,
                                 &results.handle);
       }},
      {"array_host shape",
       [&] { return orv2_array_host(nullptr, buffer, no_resize, nullptr, &results.handle); }},
      {"array_host data",
       [&] { return orv2_array_host(&two_doubles, nullptr, no_resize, nullptr, &results.handle); }},
      {"array_host resize",
       [&] { return orv2_array_host(&two_doubles, buffer, nullptr, nullptr, &results.handle); }},
      {"number_of_text", [&] { return orv2_number_of_text(nullptr, 1, &results.value.as.f64); }},
      {"array_set_text", [&] { return orv2_array_set_text(texts, 0, nullptr, 1); }},
      {"text_new", [&] { return orv2_text_new(nullptr, 1, &results.handle); }},
      {"text_set", [&] { return orv2_text_set(text, nullptr, 1); }},
      {"host_object_new", [&] { return orv2_host_object_new(nullptr, nullptr, &results.handle); }},
  };
  for (const NullRow& row : rows) expect_refused(5, row.name, row.call);
}

TEST_F(NullPointers, WhereTheFailureGoesAreAnInvalidCall) {
  EXPECT_EQ(orv2_last_failure(nullptr), 5);
}

TEST_F(NullPointers, AreFineWhereNothingIsNeeded) {
  Owned empty(0);
  orv2_handle adopted = 0;
  orv2_handle no_text = 0;
  EXPECT_EQ(orv2_array_adopt(ORV2_LONG_ARRAY, nullptr, 0, 0, nullptr, nullptr, &adopted), 0);
  EXPECT_EQ(orv2_text_new(nullptr, 0, &no_text), 0);
  EXPECT_EQ(orv2_text_set(text, nullptr, 0), 0);
  EXPECT_EQ(orv2_array_set_text(texts, 0, nullptr, 0), 0);
  EXPECT_EQ(orv2_set_failure(5, nullptr, nullptr), 0);
  orv2_release(adopted);
  orv2_release(no_text);
}

// ---- Handles ---------------------------------------------------------------

using HandleCall = std::function<std::int32_t(orv2_handle)>;

struct HandleRow {
  const char* name;
  HandleCall call;
};

const HandleRow object_rows[] = {
    {"class_of", [](orv2_handle h) { return orv2_class_of(h, &results.size); }},
    {"find_member",
     [](orv2_handle h) { return orv2_find_member(h, "Azimut", ORV2_ANY, &results.size); }},
    {"call", [](orv2_handle h) { return orv2_call(h, 0, nullptr, 0, &results.value); }},
    {"call_name",
     [](orv2_handle h) { return orv2_call_name(h, "Azimut", nullptr, 0, &results.value); }},
};

const HandleRow array_rows[] = {
    {"array_describe", [](orv2_handle h) { return orv2_array_describe(h, &results.array_info); }},
    {"array_bounds",
     [](orv2_handle h) { return orv2_array_bounds(h, &results.number, &results.upper); }},
    {"array_data", [](orv2_handle h) { return orv2_array_data(h, &results.data); }},
    {"array_resize", [](orv2_handle h) { return orv2_array_resize(h, 0, 9, -1); }},
    {"array_lock", [](orv2_handle h) { return orv2_array_lock(h); }},
    {"array_unlock", [](orv2_handle h) { return orv2_array_unlock(h); }},
    {"array_get_text",
     [](orv2_handle h) { return orv2_array_get_text(h, 0, &results.units, &results.size); }},
    {"array_set_text", [](orv2_handle h) { return orv2_array_set_text(h, 0, some_units, 2); }},
};

const HandleRow text_rows[] = {
    {"text_set", [](orv2_handle h) { return orv2_text_set(h, some_units, 2); }},
    {"text_get", [](orv2_handle h) { return orv2_text_get(h, &results.units, &results.size); }},
};

std::int32_t call_with_one(const orv2_value& argument) {
  const Owned object(new_object());
  return orv2_call_name(object, "Arccos", &argument, 1, &results.value);
}

const HandleRow argument_rows[] = {
    {"text argument", [](orv2_handle h) { return call_with_one(tagged(ORV2_TEXT, h)); }},
    {"text variable argument",
     [](orv2_handle h) { return call_with_one(tagged(ORV2_TEXT | ORV2_BYREF, h)); }},
    {"array argument", [](orv2_handle h) { return call_with_one(tagged(ORV2_LONG_ARRAY, h)); }},
    {"array argument by reference",
     [](orv2_handle h) { return call_with_one(tagged(ORV2_LONG_ARRAY | ORV2_BYREF, h)); }},
};

const HandleRow object_argument_rows[] = {
    {"object argument", [](orv2_handle h) { return call_with_one(tagged(ORV2_OBJECT, h)); }},
    {"object variable argument",
     [](orv2_handle h) {
       orv2_handle variable = h;
       return call_with_one(pointing_at(&variable));
     }},
};

template <std::size_t n>
void expect_each_refused(std::int32_t expected, const HandleRow (&rows)[n], orv2_handle handle,
                         const std::string& what) {
  for (const HandleRow& row : rows) {
    expect_refused(expected, what + ": " + row.name, [&] { return row.call(handle); });
  }
}

void expect_refused_everywhere(orv2_handle handle, const std::string& what) {
  expect_each_refused(5, object_rows, handle, what);
  expect_each_refused(5, array_rows, handle, what);
  expect_each_refused(5, text_rows, handle, what);
  expect_each_refused(5, argument_rows, handle, what);
  expect_each_refused(5, object_argument_rows, handle, what);
}

void expect_no_reference_to(orv2_handle handle, const std::string& what) {
  expect_refused(5, what + ": reference", [&] { return orv2_reference(handle); });
  expect_refused(5, what + ": release", [&] { return orv2_release(handle); });
}

TEST(Handles, NoneIsAnObjectNotSetWhereAnObjectIsNeeded) {
  expect_each_refused(91, object_rows, 0, "none");
}

TEST(Handles, NoneIsAnInvalidCallWhereAnArrayOrATextIsNeeded) {
  expect_each_refused(5, array_rows, 0, "none");
  expect_each_refused(5, text_rows, 0, "none");
  expect_each_refused(5, argument_rows, 0, "none");
  expect_refused(5, "reference", [] { return orv2_reference(0); });
}

TEST(Handles, NoneAsAnObjectArgumentIsNoFailureOfTheHandle) {
  expect_each_refused(13, object_argument_rows, 0, "Arccos takes no object");
}

TEST(Handles, ReleasingNoneDoesNothing) { EXPECT_EQ(orv2_release(0), 0); }

TEST(Handles, OfAnotherKindAreRefused) {
  const Owned object(new_object());
  const Owned array(new_array());
  const Owned text(new_text());
  expect_each_refused(5, object_rows, array, "array for object");
  expect_each_refused(5, object_rows, text, "text for object");
  expect_each_refused(5, array_rows, object, "object for array");
  expect_each_refused(5, array_rows, text, "text for array");
  expect_each_refused(5, text_rows, object, "object for text");
  expect_each_refused(5, text_rows, array, "array for text");
  expect_each_refused(5, argument_rows, object, "object as argument");
  expect_each_refused(5, object_argument_rows, array, "array as object argument");
}

TEST(Handles, OfAHostsOwnObjectAreNoObjectOfTheLibrary) {
  const orv2_host_object callbacks{sizeof(callbacks), nullptr, nullptr, nullptr};
  orv2_handle host = 0;
  ASSERT_EQ(orv2_host_object_new(&callbacks, nullptr, &host), 0);
  expect_each_refused(5, object_rows, host, "host object");
  orv2_release(host);
}

TEST(Handles, AreStaleAfterTheLastRelease) {
  for (const orv2_handle handle : {new_object(), new_array(), new_text()}) {
    ASSERT_EQ(orv2_release(handle), 0);
    expect_refused_everywhere(handle, "stale");
    expect_no_reference_to(handle, "stale");
  }
}

TEST(Handles, OfAnotherThreadAreRefused) {
  const Owned object(new_object());
  const Owned array(new_array());
  const Owned text(new_text());
  std::thread([&] {
    for (const orv2_handle handle : {orv2_handle(object), orv2_handle(array), orv2_handle(text)}) {
      expect_refused_everywhere(handle, "foreign");
    }
  }).join();
}

TEST(Handles, OfAThreadThatHasEndedAreRefused) {
  std::vector<orv2_handle> left;
  std::thread([&] { left = {new_object(), new_array(), new_text()}; }).join();
  for (const orv2_handle handle : left) {
    ASSERT_NE(handle, 0U);
    expect_refused_everywhere(handle, "ended thread");
    expect_no_reference_to(handle, "ended thread");
  }
}

TEST(Handles, MadeUpAtRandomAreRefused) {
  const Owned object(new_object());
  const Owned array(new_array());
  std::mt19937_64 random(2024);
  for (int i = 0; i < 200; ++i) {
    expect_refused_everywhere(random(), "random");
    expect_no_reference_to(random(), "random");
  }
}

TEST(Handles, NearALivingOneAreRefused) {
  const Owned object(new_object());
  for (int bit = 0; bit < 64; ++bit) {
    const orv2_handle near = object ^ (orv2_handle{1} << bit);
    expect_each_refused(near == 0 ? 91 : 5, object_rows, near, "bit " + std::to_string(bit));
  }
}

// ---- Tags, counts and numbers ----------------------------------------------

TEST(Tags, UnknownOnesAreAMismatch) {
  const Owned object(new_object());
  for (int tag = 0; tag <= 0xffff; ++tag) {
    const int type = tag & ~ORV2_BYREF;
    const bool known = (tag >= ORV2_I16 && tag <= ORV2_UTF8 && tag != ORV2_VARIANT) ||
                       (type >= ORV2_I16 && type <= ORV2_STRING_ARRAY && type != ORV2_VARIANT);
    if (known) continue;
    const orv2_value value = tagged(tag, 0x7fff12345678U);
    ASSERT_EQ(orv2_call_name(object, "Arccos", &value, 1, nullptr), 13) << tag;
  }
}

TEST(Tags, AnUnknownOneIsAMismatchAtEveryPlace) {
  const Owned object(new_object());
  double numbers[3] = {1.0, 2.0, 3.0};
  for (int place = 0; place < 3; ++place) {
    orv2_value arguments[] = {pointing_at(&numbers[0]), pointing_at(&numbers[1]),
                              pointing_at(&numbers[2])};
    arguments[place].tag = 0x77;
    expect_refused(13, "Azimut",
                   [&] { return orv2_call_name(object, "Azimut", arguments, 3, &results.value); });
  }
}

TEST(Tags, ByReferenceWithoutAPointerAreAnInvalidCall) {
  for (int type = ORV2_I16; type <= ORV2_BOOL; ++type) {
    expect_refused(5, "type " + std::to_string(type),
                   [&] { return call_with_one(tagged(type | ORV2_BYREF)); });
  }
  expect_refused(5, "object", [] { return call_with_one(tagged(ORV2_OBJECT | ORV2_BYREF)); });
  expect_refused(5, "utf8", [] { return call_with_one(utf8(nullptr)); });
}

TEST(Tags, AnArrayUnderTheTagOfAnotherTypeIsAMismatch) {
  for (const std::uint16_t own : array_types) {
    const Owned array(new_array(own));
    for (const std::uint16_t given : array_types) {
      if (given == own) continue;
      expect_refused(13, "array tag", [&] { return call_with_one(tagged(given, array)); });
    }
  }
}

TEST(Arrays, OfAnUnknownTypeAreAMismatch) {
  double buffer[2] = {};
  for (int tag = 0; tag < 0x400; ++tag) {
    if (tag >= ORV2_DOUBLE_ARRAY && tag <= ORV2_STRING_ARRAY) continue;
    const auto type = static_cast<std::uint16_t>(tag);
    expect_refused(13, "new", [&] { return orv2_array_new(type, &results.handle); });
    expect_refused(13, "make", [&] { return orv2_array_make(type, 0, 1, 1, &results.handle); });
    expect_refused(13, "adopt", [&] {
      return orv2_array_adopt(type, buffer, 0, 2, nullptr, nullptr, &results.handle);
    });
  }
}

TEST(Counts, MoreThanAnyMemberTakesAreTooMany) {
  const Owned object(new_object());
  const std::vector<orv2_value> arguments(1000, by_value_of(1.0));
  for (const std::size_t count : {4U, 16U, 17U, 1000U}) {
    expect_refused(450, "count " + std::to_string(count), [&] {
      return orv2_call_name(object, "Azimut", arguments.data(), count, &results.value);
    });
  }
}

TEST(Counts, AbsurdOnesAreNeverFollowed) {
  const Owned object(new_object());
  const Owned text(new_text());
  const Owned texts(new_array(ORV2_STRING_ARRAY));
  const orv2_value one = by_value_of(1.0);
  constexpr std::size_t absurd = ~std::size_t{0};
  expect_refused(450, "call", [&] { return orv2_call(object, 0, &one, absurd, &results.value); });
  expect_refused(7, "text_new", [&] { return orv2_text_new(some_units, absurd, &results.handle); });
  expect_refused(7, "text_set", [&] { return orv2_text_set(text, some_units, absurd / 4); });
  expect_refused(7, "array_set_text",
                 [&] { return orv2_array_set_text(texts, 0, some_units, absurd); });
}

TEST(Counts, PastTheEndOfTheCatalogueAreOutOfRange) {
  for (const std::size_t index : {std::size_t{1000}, ~std::size_t{0}}) {
    expect_refused(9, "class", [&] { return orv2_class_at(index, &results.class_info); });
    expect_refused(9, "member", [&] { return orv2_member_at(0, index, &results.member_info); });
    expect_refused(9, "member's class",
                   [&] { return orv2_member_at(index, 0, &results.member_info); });
    expect_refused(9, "parameter",
                   [&] { return orv2_parameter_at(0, 0, index, &results.parameter_info); });
    expect_refused(9, "parameter's use",
                   [&] { return orv2_parameter_use(0, 0, index, &results.number); });
    expect_refused(9, "failure",
                   [&] { return orv2_failure_at(index, &results.number, &results.words); });
  }
}

TEST(Counts, PositionsPastTheLastMemberAreNoMember) {
  const Owned object(new_object());
  for (const std::size_t position : {std::size_t{37}, std::size_t{1000}, ~std::size_t{0}}) {
    expect_refused(438, "call",
                   [&] { return orv2_call(object, position, nullptr, 0, &results.value); });
  }
}

TEST(Kinds, OfMembersThatDoNotExistAreAnInvalidCall) {
  const Owned object(new_object());
  for (const std::int32_t kind : {-1, 4, 1000, -2147483647}) {
    expect_refused(5, "kind",
                   [&] { return orv2_find_member(object, "Azimut", kind, &results.size); });
  }
}

TEST(HostCallbacks, OfAnotherSizeAreAnInvalidCall) {
  for (const std::size_t size : {std::size_t{0}, sizeof(orv2_host_object) - 1, ~std::size_t{0}}) {
    const orv2_host_object callbacks{size, nullptr, nullptr, nullptr};
    expect_refused(5, "size",
                   [&] { return orv2_host_object_new(&callbacks, nullptr, &results.handle); });
  }
}

TEST(HostArrays, OfShapesThatCannotBeAreRefused) {
  double buffer[2] = {};
  const struct {
    const char* name;
    orv2_array_info shape;
    std::int32_t number;
  } rows[] = {
      {"texts", {ORV2_STRING_ARRAY, 1, -1, 0, 0, 2}, 5},
      {"a type that is none", {ORV2_F64, 1, -1, 0, 0, 2}, 13},
      {"no dimensions", {ORV2_DOUBLE_ARRAY, 0, -1, 0, 0, 2}, 5},
      {"bounds beyond 32 bits", {ORV2_DOUBLE_ARRAY, 1, -1, 0, 2147483647, 2}, 9},
  };
  for (const auto& row : rows) {
    expect_refused(row.number, row.name, [&] {
      return orv2_array_host(&row.shape, buffer, no_resize, nullptr, &results.handle);
    });
  }
}

TEST(Texts, ThatAreNoNumbersAreOfAnotherType) {
  const std::u16string words = u"12x";
  expect_refused(13, "number_of_text", [&] {
    return orv2_number_of_text(reinterpret_cast<const std::uint16_t*>(words.data()), words.size(),
                               &results.value.as.f64);
  });
}

TEST(UserInterfaces, OfAnotherSizeAreAnInvalidCall) {
  const auto box = [](void*, const char*, std::int32_t, const char*) { return 0; };
  const auto form = [](void*, orv2_form*) { return 0; };
  const orv2_user_interface rows[] = {
      {0, nullptr, box, form, nullptr},
      {sizeof(orv2_user_interface) - 1, nullptr, box, form, nullptr},
      {~std::size_t{0}, nullptr, box, form, nullptr},
  };
  for (const orv2_user_interface& row : rows) {
    expect_refused(5, "callbacks", [&] { return orv2_set_user_interface(&row); });
  }
}

TEST(Failures, ANumberOfZeroIsNone) {
  expect_refused(5, "set_failure", [] { return orv2_set_failure(0, "words", "source"); });
}

}  // namespace
}  // namespace orv2_geo::testing_support
