#include "hosts.h"

#include <atomic>
#include <cstdint>

#include "failures.h"
#include "refs.h"

namespace orv2_geo::python {

PyObject* omitted = nullptr;

bool handle_of_object(PyObject* object, orv2_handle& handle);  // objects.h, one floor up

namespace {

std::atomic<long> lent_count{0};

// ---- What is lent -------------------------------------------------------------------

// An object that the library has a handle of, for as long as the library has it.
struct Loan {
  PyObject* target;  // null once its thread has ended
  orv2_handle handle;
  Loan* next;
  Loan** link;  // what points at it
};

// The loans of one thread, among what Python keeps for the thread: the library forgets a
// thread's objects at its end without a word.
struct Loans {
  PyObject ob_base;
  Loan* first;
};

PyTypeObject* loans_type = nullptr;
PyObject* loans_name = nullptr;

// Takes an object back. Its code may run.
void end_loan(Loan* loan) {
  if (loan->target == nullptr) return;
  *loan->link = loan->next;
  if (loan->next != nullptr) loan->next->link = loan->link;
  --lent_count;
  Py_DECREF(std::exchange(loan->target, nullptr));
}

void loans_dealloc(PyObject* self) {
  auto* const loans = reinterpret_cast<Loans*>(self);
  while (Loan* const loan = loans->first) {
    const orv2_handle handle = loan->handle;
    end_loan(loan);
    release(handle);  // and with it the loan, unless the library still has it elsewhere
  }
  free_object(self);
}

// This thread's loans; null, with an exception, on failure.
Loans* loans_here() {
  PyObject* const kept = PyThreadState_GetDict();
  if (kept == nullptr) return PyErr_NoMemory(), nullptr;
  PyObject* const known = PyDict_GetItemWithError(kept, loans_name);
  if (known != nullptr) return reinterpret_cast<Loans*>(known);
  if (PyErr_Occurred() != nullptr) return nullptr;
  const Owned made(new_object(loans_type));
  if (!made || PyDict_SetItem(kept, loans_name, made.get()) != 0) return nullptr;
  return reinterpret_cast<Loans*>(made.get());
}

PyType_Slot loans_slots[] = {
    {Py_tp_dealloc, reinterpret_cast<void*>(loans_dealloc)},
    {0, nullptr},
};

PyType_Spec loans_spec = {"orv2_geo.Loans", sizeof(Loans), 0, Py_TPFLAGS_DEFAULT, loans_slots};

bool make_loans() {
  loans_type = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&loans_spec));
  loans_name = PyUnicode_InternFromString("orv2_geo loans");
  return loans_type != nullptr && loans_name != nullptr;
}

// The object behind a callback, kept for its length. RunFailure 5 for one taken back.
Owned target_of(void* context) {
  PyObject* const target = static_cast<Loan*>(context)->target;
  if (target == nullptr) raise(number::invalid_call);
  Py_XINCREF(target);
  return Owned(target);
}

// ---- What the library hands to a callback -------------------------------------------

Owned by_value(const orv2_value& value) {
  if (is_scalar(value.tag)) {
    if (value.tag == ORV2_BOOL) return Owned(PyBool_FromLong(value.as.boolean));
    return Owned(shown(value.tag, &value.as));
  }
  switch (value.tag) {
    case ORV2_UTF8: return text_of_c(value.as.utf8);
    case ORV2_TEXT: {
      const std::uint16_t* units = nullptr;
      std::size_t count = 0;
      if (!succeeded(library.orv2_text_get(value.as.handle, &units, &count))) return {};
      return Owned(text_of_units(units, count));
    }
    case ORV2_OBJECT: return object_behind(value.as.handle);
    case ORV2_NONE:
    case ORV2_OMITTED: return Owned::to(omitted);
    default: raise(number::type_mismatch); return {};
  }
}

// The arguments of a callback as a tuple. Its variables are let go at the end.
class Received {
 public:
  Received(const orv2_value* values, std::size_t count)
      : arguments_(PyTuple_New(static_cast<Py_ssize_t>(count))) {
    for (std::size_t i = 0; arguments_ && i < count; ++i) {
      Owned one = (values[i].tag & ORV2_BYREF) != 0 ? ref_over(values[i]) : by_value(values[i]);
      if (!one) return;
      PyTuple_SetItem(arguments_.get(), static_cast<Py_ssize_t>(i), one.release());
      ++received_;
    }
    whole_ = static_cast<bool>(arguments_);
  }
  Received(const Received&) = delete;
  Received& operator=(const Received&) = delete;
  ~Received() {
    const ExceptionAside until_the_end;
    for (std::size_t i = 0; i < received_; ++i) {
      PyObject* const one = PyTuple_GetItem(arguments_.get(), static_cast<Py_ssize_t>(i));
      if (is_ref(one) && ref_in(one)->uses != 0 && !let_go(ref_in(one))) PyErr_Clear();
    }
  }

  explicit operator bool() const noexcept { return whole_; }
  PyObject* get() const noexcept { return arguments_.get(); }

 private:
  Owned arguments_;
  std::size_t received_ = 0;
  bool whole_ = false;
};

// An answer that is no value of the interface is left out.
bool give(orv2_value* result, PyObject* answer) {
  if (result == nullptr || answer == Py_None) return true;
  if (handle_of_object(answer, result->as.handle)) {
    result->tag = ORV2_OBJECT;
    return Frame::keep_answer(answer);
  }
  const Owned value = plain(answer);
  if (!value) {
    if (PyErr_ExceptionMatches(lent.run_failure) == 0) return false;
    PyErr_Clear();
    return true;
  }
  const Owned kept(PyList_New(0));
  if (!kept || !put_plain(*result, value.get(), kept.get())) return false;
  return PyList_Size(kept.get()) == 0 || Frame::keep_answer(kept.get());
}

std::int32_t set_property(void* context, const char* name, const orv2_value* value) {
  return answering([&] {
    const Owned target = target_of(context);
    if (!target) return false;
    const Received given(value, 1);
    const Owned text = given ? text_of_c(name) : Owned();
    if (!text) return false;
    return static_cast<bool>(Owned(PyObject_CallFunctionObjArgs(
        lent.set_property, target.get(), text.get(), PyTuple_GetItem(given.get(), 0), nullptr)));
  });
}

std::int32_t call(void* context, const char* name, const orv2_value* values, std::size_t count,
                  orv2_value* result) {
  return answering([&] {
    const Owned target = target_of(context);
    if (!target) return false;
    const Received given(values, count);
    const Owned text = given ? text_of_c(name) : Owned();
    if (!text) return false;
    const Owned answer(
        PyObject_CallFunctionObjArgs(lent.call, target.get(), text.get(), given.get(), nullptr));
    return answer && give(result, answer.get());
  });
}

void released(void* context) {
  auto* const loan = static_cast<Loan*>(context);
  if (loan->target != nullptr) {
    const Locked with_the_lock;
    const ExceptionAside until_the_end;
    end_loan(loan);
  }
  PyMem_RawFree(loan);
}

const orv2_host_object callbacks{sizeof(orv2_host_object), set_property, call, released};

bool lend_new(PyObject* target, orv2_handle& handle) {
  Loans* const loans = loans_here();
  if (loans == nullptr) return false;
  auto* const loan = static_cast<Loan*>(PyMem_RawMalloc(sizeof(Loan)));
  if (loan == nullptr) return refused(number::out_of_memory);
  *loan = {target, 0, nullptr, nullptr};
  if (!succeeded(library.orv2_host_object_new(&callbacks, loan, &handle))) {
    PyMem_RawFree(loan);
    return false;
  }
  Py_INCREF(target);
  ++lent_count;
  loan->handle = handle;
  loan->next = loans->first;
  loan->link = &loans->first;
  if (loan->next != nullptr) loan->next->link = &loan->next;
  loans->first = loan;
  return true;
}

}  // namespace

void release(orv2_handle handle) noexcept { library.orv2_release(handle); }

long lent_objects() noexcept { return lent_count; }

bool lend(PyObject* target, orv2_handle& handle, bool& owned) {
  handle = 0;
  owned = false;
  if (target == Py_None || handle_of_object(target, handle)) return true;
  if (PyLong_Check(target) || PyFloat_Check(target) || PyUnicode_Check(target) ||
      target == omitted) {
    return refused(number::type_mismatch);
  }
  owned = lend_new(target, handle);
  return owned;
}

Owned object_behind(orv2_handle handle) {
  if (handle == 0) return Owned::to(Py_None);
  return Owned(PyObject_CallFunction(lent.wrapped, "K", static_cast<unsigned long long>(handle)));
}

namespace {

// A text with a zero in it goes as a variable of the library's.
constexpr const char* text_capsule = "orv2_geo text";

void end_text(PyObject* capsule) {
  auto* const handle = static_cast<orv2_handle*>(PyCapsule_GetPointer(capsule, text_capsule));
  release(*handle);
  PyMem_RawFree(handle);
}

// Owns a text variable of the library's. Empty, with an exception, on failure.
Owned owner_of_text(const Units& units, orv2_handle& handle) {
  auto* const kept = static_cast<orv2_handle*>(PyMem_RawMalloc(sizeof(orv2_handle)));
  if (kept == nullptr) {
    raise(number::out_of_memory);
    return {};
  }
  if (!succeeded(library.orv2_text_new(units.data(), units.count(), kept))) {
    PyMem_RawFree(kept);
    return {};
  }
  handle = *kept;
  Owned owner(PyCapsule_New(kept, text_capsule, end_text));
  if (!owner) {
    release(handle);
    PyMem_RawFree(kept);
  }
  return owner;
}

bool put_whole_text(orv2_value& slot, PyObject* text, PyObject* kept) {
  const Units units(text);
  const Owned owner = units ? owner_of_text(units, slot.as.handle) : Owned();
  slot.tag = ORV2_TEXT;
  return owner && PyList_Append(kept, owner.get()) == 0;
}

bool put_text(orv2_value& slot, PyObject* text, PyObject* kept) {
  const Py_ssize_t length = PyUnicode_GetLength(text);
  if (PyUnicode_FindChar(text, 0, 0, length, 1) >= 0) return put_whole_text(slot, text, kept);
  const Owned bytes = c_text_of(text);
  if (!bytes) return false;
  slot.tag = ORV2_UTF8;
  slot.as.utf8 = characters(bytes);
  return PyList_Append(kept, bytes.get()) == 0;
}

}  // namespace

bool put_plain(orv2_value& slot, PyObject* value, PyObject* kept) {
  if (PyBool_Check(value)) {
    slot.tag = ORV2_BOOL;
    slot.as.boolean = value == Py_True ? -1 : 0;
    return true;
  }
  if (PyUnicode_Check(value)) return put_text(slot, value, kept);
  Cell cell{};
  if (stored_at_once(value, ORV2_I32, cell)) {
    slot.tag = ORV2_I32;
    slot.as.i32 = cell.i32;
    return true;
  }
  slot.tag = ORV2_F64;
  if (!stored(value, ORV2_F64, cell)) return false;
  slot.as.f64 = cell.f64;
  return true;
}

Owned taken_answer(const orv2_value& answer) {
  switch (answer.tag) {
    case ORV2_NONE: return Owned::to(Py_None);
    case ORV2_BOOL: return Owned(PyBool_FromLong(answer.as.boolean));
    case ORV2_TEXT: {
      Owned text = by_value(answer);
      release(answer.as.handle);
      return text;
    }
    case ORV2_OBJECT: return object_behind(answer.as.handle);
    default: return Owned(shown(answer.tag, &answer.as));
  }
}

namespace {

struct Omitted {
  PyObject ob_base;
};

PyObject* show_omitted(PyObject*) { return PyUnicode_FromString("omitted"); }
PyObject* reduce_omitted(PyObject*, PyObject*) { return PyUnicode_FromString("omitted"); }

PyMethodDef omitted_methods[] = {
    {"__reduce__", reduce_omitted, METH_NOARGS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

PyType_Slot omitted_slots[] = {
    {Py_tp_doc, const_cast<char*>("An optional argument left out.")},
    {Py_tp_repr, reinterpret_cast<void*>(show_omitted)},
    {Py_tp_methods, omitted_methods},
    {0, nullptr},
};

PyType_Spec omitted_spec = {"orv2_geo.Omitted", sizeof(Omitted), 0, Py_TPFLAGS_DEFAULT,
                            omitted_slots};

bool make_omitted() {
  const Owned type(PyType_FromSpec(&omitted_spec));
  omitted = type ? PyObject_CallObject(type.get(), nullptr) : nullptr;
  return omitted != nullptr;
}

}  // namespace

bool make_hosts(PyObject* module) {
  if (loans_name == nullptr && !make_loans()) return false;
  if (omitted == nullptr && !make_omitted()) return false;
  Py_INCREF(omitted);
  return PyModule_AddObject(module, "omitted", omitted) == 0;
}

}  // namespace orv2_geo::python
