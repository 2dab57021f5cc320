// host.h: a component host for the tests: the server as a module, objects, variants,
// arrays, and an object of its own.
#pragma once

#include <windows.h>
// The others take its names for granted.
#include <cguid.h>
#include <oaidl.h>
#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>
#include <winver.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Orv2_Geo_h.h"

namespace orv2_geo::testing {

constexpr HRESULT failure_status(int number) {
  return static_cast<HRESULT>(0x800A0000U | static_cast<unsigned>(number));
}

/// A counted pointer to an interface.
template <class I>
class Held {
 public:
  Held() = default;
  explicit Held(I* counted) : pointer_(counted) {}
  Held(Held&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  Held& operator=(Held&& other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~Held() {
    if (pointer_ != nullptr) pointer_->Release();
  }
  I* get() const { return pointer_; }
  I* operator->() const { return pointer_; }
  I** place() { return &pointer_; }
  void** void_place() { return reinterpret_cast<void**>(&pointer_); }
  explicit operator bool() const { return pointer_ != nullptr; }

 private:
  I* pointer_ = nullptr;
};

/// The server, loaded from the folder of the test; it is registered nowhere.
class Server {
 public:
  static Server& loaded();

  /// The path of its file.
  static std::wstring path();

  HRESULT class_object(REFCLSID of_class, REFIID wanted, void** place) const;
  HRESULT can_unload() const;
  HRESULT call(const char* entry) const;
  HMODULE module() const { return module_; }

  template <class I>
  Held<I> create(REFCLSID of_class, REFIID wanted) const {
    Held<IClassFactory> factory;
    Held<I> object;
    if (SUCCEEDED(class_object(of_class, IID_IClassFactory, factory.void_place()))) {
      factory->CreateInstance(nullptr, wanted, object.void_place());
    }
    return object;
  }
  Held<IDispatch> create(REFCLSID of_class) const {
    return create<IDispatch>(of_class, IID_IDispatch);
  }

 private:
  Server();
  HMODULE module_;
};

/// The seven classes in their order.
extern const CLSID* const class_identifiers[7];
extern const IID* const interface_identifiers[7];

/// A variant that ends with its scope.
class Value {
 public:
  Value() { VariantInit(&value_); }
  Value(double number) : Value() { value_.vt = VT_R8, value_.dblVal = number; }
  Value(int number) : Value() { value_.vt = VT_I4, value_.lVal = number; }
  Value(bool flag) : Value() { value_.vt = VT_BOOL, value_.boolVal = flag ? -1 : 0; }
  Value(const wchar_t* text) : Value() {
    value_.vt = VT_BSTR, value_.bstrVal = SysAllocString(text);
  }
  explicit Value(IDispatch* object);
  Value(const Value& other) : Value() { VariantCopy(&value_, const_cast<VARIANT*>(&other.value_)); }
  Value& operator=(Value other) {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Value() { VariantClear(&value_); }

  /// By reference to a host's variable.
  static Value ref(double& v) { return by_reference(VT_R8, &v); }
  static Value ref(float& v) { return by_reference(VT_R4, &v); }
  static Value ref(long& v) { return by_reference(VT_I4, &v); }
  static Value ref(short& v) { return by_reference(VT_I2, &v); }
  static Value ref(BSTR& v) { return by_reference(VT_BSTR, &v); }
  static Value ref(IDispatch*& v) { return by_reference(VT_DISPATCH, &v); }
  static Value ref(Value& v) { return by_reference(VT_VARIANT, &v.value_); }
  static Value array(VARTYPE element, SAFEARRAY*& v) {
    return by_reference(static_cast<VARTYPE>(VT_ARRAY | element), &v);
  }
  static Value by_reference(VARTYPE type, void* variable) {
    Value value;
    value.value_.vt = static_cast<VARTYPE>(VT_BYREF | type);
    value.value_.byref = variable;
    return value;
  }
  static Value left_out();

  VARIANT& raw() { return value_; }
  const VARIANT& raw() const { return value_; }
  VARTYPE type() const { return value_.vt; }
  /// Its number, converted by the system.
  double number() const;

 private:
  VARIANT value_;
};

/// What a late-bound call answered.
struct Answer {
  HRESULT status = S_OK;
  Value result;
  std::int32_t code = 0;  // of a raised failure
  std::wstring description;
  std::wstring source;
  UINT faulty = 99;
};

DISPID number_of(IDispatch* object, const wchar_t* name);
Answer call(IDispatch* object, const wchar_t* name, std::vector<Value> arguments,
            WORD ways = DISPATCH_METHOD);
Answer call_with(IDispatch* object, DISPID number, DISPPARAMS& parameters,
                 WORD ways = DISPATCH_METHOD);

/// An array of the system's with these elements, from `lower`.
template <class T>
SAFEARRAY* array_of(VARTYPE type, std::initializer_list<T> elements, LONG lower = 0) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(elements.size()), lower};
  SAFEARRAY* const array = SafeArrayCreate(type, 1, &bound);
  std::size_t i = 0;
  for (const T& one : elements) static_cast<T*>(array->pvData)[i++] = one;
  return array;
}
inline SAFEARRAY* doubles(std::initializer_list<double> elements, LONG lower = 0) {
  return array_of<double>(VT_R8, elements, lower);
}
inline SAFEARRAY* longs(std::initializer_list<LONG> elements, LONG lower = 0) {
  return array_of<LONG>(VT_I4, elements, lower);
}
/// A script's array: variants.
SAFEARRAY* variants(std::initializer_list<Value> elements, LONG lower = 0);
Value script_array(std::initializer_list<Value> elements, LONG lower = 0);

template <class T>
std::vector<T> elements_of(const SAFEARRAY* array) {
  if (array == nullptr) return {};
  const T* const first = static_cast<const T*>(array->pvData);
  return {first, first + array->rgsabound[0].cElements};
}
std::vector<double> numbers_of(const VARIANT& script_array);

// The system's interfaces end through Release, not by a destructor.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// A host's own object: every call of a member goes to a function.
class HostObject final : public IDispatch {
 public:
  struct Call {
    std::wstring name;
    WORD ways;
    DISPPARAMS* given;
    VARIANT* result;
    EXCEPINFO* raised;
  };
  using Handler = std::function<HRESULT(const Call&)>;
  explicit HostObject(Handler handler) : handler_(std::move(handler)) {}

  STDMETHODIMP QueryInterface(REFIID wanted, void** place) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* numbers) override;
  STDMETHODIMP Invoke(DISPID number, REFIID, LCID, WORD ways, DISPPARAMS* given, VARIANT* result,
                      EXCEPINFO* raised, UINT*) override;

  ULONG references() const { return references_; }

 private:
  ~HostObject() = default;
  Handler handler_;
  std::vector<std::wstring> names_;
  ULONG references_ = 1;
};

#pragma GCC diagnostic pop

/// Blocks in use on the heap of the process.
std::size_t busy_blocks();

}  // namespace orv2_geo::testing
