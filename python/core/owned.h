// owned.h: references to Python's objects that are given back by themselves, and the way in
// and out of the interpreter's lock.
#pragma once

#include <utility>

#include "limited.h"

namespace orv2_geo::python {

/// One reference to an object, or none.
class Owned {
 public:
  Owned() noexcept = default;
  /// Takes over a reference, such as a new object's.
  explicit Owned(PyObject* object) noexcept : object_(object) {}
  Owned(Owned&& other) noexcept : object_(other.release()) {}
  Owned& operator=(Owned&& other) noexcept {
    Owned(std::move(other)).swap(*this);
    return *this;
  }
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() { Py_XDECREF(object_); }

  /// One reference more to somebody else's object.
  static Owned to(PyObject* object) noexcept {
    Py_XINCREF(object);
    return Owned(object);
  }

  PyObject* get() const noexcept { return object_; }
  PyObject* release() noexcept { return std::exchange(object_, nullptr); }
  explicit operator bool() const noexcept { return object_ != nullptr; }
  void swap(Owned& other) noexcept { std::swap(object_, other.object_); }

 private:
  PyObject* object_ = nullptr;
};

/// Has the interpreter's lock, taken where this thread does not have it yet.
class Locked {
 public:
  Locked() noexcept : state_(PyGILState_Ensure()) {}
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;
  ~Locked() { PyGILState_Release(state_); }

 private:
  PyGILState_STATE state_;
};

/// Lets other threads run Python meanwhile, where that is wanted.
class Unlocked {
 public:
  explicit Unlocked(bool wanted) noexcept : state_(wanted ? PyEval_SaveThread() : nullptr) {}
  Unlocked(const Unlocked&) = delete;
  Unlocked& operator=(const Unlocked&) = delete;
  ~Unlocked() {
    if (state_ != nullptr) PyEval_RestoreThread(state_);
  }

 private:
  PyThreadState* state_;
};

/// An exception set aside, put back at the end.
class ExceptionAside {
 public:
  ExceptionAside() noexcept { PyErr_Fetch(&type_, &value_, &traceback_); }
  ExceptionAside(const ExceptionAside&) = delete;
  ExceptionAside& operator=(const ExceptionAside&) = delete;
  ~ExceptionAside() { PyErr_Restore(type_, value_, traceback_); }

 private:
  PyObject* type_ = nullptr;
  PyObject* value_ = nullptr;
  PyObject* traceback_ = nullptr;
};

/// The exception in flight as one object, which is then no longer in flight.
inline Owned taken_exception() noexcept {
  PyObject* type = nullptr;
  PyObject* value = nullptr;
  PyObject* traceback = nullptr;
  PyErr_Fetch(&type, &value, &traceback);
  PyErr_NormalizeException(&type, &value, &traceback);
  if (value != nullptr && traceback != nullptr) PyException_SetTraceback(value, traceback);
  Py_XDECREF(type);
  Py_XDECREF(traceback);
  return Owned(value);
}

}  // namespace orv2_geo::python
