// One member called for every row of some columns.
#include <algorithm>
#include <bit>
#include <cstring>

#include "orv2_geo/c_api/guard.h"
#include "orv2_geo/c_api/handles.h"
#include "orv2_geo/c_api/values.h"
#include "orv2_geo/orv2_geo.h"
#include "orv2_geo/platform/text_services.h"

using namespace orv2_geo;
using namespace orv2_geo::c_api;

namespace {

std::size_t size_of(Type type) {
  switch (type) {
    case Type::f64:
    case Type::variant: return sizeof(double);
    case Type::f32: return sizeof(float);
    case Type::i32: return sizeof(std::int32_t);
    case Type::i16:
    case Type::boolean: return sizeof(std::int16_t);
    default: raise(failure::type_mismatch);
  }
}

// A column on its way down: the slot of its parameter follows it.
struct Column {
  orv2_value* slot;
  char* at;
  std::size_t step;
  std::size_t size;  // of a value to be copied into the slot; 0: the slot points at it

  void fill() const {
    switch (size) {
      case 0: slot->as.pointer = at; return;
      case sizeof(double): std::memcpy(&slot->as.f64, at, sizeof(double)); return;
      case sizeof(float): std::memcpy(&slot->as.f32, at, sizeof(float)); return;
      default: std::memcpy(&slot->as.i16, at, sizeof(std::int16_t)); return;
    }
  }
};

// The values of a row: those that are the same in all, and the columns' own.
class Row {
 public:
  Row(std::span<const ParameterDescription> parameters, const orv2_value* values,
      const orv2_column* columns, std::size_t count)
      : count_(count) {
    std::copy_n(values, count, values_.begin());
    for (std::size_t i = 0; columns != nullptr && i < count && i < parameters.size(); ++i) {
      if (columns[i].data != nullptr) add(values_[i], parameters[i], columns[i]);
    }
  }
  Row(const Row&) = delete;
  Row& operator=(const Row&) = delete;

  void advance() {
    for (std::size_t k = 0; k < used_; ++k) {
      columns_[k].at += columns_[k].step;
      columns_[k].fill();
    }
  }

  // Whether all values are numbers, flags and their variables.
  bool is_plain() const {
    return std::all_of(values_.begin(), values_.begin() + static_cast<std::ptrdiff_t>(count_),
                       [](const orv2_value& value) { return c_api::is_plain(value); });
  }

  const orv2_value* values() const { return values_.data(); }
  std::span<const Argument> arguments() const {
    return {reinterpret_cast<const Argument*>(values_.data()), count_};
  }

 private:
  void add(orv2_value& slot, const ParameterDescription& parameter, const orv2_column& column) {
    const std::size_t size = size_of(parameter.type);
    slot.tag = parameter.by_reference ? by_reference(parameter.type) : by_value(parameter.type);
    columns_[used_] = {&slot, static_cast<char*>(column.data), column.step,
                       parameter.by_reference ? 0 : size};
    columns_[used_++].fill();
  }

  std::array<orv2_value, most_arguments> values_{};
  std::array<Column, most_arguments> columns_;
  std::size_t count_;
  std::size_t used_ = 0;
};

// Where the answers go, one behind the other; a row without one leaves zeros.
class Results {
 public:
  Results(void* at, Type type)
      : at_(static_cast<char*>(at)),
        size_(at != nullptr ? size_of(type) : 0),
        variant_(type == Type::variant) {}

  bool of_variants() const noexcept { return variant_; }

  void put(const Argument& answer) {
    if (at_ == nullptr) return;
    std::memcpy(at_, &answer.f64, size_);
    at_ += size_;
  }
  void put(const Variant& answer) {
    if (at_ == nullptr) return;
    const double number = number_in(answer);
    std::memcpy(at_, &number, size_);
    at_ += size_;
  }

  void put_none() {
    if (at_ == nullptr) return;
    std::memset(at_, 0, size_);
    at_ += size_;
  }

 private:
  static double number_in(const Variant& variant) {
    if (const auto* number = variant.get<double>()) return *number;
    const auto* single = variant.get<float>();
    return single != nullptr ? static_cast<double>(*single) : 0.0;
  }

  char* at_;
  std::size_t size_;
  bool variant_;
};

// One row of a member that answers with a variant.
[[gnu::noinline]] void call_variant_row(Object& object, const MemberDescription& member,
                                        const Row& row, Results& results) {
  Variant answer;
  HostArguments reader(row.values());
  object.invoke_here(
      member, {row.arguments(), &answer, nullptr, &text_services::number_from_text, &reader});
  results.put(answer);
}

// Whatever the arguments are: their reader keeps alive what a row needs.
[[gnu::noinline]] void call_any_row(Object& object, const MemberDescription& member, const Row& row,
                                    Results& results) {
  Argument answer;
  HostArguments reader(row.values());
  object.invoke_here(
      member, {row.arguments(), nullptr, &answer, &text_services::number_from_text, &reader});
  results.put(answer);
}

// Calls rows of one kind, from `done` on; `done` counts on with each.
class Rows {
 public:
  Rows(Object& object, const MemberDescription& member, Row& row, Results& results,
       std::size_t count)
      : object_(object), member_(member), row_(row), results_(results), count_(count) {}

  void call(std::size_t& done) {
    if (results_.of_variants())
      return each(done, [this] { call_variant_row(object_, member_, row_, results_); });
    if (!row_.is_plain())
      return each(done, [this] { call_any_row(object_, member_, row_, results_); });
    // Numbers and flags are the library's arguments as they stand: one call serves all rows.
    Argument answer;
    const Call call{row_.arguments(), nullptr, &answer, &text_services::number_from_text, nullptr};
    each(done, [&] {
      object_.invoke_here(member_, call);
      results_.put(answer);
    });
  }

  std::size_t count() const noexcept { return count_; }

 private:
  template <class CallRow>
  void each(std::size_t& done, CallRow&& call_row) {
    for (; done < count_; ++done) {
      if (done != 0) row_.advance();
      call_row();
    }
  }

  Object& object_;
  const MemberDescription& member_;
  Row& row_;
  Results& results_;
  std::size_t count_;
};

// Goes on behind each row that fails, and notes its number.
void call_all(Rows& rows, Results& results, std::int32_t* failures) {
  std::fill_n(failures, rows.count(), 0);
  for (std::size_t done = 0; done < rows.count();) {
    const std::int32_t number = guarded([&] { rows.call(done); });
    if (done == rows.count()) return;
    failures[done++] = number;
    results.put_none();
  }
}

}  // namespace

int32_t orv2_call_rows(orv2_handle object, size_t position, const orv2_value* arguments,
                       const orv2_column* columns, size_t count, size_t rows, void* results,
                       int32_t* failures, size_t* done) {
  std::size_t called = 0;
  const std::int32_t status = guarded([&] {
    ObjectItem& item = object_item(object);
    if (item.own == nullptr) raise(failure::invalid_call);  // a host's own object
    const Pin during_the_call(object);
    Object& own = *item.own;
    const auto refuse = [&](std::int32_t number) {
      throw RunFailure::signed_by(number, own.description().registered_name);
    };
    if (count > most_arguments) refuse(failure::wrong_argument_count);
    if (count != 0 && arguments == nullptr) refuse(failure::invalid_call);
    const MemberDescription& member = own.member(position);
    Row row(member.parameters, arguments, columns, count);
    Results answers(results, member.result);
    Rows all(own, member, row, answers, rows);
    if (failures == nullptr) return all.call(called);
    call_all(all, answers, failures);
    called = rows;
  });
  if (done != nullptr) *done = called;
  return status;
}
