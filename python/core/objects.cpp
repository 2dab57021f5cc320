#include "objects.h"

#include <array>
#include <cstring>

#include "arguments.h"
#include "failures.h"
#include "hosts.h"
#include "interface.h"
#include "refs.h"

namespace orv2_geo::python {

namespace {

PyTypeObject* object_type = nullptr;
PyTypeObject* member_type = nullptr;

// Whether a box or a form of this thread may wait for a person.
thread_local bool waiting = false;

bool is_class_of_objects(PyObject* of) {
  return PyType_Check(of) && PyType_IsSubtype(reinterpret_cast<PyTypeObject*>(of), object_type);
}

Object* object_of(PyObject* self) { return reinterpret_cast<Object*>(self); }
Member* member_of(PyObject* self) { return reinterpret_cast<Member*>(self); }

bool is_on_own_thread(const Object* object) noexcept {
  return object->thread == PyThread_get_thread_ident();
}

// Whether a call may last, or may wait for a person: other threads then run meanwhile.
bool may_last(const Member* member) { return waiting || !member->numbers_only; }

template <class Call>
PyObject* passed(const Called& called, PyObject* const* given, std::size_t count, bool lasting,
                 Call&& call) {
  Arguments arguments(called, given, count);
  if (!arguments.take()) return nullptr;
  orv2_value result{};
  Frame frame;
  std::int32_t status = 0;
  {
    const Unlocked meanwhile(lasting);
    status = call(arguments.values(), arguments.count(), &result);
  }
  if (frame.ended_well(status)) {
    Owned answer = taken_answer(result);
    return arguments.settle_with(answer) ? answer.release() : nullptr;
  }
  arguments.settle_beside();
  explain_failure(called.member, given, count);
  return nullptr;
}

PyObject* call_in_general(Member* member, orv2_handle handle, PyObject* const* given,
                          std::size_t count) {
  const Called called{member, member->source, member->parameters, member->count};
  return passed(called, given, count, may_last(member),
                [&](const orv2_value* values, std::size_t number, orv2_value* result) {
                  return library.orv2_call(handle, member->position, values, number, result);
                });
}

// ---- The way of numbers -------------------------------------------------------------

// Variables of a call, given back whatever happens.
class Used {
 public:
  Used() noexcept = default;
  Used(const Used&) = delete;
  Used& operator=(const Used&) = delete;
  ~Used() {
    while (count_ != 0) --refs_[--count_]->uses;
  }
  void add(Ref* ref) noexcept {
    ++ref->uses;
    refs_[count_++] = ref;
  }

 private:
  Ref* refs_[most_parameters];
  std::size_t count_ = 0;
};

// A number, a flag or a variable that has the parameter's type already: nothing is
// converted, nothing can be refused. False for all others.
bool put_at_once(const MemberParameter& parameter, PyObject* given, orv2_value& slot, Cell& cell,
                 Used& used) {
  if (Py_TYPE(given) == ref_type) {
    Ref* const ref = ref_in(given);
    if (ref->type != parameter.type) return false;
    if (parameter.by_reference) {
      if (ref->at != &ref->cell) return false;  // the library's own
      used.add(ref);
      slot.tag = static_cast<std::uint16_t>(parameter.type | ORV2_BYREF);
      slot.as.pointer = ref->at;
      return true;
    }
    if (parameter.type != ORV2_F64) return false;
    cell.f64 = *static_cast<const double*>(ref->at);
  } else if (parameter.use != ORV2_READ || !stored_at_once(given, parameter.type, cell)) {
    return false;
  } else if (parameter.by_reference) {
    slot.tag = static_cast<std::uint16_t>(parameter.type | ORV2_BYREF);
    slot.as.pointer = &cell;
    return true;
  }
  slot.tag = parameter.type;
  std::memcpy(&slot.as, &cell, sizeof(cell));
  return true;
}

PyObject* call_with_numbers(Member* member, orv2_handle handle, PyObject* const* given) {
  orv2_value values[most_parameters];
  Cell cells[most_parameters];
  Used used;
  for (std::size_t i = 0; i < member->count; ++i) {
    if (!put_at_once(member->parameters[i], given[i], values[i], cells[i], used)) return omitted;
  }
  orv2_value result;
  result.tag = ORV2_NONE;
  Frame frame;
  const std::int32_t status =
      library.orv2_call(handle, member->position, values, member->count, &result);
  if (!frame.ended_well(status)) {
    explain_failure(member, given, member->count);
    return nullptr;
  }
  if (result.tag == ORV2_F64) return PyFloat_FromDouble(result.as.f64);
  return taken_answer(result).release();
}

// ---- Named arguments ----------------------------------------------------------------

PyObject* wrong_name(const Member* member, const char* words, PyObject* name) {
  PyErr_Format(PyExc_TypeError, words, member->name, name);
  return nullptr;
}

// Where a named argument goes; too many when it goes nowhere.
std::size_t place_of(const Member* member, PyObject* name) {
  for (std::size_t i = 0; i < member->count; ++i) {
    if (PyUnicode_Compare(PyTuple_GetItem(member->names, static_cast<Py_ssize_t>(i)), name) == 0)
      return i;
  }
  return most_parameters;
}

// TypeError as for any function.
PyObject* call_with_names(Member* member, orv2_handle handle, PyObject* const* given,
                          std::size_t count, PyObject* names) {
  std::array<PyObject*, most_parameters> placed;
  if (count > most_parameters) return call_in_general(member, handle, given, count);
  placed.fill(omitted);
  for (std::size_t i = 0; i < count; ++i) placed[i] = given[i];
  std::size_t last = count;
  const Py_ssize_t named = PyTuple_Size(names);
  for (Py_ssize_t i = 0; i < named; ++i) {
    PyObject* const name = PyTuple_GetItem(names, i);
    const std::size_t place = place_of(member, name);
    if (place == most_parameters) return wrong_name(member, "%U() has no parameter %R", name);
    if (place < count) return wrong_name(member, "%U() got %R twice", name);
    placed[place] = given[count + static_cast<std::size_t>(i)];
    last = std::max(last, place + 1);
  }
  return call_in_general(member, handle, placed.data(), last);
}

// ---- Members as Python sees them ----------------------------------------------------

PyObject* not_an_object(const Member* member) {
  PyErr_Format(PyExc_TypeError, "%U is called on an object of its class", member->qualified_name);
  return nullptr;
}

// The class of a member is always one of objects: see set_class.
bool belongs(const Member* member, PyObject* object) {
  if (reinterpret_cast<PyObject*>(Py_TYPE(object)) == member->of_class) return true;
  if (member->of_class == nullptr) return false;
  return PyType_IsSubtype(Py_TYPE(object), reinterpret_cast<PyTypeObject*>(member->of_class)) != 0;
}

PyObject* call_member(PyObject* self, PyObject* const* arguments, std::size_t flags,
                      PyObject* names) {
  Member* const member = member_of(self);
  const std::size_t count = positional(flags);
  if (count == 0 || !belongs(member, arguments[0])) return not_an_object(member);
  const Object* const object = object_of(arguments[0]);
  const orv2_handle handle = object->handle;
  const bool named = names != nullptr && PyTuple_Size(names) != 0;
  if (!named && member->numbers_only && count - 1 == member->count && !waiting) {
    PyObject* const answer = call_with_numbers(member, handle, arguments + 1);
    if (answer != omitted) return answer;
  }
  // Nothing of the arguments' own runs on another thread: the library comes too late to say so.
  if (!is_on_own_thread(object)) return raise(number::invalid_call, member->source);
  if (named) return call_with_names(member, handle, arguments + 1, count - 1, names);
  return call_in_general(member, handle, arguments + 1, count - 1);
}

PyObject* bound_method = nullptr;  // types.MethodType

PyObject* get_bound(PyObject* self, PyObject* object, PyObject*) {
  if (object == nullptr || object == Py_None) {
    Py_INCREF(self);
    return self;
  }
  return PyObject_CallFunctionObjArgs(bound_method, self, object, nullptr);
}

PyObject* shown_member(PyObject* self) {
  return PyUnicode_FromFormat("<member %U>", member_of(self)->qualified_name);
}

void member_dealloc(PyObject* self) {
  PyObject_GC_UnTrack(self);
  Member* const member = member_of(self);
  Py_CLEAR(member->name);
  Py_CLEAR(member->qualified_name);
  Py_CLEAR(member->names);
  Py_CLEAR(member->doc);
  Py_CLEAR(member->signature);
  Py_CLEAR(member->of_class);
  PyTypeObject* const of = Py_TYPE(self);
  reinterpret_cast<freefunc>(PyType_GetSlot(of, Py_tp_free))(self);
  Py_DECREF(of);
}

int member_traverse(PyObject* self, visitproc visit, void* arg) {
  Py_VISIT(Py_TYPE(self));
  Py_VISIT(member_of(self)->doc);
  Py_VISIT(member_of(self)->signature);
  Py_VISIT(member_of(self)->of_class);
  return 0;
}

int member_clear(PyObject* self) {
  Py_CLEAR(member_of(self)->doc);
  Py_CLEAR(member_of(self)->signature);
  Py_CLEAR(member_of(self)->of_class);
  return 0;
}

bool read_parameter(std::size_t class_index, Member* member, std::size_t i, PyObject* names) {
  orv2_parameter_info info{};
  std::int32_t use = ORV2_READ;
  if (!succeeded(library.orv2_parameter_at(class_index, member->position, i, &info)) ||
      !succeeded(library.orv2_parameter_use(class_index, member->position, i, &use))) {
    return false;
  }
  member->parameters[i] = {type_in(info.type), (info.type & ORV2_BYREF) != 0, info.optional != 0,
                           use};
  if (!is_scalar(type_in(info.type))) member->numbers_only = false;
  PyObject* const name = PyUnicode_InternFromString(info.name);
  return name != nullptr && PyTuple_SetItem(names, static_cast<Py_ssize_t>(i), name) == 0;
}

bool read_member(std::size_t class_index, Member* member) {
  orv2_class_info of_class{};
  orv2_member_info info{};
  if (!succeeded(library.orv2_class_at(class_index, &of_class)) ||
      !succeeded(library.orv2_member_at(class_index, member->position, &info))) {
    return false;
  }
  if (info.parameter_count > most_parameters) return refused(number::invalid_call);
  member->source = of_class.registered_name;
  member->count = info.parameter_count;
  member->result = info.result;
  member->numbers_only = true;
  member->name = PyUnicode_InternFromString(info.name);
  member->qualified_name = PyUnicode_FromFormat("%s.%s", of_class.name, info.name);
  member->names = PyTuple_New(static_cast<Py_ssize_t>(member->count));
  if (member->name == nullptr || member->qualified_name == nullptr || member->names == nullptr)
    return false;
  for (std::size_t i = 0; i < member->count; ++i) {
    if (!read_parameter(class_index, member, i, member->names)) return false;
  }
  return true;
}

// Member(class_index, position): as the catalogue describes it.
PyObject* member_new(PyTypeObject* of, PyObject* arguments, PyObject*) {
  Py_ssize_t class_index = 0;
  Py_ssize_t position = 0;
  if (PyArg_ParseTuple(arguments, "nn:Member", &class_index, &position) == 0) return nullptr;
  Owned made(new_object(of));
  if (!made) return nullptr;
  Member* const member = member_of(made.get());
  member->vectorcall = call_member;
  member->position = static_cast<std::size_t>(position);
  return read_member(static_cast<std::size_t>(class_index), member) ? made.release() : nullptr;
}

PyMemberDef member_layout[] = {
    {"__vectorcalloffset__", T_PYSSIZET, offsetof(Member, vectorcall), READONLY, nullptr},
    {"__name__", T_OBJECT, offsetof(Member, name), READONLY, nullptr},
    {"__qualname__", T_OBJECT, offsetof(Member, qualified_name), READONLY, nullptr},
    {"__doc__", T_OBJECT, offsetof(Member, doc), 0, nullptr},
    {"__signature__", T_OBJECT_EX, offsetof(Member, signature), 0, nullptr},
    {"position", T_PYSSIZET, offsetof(Member, position), READONLY, nullptr},
    {"parameter_names", T_OBJECT, offsetof(Member, names), READONLY, nullptr},
    {nullptr, 0, 0, 0, nullptr},
};

PyObject* module_name(PyObject*, void*) { return PyUnicode_FromString("orv2_geo"); }

PyObject* get_class(PyObject* self, void*) {
  PyObject* const of = member_of(self)->of_class;
  if (of == nullptr) PyErr_SetString(PyExc_AttributeError, "__objclass__");
  Py_XINCREF(of);
  return of;
}

// Told once, when the class is made: what is called on its objects takes them for objects.
int set_class(PyObject* self, PyObject* of, void*) {
  Member* const member = member_of(self);
  if (member->of_class != nullptr || of == nullptr || !is_class_of_objects(of)) {
    PyErr_SetString(PyExc_TypeError, "__objclass__ is the class that has the member, for good");
    return -1;
  }
  Py_INCREF(of);
  member->of_class = of;
  return 0;
}

PyGetSetDef member_properties[] = {
    {"__objclass__", get_class, set_class, nullptr, nullptr},
    {"__module__", module_name, nullptr, nullptr, nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

PyType_Slot member_slots[] = {
    {Py_tp_new, slot(member_new)},           {Py_tp_dealloc, slot(member_dealloc)},
    {Py_tp_traverse, slot(member_traverse)}, {Py_tp_clear, slot(member_clear)},
    {Py_tp_call, slot(PyVectorcall_Call)},   {Py_tp_descr_get, slot(get_bound)},
    {Py_tp_repr, slot(shown_member)},        {Py_tp_members, member_layout},
    {Py_tp_getset, member_properties},       {0, nullptr},
};

PyType_Spec member_spec = {
    "orv2_geo.Member", sizeof(Member), 0,
    Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_GC | Py_TPFLAGS_METHOD_DESCRIPTOR | type_has_vectorcall,
    member_slots};

// ---- Objects as Python sees them ----------------------------------------------------

Object* bare_object(PyTypeObject* of) {
  Object* const made = object_of(new_object(of));
  if (made != nullptr) made->thread = PyThread_get_thread_ident();
  return made;
}

// Whether a class makes its objects as all do: without arguments. One made from it may have
// an __init__ that takes some.
bool takes_no_arguments(PyTypeObject* of) {
  const Owned own(PyObject_GetAttrString(reinterpret_cast<PyObject*>(of), "__init__"));
  const Owned plain_one(
      PyObject_GetAttrString(reinterpret_cast<PyObject*>(&PyBaseObject_Type), "__init__"));
  if (!own || !plain_one) PyErr_Clear();
  return own.get() == plain_one.get();
}

// A new object of the class that a Python class stands for.
PyObject* object_new(PyTypeObject* of, PyObject* arguments, PyObject* named) {
  const bool any = PyTuple_Size(arguments) != 0 || (named != nullptr && PyDict_Size(named) != 0);
  if (any && takes_no_arguments(of)) {
    PyErr_Format(PyExc_TypeError, "%R takes no arguments", of);
    return nullptr;
  }
  if (!library_is_open()) return nullptr;
  const Owned name(PyObject_GetAttrString(reinterpret_cast<PyObject*>(of), "registered_name"));
  const Owned characters_of_name =
      name && PyUnicode_Check(name.get()) ? c_text_of(name.get()) : Owned();
  if (!characters_of_name)
    return PyErr_Occurred() != nullptr ? nullptr : raise(number::type_mismatch);
  Owned made(reinterpret_cast<PyObject*>(bare_object(of)));
  if (!made) return nullptr;
  orv2_handle* const handle = &object_of(made.get())->handle;
  if (!succeeded(library.orv2_create(characters(characters_of_name), handle))) return nullptr;
  return serve_this_thread() ? made.release() : nullptr;
}

void object_dealloc(PyObject* self) {
  Object* const object = object_of(self);
  if (object->weak != nullptr) PyObject_ClearWeakRefs(self);
  if (object->handle != 0) release(object->handle);
  PyTypeObject* const of = Py_TYPE(self);
  reinterpret_cast<freefunc>(PyType_GetSlot(of, Py_tp_free))(self);
  Py_DECREF(of);
}

// The attribute as it is spelled, or else as the class spells it: case is ignored.
Owned spelled(PyObject* self, PyObject* name) {
  const Owned lower(PyObject_CallMethod(name, "lower", nullptr));
  if (!lower) return {};
  const Owned known(PyObject_GetAttrString(reinterpret_cast<PyObject*>(Py_TYPE(self)), "_spelled"));
  if (!known || !PyDict_Check(known.get())) return {};
  PyObject* const found = PyDict_GetItemWithError(known.get(), lower.get());
  return found != nullptr && PyUnicode_Check(found) ? Owned::to(found) : Owned();
}

PyObject* get_attribute(PyObject* self, PyObject* name) {
  PyObject* const found = PyObject_GenericGetAttr(self, name);
  if (found != nullptr || PyErr_ExceptionMatches(PyExc_AttributeError) == 0) return found;
  const Owned missing = taken_exception();
  const Owned own = spelled(self, name);
  if (PyErr_Occurred() != nullptr) return nullptr;
  if (own && PyUnicode_Compare(own.get(), name) != 0)
    return PyObject_GenericGetAttr(self, own.get());
  if (own) {  // the member itself failed with it
    PyErr_SetObject(PyExc_AttributeError, missing.get());
    return nullptr;
  }
  const Owned registered(
      PyObject_GetAttrString(reinterpret_cast<PyObject*>(Py_TYPE(self)), "registered_name"));
  if (registered) PyErr_Format(PyExc_AttributeError, "%U has no member %R", registered.get(), name);
  return nullptr;
}

int set_attribute(PyObject* self, PyObject* name, PyObject* value) {
  const Owned own = spelled(self, name);
  if (PyErr_Occurred() != nullptr) return -1;
  return PyObject_GenericSetAttr(self, own ? own.get() : name, value);
}

PyObject* no_copy(PyObject* self, PyObject*) {
  PyErr_Format(PyExc_TypeError, "%R cannot be copied or pickled", Py_TYPE(self));
  return nullptr;
}

PyObject* get_handle(PyObject* self, void*) {
  return PyLong_FromUnsignedLongLong(object_of(self)->handle);
}

PyMethodDef object_methods[] = {
    {"__reduce_ex__", no_copy, METH_O, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

PyGetSetDef object_properties[] = {
    {"_handle", get_handle, nullptr, nullptr, nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

PyMemberDef object_layout[] = {
    {"__weaklistoffset__", T_PYSSIZET, offsetof(Object, weak), READONLY, nullptr},
    {nullptr, 0, 0, 0, nullptr},
};

PyType_Slot object_slots[] = {
    {Py_tp_doc, const_cast<char*>("An object of the library.")},
    {Py_tp_new, slot(object_new)},
    {Py_tp_dealloc, slot(object_dealloc)},
    {Py_tp_getattro, slot(get_attribute)},
    {Py_tp_setattro, slot(set_attribute)},
    {Py_tp_methods, object_methods},
    {Py_tp_getset, object_properties},
    {Py_tp_members, object_layout},
    {0, nullptr},
};

PyType_Spec object_spec = {"orv2_geo.Object", sizeof(Object), 0,
                           Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE, object_slots};

}  // namespace

void set_waiting(bool waits) noexcept { waiting = waits; }

bool handle_of_object(PyObject* object, orv2_handle& handle) {
  if (PyType_IsSubtype(Py_TYPE(object), object_type) == 0) return false;
  handle = object_of(object)->handle;
  return true;
}

Member* member_in(PyObject* object) {
  if (Py_TYPE(object) == member_type) return member_of(object);
  PyErr_SetString(PyExc_TypeError, "a member of a class or of an object is needed");
  return nullptr;
}

PyObject* expect_own_thread(PyObject*, PyObject* object) {
  orv2_handle handle = 0;
  if (!handle_of_object(object, handle) || !is_on_own_thread(object_of(object))) {
    return raise(number::invalid_call);
  }
  return none();
}

// adopted(class, handle): the object behind a handle, with a reference of its own.
PyObject* adopted(PyObject*, PyObject* arguments) {
  PyObject* of = nullptr;
  unsigned long long handle = 0;
  if (PyArg_ParseTuple(arguments, "OK:adopted", &of, &handle) == 0) return nullptr;
  if (!is_class_of_objects(of)) return raise(number::invalid_call);
  Owned made(reinterpret_cast<PyObject*>(bare_object(reinterpret_cast<PyTypeObject*>(of))));
  if (!made || !succeeded(library.orv2_reference(handle))) return nullptr;
  object_of(made.get())->handle = handle;
  return made.release();
}

PyObject* call_like_member(PyObject*, PyObject* arguments) {
  PyObject* address = nullptr;
  PyObject* tags = nullptr;
  PyObject* given = nullptr;
  const char* source = nullptr;
  if (PyArg_ParseTuple(arguments, "OO!O!s:call_like_member", &address, &PyTuple_Type, &tags,
                       &PyTuple_Type, &given, &source) == 0) {
    return nullptr;
  }
  MemberParameter parameters[most_parameters];
  const auto count = static_cast<std::size_t>(PyTuple_Size(tags));
  if (count > most_parameters) return raise(number::invalid_call);
  for (std::size_t i = 0; i < count; ++i) {
    const long tag = PyLong_AsLong(PyTuple_GetItem(tags, static_cast<Py_ssize_t>(i)));
    if (tag == -1 && PyErr_Occurred() != nullptr) return nullptr;
    const auto bits = static_cast<std::uint16_t>(tag);
    parameters[i] = {type_in(bits), (bits & ORV2_BYREF) != 0, false, ORV2_READ};
  }
  using Function = std::int32_t (*)(const orv2_value*, std::size_t, orv2_value*);
  auto* const function = reinterpret_cast<Function>(PyLong_AsVoidPtr(address));
  if (function == nullptr)
    return PyErr_Occurred() != nullptr ? nullptr : raise(number::invalid_call);
  PyObject* values[most_parameters + 1];
  const auto number =
      std::min<std::size_t>(static_cast<std::size_t>(PyTuple_Size(given)), most_parameters + 1);
  for (std::size_t i = 0; i < number; ++i)
    values[i] = PyTuple_GetItem(given, static_cast<Py_ssize_t>(i));
  return passed({nullptr, source, parameters, count}, values, number, true, function);
}

bool make_objects(PyObject* module) {
  const Owned types(PyImport_ImportModule("types"));
  bound_method = types ? PyObject_GetAttrString(types.get(), "MethodType") : nullptr;
  if (bound_method == nullptr) return false;
  if (object_type == nullptr)
    object_type = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&object_spec));
  if (member_type == nullptr)
    member_type = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&member_spec));
  if (object_type == nullptr || member_type == nullptr) return false;
  Py_INCREF(object_type);
  Py_INCREF(member_type);
  return PyModule_AddObject(module, "Object", reinterpret_cast<PyObject*>(object_type)) == 0 &&
         PyModule_AddObject(module, "Member", reinterpret_cast<PyObject*>(member_type)) == 0;
}

}  // namespace orv2_geo::python
