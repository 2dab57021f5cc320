// Calls by name and number: arguments of any type, written back; the dispatch service's
// own errors.
#include <gtest/gtest.h>

#include "host.h"

using namespace orv2_geo::testing;

namespace {

Held<IDispatch> algorithms() { return Server::loaded().create(CLSID_cgeo_Algorismos); }
Held<IDispatch> sorting() { return Server::loaded().create(CLSID_cgeo_Ordena); }
Held<IDispatch> functions() { return Server::loaded().create(CLSID_cgeo_FuncDeriv); }

constexpr double north_east = 49.999999993471356;

TEST(LateCall, AVariableOfTheParametersTypeIsUsedInPlace) {
  double azimuth = 7.0;
  EXPECT_EQ(call(algorithms().get(), L"Azimut", {1.0, 1.0, Value::ref(azimuth)}).status, S_OK);
  EXPECT_EQ(azimuth, north_east);
}

TEST(LateCall, AVariableOfAnyTypeIsWrittenBack) {
  for (const Value& before : {Value(5), Value(5.0), Value(L"5"), Value(), Value(true)}) {
    Value azimuth(before);
    EXPECT_EQ(call(algorithms().get(), L"azimut", {1, L"1", Value::ref(azimuth)}).status, S_OK);
    EXPECT_EQ(azimuth.type(), VT_R8);
    EXPECT_EQ(azimuth.raw().dblVal, north_east);
  }
}

TEST(LateCall, AVariableOfAnotherNumberKeepsItsType) {
  long azimuth = 7;
  EXPECT_EQ(call(algorithms().get(), L"Azimut", {1.0, 1.0, Value::ref(azimuth)}).status, S_OK);
  EXPECT_EQ(azimuth, 50);
  short small = 7;
  EXPECT_EQ(call(algorithms().get(), L"Azimut", {0.0, -1.0, Value::ref(small)}).status, S_OK);
  EXPECT_EQ(small, 200);
}

TEST(LateCall, WhatIsNotWrittenKeepsItsTypeAndText) {
  Value dx(L"1");
  Value azimuth(0);
  call(algorithms().get(), L"Azimut", {Value::ref(dx), 1.0, Value::ref(azimuth)});
  EXPECT_EQ(dx.type(), VT_BSTR);
  EXPECT_STREQ(dx.raw().bstrVal, L"1");
}

TEST(LateCall, OneVariableGivenTwiceIsOneVariable) {
  Value both(0.0);
  Value in_place(0.0);
  double x = 0.0;
  const auto ends_at = [&](Value X, Value Y) {
    return call(Server::loaded().create(CLSID_cgeo_Geometria).get(), L"GR_XY_de_AngDist",
                {0.0, 0.0, 100.0, 10.0, X, Y})
        .status;
  };
  EXPECT_EQ(ends_at(Value::ref(both), Value::ref(both)), S_OK);
  EXPECT_EQ(ends_at(Value::ref(x), Value::ref(x)), S_OK);
  EXPECT_EQ(both.raw().dblVal, x);
}

// North of a point that has no more room there: XR is written, YR overflows.
TEST(LateCall, WhatWasWrittenBeforeAFailureIsWrittenBack) {
  Value x(5);
  Value y(5);
  const Answer answer = call(algorithms().get(), L"XY_dando_ANG_DIST",
                             {0.0, 1.7e308, 0.0, 1e308, Value::ref(x), Value::ref(y)});
  EXPECT_EQ(answer.status, DISP_E_EXCEPTION);
  EXPECT_EQ(answer.code, failure_status(6));
  EXPECT_EQ(answer.source, L"Orv2_Geo.cgeo_Algorismos");
  EXPECT_EQ(answer.description, L"Desbordamiento");
  EXPECT_EQ(x.type(), VT_R8);
  EXPECT_EQ(x.raw().dblVal, 0.0);
  EXPECT_EQ(y.type(), VT_I4);
  EXPECT_EQ(y.raw().lVal, 5);
}

TEST(LateCall, AFailuresWordsAreWhole) {
  const Answer answer = call(functions().get(), L"F_LogN", {0.0});
  EXPECT_EQ(answer.code, failure_status(5));
  EXPECT_EQ(answer.description, L"Argumento o llamada a procedimiento no v\u00e1lidos");
}

TEST(LateCall, OptionalArgumentsMayBeLeftOut) {
  SAFEARRAY* x = doubles({0.0, 10.0, 10.0, 0.0}, 1);
  SAFEARRAY* y = doubles({0.0, 0.0, 10.0, 10.0}, 1);
  const auto inside = [&](std::vector<Value> rest) {
    std::vector<Value> all{Value::array(VT_R8, x), Value::array(VT_R8, y), 4, 5.0, 5.0};
    all.insert(all.end(), rest.begin(), rest.end());
    return call(Server::loaded().create(CLSID_cgeo_api).get(), L"Pto_in_Poligono", all);
  };
  short where = 99;
  const Answer without = inside({});
  const Answer left_out = inside({Value::left_out()});
  const Answer with = inside({Value::ref(where)});
  for (const Answer* one : {&without, &left_out, &with}) {
    EXPECT_EQ(one->status, S_OK);
    EXPECT_EQ(one->result.type(), VT_BOOL);
    EXPECT_EQ(one->result.raw().boolVal, -1);
  }
  SafeArrayDestroy(x);
  SafeArrayDestroy(y);
}

TEST(LateCall, ArgumentsMayBeNamed) {
  const Held<IDispatch> object = algorithms();
  wchar_t member[] = L"AZIMUT", dx[] = L"dx", dy[] = L"DY", azimuth_name[] = L"aZ";
  wchar_t* names[] = {member, azimuth_name, dx, dy};
  DISPID numbers[4];
  ASSERT_EQ(object->GetIDsOfNames(IID_NULL, names, 4, 0, numbers), S_OK);
  EXPECT_EQ(numbers[1], 2);
  EXPECT_EQ(numbers[2], 0);
  EXPECT_EQ(numbers[3], 1);
  double azimuth = 0.0;
  VARIANT given[3] = {Value::ref(azimuth).raw(), Value(-1.0).raw(), Value(0.0).raw()};
  DISPPARAMS parameters{given, numbers + 1, 3, 3};
  EXPECT_EQ(call_with(object.get(), numbers[0], parameters).status, S_OK);
  EXPECT_EQ(azimuth, 300.0);  // due west
}

TEST(LateCall, NamedArgumentsStandBesideOthers) {
  const Held<IDispatch> object = algorithms();
  double azimuth = 0.0;
  DISPID named[] = {2};
  VARIANT given[3] = {Value::ref(azimuth).raw(), Value(0.0).raw(), Value(-1.0).raw()};
  DISPPARAMS parameters{given, named, 3, 1};
  EXPECT_EQ(call_with(object.get(), number_of(object.get(), L"Azimut"), parameters).status, S_OK);
  EXPECT_EQ(azimuth, 300.0);
  named[0] = 0;  // the first is given already
  EXPECT_EQ(call_with(object.get(), number_of(object.get(), L"Azimut"), parameters).status,
            DISP_E_PARAMNOTFOUND);
  named[0] = 3;  // there is none
  EXPECT_EQ(call_with(object.get(), number_of(object.get(), L"Azimut"), parameters).status,
            DISP_E_PARAMNOTFOUND);
}

TEST(LateCall, PropertiesAreReadAndWritten) {
  const Held<IDispatch> object = functions();
  EXPECT_EQ(call(object.get(), L"RPi", {}, DISPATCH_PROPERTYGET).result.raw().dblVal, 0.0);
  EXPECT_EQ(call(object.get(), L"RPi", {L"0.5"}, DISPATCH_PROPERTYPUT).status, S_OK);
  EXPECT_EQ(call(object.get(), L"rpi", {}, DISPATCH_PROPERTYGET).result.raw().dblVal, 0.5);
  EXPECT_EQ(call(object.get(), L"RPi", {}, DISPATCH_METHOD | DISPATCH_PROPERTYGET).status, S_OK);
  EXPECT_EQ(call(object.get(), L"Pi", {}, DISPATCH_PROPERTYGET).result.raw().dblVal, 0.0);
  EXPECT_EQ(call(object.get(), L"F_Sen", {1}, DISPATCH_PROPERTYPUT).status, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(call(object.get(), L"RPi", {1.0}, DISPATCH_PROPERTYGET).status, DISP_E_BADPARAMCOUNT);
}

TEST(LateCall, TextsThatAMemberLeavesAloneStay) {
  BSTR first = SysAllocString(L"uno");
  BSTR const there = first;
  Value second(2.5);
  Value counter(0);
  const Answer answer = call(sorting().get(), L"SwapStrings",
                             {Value::ref(first), Value::ref(second), Value::ref(counter)});
  EXPECT_EQ(answer.status, S_OK);
  EXPECT_EQ(first, there);
  EXPECT_EQ(second.type(), VT_R8);
  SysFreeString(first);
}

struct DispatchError {
  const char* what;
  const wchar_t* member;
  std::vector<Value> arguments;
  HRESULT expected;
  UINT faulty;
};

TEST(LateCall, TheDispatchServicesOwnErrors) {
  double azimuth = 0.0;
  const Value out = Value::ref(azimuth);
  const DispatchError rows[] = {
      {"surplus", L"Azimut", {1.0, 1.0, out, 4.0}, DISP_E_BADPARAMCOUNT, 99},
      {"missing", L"Azimut", {1.0, 1.0}, DISP_E_BADPARAMCOUNT, 99},
      {"left out, not optional",
       L"Azimut",
       {1.0, Value::left_out(), out},
       DISP_E_PARAMNOTOPTIONAL,
       1},
      {"no number", L"Azimut", {1.0, L"norte", out}, DISP_E_TYPEMISMATCH, 1},
      {"an object",
       L"Azimut",
       {Value(static_cast<IDispatch*>(nullptr)), 1.0, out},
       DISP_E_TYPEMISMATCH,
       2},
      {"too large for the parameter", L"An400", {1e300}, DISP_E_OVERFLOW, 0},
      {"a number for an array",
       L"Azimut_s",
       {1.0, 1.0, script_array({1.0})},
       DISP_E_TYPEMISMATCH,
       0},
  };
  for (const DispatchError& row : rows) {
    SCOPED_TRACE(row.what);
    const Answer answer = call(algorithms().get(), row.member, row.arguments);
    EXPECT_EQ(answer.status, row.expected);
    EXPECT_EQ(answer.faulty, row.faulty);
  }
  EXPECT_EQ(number_of(algorithms().get(), L"Azimuth"), DISPID_UNKNOWN);
  EXPECT_EQ(number_of(algorithms().get(), L"Azimu\x0442"), DISPID_UNKNOWN);
  DISPPARAMS nothing{};
  for (const DISPID number : {DISPID_UNKNOWN, DISPID_VALUE, 37, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(call_with(algorithms().get(), number, nothing).status, DISP_E_MEMBERNOTFOUND);
  }
  EXPECT_EQ(call_with(functions().get(), 2, nothing).status, DISP_E_MEMBERNOTFOUND)
      << "the write side of a property has the read side's number";
}

TEST(LateCall, IllFormedCallsAreRefused) {
  const Held<IDispatch> object = algorithms();
  const DISPID number = number_of(object.get(), L"Azimut");
  const auto invoke = [&](REFIID reserved, DISPPARAMS* given) {
    return object->Invoke(number, reserved, 0, DISPATCH_METHOD, given, nullptr, nullptr, nullptr);
  };
  DISPID named[] = {0};
  VARIANT one = Value(1.0).raw();
  DISPPARAMS no_arguments{nullptr, nullptr, 3, 0};
  DISPPARAMS no_names{&one, nullptr, 1, 1};
  DISPPARAMS more_names{&one, named, 0, 1};
  EXPECT_EQ(invoke(IID_NULL, nullptr), E_INVALIDARG);
  EXPECT_EQ(invoke(IID_NULL, &no_arguments), E_INVALIDARG);
  EXPECT_EQ(invoke(IID_NULL, &no_names), E_INVALIDARG);
  EXPECT_EQ(invoke(IID_NULL, &more_names), E_INVALIDARG);
  EXPECT_EQ(invoke(IID_IDispatch, &no_names), DISP_E_UNKNOWNINTERFACE);
  DISPID found = 5;
  wchar_t name[] = L"Azimut";
  wchar_t* names[] = {name};
  EXPECT_EQ(object->GetIDsOfNames(IID_IDispatch, names, 1, 0, &found), DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, 0, 0, &found), E_INVALIDARG);
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, nullptr, 1, 0, &found), E_INVALIDARG);
  wchar_t* none[] = {nullptr};
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, none, 1, 0, &found), DISP_E_UNKNOWNNAME);
}

TEST(LateCall, AVariantThatPointsAtItselfIsNoVariable) {
  VARIANT self{};
  self.vt = VT_BYREF | VT_VARIANT;
  self.pvarVal = &self;
  VARIANT given[3] = {self, self, self};
  for (VARIANT& one : given) one.pvarVal = &one;
  DISPPARAMS parameters{given, nullptr, 3, 0};
  const Held<IDispatch> object = algorithms();
  EXPECT_EQ(call_with(object.get(), number_of(object.get(), L"Azimut"), parameters).status,
            DISP_E_TYPEMISMATCH);
}

TEST(LateCall, WithoutAPlaceForAFailureTheThreadIsTold) {
  const Held<IDispatch> object = functions();
  VARIANT given = Value(-1.0).raw();
  DISPPARAMS parameters{&given, nullptr, 1, 0};
  EXPECT_EQ(object->Invoke(number_of(object.get(), L"F_Log10"), IID_NULL, 0, DISPATCH_METHOD,
                           &parameters, nullptr, nullptr, nullptr),
            failure_status(5));
  Held<IErrorInfo> told;
  ASSERT_EQ(GetErrorInfo(0, told.place()), S_OK);
  BSTR source = nullptr;
  told->GetSource(&source);
  EXPECT_STREQ(source, L"Orv2_Geo.cgeo_FuncDeriv");
  SysFreeString(source);
}

}  // namespace
