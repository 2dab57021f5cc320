#include <cstdio>

#include "orv2_geo/platform/console_user_interface.h"

namespace orv2_geo {

void write_console_line(const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); }

}  // namespace orv2_geo
