#include "arguments.h"

#include "failures.h"
#include "interface.h"

namespace orv2_geo::python {

bool Arguments::take() {
  if (count_ > most_parameters) count_ = most_parameters + 1;
  kept_ = Owned(PyList_New(0));
  if (!kept_) return false;
  for (std::size_t i = 0; i < count_; ++i) {
    if (!put(i)) {
      explain_refusal(called_.member, i, given_[i], called_.source);
      return false;
    }
  }
  return true;
}

bool Arguments::put(std::size_t i) {
  PyObject* const value = given_[i];
  if (value == omitted || count_ > called_.count) {
    values_[i].tag = ORV2_OMITTED;  // the library itself refuses too many
    return true;
  }
  return is_ref(value) ? put_ref(i, ref_in(value)) : put_value(i, value);
}

bool Arguments::put_ref(std::size_t i, Ref* ref) {
  const MemberParameter& parameter = called_.parameters[i];
  const bool can_vary =
      is_scalar(parameter.type) || parameter.type == ORV2_TEXT || parameter.type == ORV2_OBJECT;
  if (parameter.by_reference && can_vary) {
    bound_here_[i] = bound_[i].bind(ref, parameter.type, values_[i]);
    return bound_here_[i];
  }
  const Owned value = value_of(ref);
  return value && PyList_Append(kept_.get(), value.get()) == 0 && put_value(i, value.get());
}

bool Arguments::put_array(std::size_t i, Array* array) {
  if (!is_made(array)) return false;
  // A member that gives other bounds is not begun on what cannot have any.
  if (called_.parameters[i].use == ORV2_RESIZED && !can_be_resized(array)) {
    return refused(number::array_locked);
  }
  values_[i].tag = static_cast<std::uint16_t>(array->type | ORV2_BYREF);
  values_[i].as.handle = array->handle;
  return true;
}

bool Arguments::put_value(std::size_t i, PyObject* value) {
  const MemberParameter& parameter = called_.parameters[i];
  if (Array* const array = array_in(value)) return put_array(i, array);
  if (value == Py_None || handle_of_object(value, values_[i].as.handle)) {
    values_[i].tag = ORV2_OBJECT;
    return true;
  }
  const bool plain_value = PyLong_Check(value) || PyFloat_Check(value) || PyUnicode_Check(value);
  if (parameter.type == ORV2_OBJECT && !plain_value) return put_host(i, value);
  return put_number(i, value) && warn_of_lost_answer(i);
}

// One handle for each object, however often it is given.
bool Arguments::put_host(std::size_t i, PyObject* target) {
  std::size_t known = 0;
  while (known < hosts_ && hosts_seen_[known] != target) ++known;
  if (known == hosts_) {
    bool owned = false;
    if (!lend(target, lent_[known], owned)) return false;
    hosts_seen_[hosts_++] = target;
  }
  values_[i].tag = ORV2_OBJECT;
  values_[i].as.handle = lent_[known];
  return true;
}

bool Arguments::put_number(std::size_t i, PyObject* value) {
  const Owned worth = plain(value);
  if (!worth) return false;
  if (called_.parameters[i].type == ORV2_BOOL && PyLong_Check(worth.get())) {
    Cell cell{};
    values_[i].tag = ORV2_BOOL;
    if (!stored(worth.get(), ORV2_BOOL, cell)) return false;
    values_[i].as.boolean = cell.i16;
    return true;
  }
  return put_plain(values_[i], worth.get(), kept_.get());
}

// A plain number where a member writes: its answer is lost. Once a call site.
bool Arguments::warn_of_lost_answer(std::size_t i) {
  const MemberParameter& parameter = called_.parameters[i];
  const bool is_number = values_[i].tag != ORV2_UTF8 && values_[i].tag != ORV2_TEXT;
  if (called_.member == nullptr || parameter.use == ORV2_READ || !is_number) return true;
  PyObject* const name = PyTuple_GetItem(called_.member->names, static_cast<Py_ssize_t>(i));
  const Owned words(PyUnicode_FromFormat("%U writes %U: give it a Ref, or the answer is lost",
                                         called_.member->name, name));
  return words && Owned(PyObject_CallFunctionObjArgs(lent.warn, words.get(), nullptr));
}

}  // namespace orv2_geo::python
