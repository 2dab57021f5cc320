#include "orv2_geo/dialogs/f_Pts_Repet.h"

#include "orv2_geo/frame/checked_integer.h"
#include "orv2_geo/frame/counted.h"
#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/repeated/mOrdena_repetidos.h"

namespace orv2_geo {

namespace {

constexpr double on = -1.0;
constexpr std::int32_t cyan = 0x00ffff;

// chkCood00, labCero and lblPtos belong to the form and are connected to nothing.
constexpr ControlDesign controls[] = {
    {.name = "chkCood00",
     .kind = ControlKind::check_box,
     .left = 96,
     .top = 2064,
     .width = 1788,
     .height = 192,
     .tab_index = 10,
     .text = u"Quitar ptos (0,0)",
     .enabled = false},
    {.name = "FraOption",
     .kind = ControlKind::frame,
     .left = 288,
     .top = 336,
     .width = 2268,
     .height = 1116,
     .tab_index = 5,
     .text = u"Buscar:"},
    {.name = "TxtPresc",
     .kind = ControlKind::text_box,
     .left = 1152,
     .top = 720,
     .width = 972,
     .height = 300,
     .tab_index = 12,
     .text = u"0.001",
     .container = "FraOption"},
    {.name = "Opt3D(1)",
     .kind = ControlKind::option_button,
     .left = 1296,
     .top = 288,
     .width = 876,
     .height = 204,
     .tab_index = 7,
     .text = u"3D",
     .container = "FraOption"},
    {.name = "Opt3D(0)",
     .kind = ControlKind::option_button,
     .left = 288,
     .top = 288,
     .width = 636,
     .height = 204,
     .tab_index = 6,
     .text = u"2D",
     .container = "FraOption",
     .value = on},
    {.name = "Label1",
     .kind = ControlKind::label,
     .left = 144,
     .top = 768,
     .width = 708,
     .height = 192,
     .tab_index = 13,
     .text = u"Precisión:",
     .container = "FraOption",
     .sizes_itself = true},
    {.name = "ProgressBar1",
     .kind = ControlKind::progress_bar,
     .left = 144,
     .top = 1536,
     .width = 2556,
     .height = 156,
     .tab_index = 3,
     .visible = false},
    {.name = "cmdCancelar",
     .kind = ControlKind::button,
     .left = 1632,
     .top = 2400,
     .width = 972,
     .height = 348,
     .tab_index = 0,
     .text = u"Cancelar",
     .is_cancel = true},
    {.name = "cmdCalcular",
     .kind = ControlKind::button,
     .left = 336,
     .top = 2400,
     .width = 972,
     .height = 348,
     .tab_index = 4,
     .text = u"Calcular",
     .is_default = true},
    // Nearly on the spot of cmdCalcular, whose place it takes.
    {.name = "cmdEliminar",
     .kind = ControlKind::button,
     .left = 330,
     .top = 2400,
     .width = 972,
     .height = 348,
     .tab_index = 14,
     .text = u"Eliminar",
     .visible = false},
    {.name = "labCero",
     .kind = ControlKind::label,
     .left = 1968,
     .top = 2064,
     .width = 492,
     .height = 192,
     .tab_index = 11},
    {.name = "Label2",
     .kind = ControlKind::label,
     .left = 468,
     .top = 48,
     .width = 960,
     .height = 192,
     .tab_index = 9,
     .text = u"Nº de puntos:",
     .sizes_itself = true,
     .alignment = CellAlignment::right},
    {.name = "labPuntos",
     .kind = ControlKind::label,
     .left = 1488,
     .top = 48,
     .width = 84,
     .height = 192,
     .tab_index = 8,
     .text = u"0",
     .sizes_itself = true},
    {.name = "lblPtos",
     .kind = ControlKind::label,
     .left = 2550,
     .top = 1710,
     .width = 180,
     .height = 195,
     .tab_index = 2,
     .text = u"0",
     .visible = false,
     .sizes_itself = true},
    {.name = "lblEstudio",
     .kind = ControlKind::label,
     .left = 360,
     .top = 1710,
     .width = 2025,
     .height = 285,
     .tab_index = 1,
     .text = u"estudiando el nº:",
     .visible = false,
     .sizes_itself = true,
     .alignment = CellAlignment::centre,
     .background = cyan},
};

}  // namespace

f_Pts_Repet::f_Pts_Repet()
    : form_("f_Pts_Repet", u"Quitar puntos repetidos:", 2865, 3000, controls) {
  form_.set_frame({.start = StartPosition::centre_of_owner});
  form_.on_click("cmdCalcular", [this] { cmdCalcular_Click(); });
  form_.on_click("cmdCancelar", [this] { cmdCancelar_Click(); });
  form_.on_click("cmdEliminar", [this] { cmdEliminar_Click(); });
}

void f_Pts_Repet::A_Quita_Pts_Repetidos(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y,
                                        DoubleArray& Z, StringArray& codigo, StringArray& Nombre,
                                        ShortArray& CapaP, LongArray& NewInd, const Bool& Aviso,
                                        const double& Precision) {
  const Points points = {nPtos, X, Y, Z, codigo, Nombre, CapaP};
  keep_copies(points);
  Conservados_ = NewInd;
  AvisoF_ = Aviso;
  PrecisionF_ = Precision;
  form_.control("labPuntos").set_text(text_services::default_text(nPuntos_));
  form_.show_modal();
  if (Cancelado) return;
  apply(points);
  NewInd = NuevoIndice_;
}

void f_Pts_Repet::keep_copies(const Points& points) {
  nPuntos_ = points.nPtos;
  Xf_ = points.X;
  Yf_ = points.Y;
  Zf_ = points.Z;
  codigoF_ = points.codigo;
  NombreF_ = points.Nombre;
  CapaF_ = points.CapaP;
}

// From the copies alone: source and target cannot interfere.
void f_Pts_Repet::apply(const Points& points) const {
  for (const std::int32_t i : counted(1, nConservados_)) {
    const std::int32_t k = Conservados_(i);
    points.X(i) = Xf_(k);
    points.Y(i) = Yf_(k);
    points.Z(i) = Zf_(k);
    points.codigo(i) = codigoF_(k);
    points.CapaP(i) = CapaF_(k);
    points.Nombre(i) = NombreF_(k);
  }
  points.nPtos = nConservados_;
  points.X.size_keeping_from_0(points.nPtos);
  points.Y.size_keeping_from_0(points.nPtos);
  points.Z.size_keeping_from_0(points.nPtos);
  points.codigo.size_keeping_from_0(points.nPtos);
  points.CapaP.size_keeping_from_0(points.nPtos);
  // Nombre keeps its upper bound and the names beyond nPtos.
}

void f_Pts_Repet::Calcular_Repetidos() {
  form_.control("cmdCalcular").set_enabled(false);
  Marcas_.size(0, nPuntos_);
  PrecisionF_ = text_services::leading_number(form_.control("TxtPresc").text().view());
  const ObjectRef progress = form_.object("ProgressBar1");
  // The routine that merges points of one plan position has the plain name; the
  // one whose name ends in 2D compares all three axes and is meant for "3D".
  if (form_.control("Opt3D(0)").value() == on) {
    mOrdena::m_Indice_de_Puntos_sin_Repetir_2(nPuntos_, Xf_, Yf_, Zf_, nConservados_, Conservados_,
                                              NuevoIndice_, Marcas_, PrecisionF_, progress);
  } else {
    mOrdena::m_Indice_de_Puntos_sin_Repetir_2D(nPuntos_, Xf_, Yf_, Zf_, nConservados_, Conservados_,
                                               NuevoIndice_, Marcas_, PrecisionF_, progress);
  }
  if (nConservados_ < 1) return;
  const std::int32_t repeated = (Checked32(nPuntos_) - nConservados_).value();
  const Text front = joined(u"Hay ", text_services::default_text(repeated).view());
  form_.control("lblEstudio").set_text(joined(front.view(), u" puntos repetidos"));
  form_.control("lblEstudio").set_visible(true);
  form_.control("ProgressBar1").set_visible(false);
  form_.control("cmdCalcular").set_visible(false);
  form_.control("cmdEliminar").set_visible(true);
}

void f_Pts_Repet::cmdCalcular_Click() {
  form_.control("FraOption").set_enabled(false);  // freezes what is inside
  Calcular_Repetidos();
}

void f_Pts_Repet::cmdCancelar_Click() noexcept {
  Cancelado = true;
  form_.hide();
}

void f_Pts_Repet::cmdEliminar_Click() noexcept { form_.hide(); }

}  // namespace orv2_geo
