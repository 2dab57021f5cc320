// late_library.h: the library as a host has it that loads it while it runs.
#pragma once

#include <dlfcn.h>

#include "orv2_geo/orv2_geo.h"

namespace orv2_geo::testing_support {

template <class Function>
bool find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

/// Makes an object, asks it for the bearing of (1, 1) and lets it go, through functions that are
/// sought by name. False where something fails.
inline bool bearing_is_right(void* library) {
  decltype(&orv2_create) create = nullptr;
  decltype(&orv2_call_name) call_name = nullptr;
  decltype(&orv2_release) release = nullptr;
  if (!find(library, "orv2_create", create) || !find(library, "orv2_call_name", call_name) ||
      !find(library, "orv2_release", release)) {
    return false;
  }
  orv2_handle object = 0;
  if (create("Orv2_Geo.cgeo_Algorismos", &object) != 0) return false;
  double numbers[3] = {1.0, 1.0, 0.0};
  orv2_value arguments[3] = {};
  for (int i = 0; i < 3; ++i) {
    arguments[i].tag = ORV2_F64 | ORV2_BYREF;
    arguments[i].as.pointer = &numbers[i];
  }
  const bool called = call_name(object, "Azimut", arguments, 3, nullptr) == 0;
  return called && release(object) == 0 && numbers[2] > 49.9999999 && numbers[2] < 50.0000001;
}

}  // namespace orv2_geo::testing_support
