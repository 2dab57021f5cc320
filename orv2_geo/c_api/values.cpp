#include "orv2_geo/c_api/values.h"

#include <algorithm>
#include <bit>
#include <type_traits>
#include <variant>

#include "orv2_geo/c_api/guard.h"

namespace orv2_geo::c_api {

namespace {

// A host's variable that holds an object. It is looked at anew with each use: in the
// middle of a call the host may put another object there, or none.
class ObjectVariable final : public LateBound {
 public:
  explicit ObjectVariable(const orv2_handle& variable) noexcept : variable_(variable) {}

  Variant call(std::string_view name, std::span<const Argument> arguments) override {
    return object_of(variable_)->call(name, arguments);
  }
  void set_property(std::string_view name, const Variant& value) override {
    object_of(variable_)->set_property(name, value);
  }

 private:
  const orv2_handle& variable_;
};

}  // namespace

Argument HostArguments::read(std::size_t i) {
  const orv2_value& value = values_[i];
  if (is_plain(value)) return std::bit_cast<Argument>(value);
  const Type type = type_of(value.tag);
  if (type == Type::text || value.tag == ORV2_UTF8) return text_argument(i);
  if (is_array(type)) return array_argument(i);
  if (type == Type::object) return object_argument(i);
  // A scalar that is not plain has a null pointer; anything else is no tag.
  const bool scalar = type >= Type::i16 && type <= Type::boolean && is_by_reference(value.tag);
  raise(scalar ? failure::invalid_call : failure::type_mismatch);
}

KeptForCall& HostArguments::kept() { return kept_ ? *kept_ : kept_.emplace(); }

void HostArguments::pin(std::size_t i, orv2_handle handle) { kept().pins[i].emplace(handle); }

Argument HostArguments::text_argument(std::size_t i) {
  const orv2_value& value = values_[i];
  if (value.tag == ORV2_UTF8) {
    Text& text = kept().texts[i];
    text = Text::from_utf8(needed(value.as.utf8));
    return Argument::of_value(text);
  }
  Text& text = text_of(value.as.handle);
  pin(i, value.as.handle);
  return is_by_reference(value.tag) ? Argument::of(text) : Argument::of_value(text);
}

Argument HostArguments::array_argument(std::size_t i) {
  ArrayItem& item = array_item(values_[i].as.handle);
  pin(i, values_[i].as.handle);
  // The tag must name the array's own type: nothing is converted.
  if (item.type != type_of(values_[i].tag)) raise(failure::type_mismatch);
  return with_array(item, [](auto& array) { return Argument::of(array); });
}

Argument HostArguments::object_argument(std::size_t i) {
  const orv2_value& value = values_[i];
  KeptForCall& kept = this->kept();
  if (!is_by_reference(value.tag)) {
    kept.objects[i] = object_of(value.as.handle);
    return Argument::of_value(kept.objects[i]);
  }
  const auto* const host_variable = static_cast<const orv2_handle*>(needed(value.as.pointer));
  // One host variable is one variable of the call.
  const auto first = kept.object_variables.begin();
  const auto known = std::find(first, first + static_cast<std::ptrdiff_t>(i), host_variable);
  const auto place = static_cast<std::size_t>(known - first);
  if (place == i) {
    static_cast<void>(object_of(*host_variable));  // a wrong handle is refused at once
    kept.objects[i] = ObjectRef(new ObjectVariable(*host_variable));
  }
  kept.object_variables[i] = host_variable;
  return Argument::of(kept.objects[place]);
}

orv2_value value_of(const Variant& variant) {
  return std::visit(
      [](const auto& held) -> orv2_value {
        using T = std::remove_cvref_t<decltype(held)>;
        orv2_value value{};
        if constexpr (std::is_arithmetic_v<T> || std::is_same_v<T, Bool>) {
          return std::bit_cast<orv2_value>(Argument(held));
        } else if constexpr (!std::is_same_v<T, std::monostate>) {
          raise(failure::type_mismatch);
        }
        return value;
      },
      variant.value());
}

Variant variant_of(const orv2_value& value) {
  switch (value.tag) {
    case ORV2_NONE: return {};
    case ORV2_I16: return value.as.i16;
    case ORV2_I32: return value.as.i32;
    case ORV2_F32: return value.as.f32;
    case ORV2_F64: return value.as.f64;
    case ORV2_BOOL: return Bool::raw(value.as.boolean);
    case ORV2_UTF8: return Text::from_utf8(needed(value.as.utf8));
    case ORV2_TEXT: return Text(text_of(value.as.handle));
    case ORV2_OBJECT: return object_of(value.as.handle);
    default: raise(failure::type_mismatch);
  }
}

ForHost::ForHost(std::span<const Argument> arguments) : count_(arguments.size()) {
  if (count_ > most_arguments) raise(failure::wrong_argument_count);
  for (std::size_t i = 0; i < count_; ++i) {
    const auto value = std::bit_cast<orv2_value>(arguments[i]);
    if (arguments[i].tag == by_value(Type::text)) {
      texts_.push_back(arguments[i].text->to_utf8());
      values_[i].tag = ORV2_UTF8;
      values_[i].as.utf8 = texts_.back().c_str();
    } else if (is_plain(value)) {
      values_[i] = value;
    } else {
      raise(failure::type_mismatch);
    }
  }
}

}  // namespace orv2_geo::c_api
