set(CMAKE_SYSTEM_PROCESSOR i686)
set(emulator qemu-i386)
include(${CMAKE_CURRENT_LIST_DIR}/linux.cmake)
