// slot.h: where handles point to.
#pragma once

#include <atomic>
#include <cstdint>

#include "orv2_geo/orv2_geo.h"

namespace orv2_geo::c_api {

class Item;

// A handle is a slot's index and the generation of its present item. Slots are
// never given back to the system, so that looking at one is always safe; only
// the thread that took a slot touches more than its atomic fields.
struct Slot {
  // The generation, and below it the references of other threads, not yet
  // counted: together, so that no reference goes to a later item by mistake.
  std::atomic<std::uint64_t> state{std::uint64_t{1} << 32U};
  std::atomic<std::uint64_t> thread{0};      // its thread's number, 0 when free
  std::atomic<const char*> source{nullptr};  // the class of a library object
  std::uint32_t index = 0;
  std::uint32_t references = 0;
  std::uint32_t pins = 0;
  bool ended = false;  // no references left, but pinned
  Item* item = nullptr;
  Slot* next = nullptr;  // in a list of free slots, or among its thread's
  Slot* previous = nullptr;
};

inline constexpr std::uint32_t slots_a_chunk = 1024;
inline constexpr std::uint32_t chunk_count = 4096;

extern std::atomic<Slot*> chunks[chunk_count];

// Null for an index that no slot has had yet.
inline Slot* slot_at(std::uint32_t index) noexcept {
  if (index >= slots_a_chunk * chunk_count) return nullptr;
  Slot* const chunk = chunks[index / slots_a_chunk].load(std::memory_order_acquire);
  return chunk != nullptr ? &chunk[index % slots_a_chunk] : nullptr;
}

constexpr std::uint32_t generation_in(std::uint64_t state) {
  return static_cast<std::uint32_t>(state >> 32U);
}
inline std::uint32_t generation_of(const Slot& slot) noexcept {
  return generation_in(slot.state.load(std::memory_order_relaxed));
}

constexpr std::uint32_t index_of(orv2_handle handle) {
  return static_cast<std::uint32_t>(handle & 0xffffffffU);
}
constexpr std::uint32_t generation_of(orv2_handle handle) {
  return static_cast<std::uint32_t>(handle >> 32U);
}

}  // namespace orv2_geo::c_api
