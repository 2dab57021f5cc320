// Objects and the module: identity, interfaces, counts, threads, unloading.
#include <gtest/gtest.h>

#include <thread>

#include "host.h"

using namespace orv2_geo::testing;

namespace {

const Server& server() { return Server::loaded(); }

TEST(Module, IsHeldByObjectsFactoriesAndLocks) {
  EXPECT_EQ(server().can_unload(), S_OK);
  Held<IClassFactory> factory;
  ASSERT_EQ(server().class_object(CLSID_cgeo_api, IID_IClassFactory, factory.void_place()), S_OK);
  EXPECT_EQ(server().can_unload(), S_FALSE);
  factory->LockServer(TRUE);
  Held<IUnknown> object;
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, object.void_place()), S_OK);
  IClassFactory* const kept = factory.get();
  factory = Held<IClassFactory>();
  EXPECT_EQ(server().can_unload(), S_FALSE);
  object = Held<IUnknown>();
  EXPECT_EQ(server().can_unload(), S_FALSE) << "the lock";
  kept->LockServer(FALSE);
  EXPECT_EQ(server().can_unload(), S_OK);
}

TEST(Module, ExportsExactlyTheFourEntryPoints) {
  const auto* const base = reinterpret_cast<const char*>(server().module());
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  const auto& entry = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
  const auto* const exports =
      reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + entry.VirtualAddress);
  EXPECT_EQ(exports->NumberOfFunctions, 4U);
  const auto* const names = reinterpret_cast<const DWORD*>(base + exports->AddressOfNames);
  std::vector<std::string> found;
  for (DWORD i = 0; i < exports->NumberOfNames; ++i) found.emplace_back(base + names[i]);
  EXPECT_EQ(found, (std::vector<std::string>{"DllCanUnloadNow", "DllGetClassObject",
                                             "DllRegisterServer", "DllUnregisterServer"}));
}

TEST(Factory, KnowsItsSevenClassesAndNoOther) {
  for (const CLSID* one : class_identifiers) {
    Held<IClassFactory> factory;
    EXPECT_EQ(server().class_object(*one, IID_IClassFactory, factory.void_place()), S_OK);
    void* nothing = factory.get();
    EXPECT_EQ(server().class_object(*one, IID_IDispatch, &nothing), E_NOINTERFACE);
    EXPECT_EQ(nothing, nullptr);
    EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, &nothing),
              CLASS_E_NOAGGREGATION);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IMarshal, &nothing), E_NOINTERFACE);
    EXPECT_EQ(nothing, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
  }
  void* nothing = &nothing;
  EXPECT_EQ(server().class_object(IID_IDispatch, IID_IClassFactory, &nothing),
            CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(nothing, nullptr);
  EXPECT_EQ(server().class_object(CLSID_cgeo_api, IID_IClassFactory, nullptr), E_POINTER);
}

TEST(Object, HasOneIdentityThroughAllItsInterfaces) {
  for (int i = 0; i < 7; ++i) {
    const Held<IDispatch> object = server().create(*class_identifiers[i]);
    Held<IUnknown> identity;
    ASSERT_EQ(object->QueryInterface(IID_IUnknown, identity.void_place()), S_OK);
    for (const IID* wanted : {&IID_IUnknown, &IID_IDispatch, interface_identifiers[i],
                              &IID_ISupportErrorInfo, &IID_IProvideClassInfo}) {
      Held<IUnknown> face, same;
      ASSERT_EQ(object->QueryInterface(*wanted, face.void_place()), S_OK);
      ASSERT_EQ(face->QueryInterface(IID_IUnknown, same.void_place()), S_OK);
      EXPECT_EQ(same.get(), identity.get());
    }
    void* none = nullptr;
    EXPECT_EQ(object->QueryInterface(*interface_identifiers[(i + 1) % 7], &none), E_NOINTERFACE);
    EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
  }
}

TEST(Object, TellsOfItsInterfaceAndClass) {
  for (int i = 0; i < 7; ++i) {
    const Held<IDispatch> object = server().create(*class_identifiers[i]);
    Held<ISupportErrorInfo> errors;
    ASSERT_EQ(object->QueryInterface(IID_ISupportErrorInfo, errors.void_place()), S_OK);
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(*interface_identifiers[i]), S_OK);
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(IID_IUnknown), S_FALSE);
    Held<IProvideClassInfo> provider;
    ASSERT_EQ(object->QueryInterface(IID_IProvideClassInfo, provider.void_place()), S_OK);
    Held<ITypeInfo> of_class, of_interface;
    ASSERT_EQ(provider->GetClassInfo(of_class.place()), S_OK);
    TYPEATTR* attributes = nullptr;
    of_class->GetTypeAttr(&attributes);
    EXPECT_EQ(attributes->guid, *class_identifiers[i]);
    of_class->ReleaseTypeAttr(attributes);
    UINT count = 0;
    EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(object->GetTypeInfo(1, 0, of_interface.place()), DISP_E_BADINDEX);
    ASSERT_EQ(object->GetTypeInfo(0, 0, of_interface.place()), S_OK);
    of_interface->GetTypeAttr(&attributes);
    EXPECT_EQ(attributes->guid, *interface_identifiers[i]);
    of_interface->ReleaseTypeAttr(attributes);
    EXPECT_EQ(object->GetTypeInfoCount(nullptr), E_POINTER);
    EXPECT_EQ(object->GetTypeInfo(0, 0, nullptr), E_POINTER);
  }
}

TEST(Object, KeepsItsDataToItself) {
  const auto make = [] {
    return server().create<_cgeo_FuncDeriv>(CLSID_cgeo_FuncDeriv, IID__cgeo_FuncDeriv);
  };
  const auto one = make(), other = make();
  double value = 7.0;
  EXPECT_EQ(one->get_RPi(&value), S_OK);
  EXPECT_EQ(value, 0.0);
  EXPECT_EQ(one->put_RPi(0.5), S_OK);
  EXPECT_EQ(other->get_RPi(&value), S_OK);
  EXPECT_EQ(value, 0.0);
  EXPECT_EQ(one->get_RPi(&value), S_OK);
  EXPECT_EQ(value, 0.5);
  EXPECT_EQ(one->get_Pi(&value), S_OK);
  EXPECT_EQ(value, 0.0);
}

TEST(Object, AnswersAFailureWithWords) {
  const auto object = server().create<_cgeo_FuncDeriv>(CLSID_cgeo_FuncDeriv, IID__cgeo_FuncDeriv);
  double result = 7.0;
  EXPECT_EQ(object->F_Log10(-1.0, &result), failure_status(5));
  EXPECT_EQ(result, 7.0);
  Held<IErrorInfo> told;
  ASSERT_EQ(GetErrorInfo(0, told.place()), S_OK);
  BSTR words = nullptr;
  told->GetDescription(&words);
  EXPECT_STREQ(words, L"Argumento o llamada a procedimiento no v\u00e1lidos");
  SysFreeString(words);
  told->GetSource(&words);
  EXPECT_STREQ(words, L"Orv2_Geo.cgeo_FuncDeriv");
  SysFreeString(words);
  EXPECT_EQ(object->F_Sen(1.0, nullptr), S_OK) << "nobody wants the answer";
}

TEST(Object, NullPointersAreRefused) {
  const auto object =
      server().create<_cgeo_Algorismos>(CLSID_cgeo_Algorismos, IID__cgeo_Algorismos);
  double number = 1.0;
  EXPECT_EQ(object->Azimut(nullptr, &number, &number), failure_status(5));
  EXPECT_EQ(object->Azimut(&number, &number, nullptr), failure_status(5));
  EXPECT_EQ(object->Linea_a_puntos(nullptr, &number, &number, &number, &number), failure_status(5));
  short where = 0;
  VARIANT_BOOL inside = 1;
  long count = 0;
  EXPECT_EQ(object->Pto_en_Poligono_d(nullptr, nullptr, &count, &number, &number, &where, &inside),
            failure_status(5));
  const auto api = server().create<_cgeo_api>(CLSID_cgeo_api, IID__cgeo_api);
  SAFEARRAY* x = doubles({0.0, 10.0, 10.0, 0.0}, 1);
  SAFEARRAY* y = doubles({0.0, 0.0, 10.0, 10.0}, 1);
  count = 4;
  number = 5.0;
  EXPECT_EQ(api->Pto_in_Poligono(&x, &y, &count, &number, &number, nullptr, &inside), S_OK)
      << "an optional one is left out";
  EXPECT_EQ(inside, -1);
  SafeArrayDestroy(x);
  SafeArrayDestroy(y);
}

TEST(Object, AnswersNoOtherThread) {
  const auto object =
      server().create<_cgeo_Algorismos>(CLSID_cgeo_Algorismos, IID__cgeo_Algorismos);
  std::thread([&] {
    double dx = 1.0, dy = 1.0, azimuth = 7.0;
    EXPECT_EQ(object->Azimut(&dx, &dy, &azimuth), RPC_E_WRONG_THREAD);
    EXPECT_EQ(call(object.get(), L"Azimut", {1.0, 1.0, Value::ref(azimuth)}).status,
              RPC_E_WRONG_THREAD);
    EXPECT_EQ(azimuth, 7.0);
    DISPID number = 0;
    wchar_t name[] = L"Azimut";
    wchar_t* names = name;
    EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &names, 1, 0, &number), RPC_E_WRONG_THREAD);
  }).join();
  double dx = 1.0, dy = 0.0, azimuth = 7.0;
  EXPECT_EQ(object->Azimut(&dx, &dy, &azimuth), S_OK);
}

TEST(Object, AThreadMayEndWithObjectsAlive) {
  Held<IDispatch> left[7];
  for (int round = 0; round < 20; ++round) {
    std::thread([&] {
      for (int i = 0; i < 7; ++i) left[i] = server().create(*class_identifiers[i]);
    }).join();
    double azimuth = 7.0;
    EXPECT_EQ(call(left[0].get(), L"Azimut", {1.0, 1.0, Value::ref(azimuth)}).status,
              RPC_E_WRONG_THREAD)
        << "a later thread is another one";
    EXPECT_EQ(server().can_unload(), S_FALSE);
    for (Held<IDispatch>& one : left) one = Held<IDispatch>();
    EXPECT_EQ(server().can_unload(), S_OK);
  }
}

TEST(Object, AMillionComeAndGo) {
  const auto make_some = [](int count) {
    for (int i = 0; i < count; ++i) {
      const Held<IDispatch> object = server().create(*class_identifiers[i % 7]);
      ASSERT_TRUE(object);
    }
  };
  make_some(1000);
  const std::size_t before = busy_blocks();
  make_some(1000000);
  EXPECT_EQ(busy_blocks(), before);
  EXPECT_EQ(server().can_unload(), S_OK);
}

TEST(Object, EightThreadsWithTheirOwn) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([t] {
      for (int i = 0; i < 5000; ++i) {
        const auto object =
            server().create<_cgeo_FuncDeriv>(CLSID_cgeo_FuncDeriv, IID__cgeo_FuncDeriv);
        object->put_RPi(t);
        double value = -1.0;
        object->get_RPi(&value);
        if (value != t) ADD_FAILURE();
      }
    });
  }
  for (std::thread& one : threads) one.join();
  EXPECT_EQ(server().can_unload(), S_OK);
}

TEST(Module, MayBeUnloadedAndLoadedAgain) {
  const std::wstring copy = Server::path() + L".again.dll";
  ASSERT_TRUE(CopyFileW(Server::path().c_str(), copy.c_str(), FALSE));
  for (int i = 0; i < 100; ++i) {
    HMODULE const module = LoadLibraryW(copy.c_str());
    ASSERT_NE(module, nullptr);
    using Entry = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    const auto entry = reinterpret_cast<Entry>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    Held<IClassFactory> factory;
    ASSERT_EQ(entry(CLSID_cgeo_api, IID_IClassFactory, factory.void_place()), S_OK);
    Held<IDispatch> object;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, object.void_place()), S_OK);
    object = Held<IDispatch>();
    factory = Held<IClassFactory>();
    ASSERT_TRUE(FreeLibrary(module));
  }
  DeleteFileW(copy.c_str());
}

}  // namespace
