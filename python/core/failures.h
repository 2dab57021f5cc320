// failures.h: the failures of the library as Python's exceptions, and the way back.
#pragma once

#include <cstdint>

#include "owned.h"

namespace orv2_geo::python {

namespace number {
inline constexpr std::int32_t invalid_call = 5;
inline constexpr std::int32_t overflow = 6;
inline constexpr std::int32_t out_of_memory = 7;
inline constexpr std::int32_t subscript_out_of_range = 9;
inline constexpr std::int32_t array_locked = 10;
inline constexpr std::int32_t type_mismatch = 13;
inline constexpr std::int32_t host_object_failed = 440;
inline constexpr std::int32_t argument_not_optional = 449;
}  // namespace number

/// What Python's side of the package lends: set once, at import; None before.
struct Lent {
  PyObject* run_failure = Py_None;    // the exception's class
  PyObject* warning = Py_None;        // GeoWarning
  PyObject* warn = Py_None;           // gives one, where the package is called from
  PyObject* set_property = Py_None;   // sets a property of an object of Python's side
  PyObject* call = Py_None;           // calls its method
  PyObject* wrapped = Py_None;        // makes the object of a class, from its index
  PyObject* error_box = Py_None;      // shows a box
  PyObject* show_modal = Py_None;     // shows a form
  PyObject* handle_events = Py_None;  // lets waiting events be handled
  PyObject* open = Py_None;           // opens the library, wherever it is
  PyObject* grown = Py_None;          // a buffer's owner's successor, of another size
};
extern Lent lent;

/// Opens the library if nobody has. False, with the exception, when it is not found.
bool library_is_open();

/// Raises RunFailure(number). `source` may be null. Null, for a function to return.
PyObject* raise(std::int32_t number, const char* source = nullptr);

/// The same for a function that answers false.
inline bool refused(std::int32_t number) {
  raise(number);
  return false;
}

/// Raises the failure of this thread's last failing call. Null.
PyObject* raise_last();

/// Raises the failure behind a status other than 0; whether there was none.
inline bool succeeded(std::int32_t status) {
  if (status == 0) [[likely]]
    return true;
  raise_last();
  return false;
}

/// A text of the library's; what is no UTF-8 is replaced. Null is empty.
Owned text_of_c(const char* utf8);

/// A str as a char string, which lives as long as the bytes that are answered. A zero
/// cannot travel in one and becomes U+FFFD. Empty, with an exception, on failure.
Owned c_text_of(PyObject* text);
const char* characters(const Owned& bytes);

/// A buffer in use, and whose it is.
struct Lease {
  Py_buffer buffer{};
  PyObject* base = nullptr;
  Lease* next = nullptr;  // among those that wait to be given back
};

/// The writable buffer of `base`, in one piece. Null, with an exception, on failure.
Lease* leased(PyObject* base);

/// Gives a buffer back, which may run code of its owner's. Null is allowed.
void give_back(Lease* lease) noexcept;

/// One call on its way: what its callbacks leave for it, as no exception can cross the
/// library. An exception of a callback waits here until the call returns.
class Frame {
 public:
  Frame() noexcept;
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;
  ~Frame();

  /// After the call: raises what it ended with; whether it was nothing.
  bool ended_well(std::int32_t status);

  /// The innermost one of this thread, or null.
  static Frame* innermost() noexcept;

  /// Notes the exception in flight, which a callback is about to answer for. The number
  /// to answer with, named to the library.
  static std::int32_t answer_for_exception() noexcept;

  /// Whether a callback has been interrupted: no other is to run then.
  static bool interrupted() noexcept;

  /// Keeps what a callback's answer points at until the call is over, or until the next
  /// answer. RunFailure 5 outside a call.
  static bool keep_answer(PyObject* owner);

  /// Keeps a buffer until the call is over: the library may still look at it.
  void retire(Lease* lease) noexcept;

 private:
  bool raise_status();

  Frame* outer_;
  PyObject* interrupt_ = nullptr;  // KeyboardInterrupt or the like, to be raised as itself
  PyObject* cause_ = nullptr;      // any other exception, and the words it travels by
  PyObject* words_ = nullptr;
  PyObject* answer_ = nullptr;
  Lease* retired_ = nullptr;
  std::int32_t number_ = 0;
};

/// A callback's body under the interpreter's lock: 0, or the number that it ends with.
template <class Body>
std::int32_t answering(Body&& body) {
  const Locked with_the_lock;
  if (Frame::interrupted()) return number::host_object_failed;
  return body() ? 0 : Frame::answer_for_exception();
}

/// None, for a function that answers with nothing.
inline PyObject* none() noexcept {
  Py_INCREF(Py_None);
  return Py_None;
}
/// None, or the failure behind a status other than 0.
inline PyObject* none_after(std::int32_t status) { return succeeded(status) ? none() : nullptr; }

}  // namespace orv2_geo::python
