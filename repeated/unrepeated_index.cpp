// Indexes of unrepeated points: the survivors in X order, or renumbered.
#include <algorithm>
#include <string_view>

#include "platform/error_box.h"
#include "repeated/mOrdena_repetidos.h"
#include "repeated/sweep.h"
#include "sorting/mOrdena.h"

namespace orv2_geo::mOrdena {

namespace {

using repeated::Cloud;
using repeated::Progress;
using repeated::source;

constexpr std::u16string_view title_in_X =
    u"m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X - Error nº ";
constexpr std::u16string_view title_2 = u"m_Indice_de_Puntos_sin_Repetir_2 - Error nº ";
constexpr std::u16string_view title_2D = u"m_Indice_de_Puntos_sin_Repetir_2D - Error nº ";

// The survivor of each cluster, written over the front of the X order: there are
// never more clusters than points met.
class Chosen {
 public:
  explicit Chosen(LongArray& Orden) noexcept : survivors_(Orden.data()) {}

  void open(std::int32_t p) noexcept {
    ++found_;
    take(p);
  }
  void take(std::int32_t p) noexcept { survivors_[found_] = survivor_ = p; }
  std::int32_t found() const noexcept { return found_; }
  std::int32_t survivor() const noexcept { return survivor_; }

 private:
  std::int32_t* survivors_;
  std::int32_t found_ = 0;
  std::int32_t survivor_ = 0;
};

// The box is of X and Y, and the highest point survives; of equal Z the lowest
// number.
class HighestSurvives {
 public:
  static constexpr std::size_t axes = 2;
  static constexpr bool reads_Z = true;

  explicit HighestSurvives(LongArray& Orden) noexcept : chosen_(Orden) {}

  template <class Points>
  void opened(std::int32_t p, const Points& points) {
    top_ = points.z(p);
    chosen_.open(p);
  }
  template <class Points>
  void joined(std::int32_t p, const Points& points) {
    const Checked z = points.z(p);
    if (z > top_) {
      top_ = z;
      chosen_.take(p);
    } else if (z == top_ && p < chosen_.survivor()) {
      chosen_.take(p);
    }
  }
  std::int32_t found() const noexcept { return chosen_.found(); }

 private:
  Chosen chosen_;
  double top_ = 0.0;
};

// The box is of all three axes, and the lowest number survives.
class LowestNumberSurvives {
 public:
  static constexpr std::size_t axes = 3;
  static constexpr bool reads_Z = true;

  explicit LowestNumberSurvives(LongArray& Orden) noexcept : chosen_(Orden) {}

  template <class Points>
  void opened(std::int32_t p, const Points&) noexcept {
    chosen_.open(p);
  }
  template <class Points>
  void joined(std::int32_t p, const Points&) noexcept {
    if (p < chosen_.survivor()) chosen_.take(p);
  }
  std::int32_t found() const noexcept { return chosen_.found(); }

 private:
  Chosen chosen_;
};

// Clusters of which only the survivors are asked for.
template <class Rule>
struct Survivors : Rule {
  using Rule::Rule;

  template <class Points>
  void first(std::int32_t p, const Points& points) {
    Rule::opened(p, points);
  }
  void placed(std::int32_t, std::int32_t) const noexcept {}
  void ahead(std::int32_t) const noexcept {}
};

// Clusters that also know every point's cluster.
template <class Rule>
class Membership : public Rule {
 public:
  Membership(LongArray& Orden, LongArray& Cluster) noexcept
      : Rule(Orden), cluster_of_(Cluster.data()) {}

  template <class Points>
  void first(std::int32_t p, const Points& points) {
    Rule::opened(p, points);
    placed(1, p);
  }
  void placed(std::int32_t, std::int32_t p) noexcept { cluster_of_[p] = Rule::found(); }
  [[gnu::always_inline]] void ahead(std::int32_t p) const noexcept {
    __builtin_prefetch(cluster_of_ + p, 1);
  }

 private:
  std::int32_t* cluster_of_;
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

// Each cluster's entry in `survivors` becomes its survivor's new number, and the
// survivor's own entry in `clusters` is marked by its sign. A cluster has one
// survivor, so they need no sorting: they are met in order. A new number is at
// most the survivor's own, and no later point is taken for it.
void number_survivors(LongArray& clusters, LongArray& survivors) {
  std::int32_t number = 0;
  for (const std::int32_t p : counted(1, clusters.upper())) {
    repeated::ask_ahead(clusters, p, clusters.upper(), survivors);
    const std::int32_t c = clusters(p);
    if (survivors(c) != p) continue;
    survivors(c) = ++number;
    clusters(p) = -c;
  }
}

// The new number of the first nPtos points; `clusters` becomes the list of the
// survivors.
void list_survivors(std::int32_t nPtos, LongArray& clusters, const LongArray& new_number,
                    LongArray& IndiceGeneral) {
  std::int32_t listed = 0;
  for (const std::int32_t p : counted(1, clusters.upper())) {
    const std::int32_t c = clusters(p);
    if (p <= nPtos) IndiceGeneral(p) = new_number(c < 0 ? -c : c);
    clusters(p) = 0;
    if (c < 0) clusters(++listed) = p;  // at p or before
  }
}

template <class Rule>
void renumbered(std::u16string_view title, const std::int32_t& nPtos, const DoubleArray& X,
                const DoubleArray& Y, const DoubleArray& Z, std::int32_t& nNuevos,
                LongArray& IndiceNuevos, LongArray& IndiceGeneral, BoolArray& Repetido,
                const double& Precision, const ObjectRef& Progreso1) {
  trapped(source, title, [&] {
    LongArray Orden;
    LongArray Cluster(0, nPtos);
    IndiceNuevos.size(0, nPtos);
    IndiceGeneral.size(0, nPtos);
    Repetido.size(0, nPtos);  // and nothing more: no entry is ever set
    Ordena_Double_Index_Array(X, Orden, 1, nPtos);
    const double tol = repeated::tolerance(Precision);
    const Progress progress(nPtos, Progreso1);
    const std::int32_t found = repeated::sweep(nPtos, Cloud{X, Y, Z, Orden}, tol, progress,
                                               Membership<Rule>(Orden, Cluster));
    number_survivors(Cluster, Orden);
    const LongArray& new_number = Orden;
    list_survivors(nPtos, Cluster, new_number, IndiceGeneral);
    const LongArray& Nuevos = Cluster;
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
    LongArray Orden;
    if (nPtos < 0) raise(failure::subscript_out_of_range);  // before a lock can refuse
    Indice.size(0, nPtos);
    Ordena_Double_Index_Array(X, Orden, 1, nPtos);
    const double tol = repeated::tolerance(Precision);
    const Progress progress(nPtos, Progreso1);
    const std::int32_t found = repeated::sweep(nPtos, Cloud{X, Y, Z, Orden}, tol, progress,
                                               Survivors<HighestSurvives>(Orden));
    LongArray& Elegidos = Orden;
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
