#include "arrays.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "failures.h"
#include "hosts.h"

namespace orv2_geo::python {

namespace {

struct Kind {
  const char* name;
  const char* elements;
  const char* format;  // of a buffer; null: texts
  std::uint16_t scalar;
  std::size_t size;
  PyTypeObject* type = nullptr;
};

Kind kinds[] = {
    {"DoubleArray", "Numbers of 64 bits.", "d", ORV2_F64, sizeof(double)},
    {"SingleArray", "Numbers of 32 bits.", "f", ORV2_F32, sizeof(float)},
    {"LongArray", "Whole numbers of 32 bits.", "i", ORV2_I32, sizeof(std::int32_t)},
    {"ShortArray", "Whole numbers of 16 bits.", "h", ORV2_I16, sizeof(std::int16_t)},
    {"StringArray", "Texts.", nullptr, ORV2_TEXT, 0},
};

PyTypeObject* base_type = nullptr;

Kind& kind_of(std::uint16_t type) { return kinds[type - ORV2_DOUBLE_ARRAY]; }
Array* array_of(PyObject* self) { return reinterpret_cast<Array*>(self); }

// Which of the five a class is, or one made from it.
std::uint16_t type_of_class(PyTypeObject* of) {
  for (std::uint16_t i = 0; i < 5; ++i) {
    if (kinds[i].type != nullptr && PyType_IsSubtype(of, kinds[i].type) != 0) {
      return static_cast<std::uint16_t>(ORV2_DOUBLE_ARRAY + i);
    }
  }
  return ORV2_NONE;
}

// ---- Storage ------------------------------------------------------------------------

Storage* new_storage(std::size_t element) {
  void* const memory = PyMem_RawMalloc(sizeof(Storage));
  if (memory == nullptr) return refused(number::out_of_memory), nullptr;
  auto* const made = new (memory) Storage;
  made->element = element;
  return made;
}

// Gives the elements up; a buffer goes back to its owner, whose code may run.
void drop_elements(Storage& storage) {
  Lease* const lease = std::exchange(storage.lease, nullptr);
  void* const data = std::exchange(storage.data, nullptr);
  lease != nullptr ? give_back(lease) : PyMem_RawFree(data);
}

void end(Storage* storage) {
  if (storage == nullptr) return;
  drop_elements(*storage);
  storage->~Storage();
  PyMem_RawFree(storage);
}

// Moves the elements whose index exists in both ranges to their places in new memory.
struct Range {
  std::int64_t lower;
  std::int64_t count;
};
void move_kept(const void* from, Range old, void* to, Range wanted, std::size_t element) {
  const std::int64_t first = std::max(old.lower, wanted.lower);
  const std::int64_t end = std::min(old.lower + old.count, wanted.lower + wanted.count);
  if (first >= end || from == nullptr) return;
  const auto place = [&](std::int64_t lower) {
    return static_cast<std::size_t>(first - lower) * element;
  };
  std::memcpy(static_cast<char*>(to) + place(wanted.lower),
              static_cast<const char*>(from) + place(old.lower),
              static_cast<std::size_t>(end - first) * element);
}

// What stands for a buffer's owner with another size; null with an exception or, where the
// owner or the array cannot follow, RunFailure 10. Code of the owner's runs.
Lease* grown(Storage& storage, std::uint32_t count) {
  const Owned owner = Owned::to(storage.lease->base);
  storage.busy = true;
  const Owned next(PyObject_CallFunction(lent.grown, "Onn", owner.get(),
                                         static_cast<Py_ssize_t>(count),
                                         static_cast<Py_ssize_t>(storage.element)));
  Lease* const lease = next && next.get() != Py_None ? leased(next.get()) : nullptr;
  storage.busy = false;
  if (!next || (lease == nullptr && PyErr_Occurred() != nullptr)) return nullptr;
  const bool fits = lease != nullptr && storage.views == 0 &&
                    static_cast<std::size_t>(lease->buffer.len) == count * storage.element &&
                    reinterpret_cast<std::uintptr_t>(lease->buffer.buf) % storage.element == 0;
  if (fits) return lease;
  give_back(lease);
  return refused(number::array_locked), nullptr;
}

// A successor of a buffer that is another's, of `wanted` zeros, worked in place of it. The
// old one is given back after the call, as the library has its address until then.
std::int32_t succeed(Storage& storage, Range old, Range wanted, bool keep) {
  const Locked with_the_lock;
  Frame* const frame = Frame::innermost();
  if (frame == nullptr) return number::array_locked;
  Lease* const next = grown(storage, static_cast<std::uint32_t>(wanted.count));
  if (next == nullptr) return Frame::answer_for_exception();
  if (keep) move_kept(storage.data, old, next->buffer.buf, wanted, storage.element);
  frame->retire(std::exchange(storage.lease, next));
  storage.data = next->buffer.buf;
  return 0;
}

// The library asks for another size. Runs without the interpreter's lock.
std::int32_t resize(void* context, std::int32_t old_lower, std::uint32_t old_count,
                    std::int32_t lower, std::uint32_t count, std::int16_t keep, void** data) {
  Storage& storage = *static_cast<Storage*>(context);
  if (storage.fixed || storage.busy || storage.views != 0) return number::array_locked;
  const Range old{old_lower, old_count};
  const Range wanted{lower, count};
  if (storage.lease != nullptr) {
    const std::int32_t status = succeed(storage, old, wanted, keep != 0);
    if (status == 0 && data != nullptr) *data = storage.data;
    return status;
  }
  void* const fresh = count != 0 ? PyMem_RawCalloc(count, storage.element) : nullptr;
  if (fresh == nullptr && count != 0) return number::out_of_memory;
  if (keep != 0) move_kept(storage.data, old, fresh, wanted, storage.element);
  PyMem_RawFree(std::exchange(storage.data, fresh));
  if (data != nullptr) *data = fresh;
  return 0;
}

// ---- Arrays as they are -------------------------------------------------------------

bool describe(Array* array, orv2_array_info& info) {
  return is_made(array) && succeeded(library.orv2_array_describe(array->handle, &info));
}

// The description of an array whose elements can be reached. RunFailure 9.
bool describe_reachable(Array* array, orv2_array_info& info) {
  if (!describe(array, info)) return false;
  return info.dimensions == 1 || refused(number::subscript_out_of_range);
}

// A whole number from Python, whose own code may run and change an array. One beyond every
// index is out of range of all of them.
bool index_of(PyObject* given, std::int64_t& index) {
  const Owned whole(PyNumber_Index(given));
  if (!whole) return false;
  int overflow = 0;
  index = PyLong_AsLongLongAndOverflow(whole.get(), &overflow);
  if (overflow != 0) index = overflow < 0 ? INT64_MIN : INT64_MAX;
  return true;
}

// An index as a place from 0. RunFailure 9.
bool place_of(std::int64_t index, const orv2_array_info& info, std::uint32_t& place) {
  if (index < info.lower || index >= std::int64_t{info.lower} + info.count) {
    return refused(number::subscript_out_of_range);
  }
  place = static_cast<std::uint32_t>(index - info.lower);
  return true;
}

char* element_at(Array* array, std::uint32_t place) {
  return static_cast<char*>(array->storage->data) + std::size_t{place} * array->storage->element;
}

PyObject* text_at(Array* array, const orv2_array_info& info, std::uint32_t place) {
  const std::uint16_t* units = nullptr;
  std::size_t count = 0;
  const auto index = static_cast<std::int32_t>(std::int64_t{info.lower} + place);
  if (!succeeded(library.orv2_array_get_text(array->handle, index, &units, &count))) return nullptr;
  return text_of_units(units, count);
}

PyObject* read(Array* array, const orv2_array_info& info, std::uint32_t place) {
  if (array->storage == nullptr) return text_at(array, info, place);
  return shown(kind_of(array->type).scalar, element_at(array, place));
}

bool write_text(Array* array, const orv2_array_info& info, std::uint32_t place, PyObject* text) {
  const Units units(text);
  if (!units) return false;
  const auto index = static_cast<std::int32_t>(std::int64_t{info.lower} + place);
  return succeeded(library.orv2_array_set_text(array->handle, index, units.data(), units.count()));
}

// RunFailure 9 when an array has other bounds than it had: code of Python's has run meanwhile.
bool is_still(Array* array, const orv2_array_info& info) {
  orv2_array_info now{};
  if (!describe(array, now)) return false;
  const bool same =
      now.lower == info.lower && now.count == info.count && now.dimensions == info.dimensions;
  return same || refused(number::subscript_out_of_range);
}

// Elements from place `first` on as a list.
PyObject* listed(Array* array, const orv2_array_info& info, std::uint32_t first,
                 std::uint32_t count, std::int64_t step = 1) {
  Owned list(PyList_New(count));  // may collect garbage, whose code may run
  if (!list || !is_still(array, info)) return nullptr;
  std::int64_t place = first;
  for (std::uint32_t i = 0; i < count; ++i, place += step) {
    PyObject* const one = read(array, info, static_cast<std::uint32_t>(place));
    if (one == nullptr) return nullptr;
    PyList_SetItem(list.get(), i, one);
  }
  return list.release();
}

PyObject* all_listed(Array* array) {
  orv2_array_info info{};
  if (!describe(array, info)) return nullptr;
  if (info.count == 0) return PyList_New(0);
  if (info.dimensions != 1) return raise(number::subscript_out_of_range);
  return listed(array, info, 0, info.count);
}

// ---- Making -------------------------------------------------------------------------

orv2_array_info shape(std::uint16_t type, bool allocated, std::int32_t lower, std::uint32_t count,
                      std::uint16_t dimensions) {
  return {type, dimensions, static_cast<std::int16_t>(allocated ? -1 : 0), 0, lower, count};
}

// A bare object of a class; its storage, if any, is its own from then on.
Array* bare(PyTypeObject* of, std::uint16_t type) {
  PyObject* const made = new_object(of);
  if (made == nullptr) return nullptr;
  Array* const array = array_of(made);
  array->handle = 0;
  array->storage = nullptr;
  array->type = type;
  array->weak = nullptr;
  return array;
}

// An array of numbers over elements, which become its own, whether this goes well or not.
PyObject* over_elements(PyTypeObject* of, std::uint16_t type, const orv2_array_info& wanted,
                        void* data) {
  Array* const array = bare(of, type);
  Owned object(reinterpret_cast<PyObject*>(array));
  Storage* const storage = object ? new_storage(kind_of(type).size) : nullptr;
  if (storage == nullptr) return PyMem_RawFree(data), nullptr;
  storage->data = data;
  array->storage = storage;
  const bool well =
      succeeded(library.orv2_array_host(&wanted, data, resize, storage, &array->handle));
  return well ? object.release() : nullptr;
}

PyObject* unallocated(PyTypeObject* of, std::uint16_t type) {
  if (type != ORV2_STRING_ARRAY)
    return over_elements(of, type, shape(type, false, 0, 0, 0), nullptr);
  Array* const array = bare(of, type);
  Owned object(reinterpret_cast<PyObject*>(array));
  const bool well = object && succeeded(library.orv2_array_new(type, &array->handle));
  return well ? object.release() : nullptr;
}

PyObject* with_dimensions(PyTypeObject* of, std::uint16_t type, std::int32_t lower,
                          std::uint16_t dimensions) {
  if (type == ORV2_STRING_ARRAY) {
    Array* const array = bare(of, type);
    Owned object(reinterpret_cast<PyObject*>(array));
    const bool well =
        object && succeeded(library.orv2_array_make(type, lower, 1, dimensions, &array->handle));
    return well ? object.release() : nullptr;
  }
  void* const data = PyMem_RawCalloc(1, kind_of(type).size);
  if (data == nullptr) return raise(number::out_of_memory);
  return over_elements(of, type, shape(type, true, lower, 1, dimensions), data);
}

PyObject* of_texts(PyTypeObject* of, std::int32_t lower, PyObject* elements) {
  const Owned texts(PySequence_List(elements));
  if (!texts) return nullptr;
  const Py_ssize_t count = PyList_Size(texts.get());
  if (count > INT32_MAX) return raise(number::subscript_out_of_range);
  for (Py_ssize_t i = 0; i < count; ++i) {
    PyObject* const one = PyList_GetItem(texts.get(), i);
    if (one == nullptr) return nullptr;
    const Owned kept = Owned::to(one);
    Owned text = text_in(one);
    if (!text || PyList_SetItem(texts.get(), i, text.release()) != 0) return nullptr;
  }
  Array* const array = bare(of, ORV2_STRING_ARRAY);
  Owned object(reinterpret_cast<PyObject*>(array));
  const orv2_array_info wanted =
      shape(ORV2_STRING_ARRAY, true, lower, static_cast<std::uint32_t>(count), 1);
  bool well = object && succeeded(library.orv2_array_make(ORV2_STRING_ARRAY, lower, wanted.count, 1,
                                                          &array->handle));
  for (std::uint32_t i = 0; well && i < wanted.count; ++i) {
    PyObject* const text = PyList_GetItem(texts.get(), i);
    well = text != nullptr && write_text(array, wanted, i, text);
  }
  return well ? object.release() : nullptr;
}

PyObject* of_elements(PyTypeObject* of, std::uint16_t type, std::int32_t lower,
                      PyObject* elements) {
  if (type == ORV2_STRING_ARRAY) return of_texts(of, lower, elements);
  Elements found;
  if (!elements_of(elements, type, found)) return nullptr;
  return over_elements(of, type, shape(type, true, lower, found.count, 1), found.data);
}

// An array that has nothing takes what another is made of.
void take_from(const Owned& made, Array* array) {
  std::swap(array->handle, array_of(made.get())->handle);
  std::swap(array->storage, array_of(made.get())->storage);
}

// What the arguments of a class ask for, as an array of that class.
PyObject* made_of(PyTypeObject* of, PyObject* arguments, PyObject* named) {
  static char names[][9] = {"elements", "lower", "dims"};
  static char* keywords[] = {names[0], names[1], names[2], nullptr};
  PyObject* elements = Py_None;
  PyObject* lower_given = nullptr;
  int dimensions = 1;
  if (PyArg_ParseTupleAndKeywords(arguments, named, "|OOi", keywords, &elements, &lower_given,
                                  &dimensions) == 0) {
    return nullptr;
  }
  const std::uint16_t type = type_of_class(of);
  std::int32_t lower = 0;
  if (lower_given != nullptr && !stored_i32(lower_given, lower)) return nullptr;
  if (dimensions == 1) {
    return elements == Py_None ? unallocated(of, type) : of_elements(of, type, lower, elements);
  }
  if (elements != Py_None) {
    PyErr_SetString(PyExc_TypeError, "elements need one dimension");
    return nullptr;
  }
  if (dimensions < 1 || dimensions > 0xFFFF) return raise(number::invalid_call);
  return with_dimensions(of, type, lower, static_cast<std::uint16_t>(dimensions));
}

// An array that is made by __init__, whatever the arguments: a class made from one of the
// five may have others. Used before that, or without it, it is unallocated.
PyObject* array_new(PyTypeObject* of, PyObject*, PyObject*) {
  if (!library_is_open()) return nullptr;
  const std::uint16_t type = type_of_class(of);
  if (type != ORV2_NONE) return reinterpret_cast<PyObject*>(bare(of, type));
  PyErr_SetString(PyExc_TypeError, "GeoArray is what the five arrays share; make one of them");
  return nullptr;
}

// Once only, and not any more when it is in use: a call may be working on what it is made of.
int array_init(PyObject* self, PyObject* arguments, PyObject* named) {
  Array* const array = array_of(self);
  const Owned made(made_of(Py_TYPE(self), arguments, named));
  if (!made) return -1;
  if (array->handle != 0 || array->storage != nullptr) return raise(number::array_locked), -1;
  take_from(made, array);
  return 0;
}

void end_array(Array* array) {
  if (array->handle != 0) release(array->handle);
  // The library looks at elements in the middle of calls alone, and a call has the array.
  end(array->storage);
  free_object(&array->ob_base);
}

void array_dealloc(PyObject* self) {
  PyObject_GC_UnTrack(self);
  if (array_of(self)->weak != nullptr) PyObject_ClearWeakRefs(self);
  end_in_turn(array_of(self), end_array);
}

int array_traverse(PyObject* self, visitproc visit, void* arg) {
  Py_VISIT(Py_TYPE(self));
  const Storage* const storage = array_of(self)->storage;
  if (storage != nullptr && storage->lease != nullptr) {
    Py_VISIT(storage->lease->base);
    Py_VISIT(storage->lease->buffer.obj);
  }
  return 0;
}

// Without its elements the array is none any more: RunFailure 5 for whoever still has it.
int array_clear(PyObject* self) {
  Array* const array = array_of(self);
  Storage* const storage = array->storage;
  if (storage == nullptr || storage->lease == nullptr || storage->views != 0) return 0;
  release(std::exchange(array->handle, 0));
  drop_elements(*storage);
  return 0;
}

PyObject* sized(PyObject* of, PyObject* arguments) {
  PyObject* lower = nullptr;
  PyObject* upper = nullptr;
  if (PyArg_ParseTuple(arguments, "OO:sized", &lower, &upper) == 0) return nullptr;
  Owned made(PyObject_CallObject(of, nullptr));
  if (!made) return nullptr;
  const Owned done(PyObject_CallMethod(made.get(), "resize", "OO", lower, upper));
  return done ? made.release() : nullptr;
}

// ---- Over a buffer ------------------------------------------------------------------

// RunFailure 13 for a buffer of another element type than its own or bytes.
bool has_own_elements(const Py_buffer& view, const Kind& kind) {
  const char* format = view.format != nullptr ? view.format : "B";
  if (*format == '@' || *format == '=' || *format == '<') ++format;
  const bool single = *format != '\0' && format[1] == '\0';
  const bool own = single && (*format == *kind.format || (*kind.format == 'i' && *format == 'l'));
  const bool bytes = single && std::strchr("Bbc", *format) != nullptr;
  const auto size = static_cast<Py_ssize_t>(kind.size);
  const bool fits = own ? view.itemsize == size : bytes;
  return (fits && view.ndim <= 1 && view.len % size == 0) || refused(number::type_mismatch);
}

// What an exporter refuses is a TypeError here, as for any wrong argument.
bool hold_given(Storage& storage, PyObject* base) {
  storage.lease = leased(base);
  if (storage.lease != nullptr) {
    storage.data = storage.lease->buffer.buf;
    return true;
  }
  if (PyErr_ExceptionMatches(PyExc_BufferError) == 0 &&
      PyErr_ExceptionMatches(PyExc_ValueError) == 0) {
    return false;
  }
  const Owned refusal = taken_exception();
  PyErr_Format(PyExc_TypeError, "a writable buffer in one piece is needed: %S", refusal.get());
  return false;
}

bool adopt(Storage& storage, PyObject* base, const Kind& kind) {
  if (!hold_given(storage, base) || !has_own_elements(storage.lease->buffer, kind)) return false;
  const auto address = reinterpret_cast<std::uintptr_t>(storage.data);
  if (storage.lease->buffer.len != 0 && address % kind.size != 0)
    return refused(number::invalid_call);
  const Owned same_size(PyObject_CallFunction(lent.grown, "Onn", base, static_cast<Py_ssize_t>(-1),
                                              static_cast<Py_ssize_t>(kind.size)));
  if (!same_size) return false;
  storage.fixed = same_size.get() == Py_None;
  return true;
}

PyObject* over(PyObject* of, PyObject* arguments, PyObject* named) {
  static char names[][7] = {"buffer", "lower"};
  static char* keywords[] = {names[0], names[1], nullptr};
  PyObject* base = nullptr;
  PyObject* lower_given = nullptr;
  if (PyArg_ParseTupleAndKeywords(arguments, named, "O|O:over", keywords, &base, &lower_given) ==
      0) {
    return nullptr;
  }
  if (!library_is_open()) return nullptr;
  auto* const class_of = reinterpret_cast<PyTypeObject*>(of);
  const std::uint16_t type = type_of_class(class_of);
  if (type == ORV2_NONE || type == ORV2_STRING_ARRAY) return raise(number::type_mismatch);
  Kind& kind = kind_of(type);
  std::int32_t lower = 0;
  if (lower_given != nullptr && !stored_i32(lower_given, lower)) return nullptr;
  Array* const array = bare(class_of, type);
  Owned object(reinterpret_cast<PyObject*>(array));
  if (!object) return nullptr;
  array->storage = new_storage(kind.size);
  if (array->storage == nullptr || !adopt(*array->storage, base, kind)) return nullptr;
  const std::size_t count = static_cast<std::size_t>(array->storage->lease->buffer.len) / kind.size;
  if (count > INT32_MAX) return raise(number::subscript_out_of_range);
  const orv2_array_info wanted = shape(type, true, lower, static_cast<std::uint32_t>(count), 1);
  const bool well = succeeded(library.orv2_array_host(&wanted, array->storage->data, resize,
                                                      array->storage, &array->handle));
  return well ? object.release() : nullptr;
}

PyObject* get_base(PyObject* self, void*) {
  const Storage* const storage = array_of(self)->storage;
  const Lease* const lease = storage != nullptr ? storage->lease : nullptr;
  PyObject* const base = lease != nullptr ? lease->base : Py_None;
  Py_INCREF(base);
  return base;
}

// ---- Buffers ------------------------------------------------------------------------

// What a view of an array needs beside its elements; lives as long as the view.
struct Shape {
  Py_ssize_t count;
  Py_ssize_t step;
};

int get_buffer(PyObject* self, Py_buffer* view, int flags) {
  view->obj = nullptr;
  Array* const array = array_of(self);
  orv2_array_info info{};
  if (array->storage == nullptr) return raise(number::type_mismatch), -1;
  if (!describe_reachable(array, info)) return -1;
  auto* const shape = static_cast<Shape*>(PyMem_RawMalloc(sizeof(Shape)));
  if (shape == nullptr) return raise(number::out_of_memory), -1;
  const Kind& kind = kind_of(array->type);
  *shape = {static_cast<Py_ssize_t>(info.count), static_cast<Py_ssize_t>(kind.size)};
  static double nothing = 0.0;
  view->buf = array->storage->data != nullptr ? array->storage->data : &nothing;
  view->len = shape->count * shape->step;
  view->itemsize = shape->step;
  view->readonly = 0;
  view->ndim = 1;
  view->format = (flags & buffer_format) != 0 ? const_cast<char*>(kind.format) : nullptr;
  view->shape = (flags & buffer_shape) != 0 ? &shape->count : nullptr;
  view->strides = (flags & buffer_strides) == buffer_strides ? &shape->step : nullptr;
  view->suboffsets = nullptr;
  view->internal = shape;
  ++array->storage->views;
  Py_INCREF(self);
  view->obj = self;
  return 0;
}

void release_buffer(PyObject* self, Py_buffer* view) {
  --array_of(self)->storage->views;
  PyMem_RawFree(view->internal);
}

PyObject* view(PyObject* self, PyObject*) { return PyMemoryView_FromObject(self); }

// ---- Properties ---------------------------------------------------------------------

PyObject* get_lower(PyObject* self, void*) {
  orv2_array_info info{};
  if (!describe(array_of(self), info)) return nullptr;
  return info.allocated != 0 ? PyLong_FromLong(info.lower) : raise(number::subscript_out_of_range);
}

PyObject* get_upper(PyObject* self, void*) {
  std::int32_t lower = 0;
  std::int32_t upper = 0;
  const bool well = is_made(array_of(self)) &&
                    succeeded(library.orv2_array_bounds(array_of(self)->handle, &lower, &upper));
  return well ? PyLong_FromLong(upper) : nullptr;
}

PyObject* get_allocated(PyObject* self, void*) {
  orv2_array_info info{};
  return describe(array_of(self), info) ? PyBool_FromLong(info.allocated) : nullptr;
}

PyObject* get_dims(PyObject* self, void*) {
  orv2_array_info info{};
  return describe(array_of(self), info) ? PyLong_FromLong(info.dimensions) : nullptr;
}

PyObject* get_handle(PyObject* self, void*) {
  return PyLong_FromUnsignedLongLong(array_of(self)->handle);
}

Py_ssize_t length(PyObject* self) {
  orv2_array_info info{};
  return describe(array_of(self), info) ? static_cast<Py_ssize_t>(info.count) : -1;
}

// ---- Elements and slices ------------------------------------------------------------

// A slice in the array's own indexes: from the first up to, and without, the last.
struct Slice {
  std::int64_t first = 0;
  std::int64_t step = 1;
  std::uint32_t count = 0;
};

// What a slice asks for, before the array is looked at: its own code may run and change it.
struct Asked {
  bool has_start = false;
  bool has_stop = false;
  std::int64_t start = 0;
  std::int64_t stop = 0;
  std::int64_t step = 1;
};

bool ask_end(PyObject* slice, const char* name, bool& has, std::int64_t& end) {
  const Owned given(PyObject_GetAttrString(slice, name));
  has = given && given.get() != Py_None;
  return given && (!has || index_of(given.get(), end));
}

bool ask_slice(PyObject* given, Asked& asked) {
  bool has_step = false;
  if (!ask_end(given, "step", has_step, asked.step)) return false;
  if (asked.step < 1) {
    PyErr_SetString(PyExc_ValueError, "the step of a slice is 1 or more");
    return false;
  }
  return ask_end(given, "start", asked.has_start, asked.start) &&
         ask_end(given, "stop", asked.has_stop, asked.stop);
}

// RunFailure 9 for an end beyond lower and upper + 1.
bool slice_of(const Asked& asked, const orv2_array_info& info, Slice& slice) {
  const std::int64_t past = std::int64_t{info.lower} + info.count;
  const auto outside = [&](std::int64_t end) { return end < info.lower || end > past; };
  slice.first = asked.has_start ? asked.start : info.lower;
  const std::int64_t last = asked.has_stop ? asked.stop : past;
  if (outside(slice.first) || outside(last)) return refused(number::subscript_out_of_range);
  slice.step = std::min(asked.step, std::int64_t{1} << 32U);  // more than any array has
  const std::int64_t room = std::max<std::int64_t>(0, last - slice.first);
  slice.count = static_cast<std::uint32_t>(room / slice.step + (room % slice.step != 0 ? 1 : 0));
  return true;
}

// An array of the same class whose first index is the slice's own: with a step of 1 every
// element keeps its index.
PyObject* sliced(PyObject* self, const orv2_array_info& info, const Slice& slice) {
  Array* const array = array_of(self);
  const auto place = static_cast<std::uint32_t>(slice.first - info.lower);
  if (slice.first > INT32_MAX) return raise(number::subscript_out_of_range);
  const Owned elements(listed(array, info, place, slice.count, slice.step));
  if (!elements) return nullptr;
  return of_elements(kind_of(array->type).type, array->type, static_cast<std::int32_t>(slice.first),
                     elements.get());
}

bool write_slice(PyObject* self, const orv2_array_info& info, const Slice& slice,
                 PyObject* values) {
  Array* const array = array_of(self);
  // Converted before anything is written; the array itself may be among the values.
  const Owned converted(of_elements(kind_of(array->type).type, array->type, 0, values));
  if (!converted) return false;
  Array* const from = array_of(converted.get());
  orv2_array_info given{};
  // The values may have run code that gave this array other bounds.
  if (!describe(from, given) || !is_still(array, info)) return false;
  if (given.count != slice.count) {
    PyErr_Format(PyExc_ValueError, "%u elements for the %u of the slice",
                 static_cast<unsigned>(given.count), static_cast<unsigned>(slice.count));
    return false;
  }
  for (std::uint32_t i = 0; i < slice.count; ++i) {
    const auto place =
        static_cast<std::uint32_t>(slice.first - info.lower + std::int64_t{i} * slice.step);
    if (array->storage != nullptr) {
      std::memcpy(element_at(array, place), element_at(from, i), array->storage->element);
    } else {
      const Owned text(text_at(from, given, i));
      if (!text || !write_text(array, info, place, text.get())) return false;
    }
  }
  return true;
}

PyObject* subscript(PyObject* self, PyObject* index) {
  orv2_array_info info{};
  if (PySlice_Check(index)) {
    Asked asked;
    Slice slice;
    const bool well = ask_slice(index, asked) && describe_reachable(array_of(self), info) &&
                      slice_of(asked, info, slice);
    return well ? sliced(self, info, slice) : nullptr;
  }
  std::int64_t wanted = 0;
  std::uint32_t place = 0;
  const bool well = index_of(index, wanted) && describe_reachable(array_of(self), info) &&
                    place_of(wanted, info, place);
  return well ? read(array_of(self), info, place) : nullptr;
}

bool write_element(PyObject* self, PyObject* index, PyObject* value) {
  Array* const array = array_of(self);
  Cell cell{};
  Owned text;
  orv2_array_info info{};
  std::int64_t wanted = 0;
  std::uint32_t place = 0;
  if (!index_of(index, wanted) || !describe_reachable(array, info) ||
      !place_of(wanted, info, place)) {
    return false;
  }
  // The value may run code that changes the array, which is looked at again after it.
  if (array->storage != nullptr) {
    if (!stored(value, kind_of(array->type).scalar, cell)) return false;
  } else {
    text = text_in(value);
    if (!text) return false;
  }
  if (!describe_reachable(array, info) || !place_of(wanted, info, place)) return false;
  if (array->storage == nullptr) return write_text(array, info, place, text.get());
  std::memcpy(element_at(array, place), &cell, array->storage->element);
  return true;
}

int assign(PyObject* self, PyObject* index, PyObject* value) {
  if (value == nullptr) {
    PyErr_SetString(PyExc_TypeError, "elements are not deleted; resize() gives other bounds");
    return -1;
  }
  if (!PySlice_Check(index)) return write_element(self, index, value) ? 0 : -1;
  orv2_array_info info{};
  Asked asked;
  Slice slice;
  const bool well = ask_slice(index, asked) && describe_reachable(array_of(self), info) &&
                    slice_of(asked, info, slice);
  if (!well) return -1;
  return write_slice(self, info, slice, value) ? 0 : -1;
}

PyObject* iterate(PyObject* self) {
  const Owned list(all_listed(array_of(self)));
  return list ? PyObject_GetIter(list.get()) : nullptr;
}

PyObject* reversed(PyObject* self, PyObject*) {
  const Owned list(all_listed(array_of(self)));
  if (!list || PyList_Reverse(list.get()) != 0) return nullptr;
  return PyObject_GetIter(list.get());
}

PyObject* tolist(PyObject* self, PyObject*) { return all_listed(array_of(self)); }

// ---- Bounds and locks ---------------------------------------------------------------

PyObject* resize_array(PyObject* self, PyObject* arguments, PyObject* named) {
  static char names[][6] = {"lower", "upper", "keep"};
  static char* keywords[] = {names[0], names[1], names[2], nullptr};
  PyObject* lower_given = nullptr;
  PyObject* upper_given = nullptr;
  int keep = 0;
  if (PyArg_ParseTupleAndKeywords(arguments, named, "OO|p:resize", keywords, &lower_given,
                                  &upper_given, &keep) == 0) {
    return nullptr;
  }
  std::int32_t lower = 0;
  std::int32_t upper = 0;
  if (!stored_i32(lower_given, lower) || !stored_i32(upper_given, upper)) return nullptr;
  if (!is_made(array_of(self))) return nullptr;
  Frame frame;  // a buffer's owner is asked
  const std::int32_t status = library.orv2_array_resize(
      array_of(self)->handle, lower, upper, static_cast<std::int16_t>(keep != 0 ? -1 : 0));
  if (!frame.ended_well(status)) return nullptr;
  return none();
}

PyObject* lock(PyObject* self, PyObject*) {
  return is_made(array_of(self)) ? none_after(library.orv2_array_lock(array_of(self)->handle))
                                 : nullptr;
}

PyObject* unlock(PyObject* self, PyObject*) {
  return is_made(array_of(self)) ? none_after(library.orv2_array_unlock(array_of(self)->handle))
                                 : nullptr;
}

// ---- Showing, comparing, copying ----------------------------------------------------

constexpr std::uint32_t shown_whole = 12;  // more elements than these are shown by their ends

PyObject* show_elements(Array* array, const orv2_array_info& info, const char* name) {
  if (info.count <= shown_whole) {
    const Owned list(listed(array, info, 0, info.count));
    return list ? PyUnicode_FromFormat("%s(%R, lower=%d)", name, list.get(),
                                       static_cast<int>(info.lower))
                : nullptr;
  }
  const Owned a(read(array, info, 0));
  const Owned b(a ? read(array, info, 1) : nullptr);
  const Owned c(b ? read(array, info, 2) : nullptr);
  const Owned z(c ? read(array, info, info.count - 1) : nullptr);
  if (!z) return nullptr;
  return PyUnicode_FromFormat("<%s of %u elements [%R, %R, %R, ..., %R], lower=%d>", name,
                              static_cast<unsigned>(info.count), a.get(), b.get(), c.get(), z.get(),
                              static_cast<int>(info.lower));
}

PyObject* show(PyObject* self) {
  Array* const array = array_of(self);
  const char* const name = kind_of(array->type).name;
  orv2_array_info info{};
  if (!describe(array, info)) return nullptr;
  if (info.allocated == 0) return PyUnicode_FromFormat("%s()", name);
  if (info.dimensions != 1) {
    return PyUnicode_FromFormat("%s(lower=%d, dims=%d)", name, static_cast<int>(info.lower),
                                static_cast<int>(info.dimensions));
  }
  return show_elements(array, info, name);
}

// Whether two arrays of one class have the same bounds and elements; -1 with an exception.
int same(Array* left, Array* right) {
  orv2_array_info a{};
  orv2_array_info b{};
  if (!describe(left, a) || !describe(right, b)) return -1;
  if (a.dimensions != b.dimensions || a.lower != b.lower || a.count != b.count) return 0;
  if (a.dimensions != 1) return 1;
  const Owned of_left(listed(left, a, 0, a.count));
  const Owned of_right(of_left ? listed(right, b, 0, b.count) : nullptr);
  return of_right ? PyObject_RichCompareBool(of_left.get(), of_right.get(), Py_EQ) : -1;
}

PyObject* compare(PyObject* left, PyObject* right, int operation) {
  const bool known = operation == Py_EQ || operation == Py_NE;
  if (!known || Py_TYPE(left) != Py_TYPE(right)) {
    Py_INCREF(Py_NotImplemented);
    return Py_NotImplemented;
  }
  const int equal = same(array_of(left), array_of(right));
  return equal < 0 ? nullptr : PyBool_FromLong((equal != 0) == (operation == Py_EQ));
}

PyObject* reduce(PyObject* self, PyObject*) {
  Array* const array = array_of(self);
  orv2_array_info info{};
  if (!describe(array, info)) return nullptr;
  auto* const of = reinterpret_cast<PyObject*>(Py_TYPE(self));
  if (info.allocated == 0) return Py_BuildValue("O()", of);
  if (info.dimensions != 1) {
    return Py_BuildValue("O(Oii)", of, Py_None, static_cast<int>(info.lower),
                         static_cast<int>(info.dimensions));
  }
  const Owned elements(listed(array, info, 0, info.count));
  return elements ? Py_BuildValue("O(Oi)", of, elements.get(), static_cast<int>(info.lower))
                  : nullptr;
}

// ---- The types ----------------------------------------------------------------------

template <class F>
PyCFunction method(F* function) {
  return reinterpret_cast<PyCFunction>(reinterpret_cast<void*>(function));
}

PyMethodDef methods[] = {
    {"sized", sized, METH_VARARGS | METH_CLASS,
     "sized(lower, upper)\n\nZeros, or empty texts, from `lower` to `upper`. RunFailure 9 when\n"
     "`upper` is below `lower`."},
    {"resize", method(resize_array), METH_VARARGS | METH_KEYWORDS,
     "resize(lower, upper, keep=False)\n\nNew bounds. With `keep`, elements whose index exists in "
     "both\n"
     "ranges survive; all others are zero or empty. RunFailure 9 when `upper` is below `lower`, "
     "10\n"
     "when locked, looked at through a view, or over a buffer whose owner cannot follow."},
    {"lock", lock, METH_NOARGS, "lock()\n\nLocks against resizing, once more."},
    {"unlock", unlock, METH_NOARGS,
     "unlock()\n\nTakes one lock away. RunFailure 5 when there is none."},
    {"tolist", tolist, METH_NOARGS, "tolist()\n\nThe elements in order, as a list."},
    {"__reversed__", reversed, METH_NOARGS, nullptr},
    {"__reduce__", reduce, METH_NOARGS, nullptr},
    {"__class_getitem__", of_type, METH_O | METH_CLASS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

PyMethodDef number_methods[] = {
    {"over", method(over), METH_VARARGS | METH_KEYWORDS | METH_CLASS,
     "over(buffer, lower=0)\n\nAn array over a writable buffer of this side, worked in place.\n\n"
     "The buffer holds the array's own element type, or bytes, in one piece. It stays in use as\n"
     "long as the array. Where a member gives the array another size, an ndarray is followed by a\n"
     "new one, which `base` then is. Any other buffer's size is fixed: RunFailure 10, before\n"
     "anything is written."},
    {"view", view, METH_NOARGS,
     "view()\n\nThe elements as a memoryview, without copying. While it lives the array\n"
     "keeps its size: resizing is RunFailure 10."},
    {nullptr, nullptr, 0, nullptr},
};

PyGetSetDef properties[] = {
    {"lower", get_lower, nullptr, "The first index. RunFailure 9 when unallocated.", nullptr},
    {"upper", get_upper, nullptr, "The last index. RunFailure 9 when unallocated.", nullptr},
    {"allocated", get_allocated, nullptr, "Whether there are bounds.", nullptr},
    {"dims", get_dims, nullptr, "How many dimensions; 0 when unallocated.", nullptr},
    {"_handle", get_handle, nullptr, nullptr, nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

PyGetSetDef number_properties[] = {
    {"base", get_base, nullptr, "The object whose buffer is worked in place, or None.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

PyMemberDef layout[] = {
    {"__weaklistoffset__", T_PYSSIZET, offsetof(Array, weak), READONLY, nullptr},
    {nullptr, 0, 0, 0, nullptr},
};

constexpr const char* shared_words =
    "Array()                      unallocated\n"
    "Array([1, 2, 3], lower=1)    these elements, from index 1\n"
    "Array([])                    allocated, without elements\n"
    "Array.sized(1, 3)            zeros (or empty texts) from index 1 to 3\n"
    "Array(dims=2)                of a foreign dimension count: its elements\n"
    "                             cannot be reached\n\n"
    "Elements come from a list, anything that can be walked, or a buffer such as an\n"
    "ndarray. An index is the array's own, and so are the ends of a slice; one outside\n"
    "the bounds is RunFailure 9.";

constexpr unsigned int flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE;

PyTypeObject* made_base() {
  static const std::string words = std::string("What the five arrays share.\n\n") + shared_words;
  static PyType_Slot slots[] = {
      {Py_tp_doc, const_cast<char*>(words.c_str())},
      {Py_tp_new, slot(array_new)},
      {Py_tp_init, slot(array_init)},
      {Py_tp_dealloc, slot(array_dealloc)},
      {Py_tp_traverse, slot(array_traverse)},
      {Py_tp_clear, slot(array_clear)},
      {Py_tp_repr, slot(show)},
      {Py_tp_richcompare, slot(compare)},
      {Py_tp_hash, slot(PyObject_HashNotImplemented)},
      {Py_tp_iter, slot(iterate)},
      {Py_tp_methods, methods},
      {Py_tp_getset, properties},
      {Py_tp_members, layout},
      {Py_mp_length, slot(length)},
      {Py_mp_subscript, slot(subscript)},
      {Py_mp_ass_subscript, slot(assign)},
      {0, nullptr},
  };
  static PyType_Spec spec = {"orv2_geo.GeoArray", sizeof(Array), 0, flags | Py_TPFLAGS_HAVE_GC,
                             slots};  // which the five inherit
  return reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
}

PyTypeObject* made_class(const Kind& kind, PyObject* bases) {
  const std::string words = std::string(kind.elements) + "\n\n" + shared_words;
  const std::string name = std::string("orv2_geo.") + kind.name;
  PyType_Slot slots[7] = {{Py_tp_doc, const_cast<char*>(words.c_str())}};
  if (kind.format != nullptr) {
    slots[1] = {Py_tp_methods, number_methods};
    slots[2] = {Py_tp_getset, number_properties};
    slots[3] = {slot_get_buffer, slot(get_buffer)};
    slots[4] = {slot_release_buffer, slot(release_buffer)};
  }
  // The name must outlive the type.
  static std::string names[5];
  std::string& kept = names[&kind - kinds];
  kept = name;
  PyType_Spec spec = {kept.c_str(), sizeof(Array), 0, flags, slots};
  return reinterpret_cast<PyTypeObject*>(PyType_FromSpecWithBases(&spec, bases));
}

bool published(PyObject* module, const char* name, PyTypeObject* type) {
  auto* const object = reinterpret_cast<PyObject*>(type);
  if (object == nullptr) return false;
  Py_INCREF(object);
  return PyModule_AddObject(module, name, object) == 0;
}

}  // namespace

Array* array_in(PyObject* object) noexcept {
  return PyType_IsSubtype(Py_TYPE(object), base_type) != 0 ? array_of(object) : nullptr;
}

bool is_made(Array* array) {
  // One that garbage collection has emptied keeps its storage, and is none any more.
  if (array->handle != 0 || array->storage != nullptr) return true;
  const Owned made(unallocated(kind_of(array->type).type, array->type));
  if (!made) return false;
  take_from(made, array);
  return true;
}

bool can_be_resized(const Array* array) noexcept {
  return array->storage == nullptr || !array->storage->fixed;
}

bool make_arrays(PyObject* module) {
  if (base_type == nullptr) base_type = made_base();
  if (!published(module, "GeoArray", base_type)) return false;
  const Owned bases(PyTuple_Pack(1, base_type));
  for (Kind& kind : kinds) {
    if (kind.type == nullptr && bases) kind.type = made_class(kind, bases.get());
    if (!published(module, kind.name, kind.type)) return false;
  }
  return true;
}

}  // namespace orv2_geo::python
