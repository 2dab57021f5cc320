#include "orv2_geo/com/host_object.h"

#include <array>
#include <string>

#include "orv2_geo/com/failures.h"
#include "orv2_geo/com/module.h"
#include "orv2_geo/com/variants.h"
#include "orv2_geo/frame/argument.h"
#include "orv2_geo/frame/floating_point_guard.h"
#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/frame/text.h"

namespace orv2_geo::com {

namespace {

constexpr std::size_t most_arguments = 16;

void expect_success(HRESULT status, EXCEPINFO& raised) {
  if (FAILED(status)) throw RunFailure(failure_of(status, raised));
}

// The objects of some script engines answer by their wider interface alone.
void invoke_extended(IDispatch& object, BSTR name, WORD way, DISPPARAMS& parameters,
                     VARIANT* answer) {
  EXCEPINFO raised{};
  Reference<IDispatchEx> wider;
  expect_success(
      object.QueryInterface(__uuidof(IDispatchEx), reinterpret_cast<void**>(wider.place())),
      raised);
  DISPID number = DISPID_UNKNOWN;
  expect_success(wider->GetDispID(name, fdexNameCaseInsensitive, &number), raised);
  expect_success(
      wider->InvokeEx(number, LOCALE_USER_DEFAULT, way, &parameters, answer, &raised, nullptr),
      raised);
}

void invoke(IDispatch& object, std::string_view name, WORD way, DISPPARAMS& parameters,
            VARIANT* answer) {
  const Text units{std::u16string(name.begin(), name.end())};
  // A text of the library is one of the system's; the call only reads it.
  auto* const wide = reinterpret_cast<wchar_t*>(const_cast<char16_t*>(units.data()));
  wchar_t* names = wide;
  DISPID number = DISPID_UNKNOWN;
  EXCEPINFO raised{};
  const HostFloatingPoint settings;
  const HRESULT named = object.GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &number);
  if (named == E_NOTIMPL) return invoke_extended(object, wide, way, parameters, answer);
  expect_success(named, raised);
  expect_success(object.Invoke(number, IID_NULL, LOCALE_USER_DEFAULT, way, &parameters, answer,
                               &raised, nullptr),
                 raised);
}

// The library's argument as the host sees it: by reference it is the library's variable.
// A text is the library's own and lent for the call.
VARIANT lent(const Argument& argument) {
  VARIANT given{};
  const auto by_value_of = [&](VARTYPE type) -> VARIANT& {
    given.vt = type;
    return given;
  };
  if (is_by_reference(argument.tag)) given.byref = argument.variable;
  switch (argument.tag) {
    case by_value(Type::i16): by_value_of(VT_I2).iVal = argument.i16; break;
    case by_value(Type::i32): by_value_of(VT_I4).lVal = argument.i32; break;
    case by_value(Type::f32): by_value_of(VT_R4).fltVal = argument.f32; break;
    case by_value(Type::f64): by_value_of(VT_R8).dblVal = argument.f64; break;
    case by_value(Type::boolean): by_value_of(VT_BOOL).boolVal = argument.boolean; break;
    case by_reference(Type::i16): given.vt = VT_BYREF | VT_I2; break;
    case by_reference(Type::i32): given.vt = VT_BYREF | VT_I4; break;
    case by_reference(Type::f32): given.vt = VT_BYREF | VT_R4; break;
    case by_reference(Type::f64): given.vt = VT_BYREF | VT_R8; break;
    case by_reference(Type::boolean): given.vt = VT_BYREF | VT_BOOL; break;
    default: raise(failure::type_mismatch);
  }
  return given;
}

}  // namespace

// The object with a reference of its own: the host may let it go in the middle of a call.
IDispatch* HostVariable::present() const {
  IDispatch* object = nullptr;
  if (object_ != nullptr) {
    object = *object_;
  } else if (variant_->vt == VT_DISPATCH) {
    object = variant_->pdispVal;
  } else if (variant_->vt == (VT_BYREF | VT_DISPATCH) && variant_->ppdispVal != nullptr) {
    object = *variant_->ppdispVal;
  }
  if (object == nullptr) raise(failure::object_not_set);
  object->AddRef();
  return object;
}

Variant HostVariable::call(std::string_view name, std::span<const Argument> arguments) {
  const Reference<IDispatch> object(present());
  if (arguments.size() > most_arguments) raise(failure::wrong_argument_count);
  std::array<VARIANT, most_arguments> given{};
  // The last argument stands first.
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    given[arguments.size() - 1 - i] = lent(arguments[i]);
  }
  DISPPARAMS parameters{given.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  OwnVariant answer;
  invoke(*object.get(), name, DISPATCH_METHOD, parameters, &answer.value());
  return taken_from(answer.value());
}

void HostVariable::set_property(std::string_view name, const Variant& value) {
  const Reference<IDispatch> object(present());
  OwnVariant given;
  fill(given.value(), value);
  DISPID put_value = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{&given.value(), &put_value, 1, 1};
  invoke(*object.get(), name, DISPATCH_PROPERTYPUT, parameters, nullptr);
}

}  // namespace orv2_geo::com
