// Members called by name and number, with arguments of any type.
#include <array>
#include <optional>
#include <string_view>

#include "orv2_geo/com/component.h"
#include "orv2_geo/com/failures.h"
#include "orv2_geo/com/late_places.h"
#include "orv2_geo/com/module.h"
#include "orv2_geo/frame/floating_point_guard.h"
#include "orv2_geo/frame/names.h"
#include "orv2_geo/library/catalogue.h"

namespace orv2_geo::com {

namespace {

// ---- Names and numbers -----------------------------------------------------

// A name of a member or a parameter as the catalogue has it; empty for one that no
// member has.
class PlainName {
 public:
  explicit PlainName(const wchar_t* name) noexcept {
    std::size_t length = 0;
    for (; name != nullptr && name[length] != 0; ++length) {
      if (length == letters_.size() || name[length] >= 0x80) return;
      letters_[length] = static_cast<char>(name[length]);
    }
    length_ = length;
  }
  std::string_view view() const noexcept { return {letters_.data(), length_}; }

 private:
  std::array<char, 64> letters_{};
  std::size_t length_ = 0;
};

// Both sides of a property have the first one's number.
DISPID number_of(std::size_t position) noexcept {
  return static_cast<DISPID>(position) + first_dispatch_number;
}

DISPID number_of_parameter(const MemberDescription& member, std::string_view name) noexcept {
  for (std::size_t i = 0; i < member.parameters.size(); ++i) {
    if (same_name(member.parameters[i].name, name)) return static_cast<DISPID>(i);
  }
  return DISPID_UNKNOWN;
}

// Where a call of that number goes: a method is called, a property is read or written.
// Hosts ask for what gives an answer in either way.
std::optional<std::size_t> position_of(const ClassDescription& of_class, DISPID number,
                                       WORD ways) noexcept {
  const auto position = static_cast<std::size_t>(number - first_dispatch_number);
  if (number < first_dispatch_number || position >= of_class.members.size()) return std::nullopt;
  const bool asked = (ways & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) != 0;
  const bool written = (ways & DISPATCH_PROPERTYPUT) != 0;
  switch (of_class.members[position].kind) {
    case MemberKind::property_read:
      if (written) return position + 1;
      break;
    case MemberKind::property_write: return std::nullopt;
    case MemberKind::method: break;
  }
  return asked ? std::optional(position) : std::nullopt;
}

// ---- Arguments -------------------------------------------------------------

template <class T>
inline constexpr VARTYPE variant_type = VT_EMPTY;
template <>
inline constexpr VARTYPE variant_type<double> = VT_R8;
template <>
inline constexpr VARTYPE variant_type<float> = VT_R4;
template <>
inline constexpr VARTYPE variant_type<std::int32_t> = VT_I4;
template <>
inline constexpr VARTYPE variant_type<std::int16_t> = VT_I2;
template <>
inline constexpr VARTYPE variant_type<Bool> = VT_BOOL;
template <>
inline constexpr VARTYPE variant_type<Text> = VT_BSTR;

bool is_left_out(const VARIANT& given) noexcept {
  return given.vt == VT_ERROR && given.scode == DISP_E_PARAMNOTFOUND;
}

// A pointer of a variant that is by reference. Failure 13 when there is none.
template <class T>
T& pointed_at(T* pointer) {
  if (pointer == nullptr) raise(failure::type_mismatch);
  return *pointer;
}

// A variable of exactly the parameter's type is the library's as it stands.
template <class T>
Argument bound_variable(KeptForCall& kept, VARIANT& given) {
  auto& meant = const_cast<VARIANT&>(meant_by(given));
  if (meant.vt == (VT_BYREF | variant_type<T>)) {
    return Argument::of(pointed_at(static_cast<T*>(meant.byref)));
  }
  const bool variable = (given.vt & VT_BYREF) != 0;
  return variable ? kept.place<VariablePlace<T>>(meant) : kept.temporary<ValuePlace<T>>(given);
}

// Without text or object: no member takes those by value.
template <class T>
Argument bound_value(const VARIANT& given) {
  return Argument(value_in<T>(given));
}

template <class T>
Argument bound_scalar(KeptForCall& kept, bool by_reference, VARIANT& given) {
  if constexpr (std::is_same_v<T, Text>) {
    return bound_variable<T>(kept, given);
  } else {
    return by_reference ? bound_variable<T>(kept, given) : bound_value<T>(given);
  }
}

template <class A>
Argument bound_array(KeptForCall& kept, VARIANT& given) {
  auto& meant = const_cast<VARIANT&>(meant_by(given));
  const bool variable = &meant != &given || (given.vt & VT_BYREF) != 0;
  if (meant.vt == VT_EMPTY && variable) return kept.place<ScriptArrayPlace<A>>(meant);
  if ((meant.vt & VT_ARRAY) == 0) raise(failure::type_mismatch);
  const VARTYPE element = meant.vt & VT_TYPEMASK;
  const bool of_variants = element == VT_VARIANT;
  const bool own = element == element_type<A> || (element == VT_INT && element_type<A> == VT_I4);
  if (!of_variants && !own) raise(failure::type_mismatch);
  const bool inner = (meant.vt & VT_BYREF) != 0;
  SAFEARRAY*& array = inner ? pointed_at(meant.pparray) : meant.parray;
  if (!variable) return kept.temporary<CopiedArrayPlace<A>>(array, of_variants);
  return of_variants ? kept.place<ScriptArrayPlace<A>>(array) : kept.place<ArrayPlace<A>>(array);
}

Argument bound_object(KeptForCall& kept, VARIANT& given) {
  const VARIANT& meant = meant_by(given);
  switch (meant.vt) {
    case VT_EMPTY:  // a variable without an object, as yet
    case VT_DISPATCH: return kept.place<ObjectPlace>(meant);
    case VT_BYREF | VT_DISPATCH: return kept.place<ObjectPlace>(pointed_at(meant.ppdispVal));
    case VT_UNKNOWN: {
      IDispatch* found = nullptr;
      if (meant.punkVal != nullptr) {
        meant.punkVal->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&found));
        if (found == nullptr) raise(failure::type_mismatch);
      }
      return kept.temporary<FoundObjectPlace>(found);
    }
    default: raise(failure::type_mismatch);
  }
}

Argument bound(KeptForCall& kept, const ParameterDescription& parameter, VARIANT& given) {
  const bool by_reference = parameter.by_reference;
  switch (parameter.type) {
    case Type::f64: return bound_scalar<double>(kept, by_reference, given);
    case Type::f32: return bound_scalar<float>(kept, by_reference, given);
    case Type::i32: return bound_scalar<std::int32_t>(kept, by_reference, given);
    case Type::i16: return bound_scalar<std::int16_t>(kept, by_reference, given);
    case Type::boolean: return bound_scalar<Bool>(kept, by_reference, given);
    case Type::text: return bound_scalar<Text>(kept, by_reference, given);
    case Type::object: return bound_object(kept, given);
    case Type::double_array: return bound_array<DoubleArray>(kept, given);
    case Type::single_array: return bound_array<SingleArray>(kept, given);
    case Type::long_array: return bound_array<LongArray>(kept, given);
    case Type::short_array: return bound_array<ShortArray>(kept, given);
    case Type::string_array: return bound_array<StringArray>(kept, given);
    default: raise(failure::type_mismatch);
  }
}

// The dispatch service's own status of an argument that cannot be converted.
HRESULT status_of_conversion(const RunFailure& failure) noexcept {
  switch (failure.number()) {
    case failure::overflow: return DISP_E_OVERFLOW;
    case failure::array_locked: return DISP_E_ARRAYISLOCKED;
    case failure::subscript_out_of_range: return DISP_E_BADINDEX;
    case failure::out_of_memory: return E_OUTOFMEMORY;
    default: return DISP_E_TYPEMISMATCH;
  }
}

// ---- A call ----------------------------------------------------------------

class LateCall {
 public:
  explicit LateCall(const MemberDescription& member) noexcept : member_(member) {}

  /// Which argument is for which parameter, named ones included, and each converted.
  HRESULT take(DISPPARAMS& given, UINT& faulty) noexcept {
    const HRESULT arranged = arrange(given, faulty);
    return FAILED(arranged) ? arranged : bind(given, faulty);
  }

  /// Runs the member; the host's variables are up to date behind it, also when it failed.
  Variant run(Object& object, std::size_t position) {
    try {
      Variant answer = object.call(position, {arguments_.data(), member_.parameters.size()});
      kept_.write_back();
      return answer;
    } catch (...) {
      write_back_after_failure();
      throw;
    }
  }

 private:
  static constexpr UINT nobody = static_cast<UINT>(-1);

  HRESULT arrange(const DISPPARAMS& given, UINT& faulty) noexcept {
    const std::size_t most = member_.parameters.size();
    if (given.cArgs > most) return DISP_E_BADPARAMCOUNT;
    places_.fill(nobody);
    // By place: the last one stands first.
    for (UINT i = given.cNamedArgs; i < given.cArgs; ++i) places_[given.cArgs - 1 - i] = i;
    for (UINT i = 0; i < given.cNamedArgs; ++i) {
      DISPID number = given.rgdispidNamedArgs[i];
      if (number == DISPID_PROPERTYPUT && member_.kind == MemberKind::property_write) number = 0;
      faulty = i;
      const bool known = number >= 0 && static_cast<std::size_t>(number) < most;
      if (!known || places_[static_cast<std::size_t>(number)] != nobody) {
        return DISP_E_PARAMNOTFOUND;
      }
      places_[static_cast<std::size_t>(number)] = i;
    }
    return S_OK;
  }

  HRESULT bind(const DISPPARAMS& given, UINT& faulty) noexcept {
    for (std::size_t i = 0; i < member_.parameters.size(); ++i) {
      const ParameterDescription& parameter = member_.parameters[i];
      const bool left_out = places_[i] == nobody || is_left_out(given.rgvarg[places_[i]]);
      if (left_out && !parameter.optional) return missing(given, i, faulty);
      if (left_out) continue;  // the description knows what it arrives as
      const VARIANT& argument = given.rgvarg[places_[i]];
      if ((argument.vt & VT_BYREF) != 0) kept_.bind(argument.byref);
      try {
        arguments_[i] = bound(kept_, parameter, given.rgvarg[places_[i]]);
      } catch (...) {
        faulty = places_[i];
        return status_of_conversion(failure_in_flight());
      }
    }
    return S_OK;
  }

  HRESULT missing(const DISPPARAMS& given, std::size_t parameter, UINT& faulty) const noexcept {
    if (places_[parameter] == nobody) {
      return given.cNamedArgs == 0 ? DISP_E_BADPARAMCOUNT : DISP_E_PARAMNOTOPTIONAL;
    }
    faulty = places_[parameter];
    return DISP_E_PARAMNOTOPTIONAL;
  }

  // The member's failure is the one that is told.
  void write_back_after_failure() noexcept {
    try {
      kept_.write_back();
    } catch (...) {  // what cannot be brought back stays as it was
    }
  }

  const MemberDescription& member_;
  KeptForCall kept_;
  std::array<Argument, KeptForCall::most> arguments_{};
  std::array<UINT, KeptForCall::most> places_{};
};

bool well_formed(const DISPPARAMS* given) noexcept {
  return given != nullptr && given->cNamedArgs <= given->cArgs &&
         (given->cArgs == 0 || given->rgvarg != nullptr) &&
         (given->cNamedArgs == 0 || given->rgdispidNamedArgs != nullptr);
}

HRESULT run(Component& self, std::size_t position, DISPPARAMS& given, VARIANT* result,
            EXCEPINFO* raised, UINT& faulty) noexcept {
  const Component::DuringCall reference(self);
  const FloatingPointGuard usual;
  LateCall call(self.object().description().members[position]);
  const HRESULT taken = call.take(given, faulty);
  if (FAILED(taken)) return taken;
  try {
    const Variant answer = call.run(self.object(), position);
    if (result != nullptr) {
      VariantInit(result);
      fill(*result, answer);
    }
    return S_OK;
  } catch (...) {
    return told_in(raised, failure_in_flight());
  }
}

}  // namespace

HRESULT STDMETHODCALLTYPE numbers_of_names(Component* self, REFIID reserved, wchar_t** names,
                                           UINT count, LCID, DISPID* numbers) noexcept {
  if (!self->on_own_thread()) return RPC_E_WRONG_THREAD;
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr || numbers == nullptr || count == 0) return E_INVALIDARG;
  for (UINT i = 0; i < count; ++i) numbers[i] = DISPID_UNKNOWN;
  const ClassDescription& of_class = self->object().description();
  const auto position = find_member(of_class, PlainName(names[0]).view());
  if (!position) return DISP_E_UNKNOWNNAME;
  numbers[0] = number_of(*position);
  HRESULT status = S_OK;
  for (UINT i = 1; i < count; ++i) {
    numbers[i] = number_of_parameter(of_class.members[*position], PlainName(names[i]).view());
    if (numbers[i] == DISPID_UNKNOWN) status = DISP_E_UNKNOWNNAME;
  }
  return status;
}

HRESULT STDMETHODCALLTYPE invoke(Component* self, DISPID number, REFIID reserved, LCID, WORD ways,
                                 DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* raised,
                                 UINT* faulty) noexcept {
  if (!self->on_own_thread()) return RPC_E_WRONG_THREAD;
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!well_formed(parameters)) return E_INVALIDARG;
  const auto position = position_of(self->object().description(), number, ways);
  if (!position) return DISP_E_MEMBERNOTFOUND;
  UINT ignored = 0;
  return run(*self, *position, *parameters, result, raised, faulty != nullptr ? *faulty : ignored);
}

}  // namespace orv2_geo::com
