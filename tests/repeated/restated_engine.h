// restated_engine.h: the routines of the engine once more, step by step and with
// every array in its place, over arrays of the test's own. What a step reads out
// of bounds or overflows ends a routine with the failure's number, and what had
// been written is there to be compared.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "orv2_geo/frame/geo_arrays.h"
#include "orv2_geo/sorting/mOrdena.h"
#include "tests/support/arrays.h"

namespace orv2_geo::restated {

struct Stopped {
  int number;
};

/// A checked array of the test's own.
template <class T>
struct Row {
  bool allocated = false;
  int lower = 0;
  std::vector<T> elements;

  T& operator()(int index) {
    if (!allocated || index < lower || index - lower >= static_cast<int>(elements.size())) {
      throw Stopped{9};
    }
    return elements[static_cast<std::size_t>(index - lower)];
  }
  void size(int upper) {
    if (upper < 0) throw Stopped{9};
    allocated = true, lower = 0;
    elements.assign(static_cast<std::size_t>(upper) + 1, T{});
  }
  void size_keeping(int upper) {
    if (allocated && lower != 0) throw Stopped{9};
    allocated = true;
    elements.resize(static_cast<std::size_t>(upper) + 1);
  }
  friend bool operator==(const Row& a, const Row& b) {
    return a.allocated == b.allocated && a.lower == b.lower &&
           std::equal(
               a.elements.begin(), a.elements.end(), b.elements.begin(), b.elements.end(),
               [](T one, T other) { return one == other || (one != one && other != other); });
  }
};
using Doubles = Row<double>;
using Longs = Row<std::int32_t>;
using Flags = Row<bool>;

template <class T>
Row<T> row_of(const GeoArray<T>& array) {
  if (!array.allocated()) return {};
  return {true, array.lower(), testing_support::elements(array)};
}
inline Flags row_of(const GeoArray<Bool>& array) {
  if (!array.allocated()) return {};
  return {true, array.lower(), testing_support::elements(array)};
}
inline DoubleArray array_of(const Doubles& row) {
  return row.allocated ? testing_support::doubles(row.lower, row.elements) : DoubleArray();
}

/// The order is the sort's own; only what follows from it is restated.
inline Longs order_in_X(const Doubles& X, int nPtos) {
  LongArray order;
  try {
    mOrdena::Ordena_Double_Index_Array(array_of(X), order, 1, nPtos);
  } catch (const RunFailure& failure) {
    throw Stopped{failure.number()};
  }
  return row_of(order);
}

/// A bound may be what the caller's own infinity or NaN makes of it, but must not
/// overflow or be invalid by itself.
inline double bound(double a, double offset) {
  const double sum = a + offset;
  const bool overflowed = std::isinf(sum) && !std::isinf(a) && !std::isinf(offset);
  const bool invalid = std::isnan(sum) && !std::isnan(a) && !std::isnan(offset);
  if (overflowed || invalid) throw Stopped{6};
  return sum;
}
inline bool less(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) throw Stopped{6};
  return a < b;
}

inline bool near(double a, double tol, double at) {
  const double low = bound(a, -tol);
  const double high = bound(a, tol);
  const bool above = less(low, at);
  const bool below = less(at, high);
  return above && below;
}

/// Every bound first; then axis by axis point p is read and compared.
inline bool in_box(const std::vector<double>& anchor, double tol, const std::vector<Doubles*>& axes,
                   int p) {
  for (const double a : anchor) bound(a, -tol), bound(a, tol);
  bool inside = true;
  for (std::size_t axis = 0; axis < anchor.size(); ++axis) {
    inside = near(anchor[axis], tol, (*axes[axis])(p)) && inside;
  }
  return inside;
}

inline double tolerance(double Precision) { return Precision == 0.0 ? 0.0002 : Precision; }

/// What a host does to its coordinates while its indicator is set up.
struct Change {
  int axis = -1;  // 0, 1, 2
  int point = 0;
  double value = 0.0;
};

/// `fails_at`: the write of a property that fails with `failure`; 0 for none.
struct Bar {
  int fails_at = 0;
  int failure = 438;
  Change change;
  int writes = 0;
  void write() {
    if (++writes == fails_at) throw Stopped{failure};
  }
  void start(int nPtos, Doubles& X, Doubles& Y, Doubles& Z) {
    if (nPtos == 0) throw Stopped{11};
    write(), write(), write();
    Doubles* const axes[] = {&X, &Y, &Z};
    if (change.axis >= 0) (*axes[change.axis])(change.point) = change.value;
  }
};

struct Index {
  int number = 0;  // of the failure trapped
  std::int32_t nNuevos = -77;
  Longs Indice;
};

inline Index ordered_in_X(int nPtos, Doubles X, Doubles Y, Doubles Z, double Precision, Bar bar) {
  Index out;
  try {
    Longs Orden, Elegidos;
    Orden.size(nPtos), Elegidos.size(nPtos), out.Indice.size(nPtos);
    Orden = order_in_X(X, nPtos);
    const double tol = tolerance(Precision);
    bar.start(nPtos, X, Y, Z);
    int c = 1;
    Elegidos(1) = Orden(1);
    int survivor = Orden(1);
    double ax = X(survivor), ay = Y(survivor), az = Z(survivor);
    for (int i = 2; i <= nPtos; ++i) {
      const int p = Orden(i);
      if (!in_box({ax, ay}, tol, {&X, &Y}, p)) {
        c = c + 1;
        Elegidos(c) = p;
        ax = X(p), ay = Y(p), az = Z(p);
        survivor = p;
      } else if (less(az, Z(p))) {
        az = Z(p);
        Elegidos(c) = p;
        survivor = p;
      } else if (Z(p) == az && p < survivor) {
        Elegidos(c) = p;
        survivor = p;
      }
    }
    out.nNuevos = c;
    out.Indice = Elegidos;
  } catch (const Stopped& stopped) {
    out.number = stopped.number;
  }
  return out;
}

struct Renumbered {
  int number = 0;
  std::int32_t nNuevos = -77;
  Longs IndiceNuevos, IndiceGeneral;
  Flags Repetido;
};

inline Renumbered renumbered(bool all_axes, int nPtos, Doubles X, Doubles Y, Doubles Z,
                             double Precision, Bar bar) {
  Renumbered out;
  try {
    Longs Orden, Cluster, Elegidos, Representante, Lista, Nuevos, NuevoNumero;
    for (Longs* one : {&Orden, &Cluster, &Elegidos, &Representante, &Lista, &Nuevos, &NuevoNumero,
                       &out.IndiceNuevos, &out.IndiceGeneral}) {
      one->size(nPtos);
    }
    out.Repetido.size(nPtos);
    Orden = order_in_X(X, nPtos);
    const double tol = tolerance(Precision);
    bar.start(nPtos, X, Y, Z);
    int c = 1;
    int survivor = Orden(1);
    Elegidos(1) = survivor;
    Cluster(survivor) = 1;
    double ax = X(survivor), ay = Y(survivor), az = Z(survivor);
    for (int i = 2; i <= nPtos; ++i) {
      const int p = Orden(i);
      const bool inside = all_axes ? in_box({ax, ay, az}, tol, {&X, &Y, &Z}, p)
                                   : in_box({ax, ay}, tol, {&X, &Y}, p);
      if (!inside) {
        c = c + 1;
        Elegidos(c) = p;
        ax = X(p), ay = Y(p), az = Z(p);
        survivor = p;
      } else if (all_axes) {
        if (p < survivor) Elegidos(c) = p, survivor = p;
      } else if (less(az, Z(p))) {
        az = Z(p);
        Elegidos(c) = p, survivor = p;
      } else if (Z(p) == az && p < survivor) {
        Elegidos(c) = p, survivor = p;
      }
      Cluster(p) = c;
    }
    for (int i = 1; i <= nPtos; ++i) {
      Lista(i) = Elegidos(Cluster(Orden(i)));
      Representante(i) = Elegidos(Cluster(i));
    }
    std::sort(Lista.elements.begin() + 1, Lista.elements.end());
    int m = 0;
    for (int i = 1; i <= nPtos; ++i) {
      if (m == 0 || Lista(i) > Nuevos(m)) Nuevos(++m) = Lista(i);
    }
    for (int k = 1; k <= m; ++k) NuevoNumero(Nuevos(k)) = k;
    for (int p = 1; p <= nPtos; ++p) out.IndiceGeneral(p) = NuevoNumero(Representante(p));
    out.nNuevos = m;
    out.IndiceNuevos = Nuevos;
    bar.write();
  } catch (const Stopped& stopped) {
    out.number = stopped.number;
  }
  return out;
}

struct Flagged {
  int number = 0;
  std::int32_t nNuevos = -77;
  Longs Secuencia, Indice;
  Flags Repetido;
};

inline void flag(Flagged& out, int nPtos, Doubles X, Doubles Y, Doubles Z, double Precision,
                 Bar bar) {
  try {
    Longs Orden;
    Orden.size(nPtos), out.Secuencia.size(nPtos), out.Indice.size(nPtos), out.Repetido.size(nPtos);
    Orden = order_in_X(X, nPtos);
    const double tol = tolerance(Precision);
    bar.start(nPtos, X, Y, Z);
    out.Secuencia(1) = Orden(1);
    out.Indice(Orden(1)) = 1;
    int c = 1;
    int survivor = Orden(1);
    double ax = X(survivor), ay = Y(survivor);
    const auto set = [&](int p, bool repeated) {
      out.Repetido.elements[static_cast<std::size_t>(p)] = repeated;
    };
    for (int i = 2; i <= nPtos; ++i) {
      const int p = Orden(i);
      const bool inside = in_box({ax, ay}, tol, {&X, &Y}, p);
      if (inside && p < survivor) {
        set(p, false);
        set(survivor, true);
        out.Secuencia(p) = p;
        survivor = p;
      } else if (inside) {
        set(p, true);
      } else {
        set(p, false);
        c = c + 1;
        ax = X(p), ay = Y(p);
        survivor = p;
      }
      out.Indice(p) = c;
      out.Secuencia(i) = p;
    }
    int n = 0;
    for (int p = 1; p <= nPtos; ++p) {
      if (out.Repetido.elements[static_cast<std::size_t>(p)]) {
        out.Indice(p) = out.Indice(out.Secuencia(p));
      } else {
        n = n + 1;
        out.Indice(p) = n;
      }
    }
    out.nNuevos = n;
    bar.write();
  } catch (const Stopped& stopped) {
    out.number = stopped.number;
  }
}

struct Removed {
  int number = 0;  // of the failure trapped
  int thrown = 0;  // of the failure that reached the caller
  std::int32_t nPtos = 0;
  Doubles X, Y, Z;
  Longs Indice;
};

inline Removed removed(int nPtos, const Doubles& X, const Doubles& Y, const Doubles& Z,
                       double Precision, Bar bar) {
  Removed out{0, 0, nPtos, X, Y, Z, {}};
  try {
    if (nPtos < 0) throw Stopped{9};
    Doubles copy_X = X, copy_Y = Y, copy_Z = Z;
    Flagged helper;
    helper.nNuevos = 0;
    helper.Secuencia.size(nPtos), helper.Repetido.size(nPtos);
    flag(helper, nPtos, copy_X, copy_Y, copy_Z, Precision, bar);
    out.number = helper.number;
    out.Indice = helper.Indice;
    int j = 0;
    for (int p = 1; p <= nPtos; ++p) {
      if (helper.Repetido.elements[static_cast<std::size_t>(p)]) continue;
      j = j + 1;
      out.Indice(j) = helper.Secuencia(p);
      out.X(j) = copy_X(out.Indice(j));
      out.Y(j) = copy_Y(out.Indice(j));
      out.Z(j) = copy_Z(out.Indice(j));
    }
    out.nPtos = helper.nNuevos;
    out.X.size_keeping(out.nPtos);
    out.Y.size_keeping(out.nPtos);
    out.Z.size_keeping(out.nPtos);
  } catch (const Stopped& stopped) {
    out.thrown = stopped.number;
  }
  return out;
}

inline Removed removed_neighbours(int nPtos, const Doubles& X, const Doubles& Y, const Doubles& Z) {
  Removed out{0, 0, nPtos, X, Y, Z, {}};
  try {
    Doubles from_X = X, from_Y = Y, from_Z = Z;
    Longs Orden;
    Orden.size(nPtos);
    Orden = order_in_X(X, nPtos);
    std::vector<int> kept = {Orden(1)};
    bool skip = true;
    for (int i = 2; i <= nPtos; ++i) {
      const int a = Orden(i - 1), b = Orden(i);
      if (!in_box({from_X(a), from_Y(a)}, 0.0002, {&from_X, &from_Y}, b)) {
        kept.push_back(b);
        skip = false;
      } else if (!skip) {
        kept.push_back(b);
        skip = true;
      }
    }
    out.nPtos = static_cast<std::int32_t>(kept.size());
    std::vector<double> x, y, z;
    for (const int k : kept) {
      x.push_back(from_X(k)), y.push_back(from_Y(k)), z.push_back(from_Z(k));
    }
    for (int k = 1; k <= out.nPtos; ++k) {
      const auto at = static_cast<std::size_t>(k - 1);
      out.X(k) = x[at], out.Y(k) = y[at], out.Z(k) = z[at];
    }
  } catch (const Stopped& stopped) {
    out.number = stopped.number;
  }
  return out;
}

}  // namespace orv2_geo::restated
