// module.h: the library as a module of a host's process.
#pragma once

#include <string>

#include "orv2_geo/com/identifiers.h"
#include "orv2_geo/com/system.h"

namespace orv2_geo::com {

/// An identifier as the system's functions take it.
const GUID& guid(const Identifier& identifier) noexcept;

/// Objects and locks that hold the module in the process. Counted from any thread.
void hold_module() noexcept;
void let_module_go() noexcept;
bool module_is_held() noexcept;

/// The file of this module. Failure 7.
std::wstring module_file();

/// A counted reference to an interface of a host's or the system's.
template <class Interface>
class Reference {
 public:
  Reference() noexcept = default;
  explicit Reference(Interface* counted) noexcept : pointer_(counted) {}  // takes it over
  Reference(Reference&& other) noexcept : pointer_(other.detach()) {}
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;
  ~Reference() {
    if (pointer_ != nullptr) pointer_->Release();
  }

  Interface* get() const noexcept { return pointer_; }
  Interface* operator->() const noexcept { return pointer_; }
  explicit operator bool() const noexcept { return pointer_ != nullptr; }

  /// Where a function puts a new reference.
  Interface** place() noexcept { return &pointer_; }
  Interface* detach() noexcept {
    Interface* const pointer = pointer_;
    pointer_ = nullptr;
    return pointer;
  }

 private:
  Interface* pointer_ = nullptr;
};

/// What the type library in this module tells of an interface or a class.
HRESULT type_info_of(const GUID& identifier, ITypeInfo** info) noexcept;

}  // namespace orv2_geo::com
