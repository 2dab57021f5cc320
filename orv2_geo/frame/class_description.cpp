#include "orv2_geo/frame/class_description.h"

#include "orv2_geo/frame/checked_math.h"

namespace orv2_geo::description {

namespace {

double number_in(const Text& text, NumberFromText number_from_text) {
  if (number_from_text == nullptr) raise(failure::type_mismatch);
  return number_from_text(text.view());
}

template <class T>
const T& pointed_at(const Argument& given) {
  if (given.variable == nullptr) raise(failure::invalid_call);
  return *static_cast<const T*>(given.variable);
}

}  // namespace

double to_f64(const Argument& given, NumberFromText number_from_text) {
  switch (given.tag) {
    case by_value(Type::i16): return given.i16;
    case by_value(Type::i32): return given.i32;
    case by_value(Type::f32): return given.f32;
    case by_value(Type::f64): return given.f64;
    case by_value(Type::boolean): return Bool::raw(given.boolean) ? -1.0 : 0.0;
    case by_value(Type::text): return number_in(*given.text, number_from_text);
    case by_reference(Type::i16): return pointed_at<std::int16_t>(given);
    case by_reference(Type::i32): return pointed_at<std::int32_t>(given);
    case by_reference(Type::f32): return pointed_at<float>(given);
    case by_reference(Type::f64): return pointed_at<double>(given);
    case by_reference(Type::boolean): return pointed_at<Bool>(given) ? -1.0 : 0.0;
    case by_reference(Type::text): return number_in(pointed_at<Text>(given), number_from_text);
    default: raise(failure::type_mismatch);
  }
}

float to_f32(const Argument& given, NumberFromText number_from_text) {
  if (given.tag == by_value(Type::f32)) return given.f32;
  return narrow(to_f64(given, number_from_text));
}

std::int32_t to_i32(const Argument& given, NumberFromText number_from_text) {
  return orv2_geo::to_i32(Checked(to_f64(given, number_from_text)));
}

std::int16_t to_i16(const Argument& given, NumberFromText number_from_text) {
  return orv2_geo::to_i16(Checked(to_f64(given, number_from_text)));
}

Bool to_bool(const Argument& given, NumberFromText number_from_text) {
  // A flag keeps the bits that the host gave it.
  if (given.tag == by_value(Type::boolean)) return Bool::raw(given.boolean);
  return Bool(to_f64(given, number_from_text) != 0.0);
}

Text to_text(const Argument& given) {
  if (given.tag != by_value(Type::text)) raise(failure::type_mismatch);
  return *given.text;
}

ObjectRef to_object(const Argument& given) {
  if (given.tag != by_value(Type::object)) raise(failure::type_mismatch);
  return ObjectRef(given.object);
}

}  // namespace orv2_geo::description
