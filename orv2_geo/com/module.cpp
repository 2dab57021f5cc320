#include "orv2_geo/com/module.h"

#include <atomic>

#include "orv2_geo/com/failures.h"

namespace orv2_geo::com {

namespace {

std::atomic<long> holders{0};

// Any place in this module tells its handle.
HMODULE this_module() noexcept {
  HMODULE module = nullptr;
  constexpr DWORD flags =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  GetModuleHandleExW(flags, reinterpret_cast<const wchar_t*>(&holders), &module);
  return module;
}

}  // namespace

const GUID& guid(const Identifier& identifier) noexcept {
  static_assert(sizeof(GUID) == sizeof(Identifier));
  return reinterpret_cast<const GUID&>(identifier);
}

void hold_module() noexcept { ++holders; }
void let_module_go() noexcept { --holders; }
bool module_is_held() noexcept { return holders != 0; }

std::wstring module_file() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const auto room = static_cast<DWORD>(path.size());
    const DWORD length = GetModuleFileNameW(this_module(), path.data(), room);
    if (length < room) {
      path.resize(length);
      return path;
    }
    path.resize(2 * path.size());  // it was cut
  }
}

HRESULT type_info_of(const GUID& identifier, ITypeInfo** info) noexcept {
  return status_of_work([&] {
    Reference<ITypeLib> library;
    const HRESULT loaded = LoadTypeLibEx(module_file().c_str(), REGKIND_NONE, library.place());
    return FAILED(loaded) ? loaded : library->GetTypeInfoOfGuid(identifier, info);
  });
}

}  // namespace orv2_geo::com
