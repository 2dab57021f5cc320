// hosts.h: objects of Python's side as the library sees them: reached by name.
#pragma once

#include "library.h"
#include "owned.h"

namespace orv2_geo::python {

/// The mark of an optional argument left out; made once, at import.
extern PyObject* omitted;

/// A handle for an object. `owned` says whether it is to be released: objects of the library
/// cross as themselves, None is 0. RunFailure 13 for plain values. False on failure.
bool lend(PyObject* target, orv2_handle& handle, bool& owned);

/// The object of the library behind a handle, or None for 0.
Owned object_behind(orv2_handle handle);

/// How many objects of Python's side the library holds.
long lent_objects() noexcept;

/// Puts a plain value into a slot, by value. What must outlive the slot goes to `kept`,
/// a list. False, with an exception, on failure.
bool put_plain(orv2_value& slot, PyObject* plain_value, PyObject* kept);

/// The value in a slot that the library answered with, which is then Python's own.
Owned taken_answer(const orv2_value& answer);

/// Makes what the callbacks need; whether that went well.
bool make_hosts(PyObject* module);

/// Gives up on a handle. Any thread.
void release(orv2_handle handle) noexcept;

}  // namespace orv2_geo::python
