// A process has little room for libraries whose data of a thread lie at a fixed place. A host's
// other libraries may have used all of it up: this one must load all the same, and work.
//
//   static_room_test LIBRARY USER...
#include <dlfcn.h>

#include <cstdio>
#include <string>
#include <thread>

#include "tests/threads/late_library.h"

namespace {

using orv2_geo::testing_support::bearing_is_right;

int fail(const char* what, const char* why) {
  std::printf("FAILED: %s: %s\n", what, why != nullptr ? why : "");
  return 1;
}

}  // namespace

int main(int count, char** words) {
  if (count < 3) return fail("usage", "static_room_test LIBRARY USER...");
  int loaded = 0, refused = 0;
  std::string last;
  for (int i = 2; i < count; ++i) {
    if (dlopen(words[i], RTLD_NOW | RTLD_LOCAL) != nullptr) {
      ++loaded;
      continue;
    }
    last = dlerror();
    if (last.find("static TLS") == std::string::npos) return fail(words[i], last.c_str());
    ++refused;
  }
  std::printf("%d libraries took the room, %d found none: %s\n", loaded, refused, last.c_str());
  if (loaded == 0 || refused == 0) return fail("the room", "it was not used up");
  // The smallest is the last.
  if (dlopen(words[count - 1], RTLD_NOW | RTLD_LOCAL) != nullptr) {
    return fail("the room", "a word of it is left");
  }
  void* const library = dlopen(words[1], RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return fail("the library", dlerror());
  if (!bearing_is_right(library)) return fail("the library", "does not work");
  bool in_thread = false;
  std::thread([&] { in_thread = bearing_is_right(library); }).join();
  if (!in_thread) return fail("the library", "does not work in a thread");
  std::printf("the library was loaded last, and works\n");
  return 0;
}
