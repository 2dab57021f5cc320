// What the type library and the module's version tell, against the catalogue.
#include <gtest/gtest.h>

#include "host.h"
#include "orv2_geo/library/catalogue.h"

using namespace orv2_geo;
using namespace orv2_geo::testing;

namespace {

Held<ITypeLib> library() {
  Held<ITypeLib> found;
  EXPECT_EQ(LoadTypeLibEx(Server::path().c_str(), REGKIND_NONE, found.place()), S_OK);
  return found;
}

std::wstring taken(BSTR text) {
  const std::wstring words = text != nullptr ? text : L"";
  SysFreeString(text);
  return words;
}

std::wstring wide(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

bool same_letters(const std::wstring& a, const std::wstring& b) {
  return _wcsicmp(a.c_str(), b.c_str()) == 0;
}

TEST(TypeLibrary, HasItsNameVersionHelpAndLocale) {
  const Held<ITypeLib> found = library();
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(found->GetLibAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->wMajorVerNum, 2);
  EXPECT_EQ(attributes->wMinorVerNum, 0);
  EXPECT_EQ(attributes->lcid, 1033U);
  found->ReleaseTLibAttr(attributes);
  BSTR name = nullptr, help = nullptr;
  ASSERT_EQ(found->GetDocumentation(-1, &name, &help, nullptr, nullptr), S_OK);
  EXPECT_EQ(taken(name), L"Orv2_Geo");
  EXPECT_EQ(taken(help), L"Orv3-> Geo");
}

VARTYPE element_of(Type type) {
  switch (type) {
    case Type::double_array: return VT_R8;
    case Type::single_array: return VT_R4;
    case Type::long_array: return VT_I4;
    case Type::short_array: return VT_I2;
    default: return VT_BSTR;
  }
}

VARTYPE plain_type(Type type) {
  switch (type) {
    case Type::i16: return VT_I2;
    case Type::i32: return VT_I4;
    case Type::f32: return VT_R4;
    case Type::f64: return VT_R8;
    case Type::boolean: return VT_BOOL;
    case Type::text: return VT_BSTR;
    case Type::variant: return VT_VARIANT;
    default: return VT_DISPATCH;
  }
}

void expect_type(const TYPEDESC& told, Type type, bool by_reference) {
  const TYPEDESC* plain = &told;
  if (by_reference) {
    ASSERT_EQ(told.vt, VT_PTR);
    plain = told.lptdesc;
  }
  if (is_array(type)) {
    ASSERT_EQ(plain->vt, VT_SAFEARRAY);
    EXPECT_EQ(plain->lptdesc->vt, element_of(type));
  } else if (type == Type::object && plain->vt == VT_PTR) {
    EXPECT_EQ(plain->lptdesc->vt, VT_USERDEFINED);  // the interface by its name
  } else {
    EXPECT_EQ(plain->vt, plain_type(type));
  }
}

void expect_parameter(const ELEMDESC& told, const ParameterDescription& parameter) {
  expect_type(told.tdesc, parameter.type, parameter.by_reference);
  const USHORT flags = told.paramdesc.wParamFlags;
  EXPECT_EQ((flags & PARAMFLAG_FIN) != 0, true);
  EXPECT_EQ((flags & PARAMFLAG_FOUT) != 0, parameter.by_reference);
  EXPECT_EQ((flags & PARAMFLAG_FOPT) != 0, parameter.optional);
  ASSERT_EQ((flags & PARAMFLAG_FHASDEFAULT) != 0, parameter.optional);
  if (!parameter.optional) return;
  VARIANT value{};
  VariantChangeType(&value, &told.paramdesc.pparamdescex->varDefaultValue, 0, VT_I4);
  EXPECT_EQ(value.lVal, parameter.default_value);
}

void expect_names(ITypeInfo* info, MEMBERID number, const MemberDescription& member) {
  BSTR names[24] = {};
  UINT count = 0;
  info->GetNames(number, names, 24, &count);
  ASSERT_GE(count, 1U);
  EXPECT_EQ(taken(names[0]), wide(member.name));
  for (UINT i = 1; i < count; ++i) {
    const std::wstring name = taken(names[i]);
    if (i - 1 >= member.parameters.size()) continue;
    // A type library has one spelling for names that differ in case alone.
    EXPECT_TRUE(same_letters(name, wide(member.parameters[i - 1].name)));
  }
}

TEST(TypeLibrary, TellsEveryMemberInItsPlace) {
  const Held<ITypeLib> found = library();
  constexpr int inherited = 7;
  for (std::size_t c = 0; c < 7; ++c) {
    const ClassDescription& of_class = *catalogue()[c];
    Held<ITypeInfo> dispatch, info;
    ASSERT_EQ(found->GetTypeInfoOfGuid(*interface_identifiers[c], dispatch.place()), S_OK);
    BSTR name = nullptr;
    dispatch->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
    EXPECT_EQ(taken(name), L"_" + wide(of_class.name));
    // Behind the dispatch interface stands the dual one, with the vtable.
    HREFTYPE dual = 0;
    ASSERT_EQ(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &dual), S_OK);
    ASSERT_EQ(dispatch->GetRefTypeInfo(dual, info.place()), S_OK);
    TYPEATTR* attributes = nullptr;
    info->GetTypeAttr(&attributes);
    EXPECT_NE(attributes->wTypeFlags & TYPEFLAG_FDUAL, 0);
    ASSERT_EQ(attributes->cFuncs, of_class.members.size());
    info->ReleaseTypeAttr(attributes);
    const Held<IDispatch> object = Server::loaded().create(*class_identifiers[c]);
    for (UINT i = 0; i < of_class.members.size(); ++i) {
      const MemberDescription& member = of_class.members[i];
      SCOPED_TRACE(std::string(member.name));
      FUNCDESC* told = nullptr;
      ASSERT_EQ(info->GetFuncDesc(i, &told), S_OK);
      EXPECT_EQ(told->oVft, static_cast<SHORT>((inherited + i) * sizeof(void*)));
      EXPECT_EQ(told->invkind, member.kind == MemberKind::method          ? INVOKE_FUNC
                               : member.kind == MemberKind::property_read ? INVOKE_PROPERTYGET
                                                                          : INVOKE_PROPERTYPUT);
      EXPECT_EQ(told->memid, number_of(object.get(), wide(member.name).c_str()))
          << "late-bound calls know it by the same number";
      const bool answers = member.result != Type::none;
      ASSERT_EQ(told->cParams, static_cast<SHORT>(member.parameters.size() + answers));
      for (std::size_t p = 0; p < member.parameters.size(); ++p) {
        expect_parameter(told->lprgelemdescParam[p], member.parameters[p]);
      }
      if (answers) {
        const ELEMDESC& last = told->lprgelemdescParam[told->cParams - 1];
        EXPECT_NE(last.paramdesc.wParamFlags & PARAMFLAG_FRETVAL, 0);
        expect_type(last.tdesc, member.result, true);
      }
      // Both sides of a property have the names of the first.
      if (member.kind != MemberKind::property_write) {
        expect_names(info.get(), told->memid, member);
      }
      info->ReleaseFuncDesc(told);
    }
  }
}

std::wstring version_text(const std::vector<char>& block, const wchar_t* name) {
  void* text = nullptr;
  UINT length = 0;
  const std::wstring path = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
  if (VerQueryValueW(block.data(), path.c_str(), &text, &length) == FALSE) return L"";
  return static_cast<const wchar_t*>(text);
}

TEST(Version, IsThatOfTheFile) {
  DWORD unused = 0;
  std::vector<char> block(GetFileVersionInfoSizeW(Server::path().c_str(), &unused));
  ASSERT_FALSE(block.empty());
  ASSERT_TRUE(GetFileVersionInfoW(Server::path().c_str(), 0, static_cast<DWORD>(block.size()),
                                  block.data()));
  EXPECT_EQ(version_text(block, L"FileVersion"), L"1.00.0166");
  EXPECT_EQ(version_text(block, L"ProductVersion"), L"1.00.0166");
  EXPECT_EQ(version_text(block, L"ProductName"), L"Orv_Geo");
  EXPECT_EQ(version_text(block, L"CompanyName"), L"Ordavia");
  EXPECT_EQ(version_text(block, L"OriginalFilename"), L"Orv2_Geo.dll");
}

}  // namespace
