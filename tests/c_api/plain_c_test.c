/* The library as a plain C host uses it: only the header and the shared
 * library. Prints what failed, and at the end how much was checked. */
#include <stdio.h>
#include <string.h>

#include "orv2_geo/orv2_geo.h"

/* ---- Checks -------------------------------------------------------------- */

static int checked = 0;
static int failed = 0;

static void check(int holds, const char* what, const char* file, int line) {
  ++checked;
  if (holds) return;
  ++failed;
  fprintf(stderr, "%s:%d: failed: %s\n", file, line, what);
}

#define CHECK(condition) check((condition) != 0, #condition, __FILE__, __LINE__)

/* Whether the last failure on this thread is this one, and has words. */
static int last_is(int32_t number, const char* source) {
  orv2_failure failure;
  if (orv2_last_failure(&failure) != 0 || failure.number != number) return 0;
  return strlen(failure.description) != 0 && strcmp(failure.source, source) == 0;
}

#define FAILS(call, expected_number, expected_source) \
  CHECK((call) == (expected_number) && last_is(expected_number, expected_source))

/* ---- Values -------------------------------------------------------------- */

static orv2_value tagged(uint16_t tag) {
  orv2_value value;
  memset(&value, 0, sizeof(value));
  value.tag = tag;
  return value;
}

static orv2_value f64_value(double number) {
  orv2_value value = tagged(ORV2_F64);
  value.as.f64 = number;
  return value;
}

static orv2_value variable(uint16_t type, void* pointer) {
  orv2_value value = tagged((uint16_t)(type | ORV2_BYREF));
  value.as.pointer = pointer;
  return value;
}

static orv2_value utf8_value(const char* text) {
  orv2_value value = tagged(ORV2_UTF8);
  value.as.utf8 = text;
  return value;
}

static orv2_value handle_value(uint16_t tag, orv2_handle handle) {
  orv2_value value = tagged(tag);
  value.as.handle = handle;
  return value;
}

static const char algorismos_name[] = "Orv2_Geo.cgeo_Algorismos";
static const char func_deriv_name[] = "Orv2_Geo.cgeo_FuncDeriv";

static orv2_handle created(const char* name) {
  orv2_handle object = 0;
  CHECK(orv2_create(name, &object) == 0 && object != 0);
  return object;
}

static size_t position_of(orv2_handle object, const char* name) {
  size_t position = 9999;
  CHECK(orv2_find_member(object, name, ORV2_ANY, &position) == 0);
  return position;
}

/* ---- Objects ------------------------------------------------------------- */

static void names_of_classes_ignore_case(void) {
  orv2_handle object = 0;
  CHECK(orv2_create("ORV2_GEO.CGEO_algorismos", &object) == 0);
  CHECK(orv2_release(object) == 0);
  object = 77;
  FAILS(orv2_create("Orv2_Geo.cgeo_Nada", &object), 429, "Orv2_Geo");
  CHECK(object == 77);
}

static void an_object_lives_until_its_last_reference_goes(void) {
  const orv2_handle object = created(func_deriv_name);
  size_t class_index = 99;
  CHECK(orv2_reference(object) == 0);
  CHECK(orv2_release(object) == 0);
  CHECK(orv2_class_of(object, &class_index) == 0);
  CHECK(orv2_release(object) == 0);
  FAILS(orv2_class_of(object, &class_index), 5, "");
  FAILS(orv2_release(object), 5, "");
  FAILS(orv2_class_of(0, &class_index), 91, "");
  CHECK(orv2_release(0) == 0);
}

static void a_member_is_found_by_name_and_kind(void) {
  const orv2_handle object = created(func_deriv_name);
  size_t read = 0;
  size_t write = 0;
  size_t method = 0;
  CHECK(orv2_find_member(object, "pi", ORV2_PROPERTY_READ, &read) == 0);
  CHECK(orv2_find_member(object, "PI", ORV2_PROPERTY_WRITE, &write) == 0);
  CHECK(write == read + 1);
  CHECK(position_of(object, "Pi") == read);
  CHECK(orv2_find_member(object, "F_logN", ORV2_METHOD, &method) == 0);
  CHECK(position_of(object, "F_LogN") == method);
  FAILS(orv2_find_member(object, "Pi", ORV2_METHOD, &method), 438, func_deriv_name);
  FAILS(orv2_find_member(object, "F_LogN", ORV2_PROPERTY_WRITE, &method), 438, func_deriv_name);
  FAILS(orv2_find_member(object, "F_LogM", ORV2_ANY, &method), 438, func_deriv_name);
  orv2_release(object);
}

/* ---- Calls --------------------------------------------------------------- */

static void azimut_writes_the_hosts_variable(void) {
  const orv2_handle object = created(algorismos_name);
  const size_t azimut = position_of(object, "Azimut");
  double dx = -1.0;
  double dy = 0.0;
  double azimuth = 7.0;
  orv2_value result = f64_value(1.0);
  orv2_value arguments[3];
  arguments[0] = variable(ORV2_F64, &dx);
  arguments[1] = variable(ORV2_F64, &dy);
  arguments[2] = variable(ORV2_F64, &azimuth);
  CHECK(orv2_call(object, azimut, arguments, 3, &result) == 0);
  CHECK(azimuth == 300.0 && dx == -1.0 && dy == 0.0);
  CHECK(result.tag == ORV2_NONE);
  dx = 0.0;
  dy = 1.0;
  CHECK(orv2_call_name(object, "AZIMUT", arguments, 3, NULL) == 0);
  CHECK(azimuth == 0.0);
  arguments[0] = f64_value(-1.0);
  arguments[1] = f64_value(0.0);
  CHECK(orv2_call(object, azimut, arguments, 3, NULL) == 0);
  CHECK(azimuth == 300.0);
  orv2_release(object);
}

static void one_variable_given_twice_is_one_variable(void) {
  const orv2_handle object = created(algorismos_name);
  double shared = -1.0;
  double dy = 0.0;
  orv2_value arguments[3];
  arguments[0] = variable(ORV2_F64, &shared);
  arguments[1] = variable(ORV2_F64, &dy);
  arguments[2] = variable(ORV2_F64, &shared);
  CHECK(orv2_call_name(object, "Azimut", arguments, 3, NULL) == 0);
  CHECK(shared == 300.0);
  /* dx = 1, dy = -1 alone is 150. In dy's own place the angle, -0.8 at first, is
   * turned by a half circle and is then no longer below zero: 150 as well. */
  arguments[2] = variable(ORV2_F64, &dy);
  shared = 1.0;
  dy = -1.0;
  CHECK(orv2_call_name(object, "Azimut", arguments, 3, NULL) == 0);
  CHECK(dy > 149.9999 && dy < 150.0001);
  orv2_release(object);
}

static void atn2_corrects_the_callers_zero(void) {
  const orv2_handle object = created(algorismos_name);
  double x = 1.0;
  double y = 0.0;
  orv2_value arguments[2];
  orv2_value result = tagged(ORV2_NONE);
  arguments[0] = variable(ORV2_F64, &x);
  arguments[1] = variable(ORV2_F64, &y);
  CHECK(orv2_call_name(object, "Atn2", arguments, 2, &result) == 0);
  CHECK(y == 1e-09 && x == 1.0);
  CHECK(result.tag == ORV2_F32);
  orv2_release(object);
}

static void properties_are_read_and_written(void) {
  static const char* const names[] = {"Pi", "RPi"};
  const orv2_handle object = created(func_deriv_name);
  size_t i;
  for (i = 0; i < 2; ++i) {
    const orv2_value value = f64_value(0.25 + (double)i);
    orv2_value result = tagged(ORV2_NONE);
    size_t write = 0;
    CHECK(orv2_call_name(object, names[i], NULL, 0, &result) == 0);
    CHECK(result.tag == ORV2_F64 && result.as.f64 == 0.0);
    CHECK(orv2_call_name(object, names[i], &value, 1, NULL) == 0);
    CHECK(orv2_call(object, position_of(object, names[i]), NULL, 0, &result) == 0);
    CHECK(result.as.f64 == 0.25 + (double)i);
    CHECK(orv2_find_member(object, names[i], ORV2_PROPERTY_WRITE, &write) == 0);
    CHECK(orv2_call(object, write, &value, 1, &result) == 0);
    CHECK(result.tag == ORV2_NONE);
  }
  orv2_release(object);
}

static void a_text_is_converted_to_the_number_it_shows(void) {
  const orv2_handle object = created(algorismos_name);
  const float half = 0.5F;
  orv2_value as_number = tagged(ORV2_F32);
  const orv2_value as_text = utf8_value("0.5");
  orv2_value from_number = tagged(ORV2_NONE);
  orv2_value from_text = tagged(ORV2_NONE);
  as_number.as.f32 = half;
  CHECK(orv2_call_name(object, "Arccos", &as_number, 1, &from_number) == 0);
  CHECK(orv2_call_name(object, "Arccos", &as_text, 1, &from_text) == 0);
  CHECK(from_text.tag == ORV2_F32 && from_text.as.f32 == from_number.as.f32);
  orv2_release(object);
}

static void failing_calls_leave_the_result_alone(void) {
  const orv2_handle object = created(func_deriv_name);
  const orv2_value zero = f64_value(0.0);
  const orv2_value two[2] = {f64_value(1.0), f64_value(2.0)};
  const orv2_value no_number = utf8_value("medio");
  const orv2_value array = handle_value(ORV2_VARIANT, 0);
  const orv2_value left_out = tagged(ORV2_OMITTED);
  orv2_value result = f64_value(42.0);
  FAILS(orv2_call_name(object, "F_LogN", &zero, 1, &result), 5, func_deriv_name);
  FAILS(orv2_call_name(object, "F_LogN", two, 2, &result), 450, func_deriv_name);
  FAILS(orv2_call_name(object, "F_LogN", NULL, 0, &result), 449, func_deriv_name);
  FAILS(orv2_call_name(object, "F_LogN", &left_out, 1, &result), 449, func_deriv_name);
  FAILS(orv2_call_name(object, "F_LogN", &no_number, 1, &result), 13, func_deriv_name);
  FAILS(orv2_call_name(object, "F_LogN", &array, 1, &result), 13, func_deriv_name);
  FAILS(orv2_call_name(object, "F_LogM", &zero, 1, &result), 438, func_deriv_name);
  FAILS(orv2_call(object, 1000, &zero, 1, &result), 438, func_deriv_name);
  CHECK(result.tag == ORV2_F64 && result.as.f64 == 42.0);
  orv2_release(object);
}

static void a_variable_of_another_type_is_a_mismatch(void) {
  const orv2_handle object = created(algorismos_name);
  float dx = -1.0F;
  double dy = 0.0;
  double azimuth = 7.0;
  orv2_value arguments[3];
  arguments[0] = variable(ORV2_F32, &dx);
  arguments[1] = variable(ORV2_F64, &dy);
  arguments[2] = variable(ORV2_F64, &azimuth);
  FAILS(orv2_call_name(object, "Azimut", arguments, 3, NULL), 13, algorismos_name);
  CHECK(azimuth == 7.0);
  orv2_release(object);
}

/* ---- The catalogue ------------------------------------------------------- */

static void check_parameters(size_t class_index, size_t position, size_t count) {
  orv2_parameter_info parameter;
  int32_t use = -1;
  size_t i;
  for (i = 0; i < count; ++i) {
    CHECK(orv2_parameter_at(class_index, position, i, &parameter) == 0);
    CHECK(strlen(parameter.name) != 0);
    CHECK((parameter.type & 0xff) > ORV2_NONE && (parameter.type & 0xff) <= ORV2_STRING_ARRAY);
    CHECK(!parameter.has_default || parameter.optional);
    CHECK(orv2_parameter_use(class_index, position, i, &use) == 0);
    CHECK(use == ORV2_READ || (parameter.type & ORV2_BYREF) != 0);
    CHECK(use != ORV2_RESIZED || (parameter.type & 0xff) >= ORV2_DOUBLE_ARRAY);
  }
  FAILS(orv2_parameter_at(class_index, position, count, &parameter), 9, "");
}

static void check_members(size_t class_index, size_t count) {
  orv2_member_info member;
  size_t i;
  for (i = 0; i < count; ++i) {
    CHECK(orv2_member_at(class_index, i, &member) == 0);
    CHECK(strlen(member.name) != 0);
    CHECK(member.kind >= ORV2_METHOD && member.kind <= ORV2_PROPERTY_WRITE);
    check_parameters(class_index, i, member.parameter_count);
  }
  FAILS(orv2_member_at(class_index, count, &member), 9, "");
}

static void every_class_in_the_catalogue_can_be_created(void) {
  orv2_class_info info;
  size_t i;
  CHECK(orv2_class_count() == 7);
  for (i = 0; i < orv2_class_count(); ++i) {
    orv2_handle object;
    size_t index = 99;
    CHECK(orv2_class_at(i, &info) == 0);
    CHECK(strncmp(info.registered_name, "Orv2_Geo.", 9) == 0);
    CHECK(strcmp(info.registered_name + 9, info.name) == 0);
    CHECK(info.member_count > 0);
    check_members(i, info.member_count);
    object = created(info.registered_name);
    CHECK(orv2_class_of(object, &index) == 0 && index == i);
    orv2_release(object);
  }
  FAILS(orv2_class_at(i, &info), 9, "");
}

static void the_catalogue_tells_types_and_directions(void) {
  const orv2_handle object = created(algorismos_name);
  const size_t azimut = position_of(object, "Azimut");
  orv2_member_info member;
  orv2_parameter_info parameter;
  size_t class_index = 99;
  int32_t use = -1;
  CHECK(orv2_class_of(object, &class_index) == 0);
  CHECK(orv2_member_at(class_index, azimut, &member) == 0);
  CHECK(strcmp(member.name, "Azimut") == 0 && member.kind == ORV2_METHOD);
  CHECK(member.result == ORV2_NONE && member.parameter_count == 3);
  CHECK(orv2_parameter_at(class_index, azimut, 2, &parameter) == 0);
  CHECK(strcmp(parameter.name, "aZ") == 0);
  CHECK(parameter.type == (ORV2_F64 | ORV2_BYREF) && !parameter.optional);
  CHECK(orv2_parameter_use(class_index, azimut, 1, &use) == 0 && use == ORV2_READ);
  CHECK(orv2_parameter_use(class_index, azimut, 2, &use) == 0 && use == ORV2_WRITTEN);
  orv2_release(object);
}

static void every_listed_failure_has_words(void) {
  int32_t number = 0;
  const char* words = NULL;
  size_t i = 0;
  int32_t before = 0;
  while (orv2_failure_at(i, &number, &words) == 0) {
    CHECK(number > before && strlen(words) != 0);
    before = number;
    ++i;
  }
  CHECK(i == 14);
  FAILS(orv2_failure_at(i, &number, &words), 9, "");
}

/* ---- Arrays -------------------------------------------------------------- */

static orv2_handle made_array(uint16_t type, int32_t lower, uint32_t count) {
  orv2_handle array = 0;
  CHECK(orv2_array_make(type, lower, count, 1, &array) == 0 && array != 0);
  return array;
}

static void a_made_array_is_described_and_resized(void) {
  const orv2_handle array = made_array(ORV2_DOUBLE_ARRAY, 5, 3);
  orv2_array_info info;
  int32_t lower = 0;
  int32_t upper = 0;
  void* data = NULL;
  CHECK(orv2_array_describe(array, &info) == 0);
  CHECK(info.type == ORV2_DOUBLE_ARRAY && info.dimensions == 1 && info.allocated == -1);
  CHECK(info.locked == 0 && info.lower == 5 && info.count == 3);
  CHECK(orv2_array_data(array, &data) == 0 && data != NULL);
  ((double*)data)[2] = 2.5;
  CHECK(orv2_array_resize(array, 6, 9, -1) == 0);
  CHECK(orv2_array_bounds(array, &lower, &upper) == 0 && lower == 6 && upper == 9);
  CHECK(orv2_array_data(array, &data) == 0);
  CHECK(((double*)data)[1] == 2.5 && ((double*)data)[3] == 0.0);
  CHECK(orv2_array_resize(array, 6, 9, 0) == 0);
  CHECK(orv2_array_data(array, &data) == 0 && ((double*)data)[1] == 0.0);
  FAILS(orv2_array_resize(array, 3, 2, -1), 9, "");
  orv2_release(array);
}

static void a_locked_array_cannot_be_resized(void) {
  const orv2_handle array = made_array(ORV2_LONG_ARRAY, 0, 2);
  orv2_array_info info;
  CHECK(orv2_array_lock(array) == 0);
  CHECK(orv2_array_describe(array, &info) == 0 && info.locked == -1);
  FAILS(orv2_array_resize(array, 0, 9, -1), 10, "");
  CHECK(orv2_array_unlock(array) == 0);
  CHECK(orv2_array_resize(array, 0, 9, -1) == 0);
  FAILS(orv2_array_unlock(array), 5, "");
  orv2_release(array);
}

static void an_unallocated_array_has_no_bounds(void) {
  orv2_handle array = 0;
  orv2_array_info info;
  int32_t lower = 77;
  int32_t upper = 78;
  void* data = &lower;
  CHECK(orv2_array_new(ORV2_SHORT_ARRAY, &array) == 0);
  CHECK(orv2_array_describe(array, &info) == 0);
  CHECK(info.dimensions == 0 && info.allocated == 0 && info.lower == 0 && info.count == 0);
  FAILS(orv2_array_bounds(array, &lower, &upper), 9, "");
  CHECK(lower == 77 && upper == 78);
  CHECK(orv2_array_data(array, &data) == 0 && data == NULL);
  orv2_release(array);
  FAILS(orv2_array_new(ORV2_F64, &array), 13, "");
  FAILS(orv2_array_make(ORV2_SHORT_ARRAY, 0, 1, 0, &array), 5, "");
}

typedef struct {
  float elements[8];
  int32_t asked_lower;
  uint32_t asked_count;
  int16_t kept;
} host_buffer;

static int32_t resize_host_buffer(void* context, int32_t old_lower, uint32_t old_count,
                                  int32_t lower, uint32_t count, int16_t keep, void** data) {
  host_buffer* const buffer = (host_buffer*)context;
  CHECK(old_lower == 0 && old_count == 4);
  if (count > 8) return 7;
  buffer->asked_lower = lower;
  buffer->asked_count = count;
  buffer->kept = keep;
  *data = buffer->elements;
  return 0;
}

static void an_adopted_array_works_in_the_hosts_buffer(void) {
  host_buffer buffer = {{1.0F, 2.0F, 3.0F, 4.0F, 0.0F, 0.0F, 0.0F, 0.0F}, 0, 0, 0};
  orv2_handle array = 0;
  void* data = NULL;
  CHECK(orv2_array_adopt(ORV2_SINGLE_ARRAY, buffer.elements, 0, 4, resize_host_buffer, &buffer,
                         &array) == 0);
  CHECK(orv2_array_data(array, &data) == 0 && data == buffer.elements);
  FAILS(orv2_array_resize(array, 0, 99, -1), 7, "");
  CHECK(orv2_array_resize(array, 0, 5, -1) == 0);
  CHECK(buffer.asked_lower == 0 && buffer.asked_count == 6 && buffer.kept == -1);
  orv2_release(array);
  CHECK(buffer.elements[3] == 4.0F);
}

static void an_adopted_array_without_a_callback_is_fixed(void) {
  int32_t elements[3] = {1, 2, 3};
  orv2_handle array = 0;
  CHECK(orv2_array_adopt(ORV2_LONG_ARRAY, elements, -1, 3, NULL, NULL, &array) == 0);
  FAILS(orv2_array_resize(array, -1, 5, -1), 10, "");
  orv2_release(array);
  FAILS(orv2_array_adopt(ORV2_STRING_ARRAY, elements, 0, 1, NULL, NULL, &array), 5, "");
}

static const uint16_t hello[] = {'h', 'o', 0, 'l', 'a'};

static void an_array_of_texts_gives_back_what_was_set(void) {
  const orv2_handle array = made_array(ORV2_STRING_ARRAY, 1, 2);
  const uint16_t* units = NULL;
  size_t count = 99;
  void* data = NULL;
  CHECK(orv2_array_get_text(array, 1, &units, &count) == 0 && count == 0);
  CHECK(orv2_array_set_text(array, 2, hello, 5) == 0);
  CHECK(orv2_array_get_text(array, 2, &units, &count) == 0 && count == 5);
  CHECK(memcmp(units, hello, sizeof(hello)) == 0);
  CHECK(orv2_array_set_text(array, 2, NULL, 0) == 0);
  CHECK(orv2_array_get_text(array, 2, &units, &count) == 0 && count == 0);
  FAILS(orv2_array_get_text(array, 3, &units, &count), 9, "");
  FAILS(orv2_array_set_text(array, 0, hello, 5), 9, "");
  FAILS(orv2_array_data(array, &data), 5, "");
  orv2_release(array);
}

/* ---- Texts --------------------------------------------------------------- */

static void a_text_variable_keeps_its_units(void) {
  orv2_handle text = 0;
  const uint16_t* units = NULL;
  size_t count = 99;
  CHECK(orv2_text_new(NULL, 0, &text) == 0);
  CHECK(orv2_text_get(text, &units, &count) == 0 && count == 0);
  CHECK(orv2_text_set(text, hello, 5) == 0);
  CHECK(orv2_text_get(text, &units, &count) == 0 && count == 5);
  CHECK(memcmp(units, hello, sizeof(hello)) == 0);
  FAILS(orv2_text_set(text, NULL, 1), 5, "");
  CHECK(orv2_text_get(text, &units, &count) == 0 && count == 5);
  orv2_release(text);
}

static void a_text_variable_is_read_as_a_number(void) {
  static const uint16_t half[] = {'0', '.', '5'};
  const orv2_handle object = created(algorismos_name);
  orv2_handle text = 0;
  orv2_value argument;
  orv2_value result = tagged(ORV2_NONE);
  CHECK(orv2_text_new(half, 3, &text) == 0);
  argument = handle_value(ORV2_TEXT, text);
  CHECK(orv2_call_name(object, "Arccos", &argument, 1, &result) == 0 && result.tag == ORV2_F32);
  argument = handle_value(ORV2_TEXT | ORV2_BYREF, text);
  CHECK(orv2_call_name(object, "Arccos", &argument, 1, &result) == 0 && result.tag == ORV2_F32);
  orv2_release(text);
  FAILS(orv2_call_name(object, "Arccos", &argument, 1, &result), 5, algorismos_name);
  orv2_release(object);
}

/* ---- Host objects, failures and the user interface ----------------------- */

static int releases = 0;

static int32_t host_set(void* context, const char* name, const orv2_value* value) {
  (void)context, (void)name, (void)value;
  return 0;
}

static int32_t host_call(void* context, const char* name, const orv2_value* arguments, size_t count,
                         orv2_value* result) {
  (void)context, (void)name, (void)arguments, (void)count, (void)result;
  return 0;
}

static void host_release(void* context) {
  CHECK(context == &releases);
  ++releases;
}

static void a_host_object_is_released_once(void) {
  const orv2_host_object callbacks = {sizeof(orv2_host_object), host_set, host_call, host_release};
  orv2_handle object = 0;
  size_t ignored = 0;
  CHECK(orv2_host_object_new(&callbacks, &releases, &object) == 0 && object != 0);
  CHECK(orv2_reference(object) == 0 && orv2_release(object) == 0 && releases == 0);
  FAILS(orv2_class_of(object, &ignored), 5, "");
  FAILS(orv2_call(object, 0, NULL, 0, NULL), 5, "");
  CHECK(orv2_release(object) == 0 && releases == 1);
  FAILS(orv2_release(object), 5, "");
  CHECK(releases == 1);
}

static void a_host_object_is_handed_over_as_an_argument(void) {
  const orv2_host_object callbacks = {sizeof(orv2_host_object), NULL, NULL, NULL};
  const orv2_handle object = created(func_deriv_name);
  orv2_handle host = 0;
  orv2_value arguments[1];
  CHECK(orv2_host_object_new(&callbacks, NULL, &host) == 0);
  arguments[0] = handle_value(ORV2_OBJECT, host);
  FAILS(orv2_call_name(object, "F_LogN", arguments, 1, NULL), 13, func_deriv_name);
  arguments[0] = variable(ORV2_OBJECT, &host);
  FAILS(orv2_call_name(object, "F_LogN", arguments, 1, NULL), 13, func_deriv_name);
  orv2_release(host);
  orv2_release(object);
}

static void a_failure_that_a_callback_names_needs_a_number(void) {
  CHECK(orv2_set_failure(1234, "mal", "host") == 0);
  CHECK(orv2_set_failure(-1, NULL, NULL) == 0);
  FAILS(orv2_set_failure(0, "mal", "host"), 5, "");
}

static int32_t show_box(void* context, const char* text, int32_t flags, const char* caption) {
  (void)context, (void)text, (void)flags, (void)caption;
  return 0;
}

static int32_t show_form(void* context, orv2_form* form) {
  (void)context, (void)form;
  return 0;
}

static void callbacks_for_the_user_interface_are_installed_whole(void) {
  orv2_user_interface callbacks = {sizeof(orv2_user_interface), NULL, show_box, show_form, NULL};
  int16_t installed = 0;
  CHECK(orv2_set_user_interface(&callbacks) == 0);
  callbacks.size = 1;
  FAILS(orv2_set_user_interface(&callbacks), 5, "");
  callbacks.size = sizeof(callbacks);
  CHECK(orv2_has_user_interface(&installed) == 0 && installed == -1);
  callbacks.error_box = NULL; /* the system's */
  CHECK(orv2_set_user_interface(&callbacks) == 0);
  CHECK(orv2_set_user_interface(NULL) == 0);
  CHECK(orv2_has_user_interface(&installed) == 0 && installed == 0);
  CHECK(orv2_set_console_interface() == 0);
  CHECK(orv2_has_user_interface(&installed) == 0 && installed == -1);
  CHECK(orv2_set_user_interface(NULL) == 0);
}

static void a_text_is_read_as_a_number(void) {
  const uint16_t units[] = {'2', '5'};
  double number = 0.0;
  CHECK(orv2_number_of_text(units, 2, &number) == 0 && number == 25.0);
  FAILS(orv2_number_of_text(units, 0, &number), 13, "");
}

static void no_form_is_no_form(void) {
  orv2_form_info form;
  orv2_form_frame frame;
  orv2_control_look look;
  orv2_grid_font font;
  orv2_control_info control;
  orv2_grid_info grid;
  int32_t alignment = 0;
  const char* text = NULL;
  FAILS(orv2_form_describe(NULL, &form), 5, "");
  FAILS(orv2_form_control(NULL, 0, &control), 5, "");
  FAILS(orv2_form_grid(NULL, 0, &grid), 5, "");
  FAILS(orv2_form_alignment(NULL, 0, 0, &alignment), 5, "");
  FAILS(orv2_form_describe_frame(NULL, &frame), 5, "");
  FAILS(orv2_form_look(NULL, 0, &look), 5, "");
  FAILS(orv2_form_font(NULL, 0, &font), 5, "");
  FAILS(orv2_form_cell(NULL, 0, 0, 0, &text), 5, "");
  FAILS(orv2_form_focus(NULL, &text), 5, "");
  FAILS(orv2_form_set_focus(NULL, "a"), 5, "");
  FAILS(orv2_form_click(NULL, "a"), 5, "");
  FAILS(orv2_form_select(NULL, "a"), 5, "");
  FAILS(orv2_form_set_text(NULL, "a", "b"), 5, "");
  FAILS(orv2_form_press_enter(NULL), 5, "");
  FAILS(orv2_form_press_escape(NULL), 5, "");
  FAILS(orv2_form_close(NULL), 5, "");
}

static void before_any_failure_there_is_none(void) {
  orv2_failure failure;
  CHECK(orv2_last_failure(&failure) == 0);
  CHECK(failure.number == 0 && strlen(failure.description) == 0 && strlen(failure.source) == 0);
  CHECK(orv2_last_failure(NULL) == 5);
}

/* -------------------------------------------------------------------------- */

static void test_objects_and_calls(void) {
  names_of_classes_ignore_case();
  an_object_lives_until_its_last_reference_goes();
  a_member_is_found_by_name_and_kind();
  azimut_writes_the_hosts_variable();
  one_variable_given_twice_is_one_variable();
  atn2_corrects_the_callers_zero();
  properties_are_read_and_written();
  a_text_is_converted_to_the_number_it_shows();
  failing_calls_leave_the_result_alone();
  a_variable_of_another_type_is_a_mismatch();
}

static void test_catalogue(void) {
  every_class_in_the_catalogue_can_be_created();
  the_catalogue_tells_types_and_directions();
  every_listed_failure_has_words();
}

static void test_arrays_and_texts(void) {
  a_made_array_is_described_and_resized();
  a_locked_array_cannot_be_resized();
  an_unallocated_array_has_no_bounds();
  an_adopted_array_works_in_the_hosts_buffer();
  an_adopted_array_without_a_callback_is_fixed();
  an_array_of_texts_gives_back_what_was_set();
  a_text_variable_keeps_its_units();
  a_text_variable_is_read_as_a_number();
}

static void test_hosts_own(void) {
  a_host_object_is_released_once();
  a_host_object_is_handed_over_as_an_argument();
  a_failure_that_a_callback_names_needs_a_number();
  callbacks_for_the_user_interface_are_installed_whole();
  a_text_is_read_as_a_number();
  no_form_is_no_form();
}

int main(void) {
  before_any_failure_there_is_none();
  test_objects_and_calls();
  test_catalogue();
  test_arrays_and_texts();
  test_hosts_own();
  printf("%d checks, %d failed\n", checked, failed);
  return failed == 0 ? 0 : 1;
}
