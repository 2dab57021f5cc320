#include "orv2_geo/ui/win32/clipboard.h"

#include <algorithm>

namespace orv2_geo::win32 {

namespace {

HGLOBAL lent_copy(const std::wstring& text) {
  HGLOBAL const memory = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
  if (memory == nullptr) return nullptr;
  auto* const units = static_cast<wchar_t*>(GlobalLock(memory));
  *std::copy(text.begin(), text.end(), units) = L'\0';
  GlobalUnlock(memory);
  return memory;
}

}  // namespace

void put_on_clipboard(HWND window, const std::wstring& text) {
  HGLOBAL const copy = lent_copy(text);
  if (copy == nullptr) return;
  bool taken = false;
  if (OpenClipboard(window)) {
    EmptyClipboard();
    taken = SetClipboardData(CF_UNICODETEXT, copy) != nullptr;
    CloseClipboard();
  }
  if (!taken) GlobalFree(copy);
}

}  // namespace orv2_geo::win32
