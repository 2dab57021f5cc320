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

/// Puts a reference where another one was, which is given back.
inline void put_in_place(PyObject*& place, PyObject* object) noexcept {
  const Owned before(std::exchange(place, object));
}

/// Has the interpreter's lock, taken where this thread does not have it yet.
class Locked {
 public:
  Locked() noexcept : state_(in_python(PyGILState_Ensure)) {}
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
    if (state_ != nullptr) in_python(PyEval_RestoreThread, state_);
  }

 private:
  PyThreadState* state_;
};

/// The memory of an object whose contents are gone, and its hold on its class.
inline void free_object(PyObject* self) noexcept {
  PyTypeObject* const of = Py_TYPE(self);
  reinterpret_cast<freefunc>(PyType_GetSlot(of, Py_tp_free))(self);
  Py_DECREF(of);
}

/// Ends objects that hold one another in a chain, however long it is: from a certain depth
/// on they wait, by their field for weak references, which is free by then.
template <class T>
void end_in_turn(T* one, void (*end)(T*)) noexcept {
  constexpr int deepest = 50;
  static thread_local int depth = 0;
  static thread_local PyObject* waiting = nullptr;
  one->weak = nullptr;
  if (depth == deepest) {
    one->weak = std::exchange(waiting, &one->ob_base);
    return;
  }
  ++depth;
  end(one);
  while (depth == 1 && waiting != nullptr) {
    T* const next = reinterpret_cast<T*>(waiting);
    waiting = std::exchange(next->weak, nullptr);
    end(next);
  }
  --depth;
}

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

/// A function as an entry of a type's slots.
template <class Function>
void* slot(Function* function) {
  return reinterpret_cast<void*>(function);
}

/// __class_getitem__ of a class that is generic for an editor alone: the class itself.
inline PyObject* of_type(PyObject* of, PyObject*) noexcept {
  Py_INCREF(of);
  return of;
}

}  // namespace orv2_geo::python
