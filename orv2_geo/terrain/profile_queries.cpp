// Elevations along a terrain profile, and its extremes.
#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/counted.h"
#include "orv2_geo/terrain/cgeo_Terreno.h"

namespace orv2_geo {

namespace {

// From i on, the first place of a profile that may end the walk to X1, at most
// `last`. Places before X1 are passed in plain arithmetic; one that is NaN is
// not before it and stops the walk too. The places exist.
std::int32_t first_not_before(const DoubleArray& X, std::int32_t i, std::int32_t last, double X1) {
  const double* place = &X(i);
  while (i < last && *place < X1) ++i, ++place;
  return i;
}

}  // namespace

double cgeo_Terreno::TF_ProyeccVertical_de_X_en_1R(const double& Xt1, const double& Yt1,
                                                   const double& Xt2, const double& Yt2,
                                                   const double& X1) const try {
  const Checked dx = Checked(Xt2) - Xt1;
  if (dx == 0.0) return Yt1;
  return (Checked(Yt2) - Yt1) * (Checked(X1) - Xt1) / dx + Yt1;
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_Terreno::TF_Y_del_Terreno_dando_su_X(const DoubleArray& X, const DoubleArray& Y,
                                                 const double& X1) const try {
  const auto on_stretch_to = [&](std::int32_t i) {
    return TF_ProyeccVertical_de_X_en_1R(X(i - 1), Y(i - 1), X(i), Y(i), X1);
  };
  const std::int32_t n = X.upper();
  if (n < 2) return 0.0;
  if (Checked(X1) == X(1)) return Y(1);
  if (Checked(X1) == X(n)) return Y(n);
  if (Checked(X1) < X(1)) return on_stretch_to(2);
  if (Checked(X1) > X(n)) return on_stretch_to(n);
  const std::int32_t i = first_not_before(X, 2, n, X1);  // X1 lies before X(n) by now
  if (i < n && Checked(X1) == X(i)) return Y(i);
  return on_stretch_to(i);
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Terreno::TR_Cotas_en_unTerreno_dando_DistOr(const DoubleArray& Xterr,
                                                      const DoubleArray& Yterr,
                                                      const DoubleArray& DistOr,
                                                      DoubleArray& Cotas) const try {
  const std::int32_t m = DistOr.upper();
  Cotas.size(0, m);
  for (const std::int32_t i : counted(1, m)) {
    Cotas(i) = TF_Y_del_Terreno_dando_su_X(Xterr, Yterr, DistOr(i));
  }
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_Terreno::TF_Yminima_del_Terreno(const DoubleArray& Y) const try {
  const std::int32_t n = Y.upper();
  double lowest = Y(1);  // read first: an array without an element 1 fails
  if (n < 2) return 0.0;
  for (const std::int32_t i : counted(2, n)) {
    if (Checked(Y(i)) < lowest) lowest = Y(i);
  }
  return lowest;
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_Terreno::TF_Ymaxima_del_Terreno(const DoubleArray& Y) const try {
  const std::int32_t n = Y.upper();
  double highest = Y(1);  // read first: an array without an element 1 fails
  if (n < 2) return 0.0;
  for (const std::int32_t i : counted(2, n)) {
    if (Checked(Y(i)) > highest) highest = Y(i);
  }
  return highest;
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
