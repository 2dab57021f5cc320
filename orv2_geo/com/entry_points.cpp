// The four functions that the system calls.
#include "orv2_geo/com/class_factory.h"
#include "orv2_geo/com/module.h"
#include "orv2_geo/com/registration.h"

using namespace orv2_geo::com;

STDAPI DllGetClassObject(REFCLSID of_class, REFIID wanted, void** place) {
  if (place == nullptr) return E_POINTER;
  *place = nullptr;
  for (const ComponentClass& one : component_classes()) {
    if (of_class == guid(one.identifiers.of_class)) return class_factory(one, wanted, place);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return module_is_held() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() { return register_library(); }

STDAPI DllUnregisterServer() { return unregister_library(); }
