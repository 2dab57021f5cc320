/* A C program on the installed library. */
#include <orv2_geo/orv2_geo.h>
#include <stdio.h>

int main(void) {
  orv2_handle object = 0;
  orv2_value arguments[3] = {{ORV2_F64, {-1.0}}, {ORV2_F64, {0.0}}, {ORV2_NONE, {0.0}}};
  double azimuth = 0.0;
  int32_t status = orv2_create("Orv2_Geo.cgeo_Algorismos", &object);
  arguments[2].tag = ORV2_F64 | ORV2_BYREF;
  arguments[2].as.pointer = &azimuth;
  if (status == 0) status = orv2_call_name(object, "Azimut", arguments, 3, NULL);
  if (status == 0) status = orv2_release(object);
  printf("status %d, azimuth %.17g\n", (int)status, azimuth);
  return status == 0 && azimuth == 300.0 && orv2_version() == ORV2_VERSION ? 0 : 1;
}
