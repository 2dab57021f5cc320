// run_failure.h: the one failure object, and the list of its numbers.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "orv2_geo/frame/export.h"

// Every failure that can leave the library: name, number, description (UTF-8).
// The boundaries and the documentation take their lists from here.
#define ORV2_FAILURES(F)                                                  \
  F(return_without_call, 3, "Return sin GoSub")                           \
  F(invalid_call, 5, "Argumento o llamada a procedimiento no válidos")    \
  F(overflow, 6, "Desbordamiento")                                        \
  F(out_of_memory, 7, "Memoria insuficiente")                             \
  F(subscript_out_of_range, 9, "El subíndice está fuera del intervalo")   \
  F(array_locked, 10, "La matriz es fija o está bloqueada temporalmente") \
  F(division_by_zero, 11, "División por cero")                            \
  F(type_mismatch, 13, "No coinciden los tipos")                          \
  F(object_not_set, 91, "Variable de objeto no establecida")              \
  F(cannot_create_object, 429, "No se puede crear el objeto")             \
  F(no_such_member, 438, "El objeto no admite esta propiedad o método")   \
  F(host_object_failed, 440, "Error de automatización")                   \
  F(argument_not_optional, 449, "Argumento no opcional")                  \
  F(wrong_argument_count, 450, "Número de argumentos o asignación de propiedad incorrectos")

namespace orv2_geo {

/// The failure numbers by name.
namespace failure {
#define ORV2_FAILURE_NUMBER(name, number, text) inline constexpr std::int32_t name = number;
ORV2_FAILURES(ORV2_FAILURE_NUMBER)
#undef ORV2_FAILURE_NUMBER

/// A number that the library itself raises, with its description in UTF-8.
struct Listed {
  std::int32_t number;
  const char* description;
};

/// All of them, ascending.
ORV2_PUBLIC std::span<const Listed> catalogue() noexcept;

/// The catalogue's description of a number; empty for a number that is not of the
/// catalogue.
ORV2_PUBLIC std::string_view description_of(std::int32_t number) noexcept;
}  // namespace failure

/// The one thing that a public method throws. A failure of the library itself
/// needs no memory: its words are those of the catalogue. A host's own failure
/// keeps the host's number and words.
class ORV2_PUBLIC RunFailure : public std::exception {
 public:
  /// A failure of the catalogue, not yet signed by a class.
  explicit RunFailure(std::int32_t number) noexcept : number_(number) {}

  /// A failure of the catalogue, signed. `source` must live as long as the
  /// program.
  static RunFailure signed_by(std::int32_t number, const char* source) noexcept;

  /// A failure with words of its own, UTF-8. Without memory for the words the
  /// failure keeps its number and the catalogue's description.
  RunFailure(std::int32_t number, std::string_view description, std::string_view source) noexcept;

  std::int32_t number() const noexcept { return number_; }

  /// What went wrong, in words, UTF-8.
  std::string_view description() const noexcept;

  /// The component that raised it, such as "Orv2_Geo.cgeo_Algorismos".
  std::string_view source() const noexcept;

  /// The description, for those who catch std::exception.
  const char* what() const noexcept override;

  /// Signs the failure with the class it left, unless it is signed already:
  /// the innermost source stays. `source` must live as long as the program; null
  /// signs nothing.
  void sign(const char* source) noexcept;

 private:
  struct Words {
    std::string description;
    std::string source;
  };

  std::int32_t number_;
  const char* signed_by_ = nullptr;
  std::shared_ptr<const Words> words_;
};

/// Throws the failure `number` of the catalogue.
[[noreturn]] ORV2_PUBLIC void raise(std::int32_t number);

/// Call inside a catch (...): what is in flight as a RunFailure, whatever it is. A
/// refused allocation becomes 7 and any other foreign exception 440 with its own
/// text. Everything that leaves the library passes through here.
ORV2_PUBLIC RunFailure failure_in_flight() noexcept;

/// Call inside a catch (...): throws on what is in flight, as a RunFailure signed
/// with `source`.
[[noreturn]] ORV2_PUBLIC void leave_signed(const char* source);

/// Runs `work`; whatever fails in it fails as a RunFailure.
template <class Work>
auto with_run_failures(Work&& work) -> decltype(work()) {
  try {
    return work();
  } catch (...) {
    leave_signed(nullptr);
  }
}

}  // namespace orv2_geo
