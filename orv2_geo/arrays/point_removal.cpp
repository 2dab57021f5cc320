// Removal of points from parallel arrays.
#include <array>
#include <cmath>
#include <cstddef>
#include <span>

#include "orv2_geo/arrays/cgeo_Matrices.h"
#include "orv2_geo/dialogs/f_Pts_Repet.h"
#include "orv2_geo/frame/checked_integer.h"
#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/counted.h"
#include "orv2_geo/frame/overlap.h"
#include "orv2_geo/repeated/mOrdena_repetidos.h"

namespace orv2_geo {

namespace {

// The points of a list, their subscripts checked once.
struct PointRows {
  double* X;
  double* Y;
  double* Z;
  std::int32_t* Indice;

  void move(std::size_t from, std::size_t to) const noexcept {
    X[to] = X[from];
    Y[to] = Y[from];
    Z[to] = Z[from];
    Indice[to] = Indice[from];
  }
};

// How far a filter has come.
struct Filtered {
  std::int16_t handled = 0;
  std::int16_t kept = 0;
};

// Filters whole blocks of the first n points for as long as nothing can fail. Which points of
// a block stay is found out first, without a branch: it is hard to foresee. So no point may be
// written where an elevation or an end of the interval is still to be read.
Filtered filter_blocks(std::int16_t n, DoubleArray& X, DoubleArray& Y, DoubleArray& Z,
                       LongArray& Indice, const double& MaxZ, const double& MinZ) noexcept {
  const PointRows rows{X.row(1, n), Y.row(1, n), Z.row(1, n), Indice.row(1, n)};
  if (!rows.X || !rows.Y || !rows.Z || !rows.Indice) return {};
  const auto row_of = [&](auto* elements) {
    return std::span(elements, static_cast<std::size_t>(n));
  };
  const auto apart_from_ends = [&](auto row) {
    return !overlap(row, std::span(&MaxZ, 1)) && !overlap(row, std::span(&MinZ, 1));
  };
  const auto in_step = [&](auto row) {
    return apart_from_ends(row) && same_or_apart(row, row_of(rows.Z));
  };
  const bool apart = in_step(row_of(rows.X)) && in_step(row_of(rows.Y)) &&
                     in_step(row_of(rows.Z)) && in_step(row_of(rows.Indice));
  if (!apart || std::isunordered(MaxZ, MinZ)) return {};

  constexpr std::size_t block = 64;
  std::size_t handled = 0;
  std::size_t kept = 0;
  while (handled + block <= static_cast<std::size_t>(n)) {
    std::array<std::uint8_t, block> staying;
    std::size_t count = 0;
    bool numbers = true;
    for (std::size_t i = 0; i < block; ++i) {
      const double level = rows.Z[handled + i];
      numbers &= level == level;
      staying[count] = static_cast<std::uint8_t>(i);  // or the next one that stays
      count += static_cast<std::size_t>(!(level > MaxZ) & !(level < MinZ));
    }
    if (!numbers) break;
    for (std::size_t i = 0; i < count; ++i) rows.move(handled + staying[i], kept++);
    handled += block;
  }
  return {static_cast<std::int16_t>(handled), static_cast<std::int16_t>(kept)};
}

}  // namespace

void cgeo_Matrices::Quita_Puntos_Repetidos(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y,
                                           DoubleArray& Z, const double&, const Bool& Aviso) const
    try {
  mOrdena::Quita_Puntos_Repetidos_2D_0(nPtos, X, Y, Z, Aviso);
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Matrices::Quita_Puntos_Repetidos_XYZ_con_indice1(
    std::int32_t& nPtos1, const DoubleArray& X1, const DoubleArray& Y1, const DoubleArray& Z1,
    LongArray& Indice, const ObjectRef& Progreso1, const double& Precision, const Bool&) const try {
  const std::int32_t nPtos = nPtos1;
  // Copies: a progress object may change what is the caller's in the middle.
  const struct {
    DoubleArray X, Y, Z;
    LongArray numbering;
  } own = {X1, Y1, Z1, Indice};
  std::int32_t nNuevos = 0;
  mOrdena::m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X(nPtos, own.X, own.Y, own.Z, nNuevos,
                                                         Indice, Precision, Progreso1);
  // The points' numbers in the caller's own numbering.
  for (const std::int32_t i : counted(1, nNuevos)) Indice(i) = own.numbering(Indice(i));
  nPtos1 = nNuevos;
} catch (...) {
  leave_signed(registered_name);
}

// Two members that do nothing, whatever their arguments: they keep their places
// in the interface.
void cgeo_Matrices::Quita_Puntos_Repetidos_XYZ_con_indice(const std::int32_t&, const DoubleArray&,
                                                          const DoubleArray&, const DoubleArray&,
                                                          const LongArray&, const double&,
                                                          const Bool&) const {}
void cgeo_Matrices::Quita_Pts_Repetidos_3D(const std::int32_t&, const DoubleArray&,
                                           const DoubleArray&, const DoubleArray&,
                                           const StringArray&, const StringArray&,
                                           const ShortArray&, const LongArray&, const ObjectRef&,
                                           const Bool&, const double&) const {}

void cgeo_Matrices::Quita_Pts_Repetidos(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y,
                                        DoubleArray& Z, StringArray& codigo, StringArray& Nombre,
                                        ShortArray& CapaP, LongArray& NewInd, const Bool&,
                                        double& Precision) const try {
  if (Checked(Precision) == 0.0) Precision = 0.001;
  f_Pts_Repet dialog;
  const Bool aviso = true;
  dialog.A_Quita_Pts_Repetidos(nPtos, X, Y, Z, codigo, Nombre, CapaP, NewInd, aviso, Precision);
  dialog.unload();
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Matrices::Quita_Puntos_fuera_interv_de_Cotas_con_indice(std::int32_t& nPtos,
                                                                  DoubleArray& X, DoubleArray& Y,
                                                                  DoubleArray& Z, LongArray& Indice,
                                                                  const double& MaxZ,
                                                                  const double& MinZ) const try {
  const std::int16_t n = to_i16(Checked(nPtos));
  const Filtered done = filter_blocks(n, X, Y, Z, Indice, MaxZ, MinZ);
  std::int16_t k = done.kept;
  // A counter of 16 bits: a list of 32767 points fails once all are handled.
  for (Checked16 i = Checked16(done.handled) + 1; !(Checked16(n) < i); ++i) {
    const std::int16_t from = i.value();
    const bool above = Checked(Z(from)) > MaxZ;
    const bool below = Checked(Z(from)) < MinZ;
    if (above || below) continue;
    k = (Checked16(k) + 1).value();
    X(k) = X(from);
    Y(k) = Y(from);
    Z(k) = Z(from);
    Indice(k) = Indice(from);
  }
  nPtos = k;
  X.size_keeping_from_0(k);
  Y.size_keeping_from_0(k);
  Z.size_keeping_from_0(k);
  Indice.size_keeping_from_0(k);
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
