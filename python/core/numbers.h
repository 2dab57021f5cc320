// numbers.h: Python's plain values as the library's types, and back.
#pragma once

#include <cstdint>

#include "library.h"
#include "owned.h"

namespace orv2_geo::python {

/// The memory of one number, flag or handle.
union Cell {
  double f64;
  float f32;
  std::int32_t i32;
  std::int16_t i16;  // a flag too
  orv2_handle handle;
};

constexpr bool is_scalar(std::uint16_t type) { return type >= ORV2_I16 && type <= ORV2_BOOL; }
constexpr bool is_array(std::uint16_t type) {
  return type >= ORV2_DOUBLE_ARRAY && type <= ORV2_STRING_ARRAY;
}
/// A tag without the mark of a variable.
constexpr auto type_in(std::uint16_t tag) { return static_cast<std::uint16_t>(tag & ~ORV2_BYREF); }

/// The bool, int, float or str that a value is worth; a scalar of an array library is worth
/// its item. RunFailure 13 for others. Empty, with an exception, on failure.
Owned plain(PyObject* value);

/// Whether a value is a scalar of an array library: of no dimensions, though it may have a
/// buffer.
bool is_array_scalar(PyObject* value);

/// Stores the number or flag that a value is worth, in a scalar type. Whole numbers are
/// rounded half to even, a truth counts -1. RunFailure 6 when it does not fit, 13 when it is
/// none; false, with the exception. The cell is then as it was.
bool stored(PyObject* value, std::uint16_t type, Cell& cell);

/// The same where that needs no more than a look at the value: no rounding, no failure. False,
/// without an exception, for all others.
inline bool stored_at_once(PyObject* value, std::uint16_t type, Cell& cell);

/// What a scalar reads as. A flag is True and False for -1 and 0, a number for other bits.
PyObject* shown(std::uint16_t type, const void* memory);

/// A str of its own. RunFailure 13 for anything that is worth none.
Owned text_in(PyObject* value);

/// The nearest whole number, the even one of two as near; not a number stays so.
double rounded_half_to_even(double value);

/// A handle, an address or the like. False, with an exception, for what is none.
bool number_in(PyObject* value, std::uint64_t& number);

/// A whole number of 32 bits, as for stored.
bool stored_i32(PyObject* value, std::int32_t& number);

// ---- Texts as counted 16-bit units; unpaired surrogates survive both ways --------------

/// The units of a str, alive as long as the bytes.
class Units {
 public:
  explicit Units(PyObject* text);
  explicit operator bool() const noexcept { return static_cast<bool>(bytes_); }
  const std::uint16_t* data() const noexcept { return data_; }
  std::size_t count() const noexcept { return count_; }

 private:
  Owned bytes_;
  const std::uint16_t* data_ = nullptr;
  std::size_t count_ = 0;
};

/// The str of these units.
PyObject* text_of_units(const std::uint16_t* units, std::size_t count);

// ---- Inline -------------------------------------------------------------------------

inline bool stored_at_once(PyObject* value, std::uint16_t type, Cell& cell) {
  PyTypeObject* const of = Py_TYPE(value);
  if (of == &PyFloat_Type) {
    if (type != ORV2_F64) return false;
    cell.f64 = PyFloat_AsDouble(value);
    return true;
  }
  if (of == &PyLong_Type) {
    int overflow = 0;
    const long number = PyLong_AsLongAndOverflow(value, &overflow);
    if (overflow != 0) return false;
    if (type == ORV2_F64) {
      cell.f64 = static_cast<double>(number);
      return true;
    }
    if (type == ORV2_I32 && number == static_cast<std::int32_t>(number)) {
      cell.i32 = static_cast<std::int32_t>(number);
      return true;
    }
  }
  if (of == &PyBool_Type && type == ORV2_BOOL) {
    cell.i16 = value == Py_True ? -1 : 0;
    return true;
  }
  return false;
}

}  // namespace orv2_geo::python
