// A call of a vector, made through the C boundary.
#include "tests/vectors/portable_call.h"

#include <cstring>
#include <deque>
#include <stdexcept>
#include <utility>

namespace orv2_geo::vectors {

namespace {

constexpr std::int32_t failure_of_no_such_name = 438;

void needed(std::int32_t status) {
  if (status != 0)
    throw std::runtime_error("the C boundary answers with " + std::to_string(status));
}

std::uint16_t tag_of(Kind kind) {
  switch (kind) {
    case Kind::i16: return ORV2_I16;
    case Kind::i32: return ORV2_I32;
    case Kind::f32: return ORV2_F32;
    case Kind::f64: return ORV2_F64;
    case Kind::boolean: return ORV2_BOOL;
    case Kind::text: return ORV2_TEXT;
    case Kind::object: return ORV2_OBJECT;
    case Kind::doubles: return ORV2_DOUBLE_ARRAY;
    case Kind::singles: return ORV2_SINGLE_ARRAY;
    case Kind::longs: return ORV2_LONG_ARRAY;
    case Kind::shorts: return ORV2_SHORT_ARRAY;
    case Kind::texts: return ORV2_STRING_ARRAY;
    case Kind::none: break;
  }
  return ORV2_NONE;
}

const std::uint16_t* units(const std::u16string& text) {
  return reinterpret_cast<const std::uint16_t*>(text.data());
}

std::u16string text_at(const std::uint16_t* first, std::size_t count) {
  return {reinterpret_cast<const char16_t*>(first), count};
}

// A variable of the host, of any type.
union Cell {
  double f64;
  float f32;
  std::int32_t i32;
  std::int16_t i16;
  orv2_handle handle;
};

void put(Cell& cell, const Value& value) {
  switch (value.kind) {
    case Kind::f64: cell.f64 = f64_of(value); break;
    case Kind::f32: cell.f32 = f32_of(value); break;
    case Kind::i32: cell.i32 = static_cast<std::int32_t>(value.bits); break;
    default: cell.i16 = static_cast<std::int16_t>(value.bits);
  }
}

Value scalar_at(Kind kind, const void* place) {
  switch (kind) {
    case Kind::f64: return real(*static_cast<const double*>(place));
    case Kind::f32: return real(*static_cast<const float*>(place));
    case Kind::i32: return whole(kind, *static_cast<const std::int32_t*>(place));
    default: return whole(kind, *static_cast<const std::int16_t*>(place));
  }
}

std::size_t size_of(Kind element) {
  return element == Kind::f64 ? 8 : element == Kind::f32 || element == Kind::i32 ? 4 : 2;
}

void fill(orv2_handle array, const Value& value) {
  if (value.kind == Kind::texts) {
    for (std::size_t i = 0; i < value.elements.size(); ++i) {
      const std::u16string& text = value.elements[i].text;
      needed(orv2_array_set_text(array, value.lower + static_cast<std::int32_t>(i), units(text),
                                 text.size()));
    }
    return;
  }
  void* data = nullptr;
  needed(orv2_array_data(array, &data));
  auto* place = static_cast<std::byte*>(data);
  for (const Value& element : value.elements) {
    Cell cell;
    put(cell, element);
    std::memcpy(place, &cell, size_of(element.kind));
    place += size_of(element.kind);
  }
}

orv2_handle new_array(const Value& value) {
  orv2_handle array = 0;
  const std::uint16_t type = tag_of(value.kind);
  if (!value.allocated) {
    needed(orv2_array_new(type, &array));
    return array;
  }
  needed(orv2_array_make(type, value.lower, static_cast<std::uint32_t>(value.elements.size()),
                         value.dimensions, &array));
  fill(array, value);
  return array;
}

Value text_element(orv2_handle array, std::int32_t index) {
  const std::uint16_t* first = nullptr;
  std::size_t count = 0;
  needed(orv2_array_get_text(array, index, &first, &count));
  return text_of(text_at(first, count));
}

Value content_of_array(Kind kind, orv2_handle array) {
  orv2_array_info info{};
  needed(orv2_array_describe(array, &info));
  Value value;
  value.kind = kind;
  value.allocated = info.allocated != 0;
  if (!value.allocated) return value;
  value.lower = info.lower;
  value.dimensions = info.dimensions;
  void* data = nullptr;
  if (kind != Kind::texts) needed(orv2_array_data(array, &data));
  for (std::uint32_t i = 0; i < info.count; ++i) {
    if (kind == Kind::texts) {
      value.elements.push_back(text_element(array, info.lower + static_cast<std::int32_t>(i)));
    } else {
      const Kind element = element_of(kind);
      value.elements.push_back(
          scalar_at(element, static_cast<const std::byte*>(data) + i * size_of(element)));
    }
  }
  return value;
}

orv2_handle new_text(const std::u16string& text) {
  orv2_handle variable = 0;
  needed(orv2_text_new(units(text), text.size(), &variable));
  return variable;
}

// The arguments of a call: the host's variables, and the values that point at them.
class Arguments {
 public:
  Arguments(const std::vector<Given>& given, const std::vector<bool>& by_value, orv2_handle host)
      : given_(given) {
    for (std::size_t i = 0; i < given.size(); ++i) add(given[i], by_value[i], host);
  }
  ~Arguments() {
    for (const orv2_handle handle : owned_) orv2_release(handle);
  }
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  const orv2_value* values() const { return values_.data(); }
  std::size_t count() const { return values_.size(); }

  std::vector<Value> content() const {
    std::vector<Value> after;
    for (std::size_t i = 0; i < values_.size(); ++i) after.push_back(content_at(i));
    return after;
  }

 private:
  void add(const Given& given, bool by_value, orv2_handle host) {
    orv2_value value{};
    if (given.same_as >= 0) {
      value = values_[static_cast<std::size_t>(given.same_as)];
    } else if (given.omitted) {
      value.tag = ORV2_OMITTED;
    } else {
      value = new_value(given.value, by_value, host);
    }
    values_.push_back(value);
  }

  orv2_value new_value(const Value& content, bool by_value, orv2_handle host) {
    orv2_value value{};
    const std::uint16_t tag = tag_of(content.kind);
    value.tag = by_value ? tag : static_cast<std::uint16_t>(tag | ORV2_BYREF);
    if (is_array(content.kind) || content.kind == Kind::text) {
      value.as.handle = is_array(content.kind) ? new_array(content) : new_text(content.text);
      owned_.push_back(value.as.handle);
      return value;
    }
    Cell& cell = cells_.emplace_back();
    if (content.kind == Kind::object) {
      cell.handle = content.bits != 0 ? host : 0;
    } else {
      put(cell, content);
    }
    if (by_value) {
      std::memcpy(&value.as, &cell, sizeof cell);
    } else {
      value.as.pointer = &cell;
    }
    return value;
  }

  Value content_at(std::size_t i) const {
    const Value& before = given_[i].value;
    const orv2_value& value = values_[i];
    if (is_array(before.kind)) return content_of_array(before.kind, value.as.handle);
    if (before.kind == Kind::text) return content_of_text(value.as.handle);
    const bool stays = (value.tag & ORV2_BYREF) == 0 || before.kind == Kind::object;
    return stays ? before : scalar_at(before.kind, value.as.pointer);
  }

  static Value content_of_text(orv2_handle text) {
    const std::uint16_t* first = nullptr;
    std::size_t count = 0;
    needed(orv2_text_get(text, &first, &count));
    return text_of(text_at(first, count));
  }

  const std::vector<Given>& given_;
  std::deque<Cell> cells_;
  std::vector<orv2_handle> owned_;
  std::vector<orv2_value> values_;
};

// A number that stands in a value or in the variable that it points at.
Value content_of_value(const orv2_value& value) {
  const Kind kind = kind_of_tag(value.tag);
  if (kind == Kind::none || kind == Kind::object || kind == Kind::text || is_array(kind)) return {};
  return scalar_at(kind, (value.tag & ORV2_BYREF) != 0 ? value.as.pointer : &value.as);
}

// The texts of boxes have no letters beyond the first plane.
std::u16string from_utf8(std::string_view utf8) {
  std::u16string units;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    const auto follows = [&] { return static_cast<unsigned char>(utf8[++i]) & 0x3FU; };
    unsigned unit = lead;
    if (lead >= 0xE0) {
      unit = (lead & 0x0FU) << 12;
      unit |= follows() << 6;
      unit |= follows();
    } else if (lead >= 0xC0) {
      unit = (lead & 0x1FU) << 6;
      unit |= follows();
    }
    units += static_cast<char16_t>(unit);
  }
  return units;
}

}  // namespace

Kind kind_of_tag(std::uint16_t tag) {
  switch (tag & ~ORV2_BYREF) {
    case ORV2_I16: return Kind::i16;
    case ORV2_I32: return Kind::i32;
    case ORV2_F32: return Kind::f32;
    case ORV2_F64: return Kind::f64;
    case ORV2_BOOL: return Kind::boolean;
    case ORV2_TEXT: return Kind::text;
    case ORV2_OBJECT: return Kind::object;
    case ORV2_DOUBLE_ARRAY: return Kind::doubles;
    case ORV2_SINGLE_ARRAY: return Kind::singles;
    case ORV2_LONG_ARRAY: return Kind::longs;
    case ORV2_SHORT_ARRAY: return Kind::shorts;
    case ORV2_STRING_ARRAY: return Kind::texts;
    default: return Kind::none;
  }
}

PortableObject::PortableObject(const char* registered_name) {
  needed(orv2_create(registered_name, &object_));
  const orv2_host_object surface{sizeof(surface), take_property, take_call, nullptr};
  needed(orv2_host_object_new(&surface, this, &host_));
  const orv2_user_interface person{sizeof(person), this, take_box, take_form, nullptr};
  needed(orv2_set_user_interface(&person));
}

PortableObject::~PortableObject() {
  orv2_set_user_interface(nullptr);
  orv2_release(host_);
  orv2_release(object_);
}

Outcome PortableObject::call(std::size_t position, const std::vector<Given>& given,
                             const std::vector<bool>& by_value) {
  outcome_ = {};
  showed_form_ = false;
  const Arguments arguments(given, by_value, host_);
  orv2_value result{};
  now_runs(true);
  outcome_.failure = call_member(position, arguments.values(), arguments.count(), result);
  now_runs(false);
  outcome_.after = arguments.content();
  if (outcome_.failure == 0) outcome_.result = content_of_value(result);
  return std::exchange(outcome_, {});
}

std::int32_t PortableObject::call_member(std::size_t position, const orv2_value* values,
                                         std::size_t count, orv2_value& result) {
  if (!settings_) return orv2_call(object_, position, values, count, &result);
  own_settings_ = testing::units();
  const testing::WithUnits of_host(*settings_);
  const std::int32_t failure = orv2_call(object_, position, values, count, &result);
  look_at_settings();
  return failure;
}

void PortableObject::look_at_settings() {
  settings_held_ = settings_held_ && testing::units() == settings_;
}

// The test's own work in the middle of a call, in the settings of before the call.
class PortableObject::Inside {
 public:
  explicit Inside(void* self) : object_(*static_cast<PortableObject*>(self)) {
    object_.now_runs(false);
    if (!object_.settings_) return;
    object_.look_at_settings();
    usual_.emplace(object_.own_settings_);
  }

  ~Inside() { object_.now_runs(true); }
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;

  PortableObject* operator->() const { return &object_; }

 private:
  PortableObject& object_;
  std::optional<testing::WithUnits> usual_;
};

std::int32_t PortableObject::take_property(void* self, const char* name, const orv2_value* value) {
  const Inside object(self);
  object->outcome_.told.push_back({std::string(name) + "=", {content_of_value(*value)}});
  return 0;
}

std::int32_t PortableObject::take_call(void* self, const char* name, const orv2_value* arguments,
                                       std::size_t count, orv2_value*) {
  const Inside object(self);
  Told told{name, {}};
  for (std::size_t i = 0; i < count; ++i) told.values.push_back(content_of_value(arguments[i]));
  object->outcome_.told.push_back(told);
  return 0;
}

std::int32_t PortableObject::take_box(void* self, const char* text, std::int32_t flags,
                                      const char* caption) {
  const Inside object(self);
  Box box{flags, from_utf8(text), caption != nullptr, {}};
  if (caption != nullptr) box.caption = from_utf8(caption);
  object->outcome_.boxes.push_back(box);
  return 0;
}

std::int32_t PortableObject::take_form(void* self, orv2_form* form) {
  const Inside object(self);
  object->showed_form_ = true;
  std::int32_t failure = 0;
  for (const std::string& button : object->buttons_) {
    object->now_runs(true);
    failure = orv2_form_click(form, button.c_str());
    object->now_runs(false);
    if (failure != 0 && failure != failure_of_no_such_name) return failure;
  }
  return 0;
}

}  // namespace orv2_geo::vectors
