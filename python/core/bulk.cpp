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
    const bool aligned = reinterpret_cast<std::uintptr_t>(view_.buf) % size == 0 || !written;
    if (bytes % size == 0 && bytes / size == rows && aligned) return true;
    PyErr_SetString(PyExc_ValueError, "a column has an element for every row");
    return false;
  }

  char* at() const noexcept { return static_cast<char*>(view_.buf); }

 private:
  Py_buffer view_{};
  bool held_ = false;
};

constexpr std::size_t size_of(std::uint16_t type) {
  if (type == ORV2_F64) return sizeof(double);
  return type == ORV2_F32 || type == ORV2_I32 ? sizeof(std::int32_t) : sizeof(std::int16_t);
}

// The columns of a bulk call: where each row's element is, and the slot that it goes to.
class Columns {
 public:
  Columns(const Member& member, std::size_t rows) : member_(member), rows_(rows) {}

  bool take(std::size_t place, PyObject* owner) {
    const MemberParameter& parameter = member_.parameters[place];
    const std::size_t size = size_of(parameter.type);
    const bool written = parameter.use != ORV2_READ;
    if (!held_[count_].hold(owner, rows_, size, written)) return false;
    columns_[count_] = {place, held_[count_].at(), size, parameter.by_reference, written};
    ++count_;
    return true;
  }

  // A number that is the same in every row.
  bool take_number(std::size_t place, PyObject* value) {
    if (!stored(value, member_.parameters[place].type, constants_[place])) return false;
    constant_[place] = true;
    return true;
  }

  // Puts the first row into the slots.
  void begin(orv2_value* values) {
    for (std::size_t i = 0; i < member_.count; ++i) {
      if (constant_[i]) put(values[i], i, &constants_[i]);
    }
    for (std::size_t k = 0; k < count_; ++k) {
      const Column& column = columns_[k];
      if (!column.written && rows_ != 0)
        std::memcpy(&constants_[column.place], column.at, column.size);
      void* const copy = &constants_[column.place];
      put(values[column.place], column.place, column.written ? column.at : copy);
    }
  }

  // And the next.
  void advance(orv2_value* values) {
    for (std::size_t k = 0; k < count_; ++k) {
      Column& column = columns_[k];
      column.at += column.size;
      if (column.written) {
        values[column.place].as.pointer = column.at;
      } else if (column.by_reference) {
        std::memcpy(&constants_[column.place], column.at, column.size);
      } else {
        std::memcpy(&values[column.place].as, column.at, column.size);
      }
    }
  }

 private:
  struct Column {
    std::size_t place;
    char* at;
    std::size_t size;
    bool by_reference;
    bool written;  // in place; what is only read goes by a copy, wherever it lies
  };

  void put(orv2_value& slot, std::size_t place, void* at) {
    const MemberParameter& parameter = member_.parameters[place];
    slot.tag = parameter.type;
    if (parameter.by_reference) {
      slot.tag |= ORV2_BYREF;
      slot.as.pointer = at;
    } else {
      std::memcpy(&slot.as, at, size_of(parameter.type));
    }
  }

  const Member& member_;
  std::size_t rows_;
  Held held_[most_parameters];
  Column columns_[most_parameters];
  std::size_t count_ = 0;
  Cell constants_[most_parameters] = {};  // and a read column's present row
  bool constant_[most_parameters] = {};
};

// Where the answers of the rows go.
class Results {
 public:
  bool take(PyObject* owner, std::size_t rows, std::uint16_t type) {
    if (owner == Py_None) return true;
    type_ = type == ORV2_VARIANT ? std::uint16_t{ORV2_F64} : type;
    size_ = type_ == ORV2_BOOL ? 1 : size_of(type_);
    if (!held_.hold(owner, rows, size_, true)) return false;
    at_ = held_.at();
    return true;
  }

  void put(const orv2_value& answer) {
    if (at_ == nullptr) return;
    if (type_ == ORV2_BOOL) {
      *at_ = static_cast<char>(answer.tag == ORV2_BOOL && answer.as.boolean != 0);
    } else if (answer.tag == type_) {
      std::memcpy(at_, &answer.as, size_);
    } else if (type_ == ORV2_F64) {  // what a variant holds
      const double wide = answer.tag == ORV2_F32 ? static_cast<double>(answer.as.f32) : 0.0;
      std::memcpy(at_, &wide, size_);
    } else {
      std::memset(at_, 0, size_);
    }
    at_ += size_;
  }

 private:
  Held held_;
  char* at_ = nullptr;
  std::size_t size_ = 0;
  std::uint16_t type_ = ORV2_NONE;
};

// The rows of one bulk call.
struct Rows {
  Member& member;
  orv2_handle handle;
  orv2_value* values;
  Columns& columns;
  Results results;
  std::int32_t* failed;  // a number for each row, or null
  std::size_t done = 0;

  // Up to `end`; the failure's number, at the row `done`.
  std::int32_t call(std::size_t end) {
    for (; done < end; ++done) {
      orv2_value answer;
      answer.tag = ORV2_NONE;
      answer.as.f64 = 0.0;
      if (done != 0) columns.advance(values);
      const std::int32_t status =
          library.orv2_call(handle, member.position, values, member.count, &answer);
      if (failed != nullptr) {
        failed[done] = status;
      } else if (status != 0) {
        return status;
      }
      results.put(answer);
    }
    return 0;
  }
};

bool called(Rows& rows, std::size_t count) {
  std::size_t at_once = fewest_rows;
  while (rows.done < count) {
    if (PyErr_CheckSignals() != 0) return false;
    Frame frame;
    std::int32_t status = 0;
    const auto begun = std::chrono::steady_clock::now();
    {
      const Unlocked meanwhile(true);
      status = rows.call(rows.done + std::min(count - rows.done, at_once));
    }
    if (!frame.ended_well(status)) return false;
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
  if (count < 0) return raise(number::subscript_out_of_range);
  if (static_cast<std::size_t>(PyTuple_Size(values)) != member->count)
    return raise(number::argument_not_optional);
  const auto rows = static_cast<std::size_t>(count);
  Columns columns(*member, rows);
  PyObject* rest[most_parameters];
  if (!split(*member, values, columns, rest)) return nullptr;
  const Called of{member, member->source, member->parameters, member->count};
  Arguments others(of, rest, member->count);
  if (!others.take()) return nullptr;
  columns.begin(others.values());
  Held numbers;
  if (failed != Py_None && !numbers.hold(failed, rows, sizeof(std::int32_t), true)) return nullptr;
  Rows all{*member, handle, others.values(), columns, {}, nullptr, 0};
  if (failed != Py_None) all.failed = reinterpret_cast<std::int32_t*>(numbers.at());
  if (!all.results.take(result, rows, member->result)) return nullptr;
  Owned answer(called(all, rows) ? PyLong_FromSize_t(all.done) : nullptr);
  return others.settle_with(answer) ? answer.release() : nullptr;
}

}  // namespace orv2_geo::python
