// export.h: which names leave the shared library.
#pragma once

#if defined(_WIN32)
#define ORV2_PUBLIC __declspec(dllexport)
#else
#define ORV2_PUBLIC __attribute__((visibility("default")))
#endif
