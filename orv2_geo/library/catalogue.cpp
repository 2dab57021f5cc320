#include "orv2_geo/library/catalogue.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "orv2_geo/frame/names.h"
#include "orv2_geo/library/class_tables.h"

namespace orv2_geo {

namespace {

constexpr std::size_t class_count = std::tuple_size_v<ClassTables>;

template <class... Tables>
std::array<const ClassDescription*, sizeof...(Tables)> descriptions(
    std::type_identity<std::tuple<Tables...>>) noexcept {
  return {&Tables::Class::description()...};
}

const std::array<const ClassDescription*, class_count>& classes() noexcept {
  static const auto all = descriptions(std::type_identity<ClassTables>());
  return all;
}

std::uint64_t word_at(const char* bytes) noexcept {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof(word));
  return word;
}

// Eight bytes of a name, case put out of sight. Bytes that are no letters may
// lose a bit too, which costs a longer look at worst.
std::uint64_t eight_bytes(const char* bytes) noexcept {
  return word_at(bytes) | 0x2020202020202020U;
}

// Each eight bytes have a multiplier of their own, so that the products do not
// wait for each other.
std::uint32_t hash_of(std::string_view name, std::uint64_t seed) noexcept {
  constexpr std::uint64_t odd = 0x9e3779b97f4a7c15U;
  std::uint64_t multiplier = odd + 2 * seed;
  std::uint64_t hash = name.size();
  const auto mix = [&](std::uint64_t word) {
    hash += word * multiplier;
    multiplier += 0xd1b54a32d192ed02U;  // even: odd stays odd
  };
  for (std::size_t i = 0; i + 8 <= name.size(); i += 8) mix(eight_bytes(name.data() + i));
  if (name.size() >= 8) {
    mix(eight_bytes(name.data() + name.size() - 8));
  } else {
    char rest[8] = {};
    std::memcpy(rest, name.data(), name.size());
    mix(eight_bytes(rest));
  }
  return static_cast<std::uint32_t>((hash ^ hash >> 32U) * odd >> 40U);  // every letter gets here
}

// Whether eight letters, digits or underscores of a name are those given, case
// of letters ignored: bytes may differ in the bit of case alone, and only where
// the name has a letter (bit 0x40 set, and not the underscore's 31 below it).
bool same_eight(const char* name, const char* given) noexcept {
  const std::uint64_t word = word_at(name);
  const std::uint64_t differing = word ^ word_at(given);
  const std::uint64_t high = (word & 0x4040404040404040U) >> 1U;
  const std::uint64_t no_letter = (word & 0x1f1f1f1f1f1f1f1fU) + 0x0505050505050505U;
  return (differing & ~(high & ~no_letter)) == 0;
}

// Whether `same` holds for each eight bytes of two texts of one length, of eight at least; the
// last eight may have some of those before.
template <class Same>
bool for_each_eight(std::string_view name, std::string_view given, Same same) noexcept {
  for (std::size_t i = 0; i + 8 <= name.size(); i += 8) {
    if (!same(name.data() + i, given.data() + i)) return false;
  }
  const std::size_t last = name.size() - 8;
  return same(name.data() + last, given.data() + last);
}

bool is_name(std::string_view name, std::string_view given) noexcept {
  if (name.size() != given.size()) return false;
  if (name.size() < 8) return same_name(name, given);
  // Most callers write a name as it is.
  const auto equal = [](const char* a, const char* b) { return word_at(a) == word_at(b); };
  return for_each_eight(name, given, equal) || for_each_eight(name, given, same_eight);
}

constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

// The names of one class, each in a slot of its own: a seed is sought under
// which no two names meet.
class NameTable {
 public:
  explicit NameTable(const ClassDescription& of_class) noexcept : members_(of_class.members) {
    while (!fill()) ++seed_;
  }

  // The first position of the name, or nowhere.
  std::size_t find(std::string_view name) const noexcept {
    const std::uint8_t position = slots_[hash_of(name, seed_) % slot_count];
    if (position == nobody || !is_name(members_[position].name, name)) return nowhere;
    return position;
  }

 private:
  static constexpr std::size_t slot_count = 512;
  static constexpr std::uint8_t nobody = 0xff;

  bool fill() noexcept {
    slots_.fill(nobody);
    for (std::size_t i = 0; i < members_.size(); ++i) {
      // The two sides of a property share a name and stand side by side.
      if (i != 0 && members_[i].name == members_[i - 1].name) continue;
      std::uint8_t& slot = slots_[hash_of(members_[i].name, seed_) % slot_count];
      if (slot != nobody) return false;
      slot = static_cast<std::uint8_t>(i);
    }
    return true;
  }

  std::span<const MemberDescription> members_;
  std::uint64_t seed_ = 0;
  std::array<std::uint8_t, slot_count> slots_{};
};

struct NameTables {
  std::array<NameTable, class_count> tables;

  template <std::size_t... i>
  explicit NameTables(std::index_sequence<i...>) noexcept : tables{NameTable(*classes()[i])...} {}
};

// The first position of a name in a class of the catalogue, or of a host's own.
std::size_t first_named(const ClassDescription& of_class, std::string_view name) noexcept {
  static const NameTables all{std::make_index_sequence<class_count>{}};
  for (std::size_t i = 0; i < class_count; ++i) {
    if (classes()[i] == &of_class) return all.tables[i].find(name);
  }
  for (std::size_t i = 0; i < of_class.members.size(); ++i) {
    if (same_name(of_class.members[i].name, name)) return i;
  }
  return nowhere;
}

}  // namespace

std::span<const ClassDescription* const> catalogue() noexcept { return classes(); }

const ClassDescription* find_class(std::string_view registered_name) noexcept {
  for (const ClassDescription* one : classes()) {
    if (same_name(one->registered_name, registered_name)) return one;
  }
  return nullptr;
}

std::optional<std::size_t> find_member(const ClassDescription& of_class, std::string_view name,
                                       Wanted wanted) noexcept {
  const std::size_t first = first_named(of_class, name);
  if (first == nowhere) return std::nullopt;
  const bool property = of_class.members[first].kind != MemberKind::method;
  if (wanted == Wanted::any) return first;
  if (property == (wanted == Wanted::method)) return std::nullopt;
  return wanted == Wanted::property_write ? first + 1 : first;
}

std::size_t position_of(const ClassDescription& of_class, std::string_view name,
                        std::size_t argument_count) {
  const std::size_t first = first_named(of_class, name);
  if (first == nowhere)
    throw RunFailure::signed_by(failure::no_such_member, of_class.registered_name);
  const bool written =
      argument_count != 0 && of_class.members[first].kind == MemberKind::property_read;
  return first + (written ? 1 : 0);
}

}  // namespace orv2_geo
