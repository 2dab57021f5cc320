// f_Pts_Repet.h: the dialog in which a user removes repeated points.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/bool.h"
#include "orv2_geo/frame/geo_arrays.h"
#include "orv2_geo/platform/form.h"

namespace orv2_geo {

/// The user chooses a tolerance and a search, has the repeated points counted,
/// and then confirms or cancels. One instance serves one call.
///
///   Choosing    Calcular computes, Cancelar closes
///   Confirming  the count is shown and Eliminar stands in the place of Calcular
///   Stuck       nothing was found out (the failure has been shown): only Cancelar
///               can act
///
/// While it computes nothing is handled: a click waits until it has finished.
class f_Pts_Repet {
 public:
  f_Pts_Repet();

  /// Set when the user cancels. The title bar's box does not set it.
  bool Cancelado = false;

  /// Shows the dialog and returns when the user has left it. After Cancelar
  /// nothing of the caller's has changed. Otherwise the points that stay are in
  /// all six arrays from 1 on, in their old order; nPtos is their number; X, Y, Z,
  /// codigo and CapaP end at nPtos, and Nombre keeps its bound and what stands
  /// beyond; NewInd has the new number of every old point.
  ///
  /// The tolerance is the one typed in the dialog, "0.001" at every start: the
  /// number at the front of the text, with a point as decimal sign in every
  /// locale; 0, also of a text without a number, asks for 0.0002. Precision and
  /// Aviso have no effect. "2D" merges points of one plan position whatever their
  /// Z, "3D" compares all three axes.
  ///
  /// Leaving by the title bar's box is no cancelling: before anything was counted
  /// no point stays.
  ///
  /// Failures: 9 for arrays shorter than the points, 10 for one that is locked, 7;
  /// the arrays are then written as far as it got. What Calcular itself cannot work
  /// with closes the dialog, and nothing of the caller's has changed: 6 for a typed
  /// tolerance beyond all numbers, 9 for a negative nPtos, 7.
  void A_Quita_Pts_Repetidos(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y, DoubleArray& Z,
                             StringArray& codigo, StringArray& Nombre, ShortArray& CapaP,
                             LongArray& NewInd, const Bool& Aviso, const double& Precision);

  void unload() noexcept { form_.unload(); }
  Form& form() noexcept { return form_; }

 private:
  // The caller's own, in the order in which they are handed in.
  struct Points {
    std::int32_t& nPtos;
    DoubleArray &X, &Y, &Z;
    StringArray &codigo, &Nombre;
    ShortArray& CapaP;
  };

  void keep_copies(const Points& points);
  void apply(const Points& points) const;
  void cmdCalcular_Click();
  void cmdCancelar_Click() noexcept;
  void cmdEliminar_Click() noexcept;
  void Calcular_Repetidos();

  Form form_;
  std::int32_t nPuntos_ = 0;
  DoubleArray Xf_, Yf_, Zf_;
  StringArray codigoF_, NombreF_;
  ShortArray CapaF_;
  LongArray Conservados_;    // the points that stay, in entries 1 to nConservados_
  LongArray NuevoIndice_;    // of every old point its new number
  bool AvisoF_ = false;      // as handed in; read by nobody
  double PrecisionF_ = 0.0;  // as handed in, until the text box replaces it
  std::int32_t nConservados_ = 0;
  GeoArray<Bool> Marcas_;  // the search asks for it; read by nobody
};

}  // namespace orv2_geo
