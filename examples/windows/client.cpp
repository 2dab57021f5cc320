// A client of the component server that calls through the table of its interfaces, and needs no
// registration: Orv2_Geo.manifest, beside the program or named on the command line, tells the
// system where the classes are. The word --registered asks for what is registered instead.
#define INITGUID
#include <oaidl.h>
#include <objbase.h>

#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "Orv2_Geo_h.h"

namespace {

std::string utf8(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  std::string converted(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, converted.data(), size, nullptr, nullptr);
  converted.pop_back();
  return converted;
}

std::string in_hexadecimal(HRESULT status) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%08lX", static_cast<unsigned long>(status));
  return digits;
}

class Text {
 public:
  Text() = default;
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  ~Text() { SysFreeString(text_); }
  BSTR* place() { return &text_; }
  std::string words() const { return text_ == nullptr ? std::string() : utf8(text_); }

 private:
  BSTR text_ = nullptr;
};

template <class Interface>
class Reference {
 public:
  Reference() = default;
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;
  ~Reference() {
    if (object_ != nullptr) object_->Release();
  }
  Interface** place() { return &object_; }
  Interface* operator->() const { return object_; }
  bool empty() const { return object_ == nullptr; }

 private:
  Interface* object_ = nullptr;
};

/// What the library says of its failure: the words, who signs them, and its number in the low half
/// of the status.
std::string failure_words(HRESULT status) {
  Reference<IErrorInfo> info;
  if (GetErrorInfo(0, info.place()) != S_OK) return "status " + in_hexadecimal(status);
  Text source;
  Text description;
  info->GetSource(source.place());
  info->GetDescription(description.place());
  return source.words() + ": " + description.words() + " (" + std::to_string(status & 0xffff) + ")";
}

void expect(HRESULT status) {
  if (FAILED(status)) throw std::runtime_error(failure_words(status));
}

/// The manifest's classes, for this thread and for as long as this lives.
class ClassesOfManifest {
 public:
  explicit ClassesOfManifest(const std::wstring& manifest) {
    ACTCTXW wanted{};
    wanted.cbSize = sizeof wanted;
    wanted.lpSource = manifest.c_str();
    context_ = CreateActCtxW(&wanted);
    if (context_ == INVALID_HANDLE_VALUE) {
      throw std::runtime_error("the manifest cannot be used: " + utf8(manifest.c_str()));
    }
    if (ActivateActCtx(context_, &cookie_) == FALSE) {
      ReleaseActCtx(context_);
      throw std::runtime_error("the manifest's classes cannot be activated");
    }
  }
  ClassesOfManifest(const ClassesOfManifest&) = delete;
  ClassesOfManifest& operator=(const ClassesOfManifest&) = delete;
  ~ClassesOfManifest() {
    DeactivateActCtx(0, cookie_);
    ReleaseActCtx(context_);
  }

 private:
  HANDLE context_ = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie_ = 0;
};

template <class Interface>
void create(Reference<Interface>& object, const wchar_t* name, REFIID interface_wanted) {
  CLSID of_class{};
  const HRESULT known = CLSIDFromProgID(name, &of_class);
  if (FAILED(known)) throw std::runtime_error(utf8(name) + " is not registered");
  const HRESULT made = CoCreateInstance(of_class, nullptr, CLSCTX_INPROC_SERVER, interface_wanted,
                                        reinterpret_cast<void**>(object.place()));
  if (FAILED(made)) {
    throw std::runtime_error(utf8(name) + " cannot be created: " + in_hexadecimal(made));
  }
}

/// An array of the system's, of doubles from 0.
class Numbers {
 public:
  Numbers() = default;
  explicit Numbers(const std::vector<double>& elements) {
    SAFEARRAYBOUND bound{static_cast<ULONG>(elements.size()), 0};
    array_ = SafeArrayCreate(VT_R8, 1, &bound);
    if (array_ == nullptr) throw std::bad_alloc();
    std::memcpy(array_->pvData, elements.data(), elements.size() * sizeof(double));
  }
  Numbers(const Numbers&) = delete;
  Numbers& operator=(const Numbers&) = delete;
  ~Numbers() {
    if (array_ != nullptr) SafeArrayDestroy(array_);
  }
  SAFEARRAY** place() { return &array_; }
  std::vector<double> elements() const {
    if (array_ == nullptr) return {};
    const auto* const first = static_cast<const double*>(array_->pvData);
    return {first, first + array_->rgsabound[0].cElements};
  }

 private:
  SAFEARRAY* array_ = nullptr;
};

void show_azimuth() {
  Reference<_cgeo_Algorismos> algorismos;
  create(algorismos, L"Orv2_Geo.cgeo_Algorismos", IID__cgeo_Algorismos);
  double dx = 3;
  double dy = 4;
  double azimuth = 0;
  expect(algorismos->Azimut(&dx, &dy, &azimuth));
  std::printf("azimuth of (3, 4): %.10f\n", azimuth);

  dx = 1e200;
  dy = 1e-200;
  const HRESULT status = algorismos->Azimut(&dx, &dy, &azimuth);
  if (FAILED(status)) std::printf("of (1e200, 1e-200): %s\n", failure_words(status).c_str());
}

// The library makes the array of elevations: the variable may hold none.
void show_elevations() {
  Reference<_cgeo_Terreno> terreno;
  create(terreno, L"Orv2_Geo.cgeo_Terreno", IID__cgeo_Terreno);
  Numbers distances({0, 0, 10, 25, 40});
  Numbers profile({0, 100, 103, 101.5, 107.25});
  Numbers wanted({0, 5, 12.5, 30});
  Numbers elevations;
  expect(terreno->TR_Cotas_en_unTerreno_dando_DistOr(distances.place(), profile.place(),
                                                     wanted.place(), elevations.place()));
  std::printf("elevations:");
  for (const double elevation : elevations.elements()) std::printf(" %.4f", elevation);
  std::printf("\n");
}

void show_all() {
  show_azimuth();
  show_elevations();
}

std::wstring manifest_beside_program() {
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const std::wstring path = program;
  return path.substr(0, path.rfind(L'\\') + 1) + L"Orv2_Geo.manifest";
}

void run(const std::vector<std::wstring>& words) {
  if (!words.empty() && words[0] == L"--registered") return show_all();
  const ClassesOfManifest classes(words.empty() ? manifest_beside_program() : words[0]);
  show_all();
}

std::vector<std::wstring> words_of(int count, char** words) {
  std::vector<std::wstring> wide;
  for (int i = 1; i < count; ++i) {
    const int size = MultiByteToWideChar(CP_ACP, 0, words[i], -1, nullptr, 0);
    std::wstring word(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_ACP, 0, words[i], -1, word.data(), size);
    word.pop_back();
    wide.push_back(word);
  }
  return wide;
}

}  // namespace

int main(int count, char** words) {
  int status = 1;
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return status;
  try {
    run(words_of(count, words));
    status = 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "client: %s\n", failure.what());
  }
  CoUninitialize();
  return status;
}
