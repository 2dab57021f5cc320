#include "orv2_geo/com/component.h"

#include <array>

#include "orv2_geo/com/module.h"

namespace orv2_geo::com {

namespace {

// ---- The further interfaces ------------------------------------------------

HRESULT STDMETHODCALLTYPE query_face(Face* face, REFIID wanted, void** place) noexcept {
  return face->owner->query(wanted, place);
}
ULONG STDMETHODCALLTYPE add_to_face(Face* face) noexcept { return face->owner->add_reference(); }
ULONG STDMETHODCALLTYPE release_face(Face* face) noexcept { return face->owner->release(); }

// ISupportErrorInfo: the interface whose failures are told with words.
HRESULT STDMETHODCALLTYPE tells_failures(Face* face, REFIID asked) noexcept {
  const ClassIdentifiers& own = face->owner->component_class().identifiers;
  return asked == guid(own.of_interface) ? S_OK : S_FALSE;
}

// IProvideClassInfo.
HRESULT STDMETHODCALLTYPE class_info(Face* face, ITypeInfo** info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  return type_info_of(guid(face->owner->component_class().identifiers.of_class), info);
}

template <class Function>
std::array<VtableEntry, 4> face_table(Function* own) noexcept {
  return {entry(&query_face), entry(&add_to_face), entry(&release_face), entry(own)};
}

const VtableEntry* error_support_table() noexcept {
  static const auto table = face_table(&tells_failures);
  return table.data();
}
const VtableEntry* class_info_table() noexcept {
  static const auto table = face_table(&class_info);
  return table.data();
}

}  // namespace

Component::Component(const ComponentClass& of_class)
    : vtable_(of_class.vtable.data()),
      error_support_{error_support_table(), this},
      class_info_{class_info_table(), this},
      class_(of_class),
      thread_(this_thread_number()),
      object_(new Object(of_class.description)),
      kept_(object_) {
  hold_module();
}

Component::~Component() { let_module_go(); }

Component* Component::create(const ComponentClass& of_class) { return new Component(of_class); }

ULONG Component::release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT Component::query(REFIID wanted, void** place) noexcept {
  if (place == nullptr) return E_POINTER;
  *place = nullptr;
  if (wanted == IID_IUnknown || wanted == IID_IDispatch ||
      wanted == guid(class_.identifiers.of_interface)) {
    *place = this;
  } else if (wanted == IID_ISupportErrorInfo) {
    *place = &error_support_;
  } else if (wanted == IID_IProvideClassInfo) {
    *place = &class_info_;
  } else {
    return E_NOINTERFACE;
  }
  add_reference();
  return S_OK;
}

HRESULT STDMETHODCALLTYPE query_interface(Component* self, REFIID wanted, void** place) noexcept {
  return self->query(wanted, place);
}
ULONG STDMETHODCALLTYPE add_reference(Component* self) noexcept { return self->add_reference(); }
ULONG STDMETHODCALLTYPE release(Component* self) noexcept { return self->release(); }

HRESULT STDMETHODCALLTYPE count_type_infos(Component*, UINT* count) noexcept {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE type_info(Component* self, UINT index, LCID, ITypeInfo** info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  return type_info_of(guid(self->component_class().identifiers.of_interface), info);
}

}  // namespace orv2_geo::com
