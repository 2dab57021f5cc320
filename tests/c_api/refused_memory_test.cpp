// Every allocation of every function refused in turn: failure 7, nothing kept,
// and the next call works.
#include "tests/support/refused_memory.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "orv2_geo/platform/form.h"
#include "orv2_geo/platform/user_interface.h"
#include "tests/c_api/boundary.h"

namespace orv2_geo::testing_support {
namespace {

// Longer than any string keeps in itself.
constexpr char long_number[] = "0.50000000000000000000000000000000000000000000000000000000000";
const std::uint16_t some_units[] = {'a', 'b', 'c'};

orv2_handle made = 0;  // what the call under test made
int host_releases = 0;

const orv2_host_object host_callbacks{sizeof(host_callbacks), nullptr, nullptr,
                                      [](void*) { ++host_releases; }};

// One call, with what must stand ready before it, so that it can be repeated.
struct Row {
  std::string name;
  std::function<std::int32_t()> call;
};

void forget_words() { orv2_release(1); }  // a failure without words of its own

void let_go() {
  orv2_release(made);
  made = 0;
  forget_words();
}

// The call with its allocation `n` refused; false when it has none such.
bool refused_at(const Row& row, long n) {
  const long before = allocations_in_use();
  std::int32_t status = 0;
  bool refused = false;
  {
    const RefusedAllocation refusal(n);
    status = row.call();
    refused = RefusedAllocation::happened();
  }
  EXPECT_EQ(status, refused ? 7 : 0) << row.name << ", allocation " << n;
  if (refused) {
    EXPECT_EQ(made, 0U) << row.name << ", allocation " << n;
    EXPECT_EQ(last_failure().number, 7) << row.name << ", allocation " << n;
  }
  let_go();
  EXPECT_EQ(allocations_in_use(), before) << row.name << ", allocation " << n;
  return refused;
}

void expect_refusals_survived(const Row& row) {
  EXPECT_EQ(row.call(), 0) << row.name;  // whatever is built once is built now
  let_go();
  long n = 0;
  while (refused_at(row, n)) ++n;
  EXPECT_GT(n, 0) << row.name << " allocates nothing";
  EXPECT_EQ(row.call(), 0) << row.name;
  let_go();
}

TEST(RefusedMemory, LeavesCreationUndone) {
  orv2_class_info info{};
  for (std::size_t i = 0; orv2_class_at(i, &info) == 0; ++i) {
    const char* const name = info.registered_name;
    expect_refusals_survived({name, [=] { return orv2_create(name, &made); }});
  }
  forget_words();
}

TEST(RefusedMemory, LeavesArraysUnmade) {
  double buffer[2] = {};
  const orv2_resize resize = [](void*, std::int32_t, std::uint32_t, std::int32_t, std::uint32_t,
                                std::int16_t, void**) { return 0; };
  for (const std::uint16_t type : array_types) {
    expect_refusals_survived({"new", [=] { return orv2_array_new(type, &made); }});
    expect_refusals_survived({"make", [=] { return orv2_array_make(type, 1, 100, 1, &made); }});
    if (type == ORV2_STRING_ARRAY) continue;
    expect_refusals_survived(
        {"adopt", [&] { return orv2_array_adopt(type, buffer, 0, 2, resize, nullptr, &made); }});
  }
}

// To two elements and to ten, so that there is never room as it is.
std::int32_t shrunk_and_grown(orv2_handle array, std::int16_t keep) {
  const std::int32_t shrunk = orv2_array_resize(array, 0, 1, keep);
  return shrunk != 0 ? shrunk : orv2_array_resize(array, 0, 9, keep);
}

TEST(RefusedMemory, LeavesArraysAsTheyWere) {
  const Owned numbers(new_array(ORV2_DOUBLE_ARRAY, 0, 4));
  const Owned texts(new_array(ORV2_STRING_ARRAY, 0, 4));
  ASSERT_EQ(orv2_array_set_text(texts, 1, some_units, 3), 0);
  const Row rows[] = {
      {"resize", [&] { return shrunk_and_grown(numbers, 0); }},
      {"resize keeping", [&] { return shrunk_and_grown(texts, -1); }},
      {"set text", [&] { return orv2_array_set_text(texts, 1, some_units, 3); }},
  };
  for (const Row& row : rows) expect_refusals_survived(row);
  const std::uint16_t* units = nullptr;
  std::size_t count = 0;
  ASSERT_EQ(orv2_array_get_text(texts, 1, &units, &count), 0);
  EXPECT_EQ(count, 3U);
}

TEST(RefusedMemory, LeavesTextsAsTheyWere) {
  const Owned text(new_text(u"xyz"));
  expect_refusals_survived({"new", [] { return orv2_text_new(some_units, 3, &made); }});
  expect_refusals_survived({"set", [&] { return orv2_text_set(text, some_units, 3); }});
}

TEST(RefusedMemory, LeavesHostObjectsWithTheHost) {
  host_releases = 0;
  const Row row{"host object",
                [] { return orv2_host_object_new(&host_callbacks, nullptr, &made); }};
  expect_refusals_survived(row);
  // Only what was handed over is released: the first, the last and the one
  // call in between that nothing refused.
  EXPECT_EQ(host_releases, 3);
}

TEST(RefusedMemory, LeavesCallsUndone) {
  const Owned object(new_object());
  const Owned text(new_text(u"0.50000000000000000000000000000000000000000000000000"));
  const orv2_value from_utf8 = utf8(long_number);
  const orv2_value from_text = tagged(ORV2_TEXT, text);
  const std::size_t arccos = position_of(object, "Arccos");
  const Row rows[] = {
      {"call, utf8", [&] { return orv2_call(object, arccos, &from_utf8, 1, nullptr); }},
      {"call, text", [&] { return orv2_call(object, arccos, &from_text, 1, nullptr); }},
      {"by name", [&] { return orv2_call_name(object, "Arccos", &from_utf8, 1, nullptr); }},
  };
  for (const Row& row : rows) expect_refusals_survived(row);
}

TEST(RefusedMemory, IsSignedByTheClassThatWasCalled) {
  const Owned object(new_object());
  const orv2_value argument = utf8(long_number);
  const RefusedAllocation refusal(0);
  EXPECT_EQ(orv2_call_name(object, "Arccos", &argument, 1, nullptr), 7);
  EXPECT_EQ(last_failure().source, algorismos);
}

TEST(RefusedMemory, DoesNotTouchCallsOfPlainValues) {
  const Owned object(new_object());
  double numbers[3] = {-1.0, 0.0, 0.0};
  const orv2_value arguments[] = {pointing_at(&numbers[0]), pointing_at(&numbers[1]),
                                  pointing_at(&numbers[2])};
  const RefusedAllocation refusal(0);
  EXPECT_EQ(orv2_call_name(object, "Azimut", arguments, 3, nullptr), 0);
  EXPECT_EQ(orv2_call(object, 1000, arguments, 3, nullptr), 438);
  EXPECT_FALSE(RefusedAllocation::happened());
}

TEST(RefusedMemory, CostsAFailureItsWordsAtMost) {
  for (long n = 0; n < 4; ++n) {
    const RefusedAllocation refusal(n);
    EXPECT_EQ(orv2_set_failure(13, "words that are too long to keep in the string itself", "Host"),
              0);
  }
  forget_words();
}

// ---- Forms -----------------------------------------------------------------

constexpr ControlDesign designed(std::string_view name, ControlKind kind,
                                 std::u16string_view text = u"") {
  ControlDesign design;
  design.name = name;
  design.kind = kind;
  design.text = text;
  return design;
}

constexpr char text_box[] = "txtOneWithALongNameThatNoStringKeepsInItself";
constexpr ControlDesign controls[] = {
    designed("lblAVeryLongNameThatNoStringKeepsInItself", ControlKind::label,
             u"a caption that no string keeps in itself either, as it is long"),
    designed(text_box, ControlKind::text_box),
    designed("grdOne", ControlKind::grid),
};
constexpr char long_words[] = "some words that no string keeps in itself, being far too long";

void test_form_functions(orv2_form* form) {
  static orv2_form_info form_info;
  static orv2_control_info control_info;
  static orv2_grid_info grid_info;
  static const char* cell;
  static const char* focus;
  const Row rows[] = {
      {"describe", [=] { return orv2_form_describe(form, &form_info); }},
      {"control", [=] { return orv2_form_control(form, 0, &control_info); }},
      {"grid", [=] { return orv2_form_grid(form, 2, &grid_info); }},
      {"cell", [=] { return orv2_form_cell(form, 2, 0, 1, &cell); }},
      {"focus", [=] { return orv2_form_focus(form, &focus); }},
      {"set text", [=] { return orv2_form_set_text(form, text_box, long_words); }},
  };
  for (const Row& row : rows) {
    ASSERT_EQ(row.call(), 0) << row.name;
    long n = 0;
    for (bool refused = true; refused; ++n) {
      const RefusedAllocation refusal(n);
      const std::int32_t status = row.call();
      refused = RefusedAllocation::happened();
      EXPECT_EQ(status, refused ? 7 : 0) << row.name << ", allocation " << n;
    }
    EXPECT_GT(n, 1) << row.name << " allocates nothing";
  }
}

TEST(RefusedMemory, LeavesFormsUsable) {
  Form form("frmOneWithAVeryLongNameThatNoStringKeepsInItself", u"caption", 100, 100, controls);
  form.control(2).grid().rows = 2;
  form.control(2).grid().set_format_string(
      u"one|some header that no string keeps in itself, being far too long");
  const orv2_user_interface callbacks{
      sizeof(callbacks), nullptr, [](void*, const char*, std::int32_t, const char*) { return 0; },
      [](void*, orv2_form* shown) { return test_form_functions(shown), 0; }, nullptr};
  ASSERT_EQ(orv2_set_user_interface(&callbacks), 0);
  form.show_modal();
  EXPECT_EQ(form.control(1).text().to_utf8(), long_words);
  EXPECT_EQ(orv2_set_user_interface(nullptr), 0);
}

}  // namespace
}  // namespace orv2_geo::testing_support
