set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(emulator qemu-aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/linux.cmake)
