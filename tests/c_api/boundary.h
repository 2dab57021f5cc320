// boundary.h: what the tests of the C boundary share.
#pragma once

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <utility>

#include "orv2_geo/frame/argument.h"
#include "orv2_geo/orv2_geo.h"

namespace orv2_geo::testing_support {

inline constexpr char algorismos[] = "Orv2_Geo.cgeo_Algorismos";
inline constexpr char func_deriv[] = "Orv2_Geo.cgeo_FuncDeriv";

inline constexpr std::uint16_t array_types[] = {
    ORV2_DOUBLE_ARRAY, ORV2_SINGLE_ARRAY, ORV2_LONG_ARRAY, ORV2_SHORT_ARRAY, ORV2_STRING_ARRAY};

/// A handle that is released at the end of its block.
class Owned {
 public:
  explicit Owned(orv2_handle handle) noexcept : handle_(handle) {}
  ~Owned() { orv2_release(handle_); }
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;

  operator orv2_handle() const noexcept { return handle_; }

 private:
  orv2_handle handle_;
};

/// New things of the library; 0 when they cannot be had.
inline orv2_handle new_object(const char* registered_name = algorismos) {
  orv2_handle object = 0;
  orv2_create(registered_name, &object);
  return object;
}
inline orv2_handle new_array(std::uint16_t type = ORV2_DOUBLE_ARRAY, std::int32_t lower = 0,
                             std::uint32_t count = 4) {
  orv2_handle array = 0;
  orv2_array_make(type, lower, count, 1, &array);
  return array;
}
inline orv2_handle new_text(std::u16string_view units = u"0.5") {
  orv2_handle text = 0;
  orv2_text_new(reinterpret_cast<const std::uint16_t*>(units.data()), units.size(), &text);
  return text;
}

/// A value that holds a handle, or nothing but its tag.
inline orv2_value tagged(int tag, orv2_handle handle = 0) {
  orv2_value value{};
  value.tag = static_cast<std::uint16_t>(tag);
  value.as.handle = handle;
  return value;
}
inline orv2_value by_value_of(double number) {
  orv2_value value = tagged(ORV2_F64);
  value.as.f64 = number;
  return value;
}
inline orv2_value by_value_of(float number) {
  orv2_value value = tagged(ORV2_F32);
  value.as.f32 = number;
  return value;
}
inline orv2_value utf8(const char* text) {
  orv2_value value = tagged(ORV2_UTF8);
  value.as.utf8 = text;
  return value;
}
template <class T>
orv2_value pointing_at(T* variable) {
  orv2_value value = tagged(by_reference(interface_type<T>));
  value.as.pointer = variable;
  return value;
}
inline orv2_value pointing_at(orv2_handle* variable) {
  orv2_value value = tagged(ORV2_OBJECT | ORV2_BYREF);
  value.as.pointer = variable;
  return value;
}

inline std::size_t position_of(orv2_handle object, const char* name) {
  std::size_t position = ~std::size_t{0};
  orv2_find_member(object, name, ORV2_ANY, &position);
  return position;
}

/// The last failure on this thread, in words that stay.
struct LastFailure {
  std::int32_t number = 0;
  std::string description;
  std::string source;
};
inline LastFailure last_failure() {
  orv2_failure failure{};
  orv2_last_failure(&failure);
  return {failure.number, failure.description, failure.source};
}

}  // namespace orv2_geo::testing_support
