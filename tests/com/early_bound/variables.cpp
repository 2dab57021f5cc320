// A component host's variables.
#include "tests/com/early_bound/variables.h"

#include <oleauto.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace orv2_geo::early_bound {

using vectors::is_array;
using vectors::Kind;
using vectors::Value;

namespace {

constexpr std::byte untouched{0xa5};

BSTR system_text(const std::u16string& text) {
  return SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                           static_cast<UINT>(text.size()));
}

std::u16string units_of(BSTR text) {
  return {reinterpret_cast<const char16_t*>(text), SysStringLen(text)};
}

VARTYPE element_type(Kind array) {
  switch (array) {
    case Kind::doubles: return VT_R8;
    case Kind::singles: return VT_R4;
    case Kind::longs: return VT_I4;
    case Kind::shorts: return VT_I2;
    default: return VT_BSTR;
  }
}

std::size_t size_of(Kind kind) {
  switch (kind) {
    case Kind::f64: return sizeof(double);
    case Kind::f32:
    case Kind::i32: return 4;
    case Kind::i16:
    case Kind::boolean: return 2;
    default: return sizeof(void*);
  }
}

// Numbers of any size stand in memory lowest byte first, as their bits do.
void put(std::byte* place, const Value& value) {
  if (value.kind == Kind::text) {
    const BSTR text = system_text(value.text);
    std::memcpy(place, &text, sizeof text);
  } else {
    std::memcpy(place, &value.bits, size_of(value.kind));
  }
}

Value at(Kind kind, const std::byte* place) {
  if (kind == Kind::text) {
    BSTR text = nullptr;
    std::memcpy(&text, place, sizeof text);
    return vectors::text_of(units_of(text));
  }
  std::uint64_t bits = 0;
  std::memcpy(&bits, place, size_of(kind));
  if (kind == Kind::i32) return vectors::whole(kind, static_cast<std::int32_t>(bits));
  if (kind == Kind::f64 || kind == Kind::f32) {
    return vectors::whole(kind, static_cast<std::int64_t>(bits));
  }
  return vectors::whole(kind, static_cast<std::int16_t>(bits));
}

SAFEARRAY* new_array(const Value& value) {
  if (!value.allocated) return nullptr;
  std::vector<SAFEARRAYBOUND> bounds(value.dimensions, SAFEARRAYBOUND{1, 0});
  bounds[0] = {static_cast<ULONG>(value.elements.size()), value.lower};
  SAFEARRAY* const array =
      SafeArrayCreate(element_type(value.kind), value.dimensions, bounds.data());
  if (array == nullptr) throw std::runtime_error("no memory for an array");
  auto* place = static_cast<std::byte*>(array->pvData);
  for (const Value& element : value.elements) {
    put(place, element);
    place += array->cbElements;
  }
  return array;
}

Value content_of_array(Kind kind, SAFEARRAY* array) {
  Value value;
  value.kind = kind;
  value.allocated = array != nullptr && array->pvData != nullptr;
  if (!value.allocated) return value;
  LONG lower = 0;
  SafeArrayGetLBound(array, 1, &lower);
  value.lower = lower;
  value.dimensions = array->cDims;
  ULONG count = 1;
  for (USHORT i = 0; i < array->cDims; ++i) count *= array->rgsabound[i].cElements;
  const auto* const data = static_cast<const std::byte*>(array->pvData);
  for (ULONG i = 0; i < count; ++i) {
    value.elements.push_back(at(vectors::element_of(kind), data + i * array->cbElements));
  }
  return value;
}

}  // namespace

template <class T>
T Variable::as() const {
  T value;
  std::memcpy(&value, cell_.data(), sizeof value);
  return value;
}

template <class T>
void Variable::set(T value) {
  std::memcpy(cell_.data(), &value, sizeof value);
}

Variable::Variable(const Value& value, IDispatch* host)
    : kind_(value.kind), host_(value.bits != 0 ? host : nullptr) {
  std::fill(cell_.begin(), cell_.end(), untouched);
  if (is_array(kind_)) {
    set(new_array(value));
  } else if (kind_ == Kind::object) {
    set(host_);
  } else {
    put(cell_.data(), value);
  }
}

Variable::~Variable() {
  if (kind_ == Kind::text) SysFreeString(as<BSTR>());
  if (!is_array(kind_) || as<SAFEARRAY*>() == nullptr) return;
  while (as<SAFEARRAY*>()->cLocks != 0) SafeArrayUnlock(as<SAFEARRAY*>());
  SafeArrayDestroy(as<SAFEARRAY*>());
}

Value Variable::content() const {
  if (is_array(kind_)) return content_of_array(kind_, as<SAFEARRAY*>());
  if (kind_ == Kind::object) return vectors::whole(kind_, as<IDispatch*>() != nullptr);
  return at(kind_, cell_.data());
}

std::string Variable::misuse() const {
  const auto behind = cell_.begin() + static_cast<std::ptrdiff_t>(size_of(kind_));
  if (!std::all_of(behind, cell_.end(), [](std::byte b) { return b == untouched; })) {
    return "written behind the variable";
  }
  if (kind_ == Kind::object && as<IDispatch*>() != host_) return "another object in the variable";
  const SAFEARRAY* const array = is_array(kind_) ? as<SAFEARRAY*>() : nullptr;
  if (array != nullptr && array->cLocks != 0) return "an array left locked";
  return {};
}

Variables::Variables(const std::vector<vectors::Given>& given, IDispatch* host) {
  for (const vectors::Given& one : given) {
    arguments_.push_back(one.same_as >= 0 ? arguments_[static_cast<std::size_t>(one.same_as)]
                                          : &own_.emplace_back(one.value, host));
  }
}

}  // namespace orv2_geo::early_bound
