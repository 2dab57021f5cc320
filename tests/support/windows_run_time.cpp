// What the tests take of the system in place of the compiler's own library, by the names
// under which the library imports it.
#include <windows.h>

#include <oleauto.h>

#include "tests/support/refused_memory.h"

#if defined(__i386__)
#define ORV2_IMPORTED(name) __asm__("__imp__" name)
#define ORV2_IMPORTED_CALL(name, bytes) __asm__("__imp__" name "@" bytes)
#else
#define ORV2_IMPORTED(name) __asm__("__imp_" name)
#define ORV2_IMPORTED_CALL(name, bytes) __asm__("__imp_" name)
#endif

namespace {

using namespace orv2_geo::testing_support;

template <class Function>
Function from_texts_library(const char* name) {
  static const HMODULE texts_library = LoadLibraryW(L"oleaut32.dll");
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(texts_library, name)));
}

// Texts of the system can be refused, and are counted, as all other memory.
BSTR WINAPI obtain_text(LPCSTR bytes, UINT count) {
  static const auto obtain =
      from_texts_library<BSTR(WINAPI*)(LPCSTR, UINT)>("SysAllocStringByteLen");
  if (allocation_is_refused()) return nullptr;
  BSTR const text = obtain(bytes, count);
  if (text != nullptr) allocation_made(SysStringByteLen(text));
  return text;
}

void WINAPI give_back_text(BSTR text) {
  static const auto give_back = from_texts_library<void(WINAPI*)(BSTR)>("SysFreeString");
  if (text != nullptr) allocation_given_back(SysStringByteLen(text));
  give_back(text);
}

}  // namespace

extern "C" {

extern BSTR(WINAPI* const obtain_text_import)(LPCSTR, UINT)
    ORV2_IMPORTED_CALL("SysAllocStringByteLen", "8");
extern void(WINAPI* const give_back_text_import)(BSTR) ORV2_IMPORTED_CALL("SysFreeString", "4");
BSTR(WINAPI* const obtain_text_import)(LPCSTR, UINT) = &obtain_text;
void(WINAPI* const give_back_text_import)(BSTR) = &give_back_text;

// The elementary functions of the system's run-time, as the library calls them.
extern double (*const imported_sin)(double) ORV2_IMPORTED("sin");
extern double (*const imported_cos)(double) ORV2_IMPORTED("cos");
extern double (*const imported_tan)(double) ORV2_IMPORTED("tan");
extern double (*const imported_atan)(double) ORV2_IMPORTED("atan");
extern double (*const imported_exp)(double) ORV2_IMPORTED("exp");
extern double (*const imported_log)(double) ORV2_IMPORTED("log");
extern double (*const imported_pow)(double, double) ORV2_IMPORTED("pow");
double sin(double x) { return imported_sin(x); }
double cos(double x) { return imported_cos(x); }
double tan(double x) { return imported_tan(x); }
double atan(double x) { return imported_atan(x); }
double exp(double x) { return imported_exp(x); }
double log(double x) { return imported_log(x); }
double pow(double x, double y) { return imported_pow(x, y); }
}
