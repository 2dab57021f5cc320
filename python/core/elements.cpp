// Elements on their way into an array: from buffers, lists and whatever can be walked.
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

#include "arrays.h"
#include "failures.h"
#include "orv2_geo/frame/floating_point_units.h"

namespace orv2_geo::python {

namespace {

std::size_t element_size(std::uint16_t type) {
  switch (type) {
    case ORV2_DOUBLE_ARRAY: return sizeof(double);
    case ORV2_SINGLE_ARRAY: return sizeof(float);
    case ORV2_LONG_ARRAY: return sizeof(std::int32_t);
    default: return sizeof(std::int16_t);
  }
}

std::uint16_t element_type(std::uint16_t type) {
  switch (type) {
    case ORV2_DOUBLE_ARRAY: return ORV2_F64;
    case ORV2_SINGLE_ARRAY: return ORV2_F32;
    case ORV2_LONG_ARRAY: return ORV2_I32;
    default: return ORV2_I16;
  }
}

// Memory for that many elements. RunFailure 7 or 9 when there is none.
bool make_room(std::uint16_t type, Py_ssize_t count, Elements& room) {
  if (count > std::numeric_limits<std::int32_t>::max())
    return refused(number::subscript_out_of_range);
  const auto bytes = static_cast<std::size_t>(count) * element_size(type);
  room.data = PyMem_RawMalloc(bytes != 0 ? bytes : 1);
  if (room.data == nullptr) return refused(number::out_of_memory);
  room.count = static_cast<std::uint32_t>(count);
  return true;
}

void give_up(Elements& room) {
  PyMem_RawFree(room.data);
  room.data = nullptr;
}

// ---- From buffers -------------------------------------------------------------------

// A wide number as an element: false when it does not fit.
bool fitted(double wide, double& element) {
  element = wide;
  return true;
}
bool fitted(double wide, float& element) {
  element = static_cast<float>(wide);
  return !std::isinf(element) || std::isinf(wide);
}
template <class Whole>
bool fitted(double wide, Whole& element) {
  const double whole = rounded_half_to_even(wide);
  const bool fits =
      whole >= std::numeric_limits<Whole>::min() && whole <= std::numeric_limits<Whole>::max();
  if (fits) element = static_cast<Whole>(whole);
  return fits;
}

// A truth as a buffer has it: any byte.
enum class Truth : std::uint8_t {};

template <class From, class To>
bool converted(const Py_buffer& view, void* data) {
  const auto* from = static_cast<const char*>(view.buf);
  auto* to = static_cast<To*>(data);
  const floating_point::UsualMeanwhile settings;
  const Py_ssize_t step = view.strides != nullptr ? view.strides[0] : view.itemsize;
  for (Py_ssize_t i = view.shape[0]; i > 0; --i, from += step, ++to) {
    From element;
    std::memcpy(&element, from, sizeof(element));
    if constexpr (std::is_same_v<From, Truth>) {
      *to = static_cast<To>(element != Truth{} ? -1 : 0);
    } else if constexpr (std::is_same_v<From, To>) {
      *to = element;
    } else if constexpr (std::is_integral_v<From> && std::is_integral_v<To>) {
      if (!std::in_range<To>(element)) return refused(number::overflow);
      *to = static_cast<To>(element);
    } else if constexpr (std::is_integral_v<From> && std::is_same_v<To, float>) {
      // By way of a double, as a number of Python's.
      if (!fitted(static_cast<double>(element), *to)) return refused(number::overflow);
    } else if (!fitted(static_cast<double>(element), *to)) {
      return refused(number::overflow);
    }
  }
  return true;
}

template <class From>
bool converted_to(std::uint16_t type, const Py_buffer& view, void* data) {
  switch (type) {
    case ORV2_DOUBLE_ARRAY: return converted<From, double>(view, data);
    case ORV2_SINGLE_ARRAY: return converted<From, float>(view, data);
    case ORV2_LONG_ARRAY: return converted<From, std::int32_t>(view, data);
    default: return converted<From, std::int16_t>(view, data);
  }
}

using Conversion = bool (*)(std::uint16_t, const Py_buffer&, void*);

template <class From>
Conversion one_of_size(Py_ssize_t size) {
  return size == sizeof(From) ? converted_to<From> : nullptr;
}

template <class Small, class Middle, class Large>
Conversion by_size(Py_ssize_t size) {
  if (size == sizeof(Small)) return converted_to<Small>;
  if (size == sizeof(Middle)) return converted_to<Middle>;
  return size == sizeof(Large) ? converted_to<Large> : nullptr;
}

// The conversion for a buffer's format, null for one that is walked as a list instead.
Conversion conversion_for(const Py_buffer& view) {
  const char* format = view.format != nullptr ? view.format : "B";
  constexpr bool little = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;
  if (*format == '@' || *format == '=' || *format == (little ? '<' : '>')) ++format;
  if (*format == '\0' || format[1] != '\0') return nullptr;
  switch (*format) {
    case 'd': return one_of_size<double>(view.itemsize);
    case 'f': return one_of_size<float>(view.itemsize);
    case '?': return one_of_size<Truth>(view.itemsize);
    case 'B': return one_of_size<std::uint8_t>(view.itemsize);
    case 'h':
    case 'i':
    case 'l':
    case 'q':
    case 'n': return by_size<std::int16_t, std::int32_t, std::int64_t>(view.itemsize);
    case 'H':
    case 'I':
    case 'L':
    case 'Q':
    case 'N': return by_size<std::uint16_t, std::uint32_t, std::uint64_t>(view.itemsize);
    default: return nullptr;
  }
}

bool is_packed(const Py_buffer& view) {
  return view.strides == nullptr || view.strides[0] == view.itemsize || view.shape[0] < 2;
}

char own_format(std::uint16_t type) { return "dfih"[type - ORV2_DOUBLE_ARRAY]; }

bool taken(const Py_buffer& view, Conversion conversion, std::uint16_t type, Elements& found) {
  if (!make_room(type, view.shape[0], found)) return false;
  const char* format = view.format != nullptr ? view.format : "B";
  const bool same = format[0] == own_format(type) && format[1] == '\0' &&
                    static_cast<std::size_t>(view.itemsize) == element_size(type);
  if (same && is_packed(view)) {
    if (found.count != 0) std::memcpy(found.data, view.buf, found.count * element_size(type));
    return true;
  }
  if (conversion(type, view, found.data)) return true;
  give_up(found);
  return false;
}

// Whether the buffer answered; `well` says whether that ended well.
bool from_buffer(PyObject* given, std::uint16_t type, Elements& found, bool& well) {
  if (PyObject_CheckBuffer(given) == 0 || is_array_scalar(given)) return false;
  Py_buffer view{};
  if (PyObject_GetBuffer(given, &view, buffer_strides | buffer_format) != 0) {
    if (PyErr_ExceptionMatches(PyExc_Exception) == 0) return well = false, true;
    PyErr_Clear();  // it can still be walked
    return false;
  }
  const Conversion conversion =
      view.ndim == 1 && view.shape != nullptr ? conversion_for(view) : nullptr;
  if (conversion != nullptr) well = taken(view, conversion, type, found);
  PyBuffer_Release(&view);
  return conversion != nullptr;
}

// ---- From lists ---------------------------------------------------------------------

// Elements may run code of Python's, which may change the list: it is asked anew each time.
template <class T>
bool from_list(PyObject* list, std::uint16_t type, Elements& found) {
  const std::uint16_t scalar = element_type(type);
  auto* const to = static_cast<T*>(found.data);
  for (std::uint32_t i = 0; i < found.count; ++i) {
    PyObject* const one = PyList_GetItem(list, static_cast<Py_ssize_t>(i));
    if (one == nullptr) return false;
    if constexpr (std::is_same_v<T, double>) {
      if (PyFloat_CheckExact(one)) {
        to[i] = PyFloat_AsDouble(one);
        continue;
      }
    }
    const Owned kept = Owned::to(one);
    Cell cell{};
    if (!stored(one, scalar, cell)) return false;
    std::memcpy(to + i, &cell, sizeof(T));
  }
  return true;
}

bool walked(PyObject* list, std::uint16_t type, Elements& found) {
  if (!make_room(type, PyList_Size(list), found)) return false;
  const bool well = type == ORV2_DOUBLE_ARRAY   ? from_list<double>(list, type, found)
                    : type == ORV2_SINGLE_ARRAY ? from_list<float>(list, type, found)
                    : type == ORV2_LONG_ARRAY   ? from_list<std::int32_t>(list, type, found)
                                                : from_list<std::int16_t>(list, type, found);
  if (!well) give_up(found);
  return well;
}

}  // namespace

bool elements_of(PyObject* given, std::uint16_t type, Elements& found) {
  bool well = true;
  if (from_buffer(given, type, found, well)) return well;
  if (PyList_CheckExact(given)) return walked(given, type, found);
  const Owned list(PySequence_List(given));
  return list && walked(list.get(), type, found);
}

}  // namespace orv2_geo::python
