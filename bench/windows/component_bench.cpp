// What the component boundary costs, as ratios in one run: a late-bound call beside the
// system's own dispatch over the same type library, a call by position beside a direct
// call, and a sort of a host's array beside one of the library's own.
//
//   component_bench PATH_TO_DLL
#include <windows.h>
// The others take its names for granted.
#include <cguid.h>
#include <oaidl.h>
#include <oleauto.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <vector>

#include "Orv2_Geo_h.h"
#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "orv2_geo/sorting/cgeo_Ordena.h"

namespace {

constexpr int runs = 9;

double seconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(now).count();
}

double median(std::vector<double> all) {
  std::nth_element(all.begin(), all.begin() + runs / 2, all.end());
  return all[runs / 2];
}

// Both ways in turn, so that a busy machine is busy for both.
template <class Ours, class Peer>
void compare(const char* what, double target, int repeats, Ours ours, Peer peer) {
  std::vector<double> our_times;
  std::vector<double> peer_times;
  const auto timed = [&](auto& work) {
    const double start = seconds();
    for (int i = 0; i < repeats; ++i) work();
    return (seconds() - start) / repeats;
  };
  for (int run = 0; run < runs; ++run) {
    our_times.push_back(timed(ours));
    peer_times.push_back(timed(peer));
  }
  const double our = median(our_times);
  const double other = median(peer_times);
  std::printf("%-60s %12.1f %12.1f ns  %6.2f  (%.2f)\n", what, our * 1e9, other * 1e9, our / other,
              target);
}

void* object_of(HMODULE module, REFCLSID of_class, REFIID wanted) {
  using Entry = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const auto entry =
      reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
  IClassFactory* factory = nullptr;
  void* object = nullptr;
  if (entry == nullptr) return nullptr;
  if (FAILED(entry(of_class, IID_IClassFactory, reinterpret_cast<void**>(&factory))))
    return nullptr;
  factory->CreateInstance(nullptr, wanted, &object);
  factory->Release();
  return object;
}

// The arguments of a call as references to a host's own numbers.
void refer(VARIANT (&arguments)[3], double (&values)[3]) {
  for (int i = 0; i < 3; ++i) {
    arguments[i].vt = VT_BYREF | VT_R8;
    arguments[i].pdblVal = &values[i];
  }
}

void late_bound(_cgeo_Algorismos* object) {
  ITypeInfo* info = nullptr;
  object->GetTypeInfo(0, 0, &info);
  wchar_t name[] = L"Azimut";
  wchar_t* names = name;
  DISPID number = 0;
  object->GetIDsOfNames(IID_NULL, &names, 1, 0, &number);
  double values[3] = {0.0, 4.0, 3.0};  // the last argument stands first
  VARIANT arguments[3];
  refer(arguments, values);
  DISPPARAMS given{arguments, nullptr, 3, 0};
  double peers_values[3] = {0.0, 4.0, 3.0};
  VARIANT peers_arguments[3];
  refer(peers_arguments, peers_values);
  DISPPARAMS peers{peers_arguments, nullptr, 3, 0};
  const auto ours = [&] {
    object->Invoke(number, IID_NULL, 0, DISPATCH_METHOD, &given, nullptr, nullptr, nullptr);
  };
  const auto systems = [&] {
    DispInvoke(object, info, number, DISPATCH_METHOD, &peers, nullptr, nullptr, nullptr);
  };
  compare("late-bound call of three arguments, beside DispInvoke", 0.5, 20000, ours, systems);
  VARIANT variables[3];
  for (int i = 0; i < 3; ++i) {
    variables[i].vt = VT_R8;
    variables[i].dblVal = values[i];
    arguments[i].vt = VT_BYREF | VT_VARIANT;
    arguments[i].pvarVal = &variables[i];
  }
  compare("the same with a script's variables, beside DispInvoke", 0.5, 20000, ours, systems);
  info->Release();
}

void by_position(_cgeo_Algorismos* object) {
  const orv2_geo::cgeo_Algorismos direct;
  double dx = 3.0;
  double dy = 4.0;
  double azimuth = 0.0;
  compare(
      "call by position, three arguments, beside a direct call", 3.0, 1000000,
      [&] { object->Azimut(&dx, &dy, &azimuth); }, [&] { direct.Azimut(dx, dy, azimuth); });
  double c[10] = {0.0, 0.0, 10.0, 10.0, 0.0, 10.0, 10.0, 0.0, 0.0, 0.0};
  VARIANT_BOOL crossed = 0;
  compare(
      "call by position, ten arguments, beside a direct call", 3.0, 1000000,
      [&] {
        object->Cruce_XY_2lineas(c, c + 1, c + 2, c + 3, c + 4, c + 5, c + 6, c + 7, c + 8, c + 9,
                                 &crossed);
      },
      [&] {
        crossed =
            direct.Cruce_XY_2lineas(c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], c[8], c[9])
                .bits;
      });
}

SAFEARRAY* host_array(VARTYPE type, ULONG count) {
  SAFEARRAYBOUND bound{count, 0};
  return SafeArrayCreate(type, 1, &bound);
}

void sorts(_cgeo_Ordena* object) {
  constexpr std::int32_t n = 1000000;
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> coordinate(400000.0, 500000.0);
  SAFEARRAY* values = host_array(VT_R8, n);
  SAFEARRAY* index = host_array(VT_I4, n);
  auto* const host_values = static_cast<double*>(values->pvData);
  // The sort makes the index anew.
  const auto host_index = [&] { return static_cast<std::int32_t*>(index->pvData); };
  orv2_geo::DoubleArray own_values(0, n - 1);
  orv2_geo::LongArray own_index(0, n - 1);
  for (std::int32_t i = 0; i < n; ++i) own_values.data()[i] = host_values[i] = coordinate(random);
  const orv2_geo::cgeo_Ordena direct;
  long whole = -2147483647L - 1;
  const std::int32_t all = whole;
  compare(
      "index of 1e6 doubles of a host's array, beside own arrays", 1.3, 1,
      [&] { object->Ordena_Double_Index_Array(&values, &index, &whole, &whole); },
      [&] { direct.Ordena_Double_Index_Array(own_values, own_index, all, all); });
  if (!std::equal(host_index(), host_index() + n, own_index.data()))
    std::abort();  // a wrong answer
  SafeArrayDestroy(values);
  SafeArrayDestroy(index);
}

}  // namespace

int wmain(int count, wchar_t** words) {
  HMODULE const module = count == 2 ? LoadLibraryW(words[1]) : nullptr;
  if (module == nullptr) {
    std::fputs("usage: component_bench PATH_TO_DLL\n", stderr);
    return 2;
  }
  auto* const algorithms = static_cast<_cgeo_Algorismos*>(
      object_of(module, CLSID_cgeo_Algorismos, IID__cgeo_Algorismos));
  auto* const sorting =
      static_cast<_cgeo_Ordena*>(object_of(module, CLSID_cgeo_Ordena, IID__cgeo_Ordena));
  if (algorithms == nullptr || sorting == nullptr) return 1;
  std::printf("%-60s %12s %12s  %8s  (target)\n", "medians of 9 runs in turn", "ours", "peer",
              "ratio");
  late_bound(algorithms);
  by_position(algorithms);
  sorts(sorting);
  algorithms->Release();
  sorting->Release();
  return 0;
}
