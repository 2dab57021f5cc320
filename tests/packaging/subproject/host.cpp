#include <orv2_geo/orv2_geo.hpp>

int main() { return ORV2_VERSION_MAJOR == 2 ? 0 : 1; }
