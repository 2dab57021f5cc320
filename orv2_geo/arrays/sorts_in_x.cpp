// Sorts of points in X.
#include "orv2_geo/arrays/cgeo_Matrices.h"
#include "orv2_geo/frame/counted.h"
#include "orv2_geo/frame/exchange_sort.h"
#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/sorting/mOrdena.h"

namespace orv2_geo {

namespace {
constexpr std::u16string_view index_title = u"Ordena en X el Indice una Matriz1 - Error nº ";
}

void cgeo_Matrices::Ordena_en_X_3_Matrices(const std::int32_t& nPtos, DoubleArray& X,
                                           DoubleArray& Y, DoubleArray& Z) const try {
  exchange_sort(nPtos, {&X, &Y, &Z});
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Matrices::Ordena_en_X_el_Indice_1Matriz(const std::int32_t& nPtos, const DoubleArray& X,
                                                  LongArray& ordenIndices) const try {
  mOrdena::Ordena_Double_Index_Array(X, ordenIndices, 1, nPtos);
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Matrices::Ordena_en_X_el_Indice_1Matriz1(const std::int32_t& nPtos, const DoubleArray&,
                                                   LongArray& ordenIndices, const ObjectRef&) const
    try {
  trapped(registered_name, index_title, [&] {
    for (const std::int32_t i : counted(1, nPtos)) ordenIndices(i) = i;
  });
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Matrices::Ordena_en_X_el_Indice_1Matriz2(const std::int32_t& nPtos, const DoubleArray& X,
                                                   LongArray& ordenIndices, const ObjectRef&) const
    try {
  // The title is that of Matriz1 here too.
  trapped(registered_name, index_title,
          [&] { mOrdena::Ordena_Double_Index_Array(X, ordenIndices, 1, nPtos); });
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
