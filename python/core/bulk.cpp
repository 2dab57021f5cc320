#include "bulk.h"

#include <algorithm>
#include <chrono>
#include <cstring>

#include "arguments.h"
#include "failures.h"
#include "interface.h"
#include "objects.h"

namespace orv2_geo::python {

namespace {

// Between two looks at the signals, by what the rows so far took.
constexpr std::size_t fewest_rows = 16;
constexpr std::size_t most_rows = 65536;
constexpr auto longest = std::chrono::milliseconds(20);

// A buffer in use, given back at the end.
class Held {
 public:
  Held() noexcept = default;
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() {
    if (held_) PyBuffer_Release(&view_);
  }

  // `rows` elements of that size, writable where they are written. False, with an exception.
  bool hold(PyObject* owner, std::size_t rows, std::size_t size, bool written) {
    const int flags = buffer_contiguous | buffer_format | (written ? buffer_writable : 0);
    if (PyObject_GetBuffer(owner, &view_, flags) != 0) return false;
    held_ = true;
    const auto bytes = static_cast<std::size_t>(view_.len);
    const bool aligned = reinterpret_cast<std::uintptr_t>(view_.buf) % size == 0;
    if (bytes % size == 0 && bytes / size == rows && (aligned || rows == 0)) return true;
    PyErr_SetString(PyExc_ValueError, "a column has an element for every row");
    return false;
  }

  char* at() const noexcept { return static_cast<char*>(view_.buf); }

 private:
  Py_buffer view_{};
  bool held_ = false;
};

constexpr std::size_t size_of(std::uint16_t type) {
  if (type == ORV2_F64 || type == ORV2_VARIANT) return sizeof(double);
  return type == ORV2_F32 || type == ORV2_I32 ? sizeof(std::int32_t) : sizeof(std::int16_t);
}

// The columns of a bulk call. A number that is the same in every row is a column of one
// element, with no step to the next.
class Columns {
 public:
  Columns(const Member& member, std::size_t rows) : member_(member), rows_(rows) {}

  bool take(std::size_t place, PyObject* owner) {
    const MemberParameter& parameter = member_.parameters[place];
    const std::size_t size = size_of(parameter.type);
    if (!held_[place].hold(owner, rows_, size, parameter.use != ORV2_READ)) return false;
    static double nothing = 0.0;  // no rows, no elements: a column all the same
    void* const at = held_[place].at();
    columns_[place] = {at != nullptr ? at : &nothing, size};
    return true;
  }

  bool take_number(std::size_t place, PyObject* value) {
    if (!stored(value, member_.parameters[place].type, constants_[place])) return false;
    columns_[place] = {&constants_[place], 0};
    return true;
  }

  const orv2_column* data() const noexcept { return columns_; }

  // Behind the rows that were called.
  void advance(std::size_t rows) {
    for (std::size_t i = 0; i < member_.count; ++i) {
      columns_[i].data = static_cast<char*>(columns_[i].data) + rows * columns_[i].step;
    }
  }

 private:
  const Member& member_;
  std::size_t rows_;
  Held held_[most_parameters];
  orv2_column columns_[most_parameters] = {};
  Cell constants_[most_parameters];
};

// The rows of one bulk call.
struct Rows {
  const Member& member;
  orv2_handle handle;
  const orv2_value* values;
  Columns& columns;
  char* results;         // null: they are not kept
  std::int32_t* failed;  // a number for each row, or null
  std::size_t done = 0;

  std::int32_t call(std::size_t count) {
    std::size_t called = 0;
    const std::int32_t status =
        library.orv2_call_rows(handle, member.position, values, columns.data(), member.count, count,
                               results, failed, &called);
    done += called;
    columns.advance(called);
    if (results != nullptr) results += called * size_of(member.result);
    if (failed != nullptr) failed += called;
    return status;
  }
};

// The RunFailure in flight gets to know its row.
void tell_row(std::size_t row) {
  if (PyErr_ExceptionMatches(lent.run_failure) == 0) return;
  const Owned failure = taken_exception();
  const Owned place(PyLong_FromSize_t(row));
  if (!place || PyObject_SetAttrString(failure.get(), "row", place.get()) != 0) PyErr_Clear();
  PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(failure.get())), failure.get());
}

bool called(Rows& rows, std::size_t count) {
  std::size_t at_once = fewest_rows;
  while (rows.done < count) {
    if (PyErr_CheckSignals() != 0) return false;
    Frame frame;
    std::int32_t status = 0;
    const auto begun = std::chrono::steady_clock::now();
    {
      const Unlocked meanwhile(true);
      status = rows.call(std::min(count - rows.done, at_once));
    }
    if (!frame.ended_well(status)) {
      tell_row(rows.done);
      return false;
    }
    const bool quick = std::chrono::steady_clock::now() - begun < longest;
    at_once = quick ? std::min(at_once * 2, most_rows) : std::max(at_once / 2, fewest_rows);
  }
  return true;
}

// Numbers and columns go their own way; what is left of the values goes that of any call.
bool split(const Member& member, PyObject* values, Columns& columns, PyObject** rest) {
  for (std::size_t i = 0; i < member.count; ++i) {
    PyObject* const value = PyTuple_GetItem(values, static_cast<Py_ssize_t>(i));
    const bool scalar = is_scalar(member.parameters[i].type);
    rest[i] = value;
    if (!scalar || value == omitted || PyUnicode_Check(value)) continue;
    rest[i] = omitted;
    const bool column = PyObject_CheckBuffer(value) != 0;
    if (!(column ? columns.take(i, value) : columns.take_number(i, value))) {
      explain_refusal(const_cast<Member*>(&member), i, value, member.source);
      return false;
    }
  }
  return true;
}

}  // namespace

PyObject* is_column(PyObject*, PyObject* arguments) {
  PyObject* owner = nullptr;
  const char* format = nullptr;
  if (PyArg_ParseTuple(arguments, "Os:is_column", &owner, &format) == 0) return nullptr;
  Py_buffer view{};
  if (PyObject_GetBuffer(owner, &view, buffer_contiguous | buffer_format) != 0) {
    PyErr_Clear();
    return PyBool_FromLong(0);
  }
  const auto size = static_cast<std::size_t>(view.itemsize);
  const bool own = view.ndim == 1 && view.format != nullptr &&
                   std::strcmp(view.format, format) == 0 && size != 0 &&
                   reinterpret_cast<std::uintptr_t>(view.buf) % size == 0;
  PyBuffer_Release(&view);
  return PyBool_FromLong(own ? 1 : 0);
}

PyObject* call_rows(PyObject*, PyObject* arguments) {
  PyObject* called_member = nullptr;
  PyObject* object = nullptr;
  PyObject* values = nullptr;
  Py_ssize_t count = 0;
  PyObject* result = nullptr;
  PyObject* failed = nullptr;
  if (PyArg_ParseTuple(arguments, "OOO!nOO:call_rows", &called_member, &object, &PyTuple_Type,
                       &values, &count, &result, &failed) == 0) {
    return nullptr;
  }
  Member* const member = member_in(called_member);
  orv2_handle handle = 0;
  if (member == nullptr) return nullptr;
  if (!handle_of_object(object, handle)) return raise(number::invalid_call);
  if (static_cast<std::size_t>(PyTuple_Size(values)) != member->count)
    return raise(number::argument_not_optional);
  if (count < 0) return raise(number::subscript_out_of_range);
  const auto rows = static_cast<std::size_t>(count);
  Columns columns(*member, rows);
  PyObject* rest[most_parameters];
  if (!split(*member, values, columns, rest)) return nullptr;
  const Called of{member, member->source, member->parameters, member->count};
  Arguments others(of, rest, member->count);
  if (!others.take()) return nullptr;
  Held answers;
  Held numbers;
  if (result != Py_None && !answers.hold(result, rows, size_of(member->result), true))
    return nullptr;
  if (failed != Py_None && !numbers.hold(failed, rows, sizeof(std::int32_t), true)) return nullptr;
  Rows all{*member, handle, others.values(), columns, nullptr, nullptr, 0};
  if (result != Py_None) all.results = answers.at();
  if (failed != Py_None) all.failed = reinterpret_cast<std::int32_t*>(numbers.at());
  Owned answer(called(all, rows) ? PyLong_FromSize_t(all.done) : nullptr);
  return others.settle_with(answer) ? answer.release() : nullptr;
}

}  // namespace orv2_geo::python
