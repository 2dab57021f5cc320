// f_MaxiMin.h: the form that shows the extremes of a set of points.
#pragma once

#include <cstdint>

#include "orv2_geo/platform/form.h"

namespace orv2_geo {

/// Minimum, maximum and their difference in X, Y and Z, in a grid; it only
/// shows. Fill it by one of the two methods, then show it. Both of its buttons,
/// Escape and the title bar's box unload it and tell nobody which it was. It has no
/// default button: Enter presses the button in focus, Aceptar at first, and Aceptar
/// on the grid.
class f_MaxiMin {
 public:
  f_MaxiMin();

  /// The fuller layout, with the number of the point that holds each extreme.
  /// Failures: 6 when a difference overflows; the columns before the
  /// differences, and the differences of the rows above, are written by then.
  void A_Let_Parametros_Mdt1(const double& MaxX, const double& MinX, const double& MaxY,
                             const double& MinY, const double& MaxZ, const double& MinZ,
                             const std::int32_t& PtoMaxX, const std::int32_t& PtoMaxY,
                             const std::int32_t& PtoMaxZ, const std::int32_t& PtoMinX,
                             const std::int32_t& PtoMinY, const std::int32_t& PtoMinZ);

  /// The short layout, without point numbers. Failures: as above.
  void A_Let_Parametros_Mdt(const double& MaxX, const double& MinX, const double& MaxY,
                            const double& MinY, const double& MaxZ, const double& MinZ);

  void show_modal() { form_.show_modal(); }
  void unload() noexcept { form_.unload(); }
  Form& form() noexcept { return form_; }

 private:
  void bt_salir_Click() noexcept { unload(); }
  void cmdDatosaceptar_Click() noexcept { unload(); }

  Form form_;
};

}  // namespace orv2_geo
