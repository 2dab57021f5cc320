// A call with the stack pointer looked at before and after.
#include "tests/com/early_bound/watched_call.h"

namespace orv2_geo::early_bound {

#if defined(__i386__)

namespace {

struct Look {
  HRESULT status;
  std::uintptr_t before;
  std::uintptr_t after;
  std::uintptr_t kept;  // the marks found again
};

// Pushes the marks and then all words, the last first, calls, and looks again. The stack pointer
// comes back from a register that a callee has to keep.
[[gnu::noinline]] Look call_with(const void* function, const std::uint32_t* words,
                                 std::uint32_t count, std::uint32_t marks) {
  Look look{};
  const std::uint32_t counts[] = {count, marks};
  auto own = reinterpret_cast<std::uintptr_t>(words);
  look.kept = reinterpret_cast<std::uintptr_t>(counts);
  asm volatile(
      "movl %%esp, %%ebx\n\t"
      "movl 4(%%edx), %%ecx\n"
      "1:\ttestl %%ecx, %%ecx\n\t"
      "jz 2f\n\t"
      "pushl $0x5ca1ab1e\n\t"
      "decl %%ecx\n\t"
      "jmp 1b\n"
      "2:\tmovl %%esp, %%edi\n\t"
      "movl (%%edx), %%ecx\n"
      "3:\ttestl %%ecx, %%ecx\n\t"
      "jz 4f\n\t"
      "pushl -4(%%esi,%%ecx,4)\n\t"
      "decl %%ecx\n\t"
      "jmp 3b\n"
      "4:\tcall *%%eax\n\t"
      "movl %%esp, %%ecx\n\t"
      "movl %%edi, %%esp\n\t"
      "movl %%edi, %%esi\n\t"
      "xorl %%edx, %%edx\n"
      "5:\tcmpl %%ebx, %%esi\n\t"
      "jae 6f\n\t"
      "cmpl $0x5ca1ab1e, (%%esi)\n\t"
      "jne 6f\n\t"
      "incl %%edx\n\t"
      "addl $4, %%esi\n\t"
      "jmp 5b\n"
      "6:\tmovl %%ebx, %%esp\n\t"
      : "=a"(look.status), "=c"(look.after), "=D"(look.before), "+d"(look.kept), "+S"(own)
      : "0"(function)
      : "ebx", "memory", "cc", "st", "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6",
        "xmm7");
  return look;
}

}  // namespace

Watched call_watched(const void* function, const std::uint32_t* words, std::size_t count,
                     std::size_t beyond) {
  const Look look = call_with(function, words, static_cast<std::uint32_t>(count),
                              static_cast<std::uint32_t>(beyond));
  return {look.status, static_cast<std::ptrdiff_t>(look.before - look.after), look.kept == beyond};
}

#endif

}  // namespace orv2_geo::early_bound
