// cgeo_Terreno.h: elevations along a terrain profile.
#pragma once

#include <cstdint>

#include "frame/argument.h"
#include "frame/class_description.h"
#include "frame/export.h"

namespace orv2_geo {

/// A terrain profile: pairs of distance along an axis and elevation, numbered
/// from 1. A pure function table.
class ORV2_PUBLIC cgeo_Terreno {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_Terreno";

  /// The members in interface order.
  static const ClassDescription& description();

  void TR_Cotas_en_unTerreno_dando_DistOr(const DoubleArray& Xterr, const DoubleArray& Yterr,
                                          const DoubleArray& DistOr, DoubleArray& Cotas) const;
  double TF_Y_del_Terreno_dando_su_X(const DoubleArray& X, const DoubleArray& Y,
                                     const double& X1) const;
  double TF_ProyeccVertical_de_X_en_1R(const double& Xt1, const double& Yt1, const double& Xt2,
                                       const double& Yt2, const double& X1) const;
  double TF_Yminima_del_Terreno(const DoubleArray& Y) const;
  double TF_Ymaxima_del_Terreno(const DoubleArray& Y) const;
  Bool TF_DistaOrigen_estan_ordenadas(const DoubleArray& DistO) const;
  void Ordena_terreno_y_quita_repetidos(std::int32_t& Ptos, DoubleArray& DistO,
                                        DoubleArray& Z) const;
};

}  // namespace orv2_geo
