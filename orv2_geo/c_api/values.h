// values.h: a host's tagged values as the library's arguments, and back.
#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <optional>
#include <span>
#include <string>

#include "orv2_geo/c_api/handles.h"
#include "orv2_geo/frame/class_description.h"
#include "orv2_geo/orv2_geo.h"

namespace orv2_geo::c_api {

/// No member takes more; a call with more has too many arguments.
inline constexpr std::size_t most_arguments = 16;

// Scalars look the same on both sides, so a call with nothing else is handed
// on as it stands.
static_assert(sizeof(orv2_value) == sizeof(Argument));
static_assert(offsetof(orv2_value, tag) == offsetof(Argument, tag));
static_assert(offsetof(orv2_value, as) == offsetof(Argument, f64));
static_assert(ORV2_I16 == by_value(Type::i16) && ORV2_I32 == by_value(Type::i32));
static_assert(ORV2_F32 == by_value(Type::f32) && ORV2_F64 == by_value(Type::f64));
static_assert(ORV2_BOOL == by_value(Type::boolean) && ORV2_TEXT == by_value(Type::text));
static_assert(ORV2_OBJECT == by_value(Type::object) && ORV2_VARIANT == by_value(Type::variant));
static_assert(ORV2_DOUBLE_ARRAY == by_value(Type::double_array));
static_assert(ORV2_SINGLE_ARRAY == by_value(Type::single_array));
static_assert(ORV2_LONG_ARRAY == by_value(Type::long_array));
static_assert(ORV2_SHORT_ARRAY == by_value(Type::short_array));
static_assert(ORV2_STRING_ARRAY == by_value(Type::string_array));
static_assert(ORV2_OMITTED == by_value(Type::omitted) && ORV2_BYREF == by_reference_bit);

/// Whether a value is a scalar, by value or by a pointer that is not null, or
/// left out: the library's argument as it stands.
inline bool is_plain(const orv2_value& value) noexcept {
  if (value.tag >= by_reference(Type::i16) && value.tag <= by_reference(Type::boolean)) {
    return value.as.pointer != nullptr;
  }
  return (value.tag >= ORV2_I16 && value.tag <= ORV2_BOOL) || value.tag == ORV2_OMITTED;
}

/// What arguments need to live through a call, a place each.
struct KeptForCall {
  std::array<std::optional<Pin>, most_arguments> pins;
  std::array<Text, most_arguments> texts;
  std::array<ObjectRef, most_arguments> objects;
  std::array<const orv2_handle*, most_arguments> object_variables{};
};

/// A host's values as arguments: handles become what they stand for, kept alive as
/// long as the reader.
class HostArguments final : public ArgumentReader {
 public:
  /// At most most_arguments values, which are read when they are asked for.
  explicit HostArguments(const orv2_value* values) noexcept : values_(values) {}
  HostArguments(const HostArguments&) = delete;
  HostArguments& operator=(const HostArguments&) = delete;

  /// Each once. Failures: 5 for null pointers and wrong handles, 13 for unknown tags.
  Argument read(std::size_t i) override;

 private:
  Argument text_argument(std::size_t i);
  Argument array_argument(std::size_t i);
  Argument object_argument(std::size_t i);
  KeptForCall& kept();
  void pin(std::size_t i, orv2_handle handle);

  const orv2_value* values_;
  std::optional<KeptForCall> kept_;  // only where something must be kept
};

/// A scalar answer, by value. Failure 13 for anything else.
orv2_value value_of(const Variant& variant);

/// What a host answers with. Failures: 13 unknown tag, 5 wrong handle.
Variant variant_of(const orv2_value& value);

/// The library's arguments as a host's callback sees them. Texts are lent for
/// the length of the callback. Failure 13 for arrays and objects.
class ForHost {
 public:
  explicit ForHost(std::span<const Argument> arguments);
  const orv2_value* values() const noexcept { return values_.data(); }
  std::size_t count() const noexcept { return count_; }

 private:
  std::array<orv2_value, most_arguments> values_{};
  std::size_t count_;
  std::deque<std::string> texts_;
};

}  // namespace orv2_geo::c_api
