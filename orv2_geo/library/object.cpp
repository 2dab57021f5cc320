#include "orv2_geo/library/object.h"

#include <type_traits>
#include <variant>

#include "orv2_geo/frame/floating_point_guard.h"
#include "orv2_geo/library/catalogue.h"
#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/platform/thread_number.h"

namespace orv2_geo {

namespace {

// An answer by value becomes a variant of its type.
Variant variant_of(const Argument& answer) {
  switch (type_of(answer.tag)) {
    case Type::i16: return answer.i16;
    case Type::i32: return answer.i32;
    case Type::f32: return answer.f32;
    case Type::f64: return answer.f64;
    case Type::boolean: return Bool::raw(answer.boolean);
    default: return {};
  }
}

// A variant as an argument by value; texts and objects are borrowed from it.
Argument argument_of(const Variant& value) {
  return std::visit(
      [](const auto& held) -> Argument {
        using T = std::remove_cvref_t<decltype(held)>;
        if constexpr (std::is_same_v<T, Text> || std::is_same_v<T, ObjectRef>) {
          return Argument::of_value(held);
        } else if constexpr (std::is_same_v<T, std::monostate> ||
                             std::is_same_v<T, Variant::Null>) {
          raise(failure::type_mismatch);
        } else {
          return Argument(held);
        }
      },
      value.value());
}

}  // namespace

Object::Object(const ClassDescription& of_class)
    : class_(of_class), instance_(of_class.begin()), thread_(this_thread_number()) {}

Object::~Object() { class_.end(instance_); }

void Object::invoke(std::size_t position, const Call& call) {
  expect_own_thread();
  invoke_here(member(position), call);
}

void Object::expect_own_thread() const {
  if (thread_ == this_thread_number()) [[likely]] {
    return;
  }
  throw RunFailure::signed_by(failure::invalid_call, class_.registered_name);
}

std::size_t Object::position_of(std::string_view name, std::size_t argument_count) const {
  expect_own_thread();
  return orv2_geo::position_of(class_, name, argument_count);
}

Variant Object::call(std::size_t position, std::span<const Argument> arguments) {
  const FloatingPointGuard usual;
  Variant variant;
  Argument answer = Argument::of_value(ObjectRef());
  answer.tag = by_value(Type::none);
  invoke(position, {arguments, &variant, &answer, &text_services::number_from_text});
  return answer.tag == by_value(Type::none) ? variant : variant_of(answer);
}

Variant Object::call(std::string_view name, std::span<const Argument> arguments) {
  return call(position_of(name, arguments.size()), arguments);
}

void Object::set_property(std::string_view name, const Variant& value) {
  expect_own_thread();
  const std::optional<std::size_t> position = find_member(class_, name, Wanted::property_write);
  if (!position) throw RunFailure::signed_by(failure::no_such_member, class_.registered_name);
  const Argument given = argument_of(value);
  call(*position, {&given, 1});
}

ObjectRef create(std::string_view registered_name) try {
  const ClassDescription* of_class = find_class(registered_name);
  if (of_class == nullptr) raise(failure::cannot_create_object);
  return ObjectRef(new Object(*of_class));
} catch (...) {
  leave_signed(library_name.data());
}

}  // namespace orv2_geo
