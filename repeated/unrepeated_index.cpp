// Indexes of unrepeated points: the survivors in X order, or renumbered.
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

// The survivor of each cluster.
class Chosen {
 public:
  explicit Chosen(LongArray& Elegidos) noexcept : Elegidos_(Elegidos) {}

  void open(std::int32_t p) {
    ++clusters_;
    take(p);
  }
  void take(std::int32_t p) {
    Elegidos_(clusters_) = p;
    survivor_ = p;
  }
  std::int32_t clusters() const noexcept { return clusters_; }
  std::int32_t survivor() const noexcept { return survivor_; }

 private:
  LongArray& Elegidos_;
  std::int32_t clusters_ = 0;
  std::int32_t survivor_ = 0;
};

// The box is of X and Y, and the highest point survives; of equal Z the lowest
// number.
class HighestSurvives {
 public:
  static constexpr std::size_t axes = 2;

  HighestSurvives(const Cloud& cloud, LongArray& Elegidos) noexcept
      : Z_(cloud.Z), chosen_(Elegidos) {}

  void opened(std::int32_t p) {
    chosen_.open(p);
    top_ = Z_(p);
  }
  void joined(std::int32_t p) {
    const Checked z = Z_(p);
    if (z > top_) {
      top_ = z;
      chosen_.take(p);
    } else if (z == top_ && p < chosen_.survivor()) {
      chosen_.take(p);
    }
  }
  std::int32_t clusters() const noexcept { return chosen_.clusters(); }

 private:
  const DoubleArray& Z_;
  Chosen chosen_;
  double top_ = 0.0;
};

// The box is of all three axes, and the lowest number survives.
class LowestNumberSurvives {
 public:
  static constexpr std::size_t axes = 3;

  LowestNumberSurvives(const Cloud&, LongArray& Elegidos) noexcept : chosen_(Elegidos) {}

  void opened(std::int32_t p) { chosen_.open(p); }
  void joined(std::int32_t p) {
    if (p < chosen_.survivor()) chosen_.take(p);
  }
  std::int32_t clusters() const noexcept { return chosen_.clusters(); }

 private:
  Chosen chosen_;
};

// Clusters of which only the survivors are asked for.
template <class Rule>
struct Survivors : Rule {
  static constexpr bool reads_Z = true;
  using Rule::Rule;

  void first(std::int32_t p) { Rule::opened(p); }
  void placed(std::int32_t, std::int32_t) const noexcept {}
};

// Clusters that also know every point's cluster.
template <class Rule>
class Membership : public Rule {
 public:
  static constexpr bool reads_Z = true;

  Membership(const Cloud& cloud, LongArray& Elegidos, LongArray& Cluster) noexcept
      : Rule(cloud, Elegidos), Cluster_(Cluster) {}

  void first(std::int32_t p) {
    Rule::opened(p);
    placed(1, p);
  }
  void placed(std::int32_t, std::int32_t p) { Cluster_(p) = Rule::clusters(); }

 private:
  LongArray& Cluster_;
};

// The survivors by ascending number in Nuevos, and the new number of each in
// NuevoNumero. Every cluster has one survivor, so they need no sorting: they are
// marked and met in order.
void renumber(const LongArray& Elegidos, std::int32_t clusters, LongArray& Nuevos,
              LongArray& NuevoNumero) {
  for (const std::int32_t c : counted(1, clusters)) NuevoNumero(Elegidos(c)) = 1;
  std::int32_t taken = 0;
  for (const std::int32_t p : counted(1, NuevoNumero.upper())) {
    if (NuevoNumero(p) == 0) continue;
    ++taken;
    Nuevos(taken) = p;
    NuevoNumero(p) = taken;
  }
}

template <class Rule>
void renumbered(std::u16string_view title, const std::int32_t& nPtos, const DoubleArray& X,
                const DoubleArray& Y, const DoubleArray& Z, std::int32_t& nNuevos,
                LongArray& IndiceNuevos, LongArray& IndiceGeneral, BoolArray& Repetido,
                const double& Precision, const ObjectRef& Progreso1) {
  trapped(source, title, [&] {
    LongArray Orden(0, nPtos);
    LongArray Cluster(0, nPtos);
    LongArray Elegidos(0, nPtos);
    LongArray Nuevos(0, nPtos);
    LongArray NuevoNumero(0, nPtos);
    IndiceNuevos.size(0, nPtos);
    IndiceGeneral.size(0, nPtos);
    Repetido.size(0, nPtos);  // and nothing more: no entry is ever set
    Ordena_Double_Index_Array(X, Orden, 1, nPtos);
    const double tol = repeated::tolerance(Precision);
    const Progress progress(nPtos, Progreso1);
    const Cloud cloud{X, Y, Z, Orden};
    Membership<Rule> clusters(cloud, Elegidos, Cluster);
    repeated::sweep(nPtos, cloud, tol, progress, clusters);

    renumber(Elegidos, clusters.clusters(), Nuevos, NuevoNumero);
    for (const std::int32_t p : counted(1, nPtos)) {
      IndiceGeneral(p) = NuevoNumero(Elegidos(Cluster(p)));
    }
    IndiceNuevos = Nuevos;
    nNuevos = clusters.clusters();
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
    LongArray Orden(0, nPtos);
    LongArray Elegidos(0, nPtos);
    Indice.size(0, nPtos);
    Ordena_Double_Index_Array(X, Orden, 1, nPtos);
    const double tol = repeated::tolerance(Precision);
    const Progress progress(nPtos, Progreso1);
    const Cloud cloud{X, Y, Z, Orden};
    Survivors<HighestSurvives> clusters(cloud, Elegidos);
    repeated::sweep(nPtos, cloud, tol, progress, clusters);
    Indice = Elegidos;
    nNuevos = clusters.clusters();
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
