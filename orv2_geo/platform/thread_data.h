// thread_data.h: one object a thread.
#pragma once

#if defined(_WIN32)
#include <cstdint>
#include <memory>
#include <new>
#endif

namespace orv2_geo {

#if defined(_WIN32)
/// A slot of the system's, whose contents end with their thread, or with the slot. The
/// compiler's own way keeps this library loaded until the thread ends, and would then
/// unload it from within.
class ThreadSlot {
 public:
  using End = void(__stdcall*)(void*);
  explicit ThreadSlot(End end) noexcept;
  ThreadSlot(const ThreadSlot&) = delete;
  ThreadSlot& operator=(const ThreadSlot&) = delete;
  ~ThreadSlot();

  void* get() const noexcept;
  bool set(void* content) const noexcept;

 private:
  std::uint32_t index_;
};

/// This thread's T, made when it is first asked for. Throws std::bad_alloc, and what the
/// making throws.
template <class T>
T& of_this_thread() {
  static const ThreadSlot slot([](void* content)
                                   __attribute__((stdcall)) { delete static_cast<T*>(content); });
  if (void* const found = slot.get()) return *static_cast<T*>(found);
  auto made = std::make_unique<T>();
  if (!slot.set(made.get())) throw std::bad_alloc();
  return *made.release();
}
#else
/// This thread's T, made when it is first asked for. Throws what the making throws.
template <class T>
T& of_this_thread() {
  thread_local T content;
  return content;
}
#endif

}  // namespace orv2_geo
