// What every harness does before its first input.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments);

// A comparison of the tests that does not hold is a finding. It stops the program as a
// breakpoint would; the fuzzer keeps the input of an abort.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  GTEST_FLAG_SET(break_on_failure, true);
  std::signal(SIGTRAP, [](int) { std::abort(); });
  return 0;
}
