#include "fuzz/host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>
#include <optional>
#include <random>
#include <utility>

#include "tests/support/refused_memory.h"

namespace orv2_geo::fuzzing {

namespace {

using testing_support::RefusedAllocation;

constexpr std::size_t bytes_to_begin = 1024;
constexpr std::uint16_t untouched = 0x5a5a;
constexpr bool is_array(std::uint16_t type) {
  return type >= ORV2_DOUBLE_ARRAY && type <= ORV2_STRING_ARRAY;
}
constexpr bool is_number(std::uint16_t type) { return type >= ORV2_I16 && type <= ORV2_BOOL; }

std::size_t element_size(std::uint16_t type) {
  switch (type) {
    case ORV2_DOUBLE_ARRAY: return sizeof(double);
    case ORV2_SHORT_ARRAY: return sizeof(std::int16_t);
    default: return sizeof(std::int32_t);
  }
}

// The catalogue, asked once through the boundary.
struct Member {
  std::string name;
  std::vector<std::uint16_t> parameters;
};
struct Class {
  std::string registered_name;
  std::vector<Member> members;
};

std::vector<Class> read_catalogue() {
  std::vector<Class> classes(orv2_class_count());
  for (std::size_t c = 0; c < classes.size(); ++c) {
    orv2_class_info info{};
    orv2_class_at(c, &info);
    classes[c].registered_name = info.registered_name;
    for (std::size_t m = 0; m < info.member_count; ++m) {
      orv2_member_info member{};
      orv2_member_at(c, m, &member);
      Member& one = classes[c].members.emplace_back();
      one.name = member.name;
      for (std::size_t p = 0; p < member.parameter_count; ++p) {
        orv2_parameter_info parameter{};
        orv2_parameter_at(c, m, p, &parameter);
        one.parameters.push_back(parameter.type);
      }
    }
  }
  return classes;
}

const std::vector<Class>& catalogue() {
  static const std::vector<Class> classes = read_catalogue();
  return classes;
}

const std::vector<std::int32_t>& numbers_of_library() {
  static const std::vector<std::int32_t> numbers = [] {
    std::vector<std::int32_t> all;
    std::int32_t number = 0;
    const char* words = nullptr;
    while (orv2_failure_at(all.size(), &number, &words) == 0) all.push_back(number);
    return all;
  }();
  return numbers;
}

const std::uint16_t* data_of(const std::u16string& units) {
  return reinterpret_cast<const std::uint16_t*>(units.data());
}

orv2_value tagged(int tag, orv2_handle handle = 0) {
  orv2_value value{};
  value.tag = static_cast<std::uint16_t>(tag);
  value.as.handle = handle;
  return value;
}

}  // namespace

Host::Host(const std::uint8_t* data, std::size_t size)
    : bytes_(data, size),
      points_(static_cast<std::uint32_t>(source_->below(12))),
      number_kind_(source_->below(Source::kinds)) {
  (void)numbers_of_library();  // asked before there is a failure to look at
  orv2_user_interface screen{sizeof screen, this, on_box, on_form, on_events};
  checked(orv2_set_user_interface(&screen));
  // What it begins with takes few of the bytes: most are for what it does.
  std::mt19937 numbers(bytes_.any<std::uint16_t>());
  std::vector<std::uint8_t> beginning(bytes_to_begin);
  for (std::uint8_t& byte : beginning) byte = static_cast<std::uint8_t>(numbers());
  Source first(beginning.data(), beginning.size());
  source_ = &first;
  for (Owned& owned : things_) renew(owned);
  write_variables();
  source_ = &bytes_;
}

Host::~Host() {
  EXPECT_EQ(orv2_set_user_interface(nullptr), 0);
  acts_ = most_acts;  // callbacks do no more
  for (Owned& owned : things_) give_back(owned);
  EXPECT_EQ(awaited_, 0);
}

void Host::act_to_the_end() {
  while (!source_->over() && acts_ < most_acts) act();
}

void Host::expect_usable() {
  const bool form_is_gone = form_ == nullptr;
  EXPECT_TRUE(form_is_gone);
  for (const Owned& owned : things_) {
    if (owned.type != ORV2_OBJECT || owned.handle == 0) continue;
    std::size_t of = 0;
    if (orv2_class_of(owned.handle, &of) != 0) continue;  // the host's own
    const Class& description = catalogue()[of];
    std::size_t position = description.members.size();
    EXPECT_EQ(
        orv2_find_member(owned.handle, description.members[0].name.c_str(), ORV2_ANY, &position),
        0);
    EXPECT_EQ(position, 0U);
    if (description.registered_name != "Orv2_Geo.cgeo_Algorismos") continue;
    double east = 1.0, azimuth = 0.0;
    orv2_value arguments[] = {tagged(ORV2_F64), tagged(ORV2_F64), tagged(ORV2_F64 | ORV2_BYREF)};
    arguments[0].as.f64 = arguments[1].as.f64 = east;
    arguments[2].as.pointer = &azimuth;
    EXPECT_EQ(orv2_call_name(owned.handle, "Azimut", arguments, 3, nullptr), 0);
    EXPECT_NEAR(azimuth, 49.9999999934714, 1e-12);
  }
}

// ---- Things ----------------------------------------------------------------

orv2_handle Host::new_object() {
  orv2_handle object = 0;
  const Class& of = catalogue()[source_->below(catalogue().size())];
  checked(orv2_create(of.registered_name.c_str(), &object));
  return object;
}

orv2_handle Host::new_host_object() {
  const orv2_host_object callbacks{sizeof callbacks, source_->one_in(8) ? nullptr : on_set,
                                   source_->one_in(8) ? nullptr : on_call, on_release};
  orv2_handle object = 0;
  if (checked(orv2_host_object_new(&callbacks, this, &object)) == 0) ++awaited_;
  return object;
}

orv2_handle Host::new_text() {
  const std::u16string units = source_->units(12);
  orv2_handle text = 0;
  checked(orv2_text_new(data_of(units), units.size(), &text));
  return text;
}

std::uint32_t Host::any_count() {
  return source_->one_in(4) ? static_cast<std::uint32_t>(source_->below(16)) : points_ + 1;
}

std::int32_t Host::any_lower() {
  constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t odd[] = {lowest, lowest + 1, -32768, -100, 100, 1000, 2147480000};
  if (source_->one_in(16)) return source_->one_of(odd);
  return source_->one_in(4) ? source_->between(-3, 3) : 0;
}

orv2_handle Host::new_array(std::uint16_t type) {
  const bool of_host = type != ORV2_STRING_ARRAY && source_->one_in(3);
  const orv2_handle array = of_host ? array_of_host(type) : array_of_library(type);
  if (array != 0) fill(array, type);
  return array;
}

orv2_handle Host::array_of_library(std::uint16_t type) {
  orv2_handle array = 0;
  if (source_->one_in(12)) {
    checked(orv2_array_new(type, &array));
    return array;
  }
  const auto dimensions =
      static_cast<std::uint16_t>(source_->one_in(12) ? source_->any<std::uint16_t>() : 1);
  checked(orv2_array_make(type, any_lower(), any_count(), dimensions, &array));
  return array;
}

orv2_handle Host::array_of_host(std::uint16_t type) {
  const std::uint32_t count = any_count();
  const std::size_t size = element_size(type);
  buffers_.push_back(
      std::make_unique<Buffer>(Buffer{this, size, std::make_unique<char[]>(count * size), count}));
  Buffer& buffer = *buffers_.back();
  orv2_handle array = 0;
  const orv2_resize resize = source_->one_in(4) ? nullptr : on_resize;
  if (source_->one_in(2)) {
    checked(
        orv2_array_adopt(type, buffer.bytes.get(), any_lower(), count, resize, &buffer, &array));
    return array;
  }
  orv2_array_info shape{};
  shape.type = type;
  shape.dimensions = static_cast<std::uint16_t>(source_->one_in(8) ? source_->below(4) : 1);
  shape.allocated = source_->one_in(8) ? 0 : -1;
  shape.lower = any_lower();
  shape.count = count;
  checked(orv2_array_host(&shape, buffer.bytes.get(), resize, &buffer, &array));
  return array;
}

void Host::fill(orv2_handle array, std::uint16_t type) {
  orv2_array_info info{};
  if (orv2_array_describe(array, &info) != 0) return;
  if (type == ORV2_STRING_ARRAY) {
    const std::size_t alphabet = source_->below(Source::alphabet_count);
    for (std::uint32_t i = 0; i < std::min(info.count, 16U) && info.dimensions == 1; ++i) {
      const std::u16string units = source_->units(4, alphabet);
      orv2_array_set_text(array, info.lower + static_cast<std::int32_t>(i), data_of(units),
                          units.size());
    }
    return;
  }
  void* data = nullptr;
  if (orv2_array_data(array, &data) != 0 || data == nullptr) return;
  for (std::uint32_t i = 0; i < std::min(info.count, 16U); ++i) {
    switch (type) {
      case ORV2_DOUBLE_ARRAY: static_cast<double*>(data)[i] = source_->number(number_kind_); break;
      case ORV2_SINGLE_ARRAY:
        static_cast<float*>(data)[i] = static_cast<float>(source_->number(number_kind_));
        break;
      case ORV2_LONG_ARRAY: static_cast<std::int32_t*>(data)[i] = source_->whole(); break;
      default: static_cast<std::int16_t*>(data)[i] = source_->any<std::int16_t>();
    }
  }
}

// Place by place another type, so that there is some of each; another one each time.
void Host::renew(Owned& owned) {
  constexpr std::uint16_t types[] = {
      ORV2_OBJECT,       ORV2_OBJECT,       ORV2_OBJECT,       ORV2_OBJECT,       ORV2_OBJECT,
      ORV2_TEXT,         ORV2_TEXT,         ORV2_DOUBLE_ARRAY, ORV2_DOUBLE_ARRAY, ORV2_DOUBLE_ARRAY,
      ORV2_DOUBLE_ARRAY, ORV2_LONG_ARRAY,   ORV2_LONG_ARRAY,   ORV2_SHORT_ARRAY,  ORV2_SHORT_ARRAY,
      ORV2_STRING_ARRAY, ORV2_STRING_ARRAY, ORV2_SINGLE_ARRAY};
  static_assert(std::size(types) == std::tuple_size_v<decltype(things_)>);
  const auto place = static_cast<std::size_t>(&owned - things_.data());
  give_back(owned);
  const std::uint16_t type = types[place];
  const orv2_handle handle = type == ORV2_OBJECT ? (place < 3 ? new_object() : new_host_object())
                             : type == ORV2_TEXT ? new_text()
                                                 : new_array(type);
  while (owned.handle != 0) give_back(owned);  // a callback was quicker
  owned = {handle, type, handle != 0 ? 1 : 0};
}

void Host::give_back(Owned& owned) {
  const Owned gone = std::exchange(owned, {});
  for (int k = 0; k < gone.references; ++k) EXPECT_EQ(orv2_release(gone.handle), 0);
}

orv2_handle Host::any_of(std::uint16_t type) {
  for (int tries = 0; tries < 8; ++tries) {
    const Owned& owned = things_[source_->below(things_.size())];
    if (owned.type == type) return owned.handle;
  }
  for (const Owned& owned : things_) {
    if (owned.type == type) return owned.handle;
  }
  return 0;
}

// In force or not, of any kind.
orv2_handle Host::any_handle() {
  if (!source_->one_in(16)) return any().handle;
  return source_->one_in(2) ? any().handle + (orv2_handle{1} << 32U) : source_->any<orv2_handle>();
}

orv2_handle Host::any_object() {
  return source_->one_in(16) ? any_handle() : things_[source_->below(3)].handle;
}

// ---- Values ----------------------------------------------------------------

void Host::write_variables() {
  for (std::size_t i = 0; i < places; ++i) {
    doubles_[i] =
        source_->number(source_->one_in(4) ? source_->below(Source::kinds) : number_kind_);
    singles_[i] = source_->single();
    longs_[i] = source_->one_in(2) ? static_cast<std::int32_t>(points_) : source_->whole();
    shorts_[i] = source_->any<std::int16_t>();
    variables_[i] = source_->one_in(4) ? any_handle() : any_of(ORV2_OBJECT);
  }
}

void* Host::variable_of(std::uint16_t type) {
  const std::size_t at = source_->below(places);
  switch (type) {
    case ORV2_I16:
    case ORV2_BOOL: return &shorts_[at];
    case ORV2_I32: return &longs_[at];
    case ORV2_F32: return &singles_[at];
    case ORV2_F64: return &doubles_[at];
    default: return &variables_[at];
  }
}

// A value for a parameter of that type: mostly one that it takes as it is.
orv2_value Host::value_of(std::uint16_t type) {
  if (is_array(type)) return tagged(type | (source_->one_in(2) ? ORV2_BYREF : 0), any_of(type));
  const bool by_reference = !source_->one_in(4);
  if (by_reference && (is_number(type) || type == ORV2_OBJECT)) {
    orv2_value value = tagged(type | ORV2_BYREF);
    value.as.pointer = source_->one_in(64) ? nullptr : variable_of(type);
    return value;
  }
  orv2_value value = tagged(type);
  switch (type) {
    case ORV2_F64: value.as.f64 = source_->number(); break;
    case ORV2_F32: value.as.f32 = source_->single(); break;
    case ORV2_I32: value.as.i32 = source_->whole(); break;
    case ORV2_I16:
    case ORV2_BOOL: value.as.i16 = source_->any<std::int16_t>(); break;
    case ORV2_TEXT:
      value = tagged(type | (by_reference ? ORV2_BYREF : 0), any_of(ORV2_TEXT));
      break;
    case ORV2_UTF8: {
      constexpr const char* texts[] = {"", "0.5", " 12 ", "1e400", "-", "abc", "\xff\xfe", nullptr};
      value.as.utf8 = source_->one_of(texts);
      break;
    }
    case ORV2_OBJECT: value.as.handle = source_->one_in(8) ? any_handle() : any_of(type); break;
    default: value.as.handle = any_handle();
  }
  return value;
}

orv2_value Host::any_value() {
  if (source_->one_in(16)) {
    // A tag without a pointer in it, of which there are few that mean something.
    const int tag = source_->any<std::uint16_t>() | 0x200;
    return tagged(tag, source_->any<orv2_handle>());
  }
  return value_of(static_cast<std::uint16_t>(source_->below(ORV2_UTF8 + 1)));
}

// Fitting ones for the member, with now and then another, one less or one more.
std::size_t Host::arguments_for(orv2_handle object, std::size_t position, orv2_value* arguments) {
  std::size_t of = 0;
  const bool is_member =
      orv2_class_of(object, &of) == 0 && position < catalogue()[of].members.size();
  if (!is_member || source_->one_in(32)) {
    const std::size_t count = source_->below(most_arguments);
    for (std::size_t i = 0; i < count; ++i) arguments[i] = any_value();
    return count;
  }
  const std::vector<std::uint16_t>& parameters = catalogue()[of].members[position].parameters;
  std::size_t count = parameters.size();
  for (std::size_t i = 0; i < count; ++i) {
    const auto type = static_cast<std::uint16_t>(parameters[i] & ~unsigned{ORV2_BYREF});
    arguments[i] = source_->one_in(24) ? any_value() : value_of(type);
  }
  if (source_->one_in(24)) arguments[count++] = any_value();
  if (source_->one_in(24) && count != 0) --count;
  return count;
}

// ---- Statuses --------------------------------------------------------------

bool Host::is_known(std::int32_t status) const {
  const auto has = [&](const std::vector<std::int32_t>& all) {
    return std::find(all.begin(), all.end(), status) != all.end();
  };
  return has(numbers_of_library()) || has(answers_);
}

// Every status is 0 or a number with words, which are remembered.
std::int32_t Host::checked(std::int32_t status) {
  if (status == 0) return status;
  EXPECT_TRUE(is_known(status)) << status;
  orv2_failure failure{};
  EXPECT_EQ(orv2_last_failure(&failure), 0);
  EXPECT_EQ(failure.number, status);
  EXPECT_NE(failure.description, nullptr);
  EXPECT_NE(failure.source, nullptr);
  return status;
}

void Host::expect_call(std::int32_t status, const orv2_value& result) {
  checked(status);
  EXPECT_EQ(status != 0, result.tag == untouched);
  if (result.tag == ORV2_TEXT || result.tag == ORV2_OBJECT) checked(orv2_release(result.as.handle));
}

// What a callback answers with.
std::int32_t Host::answer() {
  if (!source_->one_in(8)) return 0;
  constexpr std::int32_t numbers[] = {438, 1234, -5, 13, 7, 91, 70000};
  const std::int32_t number = source_->one_of(numbers);
  answers_.push_back(number);
  if (source_->one_in(2)) orv2_set_failure(number, source_->bytes(8).c_str(), "Host");
  return number;
}

// ---- Acts ------------------------------------------------------------------

void Host::act() {
  ++acts_;
  switch (source_->below(16)) {
    case 0: return work_on_array();
    case 1: return work_on_text();
    case 2: return renew(any());
    case 3: return write_variables();
    case 4: return call_by_name();
    case 5: return call_rows();
    case 6: return look_around();
    case 7: {
      Owned& owned = any();
      if (owned.handle != 0 && checked(orv2_reference(owned.handle)) == 0) ++owned.references;
      return;
    }
    case 8: {
      Owned& owned = any();
      if (owned.references < 1) return;
      const orv2_handle handle = owned.handle;
      if (--owned.references == 0) owned.handle = 0;
      EXPECT_EQ(orv2_release(handle), 0);
      return;
    }
    default: return call_member();
  }
}

void Host::call_member() {
  const orv2_handle object = any_object();
  std::size_t of = 0;
  const std::size_t members = orv2_class_of(object, &of) == 0 ? catalogue()[of].members.size() : 1;
  const std::size_t position =
      source_->one_in(32) ? source_->any<std::size_t>() : source_->below(members);
  orv2_value arguments[most_arguments + 1];
  const std::size_t count = arguments_for(object, position, arguments);
  orv2_value result = tagged(untouched);
  std::optional<RefusedAllocation> refused;
  if (source_->one_in(8)) refused.emplace(static_cast<long>(source_->below(40)));
  const std::int32_t status = orv2_call(object, position, arguments, count, &result);
  refused.reset();
  expect_call(status, result);
}

void Host::call_by_name() {
  const Class& of = catalogue()[source_->below(catalogue().size())];
  const Member& member = of.members[source_->below(of.members.size())];
  const std::string name = source_->one_in(8) ? source_->bytes(12) : member.name;
  const orv2_handle object = any_object();
  orv2_value arguments[most_arguments + 1];
  std::size_t position = 0;
  orv2_find_member(object, name.c_str(), static_cast<std::int32_t>(source_->below(5)), &position);
  const std::size_t count = arguments_for(object, position, arguments);
  orv2_value result = tagged(untouched);
  const bool without = source_->one_in(8);
  const std::int32_t status =
      orv2_call_name(object, name.c_str(), arguments, count, without ? nullptr : &result);
  if (without) {
    checked(status);
  } else {
    expect_call(status, result);
  }
}

void Host::call_rows() {
  constexpr std::size_t most_rows = 4;
  constexpr std::size_t longest_step = 2 * sizeof(double);
  alignas(double) char columns_of[most_arguments + 1][most_rows * longest_step];
  orv2_column columns[most_arguments + 1];
  alignas(double) char results[most_rows * sizeof(double)];
  std::int32_t failures[most_rows] = {};
  const orv2_handle object = any_object();
  const std::size_t position = source_->below(40);
  orv2_value arguments[most_arguments + 1];
  const std::size_t count = arguments_for(object, position, arguments);
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t at = 0; at < sizeof columns_of[i]; at += sizeof(double)) {
      const double number = source_->number(number_kind_);
      std::memcpy(columns_of[i] + at, &number, sizeof number);
    }
    columns[i] = {source_->one_in(3) ? nullptr : columns_of[i], source_->below(3) * sizeof(double)};
  }
  const std::size_t rows = source_->below(most_rows + 1);
  const bool each = source_->one_in(2);
  std::size_t done = most_rows + 1;
  const std::int32_t status = checked(orv2_call_rows(
      object, position, arguments, source_->one_in(8) ? nullptr : columns, count, rows,
      source_->one_in(2) ? nullptr : results, each ? failures : nullptr, &done));
  if (status == 0) {
    EXPECT_EQ(done, rows);
  }
  for (std::size_t row = 0; each && status == 0 && row < rows; ++row) {
    EXPECT_TRUE(failures[row] == 0 || is_known(failures[row])) << failures[row];
  }
}

void Host::work_on_array() {
  const orv2_handle array =
      source_->one_in(8) ? any_handle() : things_[7 + source_->below(11)].handle;
  orv2_array_info info{};
  switch (source_->below(8)) {
    case 0: checked(orv2_array_lock(array)); return;
    case 1: checked(orv2_array_unlock(array)); return;
    case 2: {
      const std::int32_t lower = any_lower();
      const std::int32_t upper = source_->one_in(16) ? source_->whole() : source_->between(-3, 20);
      checked(orv2_array_resize(array, lower, upper, static_cast<std::int16_t>(source_->below(2))));
      return;
    }
    case 3: {
      const std::u16string units = source_->units(6);
      checked(orv2_array_set_text(array, source_->whole(), data_of(units), units.size()));
      return;
    }
    case 4: {
      const std::uint16_t* units = nullptr;
      std::size_t count = 0;
      if (checked(orv2_array_get_text(array, source_->whole(), &units, &count)) != 0) return;
      const std::u16string copied(reinterpret_cast<const char16_t*>(units), count);
      EXPECT_EQ(copied.size(), count);
      return;
    }
    case 5: {
      std::int32_t lower = 0, upper = 0;
      checked(orv2_array_bounds(array, &lower, &upper));
      return;
    }
    default:
      if (checked(orv2_array_describe(array, &info)) == 0) fill(array, info.type);
  }
}

void Host::work_on_text() {
  const orv2_handle text = source_->one_in(8) ? any_handle() : any_of(ORV2_TEXT);
  const std::u16string units = source_->units(20);
  double number = 0.0;
  const std::uint16_t* got = nullptr;
  std::size_t count = 0;
  switch (source_->below(3)) {
    case 0: checked(orv2_number_of_text(data_of(units), units.size(), &number)); return;
    case 1:
      if (checked(orv2_text_set(text, data_of(units), units.size())) != 0) return;
      EXPECT_EQ(orv2_text_get(text, &got, &count), 0);
      EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(got), count), units);
      return;
    default: checked(orv2_text_get(text, &got, &count));
  }
}

// The questions that change nothing, and the form if one is up.
void Host::look_around() {
  if (form_ != nullptr && !source_->one_in(4)) return use_form();
  const std::size_t c = source_->below(10), m = source_->below(40), p = source_->below(16);
  orv2_class_info of{};
  orv2_member_info member{};
  orv2_parameter_info parameter{};
  std::int32_t number = 0;
  const char* words = nullptr;
  std::int16_t installed = 0;
  checked(orv2_class_at(c, &of));
  checked(orv2_member_at(c, m, &member));
  checked(orv2_parameter_at(c, m, p, &parameter));
  checked(orv2_parameter_use(c, m, p, &number));
  checked(orv2_failure_at(source_->below(80), &number, &words));
  checked(orv2_has_user_interface(&installed));
  EXPECT_NE(installed, 0);
  orv2_handle object = 0;
  if (checked(orv2_create(source_->bytes(20).c_str(), &object)) == 0) {
    EXPECT_EQ(orv2_release(object), 0);
  }
}

// ---- Forms -----------------------------------------------------------------

const char* Host::control_name() {
  orv2_form_info info{};
  orv2_control_info control{};
  checked(orv2_form_describe(form_, &info));
  const std::size_t at = source_->below(info.control_count + 1);
  if (at == info.control_count || orv2_form_control(form_, at, &control) != 0) {
    name_ = source_->bytes(8);
  } else {
    name_ = control.name;
  }
  return name_.c_str();
}

void Host::look_at_form() {
  orv2_form_info info{};
  orv2_form_frame frame{};
  EXPECT_EQ(orv2_form_describe(form_, &info), 0);
  EXPECT_EQ(orv2_form_describe_frame(form_, &frame), 0);
  const std::size_t at = source_->below(info.control_count + 1);
  orv2_control_info control{};
  orv2_control_look look{};
  orv2_grid_info grid{};
  orv2_grid_font font{};
  std::int32_t alignment = 0;
  const char* text = nullptr;
  checked(orv2_form_control(form_, at, &control));
  checked(orv2_form_look(form_, at, &look));
  checked(orv2_form_grid(form_, at, &grid));
  checked(orv2_form_font(form_, at, &font));
  checked(orv2_form_alignment(form_, at, source_->whole(), &alignment));
  if (checked(orv2_form_cell(form_, at, source_->whole(), source_->whole(), &text)) == 0) {
    EXPECT_NE(text, nullptr);
  }
  checked(orv2_form_focus(form_, &text));
}

void Host::use_form() {
  constexpr const char* numbers[] = {"0.5", "1e999", "-3", "abc", "", "1,25", "0", "32768", " 7"};
  switch (source_->below(10)) {
    case 0: checked(orv2_form_press_enter(form_)); return;
    case 1: checked(orv2_form_press_escape(form_)); return;
    case 2: checked(orv2_form_close(form_)); return;
    case 3: checked(orv2_form_select(form_, control_name())); return;
    case 4: checked(orv2_form_set_focus(form_, control_name())); return;
    case 5: {
      const std::string text = source_->one_in(4) ? source_->bytes(20) : source_->one_of(numbers);
      checked(orv2_form_set_text(form_, control_name(), text.c_str()));
      return;
    }
    case 6: return look_at_form();
    default: checked(orv2_form_click(form_, control_name()));
  }
}

// ---- Callbacks -------------------------------------------------------------

// Does what the bytes say before `work`; nothing is refused meanwhile.
template <class Work>
std::int32_t Host::called_back(Work&& work) noexcept {
  const RefusedAllocation none(-1);
  if (++callbacks_ > most_callbacks) {
    answers_.push_back(438);
    return 438;
  }
  ++depth_;
  if (depth_ <= deepest) {
    for (std::size_t more = source_->below(4); more > 0 && acts_ < most_acts; --more) act();
  }
  work();
  --depth_;
  return answer();
}

// Writes into the library's own variables as a host may.
void Host::write_into(const orv2_value& value) {
  const auto type = static_cast<std::uint16_t>(value.tag & ~unsigned{ORV2_BYREF});
  const bool by_reference = (value.tag & ORV2_BYREF) != 0;
  if (by_reference && type == ORV2_F64) *static_cast<double*>(value.as.pointer) = source_->number();
  if (by_reference && type == ORV2_F32) *static_cast<float*>(value.as.pointer) = source_->single();
  if (type == ORV2_TEXT) {
    const std::uint16_t* units = nullptr;
    std::size_t count = 0;
    checked(orv2_text_get(value.as.handle, &units, &count));
  }
  if (is_array(type)) {
    orv2_array_info info{};
    checked(orv2_array_describe(value.as.handle, &info));
  }
}

std::int32_t Host::on_set(void* host, const char* name, const orv2_value* value) {
  auto& self = *static_cast<Host*>(host);
  return self.called_back([&] {
    EXPECT_NE(name[0], '\0');
    EXPECT_LE(value->tag, ORV2_UTF8);
  });
}

std::int32_t Host::on_call(void* host, const char* name, const orv2_value* arguments,
                           std::size_t count, orv2_value* result) {
  auto& self = *static_cast<Host*>(host);
  return self.called_back([&] {
    EXPECT_NE(name[0], '\0');
    for (std::size_t i = 0; i < count && !self.source_->over(); ++i) self.write_into(arguments[i]);
    if (self.source_->one_in(2)) return;
    *result = self.any_value();
    if ((result->tag & ORV2_BYREF) != 0) *result = tagged(ORV2_NONE);
    if (result->tag != ORV2_UTF8) return;
    self.lent_ = self.source_->bytes(12);
    result->as.utf8 = self.lent_.c_str();
  });
}

void Host::on_release(void* host) {
  auto& self = *static_cast<Host*>(host);
  const RefusedAllocation none(-1);
  --self.awaited_;
  if (self.depth_ >= deepest || self.acts_ >= most_acts || !self.source_->one_in(4)) return;
  ++self.depth_;
  self.act();
  --self.depth_;
}

std::int32_t Host::on_box(void* host, const char* text, std::int32_t flags, const char*) {
  auto& self = *static_cast<Host*>(host);
  orv2_failure trapped{};
  const std::int32_t told = orv2_trapped_failure(&trapped);
  EXPECT_TRUE(told == 0 || told == 5);
  EXPECT_TRUE(flags == 0 || flags == 16);
  EXPECT_NE(text, nullptr);
  return self.called_back([] {});
}

std::int32_t Host::on_form(void* host, orv2_form* form) {
  auto& self = *static_cast<Host*>(host);
  orv2_form* const below = std::exchange(self.form_, form);
  const std::int32_t status = self.called_back([&] {
    for (std::size_t more = self.source_->below(16); more > 0; --more) self.use_form();
  });
  self.form_ = below;
  return status;
}

std::int32_t Host::on_events(void* host) {
  return static_cast<Host*>(host)->called_back([] {});
}

// The kept elements stand at their places in the new range; the old memory is gone.
std::int32_t Host::on_resize(void* buffer, std::int32_t old_lower, std::uint32_t old_count,
                             std::int32_t lower, std::uint32_t count, std::int16_t keep,
                             void** data) {
  constexpr std::uint32_t most = 1U << 16U;
  auto& own = *static_cast<Buffer*>(buffer);
  const RefusedAllocation none(-1);
  EXPECT_LE(old_count, own.count);
  if (count > most || own.host->source_->one_in(8)) {
    own.host->answers_.push_back(7);
    return 7;
  }
  auto fresh = std::make_unique<char[]>(count * own.element_size);
  for (std::uint32_t i = 0; keep != 0 && i < old_count; ++i) {
    const std::int64_t at = std::int64_t{old_lower} + i - lower;
    if (at < 0 || at >= count) continue;
    std::memcpy(&fresh[static_cast<std::size_t>(at) * own.element_size],
                &own.bytes[i * own.element_size], own.element_size);
  }
  own.bytes = std::move(fresh);
  own.count = count;
  if (data != nullptr) *data = own.bytes.get();
  return 0;
}

}  // namespace orv2_geo::fuzzing
