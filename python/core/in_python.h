// in_python.h: calls of the interpreter from which a thread may not come back.
//
// After the interpreter's end Python ends a thread that asks for its lock, as one does in the
// middle of Python's code, and up to 3.13 unwinds all its frames on the way out: also the
// library's, whose destructors need the lock. So every function that may run Python's code, or
// collect garbage, is called here in a way that lets nothing unwind: the thread stays where it is
// instead, until the process ends. A new function of that kind belongs into this list.
#pragma once

#include <unistd.h>

#include <utility>

namespace orv2_geo::python {

[[noreturn]] inline void stay_for_ever() noexcept {
  for (;;) pause();
}

/// The function's answer, or none.
template <class Function, class... Arguments>
auto in_python(Function* function, Arguments... arguments) noexcept {
  try {
    return function(arguments...);
  } catch (...) {
    stay_for_ever();
  }
}

// Macros of Python's own, by other names.
inline constexpr auto* parse_tuple = &PyArg_ParseTuple;
inline constexpr auto* parse_tuple_and_keywords = &PyArg_ParseTupleAndKeywords;
inline constexpr auto* build_value = &Py_BuildValue;
inline constexpr auto* call_function = &PyObject_CallFunction;
inline constexpr auto* call_method = &PyObject_CallMethod;

/// One reference less to the object, if there is one.
inline void give_reference_back(PyObject* object) noexcept {
  try {
    Py_XDECREF(object);
  } catch (...) {
    stay_for_ever();
  }
}

/// The same, of a place that is then empty.
template <class Object>
void clear_place(Object*& place) noexcept {
  give_reference_back(reinterpret_cast<PyObject*>(std::exchange(place, nullptr)));
}

/// An object of a class of ours, with zeros behind its head, or null.
inline PyObject* new_object(PyTypeObject* of) noexcept {
  return in_python(reinterpret_cast<allocfunc>(PyType_GetSlot(of, Py_tp_alloc)), of, 0);
}

}  // namespace orv2_geo::python

#undef Py_DECREF
#undef Py_XDECREF
#undef Py_CLEAR
#undef PyArg_ParseTuple
#undef PyArg_ParseTupleAndKeywords
#undef Py_BuildValue
#undef PyObject_CallFunction
#undef PyObject_CallMethod

// The names stay Python's.
#define Py_DECREF(object) \
  ::orv2_geo::python::give_reference_back(reinterpret_cast<PyObject*>(object))
#define Py_XDECREF(object) Py_DECREF(object)
#define Py_CLEAR(place) ::orv2_geo::python::clear_place(place)
#define ORV2_IN_PYTHON(...) ::orv2_geo::python::in_python(__VA_ARGS__)
#define PyArg_ParseTuple(...) ORV2_IN_PYTHON(::orv2_geo::python::parse_tuple, __VA_ARGS__)
#define PyArg_ParseTupleAndKeywords(...) \
  ORV2_IN_PYTHON(::orv2_geo::python::parse_tuple_and_keywords, __VA_ARGS__)
#define Py_BuildValue(...) ORV2_IN_PYTHON(::orv2_geo::python::build_value, __VA_ARGS__)
#define PyObject_CallFunction(...) ORV2_IN_PYTHON(::orv2_geo::python::call_function, __VA_ARGS__)
#define PyObject_CallMethod(...) ORV2_IN_PYTHON(::orv2_geo::python::call_method, __VA_ARGS__)
#define PyBuffer_Release(...) ORV2_IN_PYTHON(PyBuffer_Release __VA_OPT__(, ) __VA_ARGS__)
#define PyCapsule_New(...) ORV2_IN_PYTHON(PyCapsule_New __VA_OPT__(, ) __VA_ARGS__)
#define PyDict_GetItemWithError(...) \
  ORV2_IN_PYTHON(PyDict_GetItemWithError __VA_OPT__(, ) __VA_ARGS__)
#define PyDict_New(...) ORV2_IN_PYTHON(PyDict_New __VA_OPT__(, ) __VA_ARGS__)
#define PyDict_SetItem(...) ORV2_IN_PYTHON(PyDict_SetItem __VA_OPT__(, ) __VA_ARGS__)
#define PyErr_CheckSignals(...) ORV2_IN_PYTHON(PyErr_CheckSignals __VA_OPT__(, ) __VA_ARGS__)
#define PyErr_Clear(...) ORV2_IN_PYTHON(PyErr_Clear __VA_OPT__(, ) __VA_ARGS__)
#define PyErr_Format(...) ORV2_IN_PYTHON(PyErr_Format __VA_OPT__(, ) __VA_ARGS__)
#define PyErr_NoMemory(...) ORV2_IN_PYTHON(PyErr_NoMemory __VA_OPT__(, ) __VA_ARGS__)
#define PyErr_NormalizeException(...) \
  ORV2_IN_PYTHON(PyErr_NormalizeException __VA_OPT__(, ) __VA_ARGS__)
#define PyErr_Restore(...) ORV2_IN_PYTHON(PyErr_Restore __VA_OPT__(, ) __VA_ARGS__)
#define PyErr_SetObject(...) ORV2_IN_PYTHON(PyErr_SetObject __VA_OPT__(, ) __VA_ARGS__)
#define PyErr_SetString(...) ORV2_IN_PYTHON(PyErr_SetString __VA_OPT__(, ) __VA_ARGS__)
#define PyException_SetCause(...) ORV2_IN_PYTHON(PyException_SetCause __VA_OPT__(, ) __VA_ARGS__)
#define PyException_SetTraceback(...) \
  ORV2_IN_PYTHON(PyException_SetTraceback __VA_OPT__(, ) __VA_ARGS__)
#define PyFloat_AsDouble(...) ORV2_IN_PYTHON(PyFloat_AsDouble __VA_OPT__(, ) __VA_ARGS__)
#define PyImport_ImportModule(...) ORV2_IN_PYTHON(PyImport_ImportModule __VA_OPT__(, ) __VA_ARGS__)
#define PyList_Append(...) ORV2_IN_PYTHON(PyList_Append __VA_OPT__(, ) __VA_ARGS__)
#define PyList_New(...) ORV2_IN_PYTHON(PyList_New __VA_OPT__(, ) __VA_ARGS__)
#define PyList_SetItem(...) ORV2_IN_PYTHON(PyList_SetItem __VA_OPT__(, ) __VA_ARGS__)
#define PyLong_AsLong(...) ORV2_IN_PYTHON(PyLong_AsLong __VA_OPT__(, ) __VA_ARGS__)
#define PyLong_AsLongAndOverflow(...) \
  ORV2_IN_PYTHON(PyLong_AsLongAndOverflow __VA_OPT__(, ) __VA_ARGS__)
#define PyLong_AsLongLongAndOverflow(...) \
  ORV2_IN_PYTHON(PyLong_AsLongLongAndOverflow __VA_OPT__(, ) __VA_ARGS__)
#define PyLong_AsSsize_t(...) ORV2_IN_PYTHON(PyLong_AsSsize_t __VA_OPT__(, ) __VA_ARGS__)
#define PyMemoryView_FromObject(...) \
  ORV2_IN_PYTHON(PyMemoryView_FromObject __VA_OPT__(, ) __VA_ARGS__)
#define PyModule_AddFunctions(...) ORV2_IN_PYTHON(PyModule_AddFunctions __VA_OPT__(, ) __VA_ARGS__)
#define PyModule_AddObject(...) ORV2_IN_PYTHON(PyModule_AddObject __VA_OPT__(, ) __VA_ARGS__)
#define PyNumber_Float(...) ORV2_IN_PYTHON(PyNumber_Float __VA_OPT__(, ) __VA_ARGS__)
#define PyNumber_Index(...) ORV2_IN_PYTHON(PyNumber_Index __VA_OPT__(, ) __VA_ARGS__)
#define PyNumber_Power(...) ORV2_IN_PYTHON(PyNumber_Power __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_CallFunctionObjArgs(...) \
  ORV2_IN_PYTHON(PyObject_CallFunctionObjArgs __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_CallObject(...) ORV2_IN_PYTHON(PyObject_CallObject __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_ClearWeakRefs(...) \
  ORV2_IN_PYTHON(PyObject_ClearWeakRefs __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_Format(...) ORV2_IN_PYTHON(PyObject_Format __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_GenericGetAttr(...) \
  ORV2_IN_PYTHON(PyObject_GenericGetAttr __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_GenericSetAttr(...) \
  ORV2_IN_PYTHON(PyObject_GenericSetAttr __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_GetAttrString(...) \
  ORV2_IN_PYTHON(PyObject_GetAttrString __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_GetBuffer(...) ORV2_IN_PYTHON(PyObject_GetBuffer __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_GetIter(...) ORV2_IN_PYTHON(PyObject_GetIter __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_IsTrue(...) ORV2_IN_PYTHON(PyObject_IsTrue __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_RichCompare(...) ORV2_IN_PYTHON(PyObject_RichCompare __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_RichCompareBool(...) \
  ORV2_IN_PYTHON(PyObject_RichCompareBool __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_SetAttrString(...) \
  ORV2_IN_PYTHON(PyObject_SetAttrString __VA_OPT__(, ) __VA_ARGS__)
#define PyObject_Str(...) ORV2_IN_PYTHON(PyObject_Str __VA_OPT__(, ) __VA_ARGS__)
#define PySequence_List(...) ORV2_IN_PYTHON(PySequence_List __VA_OPT__(, ) __VA_ARGS__)
#define PyTuple_New(...) ORV2_IN_PYTHON(PyTuple_New __VA_OPT__(, ) __VA_ARGS__)
#define PyTuple_Pack(...) ORV2_IN_PYTHON(PyTuple_Pack __VA_OPT__(, ) __VA_ARGS__)
#define PyTuple_SetItem(...) ORV2_IN_PYTHON(PyTuple_SetItem __VA_OPT__(, ) __VA_ARGS__)
#define PyType_FromSpec(...) ORV2_IN_PYTHON(PyType_FromSpec __VA_OPT__(, ) __VA_ARGS__)
#define PyType_FromSpecWithBases(...) \
  ORV2_IN_PYTHON(PyType_FromSpecWithBases __VA_OPT__(, ) __VA_ARGS__)
#define PyUnicode_AsEncodedString(...) \
  ORV2_IN_PYTHON(PyUnicode_AsEncodedString __VA_OPT__(, ) __VA_ARGS__)
#define PyUnicode_Decode(...) ORV2_IN_PYTHON(PyUnicode_Decode __VA_OPT__(, ) __VA_ARGS__)
#define PyUnicode_DecodeFSDefault(...) \
  ORV2_IN_PYTHON(PyUnicode_DecodeFSDefault __VA_OPT__(, ) __VA_ARGS__)
#define PyUnicode_FSConverter(...) ORV2_IN_PYTHON(PyUnicode_FSConverter __VA_OPT__(, ) __VA_ARGS__)
#define PyUnicode_FromFormat(...) ORV2_IN_PYTHON(PyUnicode_FromFormat __VA_OPT__(, ) __VA_ARGS__)
#define PyUnicode_FromObject(...) ORV2_IN_PYTHON(PyUnicode_FromObject __VA_OPT__(, ) __VA_ARGS__)
#define PyUnicode_Replace(...) ORV2_IN_PYTHON(PyUnicode_Replace __VA_OPT__(, ) __VA_ARGS__)
#define PyVectorcall_Call(...) ORV2_IN_PYTHON(PyVectorcall_Call __VA_OPT__(, ) __VA_ARGS__)
