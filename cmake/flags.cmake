# The one arithmetic of the library, and its warnings.
add_library(orv2_flags INTERFACE)
target_compile_options(orv2_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual>
  # No product and sum in one rounding: every operation rounds by itself.
  -ffp-contract=off
  # The run-time's own bits: never worked out beforehand, and no power written as a product.
  -fno-builtin-atan -fno-builtin-sin -fno-builtin-cos -fno-builtin-tan
  -fno-builtin-exp -fno-builtin-log -fno-builtin-pow
  # Nobody reads errno after a square root.
  -fno-math-errno
  # A member's calls of its own class stay inside the library.
  -fno-semantic-interposition
  # Numbers packed in pairs and torn apart again cost more than they save.
  -fno-tree-slp-vectorize)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(i.86|x86)$" OR CMAKE_SIZEOF_VOID_P EQUAL 4)
  # 32-bit: binary64 in the vector unit, without x87's longer intermediates.
  target_compile_options(orv2_flags INTERFACE -msse2 -mfpmath=sse)
endif()
if(WIN32 AND CMAKE_SIZEOF_VOID_P EQUAL 4)
  # A 32-bit host aligns its stack to four bytes; the vector unit asks for sixteen.
  target_compile_options(orv2_flags INTERFACE -mincoming-stack-boundary=2)
endif()
if(WIN32)
  # The system from Windows 7 on, and its texts of 16-bit units.
  target_compile_definitions(orv2_flags INTERFACE
    UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601 WINVER=0x0601)
endif()
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Notes about compilers before gcc 10, which this library never met.
  target_compile_options(orv2_flags INTERFACE -Wno-psabi)
endif()
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  # Addresses are filled in when a program is loaded: calls of other libraries take them from the
  # table without a jump between.
  target_compile_options(orv2_flags INTERFACE -fno-plt)
endif()
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT CMAKE_CXX_FLAGS MATCHES "fsanitize")
  # A fault that writes past a block of known length, or over a stack's end, stops there. (Jumps
  # are not checked: Debian's own start-up code is not marked for it, so that it would do nothing.)
  target_compile_options(orv2_flags INTERFACE -fstack-protector-strong -fstack-clash-protection
    $<$<CONFIG:Release,RelWithDebInfo>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
endif()
if(ORV2_WARNINGS_ARE_ERRORS)
  target_compile_options(orv2_flags INTERFACE -Werror)
endif()
# The compiler's own way to data of a thread (no -ftls-model=initial-exec): places fixed when a
# library is loaded are few in a process, and where its other libraries have taken them all, this
# one could not be loaded any more. Each look costs some 2 ns, so that a call through C looks once
# (floating_point_guard.h). Descriptors (-mtls-dialect=gnu2) are no quicker, and glibc before 2.40
# spoils vector registers in them where no fixed place is left.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # At -O3, gcc 12 takes the standard library's own copies of texts for overlapping.
  # clang's linter, which reads these flags, does not know the warning.
  target_compile_options(orv2_flags INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-Wno-unknown-warning-option -Wno-restrict>)
endif()
if(CMAKE_CXX_FLAGS MATCHES "fsanitize" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Instrumented, the standard library's variant looks uninitialised to gcc.
  target_compile_options(orv2_flags INTERFACE -Wno-maybe-uninitialized)
endif()
