#include "host.h"

#include <algorithm>

namespace orv2_geo::testing {

const CLSID* const class_identifiers[7] = {
    &CLSID_cgeo_Algorismos, &CLSID_cgeo_FuncDeriv, &CLSID_cgeo_Terreno, &CLSID_cgeo_api,
    &CLSID_cgeo_Ordena,     &CLSID_cgeo_Geometria, &CLSID_cgeo_Matrices};
const IID* const interface_identifiers[7] = {
    &IID__cgeo_Algorismos, &IID__cgeo_FuncDeriv, &IID__cgeo_Terreno, &IID__cgeo_api,
    &IID__cgeo_Ordena,     &IID__cgeo_Geometria, &IID__cgeo_Matrices};

std::wstring Server::path() {
  wchar_t own[1024];
  GetModuleFileNameW(nullptr, own, 1024);
  std::wstring path = own;
  return path.substr(0, path.rfind(L'\\') + 1) + L"Orv2_Geo.dll";
}

Server::Server() : module_(LoadLibraryW(path().c_str())) {}

Server& Server::loaded() {
  static Server server;
  return server;
}

HRESULT Server::class_object(REFCLSID of_class, REFIID wanted, void** place) const {
  using Entry = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  void* const entry = reinterpret_cast<void*>(GetProcAddress(module_, "DllGetClassObject"));
  return reinterpret_cast<Entry>(entry)(of_class, wanted, place);
}

HRESULT Server::call(const char* entry) const {
  using Entry = HRESULT(STDAPICALLTYPE*)();
  return reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(module_, entry)))();
}

HRESULT Server::can_unload() const { return call("DllCanUnloadNow"); }

Value::Value(IDispatch* object) : Value() {
  value_.vt = VT_DISPATCH;
  value_.pdispVal = object;
  if (object != nullptr) object->AddRef();
}

Value Value::left_out() {
  Value value;
  value.value_.vt = VT_ERROR;
  value.value_.scode = DISP_E_PARAMNOTFOUND;
  return value;
}

double Value::number() const {
  Value number;
  VariantChangeType(&number.value_, const_cast<VARIANT*>(&value_), 0, VT_R8);
  return number.value_.dblVal;
}

DISPID number_of(IDispatch* object, const wchar_t* name) {
  std::wstring letters = name;
  wchar_t* names = letters.data();
  DISPID number = DISPID_UNKNOWN;
  object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &number);
  return number;
}

namespace {
std::wstring taken(BSTR text) {
  const std::wstring words = text != nullptr ? std::wstring(text, SysStringLen(text)) : L"";
  SysFreeString(text);
  return words;
}
}  // namespace

Answer call_with(IDispatch* object, DISPID number, DISPPARAMS& parameters, WORD ways) {
  Answer answer;
  EXCEPINFO raised{};
  answer.status = object->Invoke(number, IID_NULL, LOCALE_USER_DEFAULT, ways, &parameters,
                                 &answer.result.raw(), &raised, &answer.faulty);
  answer.code = raised.scode;
  answer.description = taken(raised.bstrDescription);
  answer.source = taken(raised.bstrSource);
  SysFreeString(raised.bstrHelpFile);
  return answer;
}

Answer call(IDispatch* object, const wchar_t* name, std::vector<Value> arguments, WORD ways) {
  std::vector<VARIANT> given;
  for (auto one = arguments.rbegin(); one != arguments.rend(); ++one) given.push_back(one->raw());
  DISPPARAMS parameters{given.data(), nullptr, static_cast<UINT>(given.size()), 0};
  DISPID put_value = DISPID_PROPERTYPUT;
  if (ways == DISPATCH_PROPERTYPUT) {
    parameters.rgdispidNamedArgs = &put_value;
    parameters.cNamedArgs = 1;
  }
  return call_with(object, number_of(object, name), parameters, ways);
}

SAFEARRAY* variants(std::initializer_list<Value> elements, LONG lower) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(elements.size()), lower};
  SAFEARRAY* const array = SafeArrayCreate(VT_VARIANT, 1, &bound);
  auto* place = static_cast<VARIANT*>(array->pvData);
  for (const Value& one : elements) VariantCopy(place++, const_cast<VARIANT*>(&one.raw()));
  return array;
}

Value script_array(std::initializer_list<Value> elements, LONG lower) {
  Value value;
  value.raw().vt = VT_ARRAY | VT_VARIANT;
  value.raw().parray = variants(elements, lower);
  return value;
}

std::vector<double> numbers_of(const VARIANT& script_array) {
  std::vector<double> numbers;
  for (const VARIANT& one : elements_of<VARIANT>(script_array.parray)) {
    VARIANT number{};
    VariantChangeType(&number, const_cast<VARIANT*>(&one), 0, VT_R8);
    numbers.push_back(number.dblVal);
  }
  return numbers;
}

STDMETHODIMP HostObject::QueryInterface(REFIID wanted, void** place) {
  const bool known = wanted == IID_IUnknown || wanted == IID_IDispatch;
  *place = known ? this : nullptr;
  if (known) AddRef();
  return known ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) HostObject::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP HostObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* numbers) {
  const auto known = std::find(names_.begin(), names_.end(), names[0]);
  *numbers = static_cast<DISPID>(known - names_.begin()) + 1;
  if (known == names_.end()) names_.emplace_back(names[0]);
  return S_OK;
}

STDMETHODIMP HostObject::Invoke(DISPID number, REFIID, LCID, WORD ways, DISPPARAMS* given,
                                VARIANT* result, EXCEPINFO* raised, UINT*) {
  if (number < 1) return DISP_E_MEMBERNOTFOUND;  // it has no default value
  return handler_({names_[static_cast<std::size_t>(number - 1)], ways, given, result, raised});
}

std::size_t busy_blocks() {
  HANDLE const heap = GetProcessHeap();
  PROCESS_HEAP_ENTRY entry{};
  std::size_t count = 0;
  HeapLock(heap);
  while (HeapWalk(heap, &entry) != FALSE) {
    if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) ++count;
  }
  HeapUnlock(heap);
  return count;
}

}  // namespace orv2_geo::testing
