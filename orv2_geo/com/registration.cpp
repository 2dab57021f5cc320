#include "orv2_geo/com/registration.h"

#include <olectl.h>

#include <string>
#include <vector>

#include "orv2_geo/com/component.h"
#include "orv2_geo/com/failures.h"
#include "orv2_geo/com/module.h"

namespace orv2_geo::com {

namespace {

constexpr wchar_t classes_key[] = L"Software\\Classes";

// The system's own proxy for interfaces that a type library tells of.
constexpr wchar_t proxy[] = L"{00020424-0000-0000-C000-000000000046}";

#if defined(_WIN64)
constexpr wchar_t system_name[] = L"win64";
#else
constexpr wchar_t system_name[] = L"win32";
#endif

// One value: of the key itself where it has no name.
struct Entry {
  std::wstring key;
  std::wstring name;
  std::wstring value;
};

std::wstring wide(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

std::wstring braced(const Identifier& identifier) {
  return L"{" + wide(spelled(identifier)) + L"}";
}

std::wstring library_key() { return L"TypeLib\\" + braced(library_identifier); }
std::wstring version() {
  return std::to_wstring(library_major) + L"." + std::to_wstring(library_minor);
}
std::wstring version_key() { return library_key() + L"\\" + version(); }

// The registry spells a locale in hexadecimal: 1033 is 409.
std::wstring locale_key() {
  static_assert(library_locale == 0x409);
  return version_key() + L"\\409";
}

std::wstring class_key(const ComponentClass& one) {
  return L"CLSID\\" + braced(one.identifiers.of_class);
}
std::wstring interface_key(const ComponentClass& one) {
  return L"Interface\\" + braced(one.identifiers.of_interface);
}

void append_class(std::vector<Entry>& entries, const ComponentClass& one,
                  const std::wstring& file) {
  const std::wstring registered = wide(one.description.registered_name);
  const std::wstring key = class_key(one);
  const std::wstring library = braced(library_identifier);
  entries.push_back({registered, L"", registered});
  entries.push_back({registered + L"\\CLSID", L"", braced(one.identifiers.of_class)});
  entries.push_back({key, L"", registered});
  entries.push_back({key + L"\\InprocServer32", L"", file});
  entries.push_back({key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"});
  entries.push_back({key + L"\\ProgID", L"", registered});
  entries.push_back({key + L"\\Programmable", L"", L""});
  entries.push_back({key + L"\\TypeLib", L"", library});
  entries.push_back({key + L"\\Version", L"", version()});
  const std::wstring face = interface_key(one);
  entries.push_back({face, L"", L"_" + wide(one.description.name)});
  entries.push_back({face + L"\\ProxyStubClsid32", L"", proxy});
  entries.push_back({face + L"\\TypeLib", L"", library});
  entries.push_back({face + L"\\TypeLib", L"Version", version()});
}

std::vector<Entry> all_entries() {
  const std::wstring file = module_file();
  std::vector<Entry> entries;
  for (const ComponentClass& one : component_classes()) append_class(entries, one, file);
  entries.push_back({version_key(), L"", wide(library_help)});
  entries.push_back({version_key() + L"\\FLAGS", L"", L"0"});
  entries.push_back({version_key() + L"\\HELPDIR", L"", file.substr(0, file.rfind(L'\\'))});
  entries.push_back({locale_key() + L"\\" + system_name, L"", file});
  return entries;
}

// An open key of the registry.
class Key {
 public:
  Key() = default;
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() {
    if (handle_ != nullptr) RegCloseKey(handle_);
  }

  LSTATUS open(HKEY parent, const wchar_t* path, REGSAM access) noexcept {
    return RegOpenKeyExW(parent, path, 0, access, &handle_);
  }
  LSTATUS create(HKEY parent, const wchar_t* path) noexcept {
    return RegCreateKeyExW(parent, path, 0, nullptr, 0, KEY_WRITE, nullptr, &handle_, nullptr);
  }
  HKEY get() const noexcept { return handle_; }

  bool holds_keys() const noexcept { return numbers().keys != 0; }
  bool is_empty() const noexcept { return numbers().keys == 0 && numbers().values == 0; }

 private:
  struct Numbers {
    DWORD keys = 0;
    DWORD values = 0;
  };
  Numbers numbers() const noexcept {
    Numbers found;
    RegQueryInfoKeyW(handle_, nullptr, nullptr, nullptr, &found.keys, nullptr, nullptr,
                     &found.values, nullptr, nullptr, nullptr, nullptr);
    return found;
  }

  HKEY handle_ = nullptr;
};

LSTATUS write(HKEY classes, const Entry& entry) noexcept {
  Key key;
  const LSTATUS made = key.create(classes, entry.key.c_str());
  if (made != ERROR_SUCCESS) return made;
  const auto bytes = static_cast<DWORD>((entry.value.size() + 1) * sizeof(wchar_t));
  return RegSetValueExW(key.get(), entry.name.empty() ? nullptr : entry.name.c_str(), 0, REG_SZ,
                        reinterpret_cast<const BYTE*>(entry.value.c_str()), bytes);
}

// Whether a key is there and nothing is left in it that somebody else may need.
template <class Condition>
bool key_is(HKEY classes, const std::wstring& path, Condition condition) {
  Key key;
  return key.open(classes, path.c_str(), KEY_READ) == ERROR_SUCCESS && condition(key);
}

void remove_empty(HKEY classes, const std::wstring& path) {
  const bool empty = key_is(classes, path, [](const Key& key) { return key.is_empty(); });
  if (empty) RegDeleteKeyW(classes, path.c_str());
}

// The type library of the other word length may stand beside this one's.
void remove_type_library(HKEY classes) {
  const auto without_keys = [](const Key& key) { return !key.holds_keys(); };
  RegDeleteKeyW(classes, (locale_key() + L"\\" + system_name).c_str());
  if (!key_is(classes, locale_key(), without_keys)) return;
  RegDeleteTreeW(classes, version_key().c_str());
  if (key_is(classes, library_key(), without_keys)) {
    RegDeleteKeyW(classes, library_key().c_str());
  }
}

void remove_entries(HKEY root) {
  Key classes;
  if (classes.open(root, classes_key, KEY_READ | KEY_WRITE) != ERROR_SUCCESS) return;
  for (const ComponentClass& one : component_classes()) {
    RegDeleteTreeW(classes.get(), wide(one.description.registered_name).c_str());
    RegDeleteTreeW(classes.get(), class_key(one).c_str());
    RegDeleteTreeW(classes.get(), interface_key(one).c_str());
  }
  remove_type_library(classes.get());
  for (const wchar_t* shared : {L"CLSID", L"Interface", L"TypeLib"}) {
    remove_empty(classes.get(), shared);
  }
}

LSTATUS write_entries(HKEY root, const std::vector<Entry>& entries) noexcept {
  Key classes;
  LSTATUS status = classes.create(root, classes_key);
  for (std::size_t i = 0; status == ERROR_SUCCESS && i < entries.size(); ++i) {
    status = write(classes.get(), entries[i]);
  }
  return status;
}

}  // namespace

HRESULT register_library() noexcept {
  return status_of_work([] {
    const std::vector<Entry> entries = all_entries();
    for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
      if (write_entries(root, entries) == ERROR_SUCCESS) return S_OK;
      remove_entries(root);
    }
    return SELFREG_E_CLASS;
  });
}

HRESULT unregister_library() noexcept {
  return status_of_work([] {
    for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) remove_entries(root);
    return S_OK;
  });
}

}  // namespace orv2_geo::com
