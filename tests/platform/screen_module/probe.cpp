// Shows two boxes through the system's own user interface.
#include "orv2_geo/platform/error_box.h"

int main() {
  orv2_geo::error_box(u"uno");
  orv2_geo::error_box(u"dos");
  return 0;
}
