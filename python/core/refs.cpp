#include "refs.h"

#include <cstring>

#include "failures.h"
#include "hosts.h"

namespace orv2_geo::python {

PyTypeObject* ref_type = nullptr;

namespace {

orv2_handle& handle_at(Ref* ref) { return *static_cast<orv2_handle*>(ref->at); }

std::size_t size_of(std::uint16_t type) {
  switch (type) {
    case ORV2_F32:
    case ORV2_I32: return 4;
    case ORV2_I16:
    case ORV2_BOOL: return 2;
    default: return 8;
  }
}

// ---- Texts and objects in a call ----------------------------------------------------

Owned text_at(Ref* ref) {
  const std::uint16_t* units = nullptr;
  std::size_t count = 0;
  if (!succeeded(library.orv2_text_get(ref->cell.handle, &units, &count))) return {};
  return Owned(text_of_units(units, count));
}

bool write_text(Ref* ref, PyObject* value) {
  const Owned text = text_in(value);
  if (!text) return false;
  const Units units(text.get());
  return units && succeeded(library.orv2_text_set(ref->cell.handle, units.data(), units.count()));
}

// An object as a handle that stays lent until the call is over: the handle belongs to its
// object in `held`, and is in `handles` when it is to be released.
bool lend_for_call(PyObject* value, PyObject* held, PyObject* handles, orv2_handle& handle) {
  bool owned = false;
  if (!lend(value, handle, owned)) return false;
  const Owned key(PyLong_FromUnsignedLongLong(handle));
  if (key && (!owned || PyList_Append(handles, key.get()) == 0)) {
    return PyDict_SetItem(held, key.get(), value) == 0;  // released with `handles` on failure
  }
  if (owned) release(handle);
  return false;
}

bool write_object(Ref* ref, PyObject* value) {
  orv2_handle handle = 0;
  if (!lend_for_call(value, ref->held, ref->handles, handle)) return false;
  handle_at(ref) = handle;
  return true;
}

Owned object_at(Ref* ref) {
  const orv2_handle handle = handle_at(ref);
  const Owned key(PyLong_FromUnsignedLongLong(handle));
  if (!key) return {};
  PyObject* const known = PyDict_GetItemWithError(ref->held, key.get());
  if (known != nullptr) return Owned::to(known);
  return PyErr_Occurred() != nullptr ? Owned() : object_behind(handle);
}

void release_lent(PyObject* handles) noexcept {
  const Py_ssize_t count = handles != nullptr ? PyList_Size(handles) : 0;
  for (Py_ssize_t i = 0; i < count; ++i) {
    release(PyLong_AsUnsignedLongLong(PyList_GetItem(handles, i)));
  }
  Py_XDECREF(handles);
}

// A call of another thread has it: texts and objects are that thread's own.
bool is_elsewhere(const Ref* ref) { return ref->uses != 0 && ref->thread != this_thread(); }
bool is_kept_from_here(const Ref* ref) {
  return (ref->type == ORV2_TEXT || ref->type == ORV2_OBJECT) && is_elsewhere(ref);
}

// ---- A value outside a call ---------------------------------------------------------

// A float in its own memory, anything else as it is.
void keep(Ref* ref, PyObject* value) {
  Contents now;
  now.hold(value);
  now.swap_with(ref);
}

// ---- The type -----------------------------------------------------------------------

PyObject* ref_new(PyTypeObject* of, PyObject*, PyObject*) {
  PyObject* const made = new_object(of);
  if (made == nullptr) return nullptr;
  Ref* const ref = ref_in(made);
  ref->at = &ref->cell;
  ref->type = ORV2_NONE;
  ref->held = PyLong_FromLong(0);
  if (ref->held != nullptr) return made;
  Py_DECREF(made);
  return nullptr;
}

int ref_init(PyObject* self, PyObject* arguments, PyObject* named) {
  static char value_name[] = "value";
  static char* names[] = {value_name, nullptr};
  PyObject* value = nullptr;
  if (PyArg_ParseTupleAndKeywords(arguments, named, "|O:Ref", names, &value) == 0) return -1;
  return value == nullptr || write(ref_in(self), value) ? 0 : -1;
}

int ref_traverse(PyObject* self, visitproc visit, void* arg) {
#if PY_VERSION_HEX >= 0x03090000
  Py_VISIT(Py_TYPE(self));
#endif
  Py_VISIT(ref_in(self)->held);
  return 0;
}

int ref_clear(PyObject* self) {
  Ref* const ref = ref_in(self);
  if (ref->uses == 0) Py_CLEAR(ref->held);
  return 0;
}

void end_ref(Ref* ref) {
  Py_CLEAR(ref->held);
  Py_CLEAR(ref->handles);
  free_object(&ref->ob_base);
}

void ref_dealloc(PyObject* self) {
  PyObject_GC_UnTrack(self);
  Ref* const ref = ref_in(self);
  if (ref->weak != nullptr) PyObject_ClearWeakRefs(self);
  end_in_turn(ref, end_ref);
}

PyObject* get_value(PyObject* self, void*) { return value_of(ref_in(self)).release(); }

int set_value(PyObject* self, PyObject* value, void*) {
  if (value == nullptr) {
    PyErr_SetString(PyExc_AttributeError, "a Ref always has a value");
    return -1;
  }
  return write(ref_in(self), value) ? 0 : -1;
}

// ---- As a number --------------------------------------------------------------------

// Refs in Refs, and one that holds itself, end as any recursion does.
class Deeper {
 public:
  Deeper() noexcept : well_(Py_EnterRecursiveCall(" in a Ref") == 0) {}
  Deeper(const Deeper&) = delete;
  Deeper& operator=(const Deeper&) = delete;
  ~Deeper() {
    if (well_) Py_LeaveRecursiveCall();
  }
  explicit operator bool() const noexcept { return well_; }

 private:
  bool well_;
};

// What an operand is worth: a Ref its value.
Owned operand(PyObject* object) {
  return is_ref(object) ? value_of(ref_in(object)) : Owned::to(object);
}

template <PyObject* (*operation)(PyObject*, PyObject*)>
PyObject* binary(PyObject* left, PyObject* right) {
  const Deeper level;
  const Owned a = level ? operand(left) : Owned();
  const Owned b = a ? operand(right) : Owned();
  return b ? in_python(operation, a.get(), b.get()) : nullptr;
}

// The variable itself takes the outcome.
template <PyObject* (*operation)(PyObject*, PyObject*)>
PyObject* in_place(PyObject* left, PyObject* right) {
  const Owned outcome(binary<operation>(left, right));
  if (!outcome || !write(ref_in(left), outcome.get())) return nullptr;
  Py_INCREF(left);
  return left;
}

template <PyObject* (*operation)(PyObject*)>
PyObject* unary(PyObject* self) {
  const Deeper level;
  const Owned value = level ? value_of(ref_in(self)) : Owned();
  return value ? in_python(operation, value.get()) : nullptr;
}

PyObject* power(PyObject* left, PyObject* right, PyObject* modulus) {
  const Deeper level;
  const Owned a = level ? operand(left) : Owned();
  const Owned b = a ? operand(right) : Owned();
  const Owned m = b ? operand(modulus) : Owned();
  return m ? PyNumber_Power(a.get(), b.get(), m.get()) : nullptr;
}

PyObject* power_in_place(PyObject* left, PyObject* right, PyObject* modulus) {
  const Owned outcome(power(left, right, modulus));
  if (!outcome || !write(ref_in(left), outcome.get())) return nullptr;
  Py_INCREF(left);
  return left;
}

int truth(PyObject* self) {
  const Deeper level;
  const Owned value = level ? value_of(ref_in(self)) : Owned();
  return value ? PyObject_IsTrue(value.get()) : -1;
}

PyObject* compare(PyObject* left, PyObject* right, int operation) {
  const Owned a = operand(left);
  const Owned b = a ? operand(right) : Owned();
  return b ? PyObject_RichCompare(a.get(), b.get(), operation) : nullptr;
}

PyObject* show(PyObject* self) {
  const Owned value = value_of(ref_in(self));
  return value ? PyUnicode_FromFormat("Ref(%R)", value.get()) : nullptr;
}

// ---- Methods ------------------------------------------------------------------------

PyObject* format(PyObject* self, PyObject* spec) {
  if (!PyUnicode_Check(spec)) {
    PyErr_SetString(PyExc_TypeError, "a format is a str");
    return nullptr;
  }
  const Owned value = value_of(ref_in(self));
  return value ? PyObject_Format(value.get(), spec) : nullptr;
}

PyObject* rounded(PyObject* self, PyObject* arguments) {
  const Owned value = value_of(ref_in(self));
  const Owned method = value ? Owned(PyObject_GetAttrString(value.get(), "__round__")) : Owned();
  return method ? PyObject_CallObject(method.get(), arguments) : nullptr;
}

// What the value makes of itself by a method of its own, as math.floor asks for it.
constexpr const char* trunc_name = "__trunc__";
constexpr const char* floor_name = "__floor__";
constexpr const char* ceil_name = "__ceil__";
template <const char* const* name>
PyObject* whole(PyObject* self, PyObject*) {
  const Owned value = value_of(ref_in(self));
  return value ? PyObject_CallMethod(value.get(), *name, nullptr) : nullptr;
}

PyObject* reduce(PyObject* self, PyObject*) {
  const Owned value = value_of(ref_in(self));
  return value ? Py_BuildValue("O(O)", Py_TYPE(self), value.get()) : nullptr;
}

PyMethodDef methods[] = {
    {"__format__", format, METH_O, nullptr},
    {"__round__", rounded, METH_VARARGS, nullptr},
    {"__trunc__", whole<&trunc_name>, METH_NOARGS, nullptr},
    {"__floor__", whole<&floor_name>, METH_NOARGS, nullptr},
    {"__ceil__", whole<&ceil_name>, METH_NOARGS, nullptr},
    {"__reduce__", reduce, METH_NOARGS, nullptr},
    {"__class_getitem__", of_type, METH_O | METH_CLASS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

PyGetSetDef properties[] = {
    {"value", get_value, set_value, "The variable's value, in the middle of a call too.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

PyMemberDef layout[] = {
    {"__weaklistoffset__", T_PYSSIZET, offsetof(Ref, weak), READONLY, nullptr},
    {nullptr, 0, 0, 0, nullptr},
};

constexpr const char* description =
    "Ref(value=0)\n--\n\n"
    "A variable passed by reference.\n\n"
    "`value` reads and writes it. The variable takes the type of the parameter that it is\n"
    "given for; after the call, and in the middle of it too, `value` shows what the library\n"
    "wrote. The same Ref given twice is one variable. A Ref counts, compares and formats\n"
    "like its value; `+=` and the like change the variable itself.\n\n"
    "    bearing = Ref(0.0)\n"
    "    algorismos.Azimut(1.0, 0.0, bearing)\n"
    "    bearing.value";

PyType_Slot slots[] = {
    {Py_tp_doc, const_cast<char*>(description)},
    {Py_tp_new, slot(ref_new)},
    {Py_tp_init, slot(ref_init)},
    {Py_tp_dealloc, slot(ref_dealloc)},
    {Py_tp_traverse, slot(ref_traverse)},
    {Py_tp_clear, slot(ref_clear)},
    {Py_tp_repr, slot(show)},
    {Py_tp_richcompare, slot(compare)},
    {Py_tp_hash, slot(PyObject_HashNotImplemented)},
    {Py_tp_methods, methods},
    {Py_tp_getset, properties},
    {Py_tp_members, layout},
    {Py_nb_float, slot(unary<PyNumber_Float>)},
    {Py_nb_int, slot(unary<PyNumber_Long>)},
    {Py_nb_bool, slot(truth)},
    {Py_nb_negative, slot(unary<PyNumber_Negative>)},
    {Py_nb_positive, slot(unary<PyNumber_Positive>)},
    {Py_nb_absolute, slot(unary<PyNumber_Absolute>)},
    {Py_nb_add, slot(binary<PyNumber_Add>)},
    {Py_nb_subtract, slot(binary<PyNumber_Subtract>)},
    {Py_nb_multiply, slot(binary<PyNumber_Multiply>)},
    {Py_nb_true_divide, slot(binary<PyNumber_TrueDivide>)},
    {Py_nb_floor_divide, slot(binary<PyNumber_FloorDivide>)},
    {Py_nb_remainder, slot(binary<PyNumber_Remainder>)},
    {Py_nb_divmod, slot(binary<PyNumber_Divmod>)},
    {Py_nb_power, slot(power)},
    {Py_nb_inplace_add, slot(in_place<PyNumber_Add>)},
    {Py_nb_inplace_subtract, slot(in_place<PyNumber_Subtract>)},
    {Py_nb_inplace_multiply, slot(in_place<PyNumber_Multiply>)},
    {Py_nb_inplace_true_divide, slot(in_place<PyNumber_TrueDivide>)},
    {Py_nb_inplace_floor_divide, slot(in_place<PyNumber_FloorDivide>)},
    {Py_nb_inplace_remainder, slot(in_place<PyNumber_Remainder>)},
    {Py_nb_inplace_power, slot(power_in_place)},
    {0, nullptr},
};

PyType_Spec spec = {"orv2_geo.Ref", sizeof(Ref), 0,
                    Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_HAVE_GC, slots};

}  // namespace

Owned value_of(Ref* ref) {
  if (is_kept_from_here(ref)) return refused(number::invalid_call), Owned();
  if (is_scalar(ref->type)) return Owned(shown(ref->type, ref->at));
  if (ref->type == ORV2_TEXT) return text_at(ref);
  if (ref->type == ORV2_OBJECT) return object_at(ref);
  return Owned::to(ref->held != nullptr ? ref->held : Py_None);
}

bool write(Ref* ref, PyObject* value) {
  if (ref->uses == 0) {
    keep(ref, value);
    return true;
  }
  if (is_kept_from_here(ref)) return refused(number::invalid_call);
  if (ref->type == ORV2_TEXT) return write_text(ref, value);
  if (ref->type == ORV2_OBJECT) return write_object(ref, value);
  const std::uint16_t type = ref->type;
  Cell cell{};
  if (!stored(value, type, cell)) return false;
  // The value's own code may have used the variable.
  if (ref->type != type) return refused(number::invalid_call);
  std::memcpy(ref->at, &cell, size_of(type));
  return true;
}

// ---- Contents -----------------------------------------------------------------------

Contents::~Contents() {
  if (type_ == ORV2_TEXT && own_text_) release(cell_.handle);
  release_lent(handles_);
  Py_XDECREF(held_);
}

void Contents::hold(PyObject* value) noexcept {
  if (PyFloat_CheckExact(value)) {
    type_ = ORV2_F64;
    cell_.f64 = PyFloat_AsDouble(value);
    return;
  }
  Py_INCREF(value);
  held_ = value;
}

void Contents::copy_cell(const Ref* ref) noexcept {
  type_ = ref->type;
  std::memcpy(&cell_, ref->at, size_of(type_));
}

void Contents::swap_with(Ref* ref) noexcept {
  std::swap(type_, ref->type);
  std::swap(cell_, ref->cell);
  std::swap(held_, ref->held);
  std::swap(handles_, ref->handles);
  own_text_ = ref->at == &ref->cell;
  ref->at = &ref->cell;
}

bool Contents::enter_text(PyObject* value) {
  const Owned text = text_in(value);
  if (!text) return false;
  const Units units(text.get());
  if (!units) return false;
  if (!succeeded(library.orv2_text_new(units.data(), units.count(), &cell_.handle))) return false;
  type_ = ORV2_TEXT;
  return true;
}

bool Contents::enter_object(PyObject* value) {
  held_ = PyDict_New();
  handles_ = held_ != nullptr ? PyList_New(0) : nullptr;
  if (handles_ == nullptr) return false;
  type_ = ORV2_OBJECT;
  return lend_for_call(value, held_, handles_, cell_.handle);
}

bool Contents::enter(std::uint16_t of_type, PyObject* value) {
  if (of_type == ORV2_TEXT) return enter_text(value);
  if (of_type == ORV2_OBJECT) return enter_object(value);
  if (!stored(value, of_type, cell_)) return false;
  type_ = of_type;
  return true;
}

// ---- In a call ----------------------------------------------------------------------

// The first call that has the variable gives it its type.
bool Bound::begin(Ref* ref, std::uint16_t type) {
  if (ref->type == type) {
    before_.copy_cell(ref);
  } else {
    const Owned value = value_of(ref);
    if (!value || !before_.enter(type, value.get())) return false;
    // The value's own code may have begun a call with the variable.
    if (ref->uses != 0) return refused(number::invalid_call);
    before_.swap_with(ref);
  }
  ref->thread = this_thread();
  first_ = true;
  return true;
}

bool Bound::bind(Ref* ref, std::uint16_t type, orv2_value& slot) {
  if (ref->uses == 0) {
    if (!begin(ref, type)) return false;
  } else if (ref->type != type) {
    return refused(number::type_mismatch);
  } else if (is_elsewhere(ref) && (!is_scalar(type) || ref->at != &ref->cell)) {
    return refused(number::invalid_call);
  }
  ++ref->uses;
  Py_INCREF(&ref->ob_base);
  ref_ = ref;
  slot.tag = static_cast<std::uint16_t>(type | ORV2_BYREF);
  if (type == ORV2_TEXT) {
    slot.as.handle = ref->cell.handle;
  } else {
    slot.as.pointer = ref->at;
  }
  return true;
}

bool Bound::settle() {
  Ref* const ref = ref_;
  // Still in the call: what reading it runs finds it so.
  const bool goes_back = ref->uses == 1 && !is_scalar(ref->type);
  const Owned last = goes_back ? value_of(ref) : Owned();
  if (goes_back && !last) return end(), false;
  ref_ = nullptr;
  --ref->uses;
  if (goes_back) keep(ref, last.get());
  Py_DECREF(&ref->ob_base);
  return true;
}

void Bound::end() noexcept {
  Ref* const ref = std::exchange(ref_, nullptr);
  if (ref == nullptr) return;
  if (--ref->uses == 0 && first_) before_.swap_with(ref);
  Py_DECREF(&ref->ob_base);
}

Owned ref_over(const orv2_value& value) {
  const std::uint16_t type = type_in(value.tag);
  if (!is_scalar(type) && type != ORV2_TEXT && type != ORV2_OBJECT) {
    raise(number::type_mismatch);
    return {};
  }
  Owned made(ref_new(ref_type, nullptr, nullptr));
  if (!made) return made;
  Ref* const ref = ref_in(made.get());
  if (type == ORV2_OBJECT) {
    Owned objects(PyDict_New());
    ref->handles = PyList_New(0);
    if (!objects || ref->handles == nullptr) return {};
    put_in_place(ref->held, objects.release());  // an int's place
  }
  ref->type = type;
  ref->uses = 1;
  ref->thread = this_thread();
  if (type == ORV2_TEXT) {
    ref->cell.handle = value.as.handle;
    ref->at = nullptr;  // not its own: let_go leaves the handle alone
  } else {
    ref->at = value.as.pointer;
  }
  return made;
}

bool let_go(Ref* ref) {
  Contents last;
  bool well = true;
  if (is_scalar(ref->type)) {
    last.copy_cell(ref);
  } else {
    const Owned value = value_of(ref);
    well = static_cast<bool>(value);
    last.hold(well ? value.get() : Py_None);
  }
  --ref->uses;
  last.swap_with(ref);
  return well;
}

bool make_ref_type(PyObject* module) {
  if (ref_type == nullptr) ref_type = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
  if (ref_type == nullptr) return false;
  Py_INCREF(ref_type);
  return PyModule_AddObject(module, "Ref", reinterpret_cast<PyObject*>(ref_type)) == 0;
}

}  // namespace orv2_geo::python
