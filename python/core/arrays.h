// arrays.h: the five arrays, handed in by reference. Numbers lie in memory of this side, so
// that who looks at them through a buffer never sees memory that is gone.
#pragma once

#include <atomic>

#include "failures.h"
#include "numbers.h"
#include "owned.h"

namespace orv2_geo::python {

/// The elements of an array of numbers: memory of its own, or an object's buffer.
struct Storage {
  void* data = nullptr;
  std::size_t element = 0;              // bytes each
  std::atomic<std::uint32_t> views{0};  // who looks at the elements: they stay where they are
  Lease* lease = nullptr;  // an object's buffer, which the elements lie in; null: their own
  bool fixed = false;      // its owner cannot follow another size
  bool busy = false;       // its owner is being asked to
};

struct Array {
  PyObject ob_base;
  orv2_handle handle;
  Storage* storage;  // null: texts, which the library holds
  std::uint16_t type;
  PyObject* weak;
};

/// The array behind an object of one of the five classes, or null.
Array* array_in(PyObject* object) noexcept;

/// Makes an array that __init__ has not made an unallocated one. False, with an exception, on
/// failure.
bool is_made(Array* array);

/// Whether the array can be given another size at all.
bool can_be_resized(const Array* array) noexcept;

/// A buffer's elements, converted to a type as the elements of a list would be.
/// Answers with false, without an exception, for what has no buffer of numbers.
struct Elements {
  void* data = nullptr;  // raw memory, to be given up with PyMem_RawFree
  std::uint32_t count = 0;
};
bool elements_of(PyObject* given, std::uint16_t type, Elements& found);

bool make_arrays(PyObject* module);

}  // namespace orv2_geo::python
