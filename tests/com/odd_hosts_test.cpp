// Odd hosts that once broke something: one test each.
#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "host.h"
#include "orv2_geo/com/late_places.h"

using namespace orv2_geo;
using namespace orv2_geo::testing;

namespace {

constexpr LONG whole = -2147483647L - 1;

Held<_cgeo_Ordena> sorting() {
  return Server::loaded().create<_cgeo_Ordena>(CLSID_cgeo_Ordena, IID__cgeo_Ordena);
}

// Makes an index of three numbers; `index` is any array.
HRESULT index_of_numbers(SAFEARRAY** index, LONG upper = whole) {
  SAFEARRAY* numbers = doubles({0.0, 3.0, 1.0, 2.0});
  LONG lower = whole;
  const HRESULT status = sorting()->Ordena_Double_Index_Array(&numbers, index, &lower, &upper);
  SafeArrayDestroy(numbers);
  return status;
}

TEST(OddHosts, ADescriptorOfOtherElementsIs13WithoutStorageToo) {
  for (const VARTYPE type : {VT_BSTR, VT_DISPATCH, VT_VARIANT, VT_I2, VT_R8}) {
    SCOPED_TRACE(type);
    SAFEARRAYBOUND bound{4, 0};
    SAFEARRAY* erased = SafeArrayCreate(type, 1, &bound);
    SafeArrayDestroyData(erased);
    EXPECT_EQ(index_of_numbers(&erased), failure_status(13));
    EXPECT_EQ(erased->pvData, nullptr);
    if (erased->pvData == nullptr) SafeArrayDestroy(erased);
  }
}

TEST(OddHosts, ADescriptorThatTellsNoElementsGetsTheirSize) {
  SAFEARRAY* bare = nullptr;
  ASSERT_EQ(SafeArrayAllocDescriptor(1, &bare), S_OK);
  EXPECT_EQ(index_of_numbers(&bare), S_OK);
  EXPECT_EQ(bare->cbElements, sizeof(LONG));
  SafeArrayDestroy(bare);
}

// Some systems count an array's bytes in 32 bits and make one that is too small.
TEST(OddHosts, AnArrayOfMoreBytesThanTheSystemCountsIs7) {
  SAFEARRAY* index = longs({7, 7});
  EXPECT_EQ(index_of_numbers(&index, 0x40000000), failure_status(7));
  EXPECT_EQ(elements_of<LONG>(index), (std::vector<LONG>{7, 7}));
  if (index->rgsabound[0].cElements == 2) SafeArrayDestroy(index);
}

TEST(OddHosts, AScriptsTextsStayWhereANewSizeIsRefused) {
  Value texts = script_array({L"", L"uno", L"dos", L"tres"});
  SAFEARRAY* const array = texts.raw().parray;
  array->fFeatures |= FADF_FIXEDSIZE;
  {
    com::ScriptArrayPlace<StringArray> place(texts.raw().parray);
    auto& in_call = *static_cast<StringArray*>(place.argument().variable);
    EXPECT_THROW(in_call.size_keeping_from_0(2), RunFailure);
    EXPECT_EQ(in_call(1), Text(u"uno"));
    place.write_back();
  }
  array->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
  EXPECT_STREQ(static_cast<VARIANT*>(array->pvData)[2].bstrVal, L"dos");
}

// An object that counts as a number, and tells of its end.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
class Ending final : public IDispatch {
 public:
  explicit Ending(std::function<void()> end) : end_(std::move(end)) {}
  STDMETHODIMP QueryInterface(REFIID, void** place) override {
    *place = this;
    return ++references_, S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    if (--references_ == 0) end_();
    return references_;
  }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* answer, EXCEPINFO*,
                      UINT*) override {
    answer->vt = VT_I4;
    answer->lVal = 1;
    return S_OK;
  }

 private:
  std::function<void()> end_;
  ULONG references_ = 1;
};
#pragma GCC diagnostic pop

TEST(OddHosts, AnElementThatEndsSeesTheNewArrayInItsVariable) {
  SAFEARRAY* index = SafeArrayCreateVector(VT_VARIANT, 0, 2);
  SAFEARRAY* const old = index;
  SAFEARRAY* seen = nullptr;
  Ending object([&] { seen = index; });
  static_cast<VARIANT*>(index->pvData)[0].vt = VT_DISPATCH;
  static_cast<VARIANT*>(index->pvData)[0].pdispVal = &object;
  Value numbers = script_array({0, 3, 1, 2});
  EXPECT_EQ(call(Server::loaded().create(CLSID_cgeo_Ordena).get(), L"Ordena_Double_Index_Array",
                 {Value::ref(numbers), Value::array(VT_VARIANT, index)})
                .status,
            S_OK);
  ASSERT_NE(seen, nullptr);
  EXPECT_NE(seen, old) << "it is about to end";
  EXPECT_EQ(seen, index);
  SafeArrayDestroy(index);
}

// What a thread does with a copy of the server of its own.
struct Visit {
  HMODULE module;
  static DWORD CALLBACK run(void* self) {
    static_cast<Visit*>(self)->sort_and_let_go();
    return 0;
  }
  void sort_and_let_go() const {
    using Entry = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    const auto entry = reinterpret_cast<Entry>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    {
      Held<IClassFactory> factory;
      entry(CLSID_cgeo_Ordena, IID_IClassFactory, factory.void_place());
      Held<_cgeo_Ordena> object;
      factory->CreateInstance(nullptr, IID__cgeo_Ordena, object.void_place());
      SAFEARRAY* texts = SafeArrayCreateVector(VT_BSTR, 0, 2);
      static_cast<BSTR*>(texts->pvData)[0] = SysAllocString(L"pino");
      static_cast<BSTR*>(texts->pvData)[1] = SysAllocString(L"arce");
      LONG lower = whole, upper = whole;
      EXPECT_EQ(object->Ordena_StringArray(&texts, &lower, &upper), S_OK);
      SafeArrayDestroy(texts);
    }
    FreeLibrary(module);
  }
};

TEST(OddHosts, AThreadThatSortedTextsEndsAfterTheModule) {
  const std::wstring copy = Server::path() + L".visited.dll";
  ASSERT_TRUE(CopyFileW(Server::path().c_str(), copy.c_str(), FALSE));
  static Visit visit;  // a thread that hangs may outlive the test
  visit.module = LoadLibraryW(copy.c_str());
  ASSERT_NE(visit.module, nullptr);
  HANDLE const thread = CreateThread(nullptr, 0, &Visit::run, &visit, 0, nullptr);
  EXPECT_EQ(WaitForSingleObject(thread, 10000), WAIT_OBJECT_0) << "it hangs on its way out";
  CloseHandle(thread);
  EXPECT_EQ(GetModuleHandleW(copy.c_str()), nullptr) << "nothing keeps it loaded";
  DeleteFileW(copy.c_str());
}

// The count of cuts is to stand in an element of the array that is to be resized.
TEST(OddHosts, AnElementInUseKeepsItsArrayInPlace) {
  const Held<IDispatch> object = Server::loaded().create(CLSID_cgeo_Algorismos);
  Value vx = script_array({0, 10, 10, 0, 0}, 1), vy = script_array({0, 0, 10, 10, 0}, 1);
  const auto cut = [&](Value count, Value xc) {
    Value yc;
    return call(object.get(), L"Cortes_R1_con_Pol",
                {-5, 5, 15, 5, 5, Value::ref(vx), Value::ref(vy), count, xc, Value::ref(yc)});
  };
  Value script = script_array({1, 2, 3, 4});
  auto* const elements = static_cast<VARIANT*>(script.raw().parray->pvData);
  Value element;
  element.raw().vt = VT_BYREF | VT_VARIANT;
  element.raw().pvarVal = elements + 3;
  EXPECT_EQ(cut(element, Value::ref(script)).code, failure_status(10));
  EXPECT_EQ(numbers_of(script.raw()), (std::vector{1.0, 2.0, 3.0, 2.0}));
  double number = 7.0;
  SAFEARRAY* xc = doubles({1.0, 2.0});
  EXPECT_EQ(cut(Value::ref(static_cast<double*>(xc->pvData)[1]), Value::array(VT_R8, xc)).code,
            failure_status(10));
  EXPECT_EQ(elements_of<double>(xc), (std::vector{1.0, 2.0}));
  EXPECT_EQ(cut(Value::ref(number), Value::array(VT_R8, xc)).status, S_OK);
  EXPECT_EQ(number, 2.0);
  SafeArrayDestroy(xc);
}

TEST(OddHosts, AVariableOfAnotherTypeGivenTwiceIsOneVariable) {
  const Held<IDispatch> object = Server::loaded().create(CLSID_cgeo_Algorismos);
  long both = 0;
  double same = 0.0;
  const Answer converted = call(object.get(), L"Atn2", {Value::ref(both), Value::ref(both)});
  const Answer in_place = call(object.get(), L"Atn2", {Value::ref(same), Value::ref(same)});
  EXPECT_EQ(converted.result.raw().fltVal, in_place.result.raw().fltVal);
}

TEST(OddHosts, AnElementThatIsAReferenceIsFollowed) {
  VARIANT inner{};
  inner.vt = VT_R8;
  inner.dblVal = 1.0;
  Value sum = script_array({0, 0}), added = script_array({0, 2});
  auto& element = static_cast<VARIANT*>(sum.raw().parray->pvData)[1];
  element.vt = VT_BYREF | VT_VARIANT;
  element.pvarVal = &inner;
  const Held<IDispatch> object = Server::loaded().create(CLSID_cgeo_Matrices);
  EXPECT_EQ(
      call(object.get(), L"Sumar_a_1Matriz_otra", {Value::ref(sum), Value::ref(added)}).status,
      S_OK);
  EXPECT_EQ(inner.dblVal, 3.0);
}

TEST(OddHosts, OnlyWhatExistsIsCalled) {
  const Held<IDispatch> functions = Server::loaded().create(CLSID_cgeo_FuncDeriv);
  EXPECT_EQ(call(functions.get(), L"RPi", {1.0}, DISPATCH_PROPERTYPUTREF).status,
            DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(call(functions.get(), L"F_Sen", {1.0}, 0).status, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(call(functions.get(), L"F_Sen", {1.0}, DISPATCH_PROPERTYGET).status, S_OK);
}

TEST(OddHosts, ACallHasAReferenceOfItsOwn) {
  Held<IDispatch> object = Server::loaded().create(CLSID_cgeo_Algorismos);
  ULONG during = 0;
  Held<HostObject> surface(new HostObject([&](const HostObject::Call&) {
    object->AddRef();
    during = object->Release();
    return S_OK;
  }));
  EXPECT_EQ(call(object.get(), L"Linea_a_puntos", {Value(surface.get()), 0, 0, 1, 0}).status, S_OK);
  EXPECT_EQ(during, 2U);
}

}  // namespace
