// Indexes of unrepeated points: the survivors in X order, or renumbered.
#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

#include "platform/error_box.h"
#include "repeated/mOrdena_repetidos.h"
#include "repeated/sweep.h"
#include "sorting/mOrdena.h"

namespace orv2_geo::mOrdena {

namespace {

using repeated::Progress;
using repeated::source;
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
class Clusters : public Rule {
 public:
  void placed(std::int32_t, std::int32_t) const noexcept {}
  void ahead(std::int32_t) const noexcept {}
  void ahead_near(std::int32_t) const noexcept {}
  std::int32_t found() const noexcept { return found_; }

 protected:
  std::int32_t found_ = 0;
  std::int32_t survivor_ = 0;
};

// The survivor of each cluster, in the order in which they are met: written over
// the front of the X order, as there are never more clusters than points met.
template <class Rule>
class Survivors : public Clusters<Rule> {
 public:
  explicit Survivors(LongArray& Orden) noexcept : survivors_(Orden.data()) {}

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
// moment, which may itself be replaced later; 0 for the survivors.
template <class Rule>
class Representatives : public Clusters<Rule> {
 public:
  explicit Representatives(LongArray& Representante) noexcept : stands_for_(Representante.data()) {}

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
      stands_for_[survivor_] = p;
      survivor_ = p;
    } else {
      stands_for_[p] = survivor_;
    }
  }
  [[gnu::always_inline]] void ahead_near(std::int32_t p) const noexcept {
    __builtin_prefetch(stands_for_ + p, 1);
  }

 private:
  using Clusters<Rule>::found_;
  using Clusters<Rule>::survivor_;
  std::int32_t* stands_for_;
};

// Gives an index that was made beforehand what it is to hold, in place where it
// still has the bounds it was given.
void deliver(const LongArray& made, LongArray& index) {
  const bool as_made = index.allocated() && index.lower() == 0 && index.count() == made.count();
  if (!as_made || index.legal_count() == 0 || index.locked()) {
    index = made;
    return;
  }
  std::copy_n(made.data(), made.count(), index.data());
}

// For points that the sweep has not met.
constexpr std::int32_t not_met = std::numeric_limits<std::int32_t>::min();

// Lists the survivors by their numbers; the k-th gets -k in `representatives`.
// Answers with how many there are.
std::int32_t number_survivors(LongArray& representatives, LongArray& list) {
  std::int32_t* const entries = representatives.data();
  std::int32_t* const listed = list.data();
  const std::int32_t points = list.upper();
  std::int32_t found = 0;
  for (std::int32_t p = 1; p <= points; ++p) {
    const bool survives = entries[p] == 0;
    listed[found + 1] = p;  // to stay or to be overwritten
    found += static_cast<std::int32_t>(survives);
    entries[p] = survives ? -found : entries[p];
  }
  std::fill(listed + found + 1, listed + points + 1, 0);
  return found;
}

// The entry of the survivor that stands for p in the end. All on the way to it get
// the same, so that no way is gone twice.
std::int32_t entry_in_the_end(std::int32_t p, std::int32_t* entries) {
  std::int32_t survivor = p;
  while (entries[survivor] > 0) survivor = entries[survivor];
  const std::int32_t entry = entries[survivor];
  while (entries[p] > 0) p = std::exchange(entries[p], entry);
  return entry;
}

// The new numbers of the first nPtos points, 0 for those not met.
void number_points(std::int32_t nPtos, LongArray& representatives, LongArray& IndiceGeneral) {
  std::int32_t* const entries = representatives.data();
  for (const std::int32_t p : counted(1, std::min(nPtos, representatives.upper()))) {
    std::int32_t entry = entries[p];
    if (entry > 0) entry = entry_in_the_end(p, entries);
    IndiceGeneral(p) = entry == not_met ? 0 : -entry;
  }
}

template <class Rule>
void renumbered(std::u16string_view title, const std::int32_t& nPtos, const DoubleArray& X,
                const DoubleArray& Y, const DoubleArray& Z, std::int32_t& nNuevos,
                LongArray& IndiceNuevos, LongArray& IndiceGeneral, BoolArray& Repetido,
                const double& Precision, const ObjectRef& Progreso1) {
  trapped(source, title, [&] {
    LongArray Representante(0, nPtos);
    IndiceNuevos.size(0, nPtos);
    IndiceGeneral.size(0, nPtos);
    Repetido.size(0, nPtos);  // and nothing more: no entry is ever set
    XOrder order(X, nPtos);
    const double tol = repeated::tolerance(Precision);
    const Progress progress(nPtos, Progreso1);
    repeated::sweep(nPtos, {X, Y, Z}, order, tol, progress, Representatives<Rule>(Representante));
    const std::int32_t met = std::max(nPtos, 0);
    for (const std::int32_t i : counted(met + 1, order.points())) {
      Representante(order.numbers()(i)) = not_met;
    }
    LongArray& Nuevos = order.numbers();
    const std::int32_t found = number_survivors(Representante, Nuevos);
    number_points(nPtos, Representante, IndiceGeneral);
    deliver(Nuevos, IndiceNuevos);
    nNuevos = found;
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
    LongArray& Elegidos = order.numbers();
    const std::int32_t found = repeated::sweep(nPtos, {X, Y, Z}, order, tol, progress,
                                               Survivors<HighestSurvives>(Elegidos));
    for (const std::int32_t c : counted(found + 1, Elegidos.upper())) Elegidos(c) = 0;
    deliver(Elegidos, Indice);
    nNuevos = found;
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
