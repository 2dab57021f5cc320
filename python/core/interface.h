// interface.h: who shows the boxes and forms of a thread, and what a form is made of.
#pragma once

#include "library.h"
#include "owned.h"

namespace orv2_geo::python {

struct Member;

/// Installs on this thread what the package shows boxes with, unless somebody has
/// installed something already. False, with an exception, on failure.
bool serve_this_thread();

/// The exception in flight is the refusal of an argument: if it is a RunFailure it gets to
/// know the member, the parameter, what was expected and what was given.
void explain_refusal(Member* member, std::size_t place, PyObject* given, const char* source);

/// The exception in flight is the failure of a call, which may be one argument's.
void explain_failure(Member* member, PyObject* const* given, std::size_t count);

/// The functions of boxes and forms, for the module.
extern PyMethodDef interface_functions[];

}  // namespace orv2_geo::python
