// Validation and clean-up of a terrain profile.
#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/counted.h"
#include "orv2_geo/frame/exchange_sort.h"
#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/terrain/cgeo_Terreno.h"

namespace orv2_geo {

namespace {

constexpr char16_t out_of_order[] =
    u"ERROR: Las Distancia a origen no estan ordenadas.\r\n"
    u"      Hay distacias parciales negativas.\r\n"
    u"                  ¡¡Corigelas!!";

}  // namespace

Bool cgeo_Terreno::TF_DistaOrigen_estan_ordenadas(const DoubleArray& DistO) const try {
  const std::int32_t n = DistO.upper();
  for (const std::int32_t i : counted(2, n)) {
    if (Checked(DistO(i)) < DistO(i - 1)) {
      critical_box(out_of_order);
      return false;
    }
  }
  return true;
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Terreno::Ordena_terreno_y_quita_repetidos(std::int32_t& Ptos, DoubleArray& DistO,
                                                    DoubleArray& Z) const try {
  DoubleArray TD(0, Ptos);
  DoubleArray TZ(0, Ptos);
  if (Ptos < 2) return;
  exchange_sort(Ptos, {&DistO, &Z});
  TD(1) = DistO(1);
  TZ(1) = Z(1);
  std::int32_t k = 1;
  for (const std::int32_t i : counted(2, Ptos)) {
    // Only a neighbour that is equal in both is a repeat.
    const bool same_distance = Checked(DistO(i)) == TD(k);
    const bool same_elevation = Checked(Z(i)) == TZ(k);
    if (same_distance && same_elevation) continue;
    ++k;
    TD(k) = DistO(i);
    TZ(k) = Z(i);
  }
  Ptos = k;
  TD.size_keeping(0, k);
  TZ.size_keeping(0, k);
  DistO = TD;
  Z = TZ;
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
