#include "interface.h"

#include <cstdint>

#include "failures.h"
#include "numbers.h"
#include "objects.h"

namespace orv2_geo::python {

namespace {

// ---- Boxes and forms of a thread ----------------------------------------------------

// The failure that the box tells of as (number, description, source), else None.
Owned told_failure() {
  orv2_failure told{};
  if (library.orv2_trapped_failure(&told) != 0) return Owned::to(Py_None);
  const Owned description = text_of_c(told.description);
  const Owned source = description ? text_of_c(told.source) : Owned();
  if (!source) return {};
  return Owned(
      Py_BuildValue("iOO", static_cast<int>(told.number), description.get(), source.get()));
}

std::int32_t error_box(void*, const char* text, std::int32_t flags, const char* caption) {
  return answering([&] {
    const Owned failure = told_failure();
    const Owned words = failure ? text_of_c(text) : Owned();
    if (!words) return false;
    const Owned title = caption != nullptr ? text_of_c(caption) : Owned::to(Py_None);
    if (!title) return false;
    return static_cast<bool>(Owned(PyObject_CallFunction(
        lent.error_box, "OiOO", words.get(), static_cast<int>(flags), title.get(), failure.get())));
  });
}

std::int32_t show_modal(void*, orv2_form* form) {
  return answering([&] {
    const Owned address(PyLong_FromVoidPtr(form));
    if (!address) return false;
    return static_cast<bool>(
        Owned(PyObject_CallFunctionObjArgs(lent.show_modal, address.get(), nullptr)));
  });
}

std::int32_t handle_events(void*) {
  return answering(
      [] { return static_cast<bool>(Owned(PyObject_CallObject(lent.handle_events, nullptr))); });
}

// Boxes of a script become warnings and failures; forms are the system's.
constexpr orv2_user_interface for_scripts{sizeof(orv2_user_interface), nullptr, error_box, nullptr,
                                          nullptr};
// Everything is shown by an object of Python's side.
constexpr orv2_user_interface by_object{sizeof(orv2_user_interface), nullptr, error_box, show_modal,
                                        handle_events};

thread_local bool served = false;

enum Who : long { scripts = 0, object = 1, console = 2, system = 3 };

std::int32_t install(long who) {
  switch (who) {
    case scripts: return library.orv2_set_user_interface(&for_scripts);
    case object: return library.orv2_set_user_interface(&by_object);
    case console: return library.orv2_set_console_interface();
    default: return library.orv2_set_user_interface(nullptr);
  }
}

// install_interface(who): from now on, on this thread.
PyObject* install_interface(PyObject*, PyObject* who) {
  const long wanted = PyLong_AsLong(who);
  if (wanted == -1 && PyErr_Occurred() != nullptr) return nullptr;
  if (!succeeded(install(wanted))) return nullptr;
  served = true;
  set_waiting(wanted != scripts);
  return none();
}

PyObject* set_owner_window(PyObject*, PyObject* window) {
  const unsigned long long wanted = PyLong_AsUnsignedLongLong(window);
  if (PyErr_Occurred() != nullptr) return nullptr;
  return none_after(library.orv2_set_owner_window(wanted));
}

// ---- What a form is made of ---------------------------------------------------------

// The form at an address. False, with an exception, for what is no address.
bool form_in(PyObject* given, orv2_form*& form) {
  form = static_cast<orv2_form*>(PyLong_AsVoidPtr(given));
  return PyErr_Occurred() == nullptr;
}

// A converter of PyArg_ParseTuple's, for "O&".
int convert_form(PyObject* given, void* form) {
  return form_in(given, *static_cast<orv2_form**>(form)) ? 1 : 0;
}

// The texts of a description; empty ones where memory ran out, with the exception.
template <class... Texts>
PyObject* described(const char* format, Texts... values) {
  PyObject* const made = Py_BuildValue(format, values...);
  return PyErr_Occurred() == nullptr ? made : (Py_XDECREF(made), nullptr);
}

PyObject* text(const char* utf8) { return text_of_c(utf8).release(); }

PyObject* form_describe(PyObject*, PyObject* given) {
  orv2_form* form = nullptr;
  orv2_form_info info{};
  if (!form_in(given, form) || !succeeded(library.orv2_form_describe(form, &info))) return nullptr;
  return described("NNiiin", text(info.name), text(info.caption), static_cast<int>(info.width),
                   static_cast<int>(info.height), static_cast<int>(info.open),
                   static_cast<Py_ssize_t>(info.control_count));
}

PyObject* form_frame(PyObject*, PyObject* given) {
  orv2_form* form = nullptr;
  orv2_form_frame frame{};
  if (!form_in(given, form) || !succeeded(library.orv2_form_describe_frame(form, &frame)))
    return nullptr;
  return described("iiiiiiii", static_cast<int>(frame.start), static_cast<int>(frame.left),
                   static_cast<int>(frame.top), static_cast<int>(frame.tool_window),
                   static_cast<int>(frame.resizable), static_cast<int>(frame.minimise_box),
                   static_cast<int>(frame.maximise_box), static_cast<int>(frame.in_task_bar));
}

// A form and a control's place in it.
struct Place {
  orv2_form* form = nullptr;
  std::size_t index = 0;
};
bool place_in(PyObject* arguments, Place& place) {
  orv2_form* form = nullptr;
  Py_ssize_t index = 0;
  if (PyArg_ParseTuple(arguments, "O&n", convert_form, &form, &index) == 0) return false;
  place = {form, static_cast<std::size_t>(index)};
  return true;
}

PyObject* form_control(PyObject*, PyObject* arguments) {
  Place at;
  orv2_control_info info{};
  if (!place_in(arguments, at) || !succeeded(library.orv2_form_control(at.form, at.index, &info)))
    return nullptr;
  return described("NiiiiiiNNiiiiddd", text(info.name), static_cast<int>(info.kind),
                   static_cast<int>(info.left), static_cast<int>(info.top),
                   static_cast<int>(info.width), static_cast<int>(info.height),
                   static_cast<int>(info.tab_index), text(info.text), text(info.container),
                   static_cast<int>(info.visible), static_cast<int>(info.enabled),
                   static_cast<int>(info.is_default), static_cast<int>(info.is_cancel), info.value,
                   info.min, info.max);
}

PyObject* form_grid(PyObject*, PyObject* arguments) {
  Place at;
  orv2_grid_info info{};
  if (!place_in(arguments, at) || !succeeded(library.orv2_form_grid(at.form, at.index, &info)))
    return nullptr;
  return described("Niiii", text(info.format_string), static_cast<int>(info.rows),
                   static_cast<int>(info.cols), static_cast<int>(info.fixed_rows),
                   static_cast<int>(info.fixed_cols));
}

PyObject* form_look(PyObject*, PyObject* arguments) {
  Place at;
  orv2_control_look look{};
  if (!place_in(arguments, at) || !succeeded(library.orv2_form_look(at.form, at.index, &look)))
    return nullptr;
  return described("iii", static_cast<int>(look.alignment), static_cast<int>(look.background),
                   static_cast<int>(look.sizes_itself));
}

PyObject* form_font(PyObject*, PyObject* arguments) {
  Place at;
  orv2_grid_font font{};
  if (!place_in(arguments, at) || !succeeded(library.orv2_form_font(at.form, at.index, &font)))
    return nullptr;
  return described("Ndi", text(font.name), font.points, static_cast<int>(font.weight));
}

PyObject* form_alignment(PyObject*, PyObject* arguments) {
  orv2_form* form = nullptr;
  Py_ssize_t index = 0;
  int col = 0;
  std::int32_t alignment = 0;
  if (PyArg_ParseTuple(arguments, "O&ni", convert_form, &form, &index, &col) == 0) return nullptr;
  const std::int32_t status =
      library.orv2_form_alignment(form, static_cast<std::size_t>(index), col, &alignment);
  return succeeded(status) ? PyLong_FromLong(alignment) : nullptr;
}

PyObject* form_cell(PyObject*, PyObject* arguments) {
  orv2_form* form = nullptr;
  Py_ssize_t index = 0;
  int row = 0;
  int col = 0;
  const char* shown = nullptr;
  if (PyArg_ParseTuple(arguments, "O&nii", convert_form, &form, &index, &row, &col) == 0)
    return nullptr;
  const std::int32_t status =
      library.orv2_form_cell(form, static_cast<std::size_t>(index), row, col, &shown);
  return succeeded(status) ? text(shown) : nullptr;
}

PyObject* form_focus(PyObject*, PyObject* given) {
  orv2_form* form = nullptr;
  const char* name = nullptr;
  const bool well = form_in(given, form) && succeeded(library.orv2_form_focus(form, &name));
  return well ? text(name) : nullptr;
}

// ---- What a person does on it -------------------------------------------------------

template <class Action>
PyObject* acted(Action&& action) {
  Frame frame;
  std::int32_t status = 0;
  {
    const Unlocked meanwhile(true);
    status = action();
  }
  return frame.ended_well(status) ? none() : nullptr;
}

// form_act(form, action, name, text): by the action's number, in the order of the header.
PyObject* form_act(PyObject*, PyObject* arguments) {
  orv2_form* form = nullptr;
  int action = 0;
  PyObject* name_given = nullptr;
  PyObject* text_given = nullptr;
  if (PyArg_ParseTuple(arguments, "O&i|UU", convert_form, &form, &action, &name_given,
                       &text_given) == 0)
    return nullptr;
  const Owned name_bytes = name_given != nullptr ? c_text_of(name_given) : Owned::to(Py_None);
  const Owned text_bytes = text_given != nullptr ? c_text_of(text_given) : Owned::to(Py_None);
  if (!name_bytes || !text_bytes) return nullptr;
  const char* const name = name_given != nullptr ? characters(name_bytes) : nullptr;
  const char* const words = text_given != nullptr ? characters(text_bytes) : nullptr;
  return acted([&] {
    switch (action) {
      case 0: return library.orv2_form_click(form, name);
      case 1: return library.orv2_form_select(form, name);
      case 2: return library.orv2_form_set_text(form, name, words);
      case 3: return library.orv2_form_set_focus(form, name);
      case 4: return library.orv2_form_press_enter(form);
      case 5: return library.orv2_form_press_escape(form);
      default: return library.orv2_form_close(form);
    }
  });
}

// ---- Failures in words --------------------------------------------------------------

// Lets `explain` look at the RunFailure in flight; whatever it does, that one goes on.
template <class Explain>
void explained(Explain&& explain) {
  if (PyErr_ExceptionMatches(lent.run_failure) == 0) return;
  const Owned failure = taken_exception();
  if (!Owned(explain(failure.get()))) PyErr_Clear();
  PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(failure.get())), failure.get());
}

}  // namespace

bool serve_this_thread() {
  if (served) return true;
  std::int16_t installed = 0;
  if (!succeeded(library.orv2_has_user_interface(&installed))) return false;
  if (installed == 0 && !succeeded(install(scripts))) return false;
  served = true;
  return true;
}

void explain_refusal(Member* member, std::size_t place, PyObject* given, const char* source) {
  PyObject* const called = member != nullptr ? &member->ob_base : Py_None;
  explained([&](PyObject* failure) {
    return PyObject_CallMethod(failure, "_refused", "OnOs", called, static_cast<Py_ssize_t>(place),
                               given, source);
  });
}

void explain_failure(Member* member, PyObject* const* given, std::size_t count) {
  if (member == nullptr) return;
  explained([&](PyObject* failure) -> PyObject* {
    const Owned arguments(PyTuple_New(static_cast<Py_ssize_t>(count)));
    for (std::size_t i = 0; arguments && i < count; ++i) {
      PyTuple_SetItem(arguments.get(), static_cast<Py_ssize_t>(i), Owned::to(given[i]).release());
    }
    return arguments
               ? PyObject_CallMethod(failure, "_failed", "OO", &member->ob_base, arguments.get())
               : nullptr;
  });
}

PyMethodDef interface_functions[] = {
    {"install_interface", install_interface, METH_O, nullptr},
    {"set_owner_window", set_owner_window, METH_O, nullptr},
    {"form_describe", form_describe, METH_O, nullptr},
    {"form_frame", form_frame, METH_O, nullptr},
    {"form_control", form_control, METH_VARARGS, nullptr},
    {"form_grid", form_grid, METH_VARARGS, nullptr},
    {"form_look", form_look, METH_VARARGS, nullptr},
    {"form_font", form_font, METH_VARARGS, nullptr},
    {"form_alignment", form_alignment, METH_VARARGS, nullptr},
    {"form_cell", form_cell, METH_VARARGS, nullptr},
    {"form_focus", form_focus, METH_O, nullptr},
    {"form_act", form_act, METH_VARARGS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace orv2_geo::python
