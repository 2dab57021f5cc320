#include <windows.h>

#include <cstdio>

#include "orv2_geo/frame/text.h"
#include "orv2_geo/platform/console_user_interface.h"

namespace orv2_geo {

void write_console_line(const std::string& line) {
  const Text wide = Text::from_utf8(line + "\n");
  OutputDebugStringW(reinterpret_cast<const wchar_t*>(wide.data()));
  std::fprintf(stderr, "%s\n", line.c_str());  // a program with windows has nobody there
  std::fflush(stderr);
}

}  // namespace orv2_geo
