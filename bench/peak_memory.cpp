// Tells benchmarks run with ORV2_MEMORY=1 how much memory they hold at most: the highest of the
// process, which the system counts anew where it is asked to.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

namespace {

// A line of the process' status, in bytes.
std::int64_t status(const std::string& name) {
  std::ifstream lines("/proc/self/status");
  std::string word;
  while (lines >> word) {
    std::int64_t kilobytes = 0;
    if (word == name && lines >> kilobytes) return kilobytes * 1024;
  }
  return 0;
}

class PeakMemory final : public benchmark::MemoryManager {
 public:
  void Start() override {
    malloc_trim(0);                               // what lies idle is the system's again
    std::ofstream("/proc/self/clear_refs") << 5;  // the highest is now the present
    at_start_ = status("VmRSS:");
  }
  void Stop(Result& result) override { result.max_bytes_used = status("VmHWM:") - at_start_; }
  void Stop(Result* result) override { Stop(*result); }

 private:
  std::int64_t at_start_ = 0;
};

PeakMemory peak_memory;
[[maybe_unused]] const bool registered = [] {
  const bool asked = std::getenv("ORV2_MEMORY") != nullptr;
  if (asked) benchmark::RegisterMemoryManager(&peak_memory);
  return asked;
}();

}  // namespace
