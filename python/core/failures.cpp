#include "failures.h"

#include <cstring>
#include <new>

#include "library.h"

namespace orv2_geo::python {

Lent lent;

namespace {

thread_local Frame* innermost_frame = nullptr;

Owned attribute(PyObject* object, const char* name) {
  return Owned(PyObject_GetAttrString(object, name));
}

// A RunFailure with words. Empty, with an exception, on failure.
Owned made(std::int32_t number, const char* description, const char* source) {
  const Owned words = text_of_c(description);
  const Owned component = words ? text_of_c(source) : Owned();
  if (!component) return {};
  return Owned(PyObject_CallFunction(lent.run_failure, "iOO", static_cast<int>(number), words.get(),
                                     component.get()));
}

void raise_object(const Owned& exception) {
  if (exception)
    PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(exception.get())), exception.get());
}

bool is_a(PyObject* exception, PyObject* of_class) {
  return of_class != nullptr && PyErr_GivenExceptionMatches(exception, of_class) != 0;
}

// Its message, or its type's name when it has none. Never empty-handed but out of memory.
Owned words_of(PyObject* exception) {
  Owned message(PyObject_Str(exception));
  if (!message) PyErr_Clear();  // an exception without words of its own
  if (message && PyUnicode_GetLength(message.get()) > 0) return message;
  return attribute(reinterpret_cast<PyObject*>(Py_TYPE(exception)), "__name__");
}

std::int32_t named(std::int32_t number, const char* description, const char* source) {
  library.orv2_set_failure(number, description, source);
  return number;
}

// The number that a RunFailure travels by: 0 when it cannot.
std::int32_t number_of(PyObject* failure) {
  const Owned given = attribute(failure, "number");
  if (!given) return PyErr_Clear(), 0;
  int overflow = 0;
  const long value = PyLong_AsLongAndOverflow(given.get(), &overflow);
  if (PyErr_Occurred() != nullptr) return PyErr_Clear(), 0;
  const bool fits = overflow == 0 && value >= INT32_MIN && value <= INT32_MAX;
  return fits ? static_cast<std::int32_t>(value) : 0;
}

// A text attribute of a failure as characters; empty where it is none.
Owned c_attribute(PyObject* failure, const char* name) {
  const Owned text = attribute(failure, name);
  Owned bytes = text && PyUnicode_Check(text.get()) ? c_text_of(text.get()) : Owned();
  if (!bytes) PyErr_Clear();
  return bytes;
}

const char* or_empty(const Owned& bytes) { return bytes ? characters(bytes) : ""; }

}  // namespace

bool library_is_open() {
  if (is_open()) [[likely]]
    return true;
  return static_cast<bool>(Owned(PyObject_CallObject(lent.open, nullptr)));
}

PyObject* raise(std::int32_t number, const char* source) {
  const Owned failure = made(number, nullptr, source);
  raise_object(failure);
  return nullptr;
}

PyObject* raise_last() {
  orv2_failure told{};
  if (library.orv2_last_failure(&told) != 0) told.number = number::invalid_call;
  const Owned failure = made(told.number, told.description, told.source);
  raise_object(failure);
  return nullptr;
}

Owned text_of_c(const char* utf8) {
  if (utf8 == nullptr) utf8 = "";
  const auto length = static_cast<Py_ssize_t>(std::strlen(utf8));
  PyObject* const text = PyUnicode_DecodeUTF8(utf8, length, "surrogatepass");
  if (text != nullptr || PyErr_ExceptionMatches(PyExc_UnicodeDecodeError) == 0) return Owned(text);
  PyErr_Clear();
  return Owned(PyUnicode_DecodeUTF8(utf8, length, "replace"));
}

Owned c_text_of(PyObject* text) {
  Owned bytes(PyUnicode_AsEncodedString(text, "utf-8", "surrogatepass"));
  if (!bytes) return bytes;
  char* units = nullptr;
  Py_ssize_t length = 0;
  if (PyBytes_AsStringAndSize(bytes.get(), &units, &length) != 0) return {};
  if (std::memchr(units, '\0', static_cast<std::size_t>(length)) == nullptr) return bytes;
  const Owned zero(PyUnicode_FromStringAndSize("\0", 1));
  const Owned stand_in(zero ? PyUnicode_FromString("\xef\xbf\xbd") : nullptr);
  if (!stand_in) return {};
  const Owned whole(PyUnicode_Replace(text, zero.get(), stand_in.get(), -1));
  return whole ? c_text_of(whole.get()) : Owned();
}

const char* characters(const Owned& bytes) { return PyBytes_AsString(bytes.get()); }

Lease* leased(PyObject* base) {
  void* const memory = PyMem_RawMalloc(sizeof(Lease));
  if (memory == nullptr) return refused(number::out_of_memory), nullptr;
  auto* const made = new (memory) Lease;
  constexpr int flags = buffer_writable | buffer_format | buffer_contiguous;
  if (PyObject_GetBuffer(base, &made->buffer, flags) != 0) return PyMem_RawFree(made), nullptr;
  Py_INCREF(base);
  made->base = base;
  return made;
}

void give_back(Lease* lease) noexcept {
  if (lease == nullptr) return;
  PyBuffer_Release(&lease->buffer);
  Py_DECREF(lease->base);
  PyMem_RawFree(lease);
}

Frame::Frame() noexcept : outer_(innermost_frame) { innermost_frame = this; }

Frame::~Frame() {
  innermost_frame = outer_;
  Py_XDECREF(interrupt_);
  Py_XDECREF(cause_);
  Py_XDECREF(words_);
  Py_XDECREF(answer_);
  while (retired_ != nullptr) give_back(std::exchange(retired_, retired_->next));
}

Frame* Frame::innermost() noexcept { return innermost_frame; }

bool Frame::interrupted() noexcept {
  return innermost_frame != nullptr && innermost_frame->interrupt_ != nullptr;
}

bool Frame::keep_answer(PyObject* owner) {
  if (innermost_frame == nullptr) return refused(number::invalid_call);
  Py_INCREF(owner);
  put_in_place(innermost_frame->answer_, owner);
  return true;
}

void Frame::retire(Lease* lease) noexcept { lease->next = std::exchange(retired_, lease); }

bool Frame::ended_well(std::int32_t status) {
  if (interrupt_ == nullptr && status == 0) [[likely]]
    return true;
  return raise_status();
}

bool Frame::raise_status() {
  if (interrupt_ != nullptr) {
    PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(interrupt_)), interrupt_);
    return false;
  }
  raise_last();
  if (cause_ == nullptr) return false;
  // The failure is the exception's own where it carries its number and its words.
  const Owned failure = taken_exception();
  const Owned words = failure ? attribute(failure.get(), "description") : Owned();
  const bool same = words && words_ != nullptr && number_of(failure.get()) == number_ &&
                    PyObject_RichCompareBool(words.get(), words_, Py_EQ) == 1;
  PyErr_Clear();
  if (same) {
    Py_INCREF(cause_);
    PyException_SetCause(failure.get(), cause_);
  }
  raise_object(failure);
  return false;
}

std::int32_t Frame::answer_for_exception() noexcept {
  Owned raised = taken_exception();
  Frame* const frame = innermost_frame;
  if (!raised) return named(number::out_of_memory, "", "");
  PyObject* const exception = raised.get();
  if (is_a(exception, lent.run_failure)) {
    const std::int32_t number = number_of(exception);
    const Owned description = c_attribute(exception, "description");
    const Owned source = c_attribute(exception, "source");
    if (number != 0) return named(number, or_empty(description), or_empty(source));
  }
  const bool ordinary = is_a(exception, PyExc_Exception) && !is_a(exception, lent.warning);
  Owned words = words_of(exception);
  const Owned spoken = words ? c_text_of(words.get()) : Owned();
  Owned heard = spoken ? text_of_c(characters(spoken)) : Owned();
  PyErr_Clear();
  const bool no_memory = is_a(exception, PyExc_MemoryError);
  const std::int32_t number =
      named(no_memory ? number::out_of_memory : number::host_object_failed, or_empty(spoken), "");
  if (frame != nullptr && ordinary) {
    frame->number_ = number;
    put_in_place(frame->cause_, raised.release());
    put_in_place(frame->words_, heard.release());
  } else if (frame != nullptr && frame->interrupt_ == nullptr) {
    frame->interrupt_ = raised.release();
  }
  return number;
}

}  // namespace orv2_geo::python
