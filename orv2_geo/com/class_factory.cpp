#include "orv2_geo/com/class_factory.h"

#include <array>

#include "orv2_geo/com/module.h"

namespace orv2_geo::com {

namespace {

// A host's reference to a factory holds the module, as its objects do; the factories
// themselves stay.
struct Factory {
  const VtableEntry* vtable;
  const ComponentClass* makes;
};

HRESULT STDMETHODCALLTYPE query_factory(Factory* self, REFIID wanted, void** place) noexcept {
  if (place == nullptr) return E_POINTER;
  *place = nullptr;
  if (wanted != IID_IUnknown && wanted != IID_IClassFactory) return E_NOINTERFACE;
  *place = self;
  hold_module();
  return S_OK;
}

ULONG STDMETHODCALLTYPE add_to_factory(Factory*) noexcept {
  hold_module();
  return 2;  // never told exactly
}

ULONG STDMETHODCALLTYPE release_factory(Factory*) noexcept {
  let_module_go();
  return 1;
}

HRESULT STDMETHODCALLTYPE create_instance(Factory* self, IUnknown* outer, REFIID wanted,
                                          void** place) noexcept {
  if (place == nullptr) return E_POINTER;
  *place = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  return status_of_work([&] {
    Component* const made = Component::create(*self->makes);
    const HRESULT status = made->query(wanted, place);
    made->release();
    return status;
  });
}

HRESULT STDMETHODCALLTYPE lock_server(Factory*, BOOL lock) noexcept {
  lock != FALSE ? hold_module() : let_module_go();
  return S_OK;
}

const std::array<VtableEntry, 5>& factory_table() noexcept {
  static const std::array table{entry(&query_factory), entry(&add_to_factory),
                                entry(&release_factory), entry(&create_instance),
                                entry(&lock_server)};
  return table;
}

}  // namespace

HRESULT class_factory(const ComponentClass& of_class, REFIID wanted, void** place) noexcept {
  static const auto all = [] {
    std::array<Factory, class_identifiers.size()> factories{};
    for (std::size_t i = 0; i < factories.size(); ++i) {
      factories[i] = {factory_table().data(), &component_classes()[i]};
    }
    return factories;
  }();
  const auto position = static_cast<std::size_t>(&of_class - component_classes().data());
  return query_factory(const_cast<Factory*>(&all[position]), wanted, place);
}

}  // namespace orv2_geo::com
