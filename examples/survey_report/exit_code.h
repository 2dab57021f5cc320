// exit_code.h: the status that the program ends with.
#pragma once

#include <array>

#include "survey_report/word.h"

namespace survey_report {

/// Why the program ended. The numbers are final: scripts look at them.
enum class ExitCode {
  done = 0,
  failed = 1,
  wrong_options = 2,
  no_such_file = 3,
  is_folder = 4,
  unreadable = 5,
  no_points = 6,
  bad_number = 7,
  few_columns = 8,
  many_columns = 9,
  bad_line = 10,
  mixed = 11,
  binary = 12,
  zipped = 13,
  bad_characters = 14,
  not_written = 15,
  no_memory = 16,
};

/// A status as the help explains it.
struct ExitMeaning {
  ExitCode code;
  Word meaning;
};

/// Every status but that of success, in the order of the numbers.
inline constexpr std::array<ExitMeaning, 16> exit_meanings = {{
    {ExitCode::failed,
     {"the survey cannot be computed or drawn", "no se puede calcular o dibujar el levantamiento"}},
    {ExitCode::wrong_options,
     {"the options cannot be followed", "las opciones no se pueden seguir"}},
    {ExitCode::no_such_file, {"FILE does not exist", "FICHERO no existe"}},
    {ExitCode::is_folder, {"FILE is a folder", "FICHERO es una carpeta"}},
    {ExitCode::unreadable, {"FILE cannot be read", "FICHERO no se puede leer"}},
    {ExitCode::no_points, {"FILE holds no points", "FICHERO no contiene puntos"}},
    {ExitCode::bad_number, {"a coordinate is not a number", "una coordenada no es un número"}},
    {ExitCode::few_columns, {"a line has too few columns", "una línea tiene pocas columnas"}},
    {ExitCode::many_columns,
     {"a line has too many columns", "una línea tiene demasiadas columnas"}},
    {ExitCode::bad_line,
     {"a line has no number, or wrong quotes", "una línea sin número, o con comillas mal puestas"}},
    {ExitCode::mixed,
     {"separators, decimal signs, line ends or alphabets are mixed",
      "hay mezcla de separadores, signos decimales, finales de\nlínea o alfabetos"}},
    {ExitCode::binary, {"FILE is no text", "FICHERO no es de texto"}},
    {ExitCode::zipped, {"FILE is compressed", "FICHERO está comprimido"}},
    {ExitCode::bad_characters,
     {"FILE holds what is no character", "FICHERO contiene lo que no es un carácter"}},
    {ExitCode::not_written, {"a file cannot be written", "un fichero no se puede escribir"}},
    {ExitCode::no_memory, {"there is not enough memory", "no hay memoria suficiente"}},
}};

}  // namespace survey_report
