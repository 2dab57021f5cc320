#include "orv2_geo/platform/thread_data.h"

#include <windows.h>

namespace orv2_geo {

ThreadSlot::ThreadSlot(End end) noexcept : index_(FlsAlloc(end)) {}
ThreadSlot::~ThreadSlot() { FlsFree(index_); }
void* ThreadSlot::get() const noexcept { return FlsGetValue(index_); }
bool ThreadSlot::set(void* content) const noexcept { return FlsSetValue(index_, content) != FALSE; }

}  // namespace orv2_geo
