#include "library.h"

#include <dlfcn.h>

namespace orv2_geo::python {

#define ORV2_PYTHON_NOT_OPENED(name) &NotOpened<decltype(&::name)>::call,
Library library{ORV2_PYTHON_FUNCTIONS(ORV2_PYTHON_NOT_OPENED)};
#undef ORV2_PYTHON_NOT_OPENED

namespace {

void* used_file = nullptr;

template <class Function>
bool found(void* file, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(file, name));
  return function != nullptr;
}

}  // namespace

std::string opened(const char* path) {
  void* const file = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (file == nullptr) return dlerror();
  if (is_open()) return file == used_file ? std::string() : "another library is in use already";
  Library functions = library;
#define ORV2_PYTHON_FOUND(name)                                              \
  if (!found(file, #name, functions.name)) {                                 \
    return std::string(path) + " is of another version: no " #name " in it"; \
  }
  ORV2_PYTHON_FUNCTIONS(ORV2_PYTHON_FOUND)
#undef ORV2_PYTHON_FOUND
  library = functions;
  used_file = file;
  return {};
}

std::string library_path() {
  Dl_info file{};
  const auto* const function = reinterpret_cast<const void*>(library.orv2_version);
  return is_open() && dladdr(function, &file) != 0 ? file.dli_fname : std::string();
}

bool is_open() noexcept { return used_file != nullptr; }

}  // namespace orv2_geo::python
