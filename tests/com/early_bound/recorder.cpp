// What a host's object does when it is called by name.
#include "tests/com/early_bound/recorder.h"

#include <oleauto.h>

#include <algorithm>
#include <bit>

namespace orv2_geo::early_bound {

using vectors::Kind;
using vectors::Value;

namespace {

// A number of an argument, or of the variable that it points at.
Value content_of(const VARIANT& given) {
  switch (given.vt) {
    case VT_R8: return vectors::real(given.dblVal);
    case VT_R8 | VT_BYREF: return vectors::real(*given.pdblVal);
    case VT_R4: return vectors::real(given.fltVal);
    case VT_R4 | VT_BYREF: return vectors::real(*given.pfltVal);
    case VT_I4: return vectors::whole(Kind::i32, given.lVal);
    case VT_I4 | VT_BYREF: return vectors::whole(Kind::i32, *given.plVal);
    case VT_I2: return vectors::whole(Kind::i16, given.iVal);
    case VT_I2 | VT_BYREF: return vectors::whole(Kind::i16, *given.piVal);
    case VT_BOOL: return vectors::whole(Kind::boolean, given.boolVal);
    case VT_BOOL | VT_BYREF: return vectors::whole(Kind::boolean, *given.pboolVal);
    case VT_VARIANT | VT_BYREF: return content_of(*given.pvarVal);
    default: return {};
  }
}

std::string plain(const OLECHAR* name) {
  std::string letters;
  for (; *name != 0; ++name) letters += static_cast<char>(*name);
  return letters;
}

}  // namespace

HRESULT Recorder::QueryInterface(REFIID wanted, void** interface_) {
  *interface_ = nullptr;
  if (wanted != IID_IUnknown && wanted != IID_IDispatch) return E_NOINTERFACE;
  *interface_ = static_cast<IDispatch*>(this);
  AddRef();
  return S_OK;
}

ULONG Recorder::AddRef() { return static_cast<ULONG>(++references_); }

// Its maker ends it: a reference too few is seen, not fatal.
ULONG Recorder::Release() { return static_cast<ULONG>(--references_); }

HRESULT Recorder::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

HRESULT Recorder::GetTypeInfo(UINT, LCID, ITypeInfo**) { return E_NOTIMPL; }

HRESULT Recorder::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* numbers) {
  if (count != 1) return DISP_E_UNKNOWNNAME;
  const std::string name = plain(names[0]);
  const auto place = std::find(names_.begin(), names_.end(), name);
  numbers[0] = static_cast<DISPID>(place - names_.begin());
  if (place == names_.end()) names_.push_back(name);
  return S_OK;
}

HRESULT Recorder::Invoke(DISPID number, REFIID, LCID, WORD kind, DISPPARAMS* given, VARIANT*,
                         EXCEPINFO*, UINT*) {
  if (number < 0 || static_cast<std::size_t>(number) >= names_.size()) {
    return DISP_E_MEMBERNOTFOUND;
  }
  const bool is_set = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  vectors::Told now{names_[static_cast<std::size_t>(number)] + (is_set ? "=" : ""), {}};
  for (UINT i = given->cArgs; i > 0; --i) now.values.push_back(content_of(given->rgvarg[i - 1]));
  const bool named_right =
      !is_set || (given->cNamedArgs == 1 && given->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT);
  if (!named_right) now.name += "?";
  told.push_back(now);
  return S_OK;
}

}  // namespace orv2_geo::early_bound
