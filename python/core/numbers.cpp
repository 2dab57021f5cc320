#include "numbers.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "failures.h"
#include "orv2_geo/frame/floating_point_units.h"

namespace orv2_geo::python {

namespace {

Owned mismatch() {
  raise(number::type_mismatch);
  return {};
}

// A float of whatever has one. RunFailure 13 for what has none, 6 for one too large.
Owned as_float(PyObject* value) {
  Owned made(PyNumber_Float(value));
  if (made) return made;
  if (PyErr_ExceptionMatches(PyExc_OverflowError) != 0) {
    PyErr_Clear();
    raise(number::overflow);
  } else if (PyErr_ExceptionMatches(PyExc_TypeError) != 0) {
    PyErr_Clear();
    raise(number::type_mismatch);
  }
  return {};
}

bool has(PyObject* object, const char* name) {
  const Owned found(PyObject_GetAttrString(reinterpret_cast<PyObject*>(Py_TYPE(object)), name));
  if (!found) PyErr_Clear();
  return static_cast<bool>(found);
}

Owned plain_number(PyObject* value) {
  if (PyBool_Check(value)) return Owned::to(value);
  if (PyFloat_Check(value)) return Owned(PyFloat_FromDouble(PyFloat_AsDouble(value)));
  if (PyIndex_Check(value)) {
    Owned whole(PyNumber_Index(value));
    if (whole || PyErr_ExceptionMatches(PyExc_TypeError) == 0) return whole;
    PyErr_Clear();
  }
  return has(value, "__float__") ? as_float(value) : mismatch();
}

// The item of a scalar of an array library: no dimensions, one item. Empty without an
// exception for all others.
Owned item_of(PyObject* value) {
  if (!is_array_scalar(value)) return {};
  const Owned item(PyObject_GetAttrString(value, "item"));
  if (!item) return PyErr_Clear(), Owned();
  return Owned(PyObject_CallObject(item.get(), nullptr));
}

// An int or a float; a truth counts -1. RunFailure 13 for a text.
Owned plain_count(PyObject* value) {
  Owned worth = plain(value);
  if (!worth) return worth;
  if (PyUnicode_Check(worth.get())) return mismatch();
  if (!PyBool_Check(worth.get())) return worth;
  return Owned(PyLong_FromLong(worth.get() == Py_True ? -1 : 0));
}

bool stored_f64(PyObject* value, double& number) {
  const Owned worth = plain_count(value);
  const Owned wide = worth ? as_float(worth.get()) : Owned();
  if (wide) number = PyFloat_AsDouble(wide.get());
  return static_cast<bool>(wide);
}

bool stored_f32(PyObject* value, float& number) {
  double wide = 0.0;
  if (!stored_f64(value, wide)) return false;
  const floating_point::UsualMeanwhile settings;
  const auto narrow = static_cast<float>(wide);
  if (std::isinf(narrow) && !std::isinf(wide)) return refused(number::overflow);
  number = narrow;
  return true;
}

template <class Whole>
bool stored_whole(PyObject* value, Whole& number) {
  constexpr auto least = std::numeric_limits<Whole>::min();
  constexpr auto most = std::numeric_limits<Whole>::max();
  const Owned worth = plain_count(value);
  if (!worth) return false;
  if (PyFloat_Check(worth.get())) {
    const floating_point::UsualMeanwhile settings;
    const double whole = rounded_half_to_even(PyFloat_AsDouble(worth.get()));
    if (!(whole >= least && whole <= most)) return refused(number::overflow);
    number = static_cast<Whole>(whole);
    return true;
  }
  int overflow = 0;
  const long whole = PyLong_AsLongAndOverflow(worth.get(), &overflow);
  if (overflow != 0 || whole < least || whole > most) return refused(number::overflow);
  number = static_cast<Whole>(whole);
  return true;
}

// The 16 bits of a flag: an int gives its own, signed or not; anything else -1 or 0.
bool stored_flag(PyObject* value, std::int16_t& bits) {
  const Owned worth = plain(value);
  if (!worth) return false;
  if (PyFloat_Check(worth.get())) {
    bits = PyFloat_AsDouble(worth.get()) != 0.0 ? -1 : 0;
    return true;
  }
  if (PyLong_Check(worth.get()) && !PyBool_Check(worth.get())) {
    int overflow = 0;
    const long whole = PyLong_AsLongAndOverflow(worth.get(), &overflow);
    if (overflow == 0 && whole >= 0x8000 && whole <= 0xFFFF) {
      bits = static_cast<std::int16_t>(whole - 0x10000);
      return true;
    }
  }
  return stored_whole(worth.get(), bits);
}

constexpr const char* encoding =
    __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? "utf-16-le" : "utf-16-be";

}  // namespace

bool is_array_scalar(PyObject* value) {
  const Owned shape(PyObject_GetAttrString(value, "shape"));
  if (!shape) return PyErr_Clear(), false;
  return PyTuple_Check(shape.get()) != 0 && PyTuple_Size(shape.get()) == 0;
}

Owned plain(PyObject* value) {
  PyTypeObject* const of = Py_TYPE(value);
  if (of == &PyFloat_Type || of == &PyLong_Type || of == &PyBool_Type || of == &PyUnicode_Type) {
    return Owned::to(value);
  }
  if (PyUnicode_Check(value)) return Owned(PyUnicode_FromObject(value));
  const Owned item = item_of(value);
  if (PyErr_Occurred() != nullptr) return {};
  return plain_number(item ? item.get() : value);
}

bool stored(PyObject* value, std::uint16_t type, Cell& cell) {
  if (stored_at_once(value, type, cell)) return true;
  switch (type) {
    case ORV2_F64: return stored_f64(value, cell.f64);
    case ORV2_F32: return stored_f32(value, cell.f32);
    case ORV2_I32: return stored_whole(value, cell.i32);
    case ORV2_I16: return stored_whole(value, cell.i16);
    case ORV2_BOOL: return stored_flag(value, cell.i16);
    default: return refused(number::type_mismatch);
  }
}

PyObject* shown(std::uint16_t type, const void* memory) {
  Cell cell{};
  switch (type) {
    case ORV2_F64:
      std::memcpy(&cell.f64, memory, sizeof(cell.f64));
      return PyFloat_FromDouble(cell.f64);
    case ORV2_F32:
      std::memcpy(&cell.f32, memory, sizeof(cell.f32));
      return PyFloat_FromDouble(static_cast<double>(cell.f32));
    case ORV2_I32:
      std::memcpy(&cell.i32, memory, sizeof(cell.i32));
      return PyLong_FromLong(cell.i32);
    default: std::memcpy(&cell.i16, memory, sizeof(cell.i16)); break;
  }
  const bool truth = type == ORV2_BOOL && (cell.i16 == -1 || cell.i16 == 0);
  return truth ? PyBool_FromLong(cell.i16) : PyLong_FromLong(cell.i16);
}

Owned text_in(PyObject* value) {
  Owned worth = plain(value);
  if (worth && !PyUnicode_Check(worth.get())) return mismatch();
  return worth;
}

double rounded_half_to_even(double value) {
  const double below = std::floor(value);
  const double rest = value - below;
  if (rest < 0.5) return below;
  if (rest > 0.5) return below + 1.0;
  return std::fmod(below, 2.0) == 0.0 ? below : below + 1.0;
}

bool number_in(PyObject* value, std::uint64_t& number) {
  number = PyLong_AsUnsignedLongLong(value);
  return PyErr_Occurred() == nullptr;
}

bool stored_i32(PyObject* value, std::int32_t& number) { return stored_whole(value, number); }

Units::Units(PyObject* text) : bytes_(PyUnicode_AsEncodedString(text, encoding, "surrogatepass")) {
  if (!bytes_) return;
  data_ = reinterpret_cast<const std::uint16_t*>(PyBytes_AsString(bytes_.get()));
  count_ = static_cast<std::size_t>(PyBytes_Size(bytes_.get())) / sizeof(std::uint16_t);
}

PyObject* text_of_units(const std::uint16_t* units, std::size_t count) {
  const auto* const bytes = reinterpret_cast<const char*>(units);
  return PyUnicode_Decode(count != 0 ? bytes : "", static_cast<Py_ssize_t>(count * sizeof(*units)),
                          encoding, "surrogatepass");
}

}  // namespace orv2_geo::python
