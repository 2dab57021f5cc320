// component.h: an object of a public class as component hosts hold it.
#pragma once

#include <atomic>
#include <span>

#include "orv2_geo/com/failures.h"
#include "orv2_geo/com/identifiers.h"
#include "orv2_geo/com/system.h"
#include "orv2_geo/frame/floating_point_guard.h"
#include "orv2_geo/library/object.h"
#include "orv2_geo/platform/thread_number.h"

namespace orv2_geo::com {

/// An entry of a vtable, whatever its type.
using VtableEntry = void (*)();

/// A public class as component hosts know it.
struct ComponentClass {
  const ClassDescription& description;
  const ClassIdentifiers& identifiers;
  std::span<const VtableEntry> vtable;
};

/// The seven, in the order of the catalogue.
std::span<const ComponentClass> component_classes() noexcept;

class Component;

/// A further interface of an object, as hosts hold it: its vtable comes first.
struct Face {
  const VtableEntry* vtable;
  Component* owner;
};

/// What a host's pointer to the first interface points at: the vtable comes first. An
/// object lives on the thread that made it: a call from another is answered with
/// RPC_E_WRONG_THREAD and runs nothing. References alone are counted from any thread.
class Component {
 public:
  /// A new object with one reference. Failure 7.
  static Component* create(const ComponentClass& of_class);

  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  HRESULT query(REFIID wanted, void** place) noexcept;
  ULONG add_reference() noexcept { return ++references_; }
  ULONG release() noexcept;

  const ComponentClass& component_class() const noexcept { return class_; }
  Object& object() noexcept { return *object_; }

  bool on_own_thread() const noexcept { return thread_ == this_thread_number(); }

  /// Runs a call on this object: with one reference more while it runs, and its failure
  /// as a status that the host is told of.
  template <class Work>
  HRESULT run(Work&& work) noexcept {
    if (!on_own_thread()) [[unlikely]]
      return RPC_E_WRONG_THREAD;
    const DuringCall reference(*this);
    const FloatingPointGuard usual;
    try {
      work();
      return S_OK;
    } catch (...) {
      return told(failure_in_flight());
    }
  }

  /// The reference of a call: an object that is released in the middle of one lives until
  /// the call ends.
  class DuringCall {
   public:
    explicit DuringCall(Component& component) noexcept : component_(component) {
      component.add_reference();
    }
    ~DuringCall() { component_.release(); }
    DuringCall(const DuringCall&) = delete;
    DuringCall& operator=(const DuringCall&) = delete;

   private:
    Component& component_;
  };

 private:
  explicit Component(const ComponentClass& of_class);
  ~Component();

  const VtableEntry* vtable_;
  Face error_support_;
  Face class_info_;
  std::atomic<ULONG> references_{1};
  const ComponentClass& class_;
  std::uint64_t thread_;
  Object* object_;
  ObjectRef kept_;
};

/// A function as an entry of a vtable.
template <class Function>
VtableEntry entry(Function* function) noexcept {
  return reinterpret_cast<VtableEntry>(function);
}

// The entries that every vtable begins with.
HRESULT STDMETHODCALLTYPE query_interface(Component* self, REFIID wanted, void** place) noexcept;
ULONG STDMETHODCALLTYPE add_reference(Component* self) noexcept;
ULONG STDMETHODCALLTYPE release(Component* self) noexcept;
HRESULT STDMETHODCALLTYPE count_type_infos(Component* self, UINT* count) noexcept;
HRESULT STDMETHODCALLTYPE type_info(Component* self, UINT index, LCID, ITypeInfo** info) noexcept;
HRESULT STDMETHODCALLTYPE numbers_of_names(Component* self, REFIID reserved, wchar_t** names,
                                           UINT count, LCID, DISPID* numbers) noexcept;
HRESULT STDMETHODCALLTYPE invoke(Component* self, DISPID number, REFIID reserved, LCID, WORD ways,
                                 DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* raised,
                                 UINT* faulty) noexcept;

}  // namespace orv2_geo::com
