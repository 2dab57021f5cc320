// A call of a vector, made in C++ on the caller's own variables.
#include "tests/vectors/direct_call.h"

#include <algorithm>
#include <deque>
#include <type_traits>
#include <utility>
#include <variant>

#include "orv2_geo/library/object.h"
#include "orv2_geo/platform/form.h"
#include "orv2_geo/platform/user_interface.h"

namespace orv2_geo::vectors {

namespace {

Value value_of(double number) { return real(number); }
Value value_of(float number) { return real(number); }
Value value_of(std::int32_t number) { return whole(Kind::i32, number); }
Value value_of(std::int16_t number) { return whole(Kind::i16, number); }
Value value_of(Bool flag) { return whole(Kind::boolean, flag.bits); }
Value value_of(const Text& text) { return text_of(text.view()); }

void put(double& place, const Value& value) { place = f64_of(value); }
void put(float& place, const Value& value) { place = f32_of(value); }
void put(std::int32_t& place, const Value& value) { place = static_cast<std::int32_t>(value.bits); }
void put(std::int16_t& place, const Value& value) { place = static_cast<std::int16_t>(value.bits); }
void put(Bool& place, const Value& value) {
  place = Bool::raw(static_cast<std::int16_t>(value.bits));
}
void put(Text& place, const Value& value) { place = Text(value.text); }

template <class T>
Value value_of(const GeoArray<T>& array, Kind kind) {
  Value value;
  value.kind = kind;
  value.allocated = array.allocated();
  if (!value.allocated) return value;
  value.lower = array.lower();
  value.dimensions = array.dimensions();
  for (std::uint32_t i = 0; i < array.count(); ++i) {
    value.elements.push_back(value_of(array.data()[i]));
  }
  return value;
}

template <class T>
void put(GeoArray<T>& array, const Value& value) {
  if (!value.allocated) return;
  array.make(value.lower, static_cast<std::uint32_t>(value.elements.size()), value.dimensions);
  for (std::size_t i = 0; i < value.elements.size(); ++i) put(array.data()[i], value.elements[i]);
}

// The answer, or what a host's object is told.
Value content_of(const Variant& variant) {
  return std::visit(
      [](const auto& held) -> Value {
        using T = std::remove_cvref_t<decltype(held)>;
        if constexpr (std::is_arithmetic_v<T> || std::is_same_v<T, Bool>) return value_of(held);
        return {};
      },
      variant.value());
}

template <class T>
Value at(const Argument& argument, T by_value) {
  const T* const variable = argument.variable_of<T>();
  return value_of(variable != nullptr ? *variable : by_value);
}

Value content_of(const Argument& argument) {
  switch (type_of(argument.tag)) {
    case Type::f64: return at(argument, argument.f64);
    case Type::f32: return at(argument, argument.f32);
    case Type::i32: return at(argument, argument.i32);
    case Type::i16: return at(argument, argument.i16);
    case Type::boolean: return at(argument, Bool::raw(argument.boolean));
    default: return {};
  }
}

// The caller's variables, and the arguments that stand for them.
class Variables {
 public:
  Variables(const std::vector<Given>& given, const std::vector<bool>& by_value,
            const ObjectRef& host)
      : given_(given) {
    for (std::size_t i = 0; i < given.size(); ++i) add(given[i], by_value[i], host);
  }

  const std::vector<Argument>& arguments() const { return arguments_; }

  std::vector<Value> content() const {
    std::vector<Value> after;
    for (std::size_t i = 0; i < given_.size(); ++i) {
      const auto same = static_cast<std::size_t>(given_[i].same_as);
      after.push_back(given_[i].same_as >= 0 ? after[same] : content_at(i));
    }
    return after;
  }

 private:
  using Variable = std::variant<double, float, std::int32_t, std::int16_t, Bool, Text, ObjectRef,
                                DoubleArray, SingleArray, LongArray, ShortArray, StringArray>;

  void add(const Given& given, bool by_value, const ObjectRef& host) {
    Variable& variable = variables_.emplace_back();
    if (given.same_as >= 0) {
      arguments_.push_back(arguments_[static_cast<std::size_t>(given.same_as)]);
      return;
    }
    begin(variable, given.value.kind);
    arguments_.push_back(given.omitted ? Argument() : argument_of(variable, given, by_value, host));
  }

  static void begin(Variable& variable, Kind kind) {
    switch (kind) {
      case Kind::i16: variable.emplace<std::int16_t>(); break;
      case Kind::i32: variable.emplace<std::int32_t>(); break;
      case Kind::f32: variable.emplace<float>(); break;
      case Kind::boolean: variable.emplace<Bool>(); break;
      case Kind::text: variable.emplace<Text>(); break;
      case Kind::object: variable.emplace<ObjectRef>(); break;
      case Kind::doubles: variable.emplace<DoubleArray>(); break;
      case Kind::singles: variable.emplace<SingleArray>(); break;
      case Kind::longs: variable.emplace<LongArray>(); break;
      case Kind::shorts: variable.emplace<ShortArray>(); break;
      case Kind::texts: variable.emplace<StringArray>(); break;
      default: break;  // a double from the start
    }
  }

  static Argument argument_of(Variable& variable, const Given& given, bool by_value,
                              const ObjectRef& host) {
    return std::visit(
        [&](auto& held) -> Argument {
          using T = std::remove_cvref_t<decltype(held)>;
          if constexpr (std::is_same_v<T, ObjectRef>) {
            if (given.value.bits != 0) held = host;
            return by_value ? Argument::of_value(held) : Argument::of(held);
          } else {
            put(held, given.value);
            if constexpr (std::is_same_v<T, Text>) {
              return by_value ? Argument::of_value(held) : Argument::of(held);
            } else if constexpr (std::is_base_of_v<ArrayBase, T>) {
              return Argument::of(held);
            } else {
              return by_value ? Argument(held) : Argument::of(held);
            }
          }
        },
        variable);
  }

  Value content_at(std::size_t i) const {
    if (given_[i].omitted) return given_[i].value;
    return std::visit(
        [&](const auto& held) -> Value {
          using T = std::remove_cvref_t<decltype(held)>;
          if constexpr (std::is_same_v<T, ObjectRef>) {
            return given_[i].value;
          } else if constexpr (std::is_base_of_v<ArrayBase, T>) {
            return value_of(held, given_[i].value.kind);
          } else {
            return value_of(held);
          }
        },
        variables_[i]);
  }

  const std::vector<Given>& given_;
  std::deque<Variable> variables_;
  std::vector<Argument> arguments_;
};

}  // namespace

// The object with the host and the person that it meets.
class DirectObject::Inside final : public UserInterface {
 public:
  explicit Inside(const char* registered_name)
      : object_(create(registered_name)),
        host_(new Host(*this)),
        before_(install_user_interface(this)) {}
  ~Inside() override { install_user_interface(before_); }
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;

  Outcome call(std::size_t position, const Variables& variables) {
    showed_form_ = false;
    now_runs(true);
    try {
      const Variant answer =
          static_cast<Object*>(object_.get())->call(position, variables.arguments());
      now_runs(false);
      outcome_.result = content_of(answer);
    } catch (...) {
      now_runs(false);
      outcome_.failure = failure_in_flight().number();
    }
    outcome_.after = variables.content();
    return std::exchange(outcome_, {});
  }

  const ObjectRef& host() const { return host_; }

  // ---- The person -----------------------------------------------------------

  void error_box(const Text& text, std::int32_t flags, const Text* caption) override {
    const TestRuns here(*this);
    Box box{flags, std::u16string(text.view()), caption != nullptr, {}};
    if (caption != nullptr) box.caption = caption->view();
    outcome_.boxes.push_back(box);
  }

  void show_modal(Form& form) override {
    showed_form_ = true;
    for (const std::string& button : buttons_) {
      try {
        form.click(button);
      } catch (const RunFailure& failure) {
        if (failure.number() != failure::no_such_member) throw;
      }
    }
  }

  WhoRuns who_runs_;
  std::vector<std::string> buttons_;
  bool showed_form_ = false;

 private:
  class TestRuns {
   public:
    explicit TestRuns(const Inside& inside) : inside_(inside) { inside_.now_runs(false); }
    ~TestRuns() { inside_.now_runs(true); }
    TestRuns(const TestRuns&) = delete;
    TestRuns& operator=(const TestRuns&) = delete;

   private:
    const Inside& inside_;
  };

  // Writes down what it is told.
  class Host final : public LateBound {
   public:
    explicit Host(Inside& inside) : inside_(inside) {}
    Variant call(std::string_view name, std::span<const Argument> arguments) override {
      const TestRuns here(inside_);
      Told told{std::string(name), {}};
      for (const Argument& one : arguments) told.values.push_back(content_of(one));
      inside_.outcome_.told.push_back(told);
      return {};
    }
    void set_property(std::string_view name, const Variant& value) override {
      const TestRuns here(inside_);
      inside_.outcome_.told.push_back({std::string(name) + "=", {content_of(value)}});
    }

   private:
    Inside& inside_;
  };

  void now_runs(bool library) const {
    if (who_runs_) who_runs_(library);
  }

  ObjectRef object_;
  ObjectRef host_;
  UserInterface* before_;
  Outcome outcome_;
};

DirectObject::DirectObject(const char* registered_name)
    : inside_(std::make_unique<Inside>(registered_name)) {}
DirectObject::~DirectObject() = default;

Outcome DirectObject::call(std::size_t position, const std::vector<Given>& given,
                           const std::vector<bool>& by_value) {
  return inside_->call(position, Variables(given, by_value, inside_->host()));
}

void DirectObject::tell_who_runs(WhoRuns told) { inside_->who_runs_ = std::move(told); }
void DirectObject::press(std::vector<std::string> buttons) {
  inside_->buttons_ = std::move(buttons);
}
bool DirectObject::showed_form() const { return inside_->showed_form_; }

}  // namespace orv2_geo::vectors
