// The entries in the registry, in a registry of the test's own.
#include <gtest/gtest.h>

#include <map>

#include "host.h"

using namespace orv2_geo::testing;

namespace {

constexpr wchar_t scratch[] = L"Software\\Orv2_Geo_tests";

// All keys below one with their values: "key" and "key|name" to text.
using Tree = std::map<std::wstring, std::wstring>;

void read_into(Tree& tree, HKEY key, const std::wstring& path) {
  tree[path] = L"";
  wchar_t name[256], text[1024];
  for (DWORD i = 0;; ++i) {
    DWORD letters = 256, bytes = sizeof(text);
    std::fill(std::begin(text), std::end(text), L'\0');
    if (RegEnumValueW(key, i, name, &letters, nullptr, nullptr, reinterpret_cast<BYTE*>(text),
                      &bytes) != ERROR_SUCCESS) {
      break;
    }
    tree[path + L"|" + name] = text;
  }
  for (DWORD i = 0;; ++i) {
    DWORD letters = 256;
    if (RegEnumKeyExW(key, i, name, &letters, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
      break;
    }
    HKEY child = nullptr;
    RegOpenKeyExW(key, name, 0, KEY_READ, &child);
    read_into(tree, child, path + L"\\" + name);
    RegCloseKey(child);
  }
}

// Both roots of the registry stand in for an empty key each while it lives.
class Registry {
 public:
  Registry() {
    machine_ = made(L"machine");
    user_ = made(L"user");
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine_);
    RegOverridePredefKey(HKEY_CURRENT_USER, user_);
  }
  Registry(const Registry&) = delete;
  Registry& operator=(const Registry&) = delete;
  ~Registry() {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegCloseKey(machine_);
    RegCloseKey(user_);
    RegDeleteTreeW(HKEY_CURRENT_USER, scratch);
    RegDeleteKeyW(HKEY_CURRENT_USER, scratch);
  }

  Tree machine() const { return tree_of(machine_); }
  Tree user() const { return tree_of(user_); }

  // What is deleted while it is open cannot be written any more.
  static void forbid(HKEY root) { RegDeleteKeyW(root, L""); }

  static void set(HKEY root, const std::wstring& path, const wchar_t* value) {
    HKEY key = nullptr;
    RegCreateKeyExW(root, (L"Software\\Classes\\" + path).c_str(), 0, nullptr, 0, KEY_WRITE,
                    nullptr, &key, nullptr);
    RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(value),
                   static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
  }

 private:
  static HKEY made(const wchar_t* name) {
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, (std::wstring(scratch) + L"\\" + name).c_str(), 0, nullptr,
                    0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    return key;
  }
  static Tree tree_of(HKEY key) {
    Tree tree;
    read_into(tree, key, L"");
    return tree;
  }

  HKEY machine_;
  HKEY user_;
};

std::wstring braced(const GUID& identifier) {
  wchar_t text[64];
  StringFromGUID2(identifier, text, 64);
  std::wstring lower = text;
  for (wchar_t& letter : lower) letter = static_cast<wchar_t>(towlower(letter));
  return lower;
}

HRESULT register_server() { return Server::loaded().call("DllRegisterServer"); }
HRESULT unregister_server() { return Server::loaded().call("DllUnregisterServer"); }

const std::wstring classes = L"\\Software\\Classes\\";

void expect_registered(const Tree& tree) {
  const auto value = [&](const std::wstring& path) {
    const auto found = tree.find(classes + path);
    return found == tree.end() ? L"not there: " + path : found->second;
  };
  const wchar_t* const names[] = {L"cgeo_Algorismos", L"cgeo_FuncDeriv", L"cgeo_Terreno",
                                  L"cgeo_api",        L"cgeo_Ordena",    L"cgeo_Geometria",
                                  L"cgeo_Matrices"};
  const std::wstring library = braced(LIBID_Orv2_Geo);
  for (int i = 0; i < 7; ++i) {
    const std::wstring registered = std::wstring(L"Orv2_Geo.") + names[i];
    const std::wstring key = L"CLSID\\" + braced(*class_identifiers[i]);
    const std::wstring face = L"Interface\\" + braced(*interface_identifiers[i]);
    EXPECT_EQ(value(registered + L"\\CLSID|"), braced(*class_identifiers[i]));
    EXPECT_EQ(value(key + L"|"), registered);
    EXPECT_EQ(value(key + L"\\ProgID|"), registered);
    EXPECT_EQ(value(key + L"\\InprocServer32|"), Server::path());
    EXPECT_EQ(value(key + L"\\InprocServer32|ThreadingModel"), L"Apartment");
    EXPECT_EQ(value(key + L"\\TypeLib|"), library);
    EXPECT_EQ(value(face + L"|"), std::wstring(L"_") + names[i]);
    EXPECT_EQ(value(face + L"\\ProxyStubClsid32|"), L"{00020424-0000-0000-C000-000000000046}");
    EXPECT_EQ(value(face + L"\\TypeLib|"), library);
    EXPECT_EQ(value(face + L"\\TypeLib|Version"), L"2.0");
  }
  const std::wstring word = sizeof(void*) == 8 ? L"win64" : L"win32";
  EXPECT_EQ(value(L"TypeLib\\" + library + L"\\2.0|"), L"Orv3-> Geo");
  EXPECT_EQ(value(L"TypeLib\\" + library + L"\\2.0\\409\\" + word + L"|"), Server::path());
}

TEST(Registration, IsForAllUsersWhereTheMachinesRegistryCanBeWritten) {
  Registry registry;
  ASSERT_EQ(register_server(), S_OK);
  expect_registered(registry.machine());
  EXPECT_EQ(registry.user(), (Tree{{L"", L""}}));
  const Tree once = registry.machine();
  EXPECT_EQ(register_server(), S_OK);
  EXPECT_EQ(registry.machine(), once);
}

TEST(Registration, IsForThisUserWhereItCannot) {
  Registry registry;
  Registry::forbid(HKEY_LOCAL_MACHINE);
  ASSERT_EQ(register_server(), S_OK);
  expect_registered(registry.user());
}

TEST(Registration, IsRefusedWhereNeitherCan) {
  Registry registry;
  Registry::forbid(HKEY_LOCAL_MACHINE);
  Registry::forbid(HKEY_CURRENT_USER);
  EXPECT_EQ(register_server(), SELFREG_E_CLASS);
  EXPECT_EQ(unregister_server(), S_OK);
}

TEST(Registration, LeavesTheRegistryAsItWas) {
  for (const bool machine : {true, false}) {
    Registry registry;
    HKEY const root = machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    const std::wstring library = L"TypeLib\\" + braced(LIBID_Orv2_Geo);
    const wchar_t* const other_word = sizeof(void*) == 8 ? L"win32" : L"win64";
    Registry::set(root, L"CLSID\\{00000000-0000-0000-0000-000000000001}", L"somebody else's");
    Registry::set(root, L"Orv2_Geo.other", L"somebody else's");
    Registry::set(root, library + L"\\1.0\\0\\win32", L"another version");
    if (!machine) Registry::forbid(HKEY_LOCAL_MACHINE);
    const Tree before = machine ? registry.machine() : registry.user();
    ASSERT_EQ(register_server(), S_OK);
    EXPECT_NE(machine ? registry.machine() : registry.user(), before);
    EXPECT_EQ(unregister_server(), S_OK);
    EXPECT_EQ(machine ? registry.machine() : registry.user(), before);
    EXPECT_EQ(unregister_server(), S_OK) << "nothing to remove";
    // The type library of the other word length has its entry in the same key.
    Registry::set(root, library + L"\\2.0\\409\\" + other_word, L"other.dll");
    ASSERT_EQ(register_server(), S_OK);
    EXPECT_EQ(unregister_server(), S_OK);
    const Tree left = machine ? registry.machine() : registry.user();
    EXPECT_EQ(left.count(classes + library + L"\\2.0\\409\\" + other_word), 1U);
    EXPECT_EQ(left.count(classes + L"Orv2_Geo.cgeo_api"), 0U);
  }
}

TEST(Registration, OfAnEmptyRegistryLeavesOnlyTheKeyOfAllClasses) {
  Registry registry;
  ASSERT_EQ(register_server(), S_OK);
  ASSERT_EQ(unregister_server(), S_OK);
  EXPECT_EQ(registry.machine(),
            (Tree{{L"", L""}, {L"\\Software", L""}, {L"\\Software\\Classes", L""}}));
}

}  // namespace
