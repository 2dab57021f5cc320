// Random calls through the C header without an end, right ones and wrong ones, by the host
// that the fuzzer has too:
//   c_soak SECONDS
#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string_view>
#include <vector>

#include "fuzz/host.h"
#include "orv2_geo/sorting/cgeo_Ordena.h"
#include "tests/soak/sample.h"
#include "tests/support/refused_memory.h"

namespace {

using orv2_geo::soak::Quantity;
using orv2_geo::testing_support::allocations_in_use;
using orv2_geo::testing_support::LargestAllocation;

constexpr std::size_t most_bytes = 512;
constexpr std::size_t most_at_once = std::size_t{4} << 20U;  // of memory, as for the fuzzer

double resident_bytes() {
  std::ifstream told("/proc/self/statm");
  double whole = 0.0, resident = 0.0;
  told >> whole >> resident;
  return resident * 4096.0;
}

double open_files() {
  double count = 0.0;
  for ([[maybe_unused]] const auto& one : std::filesystem::directory_iterator("/proc/self/fd")) {
    ++count;
  }
  return count;
}

// A host's whole life: all that it was given it gives back.
class Lives {
 public:
  explicit Lives(unsigned seed) : random_(seed) {}

  void one() {
    std::vector<std::uint8_t> bytes(random_() % most_bytes);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random_());
    {
      const LargestAllocation limit(most_at_once);
      orv2_geo::fuzzing::Host host(bytes.data(), bytes.size());
      host.act_to_the_end();
      host.expect_usable();
    }
    orv2_release(1);  // the words of the last failure are of one length again
  }

 private:
  std::mt19937 random_;
};

// What the library keeps for a thread about a character it makes when it first meets it.
void meet_every_character() {
  orv2_geo::StringArray two(0, 1);
  for (unsigned unit = 1; unit <= 0xffff; ++unit) {
    const auto one = static_cast<char16_t>(unit);
    two(0) = two(1) = orv2_geo::Text(std::u16string_view(&one, 1));
    orv2_geo::cgeo_Ordena().Ordena_StringArray(two, 0, 1);
  }
}

std::vector<Quantity> measured() {
  const auto blocks = static_cast<double>(allocations_in_use());
  return {{"resident_bytes", resident_bytes()},
          {"heap_bytes", static_cast<double>(mallinfo2().uordblks)},
          {"blocks", blocks},
          {"files", open_files()}};
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) {
    std::fprintf(stderr, "usage: c_soak SECONDS\n");
    return 2;
  }
  meet_every_character();
  Lives lives(20240607);
  orv2_geo::soak::run(
      std::atof(words[1]), [&] { lives.one(); }, measured);
  return ::testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : 0;
}
