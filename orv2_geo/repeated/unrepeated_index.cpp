// Indexes of unrepeated points: the survivors in X order, or renumbered.
#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "orv2_geo/frame/overlap.h"
#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/repeated/mOrdena_repetidos.h"
#include "orv2_geo/repeated/replaced_points.h"
#include "orv2_geo/repeated/sweep.h"
#include "orv2_geo/sorting/mOrdena.h"

namespace orv2_geo::mOrdena {

namespace {

using repeated::Progress;
using repeated::ReplacedPoints;
using repeated::source;
using repeated::Sweep;
using repeated::XOrder;

constexpr std::u16string_view title_in_X =
    u"m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X - Error nº ";
constexpr std::u16string_view title_2 = u"m_Indice_de_Puntos_sin_Repetir_2 - Error nº ";
constexpr std::u16string_view title_2D = u"m_Indice_de_Puntos_sin_Repetir_2D - Error nº ";

// Which point survives a cluster: the last that took over.
//
// The box is of X and Y, and the highest point survives; of equal Z the lowest
// number. The highest Z so far is that of the survivor.
struct HighestSurvives {
  static constexpr std::size_t axes = 2;
  static constexpr bool reads_Z = true;

  template <class Points>
  static void meet(std::int32_t p, const Points& points) {
    static_cast<void>(points.z(p));  // must be there
  }
  template <class Points>
  static bool takes_over(std::int32_t p, std::int32_t survivor, const Points& points) {
    const Checked z = points.z(p);
    const double top = points.z(survivor);
    return z > top || (z == top && p < survivor);
  }
};

// The box is of all three axes, and the lowest number survives.
struct LowestNumberSurvives {
  static constexpr std::size_t axes = 3;
  static constexpr bool reads_Z = true;

  template <class Points>
  static void meet(std::int32_t, const Points&) noexcept {}
  template <class Points>
  static bool takes_over(std::int32_t p, std::int32_t survivor, const Points&) noexcept {
    return p < survivor;
  }
};

// Clusters of which only the survivors are asked for.
template <class Rule>
class Clusters : public repeated::ClusterSink, public Rule {
 public:
  std::int32_t found() const noexcept { return found_; }

 protected:
  std::int32_t found_ = 0;
  std::int32_t survivor_ = 0;
};

// The survivor of each cluster, in the order in which they are met. They may be
// written over the front of the X order, as there are never more clusters than
// points met.
template <class Rule>
class Survivors : public Clusters<Rule> {
 public:
  explicit Survivors(LongArray& Elegidos) noexcept : survivors_(Elegidos.data()) {}

  template <class Points>
  void first(std::int32_t p, const Points& points) {
    opened(p, points);
  }
  template <class Points>
  void opened(std::int32_t p, const Points& points) {
    Rule::meet(p, points);
    survivors_[++found_] = survivor_ = p;
  }
  template <class PointAt>
  void opened_each(std::size_t from, std::size_t to, PointAt point_at) noexcept {
    std::int32_t* next = survivors_ + found_;
    for (std::size_t k = from; k < to; ++k) *++next = point_at(k);
    found_ += static_cast<std::int32_t>(to - from);
    survivor_ = *next;
  }
  template <class Points>
  void joined(std::int32_t p, const Points& points) {
    if (Rule::takes_over(p, survivor_, points)) survivors_[found_] = survivor_ = p;
  }

 private:
  using Clusters<Rule>::found_;
  using Clusters<Rule>::survivor_;
  std::int32_t* survivors_;
};

// Who stands for each point that is none of the survivors: the survivor of the
// moment, which may itself be replaced later.
template <class Rule>
class Representatives : public Clusters<Rule> {
 public:
  explicit Representatives(ReplacedPoints& replaced) noexcept : replaced_(replaced) {}

  template <class Points>
  void first(std::int32_t p, const Points& points) {
    opened(p, points);
  }
  template <class Points>
  void opened(std::int32_t p, const Points& points) {
    Rule::meet(p, points);
    ++found_;
    survivor_ = p;
  }
  template <class PointAt>
  void opened_each(std::size_t from, std::size_t to, PointAt point_at) noexcept {
    if (from == to) return;
    found_ += static_cast<std::int32_t>(to - from);
    survivor_ = point_at(to - 1);
  }
  template <class Points>
  void joined(std::int32_t p, const Points& points) {
    if (Rule::takes_over(p, survivor_, points)) {
      replaced_.replace(survivor_, p);
      survivor_ = p;
    } else {
      replaced_.replace(p, survivor_);
    }
  }

 private:
  using Clusters<Rule>::found_;
  using Clusters<Rule>::survivor_;
  ReplacedPoints& replaced_;
};

// Whether an index still is what it was made, subscripts 0 to `points`, and may be
// written to directly.
bool is_as_made(const LongArray& index, std::int32_t points) {
  if (!index.allocated() || index.legal_count() == 0 || index.locked()) return false;
  return index.lower() == 0 && index.upper() == points;
}

std::span<const std::int32_t> elements(const LongArray& index) {
  return {index.data(), index.count()};
}

// Gives an index that was made beforehand what it is to hold, in place where that
// can be.
void deliver(const LongArray& found, LongArray& index) {
  if (&found == &index) return;
  if (!is_as_made(index, found.upper())) {
    index = found;
    return;
  }
  std::copy_n(found.data(), found.count(), index.data());
}

// What a list of `found` points has at 0 and above them.
void clear_around(LongArray& list, std::int32_t found) {
  list(0) = 0;
  std::fill(list.data() + found + 1, list.data() + list.count(), 0);
}

// A host may have lowered the number of points, so that the sweep ended before.
void leave_out_unmet(std::int32_t nPtos, XOrder& order, ReplacedPoints& replaced) {
  for (const std::int32_t i : counted(std::max(nPtos, 0) + 1, order.points())) {
    replaced.leave_out(order.numbers()(i));
  }
}

// One by one, as far as they fit, where they are not in place.
void deliver_numbers(std::int32_t nPtos, const LongArray& numbers, LongArray& IndiceGeneral) {
  if (&numbers == &IndiceGeneral) return;
  for (const std::int32_t p : counted(1, std::min(nPtos, numbers.upper()))) {
    IndiceGeneral(p) = numbers(p);
  }
}

template <class Rule>
void renumbered(std::u16string_view title, const std::int32_t& nPtos, const DoubleArray& X,
                const DoubleArray& Y, const DoubleArray& Z, std::int32_t& nNuevos,
                LongArray& IndiceNuevos, LongArray& IndiceGeneral, BoolArray& Repetido,
                const double& Precision, const ObjectRef& Progreso1) {
  trapped(source, title, [&] {
    if (nPtos < 0) raise(failure::subscript_out_of_range);  // before a lock can refuse
    IndiceNuevos.size(0, nPtos);
    IndiceGeneral.size(0, nPtos);
    Repetido.size(0, nPtos);  // and nothing more: no entry is ever set
    XOrder order(X, nPtos);
    const double tol = repeated::tolerance(Precision);
    const Progress progress(nPtos, Progreso1);
    Sweep<Rule::reads_Z> sweep(nPtos, {X, Y, Z}, order, tol);
    // What cannot fail is worked out where it is delivered: fresh memory is slow.
    const bool in_place = sweep.cannot_fail() && is_as_made(IndiceNuevos, order.points()) &&
                          is_as_made(IndiceGeneral, order.points()) &&
                          !overlap(elements(IndiceNuevos), elements(IndiceGeneral));
    LongArray apart;
    if (!in_place) apart.size(0, order.points());
    LongArray& Nuevos = in_place ? IndiceNuevos : order.numbers();
    LongArray& Numeros = in_place ? IndiceGeneral : apart;
    ReplacedPoints replaced(order.points());
    sweep.run(progress, Representatives<Rule>(replaced));
    leave_out_unmet(nPtos, order, replaced);
    const std::int32_t found = replaced.number(Nuevos.data(), Numeros.data());
    deliver_numbers(nPtos, Numeros, IndiceGeneral);
    nNuevos = found;  // before IndiceNuevos, which the host may have locked meanwhile
    deliver(Nuevos, IndiceNuevos);
    progress.visible();
  });
}

}  // namespace

void m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X(const std::int32_t& nPtos, const DoubleArray& X,
                                                   const DoubleArray& Y, const DoubleArray& Z,
                                                   std::int32_t& nNuevos, LongArray& Indice,
                                                   const double& Precision,
                                                   const ObjectRef& Progreso1) {
  trapped(source, title_in_X, [&] {
    if (nPtos < 0) raise(failure::subscript_out_of_range);  // before a lock can refuse
    Indice.size(0, nPtos);
    XOrder order(X, nPtos);
    const double tol = repeated::tolerance(Precision);
    const Progress progress(nPtos, Progreso1);
    Sweep<HighestSurvives::reads_Z> sweep(nPtos, {X, Y, Z}, order, tol);
    const bool in_place = sweep.cannot_fail() && is_as_made(Indice, order.points());
    LongArray& Elegidos = in_place ? Indice : order.numbers();
    const std::int32_t found = sweep.run(progress, Survivors<HighestSurvives>(Elegidos));
    clear_around(Elegidos, found);
    nNuevos = found;  // before Indice, which the host may have locked meanwhile
    deliver(Elegidos, Indice);
  });
}

void m_Indice_de_Puntos_sin_Repetir_2(const std::int32_t& nPtos, const DoubleArray& X,
                                      const DoubleArray& Y, const DoubleArray& Z,
                                      std::int32_t& nNuevos, LongArray& IndiceNuevos,
                                      LongArray& IndiceGeneral, BoolArray& Repetido,
                                      const double& Precision, const ObjectRef& Progreso1) {
  renumbered<HighestSurvives>(title_2, nPtos, X, Y, Z, nNuevos, IndiceNuevos, IndiceGeneral,
                              Repetido, Precision, Progreso1);
}

void m_Indice_de_Puntos_sin_Repetir_2D(const std::int32_t& nPtos, const DoubleArray& X,
                                       const DoubleArray& Y, const DoubleArray& Z,
                                       std::int32_t& nNuevos, LongArray& IndiceNuevos,
                                       LongArray& IndiceGeneral, BoolArray& Repetido,
                                       const double& Precision, const ObjectRef& Progreso1) {
  renumbered<LowestNumberSurvives>(title_2D, nPtos, X, Y, Z, nNuevos, IndiceNuevos, IndiceGeneral,
                                   Repetido, Precision, Progreso1);
}

}  // namespace orv2_geo::mOrdena
