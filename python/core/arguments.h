// arguments.h: the arguments of one call, from what Python hands in to what the library takes.
#pragma once

#include <algorithm>
#include <array>

#include "arrays.h"
#include "hosts.h"
#include "library.h"
#include "objects.h"
#include "owned.h"
#include "refs.h"

namespace orv2_geo::python {

/// What a call is of: enough to say which argument was refused.
struct Called {
  Member* member = nullptr;  // null: a function of the tests
  const char* source = nullptr;
  const MemberParameter* parameters = nullptr;
  std::size_t count = 0;
};

/// Values on their way in, and what is lent for them until the call is over.
class Arguments {
 public:
  Arguments(const Called& called, PyObject* const* given, std::size_t count)
      : called_(called), given_(given), count_(count) {}
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;
  ~Arguments() {
    // In the order opposite to their binding: what was first is restored last.
    for (std::size_t i = bindable(); i-- > 0;) bound_[i].end();
    for (std::size_t i = 0; i < hosts_; ++i) release(lent_[i]);
  }

  /// False, with an exception, when one is refused.
  bool take();

  /// After a call that ended with an answer, which is empty, with an exception, where it could
  /// not be had. False, with an exception, when that or a variable could not be read.
  bool settle_with(const Owned& answer) {
    if (answer) return settle();
    settle_beside();
    return false;
  }

  /// The same with an exception in flight, which stays.
  void settle_beside() {
    const ExceptionAside kept;
    if (!settle()) PyErr_Clear();
  }

  /// After the call. False, with an exception, when a variable could not be read.
  bool settle() {
    bool well = true;
    for (std::size_t i = bindable(); i-- > 0;) {
      if (bound_here_[i] && !bound_[i].settle()) well = false;
    }
    return well;
  }

  orv2_value* values() noexcept { return values_.data(); }
  std::size_t count() const noexcept { return count_; }

 private:
  std::size_t bindable() const noexcept { return std::min(count_, most_parameters); }
  bool put(std::size_t i);
  bool put_ref(std::size_t i, Ref* ref);
  bool put_value(std::size_t i, PyObject* value);
  bool put_array(std::size_t i, Array* array);
  bool put_host(std::size_t i, PyObject* target);
  bool put_number(std::size_t i, PyObject* value);
  bool warn_of_lost_answer(std::size_t i);

  const Called& called_;
  PyObject* const* given_;
  std::size_t count_;
  std::array<orv2_value, most_parameters + 1> values_{};  // one more: the library refuses it
  std::array<Bound, most_parameters> bound_;
  std::array<bool, most_parameters> bound_here_{};
  Owned kept_;  // a list of what values point at
  PyObject* hosts_seen_[most_parameters] = {};
  orv2_handle lent_[most_parameters] = {};
  std::size_t hosts_ = 0;
};

}  // namespace orv2_geo::python
