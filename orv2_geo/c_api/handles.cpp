#include "orv2_geo/c_api/handles.h"

#include <atomic>
#include <new>
#include <utility>

#include "orv2_geo/c_api/guard.h"
#include "orv2_geo/c_api/slot.h"
#include "orv2_geo/frame/memory.h"
#include "orv2_geo/platform/thread_number.h"

namespace orv2_geo::c_api {

std::atomic<Slot*> chunks[chunk_count];

namespace {

constexpr std::uint64_t generation_bits = 0xffffffff00000000U;

constexpr std::uint32_t references_in(std::uint64_t state) {
  return static_cast<std::uint32_t>(state & ~generation_bits);
}
constexpr std::uint64_t state_of(std::uint32_t generation, std::uint32_t references) {
  return std::uint64_t{generation} << 32U | references;
}

// The references of other threads since the last time.
std::uint32_t taken_references(Slot& slot) noexcept {
  return references_in(slot.state.fetch_and(generation_bits, std::memory_order_acq_rel));
}

std::atomic<std::uint32_t> slots_taken{0};
std::atomic<Slot*> left_by_ended_threads{nullptr};
std::atomic<std::uint32_t> foreign_releases{0};

thread_local bool ending = false;

Slot& brand_new_slot() {
  const std::uint32_t index = slots_taken.load(std::memory_order_relaxed);
  std::uint32_t mine = index;
  do {
    if (mine >= slots_a_chunk * chunk_count) raise(failure::out_of_memory);
    std::atomic<Slot*>& place = chunks[mine / slots_a_chunk];
    if (place.load(std::memory_order_acquire) == nullptr) {
      auto* fresh = new (std::nothrow) Slot[slots_a_chunk];
      if (fresh == nullptr) raise(failure::out_of_memory);
      Slot* nobody = nullptr;
      if (!place.compare_exchange_strong(nobody, fresh)) delete[] fresh;
    }
  } while (!slots_taken.compare_exchange_weak(mine, mine + 1));
  Slot& slot = *slot_at(mine);
  slot.index = mine;
  return slot;
}

// The slots of one thread.
class ThreadSlots {
 public:
  ThreadSlots() noexcept = default;
  ThreadSlots(const ThreadSlots&) = delete;
  ThreadSlots& operator=(const ThreadSlots&) = delete;

  // At the end of a thread, what its host left behind is freed; the slots go
  // to the threads that come after.
  ~ThreadSlots() {
    ending = true;
    while (used_ != nullptr) {
      used_->pins = 0;
      end(*used_);
    }
    while (free_ != nullptr) leave(*std::exchange(free_, free_->next));
  }

  Slot& take() {
    if (free_ == nullptr) free_ = left_by_ended_threads.exchange(nullptr);
    Slot& slot = free_ != nullptr ? *std::exchange(free_, free_->next) : brand_new_slot();
    slot.next = used_;
    slot.previous = nullptr;
    if (used_ != nullptr) used_->previous = &slot;
    used_ = &slot;
    return slot;
  }

  // The last reference is gone: the handle is stale at once, the item ends now
  // or when nothing pins it any more.
  void end(Slot& slot) noexcept {
    if (!slot.ended) slot.state.store(state_of(generation_of(slot) + 1, 0));
    slot.ended = true;
    if (slot.pins != 0) return;
    unlink(slot);
    // Ending an item may call the host, and the host the library again.
    Item* const item = std::exchange(slot.item, nullptr);
    slot.thread.store(0, std::memory_order_relaxed);
    slot.ended = false;
    if (!is_worn_out(slot)) slot.next = std::exchange(free_, &slot);
    delete item;
  }

  // Counts what other threads released meanwhile.
  void settle() noexcept {
    const std::uint32_t now = foreign_releases.load(std::memory_order_acquire);
    if (std::exchange(settled_, now) == now) return;
    for (Slot* slot = used_; slot != nullptr;) {
      Slot* const following = slot->next;
      slot->references += taken_references(*slot);
      const bool over = static_cast<std::int32_t>(slot->references) <= 0 && !slot->ended;
      if (over) end(*slot);
      slot = over ? used_ : following;  // ending one may have ended others
    }
  }

 private:
  void unlink(Slot& slot) noexcept {
    if (slot.previous != nullptr) slot.previous->next = slot.next;
    if (slot.next != nullptr) slot.next->previous = slot.previous;
    if (used_ == &slot) used_ = slot.next;
    slot.next = slot.previous = nullptr;
  }

  static bool is_worn_out(const Slot& slot) noexcept {
    const std::uint32_t next = generation_of(slot);
    return next == 0 || next > last_generation;
  }

  static void leave(Slot& slot) noexcept {
    slot.next = left_by_ended_threads.load(std::memory_order_relaxed);
    while (!left_by_ended_threads.compare_exchange_weak(slot.next, &slot)) {
    }
  }

  Slot* used_ = nullptr;
  Slot* free_ = nullptr;
  std::uint32_t settled_ = 0;
};

ThreadSlots& this_thread() {
  thread_local ThreadSlots slots;
  return slots;
}

// The slot of a handle in force, on whatever thread.
Slot& live_slot(orv2_handle handle) {
  Slot* const slot = slot_at(index_of(handle));
  const bool live = slot != nullptr && generation_of(*slot) == generation_of(handle) &&
                    slot->thread.load(std::memory_order_relaxed) != 0;
  if (!live) [[unlikely]]
    raise(failure::invalid_call);
  return *slot;
}

bool is_mine(const Slot& slot) noexcept {
  return slot.thread.load(std::memory_order_relaxed) == this_thread_number();
}

// Counts a reference of this thread to another's item. Failure 5 when the item
// has ended meanwhile.
void count_elsewhere(Slot& slot, orv2_handle handle, std::int32_t change) {
  std::uint64_t state = slot.state.load(std::memory_order_relaxed);
  std::uint64_t next = 0;
  do {
    if (generation_in(state) != generation_of(handle)) raise(failure::invalid_call);
    next =
        state_of(generation_in(state), references_in(state) + static_cast<std::uint32_t>(change));
  } while (!slot.state.compare_exchange_weak(state, next));
}

Slot& my_slot(orv2_handle handle) {
  Slot& slot = live_slot(handle);
  if (!is_mine(slot)) [[unlikely]]
    throw RunFailure::signed_by(failure::invalid_call, slot.source);
  return slot;
}

}  // namespace

bool thread_is_ending() noexcept { return ending; }

orv2_handle handle_for(std::unique_ptr<Item> item) {
  ThreadSlots& mine = this_thread();
  mine.settle();
  Slot& slot = mine.take();
  slot.source.store(item->source(), std::memory_order_relaxed);
  slot.item = item.release();
  slot.references = 1;
  slot.thread.store(this_thread_number(), std::memory_order_relaxed);
  return orv2_handle{generation_of(slot)} << 32U | slot.index;
}

Item& item_of(orv2_handle handle, Kind kind) {
  Item& item = *my_slot(handle).item;
  if (item.kind != kind) [[unlikely]]
    raise(failure::invalid_call);
  return item;
}

void add_reference(orv2_handle handle) {
  Slot& slot = live_slot(handle);
  if (is_mine(slot)) {
    ++slot.references;
  } else {
    count_elsewhere(slot, handle, 1);
  }
}

void drop_reference(orv2_handle handle) {
  Slot& slot = live_slot(handle);
  if (!is_mine(slot)) {
    count_elsewhere(slot, handle, -1);
    foreign_releases.fetch_add(1, std::memory_order_release);
    return;
  }
  slot.references += taken_references(slot);
  if (static_cast<std::int32_t>(--slot.references) <= 0) this_thread().end(slot);
}

Pin::Pin(orv2_handle handle) : index_(index_of(handle)) { ++my_slot(handle).pins; }

Pin::~Pin() {
  Slot& slot = *slot_at(index_);
  if (--slot.pins == 0 && slot.ended) this_thread().end(slot);
}

}  // namespace orv2_geo::c_api
