#include "orv2_geo/com/vtables.h"

#include <algorithm>
#include <array>

#include "orv2_geo/library/class_tables.h"

namespace orv2_geo::com {

namespace {

// The inherited entries in front of the class's own.
template <class Table>
std::span<const VtableEntry> vtable_of() {
  static const auto all = [] {
    const auto members = Table::template lines<EntryOfMember>();
    const std::array inherited{entry(&query_interface), entry(&add_reference),
                               entry(&release),         entry(&count_type_infos),
                               entry(&type_info),       entry(&numbers_of_names),
                               entry(&invoke)};
    std::array<VtableEntry, inherited.size() + members.size()> vtable{};
    std::copy(members.begin(), members.end(),
              std::copy(inherited.begin(), inherited.end(), vtable.begin()));
    return vtable;
  }();
  return all;
}

template <class... Tables>
auto made_classes(std::type_identity<std::tuple<Tables...>>) {
  std::size_t i = 0;
  return std::array{
      ComponentClass{Tables::Class::description(), class_identifiers[i++], vtable_of<Tables>()}...};
}

}  // namespace

std::span<const ComponentClass> component_classes() noexcept {
  static const auto all = made_classes(std::type_identity<ClassTables>());
  return all;
}

}  // namespace orv2_geo::com
