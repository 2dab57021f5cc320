// limited.h: Python's limited interface of 3.9, so that one file serves every version from
// 3.9 on.
//
// A few things have had one binary form since 3.9 and were counted among the limited
// interface only later: buffers (3.11), the quick calling convention (3.12) and raw memory
// (3.13). They are declared here as those versions declare them; the tests load one file
// into every version of Python that they find.
#pragma once

#define PY_SSIZE_T_CLEAN
#define Py_LIMITED_API 0x03090000
#include <Python.h>
#include <structmember.h>

#include <cstddef>

extern "C" {

// ---- Buffers: 3.11 ------------------------------------------------------------------

struct Py_buffer {
  void* buf;
  PyObject* obj;
  Py_ssize_t len;
  Py_ssize_t itemsize;
  int readonly;
  int ndim;
  char* format;
  Py_ssize_t* shape;
  Py_ssize_t* strides;
  Py_ssize_t* suboffsets;
  void* internal;
};

PyAPI_FUNC(int) PyObject_CheckBuffer(PyObject* object);
PyAPI_FUNC(int) PyObject_GetBuffer(PyObject* exporter, Py_buffer* view, int flags);
PyAPI_FUNC(void) PyBuffer_Release(Py_buffer* view);

// ---- Raw memory, which needs no lock of the interpreter: 3.13 -----------------------

PyAPI_FUNC(void*) PyMem_RawMalloc(size_t bytes);
PyAPI_FUNC(void*) PyMem_RawCalloc(size_t count, size_t bytes);
PyAPI_FUNC(void) PyMem_RawFree(void* memory);

// ---- The quick calling convention: 3.12 ---------------------------------------------

PyAPI_FUNC(PyObject*) PyVectorcall_Call(PyObject* callable, PyObject* tuple, PyObject* named);

}  // extern "C"

namespace orv2_geo::python {

inline constexpr int buffer_writable = 0x0001;
inline constexpr int buffer_format = 0x0004;
inline constexpr int buffer_shape = 0x0008;
inline constexpr int buffer_strides = 0x0010 | buffer_shape;
inline constexpr int buffer_contiguous = 0x0020 | buffer_strides;  // as C orders elements

inline constexpr int slot_get_buffer = 1;
inline constexpr int slot_release_buffer = 2;

using Vectorcall = PyObject* (*)(PyObject* callable, PyObject* const* arguments, std::size_t count,
                                 PyObject* names);
inline constexpr unsigned long type_has_vectorcall = 1UL << 11;

/// How many arguments stand before the named ones; the topmost bit is the caller's own.
constexpr std::size_t positional(std::size_t count) {
  return count & ~(~std::size_t{0} ^ (~std::size_t{0} >> 1U));
}

}  // namespace orv2_geo::python

#include "in_python.h"  // of all that is declared above
