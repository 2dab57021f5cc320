// Every member through the C boundary, from a host that does anything.
#include "fuzz/harness.h"
#include "fuzz/host.h"

void orv2_geo::fuzzing::try_input(const std::uint8_t* data, std::size_t size) {
  {
    Host host(data, size);
    host.act_to_the_end();
    host.expect_usable();
  }
  orv2_release(1);  // the words of the last failure are of one length again
}
