// Removal of repeated points from the caller's own coordinates.
#include <algorithm>
#include <string_view>

#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/repeated/mOrdena_repetidos.h"
#include "orv2_geo/repeated/row.h"
#include "orv2_geo/repeated/sweep.h"
#include "orv2_geo/sorting/mOrdena.h"

namespace orv2_geo::mOrdena {

namespace {

using repeated::CheckedPoints;
using repeated::Coordinates;
using repeated::source;

constexpr std::u16string_view title_XY = u"m_Indice_de_Puntos_sin_Repetir_2 - Error nº ";
constexpr std::u16string_view title_2D_0 = u"Quita Puntos Repetidos 2D 0 - Error nº ";

// Flags every point of a cluster but the lowest number.
class Flagged : public repeated::ClusterSink {
 public:
  static constexpr std::size_t axes = 2;
  static constexpr bool reads_Z = false;

  Flagged(LongArray& Secuencia, LongArray& Indice, BoolArray& Repetido) noexcept
      : Secuencia_(Secuencia), Indice_(Indice), Repetido_(Repetido) {}

  template <class Points>
  void first(std::int32_t p, const Points&) {
    Secuencia_(1) = p;
    Indice_(p) = 1;
    cluster_ = 1;
    survivor_ = p;
  }
  template <class Points>
  void opened(std::int32_t p, const Points&) {
    open(p);
  }
  template <class PointAt>
  void opened_each(std::size_t from, std::size_t to, PointAt point_at) {
    for (std::size_t k = from; k < to; ++k) {
      open(point_at(k));
      placed(static_cast<std::int32_t>(k + 1), point_at(k));
    }
  }
  template <class Points>
  void joined(std::int32_t p, const Points&) {
    if (p < survivor_) {
      Repetido_(p) = false;
      Repetido_(survivor_) = true;
      Secuencia_(p) = p;  // by point number, unlike every other entry
      survivor_ = p;
    } else {
      Repetido_(p) = true;
    }
  }
  void placed(std::int32_t i, std::int32_t p) {
    Indice_(p) = cluster_;
    Secuencia_(i) = p;
  }
  [[gnu::always_inline]] void prefetch_for(std::int32_t p) const noexcept {
    repeated::prefetch_element(Indice_, p);
    repeated::prefetch_element(Repetido_, p);
  }
  std::int32_t found() const noexcept { return cluster_; }

 private:
  void open(std::int32_t p) {
    Repetido_(p) = false;
    ++cluster_;
    survivor_ = p;
  }

  LongArray& Secuencia_;
  LongArray& Indice_;
  BoolArray& Repetido_;
  std::int32_t cluster_ = 0;
  std::int32_t survivor_ = 0;
};

// New numbers for the points not flagged; answers with how many there are. A
// flagged point takes what stands at its place in the sequence at that moment:
// a new number below p, still a cluster's above.
std::int32_t renumber_unflagged(const std::int32_t& nPtos, const LongArray& Secuencia,
                                LongArray& Indice, const BoolArray& Repetido) {
  std::int32_t n = 0;
  for (const std::int32_t p : counted(1, nPtos)) {
    Indice(p) = Repetido(p) ? Indice(Secuencia(p)) : ++n;
  }
  return n;
}

// Whether the entries 1 to nPtos of a sequence are all points from 1 to nPtos.
bool are_points(const LongArray& Secuencia, std::int32_t nPtos) noexcept {
  const std::int32_t* const entries = Secuencia.row(1, nPtos);
  return entries != nullptr && std::all_of(entries, entries + nPtos,
                                           [&](std::int32_t p) { return 1 <= p && p <= nPtos; });
}

// Moves the coordinates of the points not flagged to the front. The flag is that of point
// p and the entry that of place p, on purpose.
void keep_unflagged(std::int32_t nPtos, const LongArray& Secuencia, const BoolArray& Repetido,
                    const Coordinates& all, LongArray& Indice, DoubleArray& X, DoubleArray& Y,
                    DoubleArray& Z) {
  const auto keep = [nPtos](auto&& entries, auto&& flags, auto&& all_X, auto&& all_Y, auto&& all_Z,
                            auto&& index, auto&& kept_X, auto&& kept_Y, auto&& kept_Z) {
    std::int32_t j = 0;
    for (const std::int32_t p : counted(1, nPtos)) {
      repeated::prefetch_after(entries, p, nPtos, all_X, all_Y, all_Z);
      if (flags(p)) continue;
      ++j;
      const std::int32_t number = entries(p);
      index(j) = number;
      kept_X(j) = all_X(number);
      kept_Y(j) = all_Y(number);
      kept_Z(j) = all_Z(number);
    }
  };
  // Where a failure was trapped before, entries may be missing.
  if (!are_points(Secuencia, nPtos))
    return keep(Secuencia, Repetido, all.X, all.Y, all.Z, Indice, X, Y, Z);
  repeated::on_rows_or_arrays(nPtos, keep, Secuencia, Repetido, all.X, all.Y, all.Z, Indice, X, Y,
                              Z);
}

// Puts the points to keep at the front of the X order; answers with how many.
template <class Points>
std::int32_t keep_front(std::int32_t nPtos, const Points& points, LongArray& Orden) {
  repeated::Box<2> near(repeated::default_tolerance);  // so small that no bound can overflow
  std::int32_t kept = 1;
  bool skip = true;  // a near point is dropped; at the start every one, later from the second on
  near.move_to(repeated::spot<2>(points, points.point(1)));
  for (const std::int32_t i : counted(2, nPtos)) {
    const std::int32_t p = points.point(i);
    points.prefetch_after(i, repeated::ClusterSink());
    repeated::Spot<2> at;
    const bool is_near =
        near.holds([&](std::size_t axis) { return repeated::coordinate(points, p, axis); }, at);
    near.move_to(at);
    if (is_near && skip) continue;
    skip = is_near;
    Orden(++kept) = p;  // at i or before: what is still to be read stays
  }
  return kept;
}

std::int32_t keep_front(std::int32_t nPtos, const Coordinates& at, LongArray& Orden) {
  if (const auto known = repeated::KnownPointsInOrder<false>::of(at, Orden, nPtos)) {
    return keep_front(nPtos, *known, Orden);
  }
  return keep_front(nPtos, CheckedPoints(at, Orden), Orden);
}

}  // namespace

void m_Indice_de_Puntos_sin_Repetir_XY(const std::int32_t& nPtos, const DoubleArray& X,
                                       const DoubleArray& Y, const DoubleArray& Z,
                                       std::int32_t& nNuevos, LongArray& Secuencia,
                                       LongArray& Indice, BoolArray& Repetido,
                                       const double& Precision, const ObjectRef& Progreso1) {
  trapped(source, title_XY, [&] {
    Secuencia.size(0, nPtos);
    Indice.size(0, nPtos);
    Repetido.size(0, nPtos);
    repeated::XOrder order(X, nPtos);
    const double tol = repeated::tolerance(Precision);
    const repeated::Progress progress(nPtos, Progreso1);
    repeated::Sweep<Flagged::reads_Z>(nPtos, {X, Y, Z}, order, tol)
        .run(progress, Flagged(Secuencia, Indice, Repetido));
    nNuevos = renumber_unflagged(nPtos, Secuencia, Indice, Repetido);
    progress.visible();
  });
}

void Quita_Puntos_Repetidos_XY_con_indice1(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y,
                                           DoubleArray& Z, LongArray& Indice,
                                           const ObjectRef& Progreso1, const double& Precision,
                                           const Bool&) {
  LongArray Secuencia(0, nPtos);
  BoolArray Repetido(0, nPtos);
  const DoubleArray all_X = X;
  const DoubleArray all_Y = Y;
  const DoubleArray all_Z = Z;
  std::int32_t nNuevos = 0;
  m_Indice_de_Puntos_sin_Repetir_XY(nPtos, all_X, all_Y, all_Z, nNuevos, Secuencia, Indice,
                                    Repetido, Precision, Progreso1);
  // What the routine above trapped is not noticed here.
  keep_unflagged(nPtos, Secuencia, Repetido, {all_X, all_Y, all_Z}, Indice, X, Y, Z);
  nPtos = nNuevos;
  X.size_keeping_from_0(nPtos);
  Y.size_keeping_from_0(nPtos);
  Z.size_keeping_from_0(nPtos);
}

void Quita_Puntos_Repetidos_2D_0(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y,
                                 DoubleArray& Z, const Bool&) {
  trapped(source, title_2D_0, [&] {
    if (nPtos < 0) raise(failure::subscript_out_of_range);  // the lowest is a sign of the sort's
    LongArray Orden;
    Ordena_Double_Index_Array(X, Orden, 1, nPtos);
    nPtos = keep_front(nPtos, Coordinates{X, Y, Z}, Orden);
    DoubleArray kept_X(0, nPtos);
    DoubleArray kept_Y(0, nPtos);
    DoubleArray kept_Z(0, nPtos);
    for (const std::int32_t k : counted(1, nPtos)) {
      repeated::prefetch_after(Orden, k, nPtos, X, Y, Z);
      kept_X(k) = X(Orden(k));
      kept_Y(k) = Y(Orden(k));
      kept_Z(k) = Z(Orden(k));
    }
    for (const std::int32_t k : counted(1, nPtos)) {
      X(k) = kept_X(k);
      Y(k) = kept_Y(k);
      Z(k) = kept_Z(k);
    }
  });
}

}  // namespace orv2_geo::mOrdena
