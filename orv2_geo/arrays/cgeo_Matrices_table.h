// cgeo_Matrices_table.h: the members of cgeo_Matrices in interface order, a line each.
#pragma once

#include <array>

#include "orv2_geo/arrays/cgeo_Matrices.h"

namespace orv2_geo {

struct cgeo_Matrices_table {
  using Class = cgeo_Matrices;

  /// Each member as the reader `Line` of the table makes it.
  template <class Line>
  static constexpr auto lines() {
    using C = Class;
    return std::array{
        Line::template method<&C::MaxMin_1Matriz, "X", "max", "Min">("MaxMin_1Matriz"),
        Line::template method<&C::MaxMin_2Matriz, "X", "Y", "MaxX", "MinX", "MaxY", "MinY">(
            "MaxMin_2Matriz"),
        Line::template method<&C::MaxMin_4_matrices_XY_XY, "X", "Y", "X1", "Y1", "MaxX", "MinX",
                              "MaxY", "MinY">("MaxMin_4_matrices_XY_XY"),
        Line::template method<&C::MaxMin_3Matriz1, "X", "Y", "Z", "MaxX", "MinX", "MaxY", "MinY",
                              "MaxZ", "MinZ", optional("Ver")>("MaxMin_3Matriz1"),
        Line::template method<&C::MaxMin_3Matriz, "X", "Y", "Z", "MaxX", "MinX", "MaxY", "MinY",
                              "MaxZ", "MinZ", optional("Ver")>("MaxMin_3Matriz"),
        Line::template method<&C::Sumar_a_1Matriz_otra, "MatrizOrigen", "Matriz_a_Sumar">(
            "Sumar_a_1Matriz_otra"),
        Line::template method<&C::Restar_a_1Matriz_otra, "MatrizOrigen", "Matriz_a_Sumar">(
            "Restar_a_1Matriz_otra"),
        Line::template method<&C::Ordena_en_X_3_Matrices, "nPtos", "X", "Y", "Z">(
            "Ordena_en_X_3_Matrices"),
        Line::template method<&C::Ordena_en_X_el_Indice_1Matriz, "nPtos", "X",
                              resized("ordenIndices")>("Ordena_en_X_el_Indice_1Matriz"),
        Line::template method<&C::Ordena_en_X_el_Indice_1Matriz1, "nPtos", "X", "ordenIndices",
                              "Progreso1">("Ordena_en_X_el_Indice_1Matriz1"),
        Line::template method<&C::Ordena_en_X_el_Indice_1Matriz2, "nPtos", "X",
                              resized("ordenIndices"), "Progreso1">(
            "Ordena_en_X_el_Indice_1Matriz2"),
        Line::template method<&C::Quita_Puntos_Repetidos, "nPtos", "X", "Y", "Z",
                              optional("Precision"), optional("Aviso")>("Quita_Puntos_Repetidos"),
        Line::template method<&C::Quita_Puntos_Repetidos_XYZ_con_indice1, "nPtos1", "X1", "Y1",
                              "Z1", resized("Indice"), "Progreso1", optional("Precision"),
                              optional("Aviso")>("Quita_Puntos_Repetidos_XYZ_con_indice1"),
        Line::template method<&C::Quita_Puntos_Repetidos_XYZ_con_indice, "nPtos", "X", "Y", "Z",
                              "Indice", optional("Precision"), optional("Aviso")>(
            "Quita_Puntos_Repetidos_XYZ_con_indice"),
        Line::template method<&C::Quita_Pts_Repetidos_3D, "nPtos", "X", "Y", "Z", "codigo",
                              "Nombre", "CapaP", "Indice", "ProgressBar1", "Aviso",
                              optional("Precision")>("Quita_Pts_Repetidos_3D"),
        Line::template method<&C::Quita_Pts_Repetidos, "nPtos", resized("X"), resized("Y"),
                              resized("Z"), resized("codigo"), "Nombre", resized("CapaP"),
                              resized("NewInd"), "Aviso", optional("Precision")>(
            "Quita_Pts_Repetidos"),
        Line::template method<&C::Quita_Puntos_fuera_interv_de_Cotas_con_indice, "nPtos",
                              resized("X"), resized("Y"), resized("Z"), resized("Indice"), "MaxZ",
                              "MinZ">("Quita_Puntos_fuera_interv_de_Cotas_con_indice"),
    };
  }
};

}  // namespace orv2_geo
