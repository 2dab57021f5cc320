#include "orv2_geo/com/variants.h"

#include <cstring>

#include "orv2_geo/frame/class_description.h"
#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/platform/text_services.h"

namespace orv2_geo::com {

namespace {

constexpr VARTYPE by_reference_variant = VT_BYREF | VT_VARIANT;

Text text_of(BSTR text) {
  const auto* const units = reinterpret_cast<const char16_t*>(text);
  return units == nullptr ? Text() : Text(std::u16string_view(units, SysStringLen(text)));
}

// The system's conversion, for types that the library does not know.
void change_type(VARIANT& to, const VARIANT& from, VARTYPE type) {
  expect_converted(
      VariantChangeTypeEx(&to, const_cast<VARIANT*>(&from), LOCALE_USER_DEFAULT, 0, type));
}

// The same content as a variant that is not by reference.
void copy_plain(VARIANT& to, const VARIANT& from) {
  expect_converted(VariantCopyInd(&to, const_cast<VARIANT*>(&from)));  // it only reads
}

// A number or flag as an argument by value; a text stands in `text`.
Argument argument_in(const VARIANT& plain, Text& text) {
  switch (plain.vt) {
    case VT_EMPTY: return 0.0;
    case VT_I2: return plain.iVal;
    case VT_I4:
    case VT_INT: return std::int32_t{plain.lVal};
    case VT_R4: return plain.fltVal;
    case VT_R8: return plain.dblVal;
    case VT_BOOL: return Bool::raw(plain.boolVal);
    case VT_BSTR: text = text_of(plain.bstrVal); return Argument::of_value(text);
    case VT_NULL:
    case VT_ERROR: raise(failure::type_mismatch);
    default: break;
  }
  OwnVariant number;
  change_type(number.value(), plain, VT_R8);
  return number.value().dblVal;
}

Text text_in(const VARIANT& plain) {
  if (plain.vt == VT_BSTR) return text_of(plain.bstrVal);
  if (plain.vt == VT_ERROR) raise(failure::type_mismatch);
  OwnVariant text;
  change_type(text.value(), plain, VT_BSTR);
  return text_of(text.value().bstrVal);
}

template <class T>
T plain_value(const VARIANT& plain) {
  if constexpr (std::is_same_v<T, Text>) {
    return text_in(plain);
  } else {
    Text text;
    const Argument given = argument_in(plain, text);
    constexpr auto* numbers = &text_services::number_from_text;
    if constexpr (std::is_same_v<T, double>) return description::to_f64(given, numbers);
    if constexpr (std::is_same_v<T, float>) return description::to_f32(given, numbers);
    if constexpr (std::is_same_v<T, std::int32_t>) return description::to_i32(given, numbers);
    if constexpr (std::is_same_v<T, std::int16_t>) return description::to_i16(given, numbers);
    if constexpr (std::is_same_v<T, Bool>) return description::to_bool(given, numbers);
  }
}

void fill(VARIANT& empty, double value) { empty.vt = VT_R8, empty.dblVal = value; }
void fill(VARIANT& empty, float value) { empty.vt = VT_R4, empty.fltVal = value; }
void fill(VARIANT& empty, std::int32_t value) { empty.vt = VT_I4, empty.lVal = value; }
void fill(VARIANT& empty, std::int16_t value) { empty.vt = VT_I2, empty.iVal = value; }
void fill(VARIANT& empty, Bool value) { empty.vt = VT_BOOL, empty.boolVal = value.bits; }
void fill(VARIANT& empty, const Text& value) {
  BSTR const text = SysAllocStringLen(reinterpret_cast<const wchar_t*>(value.data()),
                                      static_cast<UINT>(value.size()));
  if (text == nullptr) raise(failure::out_of_memory);
  empty.vt = VT_BSTR;
  empty.bstrVal = text;
}
void fill(VARIANT& empty, std::monostate) { empty.vt = VT_EMPTY; }
void fill(VARIANT& empty, Variant::Null) { empty.vt = VT_NULL; }
// No member answers with an object.
void fill(VARIANT& empty, const ObjectRef&) { empty.vt = VT_EMPTY; }

std::size_t size_of(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1: return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL: return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4: return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE: return 8;
    default: return 0;
  }
}

// A host's variable of another type takes the value as its own type.
void put_converted(const VARIANT& place, VARIANT& value) {
  const auto type = static_cast<VARTYPE>(place.vt & ~VT_BYREF);
  OwnVariant converted;
  change_type(converted.value(), value, type);
  if (type == VT_BSTR) {
    std::swap(*place.pbstrVal, converted.value().bstrVal);
  } else if (type == VT_DECIMAL) {
    *place.pdecVal = converted.value().decVal;
  } else if (const std::size_t bytes = size_of(type)) {
    std::memcpy(place.byref, &converted.value().bVal, bytes);
  } else {
    raise(failure::type_mismatch);
  }
}

}  // namespace

OwnVariant::~OwnVariant() { VariantClear(&value_); }

void expect_converted(HRESULT status) {
  if (SUCCEEDED(status)) return;
  switch (status) {
    case DISP_E_OVERFLOW: raise(failure::overflow);
    case E_OUTOFMEMORY: raise(failure::out_of_memory);
    case DISP_E_ARRAYISLOCKED: raise(failure::array_locked);
    default: raise(failure::type_mismatch);
  }
}

const VARIANT& meant_by(const VARIANT& given) {
  if (given.vt != by_reference_variant) return given;
  const bool usable = given.pvarVal != nullptr && given.pvarVal->vt != by_reference_variant;
  if (!usable) raise(failure::type_mismatch);
  return *given.pvarVal;
}

template <class T>
T value_in(const VARIANT& given) {
  const VARIANT& meant = meant_by(given);
  if ((meant.vt & VT_ARRAY) != 0) raise(failure::type_mismatch);
  if ((meant.vt & VT_BYREF) == 0) return plain_value<T>(meant);
  if (meant.byref == nullptr) raise(failure::type_mismatch);
  OwnVariant plain;
  copy_plain(plain.value(), meant);
  return plain_value<T>(plain.value());
}

template double value_in<double>(const VARIANT&);
template float value_in<float>(const VARIANT&);
template std::int32_t value_in<std::int32_t>(const VARIANT&);
template std::int16_t value_in<std::int16_t>(const VARIANT&);
template Bool value_in<Bool>(const VARIANT&);
template Text value_in<Text>(const VARIANT&);

namespace {

// Whether a variant holds a number or a flag, so that nothing is lost with it.
bool holds_number(const VARIANT& place) noexcept {
  switch (place.vt) {
    case VT_EMPTY:
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_BOOL: return true;
    default: return false;
  }
}

}  // namespace

template <class T>
void put(VARIANT& place, const T& value) {
  if constexpr (!std::is_same_v<T, Text>) {
    if (holds_number(place)) return fill(place, value);
  }
  OwnVariant fresh;
  fill(fresh.value(), value);
  if (place.vt == by_reference_variant) return put(const_cast<VARIANT&>(meant_by(place)), value);
  if ((place.vt & VT_BYREF) != 0) return put_converted(place, fresh.value());
  expect_converted(VariantClear(&place));
  std::swap(place, fresh.value());
}

template void put<double>(VARIANT&, const double&);
template void put<float>(VARIANT&, const float&);
template void put<std::int32_t>(VARIANT&, const std::int32_t&);
template void put<std::int16_t>(VARIANT&, const std::int16_t&);
template void put<Bool>(VARIANT&, const Bool&);
template void put<Text>(VARIANT&, const Text&);

void fill(VARIANT& empty, const Variant& value) {
  std::visit([&](const auto& held) { fill(empty, held); }, value.value());
}

Variant taken_from(const VARIANT& answer) {
  switch (answer.vt) {
    case VT_I2: return answer.iVal;
    case VT_I4: return std::int32_t{answer.lVal};
    case VT_R4: return answer.fltVal;
    case VT_R8: return answer.dblVal;
    case VT_BOOL: return Bool::raw(answer.boolVal);
    case VT_BSTR: return text_of(answer.bstrVal);
    case VT_NULL: return Variant::Null();
    default: return {};
  }
}

}  // namespace orv2_geo::com
