// Objects of hosts: looked at anew with each use, their failures, and what they may do in
// the middle of a call.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "host.h"
#include "tests/support/floating_point.h"

using namespace orv2_geo::testing;

namespace {

Held<IDispatch> algorithms() { return Server::loaded().create(CLSID_cgeo_Algorismos); }

// Five dots along the X axis, and one more behind them.
Answer draw(IDispatch* object, Value surface, double to = 3.0) {
  return call(object, L"Linea_a_puntos", {surface, 0.0, 0.0, to, 0.0});
}

HostObject* silent() {
  return new HostObject([](const HostObject::Call&) { return S_OK; });
}

TEST(HostObjectCall, ASurfaceGetsFlagPenAndColour) {
  std::vector<double> dots;
  Held<HostObject> surface(new HostObject([&](const HostObject::Call& call) {
    EXPECT_EQ(call.name, L"PSet");
    EXPECT_EQ(call.ways, DISPATCH_METHOD);
    EXPECT_EQ(call.given->cArgs, 4U);
    EXPECT_EQ(call.given->rgvarg[3].vt, VT_I2);
    EXPECT_EQ(call.given->rgvarg[2].vt, VT_BYREF | VT_R8);
    EXPECT_EQ(call.given->rgvarg[0].vt, VT_I2);
    dots.push_back(*call.given->rgvarg[2].pdblVal);
    return S_OK;
  }));
  EXPECT_EQ(draw(algorithms().get(), Value(surface.get())).status, S_OK);
  EXPECT_EQ(dots, (std::vector{0.5, 1.25, 2.0, 2.75, 3.5}));
  EXPECT_EQ(surface->references(), 1U);
}

TEST(HostObjectCall, AnotherSurfaceTakesTheRestOfTheDots) {
  int first_dots = 0, rest = 0;
  Held<HostObject> second(new HostObject([&](const HostObject::Call&) { return ++rest, S_OK; }));
  const auto in_turn = [&](auto variable, auto replace) {
    first_dots = rest = 0;
    Held<HostObject> first(new HostObject([&, replace](const HostObject::Call&) {
      ++first_dots;
      replace();
      return S_OK;
    }));
    variable(first.get());
  };
  IDispatch* plain = nullptr;
  in_turn(
      [&](IDispatch* first) {
        plain = first;
        EXPECT_EQ(draw(algorithms().get(), Value::ref(plain)).status, S_OK);
      },
      [&] { plain = second.get(); });
  EXPECT_EQ(first_dots, 1);
  EXPECT_EQ(rest, 4);
  Value any;
  in_turn(
      [&](IDispatch* first) {
        any = Value(first);
        EXPECT_EQ(draw(algorithms().get(), Value::ref(any)).status, S_OK);
      },
      [&] { any = Value(static_cast<IDispatch*>(second.get())); });
  EXPECT_EQ(first_dots, 1);
  EXPECT_EQ(rest, 4);
}

TEST(HostObjectCall, NoObjectIs91) {
  IDispatch* none = nullptr;
  Value empty;
  for (const Value& nobody : {Value(none), Value::ref(none), Value::ref(empty)}) {
    const Answer answer = draw(algorithms().get(), nobody);
    EXPECT_EQ(answer.code, failure_status(91));
    EXPECT_EQ(answer.source, L"Orv2_Geo.cgeo_Algorismos");
  }
}

TEST(HostObjectCall, WhatIsNoObjectIsAMismatch) {
  Value text(L"superficie");
  for (const Value& wrong : {Value(1), Value(L"x"), Value::ref(text), script_array({1})}) {
    EXPECT_EQ(draw(algorithms().get(), wrong).status, DISP_E_TYPEMISMATCH);
  }
}

TEST(HostObjectCall, APlainInterfaceIsAskedForItsNames) {
  Held<HostObject> surface(silent());
  Value plain;
  plain.raw().vt = VT_UNKNOWN;
  plain.raw().punkVal = surface.get();
  surface->AddRef();
  EXPECT_EQ(draw(algorithms().get(), plain).status, S_OK);
}

struct Raised {
  const char* what;
  HRESULT status;
  SCODE code;
  WORD small_code;
  HRESULT expected;
};

TEST(HostObjectCall, ItsFailuresKeepTheirNumbers) {
  for (const Raised& row :
       {Raised{"a number of its own", DISP_E_EXCEPTION, failure_status(513), 0,
               failure_status(513)},
        Raised{"a small code", DISP_E_EXCEPTION, 0, 1000, failure_status(1000)},
        Raised{"a status of its own", DISP_E_EXCEPTION, E_ACCESSDENIED, 0, E_ACCESSDENIED},
        Raised{"nothing told", DISP_E_EXCEPTION, 0, 0, failure_status(440)},
        Raised{"no such member", DISP_E_MEMBERNOTFOUND, 0, 0, failure_status(438)},
        Raised{"another type", DISP_E_TYPEMISMATCH, 0, 0, failure_status(13)},
        Raised{"a status", E_FAIL, 0, 0, E_FAIL},
        Raised{"another thread's", RPC_E_WRONG_THREAD, 0, 0, RPC_E_WRONG_THREAD}}) {
    SCOPED_TRACE(row.what);
    Held<HostObject> surface(new HostObject([&](const HostObject::Call& call) {
      if (row.status != DISP_E_EXCEPTION) return row.status;
      call.raised->scode = row.code;
      call.raised->wCode = row.small_code;
      call.raised->bstrDescription = SysAllocString(L"sin papel");
      call.raised->bstrSource = SysAllocString(L"Trazador");
      return row.status;
    }));
    const Answer answer = draw(algorithms().get(), Value(surface.get()));
    EXPECT_EQ(answer.status, DISP_E_EXCEPTION);
    EXPECT_EQ(answer.code, row.expected);
    if (row.status != DISP_E_EXCEPTION) continue;
    EXPECT_EQ(answer.description, L"sin papel");
    EXPECT_EQ(answer.source, L"Trazador");
  }
}

HRESULT STDMETHODCALLTYPE fill_in(EXCEPINFO* raised) {
  raised->scode = failure_status(777);
  return S_OK;
}

TEST(HostObjectCall, AFailureMayBeFilledInLater) {
  Held<HostObject> surface(new HostObject([](const HostObject::Call& call) -> HRESULT {
    call.raised->pfnDeferredFillIn = &fill_in;
    return DISP_E_EXCEPTION;
  }));
  EXPECT_EQ(draw(algorithms().get(), Value(surface.get())).code, failure_status(777));
}

#if defined(_WIN64)
// On 32 bits an exception cannot pass between two modules that bring their own run-time:
// the host's would end the process before the library saw it.
TEST(HostObjectCall, AnExceptionOfItsOwnIs440) {
  Held<HostObject> surface(
      new HostObject([](const HostObject::Call&) -> HRESULT { throw std::string("fuera"); }));
  const Answer answer = draw(algorithms().get(), Value(surface.get()));
  EXPECT_EQ(answer.status, DISP_E_EXCEPTION);
  EXPECT_EQ(answer.code, failure_status(440));
}
#endif

TEST(HostObjectCall, MayLetTheCallingObjectGo) {
  Held<IDispatch> object = algorithms();
  int dots = 0;
  Held<HostObject> surface(new HostObject([&](const HostObject::Call&) {
    if (++dots == 1) object = Held<IDispatch>();
    return S_OK;
  }));
  EXPECT_EQ(draw(object.get(), Value(surface.get())).status, S_OK);
  EXPECT_EQ(dots, 5);
}

TEST(HostObjectCall, MayCallTheSameObject) {
  const Held<IDispatch> object = algorithms();
  double azimuth = 0.0;
  Held<HostObject> surface(new HostObject([&](const HostObject::Call&) {
    return call(object.get(), L"Azimut", {-1.0, 0.0, Value::ref(azimuth)}).status;
  }));
  EXPECT_EQ(draw(object.get(), Value(surface.get())).status, S_OK);
  EXPECT_EQ(azimuth, 300.0);
}

TEST(HostObjectCall, MayDropItsOwnLastReference) {
  bool gone = false;
  struct Watch {
    bool& gone;
    ~Watch() { gone = true; }
  };
  Value variable;
  const auto watch = std::make_shared<Watch>(Watch{gone});
  {
    Held<HostObject> surface(new HostObject([&variable, watch](const HostObject::Call&) {
      variable = Value();
      return S_OK;
    }));
    variable = Value(surface.get());
  }
  const_cast<std::shared_ptr<Watch>&>(watch).reset();
  EXPECT_EQ(draw(algorithms().get(), Value::ref(variable)).code, failure_status(91));
  EXPECT_TRUE(gone);
}

// Points 1 to 4, of which the last is the first again.
struct Survey {
  SAFEARRAY* x = doubles({0.0, 3.0, 1.0, 2.0, 3.0});
  SAFEARRAY* y = doubles({0.0, 3.0, 1.0, 2.0, 3.0});
  SAFEARRAY* z = doubles({0.0, 3.0, 1.0, 2.0, 3.0});
  SAFEARRAY* index = nullptr;
  long points = 4;

  Survey() = default;
  Survey(const Survey&) = delete;
  Survey& operator=(const Survey&) = delete;
  ~Survey() {
    for (SAFEARRAY* one : {x, y, z, index}) {
      EXPECT_EQ(one != nullptr ? one->cLocks : 0, 0);
      if (one != nullptr) SafeArrayDestroy(one);
    }
  }

  HRESULT remove_repeated(IDispatch* progress) {
    const auto sorting = Server::loaded().create<_cgeo_Ordena>(CLSID_cgeo_Ordena, IID__cgeo_Ordena);
    double precision = 0.01;
    VARIANT_BOOL warn = 0;
    return sorting->Quita_Puntos_Repetidos_XY_con_indice1(&points, &x, &y, &z, &index, &progress,
                                                          &precision, &warn);
  }
};

// An array in use is locked: the host cannot move it from under a call.
TEST(HostObjectCall, CannotResizeAnArrayInUse) {
  Survey survey;
  HRESULT resized = S_OK;
  Held<HostObject> progress(new HostObject([&](const HostObject::Call&) {
    SAFEARRAYBOUND bound{100, 0};
    resized = SafeArrayRedim(survey.x, &bound);
    return S_OK;
  }));
  EXPECT_EQ(survey.remove_repeated(progress.get()), S_OK);
  EXPECT_EQ(resized, DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(survey.points, 3);
}

TEST(HostObjectCall, AProgressIndicatorGetsItsProperties) {
  Survey survey;
  std::vector<std::wstring> set;
  Held<HostObject> progress(new HostObject([&](const HostObject::Call& call) {
    EXPECT_EQ(call.ways, DISPATCH_PROPERTYPUT);
    EXPECT_EQ(call.given->cNamedArgs, 1U);
    EXPECT_EQ(call.given->rgdispidNamedArgs[0], DISPID_PROPERTYPUT);
    if (set.empty() || set.back() != call.name) set.push_back(call.name);
    return S_OK;
  }));
  EXPECT_EQ(survey.remove_repeated(progress.get()), S_OK);
  ASSERT_GE(set.size(), 3U);
  for (const wchar_t* name : {L"Visible", L"Min", L"max"}) {
    EXPECT_NE(std::find(set.begin(), set.end(), name), set.end()) << name;
  }
  EXPECT_EQ(survey.points, 3);
  EXPECT_EQ(elements_of<double>(survey.x).size(), 4U) << "the library's own resizing is allowed";
}

// A line of two units and a quarter has four dots, and a fifth where X is rounded up.
TEST(HostObjectCall, TheSurfaceFindsTheHostsFloatingPointAndTheLineItsDots) {
  for (const OddUnits& odd : odd_units()) {
    std::vector<Units> found;
    Held<HostObject> surface(new HostObject([&](const HostObject::Call&) {
      found.push_back(units());
      return S_OK;
    }));
    const Held<IDispatch> object = algorithms();
    const Value given(surface.get());
    Units left;
    {
      const WithUnits of_host(odd.units);
      draw(object.get(), given, 2.25);
      left = units();
    }
    EXPECT_EQ(found, std::vector<Units>(4, odd.units)) << odd.name;
    EXPECT_EQ(left, odd.units) << odd.name;
  }
}

}  // namespace
