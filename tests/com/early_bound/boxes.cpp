// A module's own entry for the system's message box, pointed elsewhere.
#include "tests/com/early_bound/boxes.h"

#include <cstring>
#include <string_view>
#include <utility>

namespace orv2_geo::early_bound {

namespace {

std::vector<vectors::Box> taken;

std::u16string units_of(const wchar_t* text) { return reinterpret_cast<const char16_t*>(text); }

int WINAPI take_box(HWND, const wchar_t* text, const wchar_t* caption, UINT flags) {
  vectors::Box box{static_cast<std::int32_t>(flags & MB_ICONMASK), units_of(text), false, {}};
  box.has_caption = caption != nullptr;
  if (box.has_caption) box.caption = units_of(caption);
  taken.push_back(box);
  return IDOK;
}

// What a module's headers tell, by places counted from its start.
template <class T>
T* at(HMODULE module, std::uintptr_t place) {
  return reinterpret_cast<T*>(reinterpret_cast<std::uintptr_t>(module) + place);
}

IMAGE_IMPORT_DESCRIPTOR* imports_of(HMODULE module) {
  const auto* const start = at<IMAGE_DOS_HEADER>(module, 0);
  const auto* const headers = at<IMAGE_NT_HEADERS>(module, static_cast<ULONG>(start->e_lfanew));
  const auto& place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  return at<IMAGE_IMPORT_DESCRIPTOR>(module, place.VirtualAddress);
}

void point_at_ours(IMAGE_THUNK_DATA& entry) {
  DWORD before = 0;
  VirtualProtect(&entry, sizeof entry, PAGE_READWRITE, &before);
  entry.u1.Function = reinterpret_cast<std::uintptr_t>(&take_box);
  VirtualProtect(&entry, sizeof entry, before, &before);
}

bool take_from(HMODULE module, const IMAGE_IMPORT_DESCRIPTOR& library) {
  const auto* name = at<IMAGE_THUNK_DATA>(module, library.OriginalFirstThunk);
  auto* entry = at<IMAGE_THUNK_DATA>(module, library.FirstThunk);
  for (; name->u1.AddressOfData != 0; ++name, ++entry) {
    if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
    const auto* const import = at<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData);
    if (std::string_view(reinterpret_cast<const char*>(import->Name)) != "MessageBoxW") continue;
    point_at_ours(*entry);
    return true;
  }
  return false;
}

}  // namespace

bool take_boxes_of(HMODULE module) {
  for (const auto* library = imports_of(module); library->Name != 0; ++library) {
    if (take_from(module, *library)) return true;
  }
  return false;
}

std::vector<vectors::Box> taken_boxes() { return std::exchange(taken, {}); }

}  // namespace orv2_geo::early_bound
