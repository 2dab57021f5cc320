// What it takes to load the library and to make a first object, in processes that have nothing
// of it yet, beside a load of the C++ run-time alone, which it brings along:
//
//   load_time LIBRARY
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int rounds = 101;

double microseconds() {
  using namespace std::chrono;
  return duration<double, std::micro>(steady_clock::now().time_since_epoch()).count();
}

// The library alone, or with the object.
double load(const char* library, bool object) {
  const double start = microseconds();
  void* const loaded = dlopen(library, RTLD_NOW);
  if (loaded == nullptr) std::exit(1);
  if (object) {
    using Create = std::int32_t (*)(const char*, std::uint64_t*);
    const auto create = reinterpret_cast<Create>(dlsym(loaded, "orv2_create"));
    std::uint64_t handle = 0;
    if (create == nullptr || create("Orv2_Geo.cgeo_Algorismos", &handle) != 0) std::exit(1);
  }
  return microseconds() - start;
}

// Of a process of its own; it tells by a pipe. Below 0 where it could not.
double load_apart(const char* library, bool object) {
  std::array<int, 2> ends;
  if (pipe(ends.data()) != 0) return -1.0;
  const pid_t child = fork();
  double time = -1.0;
  if (child == 0) {
    time = load(library, object);
    const bool told = write(ends[1], &time, sizeof(time)) == sizeof(time);
    _exit(told ? 0 : 1);
  }
  close(ends[1]);
  if (read(ends[0], &time, sizeof(time)) != sizeof(time)) time = -1.0;
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return time;
}

double median(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

}  // namespace

// This program is C++ too, and so is linked to the run-time as an archive.
int main(int count, char** arguments) {
  if (count != 2) return 2;
  std::vector<double> ours;
  std::vector<double> theirs;
  for (int round = 0; round < rounds; ++round) {
    ours.push_back(load_apart(arguments[1], true));
    theirs.push_back(load_apart("libstdc++.so.6", false));
    if (ours.back() < 0.0 || theirs.back() < 0.0) return 1;
  }
  std::printf(
      "load and a first object, beside a load of the C++ run-time alone: %.2f ms, %.2f ms, "
      "ratio %.2f (target 1 ms)\n",
      median(ours) / 1000.0, median(theirs) / 1000.0, median(ours) / median(theirs));
}
