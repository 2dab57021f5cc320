// Objects, their members and the catalogue across the C boundary.
#include <bit>

#include "orv2_geo/c_api/guard.h"
#include "orv2_geo/c_api/handles.h"
#include "orv2_geo/c_api/values.h"
#include "orv2_geo/library/catalogue.h"
#include "orv2_geo/library/object.h"
#include "orv2_geo/orv2_geo.h"
#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/platform/thread_number.h"

using namespace orv2_geo;
using namespace orv2_geo::c_api;

namespace {

const ClassDescription& class_at(size_t index) {
  const auto classes = catalogue();
  if (index >= classes.size()) raise(failure::subscript_out_of_range);
  return *classes[index];
}

const MemberDescription& member_at(size_t class_index, size_t position) {
  const auto members = class_at(class_index).members;
  if (position >= members.size()) raise(failure::subscript_out_of_range);
  return members[position];
}

const ParameterDescription& parameter_at(size_t class_index, size_t position, size_t parameter) {
  const auto parameters = member_at(class_index, position).parameters;
  if (parameter >= parameters.size()) raise(failure::subscript_out_of_range);
  return parameters[parameter];
}

Object& library_object(ObjectItem& item) {
  if (item.own == nullptr) raise(failure::invalid_call);  // a host's own object
  return *item.own;
}

// What every call goes through stands in the two functions that make one: frames of its own
// cost as much as the rest of it.

// The library's object behind a handle of the call's own thread.
[[gnu::always_inline]] inline Object& own_object(orv2_handle object,
                                                 const FloatingPointGuard& call) {
  if (object == 0) raise(failure::object_not_set);
  Item& item = item_of(object, Kind::object, thread_number_under(call));
  return library_object(static_cast<ObjectItem&>(item));
}

// A call goes down once: numbers and flags as they stand, all else by way of the
// reader. The answer is written where the host wants it: a copy of all its bytes would wait
// for the few that were just written.
void call_member(Object& object, const MemberDescription& member,
                 std::span<const Argument> arguments, HostArguments& reader, orv2_value* result) {
  object.invoke_here(member, {arguments, nullptr, reinterpret_cast<Argument*>(result),
                              &text_services::number_from_text, &reader});
}

// The same for a member that answers with nothing.
void call_without_answer(Object& object, const MemberDescription& member,
                         std::span<const Argument> arguments, HostArguments& reader,
                         orv2_value* result) {
  call_member(object, member, arguments, reader, nullptr);
  if (result != nullptr) *result = orv2_value{};
}

// The same for a member that answers with a variant.
[[gnu::noinline]] void call_variant(Object& object, const MemberDescription& member,
                                    std::span<const Argument> arguments, HostArguments& reader,
                                    orv2_value* result) {
  Variant answer;
  object.invoke_here(member,
                     {arguments, &answer, nullptr, &text_services::number_from_text, &reader});
  if (result != nullptr) *result = value_of(answer);
}

// What fails before the object is entered is signed here.
[[noreturn, gnu::noinline]] void refuse(const Object& object, int32_t number) {
  throw RunFailure::signed_by(number, object.description().registered_name);
}

[[gnu::always_inline]] inline void call_values(Object& object, size_t position,
                                               const orv2_value* values, size_t count,
                                               orv2_value* result) {
  if (count > most_arguments) refuse(object, failure::wrong_argument_count);
  if (count != 0 && values == nullptr) refuse(object, failure::invalid_call);
  const std::span arguments(reinterpret_cast<const Argument*>(values), count);
  const MemberDescription& member = object.member(position);
  HostArguments reader(values);
  if (member.result == Type::none)
    return call_without_answer(object, member, arguments, reader, result);
  if (member.result == Type::variant)
    return call_variant(object, member, arguments, reader, result);
  call_member(object, member, arguments, reader, result);
}

}  // namespace

int32_t orv2_version(void) { return ORV2_VERSION; }

size_t orv2_class_count(void) { return catalogue().size(); }

int32_t orv2_class_at(size_t index, orv2_class_info* info) {
  return guarded([&] {
    const ClassDescription& one = class_at(index);
    *needed(info) = {one.name.data(), one.registered_name, one.members.size()};
  });
}

int32_t orv2_member_at(size_t class_index, size_t position, orv2_member_info* info) {
  return guarded([&] {
    const MemberDescription& member = member_at(class_index, position);
    *needed(info) = {member.name.data(), static_cast<int32_t>(member.kind), by_value(member.result),
                     member.parameters.size()};
  });
}

int32_t orv2_parameter_at(size_t class_index, size_t position, size_t parameter,
                          orv2_parameter_info* info) {
  return guarded([&] {
    const ParameterDescription& one = parameter_at(class_index, position, parameter);
    *needed(info) = {one.name.data(),
                     one.by_reference ? by_reference(one.type) : by_value(one.type),
                     Bool(one.optional).bits, Bool(one.has_default).bits, one.default_value};
  });
}

int32_t orv2_parameter_use(size_t class_index, size_t position, size_t parameter, int32_t* use) {
  return guarded([&] {
    const ParameterDescription& one = parameter_at(class_index, position, parameter);
    *needed(use) = static_cast<int32_t>(one.use);
  });
}

int32_t orv2_create(const char* registered_name, orv2_handle* object) {
  return guarded([&] {
    needed(object);
    const ObjectRef created = create(needed(registered_name));
    auto* const own = static_cast<Object*>(created.get());
    *object = handle_for(std::make_unique<ObjectItem>(created, own));
  });
}

int32_t orv2_reference(orv2_handle object) {
  return guarded([&] { add_reference(object); });
}

int32_t orv2_release(orv2_handle object) {
  return guarded([&] {
    if (object != 0) drop_reference(object);
  });
}

int32_t orv2_class_of(orv2_handle object, size_t* class_index) {
  return guarded([&] {
    needed(class_index);
    const ClassDescription* const mine = &library_object(object_item(object)).description();
    const auto classes = catalogue();
    size_t i = 0;
    while (classes[i] != mine) ++i;
    *class_index = i;
  });
}

int32_t orv2_find_member(orv2_handle object, const char* name, int32_t kind, size_t* position) {
  return guarded([&] {
    const ClassDescription& mine = library_object(object_item(object)).description();
    needed(position);
    if (kind < ORV2_METHOD || kind > ORV2_ANY) raise(failure::invalid_call);
    const auto found = find_member(mine, needed(name), static_cast<Wanted>(kind));
    if (!found) throw RunFailure::signed_by(failure::no_such_member, mine.registered_name);
    *position = *found;
  });
}

int32_t orv2_call(orv2_handle object, size_t position, const orv2_value* arguments, size_t count,
                  orv2_value* result) {
  return guarded([&](const FloatingPointGuard& call) {
    call_values(own_object(object, call), position, arguments, count, result);
  });
}

int32_t orv2_call_name(orv2_handle object, const char* name, const orv2_value* arguments,
                       size_t count, orv2_value* result) {
  return guarded([&](const FloatingPointGuard& call) {
    Object& called = own_object(object, call);
    if (name == nullptr) refuse(called, failure::invalid_call);
    call_values(called, position_of(called.description(), name, count), arguments, count, result);
  });
}
