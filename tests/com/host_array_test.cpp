// Arrays of hosts: worked in place, resized through their owner, refused where they are
// fixed; and scripts' arrays, converted and written back.
#include <gtest/gtest.h>

#include "host.h"

using namespace orv2_geo::testing;

namespace {

constexpr USHORT vector_flag = 0x2000;  // FADF_CREATEVECTOR

Held<_cgeo_Algorismos> algorithms() {
  return Server::loaded().create<_cgeo_Algorismos>(CLSID_cgeo_Algorismos, IID__cgeo_Algorismos);
}
Held<_cgeo_Ordena> sorting() {
  return Server::loaded().create<_cgeo_Ordena>(CLSID_cgeo_Ordena, IID__cgeo_Ordena);
}
Held<_cgeo_Matrices> matrices() {
  return Server::loaded().create<_cgeo_Matrices>(CLSID_cgeo_Matrices, IID__cgeo_Matrices);
}
Held<_cgeo_Terreno> terrain() {
  return Server::loaded().create<_cgeo_Terreno>(CLSID_cgeo_Terreno, IID__cgeo_Terreno);
}

// An array that ends with its scope, whatever became of it.
struct Array {
  Array(SAFEARRAY* made) : array(made) {}
  Array(const Array&) = delete;
  Array& operator=(const Array&) = delete;
  ~Array() {
    if (array == nullptr) return;
    EXPECT_EQ(array->cLocks, 0) << "a call leaves no lock behind";
    SafeArrayDestroy(array);
  }
  SAFEARRAY** operator&() { return &array; }
  SAFEARRAY* array;
};

// A line through a square is cut twice: Xc and Yc get bounds 0 to 2.
struct Cuts {
  Array vx = doubles({0.0, 10.0, 10.0, 0.0, 0.0}, 1);
  Array vy = doubles({0.0, 0.0, 10.0, 10.0, 0.0}, 1);
  long nv = 5;
  long cuts = 0;

  HRESULT operator()(SAFEARRAY** xc, SAFEARRAY** yc) {
    double x1 = -5.0, y1 = 5.0, x2 = 15.0, y2 = 5.0;
    return algorithms()->Cortes_R1_con_Pol(&x1, &y1, &x2, &y2, &nv, &vx, &vy, &cuts, xc, yc);
  }
};

TEST(HostArray, AnUnallocatedOneIsMade) {
  Cuts cut;
  Array xc = nullptr, yc = nullptr;
  ASSERT_EQ(cut(&xc, &yc), S_OK);
  EXPECT_EQ(cut.cuts, 2);
  EXPECT_EQ(elements_of<double>(xc.array), (std::vector{0.0, 0.0, 10.0}));
  EXPECT_EQ(elements_of<double>(yc.array), (std::vector{0.0, 5.0, 5.0}));
  VARTYPE type = 0;
  SafeArrayGetVartype(xc.array, &type);
  EXPECT_EQ(type, VT_R8);
}

TEST(HostArray, AResizedOneKeepsItsDescriptor) {
  Cuts cut;
  Array xc = doubles({1.0, 2.0, 3.0, 4.0}, 7), yc = doubles({}, 0);
  SAFEARRAY* const before = xc.array;
  ASSERT_EQ(cut(&xc, &yc), S_OK);
  EXPECT_EQ(xc.array, before);
  EXPECT_EQ(xc.array->rgsabound[0].lLbound, 0);
  EXPECT_EQ(elements_of<double>(xc.array), (std::vector{0.0, 0.0, 10.0}));
}

TEST(HostArray, OneOfOneBlockIsReplaced) {
  Cuts cut;
  Array xc = SafeArrayCreateVector(VT_R8, 3, 9), yc = nullptr;
  ASSERT_NE(xc.array->fFeatures & vector_flag, 0);
  const SAFEARRAY* const before = xc.array;
  ASSERT_EQ(cut(&xc, &yc), S_OK);
  EXPECT_NE(xc.array, before) << "its elements lie behind the descriptor and end with it";
  EXPECT_EQ(elements_of<double>(xc.array), (std::vector{0.0, 0.0, 10.0}));
}

TEST(HostArray, OneVariableGivenTwiceIsOneArray) {
  Cuts cut;
  Array both = doubles({9.0});
  ASSERT_EQ(cut(&both, &both), S_OK);
  EXPECT_EQ(elements_of<double>(both.array), (std::vector{0.0, 5.0, 5.0}));  // Y came last
  Array sum = doubles({1.0, 2.0}, 1);
  ASSERT_EQ(matrices()->Sumar_a_1Matriz_otra(&sum, &sum), S_OK);
  EXPECT_EQ(elements_of<double>(sum.array), (std::vector{2.0, 4.0}));
}

struct Refusal {
  const char* what;
  USHORT feature;
  int locks;
};

TEST(HostArray, FixedAndLockedOnesRefuseToBeResized) {
  for (const Refusal& row :
       {Refusal{"fixed size", FADF_FIXEDSIZE, 0}, Refusal{"static", FADF_STATIC, 0},
        Refusal{"on a stack", FADF_AUTO, 0}, Refusal{"locked by its host", 0, 1}}) {
    SCOPED_TRACE(row.what);
    Cuts cut;
    Array xc = doubles({1.0, 2.0}), yc = nullptr;
    for (int i = 0; i < row.locks; ++i) SafeArrayLock(xc.array);
    xc.array->fFeatures = static_cast<USHORT>(xc.array->fFeatures | row.feature);
    EXPECT_EQ(cut(&xc, &yc), failure_status(10));
    EXPECT_EQ(cut.cuts, 2) << "it was written before";
    EXPECT_EQ(elements_of<double>(xc.array), (std::vector{1.0, 2.0}));
    xc.array->fFeatures = static_cast<USHORT>(xc.array->fFeatures & ~row.feature);
    for (int i = 0; i < row.locks; ++i) SafeArrayUnlock(xc.array);
  }
}

TEST(HostArray, FixedOnesAreWorkedInPlace) {
  Array sum = doubles({1.0, 2.0}, 1), added = doubles({10.0, 20.0}, 1);
  sum.array->fFeatures = static_cast<USHORT>(sum.array->fFeatures | FADF_FIXEDSIZE);
  const void* const place = sum.array->pvData;
  EXPECT_EQ(matrices()->Sumar_a_1Matriz_otra(&sum, &added), S_OK);
  EXPECT_EQ(sum.array->pvData, place);
  EXPECT_EQ(elements_of<double>(sum.array), (std::vector{11.0, 22.0}));
}

TEST(HostArray, OfSeveralDimensionsNoElementIsReached) {
  SAFEARRAYBOUND bounds[3] = {{2, 0}, {3, 1}, {4, 2}};
  Array y = SafeArrayCreate(VT_R8, 3, bounds);
  double lowest = 7.0;
  EXPECT_EQ(terrain()->TF_Yminima_del_Terreno(&y, &lowest), failure_status(9));
  EXPECT_EQ(lowest, 7.0);
  Cuts cut;
  Array yc = nullptr;
  EXPECT_EQ(cut(&y, &yc), S_OK) << "a new size has one dimension";
  EXPECT_EQ(y.array->cDims, 1);
  EXPECT_EQ(elements_of<double>(y.array), (std::vector{0.0, 0.0, 10.0}));
}

TEST(HostArray, OfOtherElementsItIs13) {
  double lowest = 0.0;
  for (const VARTYPE type : {VT_R4, VT_I4, VT_I2, VT_BSTR, VT_VARIANT, VT_DATE, VT_CY, VT_I8,
                             VT_DISPATCH, VT_UNKNOWN, VT_UI1, VT_BOOL}) {
    SCOPED_TRACE(type);
    SAFEARRAYBOUND bound{3, 0};
    Array other = SafeArrayCreate(type, 1, &bound);
    EXPECT_EQ(terrain()->TF_Yminima_del_Terreno(&other, &lowest), failure_status(13));
  }
}

TEST(HostArray, WithoutStorageItIs9) {
  double lowest = 0.0;
  Array none = nullptr;
  EXPECT_EQ(terrain()->TF_Yminima_del_Terreno(&none, &lowest), failure_status(9));
  EXPECT_EQ(terrain()->TF_Yminima_del_Terreno(nullptr, &lowest), failure_status(5));
  Array erased = doubles({1.0, 2.0});
  SafeArrayDestroyData(erased.array);
  EXPECT_EQ(terrain()->TF_Yminima_del_Terreno(&erased, &lowest), failure_status(9));
  Cuts cut;
  Array yc = nullptr;
  EXPECT_EQ(cut(&erased, &yc), S_OK);
  EXPECT_EQ(elements_of<double>(erased.array), (std::vector{0.0, 0.0, 10.0}));
}

TEST(HostArray, OfMoreElementsThanABoundCanTellIs9) {
  double element = 1.0, lowest = 0.0;
  SAFEARRAY huge{};
  huge.cDims = 1;
  huge.cbElements = sizeof(double);
  huge.fFeatures = FADF_STATIC | FADF_FIXEDSIZE;
  huge.pvData = &element;
  huge.rgsabound[0] = {0x80000000U, 1};
  SAFEARRAY* array = &huge;
  EXPECT_EQ(terrain()->TF_Yminima_del_Terreno(&array, &lowest), failure_status(9));
}

TEST(HostArray, TextsAreTheHostsOwn) {
  Array texts = SafeArrayCreateVector(VT_BSTR, 0, 3);
  BSTR* const place = static_cast<BSTR*>(texts.array->pvData);
  place[0] = SysAllocString(L"pino");
  place[1] = SysAllocStringLen(L"arce\0x", 6);  // a zero inside
  BSTR const pine = place[0];
  long all = -2147483647L - 1;
  EXPECT_EQ(sorting()->Ordena_StringArray(&texts, &all, &all), S_OK);
  EXPECT_EQ(place[0], nullptr);
  EXPECT_EQ(SysStringLen(place[1]), 6U);
  EXPECT_EQ(place[2], pine) << "texts change places, not memory";
}

TEST(HostArray, TextsOfAnOddNumberOfBytesAreReadInWholeUnits) {
  Array texts = SafeArrayCreateVector(VT_BSTR, 0, 2);
  BSTR* const place = static_cast<BSTR*>(texts.array->pvData);
  place[0] = SysAllocStringByteLen("b\0", 3);
  place[1] = SysAllocStringByteLen("a\0", 3);
  long all = -2147483647L - 1;
  EXPECT_EQ(sorting()->Ordena_StringArray(&texts, &all, &all), S_OK);
  EXPECT_EQ(place[0][0], L'a');
  EXPECT_EQ(SysStringByteLen(place[1]), 3U);
}

// ---- Late-bound ------------------------------------------------------------

Held<IDispatch> late_algorithms() { return Server::loaded().create(CLSID_cgeo_Algorismos); }
Held<IDispatch> late_sorting() { return Server::loaded().create(CLSID_cgeo_Ordena); }

Answer late_cuts(Value xc, Value yc, Value& cuts) {
  Value vx = script_array({0, 10.0, 10, L"0", 0}, 1);
  Value vy = script_array({0, 0, 10, 10, 0}, 1);
  return call(late_algorithms().get(), L"Cortes_R1_con_Pol",
              {-5, 5, 15, 5, 5, Value::ref(vx), Value::ref(vy), Value::ref(cuts), xc, yc});
}

TEST(ScriptArray, IsWrittenBackWithItsNewBounds) {
  Value cuts, xc = script_array({1, 2, 3, 4, 5}, 3), yc;
  EXPECT_EQ(late_cuts(Value::ref(xc), Value::ref(yc), cuts).status, S_OK);
  EXPECT_EQ(cuts.raw().lVal, 2);
  for (const Value* one : {&xc, &yc}) {
    ASSERT_EQ(one->type(), VT_ARRAY | VT_VARIANT);
    EXPECT_EQ(one->raw().parray->rgsabound[0].lLbound, 0);
    EXPECT_EQ(one->raw().parray->cLocks, 0);
  }
  EXPECT_EQ(numbers_of(xc.raw()), (std::vector{0.0, 0.0, 10.0}));
  EXPECT_EQ(numbers_of(yc.raw()), (std::vector{0.0, 5.0, 5.0}));
}

TEST(ScriptArray, OfFixedSizeIs10AndStays) {
  Value cuts, xc = script_array({1, 2}), yc;
  xc.raw().parray->fFeatures |= FADF_FIXEDSIZE;
  const Answer answer = late_cuts(Value::ref(xc), Value::ref(yc), cuts);
  EXPECT_EQ(answer.code, failure_status(10));
  EXPECT_EQ(numbers_of(xc.raw()), (std::vector{1.0, 2.0}));
  EXPECT_EQ(yc.type(), VT_EMPTY);
  EXPECT_EQ(cuts.raw().lVal, 2);
  xc.raw().parray->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
}

TEST(ScriptArray, ElementsThatDoNotChangeKeepTheirType) {
  Value sum = script_array({L"7", 1, 2.5}, 0), added = script_array({0, 1, 1}, 0);
  const Held<IDispatch> object = Server::loaded().create(CLSID_cgeo_Matrices);
  ASSERT_EQ(
      call(object.get(), L"Sumar_a_1Matriz_otra", {Value::ref(sum), Value::ref(added)}).status,
      S_OK);
  const auto all = elements_of<VARIANT>(sum.raw().parray);
  EXPECT_EQ(all[0].vt, VT_BSTR);
  EXPECT_EQ(all[1].vt, VT_R8);
  EXPECT_EQ(all[1].dblVal, 2.0);
}

TEST(ScriptArray, AnElementThatIsNoNumberIsAMismatch) {
  Value array = script_array({1.0, L"dos"});
  const Answer answer = call(late_sorting().get(), L"Ordena_Double_Array", {Value::ref(array)});
  EXPECT_EQ(answer.status, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(answer.faulty, 0U);
  EXPECT_EQ(array.raw().parray->cLocks, 0);
}

TEST(ScriptArray, TextsAndWholeNumbersToo) {
  Value texts = script_array({L"c", 2, L"a"}), index = script_array({0, 1, 2});
  ASSERT_EQ(
      call(late_sorting().get(), L"Ordena_StringIndexArray", {Value::ref(texts), Value::ref(index)})
          .status,
      S_OK);
  EXPECT_EQ(numbers_of(index.raw()), (std::vector{1.0, 2.0, 0.0}));
  Value numbers = script_array({3.5, L"1", 2});
  ASSERT_EQ(call(late_sorting().get(), L"Ordena_LongArray", {Value::ref(numbers)}).status, S_OK);
  EXPECT_EQ(numbers_of(numbers.raw()), (std::vector{1.0, 2.0, 4.0})) << "3.5 is rounded to 4";
}

TEST(ScriptArray, OfTwoDimensionsIs9) {
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  Value array;
  array.raw().vt = VT_ARRAY | VT_VARIANT;
  array.raw().parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  EXPECT_EQ(call(late_sorting().get(), L"Ordena_Double_Array", {Value::ref(array)}).code,
            failure_status(9));
}

TEST(LateArray, ByValueIsACopy) {
  Value script = script_array({3, 1, 2});
  EXPECT_EQ(call(late_sorting().get(), L"Ordena_LongArray", {script}).status, S_OK);
  EXPECT_EQ(numbers_of(script.raw()), (std::vector{3.0, 1.0, 2.0}));
  Value own;
  own.raw().vt = VT_ARRAY | VT_I4;
  own.raw().parray = longs({3, 1, 2});
  EXPECT_EQ(call(late_sorting().get(), L"Ordena_LongArray", {own}).status, S_OK);
  EXPECT_EQ(elements_of<LONG>(own.raw().parray), (std::vector<LONG>{3, 1, 2}));
}

TEST(LateArray, InAVariableOfAnyTypeIsWorkedInPlace) {
  Value own;
  own.raw().vt = VT_ARRAY | VT_I4;
  own.raw().parray = longs({3, 1, 2});
  const void* const place = own.raw().parray->pvData;
  EXPECT_EQ(call(late_sorting().get(), L"Ordena_LongArray", {Value::ref(own)}).status, S_OK);
  EXPECT_EQ(own.raw().parray->pvData, place);
  EXPECT_EQ(elements_of<LONG>(own.raw().parray), (std::vector<LONG>{1, 2, 3}));
}

}  // namespace
