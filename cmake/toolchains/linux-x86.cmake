set(CMAKE_SYSTEM_PROCESSOR i686)
# A processor of 64 bits runs it itself.
set(libraries /usr/i686-linux-gnu/lib)
set(CMAKE_CROSSCOMPILING_EMULATOR ${libraries}/ld-linux.so.2;--library-path;${libraries})
include(${CMAKE_CURRENT_LIST_DIR}/linux.cmake)
