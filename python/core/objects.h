// objects.h: the library's objects and their members: a call from Python, down to the library.
#pragma once

#include "numbers.h"
#include "owned.h"

namespace orv2_geo::python {

/// An object of the library, which owns one reference to its handle.
struct Object {
  PyObject ob_base;
  orv2_handle handle;
  unsigned long thread;  // its own: a call from another is refused before anything runs
  PyObject* weak;
};

inline constexpr std::size_t most_parameters = 16;

struct MemberParameter {
  std::uint16_t type = ORV2_NONE;
  bool by_reference = false;
  bool optional = false;
  std::int32_t use = ORV2_READ;
};

/// A member of a class, which can be called like a method. What is known of its parameters
/// beforehand is kept here, so that a call looks at its arguments alone.
struct Member {
  PyObject ob_base;
  Vectorcall vectorcall;
  PyObject* name;
  PyObject* qualified_name;
  PyObject* names;  // of the parameters, a tuple
  PyObject* doc;
  PyObject* signature;
  PyObject* of_class;  // the class whose objects have it, once it is known
  const char* source;  // the class's registered name, which the library keeps
  std::size_t position;
  std::size_t count;
  std::uint16_t result;
  bool numbers_only;  // of its parameters: nothing but numbers and flags
  MemberParameter parameters[most_parameters];
};

/// The library's object behind a Python one of the package; whether it is one.
bool handle_of_object(PyObject* object, orv2_handle& handle);

/// A call of a function that takes values like a member's, with what tags say of its
/// parameters. For the tests of this package.
PyObject* call_like_member(PyObject* module, PyObject* arguments);

/// expect_own_thread(object): RunFailure 5 on another thread than the object's.
PyObject* expect_own_thread(PyObject* module, PyObject* object);

/// The member of an object, checked; null with an exception.
Member* member_in(PyObject* object);

/// Whether this thread's boxes and forms may wait for a person: other threads run meanwhile.
void set_waiting(bool waits) noexcept;

bool make_objects(PyObject* module);

}  // namespace orv2_geo::python
