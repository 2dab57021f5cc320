// refs.h: Ref, a variable passed by reference. Its memory is handed to the library as it is.
#pragma once

#include "numbers.h"
#include "owned.h"

namespace orv2_geo::python {

/// A variable. Outside a call it holds a number in its own memory or any object of Python's.
/// In a call it has the type of the parameter that it is given for, and `at` is the memory
/// that the library reads and writes: its own, or in a callback the library's.
struct Ref {
  PyObject ob_base;
  void* at;  // a scalar's or a handle's memory
  Cell cell;
  std::uint16_t type;  // of what is at `at`; ORV2_NONE: the value is `held`
  std::uint16_t uses;  // calls in progress that have it; a library's variable counts as one
  const void* thread;  // in a call: the first one's
  PyObject* held;      // outside a call any value; in one the objects by handle
  PyObject* handles;   // in a call: of objects lent for it, to be released
  PyObject* weak;
};

extern PyTypeObject* ref_type;

inline bool is_ref(PyObject* object) {
  return Py_TYPE(object) == ref_type || PyType_IsSubtype(Py_TYPE(object), ref_type) != 0;
}
/// What tells a thread from others that are alive.
inline const void* this_thread() noexcept {
  static thread_local const char mark = 0;
  return &mark;
}

inline Ref* ref_in(PyObject* object) { return reinterpret_cast<Ref*>(object); }

/// The value as Python sees it, in a call too. A text or an object that another thread's call
/// has is RunFailure 5. Empty, with an exception, on failure.
Owned value_of(Ref* ref);

/// Sets the value, in the middle of a call too. False, with an exception, on failure.
bool write(Ref* ref, PyObject* value);

/// What a Ref holds: taken out of it, or to be put into it.
class Contents {
 public:
  Contents() noexcept = default;
  Contents(const Contents&) = delete;
  Contents& operator=(const Contents&) = delete;
  ~Contents();

  /// A value in the memory that a parameter's type needs. False, with an exception.
  bool enter(std::uint16_t of_type, PyObject* value);
  void hold(PyObject* value) noexcept;
  void copy_cell(const Ref* ref) noexcept;

  void swap_with(Ref* ref) noexcept;

 private:
  bool enter_text(PyObject* value);
  bool enter_object(PyObject* value);

  std::uint16_t type_ = ORV2_NONE;
  bool own_text_ = true;
  Cell cell_{};
  PyObject* held_ = nullptr;
  PyObject* handles_ = nullptr;
};

/// A Ref in one call, and what it was before, for a call that is not made after all.
class Bound {
 public:
  Bound() noexcept = default;
  Bound(const Bound&) = delete;
  Bound& operator=(const Bound&) = delete;
  ~Bound() { end(); }

  /// Gives the variable the type of a parameter and puts it into `slot`. In a call already,
  /// it must have that type, RunFailure 13, and be this thread's unless it is a number in its
  /// own memory, RunFailure 5. False, with an exception, on failure.
  bool bind(Ref* ref, std::uint16_t type, orv2_value& slot);

  /// The call was made: what the library wrote counts. False, with an exception, when the
  /// value of a text or an object could not be had; it is then as before the call.
  bool settle();

  /// The call was not made: the variable is as it was. Nothing after settle.
  void end() noexcept;

 private:
  bool begin(Ref* ref, std::uint16_t type);

  Ref* ref_ = nullptr;
  bool first_ = false;  // this call gave it its type
  Contents before_;
};

/// A Ref over a variable of the library's own, for the length of a callback.
Owned ref_over(const orv2_value& value);

/// The callback is over: the Ref keeps the last value. False, with an exception, on failure.
bool let_go(Ref* ref);

/// Makes the type; whether that went well.
bool make_ref_type(PyObject* module);

}  // namespace orv2_geo::python
