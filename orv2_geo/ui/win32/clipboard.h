// clipboard.h: text for other programs.
#pragma once

#include <windows.h>

#include <string>

namespace orv2_geo::win32 {

/// Puts the text where other programs paste it from. Where another program holds the
/// clipboard at the moment, nothing changes.
void put_on_clipboard(HWND window, const std::wstring& text);

}  // namespace orv2_geo::win32
