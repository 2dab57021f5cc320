// The module _core: what of the package is compiled.
#include "arrays.h"
#include "bulk.h"
#include "failures.h"
#include "hosts.h"
#include "interface.h"
#include "library.h"
#include "limited.h"
#include "objects.h"
#include "owned.h"
#include "refs.h"

namespace orv2_geo::python {

PyObject* adopted(PyObject* module, PyObject* arguments);

namespace {

// open_library(path): empty when it is in use then, else why not.
PyObject* open_library(PyObject*, PyObject* path) {
  Owned encoded;
  PyObject* bytes = nullptr;
  if (PyUnicode_FSConverter(path, &bytes) == 0) return nullptr;
  encoded = Owned(bytes);
  const std::string why_not = opened(characters(encoded));
  return text_of_c(why_not.c_str()).release();
}

PyObject* path_of_library(PyObject*, PyObject*) {
  return PyUnicode_DecodeFSDefault(library_path().c_str());
}

PyObject* version(PyObject*, PyObject*) { return PyLong_FromLong(library.orv2_version()); }

// failures(): the numbers that the library raises, with their words.
PyObject* failures(PyObject*, PyObject*) {
  Owned found(PyDict_New());
  if (!is_open()) return found.release();
  std::int32_t number = 0;
  const char* words = nullptr;
  for (std::size_t i = 0; found && library.orv2_failure_at(i, &number, &words) == 0; ++i) {
    const Owned key(PyLong_FromLong(number));
    const Owned text = key ? text_of_c(words) : Owned();
    if (!text || PyDict_SetItem(found.get(), key.get(), text.get()) != 0) return nullptr;
  }
  return found.release();
}

// described_class(index): its name, its registered name and how many members it has.
PyObject* described_class(PyObject*, PyObject* index) {
  orv2_class_info info{};
  const auto wanted = static_cast<std::size_t>(PyLong_AsSsize_t(index));
  if (PyErr_Occurred() != nullptr || !succeeded(library.orv2_class_at(wanted, &info)))
    return nullptr;
  return Py_BuildValue("ssn", info.name, info.registered_name,
                       static_cast<Py_ssize_t>(info.member_count));
}

PyObject* class_count(PyObject*, PyObject*) {
  return PyLong_FromSize_t(library.orv2_class_count());
}

// described_member(class, position): its name, kind, result and how many parameters it has.
PyObject* described_member(PyObject*, PyObject* arguments) {
  Py_ssize_t of = 0;
  Py_ssize_t position = 0;
  orv2_member_info info{};
  if (PyArg_ParseTuple(arguments, "nn", &of, &position) == 0) return nullptr;
  const std::int32_t status = library.orv2_member_at(static_cast<std::size_t>(of),
                                                     static_cast<std::size_t>(position), &info);
  if (!succeeded(status)) return nullptr;
  return Py_BuildValue("siin", info.name, static_cast<int>(info.kind),
                       static_cast<int>(info.result),
                       static_cast<Py_ssize_t>(info.parameter_count));
}

// described_parameter(class, position, i): its name, tag, whether it is optional, its
// default and what the member does with it.
PyObject* described_parameter(PyObject*, PyObject* arguments) {
  Py_ssize_t of = 0;
  Py_ssize_t position = 0;
  Py_ssize_t i = 0;
  if (PyArg_ParseTuple(arguments, "nnn", &of, &position, &i) == 0) return nullptr;
  const auto class_index = static_cast<std::size_t>(of);
  const auto member = static_cast<std::size_t>(position);
  const auto parameter = static_cast<std::size_t>(i);
  orv2_parameter_info info{};
  std::int32_t use = ORV2_READ;
  if (!succeeded(library.orv2_parameter_at(class_index, member, parameter, &info)) ||
      !succeeded(library.orv2_parameter_use(class_index, member, parameter, &use))) {
    return nullptr;
  }
  return Py_BuildValue(
      "siiii", info.name, static_cast<int>(info.type), static_cast<int>(info.optional),
      static_cast<int>(info.has_default != 0 ? info.default_value : 0), static_cast<int>(use));
}

// create(name): a new object.
PyObject* create(PyObject*, PyObject* name) {
  const Owned text = text_in(name);
  const Owned bytes = text ? c_text_of(text.get()) : Owned();
  orv2_handle handle = 0;
  if (!bytes || !succeeded(library.orv2_create(characters(bytes), &handle))) return nullptr;
  Owned made = serve_this_thread() ? object_behind(handle) : Owned();
  release(handle);  // the object has a reference of its own
  return made.release();
}

PyObject* class_of(PyObject*, PyObject* given) {
  orv2_handle handle = 0;
  std::size_t index = 0;
  if (!number_in(given, handle) || !succeeded(library.orv2_class_of(handle, &index)))
    return nullptr;
  return PyLong_FromSize_t(index);
}

PyObject* release_handle(PyObject*, PyObject* given) {
  orv2_handle handle = 0;
  if (!number_in(given, handle)) return nullptr;
  release(handle);
  return none();
}

// find_member(object, name, kind): the position. RunFailure 438.
PyObject* find_member(PyObject*, PyObject* arguments) {
  PyObject* object = nullptr;
  PyObject* name = nullptr;
  int kind = ORV2_ANY;
  orv2_handle handle = 0;
  if (PyArg_ParseTuple(arguments, "OUi", &object, &name, &kind) == 0) return nullptr;
  const Owned bytes = c_text_of(name);
  std::size_t position = 0;
  if (!bytes) return nullptr;
  if (!handle_of_object(object, handle)) return raise(number::invalid_call);
  if (!succeeded(library.orv2_find_member(handle, characters(bytes), kind, &position)))
    return nullptr;
  return PyLong_FromSize_t(position);
}

// number_of_text(text): the number that it is read as. RunFailure 13.
PyObject* number_of_text(PyObject*, PyObject* text) {
  const Owned plain_text = text_in(text);
  if (!plain_text) return nullptr;
  const Units units(plain_text.get());
  double value = 0.0;
  if (!units || !succeeded(library.orv2_number_of_text(units.data(), units.count(), &value)))
    return nullptr;
  return PyFloat_FromDouble(value);
}

// plain(value): the bool, int, float or str that a value is worth. RunFailure 13.
PyObject* plain_value(PyObject*, PyObject* value) { return plain(value).release(); }

// as_i32(value), as_text(value): what a parameter of that type takes.
PyObject* as_i32(PyObject*, PyObject* value) {
  std::int32_t number = 0;
  return stored_i32(value, number) ? PyLong_FromLong(number) : nullptr;
}
PyObject* as_text(PyObject*, PyObject* value) { return text_in(value).release(); }

// fits(value, tag): whether a number or a flag can be had from a value.
PyObject* fits(PyObject*, PyObject* arguments) {
  PyObject* value = nullptr;
  int tag = 0;
  if (PyArg_ParseTuple(arguments, "Oi", &value, &tag) == 0) return nullptr;
  Cell cell{};
  if (stored(value, static_cast<std::uint16_t>(tag), cell)) return PyBool_FromLong(1);
  if (PyErr_ExceptionMatches(lent.run_failure) == 0) return nullptr;
  PyErr_Clear();
  return PyBool_FromLong(0);
}

// flag(value): the 16 bits of a flag.
PyObject* flag(PyObject*, PyObject* value) {
  Cell cell{};
  return stored(value, ORV2_BOOL, cell) ? PyLong_FromLong(cell.i16) : nullptr;
}

PyObject* lent_count(PyObject*, PyObject*) { return PyLong_FromLong(lent_objects()); }

// lend_handle(object): a handle for it, and whether it is to be released.
PyObject* lend_handle(PyObject*, PyObject* target) {
  orv2_handle handle = 0;
  bool owned = false;
  if (!lend(target, handle, owned)) return nullptr;
  PyObject* const told =
      Py_BuildValue("KO", static_cast<unsigned long long>(handle), owned ? Py_True : Py_False);
  if (told == nullptr && owned) release(handle);
  return told;
}

// framed(function, arguments): a function that answers with a status and may call back.
PyObject* framed(PyObject*, PyObject* arguments) {
  PyObject* function = nullptr;
  PyObject* given = nullptr;
  if (PyArg_ParseTuple(arguments, "OO!", &function, &PyTuple_Type, &given) == 0) return nullptr;
  Frame frame;
  const Owned answer(PyObject_CallObject(function, given));
  if (!answer) return nullptr;
  const long status = PyLong_AsLong(answer.get());
  if (status == -1 && PyErr_Occurred() != nullptr) return nullptr;
  if (!frame.ended_well(static_cast<std::int32_t>(status))) return nullptr;
  return none();
}

// use(name, object): what Python's side lends.
PyObject* use(PyObject*, PyObject* arguments) {
  const char* name = nullptr;
  PyObject* object = nullptr;
  if (PyArg_ParseTuple(arguments, "sO", &name, &object) == 0) return nullptr;
  const struct {
    const char* name;
    PyObject*& place;
  } places[] = {
      {"run_failure", lent.run_failure},
      {"warning", lent.warning},
      {"warn", lent.warn},
      {"set_property", lent.set_property},
      {"call", lent.call},
      {"wrapped", lent.wrapped},
      {"error_box", lent.error_box},
      {"show_modal", lent.show_modal},
      {"handle_events", lent.handle_events},
      {"grown", lent.grown},
      {"open", lent.open},
  };
  for (const auto& one : places) {
    if (std::string(one.name) != name) continue;
    Py_INCREF(object);
    PyObject* const before = std::exchange(one.place, object);
    if (before != Py_None) Py_DECREF(before);  // None at the start, which is nobody's
    return none();
  }
  PyErr_Format(PyExc_KeyError, "%s", name);
  return nullptr;
}

PyMethodDef functions[] = {
    {"open_library", open_library, METH_O, nullptr},
    {"path_of_library", path_of_library, METH_NOARGS, nullptr},
    {"version", version, METH_NOARGS, nullptr},
    {"failures", failures, METH_NOARGS, nullptr},
    {"class_count", class_count, METH_NOARGS, nullptr},
    {"described_class", described_class, METH_O, nullptr},
    {"described_member", described_member, METH_VARARGS, nullptr},
    {"described_parameter", described_parameter, METH_VARARGS, nullptr},
    {"create", create, METH_O, nullptr},
    {"class_of", class_of, METH_O, nullptr},
    {"adopted", adopted, METH_VARARGS, nullptr},
    {"release", release_handle, METH_O, nullptr},
    {"find_member", find_member, METH_VARARGS, nullptr},
    {"number_of_text", number_of_text, METH_O, nullptr},
    {"plain", plain_value, METH_O, nullptr},
    {"as_i32", as_i32, METH_O, nullptr},
    {"as_text", as_text, METH_O, nullptr},
    {"fits", fits, METH_VARARGS, nullptr},
    {"flag", flag, METH_O, nullptr},
    {"lent_count", lent_count, METH_NOARGS, nullptr},
    {"lend_handle", lend_handle, METH_O, nullptr},
    {"framed", framed, METH_VARARGS, nullptr},
    {"call_like_member", call_like_member, METH_VARARGS, nullptr},
    {"expect_own_thread", expect_own_thread, METH_O, nullptr},
    {"call_rows", call_rows, METH_VARARGS, nullptr},
    {"is_column", is_column, METH_VARARGS, nullptr},
    {"use", use, METH_VARARGS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

// Its types and what it lends are the process's: another interpreter in it cannot have them.
bool is_main_interpreter() {
  if (PyInterpreterState_GetID(PyInterpreterState_Get()) == 0) return true;
  PyErr_SetString(
      PyExc_ImportError,
      "orv2_geo works in the main interpreter of a process only, not in a sub-interpreter");
  return false;
}

int execute(PyObject* module) {
  if (!is_main_interpreter()) return -1;
  const bool well = make_ref_type(module) && make_arrays(module) && make_hosts(module) &&
                    make_objects(module) && PyModule_AddFunctions(module, interface_functions) == 0;
  return well ? 0 : -1;
}

PyModuleDef_Slot slots[] = {
    {Py_mod_exec, reinterpret_cast<void*>(execute)},
    {0, nullptr},
};

PyModuleDef definition = {PyModuleDef_HEAD_INIT,
                          "orv2_geo._core",
                          nullptr,
                          0,
                          functions,
                          slots,
                          nullptr,
                          nullptr,
                          nullptr};

}  // namespace

}  // namespace orv2_geo::python

// Python finds the module by this name.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
PyMODINIT_FUNC PyInit__core() { return PyModuleDef_Init(&orv2_geo::python::definition); }
