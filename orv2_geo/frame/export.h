// export.h: which names leave the shared library.
#pragma once

#if defined(_WIN32)
// What a component server exports is listed by its linker's script alone.
#define ORV2_PUBLIC
#else
#define ORV2_PUBLIC __attribute__((visibility("default")))
#endif
